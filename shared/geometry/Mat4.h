// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Transforms of space: `Mat4d` and `Mat4f`. For the plane alone, see shared/geometry/Mat3d.h.
///
/// Points are row vectors on the left: x' = x m[0][0] + y m[1][0] + z m[2][0] + m[3][0], y' and z'
/// likewise with columns 1 and 2; the translation lies in row 3. Where column 3 is not
/// (0, 0, 0, 1), all three are divided by w' of that column. Angles are radians, counter-clockwise
/// when looking against the axis.
///
///     Mat4d place = Mat4d::MakeScale(Vec3d(2.0, 2.0, 1.0));
///     place.RotateZ(HALF_PI, Mat4d::ORDER_POST);
///     place.Translate(Vec3d(10.0, 0.0, 0.0), Mat4d::ORDER_POST);
///     Vec3d image = Vec3d(1.0, 0.0, 7.0) * place;               // (10, 2, 7)
///     place.Transform(points, points);                          // all points of a vector
///
/// Threads: plain values.

#pragma once

#include "shared/geometry/Box3.h"
#include "shared/geometry/Mat3d.h"
#include "shared/geometry/Quat4.h"

namespace shr {

/// Sixteen numbers row by row and what is known of their type; the default is all 0.
template <class T>
class Mat4 : public SquareMatrix<Mat4<T>, T, 4, Vec4<T>> {
  using Base = SquareMatrix<Mat4<T>, T, 4, Vec4<T>>;
  using Base::elements_;
  friend Base;

public:
  using typename Base::Order;
  using Vec = Vec3<T>;

  /// What kind of transform it is, from exact comparisons; each includes those before it.
  enum Type : int {
    TYPE_UNKNOWN = 0,  ///< not looked at since the last change
    TYPE_IDENTITY = 1,
    TYPE_2D = 2,      ///< x and y of x and y alone, z stays
    TYPE_AFFINE = 3,  ///< no division
    TYPE_COMPLEX = 4
  };

  static const Mat4 IDENTITY;
  static const Mat4 ZERO;

  constexpr Mat4() = default;
  /// `type` is believed; `TYPE_UNKNOWN` has it found out.
  constexpr Mat4(T m00, T m01, T m02, T m03, T m10, T m11, T m12, T m13, T m20, T m21, T m22, T m23,
                 T m30, T m31, T m32, T m33, Type type = TYPE_UNKNOWN)
      : Base(m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33),
        type_(type) {}
  /// Takes sixteen numbers row by row.
  constexpr explicit Mat4(const double* elements) : Base(elements) {}
  constexpr explicit Mat4(const float* elements) : Base(elements) {}
  template <class U>
  requires(!std::same_as<T, U>) constexpr explicit(!WideningTo<U, T>) Mat4(const Mat4<U>& other)
      : Base(other.Elements().data()) {}
  /// The transform of the plane for x and y; z stays, or is divided as x and y are.
  constexpr explicit Mat4(const Mat3d& m);
  /// The rotation by a quaternion: v * Mat4(q) is q * v.
  constexpr explicit Mat4(const Quat4<T>& rotation);

  constexpr void Set(T m00, T m01, T m02, T m03, T m10, T m11, T m12, T m13, T m20, T m21, T m22,
                     T m23, T m30, T m31, T m32, T m33, Type type = TYPE_UNKNOWN) {
    *this =
        Mat4(m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33, type);
  }
  /// Takes what the constructor of the same argument takes.
  template <class Source>
  constexpr void Set(const Source& source) {
    *this = Mat4(source);
  }

  constexpr bool IsIdentity() const { return GetType() == TYPE_IDENTITY; }
  /// Returns the type, never `TYPE_UNKNOWN`.
  constexpr Type GetType() const { return type_ != TYPE_UNKNOWN ? type_ : FindType(); }
  /// Finds the type and keeps it until the next change, for a matrix that is used often.
  constexpr Type ClassifyType() { return type_ = GetType(); }
  /// Forgets the type, after a change through a pointer.
  constexpr void ResetType() { type_ = TYPE_UNKNOWN; }

  static constexpr Mat4 MakeTranslation(const Vec& translation);
  static constexpr Mat4 MakeScale(const Vec& scale);
  /// About z: x to y.
  static Mat4 MakeRotation(T angle);
  static constexpr Mat4 MakeRotation(const Quat4<T>& rotation) { return Mat4(rotation); }

