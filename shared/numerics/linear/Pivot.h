// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The thresholds of the solvers.
///
///     if (IsNegligible(pivot)) return false;
///
/// Threads: no state.

#pragma once

#include <cmath>

namespace shr {

/// The double epsilon, below which the magnitude of a pivot counts as zero.
inline constexpr double PIVOT_EPSILON = 2.220446049250313e-16;
/// The smallest normal number of single precision, below which determinants and sums of squares do.
inline constexpr double TINY = 1.1754943508222875e-38;

/// Returns true for a pivot that must not divide. A NaN may, the result tells.
inline bool IsNegligible(double pivot) {
  return std::abs(pivot) < PIVOT_EPSILON;
}

}  // namespace shr
