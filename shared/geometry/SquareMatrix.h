// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the transform matrices have in common: elements row by row, comparison, products. Not for
/// direct use; include shared/geometry/Mat3d.h or shared/geometry/Mat4.h.
///
/// A matrix type `M` derives from `SquareMatrix<M, component type, rows, row vector>`. It may hide
/// `ElementsChanged`, which is called before elements can change, and `Product`.
///
///     matrix[3][0] = 5.0;                 // row 3, column 0
///     matrix.PostMultiply(turn);          // matrix * turn
///
/// Threads: plain values.

#pragma once

#include <iosfwd>
#include <span>

#include "shared/Export.h"

namespace shr {

template <class M, class T, int N, class RowVector>
class SquareMatrix {
public:
  /// Whether an operation is applied to points before or after what the matrix does already. Any
  /// value but 0 means after.
  enum Order : int { ORDER_PRE = 0, ORDER_POST = 1 };

  static constexpr int SIZE = N;

  /// Returns the first of the elements of a row. Requires: do not write through an earlier pointer
  /// after the matrix was used otherwise.
  constexpr T* operator[](int row) {
    Self().ElementsChanged();
    return elements_ + N * row;
  }
  constexpr const T* operator[](int row) const { return elements_ + N * row; }

  constexpr RowVector GetRow(int row) const { return RowVector(elements_ + N * row); }
  constexpr RowVector GetCol(int column) const {
    RowVector result;
    int i = column;
    RowVector::ForEach(
        [&](T& value) {
          value = elements_[i];
          i += N;
        },
        result);
    return result;
  }
  constexpr void SetRow(int row, const RowVector& values) { SetEvery(1, N * row, values); }
  constexpr void SetCol(int column, const RowVector& values) { SetEvery(N, column, values); }

  /// Stores all elements row by row.
  constexpr void ToDoubleArray(double* elements) const {
    for (int i = 0; i < N * N; ++i) elements[i] = static_cast<double>(elements_[i]);
  }
  /// The elements row by row.
  constexpr std::span<const T, N * N> Elements() const {
    return std::span<const T, N * N>(elements_);
  }

  constexpr void SetIdentity() { Self() = M::IDENTITY; }

  /// Returns the matrix mirrored along its diagonal.
  [[nodiscard]] constexpr M Transpose() const {
    M result;
    SquareMatrix& mirrored = result;
    for (int row = 0; row < N; ++row) {
      for (int i = 0; i < N; ++i) mirrored.elements_[N * i + row] = elements_[N * row + i];
    }
    return result;
  }

  /// True when every element differs by at most `tolerance`; a NaN is equal to nothing.
  constexpr bool Equals(const SquareMatrix& other, T tolerance) const {
    for (int i = 0; i < N * N; ++i) {
      const T difference = elements_[i] - other.elements_[i];
      if (!(difference <= tolerance && -difference <= tolerance)) return false;
    }
    return true;
  }
  /// Exact.
  friend constexpr bool operator==(const M& a, const M& b) {
    return static_cast<const SquareMatrix&>(a).HasElementsOf(b);
  }

  /// Points go through the left matrix first.
  friend constexpr M operator*(M a, const M& b) { return a *= b; }
  constexpr M& operator*=(const M& b) { return Self() = M::Product(Self(), b); }
  constexpr M& PostMultiply(const M& b) { return *this *= b; }
  constexpr M& PreMultiply(const M& a) { return Self() = M::Product(a, Self()); }

  /// Writes "[a, b ...; c, d ...]" row by row; needs `<ostream>` where it is used.
  template <class Char, class Traits>
  friend std::basic_ostream<Char, Traits>& operator<<(std::basic_ostream<Char, Traits>& out,
                                                      const M& matrix) {
    for (int i = 0; i < N * N; ++i) {
      out << (i == 0 ? "[" : i % N == 0 ? "; " : ", ") << matrix[i / N][i % N];
    }
    return out << ']';
  }

protected:
  constexpr SquareMatrix() = default;
  template <class... Values>
  requires(sizeof...(Values) == N * N) constexpr explicit SquareMatrix(Values... values)
      : elements_{values...} {}
  template <class U>
  constexpr explicit SquareMatrix(const U* values) {
    for (int i = 0; i < N * N; ++i) elements_[i] = static_cast<T>(values[i]);
  }

  constexpr void ElementsChanged() {}

  /// Sums run over the columns of `a` in order.
  static constexpr M Product(const SquareMatrix& a, const SquareMatrix& b) {
    M result;
    SquareMatrix& product = result;
    for (int row = 0; row < N; ++row) {
      for (int column = 0; column < N; ++column) {
        T sum = a.elements_[N * row] * b.elements_[column];
        for (int i = 1; i < N; ++i) sum += a.elements_[N * row + i] * b.elements_[N * i + column];
        product.elements_[N * row + column] = sum;
      }
    }
    return result;
  }

  T elements_[N * N] = {};

private:
  constexpr void SetEvery(int step, int first, const RowVector& values) {
    Self().ElementsChanged();
    int i = first;
    RowVector::ForEach(
        [&](const T& value) {
          elements_[i] = value;
          i += step;
        },
        values);
  }

  constexpr bool HasElementsOf(const SquareMatrix& other) const {
    for (int i = 0; i < N * N; ++i) {
      if (!(elements_[i] == other.elements_[i])) return false;
    }
    return true;
  }

  constexpr M& Self() { return static_cast<M&>(*this); }
  constexpr const M& Self() const { return static_cast<const M&>(*this); }
};

}  // namespace shr
