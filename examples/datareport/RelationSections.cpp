// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/datareport/RelationSections.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "examples/common/NumberText.h"
#include "examples/datareport/ColumnSections.h"
#include "examples/datareport/Relations.h"
#include "shared/numerics/statistics/SpatialStatistics.h"
#include "shared/plots/HeatMap.h"
#include "shared/plots/NumberText.h"
#include "shared/plots/StatisticalPlots.h"

namespace datareport {

using namespace shr;
using namespace examples;

namespace {

constexpr int DIGITS = 6;
constexpr std::size_t MOST_IN_MATRIX = 6;
constexpr double MAP_WIDTH = 760;
constexpr double LEAST_MAP_HEIGHT = 260;
constexpr double MOST_MAP_HEIGHT = 900;

std::vector<GString> NamesOf(const DataTable& table, const Relations& relations) {
  std::vector<GString> names;
  for (const std::size_t column : relations.columns) names.push_back(table.columns[column].Label());
  return names;
}

void WriteMatrix(CHtmlReport& report, const std::vector<GString>& names, const Relations& relations,
                 SvgTextMode textMode, ReportFiles& files) {
  std::vector<NamedSample> samples;
  for (std::size_t i = 0; i < std::min(names.size(), MOST_IN_MATRIX); ++i) {
    samples.push_back({names[i], relations.values[i]});
  }
  report << Heading(3, "Scatter plots");
  AddPicture(report, files, L"scatter-matrix.svg", L"Scatter plots of each pair of columns",
             DrawScatterMatrix(
                 samples, {.title = L"Each pair of columns", .textMode = textMode, .width = 960}));
  if (names.size() > MOST_IN_MATRIX) {
    WriteNote(report, L"The first " + FormatCount(MOST_IN_MATRIX) + L" columns of numbers.");
  }
}

void WriteCorrelations(CHtmlReport& report, const std::vector<GString>& names,
                       const Relations& relations, SvgTextMode textMode, ReportFiles& files) {
  HeatMapOptions options{
      .rows = names, .columns = names, .isDiverging = true, .textMode = textMode};
  options.range = {-1, 1};
  report << Heading(3, "Correlations") << "<DIV CLASS=\"side\">\n";
  options.title = L"Pearson's correlation";
  AddPicture(report, files, L"correlation-pearson.svg", options.title,
             DrawHeatMap(relations.pearson, options));
  options.title = L"Spearman's rank correlation";
  AddPicture(report, files, L"correlation-spearman.svg", options.title,
             DrawHeatMap(relations.spearman, options));
  report << "</DIV>\n";
}

std::string DrawScree(const std::vector<double>& shares, SvgTextMode textMode) {
  std::vector<double> edges;
  std::vector<double> numbers;
  std::vector<double> sums;
  double sum = 0;
  for (std::size_t i = 0; i < shares.size(); ++i) {
    edges.push_back(static_cast<double>(i) + 0.6);
    edges.push_back(static_cast<double>(i) + 1.4);
    numbers.push_back(static_cast<double>(i) + 1);
    sums.push_back(sum += shares[i]);
  }
  Plot plot({.title = L"Share of the variance",
             .xLabel = L"Principal component",
             .yLabel = L"Share",
             .xRange = {{0.5, static_cast<double>(shares.size()) + 0.5}},
             .yRange = {{0, 1.02}},
             .textMode = textMode,
             .width = 520,
             .height = 340});
  // Bars with gaps: every other one has no height.
  std::vector<double> heights;
  for (std::size_t i = 0; i < shares.size(); ++i) {
    if (i > 0) heights.push_back(0);
    heights.push_back(shares[i]);
  }
  plot.AddBars(edges, heights, L"Of the component");
  plot.AddLine(numbers, sums, L"Of all up to it");
  return plot.Draw();
}

void WriteComponents(CHtmlReport& report, const std::vector<GString>& names,
                     const Relations& relations, SvgTextMode textMode, ReportFiles& files) {
  if (relations.eigenvalues.empty()) return;
  const double total =
      std::accumulate(relations.eigenvalues.begin(), relations.eigenvalues.end(), 0.0);
  std::vector<double> shares;
  HeatMapOptions options{
      .title = L"Loadings of the principal components", .isDiverging = true, .textMode = textMode};
  options.range = {-1, 1};
  for (const std::size_t index : relations.components) options.rows.push_back(names[index]);
  report << Heading(3, "Principal components");
  WriteNote(report, L"Of the standardised columns, that is, of their correlation matrix.");
  report << "<DIV CLASS=\"side\">\n<DIV>\n";
  BeginTable(report, "Principal components",
             {{"Component"}, {"Eigenvalue", true}, {"Share", true}, {"Together", true}});
  double sum = 0;
  for (std::size_t i = 0; i < relations.eigenvalues.size(); ++i) {
    const GString name(std::to_wstring(i + 1));
    options.columns.push_back(name);
    shares.push_back(relations.eigenvalues[i] / total);
    sum += shares.back();
    report << TRBeg();
    Cell(report, name);
    NumberCell(report, SignificantText(relations.eigenvalues[i], DIGITS));
    NumberCell(report, SignificantText(100 * shares.back(), 3) + L" %");
    NumberCell(report, SignificantText(100 * sum, 3) + L" %");
    report << TREnd();
  }
  EndTable(report);
  report << "</DIV>\n<DIV>\n";
  AddPicture(report, files, L"components-scree.svg", L"Share of the variance by component",
             DrawScree(shares, textMode));
  report << "</DIV>\n<DIV>\n";
  AddPicture(report, files, L"components-loadings.svg", options.title,
             DrawHeatMap(relations.loadings, options));
  report << "</DIV>\n</DIV>\n";
}

/// Returns how much longer a degree of latitude is than one of longitude where both columns are
/// such, and 1 for plane coordinates.
double UnitRatio(const GString& xName, const GString& yName, double middle) {
  const auto is = [](GString name, const wchar_t* begin) {
    return name.MakeLower().starts_with(begin);
  };
  constexpr double RADIANS = 3.14159265358979323846 / 180;
  constexpr double FARTHEST = 80;
  if (!is(xName, L"lon") && !is(xName, L"lng")) return 1;
  if (!is(yName, L"lat")) return 1;
  return 1 / std::cos(std::clamp(middle, -FARTHEST, FARTHEST) * RADIANS);
}

/// Returns the height at which the map has little beside the places.
double MapHeight(const ExactMoments& x, const ExactMoments& y, double ratio) {
  constexpr double AROUND_X = 90;
  constexpr double AROUND_Y = 105;
  const double width = x.Maximum() / 2 - x.Minimum() / 2;
  const double height = (y.Maximum() / 2 - y.Minimum() / 2) * ratio;
  if (!(width > 0) || !(height > 0)) return LEAST_MAP_HEIGHT;
  return std::clamp((MAP_WIDTH - AROUND_X) * (height / width) + AROUND_Y, LEAST_MAP_HEIGHT,
                    MOST_MAP_HEIGHT);
}

struct Places {
  std::vector<double> x;
  std::vector<double> y;
  std::vector<Vec3d> points;
};

Places PlacesOf(const DataTable& table, std::size_t x, std::size_t y,
                std::optional<std::size_t> z) {
  const std::vector<double> xs = table.Sample(x);
  const std::vector<double> ys = table.Sample(y);
  const std::vector<double> zs = z ? table.Sample(*z) : std::vector<double>(xs.size(), 0.0);
  Places places;
  for (std::size_t i = 0; i < xs.size(); ++i) {
    if (std::isnan(xs[i]) || std::isnan(ys[i]) || std::isnan(zs[i])) continue;
    places.x.push_back(xs[i]);
    places.y.push_back(ys[i]);
    places.points.emplace_back(xs[i], ys[i], zs[i]);
  }
  return places;
}

CSpatialStatistics StatisticsOf(const std::vector<Vec3d>& points) {
  CSpatialStatistics statistics;
  try {
    Load(statistics, points);
  } catch (const std::bad_cast&) {
    // A distance is too large for a histogram; what was found so far is shown.
  }
  return statistics;
}

void WriteNeighbours(CHtmlReport& report, const CSpatialStatistics& s, bool hasZ) {
  const CUnivariateStatistics& d = s.distances;
  BeginTable(report, "Nearest neighbours", {{"Statistic"}, {"Value", true}});
  NumberRow(report, L"Points", FormatCount(s.count));
  const std::pair<const wchar_t*, double> rows[] = {
      {L"Least distance", d.minimum},
      {L"Median distance", d.median},
      {L"Mean distance", d.mean},
      {L"95th percentile", d.percentile95},
      {L"Largest distance", d.maximum},
      {L"Standard deviation", d.stdDev},
      {L"Points per unit of area", s.density},
      {L"Nearest-neighbour ratio (Clark and Evans)", s.neighbourRatio},
      {L"Skellam's statistic", s.skellam},
  };
  for (const auto& [name, value] : rows) NumberRow(report, name, SignificantText(value, DIGITS));
  if (hasZ) {
    NumberRow(report, L"Median difference of z", SignificantText(s.zDifferences.median, DIGITS));
    NumberRow(report, L"Mean difference of z", SignificantText(s.zDifferences.mean, DIGITS));
  }
  EndTable(report);
  WriteNote(report,
            L"Distances are in the unit of the columns. A ratio of 1 is that of points "
            L"thrown at random; less is clustered, more is spread out.");
}

}  // namespace

void WriteRelations(CHtmlReport& report, const DataTable& table, const Options& options,
                    ReportFiles& files) {
  const Relations relations = FindRelations(table);
  if (relations.columns.size() < 2) return;
  const std::vector<GString> names = NamesOf(table, relations);
  report << Heading(2, "Relations of the columns");
  GString note = L"Of " + FormatCount(relations.rows, L"row", L"rows") +
                 L" that have a number in each of these columns. " + SampleNote(table);
  if (relations.leftOut > 0) {
    note += L" " + FormatCount(relations.leftOut, L"column", L"columns") +
            L" left out: more than a fifth is missing, or there are too many.";
  }
  WriteNote(report, note);
  WriteMatrix(report, names, relations, options.textMode, files);
  WriteCorrelations(report, names, relations, options.textMode, files);
  WriteComponents(report, names, relations, options.textMode, files);
}

void WritePlaces(CHtmlReport& report, const DataTable& table, const Options& options,
                 ReportFiles& files) {
  if (options.x.empty()) return;
  const std::size_t x = table.FindNumbers(options.input, options.x);
  const std::size_t y = table.FindNumbers(options.input, options.y);
  std::optional<std::size_t> z;
  if (!options.z.empty()) z = table.FindNumbers(options.input, options.z);
  const Places places = PlacesOf(table, x, y, z);
  const CSpatialStatistics statistics = StatisticsOf(places.points);
  const GString& xName = table.columns[x].Name();
  const GString& yName = table.columns[y].Name();
  const double middle =
      (table.columns[y].Numbers().Minimum() + table.columns[y].Numbers().Maximum()) / 2;
  const double ratio = UnitRatio(xName, yName, middle);
  Plot plot({.title = L"Map of the places",
             .description = L"A dot for each row.",
             .xLabel = table.columns[x].Label(),
             .yLabel = table.columns[y].Label(),
             .unitRatio = ratio,
             .note = SampleNote(table),
             .textMode = options.textMode,
             .width = MAP_WIDTH,
             .height = MapHeight(table.columns[x].Numbers(), table.columns[y].Numbers(), ratio)});
  plot.AddPoints(places.x, places.y);
  plot.AddLeftOut(table.sample.rows - places.points.size());
  report << Heading(2, "Places") << "<DIV CLASS=\"side\">\n<DIV>\n";
  WriteNeighbours(report, statistics, z.has_value());
  report << "</DIV>\n<DIV>\n";
  AddPicture(report, files, L"map.svg", L"Map of the places", plot.Draw());
  report << "</DIV>\n</DIV>\n";
}

}  // namespace datareport
