// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/geometry/Line3d.h"

#include <algorithm>
#include <cmath>

namespace shr {
namespace {

struct Range {
  double from;
  double to;
};

/// Shortens `range` to the part of the line whose coordinate lies from `low` to `high`.
void ClipToSlab(double position, double direction, double low, double high, Range& range) {
  if (direction == 0.0) {
    if (!(low <= position && position <= high)) range = {1.0, 0.0};
    return;
  }
  const double first = (low - position) / direction;
  const double second = (high - position) / direction;
  range.from = std::max(range.from, std::min(first, second));
  range.to = std::min(range.to, std::max(first, second));
}

}  // namespace

// The line between the closest points is perpendicular to both directions: along the normal n of
// both, the difference of the positions is split into three parts.
bool Line3d::GetClosestPoints(const Line3d& other, Vec3d& onThis, Vec3d& onOther) const {
  const Vec3d normal = direction_.Cross(other.direction_);
  const double square = normal.LengthSquared();
  if (!(square > PARALLEL_SINE * PARALLEL_SINE)) return false;
  const Vec3d between = other.position_ - position_;
  const double along = between.Cross(other.direction_).Dot(normal) / square;
  const double alongOther = between.Cross(direction_).Dot(normal) / square;
  onThis = position_ + direction_ * along;
  onOther = other.position_ + other.direction_ * alongOther;
  return true;
}

bool Line3d::Intersect(const Box3d& box, Vec3d& entry, Vec3d& exit) const {
  if (box.IsDegenerate()) return false;
  constexpr double UNBOUNDED = std::numeric_limits<double>::infinity();
  Range range = {-UNBOUNDED, UNBOUNDED};
  Vec3d::ForEach([&](const double& position, const double& direction, const double& low,
                     const double& high) { ClipToSlab(position, direction, low, high, range); },
                 position_, direction_, box.Min(), box.Max());
  if (!(range.from <= range.to) || std::isinf(range.from) || std::isinf(range.to)) return false;
  entry = position_ + direction_ * range.from;
  exit = position_ + direction_ * range.to;
  return true;
}

bool Line3d::Intersect(const Box3d& box, double margin) const {
  Box3d larger = box;
  larger.Inflate(margin, margin, margin);
  Vec3d entry;
  Vec3d exit;
  return Intersect(larger, entry, exit);
}

bool Line3d::Intersect(double tolerance, const Vec3d& point) const {
  return GetClosestPoint(point).Distance(point) <= tolerance;
}

bool Line3d::Intersect(double tolerance, const Vec3d& begin, const Vec3d& end,
                       Vec3d& closest) const {
  // What is left of the segment when it is seen along the line.
  const Vec3d across = (end - begin) - direction_ * (end - begin).Dot(direction_);
  const Vec3d offset = GetClosestPoint(begin) - begin;
  const double square = across.LengthSquared();
  const double part = square > 0.0 ? std::clamp(offset.Dot(across) / square, 0.0, 1.0) : 0.0;
  const Vec3d candidate = begin.Lerp(end, part);
  if (!Intersect(tolerance, candidate)) return false;
  closest = candidate;
  return true;
}

bool Line3d::Intersect(const Vec3d& a, const Vec3d& b, const Vec3d& c, Vec3d& point,
                       bool& isFront) const {
  const Vec3d edgeB = b - a;
  const Vec3d edgeC = c - a;
  const Vec3d across = direction_.Cross(edgeC);
  const double determinant = edgeB.Dot(across);
  if (!(std::abs(determinant) > PARALLEL_SINE * edgeB.Length() * edgeC.Length())) return false;
  const Vec3d offset = position_ - a;
  const double weightB = offset.Dot(across) / determinant;
  const Vec3d turned = offset.Cross(edgeB);
  const double weightC = direction_.Dot(turned) / determinant;
  if (!(weightB >= 0.0 && weightC >= 0.0 && weightB + weightC <= 1.0)) return false;
  point = position_ + direction_ * (edgeC.Dot(turned) / determinant);
  isFront = determinant > 0.0;
  return true;
}

}  // namespace shr
