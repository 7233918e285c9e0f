// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Options.h"

#include <CLI/CLI.hpp>
#include <string>
#include <utility>

#include "examples/mapreport/SettingsFile.h"
#include "shared/files/FileUtility.h"
#include "shared/files/Path.h"
#include "shared/text/StringUtility.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr int MOST_ROWS = 100000;

constexpr const char* FOOTER =
    "The command line wins over --last, and --last over the settings file. A loaded map is as it "
    "was\n"
    "saved but for what the command line says.\n"
    "Exit status: 0 success, 1 an input cannot be used, 2 wrong usage.";

GString FromUtf8(const std::string& text) {
  return GString::FromUtf8(text);
}

/// A build puts the data of the examples into a folder beside the program.
GString FindData(const wchar_t* fileName) {
  const GString path = GetStartupPath(nullptr, true) + L"mapreport-data/" + fileName;
  return FileExists(path) ? path : GString();
}

/// The texts as the parser stores them; UTF-8.
struct RawOptions {
  std::string map;
  std::string points;
  std::string cities;
  std::string rivers;
  std::string attributes;
  std::string config;
  std::string load;
  std::string save;
  std::string geojson;
  std::string window;
  std::string clip;
  std::string continent;
  std::string colors;
  std::string dashes;
  std::string out;
  std::string title;
  std::string log;
  std::string remoteLog;
  std::optional<std::size_t> labels;
  std::optional<std::size_t> strongest;
  std::optional<std::uint32_t> codePage;
  std::optional<std::uint32_t> mapPage;
  std::optional<std::uint32_t> pointsPage;
  std::optional<std::uint32_t> citiesPage;
  std::optional<std::uint32_t> riversPage;
  bool last = false;
};

/// Returns a check of the parser: `parse` must return something for the text.
template <class Parse>
auto MustParse(Parse parse, const char* complaint) {
  return [=](const std::string& text) {
    return parse(FromUtf8(text)) ? std::string() : "'" + text + "' " + complaint;
  };
}

std::string CheckWindow(const std::string& text) {
  const GString fault = FaultOfWindow(FromUtf8(text));
  return fault.empty() ? std::string() : "'" + text + "' " + fault.ToUtf8();
}

std::string CheckColors(const std::string& text) {
  return FaultOfColors(FromUtf8(text)).ToUtf8();
}

void AddInputs(CLI::App& app, RawOptions& raw) {
  app.add_option("--map", raw.map, "Outlines of countries")->type_name("FILE");
  app.add_option("--points", raw.points, "Table of events: latitude, longitude, magnitude ...")
      ->type_name("FILE");
  app.add_option("--cities", raw.cities, "Table of cities: name, country, lat, lon, population")
      ->type_name("FILE");
  app.add_option("--rivers", raw.rivers, "Lines of rivers; no rivers unless told")
      ->type_name("FILE");
  app.add_option("--attributes", raw.attributes, "Table of countries: name, continent")
      ->type_name("FILE");
  const auto addPage = [&](const char* name, std::optional<std::uint32_t>& page, const char* text) {
    app.add_option(name, page, text)->type_name("N")->check(CheckCodePage);
  };
  addPage("--codepage", raw.codePage, "Code page of inputs without a byte-order mark");
  addPage("--map-codepage", raw.mapPage, "The same for --map alone");
  addPage("--points-codepage", raw.pointsPage, "The same for --points alone");
  addPage("--cities-codepage", raw.citiesPage, "The same for --cities alone");
  addPage("--rivers-codepage", raw.riversPage, "The same for --rivers alone");
}

void AddSettings(CLI::App& app, RawOptions& raw, Options& options) {
  app.add_option("--window", raw.window, "Part of the world to show, in degrees")
      ->type_name("W,S,E,N")
      ->check(CheckWindow);
  app.add_option("--clip", raw.clip,
                 "Show only what lies in a country or a polygon: a name, WKT, GeoJSON, or @FILE")
      ->type_name("AREA");
  app.add_option("--union-continent", raw.continent, "Unite the countries of a continent")
      ->type_name("NAME");
  app.add_option("--colors", raw.colors,
                 "Colors from few events to many, by name or #rrggbb; two or more")
      ->type_name("C,C...")
      ->check(CheckColors);
  app.add_option("--title", raw.title, "Title of the map and the report")->type_name("TEXT");
  app.add_option("--labels", raw.labels, "Most city names on the map")
      ->type_name("N")
      ->check(CLI::Range(0, MOST_ROWS));
  app.add_option("--strongest", raw.strongest, "Rows of the table of strongest events")
      ->type_name("N")
      ->check(CLI::Range(0, MOST_ROWS));
  app.add_option("--dashes", raw.dashes,
                 "Dash pattern of rivers: drawn and left out in turn, in pixels; or solid")
      ->type_name("N,N...")
      ->check(MustParse(ParseDashes, "is no dash pattern; it takes lengths in pixels, or solid"));
  app.add_option("--config", raw.config, "Take inputs and choices from a settings file (INI)")
      ->type_name("FILE");
  app.add_flag("--last", raw.last, "Use the window and the colors that --remember kept");
  app.add_flag("--remember", options.remember, "Keep the window and the colors for --last");
}

