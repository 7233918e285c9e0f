// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// How device coordinates become whole numbers: halves away from zero. For the sources of
/// shared/polygons only.
///
///     POINT pixel = RoundToPoint(Vec2d(2.5, -2.5));  // (3, -3)
///
/// Threads: no state.

#pragma once

#include <cmath>

#include "shared/geometry/Vec2.h"
#include "shared/platform/WindowsTypes.h"

namespace shr {

/// Returns the nearest whole number, of two the one farther from zero. Degenerate: stops at the
/// ends of 32 bits; 0 for NaN.
inline LONG RoundToLong(double value) {
  constexpr double LOWEST = -2147483648.0;
  constexpr double HIGHEST = 2147483647.0;
  const double rounded = std::round(value);
  if (rounded >= HIGHEST) return static_cast<LONG>(HIGHEST);
  if (rounded <= LOWEST) return static_cast<LONG>(LOWEST);
  return rounded == rounded ? static_cast<LONG>(rounded) : 0;
}

inline POINT RoundToPoint(const Vec2d& point) {
  return {RoundToLong(point.x), RoundToLong(point.y)};
}

}  // namespace shr
