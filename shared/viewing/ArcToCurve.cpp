// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The ellipse x^2 / a^2 + y^2 / b^2 = 1 meets the line y = x tan(angle) at
// x = ab / sqrt(b^2 + a^2 tan^2(angle)), to the right; directions to the left have the negative x.
// Straight up and down the tangent has no value, and next to them x is lost between a tangent that
// is huge and a root that is as large, so the ends of the axis stand for these directions.

#include "shared/viewing/ArcToCurve.h"

#include <cmath>
#include <cstddef>

#include "shared/geometry/MathUtility.h"

namespace shr {
namespace {

constexpr double VERTICAL_TOLERANCE = 0.005;

bool HasDirection(const Vec2d& offset) {
  return offset == offset && !(offset == Vec2d::ZERO);
}

/// Returns the direction of a point, from 0 up to but not including a full turn.
double Direction(const Vec2d& offset) {
  const double angle = std::atan2(offset.y, offset.x);
  if (angle >= 0.0) return angle;
  const double turned = angle + TWO_PI;
  return turned < TWO_PI ? turned : 0.0;
}

template <class T>
class Ellipse {
public:
  explicit Ellipse(const Box2<T>& box) : box_(box) {
    box_.Normalize();
    center_ = Box2d(box_).Center();
    radii_ = Box2d(box_).Max() - center_;
  }

  const Vec2d& Center() const { return center_; }
  bool IsUsable() const {
    return std::isfinite(radii_.x) && std::isfinite(radii_.y) && radii_.x != 0.0 && radii_.y != 0.0;
  }

  /// `angle` is a direction from 0 to a full turn.
  Vec2<T> PointAt(double angle) const {
    const T middle = static_cast<T>(center_.x);
    if (std::abs(angle - HALF_PI) <= VERTICAL_TOLERANCE) return {middle, box_.yMax()};
    if (std::abs(angle - 3.0 * HALF_PI) <= VERTICAL_TOLERANCE) return {middle, box_.yMin()};
    const double slope = std::tan(angle);
    const double relative = slope * radii_.x / radii_.y;
    const double distance = radii_.x / std::sqrt(1.0 + relative * relative);
    const double x = angle > HALF_PI && angle < 3.0 * HALF_PI ? -distance : distance;
    return {static_cast<T>(center_.x + x), static_cast<T>(center_.y + x * slope)};
  }

private:
  Box2<T> box_;
  Vec2d center_;
  Vec2d radii_;
};

template <class T>
bool FillArc(const Box2<T>& box, const Vec2<T>& start, const Vec2<T>& end,
             std::span<Vec2<T>> points, Box2<T>* bounds) {
  const Ellipse<T> ellipse(box);
  const Vec2d from = Vec2d(start) - ellipse.Center();
  const Vec2d to = Vec2d(end) - ellipse.Center();
  if (points.size() < 2 || points.data() == nullptr || !ellipse.IsUsable()) return false;
  if (!HasDirection(from) || !HasDirection(to)) return false;
  const double first = Direction(from);
  const double last = Direction(to);
  const double sweep = last > first ? last - first : last + TWO_PI - first;
  const double step = sweep / static_cast<double>(points.size() - 1);
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const double angle = first + step * static_cast<double>(i);
    points[i] = ellipse.PointAt(angle < TWO_PI ? angle : angle - TWO_PI);
  }
  points.back() = ellipse.PointAt(last);
  if (bounds != nullptr) bounds->BoundPoints(points);
  return true;
}

template <class T>
std::span<Vec2<T>> Checked(Vec2<T>* points, int count) {
  if (points == nullptr || count < 0) return {};
  return {points, static_cast<std::size_t>(count)};
}

}  // namespace

bool ArcToCurve(const Box2d& box, const Vec2d& start, const Vec2d& end, int count, Vec2d* points,
                Box2d* bounds) {
  return FillArc(box, start, end, Checked(points, count), bounds);
}

bool ArcToCurve(const Box2f& box, const Vec2f& start, const Vec2f& end, int count, Vec2f* points,
                Box2f* bounds) {
  return FillArc(box, start, end, Checked(points, count), bounds);
}

bool ArcToCurve(const Box2d& box, const Vec2d& start, const Vec2d& end, std::span<Vec2d> points,
                Box2d* bounds) {
  return FillArc(box, start, end, points, bounds);
}

bool ArcToCurve(const Box2f& box, const Vec2f& start, const Vec2f& end, std::span<Vec2f> points,
                Box2f* bounds) {
  return FillArc(box, start, end, points, bounds);
}

}  // namespace shr
