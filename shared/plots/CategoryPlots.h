// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws one row for each category, as SVG: bars of counts, and box plots of samples.
///
///     std::string chart = DrawBarChart(bars, {.title = L"Most frequent countries"});
///     const BoxSummary boxes[] = {SummarizeBox(L"Depth", depths)};
///     std::string picture = DrawBoxPlots(boxes, {.title = L"Depth", .xLabel = L"km"});
///
/// Units: sizes are CSS pixels; the height follows from the rows. Bytes: the same on both targets.
/// Threads: any.

#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "shared/Export.h"
#include "shared/plots/PlotAxis.h"
#include "shared/plots/SvgTextMode.h"
#include "shared/text/GString.h"

namespace shr {

/// What plots of categories look like. Titles, labels and names are math text as in
/// shared/plots/Plot.h.
struct CategoryOptions {
  GString title{};
  GString description{};
  GString xLabel{};
  ScaleKind xScale = ScaleKind::Linear;  ///< of box plots; bars begin at zero
  GString note{};                        ///< a line at the bottom of box plots
  SvgTextMode textMode = SvgTextMode::Text;
  double width = 640;
};

/// A bar and what it stands for.
struct CategoryBar {
  GString name;
  double value = 0;
};

/// Returns bars to the right, the first on top, each with its name and value. Values that are
/// negative or no finite number have no bar and a dash. Degenerate: without bars "No data".
SHARED_API std::string DrawBarChart(std::span<const CategoryBar> bars,
                                    const CategoryOptions& options);

/// What a box plot shows of a sample.
struct BoxSummary {
  GString name;
  std::size_t count = 0;    ///< values that the box is made of
  std::size_t leftOut = 0;  ///< others
  double lowWhisker = std::numeric_limits<double>::quiet_NaN();
  double lowQuartile = lowWhisker;
  double median = lowWhisker;
  double highQuartile = lowWhisker;
  double highWhisker = lowWhisker;
  std::vector<double> outliers{};  ///< beyond the whiskers, ascending
};

/// Summarizes the finite values. Quartiles are the elements at (n - 1) / 4 and (3n - 3) / 4 of the
/// sorted sample, as in shared/numerics/statistics; the median is the mean of the middle two.
/// Whiskers reach to the last value within 1.5 times the distance of the quartiles from them.
/// Degenerate: without a value all are NaN. Cost: O(n log n).
/// Source: J. W. Tukey, "Exploratory Data Analysis", 1977, section 2C.
SHARED_API BoxSummary SummarizeBox(const GString& name, std::span<const double> values);

/// Returns a box plot for each summary, the first on top. Outliers of one pixel are drawn once.
/// Degenerate: without any value "No data".
SHARED_API std::string DrawBoxPlots(std::span<const BoxSummary> boxes,
                                    const CategoryOptions& options);

}  // namespace shr