void AddOutputs(CLI::App& app, RawOptions& raw, Options& options) {
  app.add_option("--out", raw.out,
                 "Folder for map.svg, overview.svg and report.html; made when missing")
      ->type_name("DIR")
      ->required();
  app.add_option("--load", raw.load, "Begin with a saved map instead of inputs")
      ->type_name("FILE")
      ->excludes("--map", "--points", "--cities", "--rivers", "--attributes", "--config", "--last");
  app.add_option("--save", raw.save, "Save the map with all that was done to it")
      ->type_name("FILE");
  app.add_option("--geojson", raw.geojson,
                 "Write the united continent, or else the visible countries, as GeoJSON")
      ->type_name("FILE");
  app.add_flag("--csv", options.csv, "Write the tables of the report as CSV files beside it, too");
  app.add_option("--undo", options.undo,
                 "Take the last N steps back and do them again; the report tells them")
      ->type_name("N")
      ->check(CLI::Range(0, MOST_ROWS));
  app.add_option("--log", raw.log, "Begin a log file (UTF-16LE)")->type_name("FILE");
  app.add_option("--remote-log", raw.remoteLog, "Send log lines to a collector, as UDP datagrams")
      ->type_name("HOST:PORT")
      ->check(MustParse(ParseRemoteLog, "is no HOST:PORT"));
  app.add_flag("--quiet", options.quiet, "Write nothing but errors");
}

/// The command line names the input, else the settings file, else it is looked for beside the
/// program.
TextInput MakeInput(const std::string& path, const GString& setting, const wchar_t* defaultName,
                    std::optional<std::uint32_t> page) {
  if (!path.empty()) return TextInput{FromUtf8(path), page};
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
  return inputs;
}

Settings MakeSettings(const RawOptions& raw) {
  Settings settings;
  if (!raw.title.empty()) settings.title = FromUtf8(raw.title);
  if (!raw.window.empty()) settings.window = ParseWindow(FromUtf8(raw.window));
  if (!raw.clip.empty()) settings.clip = FromUtf8(raw.clip);
  if (!raw.continent.empty()) settings.continent = FromUtf8(raw.continent);
  if (!raw.colors.empty()) settings.ramp = ParseColors(FromUtf8(raw.colors));
  if (!raw.dashes.empty()) settings.dashes = ParseDashes(FromUtf8(raw.dashes));
  settings.labels = raw.labels;
  settings.strongest = raw.strongest;
  return settings;
}

void Complete(const RawOptions& raw, Options& options) {
  const SettingsFile file =
      raw.config.empty() ? SettingsFile() : ReadSettingsFile(FromUtf8(raw.config));
  options.inputs = MakeInputs(raw, file);
  options.settings = MakeSettings(raw);
  if (raw.last) options.settings.Complete(ReadLast(SETTINGS_KEY));
  options.settings.Complete(file.settings);
  options.load = FromUtf8(raw.load);
  options.save = FromUtf8(raw.save);
  options.geojson = FromUtf8(raw.geojson);
  options.log = FromUtf8(raw.log);
  if (!raw.remoteLog.empty()) options.remoteLog = ParseRemoteLog(FromUtf8(raw.remoteLog));
  options.outFolder = FromUtf8(raw.out);
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
  CLI::App app("Draws earthquakes and their countries as a map and an HTML report.", "mapreport");
  app.set_version_flag("--version", "mapreport " MAPREPORT_VERSION);
  app.footer(FOOTER);
  app.option_defaults()->group("Inputs");
  AddInputs(app, raw);
  app.option_defaults()->group("The map");
  AddSettings(app, raw, result.options);
  app.option_defaults()->group("Outputs and steps");
  AddOutputs(app, raw, result.options);
  static_cast<ParsedArguments&>(result) = ParseArguments(app, arguments);
  if (result.action != CommandLine::Action::Run) return result;
  Complete(raw, result.options);
  return CheckInputs(std::move(result));
}

}  // namespace mapreport
