// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Axis-aligned boxes in the plane: `Box2d` and `Box2f`.
///
/// The empty box is inverted (its minimum is the largest number, its maximum the smallest), so that
/// extending it by a point gives exactly that point.
///
///     Box2d bounds;
///     bounds.ExtendBy(Vec2d(1.0, 2.0));
///     bounds.ExtendBy(Vec2d(4.0, 6.0));
///     double diagonal = bounds.Diagonal();       // 5
///     auto [xMin, yMin, xMax, yMax] = bounds;
///
/// Threads: plain values.

#pragma once

#include "shared/geometry/BoxOperators.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// A minimum and a maximum corner, see `BoxOperators` for most of what a box can do.
template <class T>
class Box2 : public BoxOperators<Box2<T>, Vec2<T>, T> {
  using Base = BoxOperators<Box2<T>, Vec2<T>, T>;
  using Base::HIGHEST;
  using Base::LOWEST;
  using Base::max_;
  using Base::min_;

public:
  using Point = Vec2<T>;
  using Base::Set;

  /// The box that contains every finite point.
  static const Box2 UNIVERSE;

  /// The empty box.
  constexpr Box2() : Base(Point(HIGHEST, HIGHEST), Point(LOWEST, LOWEST)) {}
  constexpr Box2(const Point& minimum, const Point& maximum) : Base(minimum, maximum) {}
  constexpr Box2(T xMinimum, T yMinimum, T xMaximum, T yMaximum)
      : Base(Point(xMinimum, yMinimum), Point(xMaximum, yMaximum)) {}
  template <class U>
  requires(!std::same_as<T, U>) constexpr explicit(!WideningTo<U, T>) Box2(const Box2<U>& other)
      : Base(Point(other.Min()), Point(other.Max())) {}

  constexpr void Set(T xMinimum, T yMinimum, T xMaximum, T yMaximum) {
    *this = Box2(xMinimum, yMinimum, xMaximum, yMaximum);
  }

  constexpr T xMin() const { return min_.x; }
  constexpr T yMin() const { return min_.y; }
  constexpr T xMax() const { return max_.x; }
  constexpr T yMax() const { return max_.y; }
  constexpr T& xMin() { return min_.x; }
  constexpr T& yMin() { return min_.y; }
  constexpr T& xMax() { return max_.x; }
  constexpr T& yMax() { return max_.y; }

  constexpr T xMid() const { return this->Center().x; }
  constexpr T yMid() const { return this->Center().y; }
  constexpr T xRange() const { return max_.x - min_.x; }
  constexpr T yRange() const { return max_.y - min_.y; }
  constexpr void Size(T& width, T& height) const {
    width = xRange();
    height = yRange();
  }

  constexpr bool HasArea() const { return !this->IsEmpty(); }
  /// Returns width times height, 0 for an empty box.
  constexpr T GetArea() const { return HasArea() ? xRange() * yRange() : T{0}; }

  /// Moves the sides outward (inward when negative).
  constexpr void Inflate(T dx, T dy) {
    min_ -= Point(dx, dy);
    max_ += Point(dx, dy);
  }

  /// Stores the corners counter-clockwise in a y-up frame, beginning with the minimum.
  constexpr void GetCorners(Point (&corners)[4]) const {
    corners[0] = min_;
    corners[1] = Point(max_.x, min_.y);
    corners[2] = max_;
    corners[3] = Point(min_.x, max_.y);
  }
};

using Box2d = Box2<double>;
using Box2f = Box2<float>;

// Spelled out per type: every compiler then knows the values in constant expressions.
/// @cond
template <>
inline constexpr Box2d Box2d::UNIVERSE{LOWEST, LOWEST, HIGHEST, HIGHEST};
template <>
inline constexpr Box2f Box2f::UNIVERSE{LOWEST, LOWEST, HIGHEST, HIGHEST};
/// @endcond

}  // namespace shr

template <class T>
struct std::tuple_size<shr::Box2<T>> : std::integral_constant<std::size_t, 4> {};

template <std::size_t INDEX, class T>
struct std::tuple_element<INDEX, shr::Box2<T>> {
  using type = T;
};