  constexpr void Translate(const Vec& translation, Order order) {
    Apply(MakeTranslation(translation), order);
  }
  constexpr void Scale(const Vec& scale, Order order) { Apply(MakeScale(scale), order); }
  void RotateX(T angle, Order order);  ///< y to z
  void RotateY(T angle, Order order);  ///< z to x
  void RotateZ(T angle, Order order) { Apply(MakeRotation(angle), order); }
  constexpr void Rotate(const Quat4<T>& rotation, Order order) { Apply(Mat4(rotation), order); }

  /// Returns the determinant of rows 0 to 2 and columns 0 to 2: the factor by which volumes grow.
  constexpr T Det3() const { return Det3(0, 1, 2, 0, 1, 2); }
  /// Returns the determinant of any three rows and columns.
  constexpr T Det3(int r0, int r1, int r2, int c0, int c1, int c2) const;
  constexpr T Det4() const;

  /// Stores the matrix that undoes this one, of the same type. Returns false and stores nothing
  /// when this is singular or has an element that is no finite number, or the result has one.
  /// Error bound: `MatrixInverse::ERROR_FACTOR`, for the 2 x 2, 3 x 3 or 4 x 4 elements that the
  /// type leaves; of floats, the result is computed in `double` and rounded.
  constexpr bool Inverse(Mat4& result) const;
  /// Returns `ZERO` for a singular matrix.
  [[nodiscard]] constexpr Mat4 Inverse() const {
    Mat4 result;
    return Inverse(result) ? result : ZERO;
  }

  /// Transforms a direction, which translation does not move. Column 3 is ignored.
  constexpr Vec DirMult(const Vec& direction) const;

  /// Sets the transform that turns points by the inverse of `scaleOrientation`, scales them, turns
  /// them back, turns them by `rotation` and moves them. Scale and rotation take place about
  /// `center`.
  SHARED_API void SetTransform(const Vec& translation, const Quat4<T>& rotation, const Vec& scale,
                               const Quat4<T>& scaleOrientation = Quat4<T>::IDENTITY,
                               const Vec& center = Vec::ZERO);
  /// Finds values from which `SetTransform` makes this matrix, column 3 aside. Of a matrix made of
  /// rotation and positive scales, they are those. A reflection becomes one or three negative
  /// scales.
  /// Error bound: each element to 1e-14 (floats: 1e-6) of the largest, and of the center.
  /// Source: see MatrixDecomposition.cpp.
  SHARED_API void GetTransform(Vec& translation, Quat4<T>& rotation, Vec& scale,
                               Quat4<T>& scaleOrientation, const Vec& center = Vec::ZERO) const;

  /// What the matrix does to x and y in the plane z = 0.
  constexpr Mat3d ToMat3d() const;
  /// See the functions of `Mat3d`.
  bool IsSheared2(double tolerance) const { return ToMat3d().IsSheared2(tolerance); }
  double GetRotation2() const { return ToMat3d().GetRotation2(); }
  double GetAspect2() const { return ToMat3d().GetAspect2(); }

  // Points from an array into another one, which may be the same but must not overlap otherwise.
  // Sources of two coordinates lie in the plane z = 0. Integers are rounded to the nearest, halves
  // away from zero, and stop at the ends of their range; NaN gives 0. The same bits come from every
  // processor.
  SHARED_API void Transform(const Vec* source, Vec* destination, std::size_t count) const;
  SHARED_API void Transform(const Vec* source, Vec2d* destination, std::size_t count) const;
  SHARED_API void Transform(const Vec* source, Vec2f* destination, std::size_t count) const;
  SHARED_API void Transform(const Vec* source, Vec2i* destination, std::size_t count) const;
  SHARED_API void Transform(const Vec* source, tagPOINT* destination, std::size_t count) const;
  SHARED_API void Transform(const Vec2<T>* source, Vec2<T>* destination, std::size_t count) const;
  SHARED_API void Transform(const Vec2<T>* source, Vec2i* destination, std::size_t count) const;
  SHARED_API void Transform(const Vec2<T>* source, tagPOINT* destination, std::size_t count) const;
  SHARED_API void Transform(const tagPOINT* source, Vec2<T>* destination, std::size_t count) const;
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
  void Transform(const Box2<T>& source, Box2<T>& destination) const {
    destination.Set(source.Min() * *this, source.Max() * *this);
  }
  void Transform(const Box3<T>& source, Box3<T>& destination) const {
    destination.Set(source.Min() * *this, source.Max() * *this);
  }
  /// The same into left, top and right, bottom.
  SHARED_API void Transform(const Box2<T>& source, tagRECT& destination) const;

