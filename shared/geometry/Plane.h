// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Plane`: a plane in space with a front side.
///
///     Plane ground(Vec3d::UNIT_Z, 0.0);
///     bool isAbove = ground.IsInHalfSpace(point);
///     Vec3d foot;
///     ground.Intersect(Line3d(point, point - Vec3d::UNIT_Z), foot);
///
/// Threads: plain values.

#pragma once

#include "shared/Export.h"
#include "shared/geometry/Vec3.h"

namespace shr {

class Line3d;
template <class T>
class Mat4;

/// The points p with normal . p = distance, the normal of length 1. The default is all 0, which is
/// no plane.
class Plane {
public:
  constexpr Plane() = default;
  /// Through three points, which run counter-clockwise when seen from the front. Degenerate: a
  /// normal of 0 when they lie on one line.
  SHARED_API Plane(const Vec3d& p0, const Vec3d& p1, const Vec3d& p2);
  /// The normal may have any length; the distance is taken as it is. Degenerate: a normal without
  /// length stays 0.
  SHARED_API Plane(const Vec3d& normal, double distance);
  SHARED_API Plane(const Vec3d& normal, const Vec3d& point);

  constexpr const Vec3d& GetNormal() const { return normal_; }
  constexpr double GetDistanceFromOrigin() const { return distance_; }

  /// Returns the distance of a point, negative behind the plane.
  constexpr double GetDistance(const Vec3d& point) const { return normal_.Dot(point) - distance_; }
  /// True in front of the plane and on it.
  constexpr bool IsInHalfSpace(const Vec3d& point) const { return normal_.Dot(point) >= distance_; }

  /// Moves the plane to its front.
  constexpr void Offset(double distance) { distance_ += distance; }

  /// Finds the point on a line. Returns false and stores nothing when the sine of the angle between
  /// line and plane is DBL_EPSILON or less.
  SHARED_API bool Intersect(const Line3d& line, Vec3d& point) const;

  /// Makes this the plane of the transformed points, with the transformed front. Returns false and
  /// changes nothing for a singular matrix or a plane that has no image.
  SHARED_API bool Transform(const Mat4<double>& matrix);

  /// Exact.
  friend constexpr bool operator==(const Plane& a, const Plane& b) {
    return a.distance_ == b.distance_ && a.normal_ == b.normal_;
  }

private:
  Vec3d normal_;
  double distance_ = 0.0;
};

}  // namespace shr
