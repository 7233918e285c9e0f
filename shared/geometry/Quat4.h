// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Rotations in space as quaternions: `Quat4d` and `Quat4f`.
///
/// Angles are radians, counter-clockwise when looking against the axis. `q * v` turns a vector, and
/// as in Hamilton's algebra `(a * b) * v` is `a * (b * v)`: the right factor turns first. Matrices
/// take vectors on the left, where `v * (A * B)` goes through A first.
///
///     Quat4d turn(Vec3d::UNIT_Z, HALF_PI);
///     Vec3d up = turn * Vec3d::UNIT_X;                          // (0, 1, 0)
///     Quat4d half = Quat4d::Slerp(Quat4d::IDENTITY, turn, 0.5);
///
/// Threads: plain values.

#pragma once

#include "shared/geometry/Vec4.h"

namespace shr {

template <class T>
class Mat4;

/// The vector part x, y, z and the scalar part w. The default is no rotation, (0, 0, 0, 1). What
/// turns vectors takes any length but 0, unless it says unit.
template <std::floating_point T>
struct Quat4 {
  using Vec = Vec3<T>;

  static const Quat4 IDENTITY;
  static const Quat4 ZERO;

  constexpr Quat4() = default;
  constexpr Quat4(T xValue, T yValue, T zValue, T wValue)
      : x(xValue), y(yValue), z(zValue), w(wValue) {}
  template <class U>
  requires(!std::same_as<T, U>) constexpr explicit(!WideningTo<U, T>) Quat4(const Quat4<U>& other)
      : Quat4(static_cast<T>(other.x), static_cast<T>(other.y), static_cast<T>(other.z),
              static_cast<T>(other.w)) {}
  /// Takes the first four numbers of an array.
  template <class U>
  requires std::is_arithmetic_v<U>
  constexpr explicit Quat4(const U* components)
      : Quat4(static_cast<T>(components[0]), static_cast<T>(components[1]),
              static_cast<T>(components[2]), static_cast<T>(components[3])) {}
  /// See the `Set` of the same arguments.
  Quat4(const Vec& axis, T angle) { Set(axis, angle); }
  Quat4(const Vec& from, const Vec& to) { Set(from, to); }
  explicit Quat4(const Mat4<T>& matrix) { Set(matrix); }

  constexpr void Set(T xValue, T yValue, T zValue, T wValue) {
    *this = Quat4(xValue, yValue, zValue, wValue);
  }
  template <class U>
  requires std::is_arithmetic_v<U>
  constexpr void Set(const U* components) { *this = Quat4(components); }
  /// The axis may have any length; of length 0, it gives NaNs.
  void Set(const Vec& axis, T angle) {
    const Vec vector = axis * (std::sin(angle / 2) / axis.Length());
    *this = Quat4(vector.x, vector.y, vector.z, std::cos(angle / 2));
  }
  /// The shortest rotation that takes one direction to the other. Degenerate: of opposite
  /// directions, half a turn about an axis perpendicular to both; of a vector without length, none.
  void Set(const Vec& from, const Vec& to);
  /// Takes the rotation of rows and columns 0 to 2, which must be a rotation.
  void Set(const Mat4<T>& matrix);

  /// Finds axis, of length 1, and angle. Where the vector part is nearly 0, they are (0, 0, 1) and
  /// 0. Requires: unit.
  void Get(Vec& axis, T& angle) const;
  /// Stores the rotation matrix.
  constexpr void Get(Mat4<T>& matrix) const { matrix = Mat4<T>(*this); }

  constexpr T Dot(const Quat4& b) const { return x * b.x + y * b.y + z * b.z + w * b.w; }
  /// Returns the length.
  T Norm() const { return std::sqrt(Dot(*this)); }
  /// Scales to length 1. Returns false and changes nothing unless the length is above DBL_EPSILON.
  bool Normalize() {
    const T length = Norm();
    if (!(length > DBL_EPSILON)) return false;
    *this = Scaled(1 / length);
    return true;
  }
  /// True when the square of the length differs from 1 by less than the square of `tolerance`.
  constexpr bool IsUnit(T tolerance) const {
    const T excess = Dot(*this) - 1;
    return excess < tolerance * tolerance && -excess < tolerance * tolerance;
  }
  constexpr bool IsIdentity() const { return *this == IDENTITY; }

  /// Becomes the rotation back, of the inverse length.
  constexpr void Invert() { *this = Inverse(); }
  [[nodiscard]] constexpr Quat4 Inverse() const { return UnitInverse().Scaled(1 / Dot(*this)); }
  /// Returns the rotation back of the same length, which is the inverse of a unit quaternion.
  [[nodiscard]] constexpr Quat4 UnitInverse() const { return Quat4(-x, -y, -z, w); }
  /// Returns the same rotation written by the opposite numbers.
  constexpr Quat4 operator-() const { return Quat4(-x, -y, -z, -w); }

  friend constexpr Quat4 operator*(const Quat4& a, const Quat4& b) {
    return Quat4(a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
                 a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
                 a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w,
                 a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z);
  }
  constexpr Quat4& operator*=(const Quat4& b) { return *this = *this * b; }

