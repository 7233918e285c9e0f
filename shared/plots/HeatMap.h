// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws a table of numbers as colored cells, as SVG.
///
///     HeatMapOptions options{.title = L"Correlation", .rows = names, .columns = names};
///     options.isDiverging = true;
///     options.range = {-1, 1};
///     std::string svg = DrawHeatMap(correlations, options);
///
/// Units: sizes are CSS pixels. Missing values: a cell that is no finite number is gray with a
/// dash. Bytes: the same on both targets. Threads: any.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "shared/Export.h"
#include "shared/plots/SvgTextMode.h"
#include "shared/text/GString.h"

namespace shr {

/// What a table of colors looks like. Titles and names are math text as in shared/plots/Plot.h.
struct HeatMapOptions {
  GString title{};
  GString description{};
  std::vector<GString> rows{};     ///< names beside the rows, from above
  std::vector<GString> columns{};  ///< names above the columns
  /// Colors that part below and above the middle of the range; else from dark to light.
  bool isDiverging = false;
  std::optional<std::pair<double, double>> range{};  ///< values of the end colors; else the data's
  int digits = 2;                                    ///< significant digits of the numbers in cells
  SvgTextMode textMode = SvgTextMode::Text;
  double width = 640;  ///< the height follows from the rows
};

/// Returns the picture. `values` holds the rows one behind the other; values outside the range have
/// the color of its end. Numbers are written into cells that have room for them; every cell tells
/// its names and number to readers of the markup. Degenerate: without rows or columns "No data".
/// Errors: an internal error when there are not rows x columns values.
SHARED_API std::string DrawHeatMap(std::span<const double> values, const HeatMapOptions& options);

}  // namespace shr
