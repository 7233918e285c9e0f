// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/geometry/RectUtility.h"

#include "shared/geometry/Vec2.h"
#include "shared/platform/WindowsTypes.h"

namespace shr {

void RectToPoints(const RECT& rect, POINT (&points)[2]) {
  points[0] = POINT{rect.left, rect.top};
  points[1] = POINT{rect.right, rect.bottom};
}

void RectToPoints(const RECT& rect, POINT (&points)[4]) {
  points[0] = POINT{rect.left, rect.top};
  points[1] = POINT{rect.right, rect.top};
  points[2] = POINT{rect.right, rect.bottom};
  points[3] = POINT{rect.left, rect.bottom};
}

void RectFromPoints(const POINT (&points)[2], RECT& rect) {
  rect = RECT{points[0].x, points[0].y, points[1].x, points[1].y};
}

void RectFromPoints(const POINT (&points)[4], RECT& rect) {
  rect = RECT{points[0].x, points[0].y, points[2].x, points[2].y};
}

double PointLineSegDistSq(const POINT& point, const POINT& begin, const POINT& end) {
  const Vec2d p = Vec2i(point);
  const Vec2d a = Vec2i(begin);
  const Vec2d b = Vec2i(end);
  const Vec2d segment = b - a;
  const double along = (p - a).Dot(segment);
  if (along <= 0.0) return p.DistanceSquared(a);
  const double square = segment.LengthSquared();
  if (along >= square) return p.DistanceSquared(b);
  const double across = segment.x * (p.y - a.y) - segment.y * (p.x - a.x);
  return across * across / square;
}

}  // namespace shr