  /// Transforms a point as `Transform` does.
  friend constexpr Vec2<T> operator*(const Vec2<T>& point, const Mat4& m) {
    const Vec3<T> image = Vec3<T>(point, T{0}) * m;
    return Vec2<T>(image.x, image.y);
  }
  friend constexpr Vec operator*(const Vec& point, const Mat4& m) { return m.MapPoint(point); }
  /// The row vector times the matrix, without division.
  friend constexpr Vec4<T> operator*(const Vec4<T>& row, const Mat4& m) {
    return Vec4<T>(row.Dot(m.GetCol(0)), row.Dot(m.GetCol(1)), row.Dot(m.GetCol(2)),
                   row.Dot(m.GetCol(3)));
  }
  /// The matrix times the column vector.
  friend constexpr Vec4<T> operator*(const Mat4& m, const Vec4<T>& column) {
    return Vec4<T>(m.GetRow(0).Dot(column), m.GetRow(1).Dot(column), m.GetRow(2).Dot(column),
                   m.GetRow(3).Dot(column));
  }

private:
  constexpr void ElementsChanged() { type_ = TYPE_UNKNOWN; }
  constexpr Type FindType() const;
  constexpr Vec MapPoint(const Vec& p) const;
  constexpr void Apply(const Mat4& operation, Order order) {
    order == Base::ORDER_PRE ? this->PreMultiply(operation) : this->PostMultiply(operation);
  }

  static constexpr Mat4 Product(const Mat4& a, const Mat4& b);
  template <int N>
  constexpr bool InvertLinear(Mat4& result) const;
  constexpr bool InvertComplex(Mat4& result) const;

