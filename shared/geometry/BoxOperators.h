// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the axis-aligned boxes of every dimension and precision have in common. Not for direct use;
/// include shared/geometry/Box2.h or shared/geometry/Box3.h.
///
/// A box type derives from `BoxOperators<itself, its vector type, component type>`, which holds the
/// two corners, and adds what names axes.
///
///     class Box2d : public BoxOperators<Box2d, Vec2d, double> { ... };
///
/// Threads: no state.

#pragma once

#include <cstddef>
#include <iosfwd>
#include <limits>
#include <span>
#include <type_traits>
#include <utility>

#include "shared/Export.h"

namespace shr {

/// A minimum and a maximum corner. No constructor or `Set` puts them in order; `Normalize` does.
/// Degenerate: a NaN coordinate of a box makes `Contains` and `Intersects` false; a NaN coordinate
/// of a point extends nothing.
template <class B, class V, class T>
class BoxOperators {
public:
  using Point = V;

  constexpr const Point& Min() const { return min_; }
  constexpr const Point& Max() const { return max_; }
  constexpr void Set(const Point& minimum, const Point& maximum) { Self() = B(minimum, maximum); }
  constexpr void MakeEmpty() { Self() = B(); }

  /// Halves are taken before the sum, so that the middle of the box of all points is 0.
  constexpr Point Center() const { return min_ / T{2} + max_ / T{2}; }
  /// Returns the length of the diagonal.
  T Diagonal() const { return (max_ - min_).Length(); }

  /// True when the box has no inside: a box of zero width is empty although it has points.
  constexpr bool IsEmpty() const {
    return Any([](const T& low, const T& high) { return low >= high; }, min_, max_);
  }
  /// True when the box is inverted along an axis and so contains no point.
  constexpr bool IsDegenerate() const {
    return Any([](const T& low, const T& high) { return low > high; }, min_, max_);
  }

  /// The boundary belongs to the box in all three.
  constexpr bool Contains(const Point& point) const {
    return !Any([](const T& low, const T& high, const T& p) { return !(low <= p) | !(p <= high); },
                min_, max_, point);
  }
  constexpr bool Contains(const B& other) const {
    return Contains(other.Min()) && Contains(other.Max());
  }
  constexpr bool Intersects(const B& other) const {
    return !Any([](const T& low, const T& high, const T& otherLow,
                   const T& otherHigh) { return !(low <= otherHigh) | !(otherLow <= high); },
                min_, max_, other.Min(), other.Max());
  }

  constexpr void ExtendBy(const Point& point) {
    Lower(min_, point);
    Raise(max_, point);
  }
  /// Extending by the empty box changes nothing.
  constexpr void ExtendBy(const B& other) {
    Lower(min_, other.Min());
    Raise(max_, other.Max());
  }
  /// Makes the box the bounds of the points; of none, the empty box.
  constexpr void BoundPoints(std::span<const Point> points) {
    B bounds;
    for (const Point& point : points) bounds.ExtendBy(point);
    Self() = bounds;
  }
  constexpr void BoundPoints(const Point* points, std::size_t count) {
    BoundPoints(std::span<const Point>(points, count));
  }

  /// Keeps the common part; of disjoint boxes that is an inverted box, which `IsEmpty` reports.
  constexpr void Intersect(const B& other) {
    Raise(min_, other.Min());
    Lower(max_, other.Max());
  }

  /// Puts the corners in order along each axis.
  constexpr void Normalize() {
    Point::ForEach(
        [](T& low, T& high) {
          if (low > high) std::swap(low, high);
        },
        min_, max_);
  }

  /// Takes this box as a part of `source` and returns the part of `destination` that lies in it as
  /// this box lies in `source`. Degenerate: along an axis without extent of `source`, the whole of
  /// `destination`.
  constexpr B MapSubBoxToDestSubBox(const B& source, const B& destination) const {
    Point low = destination.Min();
    Point high = destination.Max();
    Point::ForEach(MapRange, source.Min(), source.Max(), min_, max_, low, high);
    return B(low, high);
  }