  /// Returns the turned vector.
  constexpr Vec MultVec(const Vec& v) const {
    const Vec vector(x, y, z);
    const Vec across = vector.Cross(v);
    return v + (across * w + vector.Cross(across)) * TwoBySquare();
  }
  friend constexpr Vec operator*(const Quat4& q, const Vec& v) { return q.MultVec(v); }

  /// Multiplies the angle, keeping the axis. Requires: unit.
  void ScaleAngle(T factor) {
    Vec axis;
    T angle = 0;
    Get(axis, angle);
    Set(axis, angle * factor);
  }

  /// Returns the rotation at `t` on the shortest arc from `a` to `b`; `a` for t <= 0 and `b` for
  /// t >= 1. Nearly equal rotations are blended linearly. Requires: unit.
  /// Source: K. Shoemake, "Animating Rotation with Quaternion Curves", 1985.
  static Quat4 Slerp(const Quat4& a, const Quat4& b, T t);

  /// True when the Euclidean distance of the four numbers is at most `tolerance`.
  constexpr bool Equals(const Quat4& other, T tolerance) const {
    return Vec4<T>(x, y, z, w).Equals(Vec4<T>(other.x, other.y, other.z, other.w), tolerance);
  }
  /// Exact; a rotation may be written by two quaternions, which are not equal.
  friend constexpr bool operator==(const Quat4& a, const Quat4& b) = default;

  /// Writes "(x, y, z, w)"; needs `<ostream>` where it is used.
  template <class Char, class Traits>
  friend std::basic_ostream<Char, Traits>& operator<<(std::basic_ostream<Char, Traits>& out,
                                                      const Quat4& q) {
    return out << Vec4<T>(q.x, q.y, q.z, q.w);
  }

  /// Returns 2 divided by the square of the length, 0 for `ZERO`: the factor of the quadratic terms
  /// of the rotation.
  constexpr T TwoBySquare() const {
    const T square = Dot(*this);
    return square == 0 ? T{0} : 2 / square;
  }

  T x = 0;
  T y = 0;
  T z = 0;
  T w = 1;

private:
  constexpr Quat4 Scaled(T factor) const {
    return Quat4(x * factor, y * factor, z * factor, w * factor);
  }
};

using Quat4d = Quat4<double>;
using Quat4f = Quat4<float>;

// Spelled out per type: every compiler then knows the values in constant expressions.
/// @cond
template <>
inline constexpr Quat4d Quat4d::IDENTITY{0.0, 0.0, 0.0, 1.0};
template <>
inline constexpr Quat4d Quat4d::ZERO{0.0, 0.0, 0.0, 0.0};
template <>
inline constexpr Quat4f Quat4f::IDENTITY{0.0f, 0.0f, 0.0f, 1.0f};
template <>
inline constexpr Quat4f Quat4f::ZERO{0.0f, 0.0f, 0.0f, 0.0f};
/// @endcond

// Implementation details follow.

template <std::floating_point T>
void Quat4<T>::Set(const Vec& from, const Vec& to) {
  *this = IDENTITY;
  Vec begin = from;
  Vec end = to;
  if (!begin.Normalize() || !end.Normalize()) return;
  // The direction halfway turns both the vector and the angle into products of unit vectors.
  Vec middle = begin + end;
  // Of nearly opposite vectors, what normalizing rounded would be large in it along them.
  middle += begin * (middle.LengthSquared() / 2 - middle.Dot(begin));
  if (!middle.Normalize()) {
    const Vec& unit = begin.x * begin.x < T{0.5} ? Vec::UNIT_X : Vec::UNIT_Y;
    middle = begin.Cross(unit).Normalized();
  }
  const Vec vector = begin.Cross(middle);
  *this = Quat4(vector.x, vector.y, vector.z, begin.Dot(middle));
}

template <std::floating_point T>
void Quat4<T>::Get(Vec& axis, T& angle) const {
  const Vec vector(x, y, z);
  if (vector.LengthSquared() > DBL_EPSILON) {
    axis = vector.Normalized();
    angle = 2 * std::acos(w < -1 ? T{-1} : w > 1 ? T{1} : w);
  } else {
    axis = Vec::UNIT_Z;
    angle = 0;
  }
}

template <std::floating_point T>
Quat4<T> Quat4<T>::Slerp(const Quat4& a, const Quat4& b, T t) {
  if (t <= 0) return a;
  if (t >= 1) return b;
  T cosine = a.Dot(b);
  const Quat4 end = cosine < 0 ? -b : b;
  if (cosine < 0) cosine = -cosine;
  T weightA = 1 - t;
  T weightB = t;
  if (1 - cosine > FLT_EPSILON) {
    const T angle = std::acos(cosine);
    const T sine = std::sin(angle);
    if (sine > FLT_EPSILON) {
      weightA = std::sin((1 - t) * angle) / sine;
      weightB = std::sin(t * angle) / sine;
    }
  }
  const Quat4 first = a.Scaled(weightA);
  const Quat4 second = end.Scaled(weightB);
  return Quat4(first.x + second.x, first.y + second.y, first.z + second.z, first.w + second.w);
}

}  // namespace shr
