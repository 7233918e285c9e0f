// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/geometry/Plane.h"

#include <algorithm>
#include <cmath>

#include "shared/geometry/Line3d.h"
#include "shared/geometry/Mat4.h"

namespace shr {
namespace {

/// Returns the direction of a vector of any length, 0 for a vector without one.
Vec3d Direction(const Vec3d& vector) {
  const double largest = std::max({std::abs(vector.x), std::abs(vector.y), std::abs(vector.z)});
  return largest > 0.0 ? (vector / largest).Normalized() : Vec3d::ZERO;
}

}  // namespace

Plane::Plane(const Vec3d& p0, const Vec3d& p1, const Vec3d& p2)
    : Plane(Direction(p1 - p0).Cross(Direction(p2 - p0)), p0) {}

Plane::Plane(const Vec3d& normal, double distance)
    : normal_(Direction(normal)), distance_(distance) {}

Plane::Plane(const Vec3d& normal, const Vec3d& point) : normal_(Direction(normal)) {
  distance_ = normal_.Dot(point);
}

bool Plane::Intersect(const Line3d& line, Vec3d& point) const {
  const double sine = normal_.Dot(line.GetDirection());
  if (!(std::abs(sine) > DBL_EPSILON)) return false;
  point = line.GetPosition() - line.GetDirection() * (GetDistance(line.GetPosition()) / sine);
  return true;
}

// Points go as rows through the matrix, the four numbers of a plane as a column through its
// inverse, so that their product stays 0.
bool Plane::Transform(const Mat4d& matrix) {
  Mat4d inverse;
  if (!matrix.Inverse(inverse)) return false;
  const Vec4d image = inverse * Vec4d(normal_, -distance_);
  const Vec3d normal(image.x, image.y, image.z);
  const double length = normal.Length();
  if (!(length > 0.0)) return false;
  normal_ = normal / length;
  distance_ = -image.w / length;
  return true;
}

}  // namespace shr
