// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Chooses the marks of an axis: round numbers, powers of ten, or points of time, with labels that
/// tell them apart. shared/plots/PlotAxis.h maps values to an axis and asks for its ticks.
///
///     TickSet set = LinearTicks(0.3, 2.2, 6);
///     for (const Tick& tick : set.ticks) Use(tick.value, tick.label);   // "0.5", "1.0" ... "2.0"
///
/// Laws, for every finite range of different ends that is wide enough (below): (1) each tick lies
/// inside the range, (2) ticks rise, and there are at most as many labels as asked for, (3) no two
/// labels are equal, (4) a tick is the double nearest to what its label says.
///
/// Bytes: labels are made from whole numbers by decimal arithmetic, so that nothing is rounded
/// twice and both targets write the same. Threads: any.

#pragma once

#include <cstddef>
#include <vector>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// A mark of an axis. One without a label is a small mark between others.
struct Tick {
  double value = 0;
  GString label;
};

struct TickSet {
  std::vector<Tick> ticks;
  /// What all labels share and leave out: a factor ("× 10⁶"), a day or a year; mostly empty.
  GString context;
};

/// Returns ticks at multiples of 1, 2 or 5 times a power of ten, the smallest step that gives no
/// more than `most`. Requires: `most` >= 2. Degenerate: none unless `lo` < `hi` and both are
/// finite; a range narrower than 1e-12 of its values, or than 1e-300, may have none. With `most` >=
/// 5 there are at least two. Source: P. S. Heckbert, "Nice numbers for graph labels", Graphics
/// Gems, 1990.
SHARED_API TickSet LinearTicks(double lo, double hi, std::size_t most);

/// Returns ticks of a logarithmic axis from 10^`log10Lo` to 10^`log10Hi`: powers of ten with small
/// marks between them; where fewer than two powers lie inside, 1, 2 and 5 times a power, and else
/// linear ticks. Requires: `log10Lo` < `log10Hi`, both within +-308; `most` >= 2.
SHARED_API TickSet LogTicks(double log10Lo, double log10Hi, std::size_t most);

/// Returns ticks at whole seconds, minutes, hours, days, weeks, months or years, in UTC, or decimal
/// parts of a second. `lo` and `hi` are seconds since 1970-01-01T00:00Z without leap seconds, in
/// the Gregorian calendar also before it was made. Outside the years 0 to 9999 the ticks are
/// linear.
SHARED_API TickSet TimeTicks(double lo, double hi, std::size_t most);

/// Returns the decimal logarithm of a positive finite number with nothing but + - * /, so that it
/// is the same on both targets. Error bound: 1e-15 relative, or 1e-15 near 1.
SHARED_API double Log10Of(double value);

/// Returns the inverse of `Log10Of`, by halving: 10^`logarithm`. Error bound: 1e-15 relative.
SHARED_API double PowerOf10(double logarithm);

/// Returns the edges of at most `most` bins that hold `lo` to `hi`: neighbouring multiples of a
/// step as `LinearTicks` has them, the first not above `lo`, the last not below `hi`. Degenerate:
/// as there.
SHARED_API std::vector<double> RoundEdges(double lo, double hi, std::size_t most);

/// Returns "10" with `exponent` above it, in Unicode's raised digits: "10⁻³".
SHARED_API GString PowerOfTenText(int exponent);

}  // namespace shr
