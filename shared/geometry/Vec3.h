// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Points and vectors in space: `Vec3d`, `Vec3f` and `Vec3i`.
///
/// They are plain values of three components and convert to a pointer to the first, so that `v[2]`
/// and array interfaces work. Arithmetic with a vector acts component by component.
///
///     Vec3d normal = Vec3d::UNIT_X.Cross(Vec3d::UNIT_Y);  // (0, 0, 1)
///     Vec3d raised(Vec2d(1.0, 2.0), 3.0);
///     bool isNormal = raised.Normalize();
///     auto [x, y, z] = raised;
///
/// Threads: plain values.

#pragma once

#include "shared/geometry/Vec2.h"

namespace shr {

/// Three components of type `T`, in this order and with nothing else; the default is (0, 0, 0).
/// Conversions that keep every value are implicit, the others explicit.
template <class T>
struct Vec3 : VectorOperators<Vec3<T>, T> {
  /// `Normalize` leaves vectors of this length or less alone.
  static constexpr double NORMALIZE_TOLERANCE = std::same_as<T, float> ? FLT_EPSILON : DBL_EPSILON;

  static const Vec3 ZERO;
  static const Vec3 ONE;
  static const Vec3 UNIT_X;
  static const Vec3 UNIT_Y;
  static const Vec3 UNIT_Z;

  constexpr Vec3() = default;
  constexpr Vec3(T xValue, T yValue, T zValue) : x(xValue), y(yValue), z(zValue) {}
  constexpr Vec3(const Vec2<T>& xy, T zValue) : x(xy.x), y(xy.y), z(zValue) {}
  template <class U>
  requires(!std::same_as<T, U>) constexpr explicit(!WideningTo<U, T>) Vec3(const Vec3<U>& other)
      : x(static_cast<T>(other.x)), y(static_cast<T>(other.y)), z(static_cast<T>(other.z)) {}
  /// Takes the first three components of an array.
  template <class U>
  requires std::is_arithmetic_v<U>
  constexpr explicit Vec3(const U* components)
      : x(static_cast<T>(components[0])),
        y(static_cast<T>(components[1])),
        z(static_cast<T>(components[2])) {}

  constexpr void Set(T xValue, T yValue, T zValue) { *this = Vec3(xValue, yValue, zValue); }
  constexpr void Set(const Vec2<T>& xy, T zValue) { *this = Vec3(xy, zValue); }
  template <class U>
  constexpr void Set(const Vec3<U>& other) {
    *this = Vec3(other);
  }
  template <class U>
  requires std::is_arithmetic_v<U>
  constexpr void Set(const U* components) { *this = Vec3(components); }

  constexpr operator T*() { return &x; }
  constexpr operator const T*() const { return &x; }

  /// Returns the vector perpendicular to both, which make a right-handed frame with it; its length
  /// is the area of their parallelogram. Requires, for integers: the result fits.
  constexpr Vec3 Cross(const Vec3& b) const {
    using P = std::conditional_t<std::integral<T>, std::int64_t, T>;
    return Vec3(static_cast<T>(P{y} * b.z - P{z} * b.y), static_cast<T>(P{z} * b.x - P{x} * b.z),
                static_cast<T>(P{x} * b.y - P{y} * b.x));
  }

  /// Calls `function` with the x of every vector, then with the y, then with the z.
  template <class Function, class... Vectors>
  static constexpr void ForEach(Function function, Vectors&... vectors) {
    function(vectors.x...);
    function(vectors.y...);
    function(vectors.z...);
  }

  T x{};
  T y{};
  T z{};
};

using Vec3d = Vec3<double>;
using Vec3f = Vec3<float>;
using Vec3i = Vec3<int>;

// Spelled out per type: every compiler then knows the values in constant expressions.
/// @cond
#define SHARED_VEC3_CONSTANTS(Vector)              \
  template <>                                      \
  inline constexpr Vector Vector::ZERO{0, 0, 0};   \
  template <>                                      \
  inline constexpr Vector Vector::ONE{1, 1, 1};    \
  template <>                                      \
  inline constexpr Vector Vector::UNIT_X{1, 0, 0}; \
  template <>                                      \
  inline constexpr Vector Vector::UNIT_Y{0, 1, 0}; \
  template <>                                      \
  inline constexpr Vector Vector::UNIT_Z{0, 0, 1}; \
  static_assert(sizeof(Vector) == 3 * sizeof(Vector::ZERO.x))

SHARED_VEC3_CONSTANTS(Vec3d);
SHARED_VEC3_CONSTANTS(Vec3f);
SHARED_VEC3_CONSTANTS(Vec3i);
#undef SHARED_VEC3_CONSTANTS
/// @endcond

}  // namespace shr

template <>
struct std::hash<shr::Vec3i> {
  std::size_t operator()(const shr::Vec3i& vector) const noexcept {
    const std::size_t plane = std::hash<shr::Vec2i>()(shr::Vec2i(vector.x, vector.y));
    const std::uint64_t mixed =
        (plane ^ static_cast<std::uint32_t>(vector.z)) * std::uint64_t{0x9E3779B97F4A7C15u};
    return static_cast<std::size_t>(mixed ^ mixed >> 32);
  }
};
