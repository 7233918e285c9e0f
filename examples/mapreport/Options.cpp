// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Options.h"

#include <utility>

#include "examples/mapreport/SettingsFile.h"
#include "shared/files/FileUtility.h"
#include "shared/files/Path.h"
#include "shared/mathtext/Context.h"
#include "shared/text/StringUtility.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr std::size_t MOST_ROWS = 100000;

constexpr const char* FOOTER =
    "The command line wins over --last, and --last over the settings file. A loaded map is as it "
    "was\n"
    "saved but for what the command line says.\n"
    "Exit status: 0 success, 1 an input cannot be used, 2 wrong usage.";

/// A build puts the data of the examples into a folder beside the program.
GString FindData(const wchar_t* fileName) {
  const GString path = GetStartupPath(nullptr, true) + L"mapreport-data/" + fileName;
  return FileExists(path) ? path : GString();
}

/// The texts as they stand on the command line.
struct RawOptions {
  GString map;
  GString points;
  GString cities;
  GString rivers;
  GString attributes;
  std::vector<GString> tracks;
  GString config;
  GString load;
  GString save;
  GString geojson;
  GString window;
  GString clip;
  GString continent;
  GString colors;
  GString dashes;
  GString out;
  GString title;
  GString text;
  GString face;
  GString log;
  GString remoteLog;
  std::optional<std::size_t> labels;
  std::optional<std::size_t> strongest;
  std::optional<std::uint32_t> codePage;
  std::optional<std::uint32_t> mapPage;
  std::optional<std::uint32_t> pointsPage;
  std::optional<std::uint32_t> citiesPage;
  std::optional<std::uint32_t> riversPage;
  bool last = false;
};

GString FaultOfWindowText(const GString& text) {
  const GString fault = FaultOfWindow(text);
  return fault.empty() ? fault : L"'" + text + L"' " + fault;
}

void AddInputs(ArgumentParser& parser, RawOptions& raw) {
  parser.AddText("--map", raw.map, "FILE", "Outlines of countries");
  parser.AddText("--points", raw.points, "FILE",
                 "Table of events: latitude, longitude, magnitude ...");
  parser.AddText("--cities", raw.cities, "FILE",
                 "Table of cities: name, country, lat, lon, population");
  parser.AddText("--rivers", raw.rivers, "FILE", "Lines of rivers; no rivers unless told");
  parser.AddText("--attributes", raw.attributes, "FILE", "Table of countries: name, continent");
  parser.AddTexts("--track", raw.tracks, "FILE",
                  "Tracks, routes and waypoints (GPX or KML); may be given several times");
  parser.AddCodePage("--codepage", raw.codePage, "Code page of inputs without a byte-order mark");
  parser.AddCodePage("--map-codepage", raw.mapPage, "The same for --map alone");
  parser.AddCodePage("--points-codepage", raw.pointsPage, "The same for --points alone");
  parser.AddCodePage("--cities-codepage", raw.citiesPage, "The same for --cities alone");
  parser.AddCodePage("--rivers-codepage", raw.riversPage, "The same for --rivers alone");
}

void AddSettings(ArgumentParser& parser, RawOptions& raw, Options& options) {
  parser.AddText("--window", raw.window, "W,S,E,N", "Part of the world to show, in degrees")
      .Check(FaultOfWindowText);
  parser.AddText("--clip", raw.clip, "AREA",
                 "Show only what lies in a country or a polygon: a name, WKT, GeoJSON, or @FILE");
  parser.AddText("--union-continent", raw.continent, "NAME", "Unite the countries of a continent");
  parser
      .AddText("--colors", raw.colors, "C,C...",
               "Colors from few events to many, by name or #rrggbb; two or more")
      .Check(FaultOfColors);
  parser.AddText("--title", raw.title, "TEXT", "Title of the map and the report, math text")
      .Check(FindMathTextFault);
  parser
      .AddText("--text", raw.text, "HOW",
               "How texts of the map are written: text, outlines (looks the same without fonts) or "
               "portable (the same bytes on every machine)")
      .MustParse(ParseTextMode, L"is not text, outlines or portable");
  parser.AddText("--face", raw.face, "NAME", "Face of the texts of the map");
  parser.AddCount("--labels", raw.labels, MOST_ROWS, "Most city names on the map");
  parser.AddCount("--strongest", raw.strongest, MOST_ROWS, "Rows of the table of strongest events");
  parser
      .AddText("--dashes", raw.dashes, "N,N...",
               "Dash pattern of rivers: drawn and left out in turn, in pixels; or solid")
      .MustParse(ParseDashes, L"is no dash pattern; it takes lengths in pixels, or solid");
  parser.AddText("--config", raw.config, "FILE",
                 "Take inputs and choices from a settings file (INI)");
  parser.AddFlag("--last", raw.last, "Use the window and the colors that --remember kept");
  parser.AddFlag("--remember", options.remember, "Keep the window and the colors for --last");
}