  Type type_ = TYPE_UNKNOWN;
};

using Mat4d = Mat4<double>;
using Mat4f = Mat4<float>;

// Spelled out per type: every compiler then knows the values in constant expressions.
/// @cond
template <>
inline constexpr Mat4d Mat4d::IDENTITY{
    1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, TYPE_IDENTITY};
template <>
inline constexpr Mat4d Mat4d::ZERO{};
template <>
inline constexpr Mat4f Mat4f::IDENTITY{
    1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, TYPE_IDENTITY};
template <>
inline constexpr Mat4f Mat4f::ZERO{};
/// @endcond

// Implementation details follow.

template <class T>
constexpr Mat4<T>::Mat4(const Mat3d& m)
    : Mat4(static_cast<T>(m[0][0]), static_cast<T>(m[0][1]), 0, static_cast<T>(m[0][2]),
           static_cast<T>(m[1][0]), static_cast<T>(m[1][1]), 0, static_cast<T>(m[1][2]), 0, 0, 1, 0,
           static_cast<T>(m[2][0]), static_cast<T>(m[2][1]), 0, static_cast<T>(m[2][2])) {}

// The rows are the images of the axes.
// Source: K. Shoemake, "Animating Rotation with Quaternion Curves", 1985.
template <class T>
constexpr Mat4<T>::Mat4(const Quat4<T>& q) : Mat4(IDENTITY) {
  const T s = q.TwoBySquare();
  const Vec v(q.x, q.y, q.z);
  const Vec wv = v * (q.w * s);
  const Vec xv = v * (q.x * s);
  const T yy = q.y * q.y * s;
  const T yz = q.y * q.z * s;
  const T zz = q.z * q.z * s;
  this->SetRow(0, Vec4<T>(1 - yy - zz, xv.y + wv.z, xv.z - wv.y, 0));
  this->SetRow(1, Vec4<T>(xv.y - wv.z, 1 - xv.x - zz, yz + wv.x, 0));
  this->SetRow(2, Vec4<T>(xv.z + wv.y, yz - wv.x, 1 - xv.x - yy, 0));
}

template <class T>
constexpr Mat4<T> Mat4<T>::MakeTranslation(const Vec& translation) {
  Mat4 result = IDENTITY;
  result.SetRow(3, Vec4<T>(translation, 1));
  return result;
}

template <class T>
constexpr Mat4<T> Mat4<T>::MakeScale(const Vec& scale) {
  return Mat4(scale.x, 0, 0, 0, 0, scale.y, 0, 0, 0, 0, scale.z, 0, 0, 0, 0, 1);
}

template <class T>
constexpr typename Mat4<T>::Type Mat4<T>::FindType() const {
  const T* m = elements_;
  if (m[3] != 0 || m[7] != 0 || m[11] != 0 || m[15] != 1) return TYPE_COMPLEX;
  if (m[10] != 1 || m[2] != 0 || m[8] != 0 || m[6] != 0 || m[9] != 0 || m[14] != 0) {
    return TYPE_AFFINE;
  }
  if (m[0] != 1 || m[5] != 1 || m[12] != 0 || m[13] != 0 || m[4] != 0 || m[1] != 0) return TYPE_2D;
  return TYPE_IDENTITY;
}

template <class T>
constexpr Vec3<T> Mat4<T>::MapPoint(const Vec& p) const {
  const T* m = elements_;
  switch (GetType()) {
    case TYPE_IDENTITY:
      return p;
    case TYPE_2D:
      return Vec(p.x * m[0] + p.y * m[4] + m[12], p.x * m[1] + p.y * m[5] + m[13], p.z);
    case TYPE_AFFINE:
      return DirMult(p) + Vec(m + 12);
    default:
      return (DirMult(p) + Vec(m + 12)) / (p.x * m[3] + p.y * m[7] + p.z * m[11] + m[15]);
  }
}

template <class T>
constexpr Vec3<T> Mat4<T>::DirMult(const Vec& d) const {
  const T* m = elements_;
  return Vec(d.x * m[0] + d.y * m[4] + d.z * m[8], d.x * m[1] + d.y * m[5] + d.z * m[9],
             d.x * m[2] + d.y * m[6] + d.z * m[10]);
}

// The cheaper products leave out the terms that are known to be 0, in the same order of sums.
template <class T>
constexpr Mat4<T> Mat4<T>::Product(const Mat4& a, const Mat4& b) {
  const Type typeA = a.GetType();
  const Type typeB = b.GetType();
  if (typeA == TYPE_IDENTITY) return b;
  if (typeB == TYPE_IDENTITY) return a;
  if (typeA == TYPE_COMPLEX || typeB == TYPE_COMPLEX) return Base::Product(a, b);
  Mat4 result = IDENTITY;
  result.ResetType();
  const int axes = typeA == TYPE_2D && typeB == TYPE_2D ? 2 : 3;
  for (int row = 0; row < 4; ++row) {
    if (row == axes) row = 3;
    for (int column = 0; column < axes; ++column) {
      const T* from = a.elements_ + 4 * row;
      T sum = from[0] * b.elements_[column];
      for (int i = 1; i < axes; ++i) sum += from[i] * b.elements_[4 * i + column];
      result.elements_[4 * row + column] = row == 3 ? sum + b.elements_[12 + column] : sum;
    }
  }
  return result;
}

template <class T>
constexpr T Mat4<T>::Det3(int r0, int r1, int r2, int c0, int c1, int c2) const {
  const auto& m = *this;
  return Vec(m[r0][c0], m[r0][c1], m[r0][c2])
      .Dot(Vec(m[r1][c0], m[r1][c1], m[r1][c2]).Cross(Vec(m[r2][c0], m[r2][c1], m[r2][c2])));
}

template <class T>
constexpr T Mat4<T>::Det4() const {
  if (GetType() != TYPE_COMPLEX) return Det3();
  const T* m = elements_;
  return m[0] * Det3(1, 2, 3, 1, 2, 3) - m[1] * Det3(1, 2, 3, 0, 2, 3) +
         m[2] * Det3(1, 2, 3, 0, 1, 3) - m[3] * Det3(1, 2, 3, 0, 1, 2);
}

template <class T>
constexpr bool Mat4<T>::Inverse(Mat4& result) const {
  switch (GetType()) {
    case TYPE_IDENTITY:
      result = IDENTITY;
      return true;
    case TYPE_2D:
      return InvertLinear<2>(result);
    case TYPE_AFFINE:
      return InvertLinear<3>(result);
    default:
      return InvertComplex(result);
  }
}

/// Inverts N rows and columns and the translation along them.
template <class T>
template <int N>
constexpr bool Mat4<T>::InvertLinear(Mat4& result) const {
  double linear[N][N] = {};
  for (int row = 0; row < N; ++row) {
    for (int i = 0; i < N; ++i) linear[row][i] = static_cast<double>(elements_[4 * row + i]);
  }
  if (!MatrixInverse::Invert(linear)) return false;
  Mat4 inverse = IDENTITY;
  inverse.ResetType();
  for (int column = 0; column < N; ++column) {
    double moved = 0.0;
    for (int i = 0; i < N; ++i) {
      inverse.elements_[4 * i + column] = static_cast<T>(linear[i][column]);
      moved -= static_cast<double>(elements_[12 + i]) * linear[i][column];
    }
    inverse.elements_[12 + column] = static_cast<T>(moved);
  }
  for (const T element : inverse.elements_) {
    if (!IsFiniteNumber(static_cast<double>(element))) return false;
  }
  result = inverse;
  return true;
}

template <class T>
constexpr bool Mat4<T>::InvertComplex(Mat4& result) const {
  double full[4][4] = {};
  for (int i = 0; i < 16; ++i) full[i / 4][i % 4] = static_cast<double>(elements_[i]);
  if (!MatrixInverse::Invert(full)) return false;
  Mat4 inverse;
  for (int i = 0; i < 16; ++i) {
    inverse.elements_[i] = static_cast<T>(full[i / 4][i % 4]);
    if (!IsFiniteNumber(static_cast<double>(inverse.elements_[i]))) return false;
  }
  result = inverse;
  return true;
}

template <class T>
constexpr Mat3d Mat4<T>::ToMat3d() const {
  double m[16] = {};
  this->ToDoubleArray(m);
  return Mat3d(m[0], m[1], m[3], m[4], m[5], m[7], m[12], m[13], m[15]);
}

template <class T>
Mat4<T> Mat4<T>::MakeRotation(T angle) {
  Mat4 result = IDENTITY;
  result.SetRow(0, Vec4<T>(std::cos(angle), std::sin(angle), 0, 0));
  result.SetRow(1, Vec4<T>(-std::sin(angle), std::cos(angle), 0, 0));
  return result;
}

template <class T>
void Mat4<T>::RotateX(T angle, Order order) {
  Mat4 turn = IDENTITY;
  turn.SetRow(1, Vec4<T>(0, std::cos(angle), std::sin(angle), 0));
  turn.SetRow(2, Vec4<T>(0, -std::sin(angle), std::cos(angle), 0));
  Apply(turn, order);
}

template <class T>
void Mat4<T>::RotateY(T angle, Order order) {
  Mat4 turn = IDENTITY;
  turn.SetRow(0, Vec4<T>(std::cos(angle), 0, -std::sin(angle), 0));
  turn.SetRow(2, Vec4<T>(std::sin(angle), 0, std::cos(angle), 0));
  Apply(turn, order);
}

// The largest of the four numbers is found first, so that no root of a small difference is taken.
// Source: S. W. Shepperd, "Quaternion from Rotation Matrix", 1978.
template <std::floating_point T>
void Quat4<T>::Set(const Mat4<T>& m) {
  const T trace = m[0][0] + m[1][1] + m[2][2];
  T largest = trace;
  int axis = 3;
  for (int i = 0; i < 3; ++i) {
    if (m[i][i] > largest) {
      largest = m[i][i];
      axis = i;
    }
  }
  T numbers[4];
  if (axis == 3) {
    numbers[3] = 1 + trace;
    for (int i = 0; i < 3; ++i) {
      numbers[i] = m[(i + 1) % 3][(i + 2) % 3] - m[(i + 2) % 3][(i + 1) % 3];
    }
  } else {
    const int next = (axis + 1) % 3;
    const int last = (axis + 2) % 3;
    numbers[axis] = 1 + m[axis][axis] - m[next][next] - m[last][last];
    numbers[next] = m[axis][next] + m[next][axis];
    numbers[last] = m[axis][last] + m[last][axis];
    numbers[3] = m[next][last] - m[last][next];
  }
  Set(numbers);
  Normalize();
}

}  // namespace shr
