// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Inversion of small matrices, for the transform matrices of this folder.
///
/// Rows and then columns are scaled by powers of two, which rounds nothing, until the largest
/// element of each lies between 1 and 2. Two rows are then inverted by their determinant, more by
/// Gauss-Jordan elimination, which takes the largest element left as its pivot each time. Scales of
/// the axes as different as 1e-150 and 1e150 therefore do not count against a matrix; only rows or
/// columns that nearly depend on each other do.
///
/// Source: J. H. Wilkinson, "Error Analysis of Direct Methods of Matrix Inversion", 1961; G. Peters
/// and J. H. Wilkinson, "On the Stability of Gauss-Jordan Elimination with Pivoting", 1975.
///
///     double elements[3][3] = ...;
///     bool isRegular = MatrixInverse::Invert(elements);
///
/// Threads: no state.

#pragma once

#include <bit>
#include <cstdint>
#include <limits>

#include "shared/Export.h"
#include "shared/geometry/VectorOperators.h"

namespace shr::MatrixInverse {

/// A matrix is singular when after scaling its determinant (of two rows) or all elements that are
/// left as a pivot are this small, as small as rounding may leave them.
inline constexpr double SINGULARITY_THRESHOLD = 0x1p-47;

/// With S the scaled matrix, X what is computed for it, u = 2^-53 and the norm of largest row sums:
/// |X - S^-1| <= ERROR_FACTOR u |S| |S^-1|^2. Scaling back adds no error.
inline constexpr double ERROR_FACTOR = 64.0;

/// Replaces a matrix by its inverse. Returns false and leaves it as it is when it is singular or
/// has an element that is no finite number, or its inverse has one.
template <int N>
constexpr bool Invert(double (&elements)[N][N]);

// Implementation details follow.

/// Returns the power of two that brings a positive number between 1 and 2, as far as a number
/// beside the smallest can be brought there.
constexpr double ScaleToOne(double value) {
  constexpr std::uint64_t BIAS = 1023;
  const std::uint64_t exponent = std::bit_cast<std::uint64_t>(value) >> 52;
  if (exponent == 0) return 0x1p1022;
  if (exponent == 2 * BIAS) return 0x1p-1023;
  return std::bit_cast<double>((2 * BIAS - exponent) << 52);
}

constexpr double Magnitude(double value) {
  return value < 0.0 ? -value : value;
}

template <int N>
struct Scales {
  double rows[N];
  double columns[N];
};

/// Scales the rows, then the columns. Returns false when one has no element but 0 or one that is
/// not finite.
template <int N>
constexpr bool Scale(double (&a)[N][N], Scales<N>& scales) {
  for (int pass = 0; pass < 2; ++pass) {
    for (int i = 0; i < N; ++i) {
      double largest = 0.0;
      for (int k = 0; k < N; ++k) {
        const double magnitude = Magnitude(pass == 0 ? a[i][k] : a[k][i]);
        if (!IsFiniteNumber(magnitude)) return false;
        if (magnitude > largest) largest = magnitude;
      }
      if (largest == 0.0) return false;
      const double scale = ScaleToOne(largest);
      (pass == 0 ? scales.rows[i] : scales.columns[i]) = scale;
      for (int k = 0; k < N; ++k) (pass == 0 ? a[i][k] : a[k][i]) *= scale;
    }
  }
  return true;
}

struct Pivot {
  int row;
  int column;
  double magnitude;
};

template <int N>
constexpr Pivot FindPivot(const double (&a)[N][N], const bool (&usedRows)[N],
                          const bool (&usedColumns)[N]) {
  Pivot pivot{0, 0, 0.0};
  for (int row = 0; row < N; ++row) {
    for (int column = 0; column < N; ++column) {
      if (usedRows[row] || usedColumns[column]) continue;
      const double magnitude = Magnitude(a[row][column]);
      if (magnitude > pivot.magnitude) pivot = {row, column, magnitude};
    }
  }
  return pivot;
}

/// One step of elimination; `right` began as the unit matrix.
template <int N>
constexpr void Eliminate(double (&a)[N][N], double (&right)[N][N], const Pivot& pivot) {
  const double divisor = a[pivot.row][pivot.column];
  for (int i = 0; i < N; ++i) {
    a[pivot.row][i] /= divisor;
    right[pivot.row][i] /= divisor;
  }
  for (int row = 0; row < N; ++row) {
    const double factor = a[row][pivot.column];
    if (row == pivot.row || factor == 0.0) continue;
    for (int i = 0; i < N; ++i) {
      a[row][i] -= factor * a[pivot.row][i];
      right[row][i] -= factor * right[pivot.row][i];
    }
  }
}

constexpr bool InvertScaled(double (&a)[2][2]) {
  const double determinant = a[0][0] * a[1][1] - a[0][1] * a[1][0];
  if (!(Magnitude(determinant) > SINGULARITY_THRESHOLD)) return false;
  const double first = a[0][0];
  a[0][0] = a[1][1] / determinant;
  a[0][1] = -a[0][1] / determinant;
  a[1][0] = -a[1][0] / determinant;
  a[1][1] = first / determinant;
  return true;
}

template <int N>
constexpr bool InvertScaled(double (&a)[N][N]) {
  double right[N][N] = {};
  for (int i = 0; i < N; ++i) right[i][i] = 1.0;
  bool usedRows[N] = {};
  bool usedColumns[N] = {};
  int sourceOfRow[N] = {};
  for (int step = 0; step < N; ++step) {
    const Pivot pivot = FindPivot(a, usedRows, usedColumns);
    if (!(pivot.magnitude > SINGULARITY_THRESHOLD)) return false;
    Eliminate(a, right, pivot);
    usedRows[pivot.row] = true;
    usedColumns[pivot.column] = true;
    sourceOfRow[pivot.column] = pivot.row;
  }
  for (int row = 0; row < N; ++row) {
    for (int i = 0; i < N; ++i) a[row][i] = right[sourceOfRow[row]][i];
  }
  return true;
}

template <int N>
constexpr bool Invert(double (&elements)[N][N]) {
  double a[N][N] = {};
  for (int row = 0; row < N; ++row) {
    for (int i = 0; i < N; ++i) a[row][i] = elements[row][i];
  }
  Scales<N> scales{};
  if (!Scale(a, scales) || !InvertScaled(a)) return false;
  for (int row = 0; row < N; ++row) {
    for (int i = 0; i < N; ++i) {
      a[row][i] = a[row][i] * scales.columns[row] * scales.rows[i];
      if (!IsFiniteNumber(a[row][i])) return false;
    }
  }
  for (int row = 0; row < N; ++row) {
    for (int i = 0; i < N; ++i) elements[row][i] = a[row][i];
  }
  return true;
}

}  // namespace shr::MatrixInverse