void AddOutputs(ArgumentParser& parser, RawOptions& raw, Options& options) {
  parser
      .AddText("--out", raw.out, "DIR",
               "Folder for map.svg, overview.svg and report.html; made when missing")
      .Required();
  parser.AddText("--load", raw.load, "FILE", "Begin with a saved map instead of inputs")
      .Excludes({"--map", "--points", "--cities", "--rivers", "--attributes", "--track", "--config",
                 "--last"});
  parser.AddText("--save", raw.save, "FILE", "Save the map with all that was done to it");
  parser.AddText("--geojson", raw.geojson, "FILE",
                 "Write the united continent, or else the visible countries, as GeoJSON");
  parser.AddFlag("--csv", options.csv,
                 "Write the tables of the report as CSV files beside it, too");
  parser.AddCount("--undo", options.undo, MOST_ROWS,
                  "Take the last N steps back and do them again; the report tells them");
  parser.AddText("--log", raw.log, "FILE", "Begin a log file (UTF-16LE)");
  parser
      .AddText("--remote-log", raw.remoteLog, "HOST:PORT",
               "Send log lines to a collector, as UDP datagrams")
      .MustParse(ParseRemoteLog, L"is no HOST:PORT");
  parser.AddFlag("--quiet", options.quiet, "Write nothing but errors");
}

/// The command line names the input, else the settings file, else it is looked for beside the
/// program.
TextInput MakeInput(const GString& path, const GString& setting, const wchar_t* defaultName,
                    std::optional<std::uint32_t> page) {
  if (!path.empty()) return TextInput{path, page};
  if (!setting.empty()) return TextInput{setting, page};
  return TextInput{defaultName != nullptr ? FindData(defaultName) : GString(), std::nullopt};
}

Inputs MakeInputs(const RawOptions& raw, const SettingsFile& file) {
  const auto page = [&](std::optional<std::uint32_t> own) { return own ? own : raw.codePage; };
  Inputs inputs;
  inputs.map = MakeInput(raw.map, file.map, L"countries-50m.txt", page(raw.mapPage));
  inputs.points = MakeInput(raw.points, file.points, L"earthquakes.csv", page(raw.pointsPage));
  inputs.cities = MakeInput(raw.cities, file.cities, L"cities-utf16le.csv", page(raw.citiesPage));
  inputs.rivers = MakeInput(raw.rivers, file.rivers, nullptr, page(raw.riversPage));
  inputs.attributes =
      MakeInput(raw.attributes, file.attributes, L"countries-attributes.csv", page(std::nullopt));
  for (const GString& path : raw.tracks.empty() ? file.tracks : raw.tracks) {
    inputs.tracks.push_back({path, page(std::nullopt)});
  }
  return inputs;
}

Settings MakeSettings(const RawOptions& raw) {
  Settings settings;
  if (!raw.title.empty()) settings.title = raw.title;
  if (!raw.text.empty()) settings.text = ParseTextMode(raw.text);
  if (!raw.face.empty()) settings.face = raw.face;
  if (!raw.window.empty()) settings.window = ParseWindow(raw.window);
  if (!raw.clip.empty()) settings.clip = raw.clip;
  if (!raw.continent.empty()) settings.continent = raw.continent;
  if (!raw.colors.empty()) settings.ramp = ParseColors(raw.colors);
  if (!raw.dashes.empty()) settings.dashes = ParseDashes(raw.dashes);
  settings.labels = raw.labels;
  settings.strongest = raw.strongest;
  return settings;
}

void Complete(const RawOptions& raw, Options& options) {
  const SettingsFile file = raw.config.empty() ? SettingsFile() : ReadSettingsFile(raw.config);
  options.inputs = MakeInputs(raw, file);
  options.settings = MakeSettings(raw);
  if (raw.last) options.settings.Complete(ReadLast(SETTINGS_KEY));
  options.settings.Complete(file.settings);
  options.load = raw.load;
  options.save = raw.save;
  options.geojson = raw.geojson;
  options.log = raw.log;
  if (!raw.remoteLog.empty()) options.remoteLog = ParseRemoteLog(raw.remoteLog);
  options.outFolder = raw.out;
}

CommandLine Wrong(const GString& what) {
  CommandLine result;
  static_cast<ParsedArguments&>(result) = UsageError(L"mapreport", what);
  return result;
}

CommandLine CheckInputs(CommandLine result) {
  const Options& options = result.options;
  const std::pair<const wchar_t*, const TextInput*> inputs[] = {
      {L"--map", &options.inputs.map},
      {L"--points", &options.inputs.points},
      {L"--cities", &options.inputs.cities}};
  for (const auto& [name, input] : inputs) {
    if (options.load.empty() && input->path.empty()) {
      return Wrong(GString(name) + L" is required: no default data were found");
    }
  }
  if (options.outFolder.empty()) return Wrong(L"--out is empty");
  return result;
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<GString>& arguments) {
  CommandLine result;
  RawOptions raw;
  ArgumentParser parser("mapreport",
                        "Draws earthquakes and their countries as a map and an HTML report.",
                        MAPREPORT_VERSION);
  parser.SetFooter(FOOTER);
  parser.BeginGroup("Inputs");
  AddInputs(parser, raw);
  parser.BeginGroup("The map");
  AddSettings(parser, raw, result.options);
  parser.BeginGroup("Outputs and steps");
  AddOutputs(parser, raw, result.options);
  static_cast<ParsedArguments&>(result) = parser.Parse(arguments);
  if (result.action != CommandLine::Action::Run) return result;
  Complete(raw, result.options);
  return CheckInputs(std::move(result));
}

}  // namespace mapreport
