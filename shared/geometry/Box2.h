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

#include <cstddef>
#include <iosfwd>
#include <limits>
#include <span>
#include <type_traits>
#include <utility>

#include "shared/geometry/Vec2.h"

namespace shr {

/// A minimum and a maximum corner. No constructor or `Set` puts them in order; `Normalize` does.
/// Degenerate: a NaN coordinate of a box makes `Contains` and `Intersects` false; a NaN coordinate
/// of a point extends nothing.
template <class T>
class Box2 {
public:
  using Point = Vec2<T>;

  /// The box that contains every finite point.
  static const Box2 UNIVERSE;

  /// The empty box.
  constexpr Box2() = default;
  constexpr Box2(const Point& minimum, const Point& maximum) : min_(minimum), max_(maximum) {}
  constexpr Box2(T xMinimum, T yMinimum, T xMaximum, T yMaximum)
      : min_(xMinimum, yMinimum), max_(xMaximum, yMaximum) {}
  template <class U>
  requires(!std::same_as<T, U>) constexpr explicit(!WideningTo<U, T>) Box2(const Box2<U>& other)
      : min_(Point(other.Min())), max_(Point(other.Max())) {}

  constexpr void Set(const Point& minimum, const Point& maximum) { *this = Box2(minimum, maximum); }
  constexpr void Set(T xMinimum, T yMinimum, T xMaximum, T yMaximum) {
    *this = Box2(xMinimum, yMinimum, xMaximum, yMaximum);
  }
  constexpr void MakeEmpty() { *this = Box2(); }

  constexpr T xMin() const { return min_.x; }
  constexpr T yMin() const { return min_.y; }
  constexpr T xMax() const { return max_.x; }
  constexpr T yMax() const { return max_.y; }
  constexpr T& xMin() { return min_.x; }
  constexpr T& yMin() { return min_.y; }
  constexpr T& xMax() { return max_.x; }
  constexpr T& yMax() { return max_.y; }
  constexpr const Point& Min() const { return min_; }
  constexpr const Point& Max() const { return max_; }

  /// Halves are taken before the sum, so that the middle of `UNIVERSE` is 0.
  constexpr T xMid() const { return min_.x / 2 + max_.x / 2; }
  constexpr T yMid() const { return min_.y / 2 + max_.y / 2; }
  constexpr T xRange() const { return max_.x - min_.x; }
  constexpr T yRange() const { return max_.y - min_.y; }
  constexpr void Size(T& width, T& height) const {
    width = xRange();
    height = yRange();
  }
  constexpr Point Center() const { return Point(xMid(), yMid()); }
  /// Returns the length of the diagonal.
  T Diagonal() const { return (max_ - min_).Length(); }
  /// Returns width times height, 0 for an empty box.
  constexpr T GetArea() const { return IsEmpty() ? T{0} : xRange() * yRange(); }

  /// True when the box has no area: a box of zero width is empty although it has points.
  constexpr bool IsEmpty() const { return min_.x >= max_.x || min_.y >= max_.y; }
  /// True when the box is inverted along an axis and so contains no point.
  constexpr bool IsDegenerate() const { return min_.x > max_.x || min_.y > max_.y; }
  constexpr bool HasArea() const { return !IsEmpty(); }

  /// The boundary belongs to the box in all three.
  constexpr bool Contains(const Point& point) const {
    return min_.x <= point.x && point.x <= max_.x && min_.y <= point.y && point.y <= max_.y;
  }
  constexpr bool Contains(const Box2& other) const {
    return Contains(other.min_) && Contains(other.max_);
  }
  constexpr bool Intersects(const Box2& other) const {
    return min_.x <= other.max_.x && other.min_.x <= max_.x && min_.y <= other.max_.y &&
           other.min_.y <= max_.y;
  }

  /// Moves the sides outward (inward when negative).
  constexpr void Inflate(T dx, T dy) {
    min_ -= Point(dx, dy);
    max_ += Point(dx, dy);
  }

  constexpr void ExtendBy(const Point& point) {
    Lower(min_, point);
    Raise(max_, point);
  }
  /// Extending by the empty box changes nothing.
  constexpr void ExtendBy(const Box2& other) {
    Lower(min_, other.min_);
    Raise(max_, other.max_);
  }
  /// Makes the box the bounds of the points; of none, the empty box.
  constexpr void BoundPoints(std::span<const Point> points) {
    MakeEmpty();
    for (const Point& point : points) ExtendBy(point);
  }
  constexpr void BoundPoints(const Point* points, std::size_t count) {
    BoundPoints(std::span<const Point>(points, count));
  }

  /// Keeps the common part; of disjoint boxes that is an inverted box, which `IsEmpty` reports.
  constexpr void Intersect(const Box2& other) {
    Raise(min_, other.min_);
    Lower(max_, other.max_);
  }

