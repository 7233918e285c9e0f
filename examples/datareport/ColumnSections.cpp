// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/datareport/ColumnSections.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <typeinfo>
#include <utility>

#include "examples/common/NumberText.h"
#include "shared/mathtext/Context.h"
#include "shared/mathtext/MathTextHtml.h"
#include "shared/numerics/statistics/UnivariateStatistics.h"
#include "shared/plots/CategoryPlots.h"
#include "shared/plots/NumberText.h"
#include "shared/plots/StatisticalPlots.h"
#include "shared/plots/TimeText.h"

namespace datareport {

using namespace shr;
using namespace examples;

namespace {

constexpr int DIGITS = 6;
constexpr double PICTURE_WIDTH = 640;
constexpr double PICTURE_HEIGHT = 340;

const wchar_t* KindText(ColumnKind kind) {
  switch (kind) {
    case ColumnKind::Numbers:
      return L"numbers";
    case ColumnKind::Times:
      return L"times";
    case ColumnKind::Text:
      return L"text";
    default:
      return L"empty";
  }
}

GString Number(double value) {
  return SignificantText(value, DIGITS);
}

GString Moment(double seconds) {
  return TimeText(seconds, TimePrecision::Second);
}

std::vector<double> WithoutMissing(std::vector<double> values) {
  std::erase_if(values, [](double value) { return std::isnan(value); });
  return values;
}

/// A column of which the largest values are a thousand times the small ones is drawn on a
/// logarithmic scale.
ScaleKind ScaleOf(const CUnivariateStatistics& statistics) {
  constexpr double WIDE = 1000;
  const bool isWide =
      statistics.minimum > 0 && statistics.percentile99 > WIDE * statistics.percentile01;
  return isWide ? ScaleKind::Log : ScaleKind::Linear;
}

/// The values of the statistics in the order of the table. Those of all rows come first.
void WriteStatistics(CHtmlReport& report, const ColumnProfile& column,
                     const CUnivariateStatistics& s, bool isSampled) {
  const ExactMoments& all = column.Numbers();
  const double deviation = std::sqrt(all.Variance());
  const std::pair<const wchar_t*, double> exact[] = {
      {L"Minimum", all.Minimum()},
      {L"Maximum", all.Maximum()},
      {L"Mean", all.Mean()},
      {L"Standard deviation", deviation},
      {L"Variance", all.Variance()},
      {L"Standard error of the mean", deviation / std::sqrt(static_cast<double>(all.Count()))},
  };
  const std::pair<const wchar_t*, double> others[] = {
      {L"Median", s.median},
      {L"1st percentile", s.percentile01},
      {L"5th percentile", s.percentile05},
      {L"10th percentile", s.percentile10},
      {L"25th percentile", s.percentile25},
      {L"75th percentile", s.percentile75},
      {L"90th percentile", s.percentile90},
      {L"95th percentile", s.percentile95},
      {L"99th percentile", s.percentile99},
      {L"Interquartile range", s.interQuartileRange},
      {L"Median absolute deviation", s.medianAbsDev},
      {L"Average absolute deviation", s.avgAbsDev},
      {L"Mean difference (Gini)", s.meanDiff},
      {L"Relative mean difference", s.relativeMeanDiff},
      {L"Coefficient of variation", s.coefVariation},
      {L"Quartile coefficient of dispersion", s.quartileCoefDisp},
      {L"Skewness", s.skewness},
      {L"Kurtosis", s.kurtosis},
      {L"Trimmed mean (5 % to 95 %)", s.trimMean},
      {L"Interquartile mean", s.interQuartileMean},
      {L"Winsorized mean", s.winsorizedMean},
      {L"Trimean", s.triMean},
      {L"Midrange", s.midrange},
      {L"Geometric mean", s.geometricMean},
      {L"Harmonic mean", s.harmonicMean},
      {L"Root mean square", s.rootMeanSquare},
  };
  BeginTable(report, "Summary of the column", {{"Statistic"}, {"Value", true}});
  NumberRow(report, L"Count", FormatCount(all.Count()));
  NumberRow(report, L"Missing", FormatCount(column.Missing()));
  if (column.Odd() > 0) NumberRow(report, L"No numbers", FormatCount(column.Odd()));
  for (const auto& [name, value] : exact) NumberRow(report, name, Number(value));
  for (const auto& [name, value] : others) {
    if (std::isnan(value)) continue;
    NumberRow(report, isSampled ? GString(name) + L" *" : GString(name), Number(value));
  }
  EndTable(report);
}

GString FileName(std::size_t column, const wchar_t* what) {
  GString number(std::to_wstring(column + 1));
  if (number.size() < 2) number = L"0" + number;
  return L"column-" + number + L"-" + what + L".svg";
}

/// Histogram, box plot and distribution; a column of times has no box plot.
void WriteShape(CHtmlReport& report, const DataTable& table, std::size_t column,
                const std::vector<double>& values, ScaleKind scale, SvgTextMode textMode,
                ReportFiles& files) {
  const GString& name = table.columns[column].Label();
  const GString note = SampleNote(table);
  const PlotOptions histogram{.title = L"Histogram of " + name,
                              .xLabel = name,
                              .xScale = scale,
                              .note = note,
                              .textMode = textMode,
                              .width = PICTURE_WIDTH,
                              .height = PICTURE_HEIGHT};
  AddPicture(report, files, FileName(column, L"histogram"), histogram.title,
             DrawHistogram(values, histogram));
  if (scale != ScaleKind::Time) {
    const BoxSummary box = SummarizeBox(L"", values);
    const GString title = L"Box plot of " + name;
    AddPicture(report, files, FileName(column, L"box"), title,
               DrawBoxPlots(std::span(&box, 1), {.title = title,
                                                 .xLabel = name,
                                                 .xScale = scale,
                                                 .note = note,
                                                 .textMode = textMode,
                                                 .width = PICTURE_WIDTH}));
  }
  const PlotOptions distribution{.title = L"Empirical distribution of " + name,
                                 .xLabel = name,
                                 .xScale = scale,
                                 .note = note,
                                 .textMode = textMode,
                                 .width = PICTURE_WIDTH,
                                 .height = PICTURE_HEIGHT};
  AddPicture(report, files, FileName(column, L"distribution"), distribution.title,
             DrawDistribution(values, distribution));
}

CUnivariateStatistics StatisticsOf(std::vector<double>& values) {
  CUnivariateStatistics statistics;
  try {
    Load(statistics, values);
  } catch (const std::bad_cast&) {
    // The range is too large for the histogram, which comes last and is not shown.
  }
  return statistics;
}

void WriteNumbers(CHtmlReport& report, const DataTable& table, std::size_t column,
                  SvgTextMode textMode, ReportFiles& files) {
  const std::vector<double> values = WithoutMissing(table.Sample(column));
  std::vector<double> reordered = values;
  const CUnivariateStatistics statistics = StatisticsOf(reordered);
  report << "<DIV>\n";
  WriteStatistics(report, table.columns[column], statistics, table.IsSampled());
  if (table.IsSampled()) WriteNote(report, L"* of the sample");
  report << "</DIV>\n<DIV>\n";
  WriteShape(report, table, column, values, ScaleOf(statistics), textMode, files);
  report << "</DIV>\n";
}

void WriteTimes(CHtmlReport& report, const DataTable& table, std::size_t column,
                SvgTextMode textMode, ReportFiles& files) {
  const ColumnProfile& profile = table.columns[column];
  const ExactMoments& times = profile.Times();
  report << "<DIV>\n";
  BeginTable(report, "Summary of the column", {{"Statistic"}, {"Value", true}});
  NumberRow(report, L"Count", FormatCount(times.Count()));
  NumberRow(report, L"Missing", FormatCount(profile.Missing()));
  if (profile.Odd() > 0) NumberRow(report, L"No times", FormatCount(profile.Odd()));
  NumberRow(report, L"First (UTC)", Moment(times.Minimum()));
  NumberRow(report, L"Last (UTC)", Moment(times.Maximum()));
  NumberRow(report, L"Mean (UTC)", Moment(times.Mean()));
  NumberRow(report, L"Days from first to last",
            Number((times.Maximum() - times.Minimum()) / 86400));
  EndTable(report);
  report << "</DIV>\n<DIV>\n";
  WriteShape(report, table, column, WithoutMissing(table.Sample(column)), ScaleKind::Time, textMode,
             files);
  report << "</DIV>\n";
}

/// Tells how far the counts of a text column can be trusted.
GString CountsNote(const ColumnProfile& column) {
  const FrequentValues& values = column.Values();
  if (column.StoppedCounting()) {
    return L"The column began with numbers only; its values are not counted.";
  }
  if (values.Error() == 0) return GString();
  return L"There are too many different values to count each of them; counts may be too low by up "
         L"to " +
         FormatCount(values.Error()) + L".";
}

void WriteText(CHtmlReport& report, const DataTable& table, std::size_t column,
               const Options& options, ReportFiles& files) {
  const ColumnProfile& profile = table.columns[column];
  const FrequentValues& values = profile.Values();
  const std::uint64_t all = table.rows - profile.Missing();
  const bool isExact = values.Error() == 0;
  report << "<DIV>\n";
  BeginTable(report, "Most frequent values", {{"Value"}, {"Count", true}, {"Share", true}});
  std::vector<CategoryBar> bars;
  for (const auto& [text, count] : values.Most(options.frequent)) {
    report << TRBeg();
    Cell(report, text);
    NumberCell(report, FormatCount(count));
    const double share = 100 * static_cast<double>(count) / static_cast<double>(all);
    NumberCell(report, SignificantText(share, 3) + L" %");
    report << TREnd();
    bars.push_back({EscapeMathText(text), static_cast<double>(count)});
  }
  EndTable(report);
  GString note =
      FormatCount(all, L"value", L"values") + L", " + FormatCount(profile.Missing()) + L" missing";
  if (!profile.StoppedCounting()) {
    note += isExact ? L", " + FormatCount(values.Different()) + L" different."
                    : L", more than " + FormatCount(values.Different()) + L" different.";
  }
  WriteNote(report, note);
  WriteNote(report, CountsNote(profile));
  report << "</DIV>\n<DIV>\n";
  const GString title = L"Most frequent values of " + profile.Label();
  AddPicture(
      report, files, FileName(column, L"values"), title,
      DrawBarChart(bars, {.title = title, .textMode = options.textMode, .width = PICTURE_WIDTH}));
  report << "</DIV>\n";
}

}  // namespace

void WriteColumns(CHtmlReport& report, const DataTable& table) {
  report << Heading(2, "Columns");
  BeginTable(report, "Columns of the table",
             {{"Column"},
              {"Holds"},
              {"Values", true},
              {"Missing", true},
              {"Others", true},
              {"Minimum", true},
              {"Mean", true},
              {"Maximum", true},
              {"Standard deviation", true}});
  for (const ColumnProfile& column : table.columns) {
    const ColumnKind kind = column.Kind();
    const ExactMoments& all = kind == ColumnKind::Times ? column.Times() : column.Numbers();
    const GString none(L"\u2013");
    report << TRBeg();
    report << TD(MathTextToHtml(column.Label()));
    Cell(report, KindText(kind));
    NumberCell(report, FormatCount(table.rows - column.Missing() - column.Odd()));
    NumberCell(report, FormatCount(column.Missing()));
    NumberCell(report, FormatCount(column.Odd()));
    const bool isTime = kind == ColumnKind::Times;
    const bool isNumber = kind == ColumnKind::Numbers;
    for (const double value : {all.Minimum(), all.Mean(), all.Maximum()}) {
      NumberCell(report, isTime ? Moment(value) : isNumber ? Number(value) : none);
    }
    NumberCell(report, isNumber ? Number(std::sqrt(all.Variance())) : none);
    report << TREnd();
  }
  EndTable(report);
  WriteNote(report,
            L"All of these are of all rows. Others: cells of another kind than the column's.");
}

void WriteColumn(CHtmlReport& report, const DataTable& table, std::size_t column,
                 const Options& options, ReportFiles& files) {
  const ColumnKind kind = table.columns[column].Kind();
  if (kind == ColumnKind::Empty) return;
  report << Heading(2, MathTextToHtml(table.columns[column].Label())) << "<DIV CLASS=\"side\">\n";
  switch (kind) {
    case ColumnKind::Numbers:
      WriteNumbers(report, table, column, options.textMode, files);
      break;
    case ColumnKind::Times:
      WriteTimes(report, table, column, options.textMode, files);
      break;
    default:
      WriteText(report, table, column, options, files);
      break;
  }
  report << "</DIV>\n";
}

GString SampleNote(const DataTable& table) {
  if (!table.IsSampled()) return GString();
  return L"Of a sample of " + FormatCount(table.sample.rows) + L" of " + FormatCount(table.rows) +
         L" rows.";
}

void AddPicture(CHtmlReport& report, ReportFiles& files, const GString& name,
                const GString& alternative, std::string svg) {
  WritePicture(report, name, MathTextToSimpleText(alternative), svg);
  files.emplace_back(name, std::move(svg));
}

}  // namespace datareport
