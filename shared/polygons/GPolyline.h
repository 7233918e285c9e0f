// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GPolyline`, an open line of points in the plane, as the line clippers and dash generators take
/// it.
///
/// It is a vector of points with a name and knows its length and bounds. It converts to
/// `std::span<const Vec2d>`, so that every function that takes such a span takes a polyline. For
/// closed contours see shared/polygons/GPolygon2d.h.
///
///     GPolyline river{{0.0, 0.0}, {3.0, 4.0}};
///     river.push_back({3.0, 10.0});
///     double length = river.GetLength();  // 11
///
/// Threads: const members may be called on several threads at once.

#pragma once

#include <cstddef>
#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// The vertices of a line in order; none, one and repeated points are allowed.
class GPolyline {
public:
  using value_type = Vec2d;
  using iterator = std::vector<Vec2d>::iterator;
  using const_iterator = std::vector<Vec2d>::const_iterator;

  GPolyline() = default;
  explicit GPolyline(std::vector<Vec2d> points) : points_(std::move(points)) {}
  explicit GPolyline(std::span<const Vec2d> points) : points_(points.begin(), points.end()) {}
  /// Copies `count` points; `points` may be null when there are none.
  GPolyline(const Vec2d* points, std::size_t count) : GPolyline(std::span(points, count)) {}
  GPolyline(std::initializer_list<Vec2d> points) : points_(points) {}

  bool empty() const noexcept { return points_.empty(); }
  std::size_t size() const noexcept { return points_.size(); }
  const Vec2d* data() const noexcept { return points_.data(); }
  Vec2d* data() noexcept { return points_.data(); }
  const Vec2d& operator[](std::size_t index) const { return points_[index]; }
  Vec2d& operator[](std::size_t index) { return points_[index]; }
  const_iterator begin() const noexcept { return points_.begin(); }
  const_iterator end() const noexcept { return points_.end(); }
  iterator begin() noexcept { return points_.begin(); }
  iterator end() noexcept { return points_.end(); }

  void reserve(std::size_t count) { points_.reserve(count); }
  void push_back(const Vec2d& point) { points_.push_back(point); }
  void clear() noexcept { points_.clear(); }

  /// Returns the sum of the lengths of the segments.
  double GetLength() const {
    double length = 0.0;
    for (std::size_t i = 1; i < points_.size(); ++i) length += points_[i - 1].Distance(points_[i]);
    return length;
  }

  /// Returns the bounds of the points; of none, the empty box.
  Box2d GetBounds() const {
    Box2d bounds;
    bounds.BoundPoints(points_);
    return bounds;
  }

  /// Exact, point by point.
  friend bool operator==(const GPolyline& a, const GPolyline& b) = default;

private:
  std::vector<Vec2d> points_;
};

}  // namespace shr
