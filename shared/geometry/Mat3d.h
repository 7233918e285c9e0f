// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Mat3d`: transforms of the plane. In space, see shared/geometry/Mat4.h.
///
/// Points are row vectors on the left: x' = x m[0][0] + y m[1][0] + m[2][0], y' likewise with
/// column
/// 1. Where column 2 is not (0, 0, 1), both are divided by w' of that column. Angles are radians,
/// counter-clockwise in a y-up frame.
///
///     Mat3d toPage = Mat3d::MakeScale(Vec2d(2.0, 2.0));
///     toPage.Rotate(HALF_PI, Mat3d::ORDER_POST);
///     toPage.Translate(Vec2d(10.0, 0.0), Mat3d::ORDER_POST);
///     Vec2d corner = Vec2d(1.0, 0.0) * toPage;              // (10, 2)
///     toPage.Transform(outline, outline);                   // all points of a vector
///
/// Threads: plain values.

#pragma once

#include <cstddef>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/MatrixInverse.h"
#include "shared/geometry/SquareMatrix.h"
#include "shared/geometry/Vec3.h"

struct tagPOINT;
struct tagRECT;

namespace shr {

/// Nine numbers row by row; the default is all 0.
class Mat3d : public SquareMatrix<Mat3d, double, 3, Vec3d> {
public:
  static const Mat3d IDENTITY;
  static const Mat3d ZERO;

  constexpr Mat3d() = default;
  constexpr Mat3d(double m00, double m01, double m02, double m10, double m11, double m12,
                  double m20, double m21, double m22)
      : SquareMatrix(m00, m01, m02, m10, m11, m12, m20, m21, m22) {}
  /// Takes nine numbers row by row.
  constexpr explicit Mat3d(const double* elements) : SquareMatrix(elements) {}
  constexpr explicit Mat3d(const float* elements) : SquareMatrix(elements) {}

  constexpr void Set(double m00, double m01, double m02, double m10, double m11, double m12,
                     double m20, double m21, double m22) {
    *this = Mat3d(m00, m01, m02, m10, m11, m12, m20, m21, m22);
  }
  /// Sets columns 0 and 1 row by row and column 2 to (0, 0, 1).
  constexpr void Set(double a, double b, double c, double d, double e, double f) {
    *this = Mat3d(a, b, 0.0, c, d, 0.0, e, f, 1.0);
  }
  constexpr void Set(const double* elements) { *this = Mat3d(elements); }
  constexpr void Set(const float* elements) { *this = Mat3d(elements); }

  constexpr bool IsIdentity() const { return *this == IDENTITY; }
  /// True when column 2 is exactly (0, 0, 1), so that points need no division.
  constexpr bool IsAffine() const {
    return elements_[2] == 0.0 && elements_[5] == 0.0 && elements_[8] == 1.0;
  }

  static constexpr Mat3d MakeTranslation(const Vec2d& translation) {
    return Mat3d(1.0, 0.0, 0.0, 0.0, 1.0, 0.0, translation.x, translation.y, 1.0);
  }
  static constexpr Mat3d MakeScale(const Vec2d& scale) {
    return Mat3d(scale.x, 0.0, 0.0, 0.0, scale.y, 0.0, 0.0, 0.0, 1.0);
  }
  SHARED_API static Mat3d MakeRotation(double angle);

  constexpr void Translate(const Vec2d& translation, Order order) {
    Apply(MakeTranslation(translation), order);
  }
  constexpr void Scale(const Vec2d& scale, Order order) { Apply(MakeScale(scale), order); }
  void Rotate(double angle, Order order) { Apply(MakeRotation(angle), order); }

  /// Returns the determinant of rows 0 and 1 and columns 0 and 1: the factor by which areas grow,
  /// negative when the sense of rotation is reversed.
  constexpr double Det2() const {
    return elements_[0] * elements_[4] - elements_[1] * elements_[3];
  }
  constexpr double Det3() const { return GetRow(0).Dot(GetRow(1).Cross(GetRow(2))); }

  /// Stores the matrix that undoes this one. Returns false and stores nothing when this is singular
  /// or has an element that is no finite number. Affine matrices have affine inverses, exactly.
  /// Error bound: `MatrixInverse::ERROR_FACTOR`, for affine matrices of columns and rows 0 and 1.
  constexpr bool Inverse(Mat3d& result) const;
  /// Returns `ZERO` for a singular matrix.
  [[nodiscard]] constexpr Mat3d Inverse() const;

  /// Transforms a direction, which translation does not move. Column 2 is ignored.
  constexpr Vec2d DirMult(const Vec2d& direction) const {
    return Vec2d(direction.x * elements_[0] + direction.y * elements_[3],
                 direction.x * elements_[1] + direction.y * elements_[4]);
  }

