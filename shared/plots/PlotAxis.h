// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// One direction of a plot: maps values to shares of its length, on a linear, a logarithmic or a
/// time scale, and chooses its ticks.
///
///     PlotAxis axis = PlotAxis::Around(ScaleKind::Log, values, 0.03);
///     double share = axis.Share(1.0);                     // 0 at the low end, 1 at the high one
///     for (const Tick& tick : axis.Ticks(6).ticks) Use(axis.Share(tick.value), tick.label);
///
/// Threads: const calls may run together.

#pragma once

#include <cstddef>
#include <span>

#include "shared/Export.h"
#include "shared/plots/Ticks.h"

namespace shr {

/// How values are spaced. Times are seconds since 1970-01-01T00:00Z (shared/plots/TimeText.h).
enum class ScaleKind { Linear, Log, Time };

/// An axis that always has a length: ends that are equal, or closer than 1e-12 of their size, are
/// moved apart about their middle (by a tenth of it, by 1 at zero, by half a day of time, by half a
/// decade of a logarithmic scale).
class SHARED_API PlotAxis {
public:
  /// From 0 to 1.
  PlotAxis() = default;
  /// Makes an axis from `lo` to `hi`, in either order. Degenerate: ends that the scale cannot show
  /// are those of an axis from 0 to 1, on a logarithmic one from 1 to 10.
  PlotAxis(ScaleKind kind, double lo, double hi);

  /// Makes an axis that shows all of `values` that it can, with `margin` of its length free at each
  /// end. Degenerate: without such a value, as above.
  static PlotAxis Around(ScaleKind kind, std::span<const double> values, double margin);

  ScaleKind Kind() const { return kind_; }

  /// Returns whether the scale has a place for `value`: a finite one, on a logarithmic scale above
  /// zero.
  bool CanShow(double value) const;

  /// Returns 0 at the low end, 1 at the high one, and less or more outside. Requires: `CanShow`.
  double Share(double value) const;

  /// Returns the ticks; see shared/plots/Ticks.h.
  TickSet Ticks(std::size_t most) const;

  /// Returns the ends; of a logarithmic axis their decimal logarithms.
  double ScaledLow() const { return lo_; }
  double ScaledHigh() const { return hi_; }

private:
  double Scaled(double value) const;
  void SetEnds(double lo, double hi, double margin);

  ScaleKind kind_ = ScaleKind::Linear;
  double lo_ = 0;
  double hi_ = 1;
};

}  // namespace shr
