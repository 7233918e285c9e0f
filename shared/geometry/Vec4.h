// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Vectors of four components: `Vec4d` and `Vec4f`, for homogeneous coordinates and rows of
/// matrices.
///
/// They are plain values and convert to a pointer to the first component. Arithmetic with a vector
/// acts component by component.
///
///     Vec4d point(Vec3d(1.0, 2.0, 3.0), 1.0);
///     bool isNear = point.Equals(Vec4d(1.0, 2.0, 3.0, 1.5), 0.5);  // true
///
/// Threads: plain values.

#pragma once

#include "shared/geometry/Vec3.h"

namespace shr {

/// Four components of type `T`, in this order and with nothing else; the default is all 0.
/// Conversions that keep every value are implicit, the others explicit.
template <std::floating_point T>
struct Vec4 : VectorOperators<Vec4<T>, T> {
  /// `Normalize` leaves vectors of this length or less alone.
  static constexpr double NORMALIZE_TOLERANCE = std::same_as<T, float> ? FLT_EPSILON : DBL_EPSILON;

  static const Vec4 ZERO;
  static const Vec4 ONE;
  static const Vec4 UNIT_X;
  static const Vec4 UNIT_Y;

  constexpr Vec4() = default;
  constexpr Vec4(T xValue, T yValue, T zValue, T wValue)
      : x(xValue), y(yValue), z(zValue), w(wValue) {}
  constexpr Vec4(const Vec3<T>& xyz, T wValue) : x(xyz.x), y(xyz.y), z(xyz.z), w(wValue) {}
  template <class U>
  requires(!std::same_as<T, U>) constexpr explicit(!WideningTo<U, T>) Vec4(const Vec4<U>& other)
      : Vec4(static_cast<T>(other.x), static_cast<T>(other.y), static_cast<T>(other.z),
             static_cast<T>(other.w)) {}
  /// Takes the first four components of an array.
  template <class U>
  requires std::is_arithmetic_v<U>
  constexpr explicit Vec4(const U* components)
      : x(static_cast<T>(components[0])),
        y(static_cast<T>(components[1])),
        z(static_cast<T>(components[2])),
        w(static_cast<T>(components[3])) {}

  constexpr void Set(T xValue, T yValue, T zValue, T wValue) {
    *this = Vec4(xValue, yValue, zValue, wValue);
  }
  constexpr void Set(const Vec3<T>& xyz, T wValue) { *this = Vec4(xyz, wValue); }
  template <class U>
  constexpr void Set(const Vec4<U>& other) {
    *this = Vec4(other);
  }
  template <class U>
  requires std::is_arithmetic_v<U>
  constexpr void Set(const U* components) { *this = Vec4(components); }

  constexpr operator T*() { return &x; }
  constexpr operator const T*() const { return &x; }

  /// True when the distance is at most `tolerance`.
  constexpr bool Equals(const Vec4& other, T tolerance) const {
    return this->DistanceSquared(other) <= tolerance * tolerance;
  }

  /// Calls `function` with the x of every vector, then with the y, the z and the w.
  template <class Function, class... Vectors>
  static constexpr void ForEach(Function function, Vectors&... vectors) {
    function(vectors.x...);
    function(vectors.y...);
    function(vectors.z...);
    function(vectors.w...);
  }

  T x{};
  T y{};
  T z{};
  T w{};
};

using Vec4d = Vec4<double>;
using Vec4f = Vec4<float>;

// Spelled out per type: every compiler then knows the values in constant expressions.
/// @cond
#define SHARED_VEC4_CONSTANTS(Vector)                 \
  template <>                                         \
  inline constexpr Vector Vector::ZERO{0, 0, 0, 0};   \
  template <>                                         \
  inline constexpr Vector Vector::ONE{1, 1, 1, 1};    \
  template <>                                         \
  inline constexpr Vector Vector::UNIT_X{1, 0, 0, 0}; \
  template <>                                         \
  inline constexpr Vector Vector::UNIT_Y{0, 1, 0, 0}; \
  static_assert(sizeof(Vector) == 4 * sizeof(Vector::ZERO.x))

SHARED_VEC4_CONSTANTS(Vec4d);
SHARED_VEC4_CONSTANTS(Vec4f);
#undef SHARED_VEC4_CONSTANTS
/// @endcond

}  // namespace shr