  /// Sets the transform that turns points by -scaleOrientation, scales them, turns them back, turns
  /// them by `rotation` and moves them. Scale and rotation take place about `center`.
  SHARED_API void SetTransform(const Vec2d& translation, double rotation, const Vec2d& scale,
                               double scaleOrientation = 0.0, const Vec2d& center = Vec2d::ZERO);
  /// Finds values from which `SetTransform` makes this matrix, column 2 aside. A reflection becomes
  /// one negative scale.
  /// Error bound: each element to 1e-14 of the largest. Source: see MatrixDecomposition.h.
  SHARED_API void GetTransform(Vec2d& translation, double& rotation, Vec2d& scale,
                               double& scaleOrientation, const Vec2d& center = Vec2d::ZERO) const;

  /// True when the images of the two axes are not perpendicular: the cosine of the angle between
  /// them is larger than `tolerance`.
  SHARED_API bool IsSheared2(double tolerance) const;
  /// Returns the angle to which the x axis is turned, from -pi to pi.
  SHARED_API double GetRotation2() const;
  /// Returns the factor along the x axis divided by that along the y axis.
  SHARED_API double GetAspect2() const;

  // Points from an array into another one, which may be the same but must not overlap otherwise.
  // Integers are rounded to the nearest, halves away from zero, and stop at the ends of their
  // range; NaN gives 0.
  SHARED_API void Transform(const Vec2d* source, Vec2d* destination, std::size_t count) const;
  SHARED_API void Transform(const Vec2d* source, Vec2i* destination, std::size_t count) const;
  SHARED_API void Transform(const Vec2d* source, tagPOINT* destination, std::size_t count) const;
  SHARED_API void Transform(const tagPOINT* source, Vec2d* destination, std::size_t count) const;
  /// The same for whole containers, spans and arrays; as many points as both have.
  template <class Source, class Destination>
  requires requires(const Source& s, Destination& d) {
    std::span(s);
    std::span(d);
  }
  void Transform(const Source& source, Destination&& destination) const {
    const std::span from(source);
    const std::span to(destination);
    Transform(from.data(), to.data(), from.size() < to.size() ? from.size() : to.size());
  }
  /// Transforms the two corners that the box stores, and nothing more: turns and reflections may
  /// give an inverted box. For bounds, transform `GetCorners`.
  SHARED_API void Transform(const Box2d& source, Box2d& destination) const;
  /// The same into left, top and right, bottom.
  SHARED_API void Transform(const Box2d& source, tagRECT& destination) const;

  /// Transforms a point.
  friend constexpr Vec2d operator*(const Vec2d& point, const Mat3d& m) {
    const Vec3d result = Vec3d(point, 1.0) * m;
    if (m.IsAffine()) return Vec2d(result.x, result.y);
    return Vec2d(result.x / result.z, result.y / result.z);
  }
  /// The row vector times the matrix, without division.
  friend constexpr Vec3d operator*(const Vec3d& row, const Mat3d& m) {
    return Vec3d(row.x * m[0][0] + row.y * m[1][0] + row.z * m[2][0],
                 row.x * m[0][1] + row.y * m[1][1] + row.z * m[2][1],
                 row.x * m[0][2] + row.y * m[1][2] + row.z * m[2][2]);
  }
  /// The matrix times the column vector.
  friend constexpr Vec3d operator*(const Mat3d& m, const Vec3d& column) {
    return Vec3d(m.GetRow(0).Dot(column), m.GetRow(1).Dot(column), m.GetRow(2).Dot(column));
  }

private:
  constexpr void Apply(const Mat3d& operation, Order order) {
    order == ORDER_PRE ? PreMultiply(operation) : PostMultiply(operation);
  }
};

inline constexpr Mat3d Mat3d::IDENTITY{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
inline constexpr Mat3d Mat3d::ZERO{};

// Implementation details follow.

constexpr bool Mat3d::Inverse(Mat3d& result) const {
  const double* m = elements_;
  if (!IsAffine()) {
    double full[3][3] = {{m[0], m[1], m[2]}, {m[3], m[4], m[5]}, {m[6], m[7], m[8]}};
    if (!MatrixInverse::Invert(full)) return false;
    result = Mat3d(full[0][0], full[0][1], full[0][2], full[1][0], full[1][1], full[1][2],
                   full[2][0], full[2][1], full[2][2]);
    return true;
  }
  double linear[2][2] = {{m[0], m[1]}, {m[3], m[4]}};
  if (!MatrixInverse::Invert(linear)) return false;
  const Vec2d moved(0.0 - (m[6] * linear[0][0] + m[7] * linear[1][0]),
                    0.0 - (m[6] * linear[0][1] + m[7] * linear[1][1]));
  if (!IsFiniteNumber(moved.x) || !IsFiniteNumber(moved.y)) return false;
  result.Set(linear[0][0], linear[0][1], linear[1][0], linear[1][1], moved.x, moved.y);
  return true;
}

constexpr Mat3d Mat3d::Inverse() const {
  Mat3d result;
  return Inverse(result) ? result : ZERO;
}

}  // namespace shr
