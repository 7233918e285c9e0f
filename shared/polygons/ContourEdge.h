// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// One edge of a contour and the question whether it lies to the right of a point, shared by the
/// sources of this folder. Not installed.
///
/// The answer is that of exact arithmetic. So it is the same for the edge in either direction, and
/// of two polygons with a common border exactly one holds a point beside it or on it; and it does
/// not matter in which form the question is asked: edge by edge, four at once, or to a grid.

#pragma once

#include <cmath>

#include "shared/geometry/Orientation.h"
#include "shared/geometry/Vec2.h"
#include "shared/polygons/SideError.h"

namespace shr {

struct ContourEdge {
  Vec2d from;
  Vec2d to;
};

/// Returns whether the edge toggles the answer of the even-odd rule: whether it crosses the ray
/// from the point toward +x. An edge counts when its lower end is at or below the point and its
/// upper end above it, so that a vertex on the ray counts once and horizontal edges never.
inline bool IsToggledBy(const Vec2d& from, const Vec2d& to, const Vec2d& point) {
  const bool isToBelow = to.y <= point.y;
  const bool isFromBelow = from.y <= point.y;
  const double left = (from.x - point.x) * (to.y - point.y);
  const double right = (from.y - point.y) * (to.x - point.x);
  const double determinant = left - right;
  const double error = SIDE_ERROR_FACTOR * std::abs(left + right) + SIDE_ERROR_OF_UNDERFLOW;
  const bool isSpanning = isToBelow != isFromBelow;
  if (isSpanning && !(std::abs(determinant) > error)) {
    return OrientationSign(isFromBelow ? from : to, isFromBelow ? to : from, point) > 0;
  }
  return isSpanning && (determinant > 0.0) == isFromBelow;
}

}  // namespace shr
