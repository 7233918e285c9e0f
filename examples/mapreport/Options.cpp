// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <utility>

#include "shared/files/FileUtility.h"
#include "shared/files/Path.h"
#include "shared/platform/CodePages.h"
#include "shared/text/StringUtility.h"

namespace mapreport {

using namespace shr;

namespace {

constexpr std::uint32_t UTF8_PAGE = 65001;
constexpr double SMALLEST_SIDE = 0.01;
constexpr int MOST_ROWS = 100000;

GString FromUtf8(const std::string& text) {
  GString wide;
  wide.FromNarrow(text, UTF8_PAGE);
  return wide;
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
  std::string window;
  std::string out;
  std::string title;
  std::optional<std::uint32_t> codePage;
  std::optional<std::uint32_t> mapPage;
  std::optional<std::uint32_t> pointsPage;
  std::optional<std::uint32_t> citiesPage;
};

std::string CheckCodePage(const std::string& text) {
  unsigned int page = 0;
  if (StringToUnsigned(text, page) && platform::IsCodePageServed(page)) return std::string();
  return "'" + text + "' is no code page that this system has";
}

std::string CheckWindow(const std::string& text) {
  if (ParseWindow(FromUtf8(text))) return std::string();
  return "'" + text + "' is no window; it takes west,south,east,north in degrees";
}

void AddOptions(CLI::App& app, RawOptions& raw, Options& options) {
  app.add_option("--map", raw.map, "Outlines of countries")->type_name("FILE");
  app.add_option("--points", raw.points, "Table of events: latitude, longitude, magnitude ...")
      ->type_name("FILE");
  app.add_option("--cities", raw.cities, "Table of cities: name, country, lat, lon, population")
      ->type_name("FILE");
  app.add_option("--window", raw.window, "Part of the world to show, in degrees")
      ->type_name("W,S,E,N")
      ->check(CheckWindow);
  app.add_option("--out", raw.out, "Folder for map.svg and report.html; made when missing")
      ->type_name("DIR")
      ->required();
  app.add_option("--title", raw.title, "Title of the map and the report")->type_name("TEXT");
  app.add_option("--labels", options.labels, "Most city names on the map")
      ->type_name("N")
      ->check(CLI::Range(0, MOST_ROWS));
  app.add_option("--strongest", options.strongest, "Rows of the table of strongest events")
      ->type_name("N")
      ->check(CLI::Range(0, MOST_ROWS));
  const auto addPage = [&](const char* name, std::optional<std::uint32_t>& page, const char* text) {
    app.add_option(name, page, text)->type_name("N")->check(CheckCodePage);
  };
  addPage("--codepage", raw.codePage, "Code page of inputs without a byte-order mark");
  addPage("--map-codepage", raw.mapPage, "The same for --map alone");
  addPage("--points-codepage", raw.pointsPage, "The same for --points alone");
  addPage("--cities-codepage", raw.citiesPage, "The same for --cities alone");
  app.add_flag("--quiet", options.quiet, "Write nothing but errors");
}

TextInput MakeInput(const std::string& path, const wchar_t* defaultName,
                    std::optional<std::uint32_t> ownPage, std::optional<std::uint32_t> commonPage) {
  if (path.empty()) return TextInput{FindData(defaultName), std::nullopt};
  return TextInput{FromUtf8(path), ownPage ? ownPage : commonPage};
}

void Complete(const RawOptions& raw, Options& options) {
  options.map = MakeInput(raw.map, L"countries-50m.txt", raw.mapPage, raw.codePage);
  options.points = MakeInput(raw.points, L"earthquakes.csv", raw.pointsPage, raw.codePage);
  options.cities = MakeInput(raw.cities, L"cities-utf16le.csv", raw.citiesPage, raw.codePage);
  options.outFolder = FromUtf8(raw.out);
  if (!raw.title.empty()) options.title = FromUtf8(raw.title);
  if (!raw.window.empty()) options.window = *ParseWindow(FromUtf8(raw.window));
}

CommandLine UsageError(const GString& what) {
  CommandLine result;
  result.action = CommandLine::Action::UsageError;
  result.text = what + L" (mapreport --help tells the options)";
  return result;
}

CommandLine Text(const std::string& text) {
  CommandLine result;
  result.action = CommandLine::Action::ShowText;
  result.text = FromUtf8(text);
  if (result.text.empty() || result.text[result.text.size() - 1] != L'\n') result.text += L'\n';
  return result;
}

CommandLine CheckInputs(CommandLine result) {
  const Options& options = result.options;
  const std::pair<const wchar_t*, const TextInput*> inputs[] = {
      {L"--map", &options.map}, {L"--points", &options.points}, {L"--cities", &options.cities}};
  for (const auto& [name, input] : inputs) {
    if (input->path.empty()) {
      return UsageError(GString(name) + L" is required: no default data were found");
    }
  }
  if (options.outFolder.empty()) return UsageError(L"--out is empty");
  return result;
}

/// Returns the four numbers of a window, or an empty list.
std::vector<double> ParseNumbers(const GString& text) {
  std::vector<double> numbers;
  GString::size_type pos = 0;
  // A comma at the end announces a number that is not there.
  if (text.empty() || text[text.size() - 1] == L',') return {};
  while (pos < text.size()) {
    double value = 0;
    if (!text.ParseToken(pos, L',').ToDouble(value)) return {};
    numbers.push_back(value);
  }
  return numbers;
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<GString>& arguments) {
  CommandLine result;
  RawOptions raw;
  CLI::App app("Draws earthquakes and their countries as a map and an HTML report.", "mapreport");
  app.set_version_flag("--version", "mapreport " MAPREPORT_VERSION);
  app.footer("Exit status: 0 success, 1 an input cannot be used, 2 wrong usage.");
  AddOptions(app, raw, result.options);
  // The parser takes the arguments from the back.
  std::vector<std::string> reversed;
  for (std::size_t i = arguments.size(); i > 1; --i) {
    reversed.push_back(arguments[i - 1].ToNarrow(UTF8_PAGE));
  }
  try {
    app.parse(reversed);
    Complete(raw, result.options);
  } catch (const CLI::CallForHelp&) {
    return Text(app.help());
  } catch (const CLI::CallForVersion& version) {
    return Text(version.what());
  } catch (const CLI::ParseError& error) {
    return UsageError(FromUtf8(error.what()));
  }
  return CheckInputs(std::move(result));
}

std::optional<Box2d> ParseWindow(const GString& text) {
  const std::vector<double> sides = ParseNumbers(text);
  if (sides.size() != 4) return std::nullopt;
  const double west = sides[0];
  const double south = sides[1];
  double east = sides[2];
  const double north = sides[3];
  // Written so that a number that is none fails each test.
  const bool onGlobe =
      west >= -180 && west <= 180 && east >= -180 && east <= 360 && south >= -90 && north <= 90;
  if (!onGlobe) return std::nullopt;
  if (east <= west) east += 360;
  const bool hasArea = north - south >= SMALLEST_SIDE && east - west >= SMALLEST_SIDE;
  if (!hasArea || east - west > 360) return std::nullopt;
  return west == 180 ? Box2d(-180, south, east - 360, north) : Box2d(west, south, east, north);
}

}  // namespace mapreport
