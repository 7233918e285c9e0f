// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What all calibrations ask of control points and of their results. Internal.
///
///     if (!AreUsable(from, to, 4)) return false;
///
/// Threads: no state.

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "shared/geometry/Points.h"

namespace shr {

inline constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
/// What a warp that is not calibrated returns.
inline constexpr RPoint NO_POINT(NO_NUMBER, NO_NUMBER);

inline bool IsFinitePoint(const RPoint& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

/// Returns true when there are as many targets as sources, not fewer than `fewest`, all finite.
inline bool AreUsable(const RPoints& from, const RPoints& to, std::size_t fewest) {
  return from.size() == to.size() && from.size() >= fewest &&
         std::all_of(from.begin(), from.end(), IsFinitePoint) &&
         std::all_of(to.begin(), to.end(), IsFinitePoint);
}

/// Returns true when all elements of a vector or matrix are finite.
template <class Numbers>
bool AreFinite(const Numbers& numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [](double x) { return std::isfinite(x); });
}

}  // namespace shr
