// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// How rings are closed and written in flat form, shared by the sources of this folder. Not
/// installed.

#pragma once

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "shared/geometry/RoundToLong.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// Returns true when the last point of a ring is so near the first that the ring counts as closed.
inline bool IsNear(const Vec2d& first, const Vec2d& last) {
  return std::abs(first.x - last.x) <= std::abs(first.x) * DBL_EPSILON &&
         std::abs(first.y - last.y) <= std::abs(first.y) * DBL_EPSILON;
}

inline void AssignPoint(Vec2d& target, const Vec2d& source) {
  target = source;
}
inline void AssignPoint(POINT& target, const Vec2d& source) {
  target = RoundToPoint(source);
}

/// Returns how many points of a stored ring are given out: all of it when it is to be closed or has
/// no closing point.
inline std::size_t EmittedSize(std::size_t ringSize, bool closed) {
  return closed || ringSize < 3 ? ringSize : ringSize - 1;
}

/// Copies the points and returns the end of the output.
template <class Point>
Point* CopyPoints(std::span<const Vec2d> source, Point* target) {
  for (const Vec2d& point : source) AssignPoint(*target++, point);
  return target;
}

/// Joins rings into one contour: every ring but the first is followed by the very first point. Null
/// output only counts.
template <class Point>
class RingJoiner {
public:
  explicit RingJoiner(Point* points) : points_(points) {}

  void Add(std::span<const Vec2d> ring) {
    if (ring.empty()) return;
    const bool isFirst = size_ == 0;
    if (points_ != nullptr) CopyPoints(ring, points_ + size_);
    size_ += ring.size();
    if (isFirst) return;
    if (points_ != nullptr) points_[size_] = points_[0];
    ++size_;
  }
  std::size_t Size() const { return size_; }

private:
  Point* points_;
  std::size_t size_ = 0;
};

/// Return points of the operating system as points of the library.
inline Vec2d ToVec2d(const POINT& point) {
  return Vec2d(static_cast<double>(point.x), static_cast<double>(point.y));
}
inline std::vector<Vec2d> ToVec2d(std::span<const POINT> points) {
  std::vector<Vec2d> result(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) result[i] = ToVec2d(points[i]);
  return result;
}

}  // namespace shr