  /// Puts the corners in order along each axis.
  constexpr void Normalize() {
    if (min_.x > max_.x) std::swap(min_.x, max_.x);
    if (min_.y > max_.y) std::swap(min_.y, max_.y);
  }

  /// Stores the corners counter-clockwise in a y-up frame, beginning with the minimum.
  constexpr void GetCorners(Point (&corners)[4]) const {
    corners[0] = min_;
    corners[1] = Point(max_.x, min_.y);
    corners[2] = max_;
    corners[3] = Point(min_.x, max_.y);
  }

  /// Takes this box as a part of `source` and returns the part of `destination` that lies in it as
  /// this box lies in `source`. Degenerate: along an axis without extent of `source`, the whole of
  /// `destination`.
  constexpr Box2 MapSubBoxToDestSubBox(const Box2& source, const Box2& destination) const {
    Box2 result = destination;
    MapRange(source.min_.x, source.max_.x, min_.x, max_.x, result.min_.x, result.max_.x);
    MapRange(source.min_.y, source.max_.y, min_.y, max_.y, result.min_.y, result.max_.y);
    return result;
  }

  constexpr Box2& operator+=(const Point& b) {
    return Apply([&b](Point& p) { p += b; });
  }
  constexpr Box2& operator-=(const Point& b) {
    return Apply([&b](Point& p) { p -= b; });
  }
  constexpr Box2& operator*=(const Point& b) {
    return Apply([&b](Point& p) { p *= b; });
  }
  constexpr Box2& operator/=(const Point& b) {
    return Apply([&b](Point& p) { p /= b; });
  }
  constexpr Box2& operator+=(T b) { return *this += Point(b, b); }
  constexpr Box2& operator-=(T b) { return *this -= Point(b, b); }
  constexpr Box2& operator*=(T b) { return *this *= Point(b, b); }
  constexpr Box2& operator/=(T b) { return *this /= Point(b, b); }

  friend constexpr Box2 operator+(Box2 a, const Point& b) { return a += b; }
  friend constexpr Box2 operator-(Box2 a, const Point& b) { return a -= b; }
  friend constexpr Box2 operator*(Box2 a, const Point& b) { return a *= b; }
  friend constexpr Box2 operator/(Box2 a, const Point& b) { return a /= b; }
  friend constexpr Box2 operator+(Box2 a, T b) { return a += b; }
  friend constexpr Box2 operator-(Box2 a, T b) { return a -= b; }
  friend constexpr Box2 operator*(Box2 a, T b) { return a *= b; }
  friend constexpr Box2 operator/(Box2 a, T b) { return a /= b; }

  /// Exact.
  friend constexpr bool operator==(const Box2& a, const Box2& b) {
    return a.min_ == b.min_ && a.max_ == b.max_;
  }

  /// Writes "[(xMin, yMin), (xMax, yMax)]"; needs `<ostream>` where it is used.
  template <class Char, class Traits>
  friend std::basic_ostream<Char, Traits>& operator<<(std::basic_ostream<Char, Traits>& out,
                                                      const Box2& box) {
    return out << '[' << box.min_ << ", " << box.max_ << ']';
  }

private:
  static constexpr T HIGHEST = std::numeric_limits<T>::max();
  static constexpr T LOWEST = std::numeric_limits<T>::lowest();

  static constexpr void Lower(Point& bound, const Point& point) {
    if (point.x < bound.x) bound.x = point.x;
    if (point.y < bound.y) bound.y = point.y;
  }
  static constexpr void Raise(Point& bound, const Point& point) {
    if (point.x > bound.x) bound.x = point.x;
    if (point.y > bound.y) bound.y = point.y;
  }

  static constexpr void MapRange(T sourceMin, T sourceMax, T from, T to, T& destinationMin,
                                 T& destinationMax) {
    const T sourceRange = sourceMax - sourceMin;
    if (sourceRange == T{0}) return;
    const T scale = (destinationMax - destinationMin) / sourceRange;
    const T origin = destinationMin;
    destinationMin = origin + (from - sourceMin) * scale;
    destinationMax = origin + (to - sourceMin) * scale;
  }

  template <class Function>
  constexpr Box2& Apply(Function function) {
    function(min_);
    function(max_);
    return *this;
  }

  Point min_{HIGHEST, HIGHEST};
  Point max_{LOWEST, LOWEST};
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

/// The four numbers of a box in order, for structured bindings.
template <std::size_t INDEX, class T>
constexpr T get(const Box2<T>& box) {
  static_assert(INDEX < 4);
  const Vec2<T>& corner = INDEX < 2 ? box.Min() : box.Max();
  return INDEX % 2 == 0 ? corner.x : corner.y;
}

}  // namespace shr

template <class T>
struct std::tuple_size<shr::Box2<T>> : std::integral_constant<std::size_t, 4> {};

template <std::size_t INDEX, class T>
struct std::tuple_element<INDEX, shr::Box2<T>> {
  using type = T;
};
