// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Points and vectors in the plane: `Vec2d`, `Vec2f` and `Vec2i`.
///
/// They are plain values of two components and convert to a pointer to the first, so that `v[0]`
/// and array interfaces work. Arithmetic with a vector acts component by component.
///
///     Vec2d a(3.0, 4.0);
///     double length = a.Length();         // 5
///     Vec2d half = Vec2d::ZERO.Lerp(a, 0.5);
///     auto [x, y] = half;                 // 1.5, 2
///
/// Threads: plain values.

#pragma once

#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <typeindex>  // declares std::hash at little cost

#include "shared/geometry/VectorOperators.h"

struct tagPOINT;

namespace shr {

/// Two components of type `T`, in this order and with nothing else; the default is (0, 0).
/// Conversions that keep every value are implicit, the others explicit.
template <class T>
struct Vec2 : VectorOperators<Vec2<T>, T> {
  /// `Normalize` leaves vectors of this length or less alone. It is the `double` one in both
  /// precisions.
  static constexpr double NORMALIZE_TOLERANCE = DBL_EPSILON;

  static const Vec2 ZERO;
  static const Vec2 ONE;
  static const Vec2 UNIT_X;
  static const Vec2 UNIT_Y;

  constexpr Vec2() = default;
  constexpr Vec2(T xValue, T yValue) : x(xValue), y(yValue) {}
  template <class U>
  requires(!std::same_as<T, U>) constexpr explicit(!WideningTo<U, T>) Vec2(const Vec2<U>& other)
      : x(static_cast<T>(other.x)), y(static_cast<T>(other.y)) {}
  /// Takes a `POINT` of shared/platform/WindowsTypes.h.
  template <std::same_as<tagPOINT> P>
  requires std::same_as<T, int>
  constexpr Vec2(const P& point) : x(static_cast<int>(point.x)), y(static_cast<int>(point.y)) {}
  /// Takes the first two components of an array.
  template <class U>
  requires std::is_arithmetic_v<U>
  constexpr explicit Vec2(const U* components)
      : x(static_cast<T>(components[0])), y(static_cast<T>(components[1])) {}

  constexpr void Set(T xValue, T yValue) { *this = Vec2(xValue, yValue); }
  template <class U>
  constexpr void Set(const Vec2<U>& other) {
    *this = Vec2(other);
  }
  template <class U>
  requires std::is_arithmetic_v<U>
  constexpr void Set(const U* components) { *this = Vec2(components); }

  constexpr operator T*() { return &x; }
  constexpr operator const T*() const { return &x; }

  /// Returns twice the signed area of the triangle of this, `b` and the origin: positive when the
  /// way from this to `b` turns counter-clockwise in a y-up frame. For the sign alone, exactly, see
  /// shared/geometry/Orientation.h.
  constexpr ProductType<T> Cross(const Vec2& b) const {
    if constexpr (std::integral<T>) {
      IntegerProducts sum;
      sum.Add(x, b.y);
      sum.Add(-std::int64_t{y}, b.x);
      return sum.Sum();
    } else {
      return x * b.y - y * b.x;
    }
  }

  /// Calls `function` with the x of every vector, then with the y.
  template <class Function, class... Vectors>
  static constexpr void ForEach(Function function, Vectors&... vectors) {
    function(vectors.x...);
    function(vectors.y...);
  }

  T x{};
  T y{};
};

using Vec2d = Vec2<double>;
using Vec2f = Vec2<float>;
using Vec2i = Vec2<int>;

// Spelled out per type: every compiler then knows the values in constant expressions.
/// @cond
#define SHARED_VEC2_CONSTANTS(Vector)           \
  template <>                                   \
  inline constexpr Vector Vector::ZERO{0, 0};   \
  template <>                                   \
  inline constexpr Vector Vector::ONE{1, 1};    \
  template <>                                   \
  inline constexpr Vector Vector::UNIT_X{1, 0}; \
  template <>                                   \
  inline constexpr Vector Vector::UNIT_Y{0, 1}; \
  static_assert(sizeof(Vector) == 2 * sizeof(Vector::ZERO.x))

SHARED_VEC2_CONSTANTS(Vec2d);
SHARED_VEC2_CONSTANTS(Vec2f);
SHARED_VEC2_CONSTANTS(Vec2i);
#undef SHARED_VEC2_CONSTANTS
/// @endcond

}  // namespace shr

template <>
struct std::hash<shr::Vec2i> {
  std::size_t operator()(const shr::Vec2i& vector) const noexcept {
    // Fibonacci hashing; the high bits, which depend on both components, come down.
    const std::uint64_t bits = static_cast<std::uint64_t>(static_cast<std::uint32_t>(vector.x))
                                   << 32 |
                               static_cast<std::uint32_t>(vector.y);
    const std::uint64_t mixed = bits * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(mixed ^ mixed >> 32);
  }
};
