// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// One edge of a contour and the question whether it lies to the right of a point, shared by the
/// sources of this folder. Not installed.

#pragma once

#include "shared/geometry/Vec2.h"

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
  const double upward = (from.x - to.x) * (point.y - to.y);
  const double sideward = (from.y - to.y) * (point.x - to.x);
  return isToBelow != isFromBelow && (isToBelow ? upward > sideward : sideward > upward);
}

}  // namespace shr
