// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// How coordinates become whole numbers, wherever the library makes them: to the nearest, halves
/// away from zero.
///
///     POINT pixel = RoundToPoint(Vec2d(2.5, -2.5));  // (3, -3)
///
/// Threads: no state.

#pragma once

#include "shared/geometry/Vec2.h"
#include "shared/platform/WindowsTypes.h"

namespace shr {

/// Returns the nearest whole number, of two the one farther from zero. Degenerate: stops at the
/// ends of 32 bits; 0 for NaN.
constexpr LONG RoundToLong(double value) {
  constexpr LONG LOWEST = -2147483647 - 1;
  constexpr LONG HIGHEST = 2147483647;
  if (value >= HIGHEST) return HIGHEST;
  if (value <= LOWEST) return LOWEST;
  if (value != value) return 0;
  const LONG whole = static_cast<LONG>(value);
  const double rest = value - static_cast<double>(whole);
  return rest >= 0.5 ? whole + 1 : rest <= -0.5 ? whole - 1 : whole;
}

constexpr POINT RoundToPoint(const Vec2d& point) {
  return {RoundToLong(point.x), RoundToLong(point.y)};
}

}  // namespace shr