  /// Act on both corners. The operand may be a corner of this box.
  constexpr B& operator+=(const Point& b) {
    return Apply([b](Point& p) { p += b; });
  }
  constexpr B& operator-=(const Point& b) {
    return Apply([b](Point& p) { p -= b; });
  }
  constexpr B& operator*=(const Point& b) {
    return Apply([b](Point& p) { p *= b; });
  }
  constexpr B& operator/=(const Point& b) {
    return Apply([b](Point& p) { p /= b; });
  }
  constexpr B& operator+=(T b) {
    return Apply([b](Point& p) { p += b; });
  }
  constexpr B& operator-=(T b) {
    return Apply([b](Point& p) { p -= b; });
  }
  constexpr B& operator*=(T b) {
    return Apply([b](Point& p) { p *= b; });
  }
  constexpr B& operator/=(T b) {
    return Apply([b](Point& p) { p /= b; });
  }

  friend constexpr B operator+(B a, const Point& b) { return a += b; }
  friend constexpr B operator-(B a, const Point& b) { return a -= b; }
  friend constexpr B operator*(B a, const Point& b) { return a *= b; }
  friend constexpr B operator/(B a, const Point& b) { return a /= b; }
  friend constexpr B operator+(B a, T b) { return a += b; }
  friend constexpr B operator-(B a, T b) { return a -= b; }
  friend constexpr B operator*(B a, T b) { return a *= b; }
  friend constexpr B operator/(B a, T b) { return a /= b; }

  /// Exact.
  friend constexpr bool operator==(const B& a, const B& b) {
    return a.Min() == b.Min() && a.Max() == b.Max();
  }

  /// Writes "[(xMin, yMin ...), (xMax, yMax ...)]"; needs `<ostream>` where it is used.
  template <class Char, class Traits>
  friend std::basic_ostream<Char, Traits>& operator<<(std::basic_ostream<Char, Traits>& out,
                                                      const B& box) {
    return out << '[' << box.Min() << ", " << box.Max() << ']';
  }

protected:
  static constexpr T HIGHEST = std::numeric_limits<T>::max();
  static constexpr T LOWEST = std::numeric_limits<T>::lowest();

  constexpr BoxOperators(const Point& minimum, const Point& maximum)
      : min_(minimum), max_(maximum) {}

  Point min_;
  Point max_;

private:
  constexpr B& Self() { return static_cast<B&>(*this); }

  /// Returns whether `test` is true along any axis; asks all of them, for a jump costs more.
  template <class Test, class... Points>
  static constexpr bool Any(Test test, const Points&... points) {
    bool result = false;
    Point::ForEach([&](const auto&... values) { result |= test(values...); }, points...);
    return result;
  }

  static constexpr void Lower(Point& bound, const Point& point) {
    Point::ForEach(
        [](T& value, const T& other) {
          if (other < value) value = other;
        },
        bound, point);
  }
  static constexpr void Raise(Point& bound, const Point& point) {
    Point::ForEach(
        [](T& value, const T& other) {
          if (other > value) value = other;
        },
        bound, point);
  }

  static constexpr void MapRange(const T& sourceMin, const T& sourceMax, const T& from, const T& to,
                                 T& destinationMin, T& destinationMax) {
    const T sourceRange = sourceMax - sourceMin;
    if (sourceRange == T{0}) return;
    const T scale = (destinationMax - destinationMin) / sourceRange;
    const T origin = destinationMin;
    destinationMin = origin + (from - sourceMin) * scale;
    destinationMax = origin + (to - sourceMin) * scale;
  }

  template <class Function>
  constexpr B& Apply(Function function) {
    function(min_);
    function(max_);
    return Self();
  }
};

/// The numbers of a box in order, for structured bindings.
template <std::size_t INDEX, class B, class V, class T>
constexpr T get(const BoxOperators<B, V, T>& box) {
  constexpr std::size_t AXES = sizeof(V) / sizeof(T);
  static_assert(INDEX < 2 * AXES);
  T result{};
  std::size_t axis = INDEX / AXES * AXES;
  V::ForEach([&](const T& value) { result = axis++ == INDEX ? value : result; },
             INDEX < AXES ? box.Min() : box.Max());
  return result;
}

}  // namespace shr
