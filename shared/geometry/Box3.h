// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Axis-aligned boxes in space: `Box3d` and `Box3f`.
///
/// The empty box is inverted (its minimum is the largest number, its maximum the smallest), so that
/// extending it by a point gives exactly that point.
///
///     Box3d bounds;
///     bounds.BoundPoints(points);
///     double volume = bounds.GetVolume();
///     auto [xMin, yMin, zMin, xMax, yMax, zMax] = bounds;
///
/// Threads: plain values.

#pragma once

#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec3.h"

namespace shr {

/// A minimum and a maximum corner, see `BoxOperators` for most of what a box can do.
template <class T>
class Box3 : public BoxOperators<Box3<T>, Vec3<T>, T> {
  using Base = BoxOperators<Box3<T>, Vec3<T>, T>;
  using Base::HIGHEST;
  using Base::LOWEST;
  using Base::max_;
  using Base::min_;

public:
  using Point = Vec3<T>;
  using Base::Set;

  /// The box that contains every finite point.
  static const Box3 UNIVERSE;

  /// The empty box.
  constexpr Box3() : Base(Point(HIGHEST, HIGHEST, HIGHEST), Point(LOWEST, LOWEST, LOWEST)) {}
  constexpr Box3(const Point& minimum, const Point& maximum) : Base(minimum, maximum) {}
  constexpr Box3(T xMinimum, T yMinimum, T zMinimum, T xMaximum, T yMaximum, T zMaximum)
      : Base(Point(xMinimum, yMinimum, zMinimum), Point(xMaximum, yMaximum, zMaximum)) {}
  /// The flat box in the plane z = 0.
  constexpr explicit Box3(const Box2<T>& box)
      : Base(Point(box.Min(), T{0}), Point(box.Max(), T{0})) {}
  template <class U>
  requires(!std::same_as<T, U>) constexpr explicit(!WideningTo<U, T>) Box3(const Box3<U>& other)
      : Base(Point(other.Min()), Point(other.Max())) {}

  constexpr void Set(T xMinimum, T yMinimum, T zMinimum, T xMaximum, T yMaximum, T zMaximum) {
    *this = Box3(xMinimum, yMinimum, zMinimum, xMaximum, yMaximum, zMaximum);
  }

  constexpr T xMin() const { return min_.x; }
  constexpr T yMin() const { return min_.y; }
  constexpr T zMin() const { return min_.z; }
  constexpr T xMax() const { return max_.x; }
  constexpr T yMax() const { return max_.y; }
  constexpr T zMax() const { return max_.z; }
  constexpr T& xMin() { return min_.x; }
  constexpr T& yMin() { return min_.y; }
  constexpr T& zMin() { return min_.z; }
  constexpr T& xMax() { return max_.x; }
  constexpr T& yMax() { return max_.y; }
  constexpr T& zMax() { return max_.z; }

  constexpr T xMid() const { return this->Center().x; }
  constexpr T yMid() const { return this->Center().y; }
  constexpr T zMid() const { return this->Center().z; }
  constexpr T xRange() const { return max_.x - min_.x; }
  constexpr T yRange() const { return max_.y - min_.y; }
  constexpr T zRange() const { return max_.z - min_.z; }
  constexpr void Size(T& width, T& height, T& depth) const {
    width = xRange();
    height = yRange();
    depth = zRange();
  }

  constexpr bool HasVolume() const { return !this->IsEmpty(); }
  /// Returns the product of the three ranges, 0 for an empty box.
  constexpr T GetVolume() const { return HasVolume() ? xRange() * yRange() * zRange() : T{0}; }

  /// Moves the sides outward (inward when negative).
  constexpr void Inflate(T dx, T dy, T dz) {
    min_ -= Point(dx, dy, dz);
    max_ += Point(dx, dy, dz);
  }
  /// Moves the whole box.
  constexpr void Offset(const Point& offset) { *this += offset; }

  /// Stores the four corners of the lower z as `Box2::GetCorners` does, then those of the upper.
  constexpr void GetCorners(Point (&corners)[8]) const {
    Vec2<T> plane[4];
    Box2<T>(min_.x, min_.y, max_.x, max_.y).GetCorners(plane);
    for (int i = 0; i < 8; ++i) corners[i] = Point(plane[i % 4], i < 4 ? min_.z : max_.z);
  }
};

using Box3d = Box3<double>;
using Box3f = Box3<float>;

// Spelled out per type: every compiler then knows the values in constant expressions.
/// @cond
template <>
inline constexpr Box3d Box3d::UNIVERSE{LOWEST, LOWEST, LOWEST, HIGHEST, HIGHEST, HIGHEST};
template <>
inline constexpr Box3f Box3f::UNIVERSE{LOWEST, LOWEST, LOWEST, HIGHEST, HIGHEST, HIGHEST};
/// @endcond

}  // namespace shr

template <class T>
struct std::tuple_size<shr::Box3<T>> : std::integral_constant<std::size_t, 6> {};

template <std::size_t INDEX, class T>
struct std::tuple_element<INDEX, shr::Box3<T>> {
  using type = T;
};
