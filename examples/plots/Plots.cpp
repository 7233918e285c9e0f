// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Draws one plot of each kind from the data of the examples: the pictures of docs/plots.md.
//
//     plots examples/data/earthquakes.csv pictures

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "examples/common/CommandLine.h"
#include "examples/common/OutputFiles.h"
#include "examples/common/Program.h"
#include "examples/common/TableReader.h"
#include "shared/files/Path.h"
#include "shared/platform/Console.h"
#include "shared/plots/CategoryPlots.h"
#include "shared/plots/HeatMap.h"
#include "shared/plots/Plot.h"
#include "shared/plots/StatisticalPlots.h"
#include "shared/plots/TimeText.h"

using namespace shr;
using examples::ExitStatus;

namespace {

constexpr const wchar_t* PROGRAM = L"plots";

/// The earthquakes of a week.
struct Events {
  std::vector<double> time;  // seconds since 1970
  std::vector<double> latitude;
  std::vector<double> longitude;
  std::vector<double> depth;      // km
  std::vector<double> magnitude;  // NaN where it is not known
};

Events ReadEvents(const GString& path) {
  examples::TableReader table(path, examples::DetectTextFormat(path, std::nullopt));
  constexpr double MISSING = std::numeric_limits<double>::quiet_NaN();
  Events events;
  const std::size_t time = table.Column({L"time"});
  const std::pair<std::size_t, std::vector<double>*> columns[] = {
      {table.Column({L"latitude"}), &events.latitude},
      {table.Column({L"longitude"}), &events.longitude},
      {table.Column({L"depth"}), &events.depth},
      {table.Column({L"magnitude"}), &events.magnitude}};
  while (table.NextRow()) {
    events.time.push_back(ParseTime(table.Field(time)).value_or(MISSING));
    for (const auto& [column, values] : columns) {
      values->push_back(table.OptionalNumber(column).value_or(MISSING));
    }
  }
  return events;
}

// [scatter]
std::string Scatter(const Events& events) {
  Plot plot({.title = L"Magnitude and depth of earthquakes",
             .description = L"One dot for each earthquake of a week.",
             .xLabel = L"Magnitude",
             .yLabel = L"Depth (km)"});
  plot.AddPoints(events.magnitude, events.depth, L"Earthquakes");
  const LineFit fit = FitLine(events.magnitude, events.depth);
  plot.AddSlope(fit.slope, fit.intercept, L"Regression");
  return plot.Draw();
}
// [end]

// [histogram]
std::string Histogram(const Events& events) {
  return DrawHistogram(events.magnitude,
                       {.title = L"Magnitudes of a week", .xLabel = L"Magnitude"});
}
// [end]

// [logarithmic]
std::string Distribution(const Events& events) {
  return DrawDistribution(
      events.depth,
      {.title = L"Depths of a week", .xLabel = L"Depth (km)", .xScale = ScaleKind::Log});
}
// [end]

// [box]
std::string Boxes(const Events& events) {
  std::vector<double> north;
  std::vector<double> south;
  for (std::size_t i = 0; i < events.magnitude.size(); ++i) {
    (events.latitude[i] < 0 ? south : north).push_back(events.magnitude[i]);
  }
  const BoxSummary boxes[] = {SummarizeBox(L"North", north), SummarizeBox(L"South", south)};
  return DrawBoxPlots(boxes, {.title = L"Magnitudes by hemisphere", .xLabel = L"Magnitude"});
}
// [end]

// [time]
std::string Timeline(const Events& events) {
  std::vector<double> counts;
  for (std::size_t i = 0; i < events.time.size(); ++i) {
    counts.push_back(static_cast<double>(i + 1));
  }
  Plot plot({.title = L"Earthquakes counted over a week",
             .xLabel = L"Time (UTC)",
             .yLabel = L"Earthquakes so far",
             .xScale = ScaleKind::Time,
             .yFromZero = true});
  plot.AddSteps(events.time, counts);
  return plot.Draw();
}
// [end]

// [heat]
std::string Correlations(const Events& events) {
  const std::vector<GString> names{L"Latitude", L"Longitude", L"Depth", L"Magnitude"};
  const std::vector<double>* const columns[] = {&events.latitude, &events.longitude, &events.depth,
                                                &events.magnitude};
  std::vector<double> values;
  for (const auto* row : columns) {
    for (const auto* column : columns) values.push_back(FitLine(*row, *column).correlation);
  }
  return DrawHeatMap(values, {.title = L"Correlations of earthquakes",
                              .rows = names,
                              .columns = names,
                              .isDiverging = true,
                              .range = {{-1, 1}}});
}
// [end]

std::string Matrix(const Events& events) {
  const NamedSample samples[] = {{L"Latitude", events.latitude},
                                 {L"Longitude", events.longitude},
                                 {L"Depth", events.depth},
                                 {L"Magnitude", events.magnitude}};
  return DrawScatterMatrix(samples, {.title = L"Earthquakes of a week", .width = 720});
}

// [bars]
std::string Classes(const Events& events) {
  std::vector<CategoryBar> bars{
      {L"Shallow, to 70 km", 0}, {L"Intermediate, to 300 km", 0}, {L"Deep", 0}};
  for (const double depth : events.depth) ++bars[depth <= 70 ? 0 : depth <= 300 ? 1 : 2].value;
  return DrawBarChart(bars, {.title = L"Earthquakes by depth"});
}
// [end]

// [arrows]
std::string Arrows() {
  const std::vector<Vec2d> from{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {5, 5}};
  const std::vector<Vec2d> to{{0.6, 0.3}, {10.2, 0.9}, {9.4, 9.6}, {-0.5, 10.4}, {5.3, 4.6}};
  Plot plot({.title = L"Displacement of control points",
             .xLabel = L"East (m)",
             .yLabel = L"North (m)",
             .unitRatio = 1});
  plot.AddArrows(from, to);
  return plot.Draw();
}
// [end]

// [markup]
std::string Markup(const Events& events) {
  // The stroked face comes with the library, so that this picture is the same on every machine.
  const GString face = L"\\f\"Shared Stroke\"";
  return DrawHistogram(
      events.depth, {.title = face + L"Depth h{\\dn25\\fs70 0} of {\\color(firebrick)earthquakes}",
                     .xLabel = face + L"h{\\dn25\\fs70 0} (km)",
                     .xScale = ScaleKind::Log});
}
// [end]

std::string Empty() {
  return DrawHistogram({}, {.title = L"Nothing to draw", .xLabel = L"Value"});
}

ExitStatus Run(const GString& data, const GString& folder) {
  const Events events = ReadEvents(data);
  const std::pair<const wchar_t*, std::string> pictures[] = {
      {L"scatter.svg", Scatter(events)},
      {L"histogram.svg", Histogram(events)},
      {L"distribution.svg", Distribution(events)},
      {L"boxes.svg", Boxes(events)},
      {L"timeline.svg", Timeline(events)},
      {L"heat-map.svg", Correlations(events)},
      {L"matrix.svg", Matrix(events)},
      {L"bars.svg", Classes(events)},
      {L"arrows.svg", Arrows()},
      {L"markup.svg", Markup(events)},
      {L"empty.svg", Empty()}};
  examples::OutputFiles files(folder);
  for (const auto& [name, picture] : pictures) files.Add(CPath(folder).Join(name), picture);
  files.Commit();
  return ExitStatus::Success;
}

ExitStatus RunArguments(const std::vector<GString>& arguments) {
  examples::ArgumentParser parser("plots", "Draws one plot of each kind from earthquakes.",
                                  PLOTS_VERSION);
  GString data, folder;
  parser.AddText("EARTHQUAKES", data, "FILE", "The table earthquakes.csv of the examples")
      .Required();
  parser.AddText("FOLDER", folder, "DIR", "Folder for the pictures; made when missing").Required();
  const examples::ParsedArguments parsed = parser.Parse(arguments);
  return examples::RunParsed(PROGRAM, parsed, [&] { return Run(data, folder); });
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::vector<GString> arguments = platform::ProgramArguments(argc, argv);
  return static_cast<int>(examples::RunProgram(PROGRAM, [&] { return RunArguments(arguments); }));
}
