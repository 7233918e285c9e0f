// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Opt-in: vectors, quaternions and matrices of this library seen as objects of Eigen, without a
/// copy, and back. Needs the headers of Eigen 3.3 or later where it is included; the library itself
/// does not, and no other header of it includes this one.
///
///     Vec3d axis(1.0, 2.0, 2.0);
///     ToEigen(axis).normalize();                             // changes `axis`
///     Eigen::Matrix4d m = ToEigen(matrix).transpose();       // for columns on the right
///     auto columns = ToEigen(std::span(points));             // 2 x n, a column a point
///     Vec3d image = FromEigen(Eigen::Vector3d(rotation * ToEigen(axis)));
///
/// Points are rows that go through a matrix from the left here and columns that go through it from
/// the right there, so the matrix of the same transform is the transpose. Quaternions mean the same
/// in both.
///
/// A map looks at the object that it was made of and must not outlive it. Matrices are mapped for
/// reading only, because they know things about their elements; assign `FromEigen` to change one.
///
/// Threads: no state.

#pragma once

#include <concepts>
#include <cstddef>
#include <span>
#include <type_traits>

#include <Eigen/Core>
#include <Eigen/Geometry>

#include "shared/geometry/Mat3d.h"
#include "shared/geometry/Mat4.h"
#include "shared/geometry/Quat4.h"
#include "shared/geometry/Vec4.h"

namespace shr {

/// @cond
template <class V>
struct EigenOf;
template <class T>
struct EigenOf<Vec2<T>> {
  using Scalar = T;
  using Type = Eigen::Matrix<T, 2, 1>;
  using Columns = Eigen::Matrix<T, 2, Eigen::Dynamic>;
};
template <class T>
struct EigenOf<Vec3<T>> {
  using Scalar = T;
  using Type = Eigen::Matrix<T, 3, 1>;
  using Columns = Eigen::Matrix<T, 3, Eigen::Dynamic>;
};
template <class T>
struct EigenOf<Vec4<T>> {
  using Scalar = T;
  using Type = Eigen::Matrix<T, 4, 1>;
  using Columns = Eigen::Matrix<T, 4, Eigen::Dynamic>;
};
/// @endcond

/// A type that has a vector of Eigen with the same components.
template <class V>
concept EigenVector = requires {
  typename EigenOf<V>::Type;
};

/// Return the vector as a column of Eigen; changes go to the vector.
template <EigenVector V>
Eigen::Map<typename EigenOf<V>::Type> ToEigen(V& vector) {
  return Eigen::Map<typename EigenOf<V>::Type>(&vector.x);
}
template <EigenVector V>
Eigen::Map<const typename EigenOf<V>::Type> ToEigen(const V& vector) {
  return Eigen::Map<const typename EigenOf<V>::Type>(&vector.x);
}
template <EigenVector V>
void ToEigen(const V&& vector) = delete;

/// Return the vectors of an array as the columns of a matrix; changes go to the array.
template <class V, std::size_t EXTENT>
requires EigenVector<std::remove_const_t<V>>
auto ToEigen(std::span<V, EXTENT> vectors) {
  using Columns = typename EigenOf<std::remove_const_t<V>>::Columns;
  using Matrix = std::conditional_t<std::is_const_v<V>, const Columns, Columns>;
  return Eigen::Map<Matrix>(vectors.empty() ? nullptr : &vectors.front().x,
                            Columns::RowsAtCompileTime, static_cast<Eigen::Index>(vectors.size()));
}

/// Return the quaternion, whose parts lie in the same order; changes go to it.
template <class T>
Eigen::Map<Eigen::Quaternion<T>> ToEigen(Quat4<T>& quaternion) {
  return Eigen::Map<Eigen::Quaternion<T>>(&quaternion.x);
}
template <class T>
Eigen::Map<const Eigen::Quaternion<T>> ToEigen(const Quat4<T>& quaternion) {
  return Eigen::Map<const Eigen::Quaternion<T>>(&quaternion.x);
}
template <class T>
void ToEigen(const Quat4<T>&& quaternion) = delete;

/// Return the elements of a matrix, row by row as they are.
template <class T>
auto ToEigen(const Mat4<T>& matrix) {
  return Eigen::Map<const Eigen::Matrix<T, 4, 4, Eigen::RowMajor>>(matrix.Elements().data());
}
inline auto ToEigen(const Mat3d& matrix) {
  return Eigen::Map<const Eigen::Matrix<double, 3, 3, Eigen::RowMajor>>(matrix.Elements().data());
}
template <class T>
void ToEigen(const Mat4<T>&& matrix) = delete;
void ToEigen(const Mat3d&& matrix) = delete;

/// Return a copy as a type of this library.
template <class T>
Vec2<T> FromEigen(const Eigen::Matrix<T, 2, 1>& vector) {
  return Vec2<T>(vector.data());
}
template <class T>
Vec3<T> FromEigen(const Eigen::Matrix<T, 3, 1>& vector) {
  return Vec3<T>(vector.data());
}
template <class T>
Vec4<T> FromEigen(const Eigen::Matrix<T, 4, 1>& vector) {
  return Vec4<T>(vector.data());
}
template <class T>
Quat4<T> FromEigen(const Eigen::Quaternion<T>& quaternion) {
  return Quat4<T>(quaternion.x(), quaternion.y(), quaternion.z(), quaternion.w());
}
/// Matrices of either order of storage.
template <class T, int OPTIONS>
Mat4<T> FromEigen(const Eigen::Matrix<T, 4, 4, OPTIONS>& matrix) {
  const Eigen::Matrix<T, 4, 4, Eigen::RowMajor> rows = matrix;
  return Mat4<T>(rows.data());
}
template <int OPTIONS>
Mat3d FromEigen(const Eigen::Matrix<double, 3, 3, OPTIONS>& matrix) {
  const Eigen::Matrix<double, 3, 3, Eigen::RowMajor> rows = matrix;
  return Mat3d(rows.data());
}

}  // namespace shr
