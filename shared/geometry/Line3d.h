// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Line3d`: an infinite line in space. A segment is a `GLine3`.
///
///     Line3d sight(eye, target);
///     Vec3d hit;
///     bool isFront = false;
///     if (sight.Intersect(a, b, c, hit, isFront)) ...    // meets the triangle
///
/// Threads: plain values.

#pragma once

#include "shared/Export.h"
#include "shared/geometry/Box3.h"

namespace shr {

/// A point and a direction of length 1; the default is all 0, which is no line.
class Line3d {
public:
  constexpr Line3d() = default;
  Line3d(const Vec3d& p0, const Vec3d& p1) { SetValue(p0, p1); }

  /// Sets the line from `p0` towards `p1`. Degenerate: a direction of NaNs when they coincide.
  void SetValue(const Vec3d& p0, const Vec3d& p1) {
    position_ = p0;
    direction_ = (p1 - p0).Normalized();
  }

  constexpr const Vec3d& GetPosition() const { return position_; }
  constexpr const Vec3d& GetDirection() const { return direction_; }

  /// Returns the point of the line that is closest to `point`.
  constexpr Vec3d GetClosestPoint(const Vec3d& point) const {
    return position_ + direction_ * (point - position_).Dot(direction_);
  }

  /// Finds the points where this line and another one are closest to each other. Returns false and
  /// stores nothing when the sine of the angle between them is below `PARALLEL_SINE`.
  SHARED_API bool GetClosestPoints(const Line3d& other, Vec3d& onThis, Vec3d& onOther) const;

  // All of these look along the whole line, in both directions, and store nothing when they return
  // false.

  /// Finds where the line enters and leaves a box, whose boundary belongs to it.
  SHARED_API bool Intersect(const Box3d& box, Vec3d& entry, Vec3d& exit) const;
  /// True when the line meets the box with all sides moved outward by `margin`.
  SHARED_API bool Intersect(const Box3d& box, double margin) const;
  /// True when `point` is no further than `tolerance` from the line.
  SHARED_API bool Intersect(double tolerance, const Vec3d& point) const;
  /// Finds the point of the segment from `begin` to `end` that is closest to the line, if it is no
  /// further than `tolerance` from it.
  SHARED_API bool Intersect(double tolerance, const Vec3d& begin, const Vec3d& end,
                            Vec3d& closest) const;
  /// Finds the point where the line meets a triangle, boundary included; `isFront` tells whether
  /// the line comes from the side on which a, b, c run counter-clockwise. Degenerate: a triangle
  /// without area or parallel to the line is not met. Source: T. Moeller and B. Trumbore, "Fast,
  /// Minimum Storage Ray/Triangle Intersection", 1997.
  SHARED_API bool Intersect(const Vec3d& a, const Vec3d& b, const Vec3d& c, Vec3d& point,
                            bool& isFront) const;

  static constexpr double PARALLEL_SINE = 4.0 * DBL_EPSILON;

  friend constexpr bool operator==(const Line3d& a, const Line3d& b) = default;

private:
  Vec3d position_;
  Vec3d direction_;
};

}  // namespace shr
