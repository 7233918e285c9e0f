// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Points for records and interfaces: `Point2<T>`, `Point3<T>`, `Point4<T, unsigned>`, `RPoint` and
/// the array `RPoints`. To compute with points, take `Vec2d` and `Vec3d`.
///
///     Point3<double> position(1.0, 2.0, 3.0);
///     position.Z(4.0);
///     position *= 2.0;                        // (2, 4, 8)
///     Point4<float> vertex(1.0f, 2.0f, 3.0f, 17);
///     unsigned tag = vertex.W();
///
/// Threads: plain values.

#pragma once

#include <vector>

#include "shared/geometry/ComponentOperators.h"

namespace shr {

/// Two coordinates, in this order and with nothing else; the default is 0.
template <class T>
struct Point2 : ComponentOperators<Point2<T>, T> {
  constexpr Point2() = default;
  constexpr Point2(T xValue, T yValue) : x(xValue), y(yValue) {}

  constexpr T X() const { return x; }
  constexpr T Y() const { return y; }
  constexpr void X(T value) { x = value; }
  constexpr void Y(T value) { y = value; }

  /// Exact.
  friend constexpr bool operator==(const Point2& a, const Point2& b) {
    return a.HasComponentsOf(b);
  }

  template <class Function, class... Points>
  static constexpr void ForEach(Function function, Points&... points) {
    function(points.x...);
    function(points.y...);
  }

  T x{};
  T y{};
};

/// Three coordinates, in this order and with nothing else; the default is 0.
template <class T>
struct Point3 : ComponentOperators<Point3<T>, T> {
  constexpr Point3() = default;
  constexpr Point3(T xValue, T yValue, T zValue) : x(xValue), y(yValue), z(zValue) {}

  constexpr T X() const { return x; }
  constexpr T Y() const { return y; }
  constexpr T Z() const { return z; }
  constexpr void X(T value) { x = value; }
  constexpr void Y(T value) { y = value; }
  constexpr void Z(T value) { z = value; }

  /// Exact.
  friend constexpr bool operator==(const Point3& a, const Point3& b) {
    return a.HasComponentsOf(b);
  }

  template <class Function, class... Points>
  static constexpr void ForEach(Function function, Points&... points) {
    function(points.x...);
    function(points.y...);
    function(points.z...);
  }

  T x{};
  T y{};
  T z{};
};

/// Three coordinates and a tag, in this order; the default is 0. Arithmetic leaves the tag alone,
/// comparison looks at it, text does not show it.
template <class T, class Tag = unsigned int>
struct Point4 : ComponentOperators<Point4<T, Tag>, T> {
  constexpr Point4() = default;
  constexpr Point4(T xValue, T yValue, T zValue, Tag tag = Tag{})
      : x(xValue), y(yValue), z(zValue), w(tag) {}

  constexpr T X() const { return x; }
  constexpr T Y() const { return y; }
  constexpr T Z() const { return z; }
  constexpr Tag W() const { return w; }
  constexpr void X(T value) { x = value; }
  constexpr void Y(T value) { y = value; }
  constexpr void Z(T value) { z = value; }
  constexpr void W(Tag tag) { w = tag; }

  /// Exact.
  friend constexpr bool operator==(const Point4& a, const Point4& b) {
    return a.HasComponentsOf(b) && a.w == b.w;
  }

  template <class Function, class... Points>
  static constexpr void ForEach(Function function, Points&... points) {
    function(points.x...);
    function(points.y...);
    function(points.z...);
  }

  T x{};
  T y{};
  T z{};
  Tag w{};
};

using RPoint = Point2<double>;
using RPoints = std::vector<RPoint>;

}  // namespace shr
