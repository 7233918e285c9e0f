// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws plots of two axes as SVG: points, lines, steps, bars and arrows, with ticks, grid, legend,
/// text alternative, and colors for light and dark.
///
///     Plot plot({.title = L"Earthquakes", .xLabel = L"Magnitude", .yLabel = L"Depth (km)"});
///     plot.AddPoints(magnitudes, depths, L"Events");
///     plot.AddSlope(2.5, -1, L"Regression");
///     std::string svg = plot.Draw();
///
/// For plots of one sample see shared/plots/StatisticalPlots.h, of tables shared/plots/HeatMap.h,
/// of categories shared/plots/CategoryPlots.h.
///
/// Units: data are in their own units, x to the right and y upwards; the size of the picture is in
/// CSS pixels. Missing values: what the scale has no place for (NaN, infinities, on a logarithmic
/// scale zero and below) is left out, counted, and told at the bottom of the plot. Without any data
/// a plot says "No data". Bytes: the same on both targets, where texts have markup or are outlines
/// if the faces are the same files.
///
/// Threads: one thread an object.

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "shared/Export.h"
#include "shared/geometry/Vec2.h"
#include "shared/plots/PlotAxis.h"
#include "shared/plots/SvgTextMode.h"
#include "shared/text/GString.h"

namespace shr {

/// What a plot looks like. Titles, labels, names of series and notes are math text of one line
/// (docs/math-text.md), to which `EscapeMathText` turns any text; markup that does not parse stands
/// for itself, and what is too long is cut with an ellipsis. The description is plain.
struct PlotOptions {
  GString title{};
  GString description{};  ///< for those who do not see; axes and counts are added to it
  GString xLabel{};
  GString yLabel{};
  ScaleKind xScale = ScaleKind::Linear;
  ScaleKind yScale = ScaleKind::Linear;
  std::optional<std::pair<double, double>> xRange{};  ///< ends of the axis instead of the data's
  std::optional<std::pair<double, double>> yRange{};
  bool yFromZero = false;  ///< the y axis shows zero
  /// Length of a unit of y over that of a unit of x, where both must keep to each other: 1 for
  /// plane coordinates. Linear scales only.
  std::optional<double> unitRatio{};
  GString note{};  ///< a line at the bottom: what was sampled, where data come from
  SvgTextMode textMode = SvgTextMode::Text;
  double width = 640;   ///< 160 or more
  double height = 400;  ///< 120 or more
};

/// A plot under construction. Names go to the legend, which is drawn when there are two or more of
/// them; a series without a name is not in it. Series take the colors of `SeriesColor` in turn.
///
/// Errors: spans of unlike size are an internal error.
class SHARED_API Plot {
public:
  explicit Plot(PlotOptions options) : options_(std::move(options)) {}

  /// Adds a dot for each pair; many are drawn smaller, and those of one pixel once.
  void AddPoints(std::span<const double> x, std::span<const double> y, const GString& name = {});

  /// Adds a line through the pairs in their order. A pair without a place interrupts it.
  /// Cost: of a long run with x rising at most four points a pixel are written.
  /// Source: U. Jugel, Z. Jerzak, G. Hackenbroich, V. Markl, "M4: A Visualization-Oriented Time
  /// Series Data Aggregation", VLDB 2014.
  void AddLine(std::span<const double> x, std::span<const double> y, const GString& name = {});

  /// Adds a line that keeps each y up to the next x, where it jumps.
  void AddSteps(std::span<const double> x, std::span<const double> y, const GString& name = {});

  /// Adds a bar from zero to `heights[i]` between `edges[i]` and `edges[i + 1]`. Requires: one edge
  /// more than heights. On a logarithmic y axis bars stand on its low end.
  void AddBars(std::span<const double> edges, std::span<const double> heights,
               const GString& name = {});

  /// Adds an arrow between each two places.
  void AddArrows(std::span<const Vec2d> from, std::span<const Vec2d> to, const GString& name = {});

  /// Adds the line y = slope x + intercept over the whole width. It takes no part in the choice of
  /// the axes. Linear and time scales only; elsewhere nothing is drawn.
  void AddSlope(double slope, double intercept, const GString& name = {});

  /// Counts values that the caller left out among those that the plot leaves out itself.
  void AddLeftOut(std::size_t count) { leftOut_ += count; }

  /// Returns the picture. The plot stays as it is and may grow further.
  [[nodiscard]] std::string Draw() const;

private:
  friend class PlotDrawing;

  enum class Kind { Points, Line, Steps, Bars, Arrows, Slope };
  struct Series {
    Kind kind;
    GString name;
    std::vector<double> x;
    std::vector<double> y;
  };

  void Add(Kind kind, std::span<const double> x, std::span<const double> y, const GString& name);

  PlotOptions options_;
  std::vector<Series> series_;
  std::size_t leftOut_ = 0;
};

}  // namespace shr
