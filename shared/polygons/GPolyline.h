// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GPolyline`, an open line of points in the plane, as the line clippers and dash generators take
/// it.
///
/// It is a vector of points with all that a vector can do, and knows its length and bounds. It
/// converts to `std::span<const Vec2d>`, so that every function that takes such a span takes a
/// polyline. For closed contours see shared/polygons/GPolygon2d.h.
///
///     GPolyline river{{0.0, 0.0}, {3.0, 4.0}};
///     river.push_back({3.0, 10.0});
///     double length = river.GetLength();  // 11
///
/// Threads: const members may be called on several threads at once.

#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// The vertices of a line in order; none, one and repeated points are allowed.
class GPolyline : public std::vector<Vec2d> {
public:
  using std::vector<Vec2d>::vector;

  GPolyline() = default;
  explicit GPolyline(std::vector<Vec2d> points) : std::vector<Vec2d>(std::move(points)) {}
  explicit GPolyline(std::span<const Vec2d> points)
      : std::vector<Vec2d>(points.begin(), points.end()) {}
  /// Copies `count` points; `points` may be null when there are none.
  GPolyline(const Vec2d* points, std::size_t count) : GPolyline(std::span(points, count)) {}

  /// Returns the sum of the lengths of the segments.
  double GetLength() const {
    double length = 0.0;
    for (size_type i = 1; i < size(); ++i) length += (*this)[i - 1].Distance((*this)[i]);
    return length;
  }

  /// Returns the bounds of the points; of none, the empty box.
  Box2d GetBounds() const {
    Box2d bounds;
    bounds.BoundPoints(*this);
    return bounds;
  }
};

}  // namespace shr
