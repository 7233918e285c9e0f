// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Matrices that are hard for solvers, and what is asked of their results.
///
/// Threads: no state.

#pragma once

#include <cmath>
#include <cstdint>
#include <random>

#include "shared/numerics/linear/MatrixProducts.h"
#include "shared/numerics/linear/MatrixUtility.h"

namespace shr {

inline constexpr double EPSILON = 2.220446049250313e-16;

inline RVector RandomVector(std::uint64_t n, unsigned int seed) {
  std::mt19937 random(seed);
  RVector v(n);
  // Not a distribution of the standard library, which differs between the targets.
  for (double& element : v) element = static_cast<double>(random()) / 2147483648.0 - 1.0;
  return v;
}

inline RMatrix RandomMatrix(std::uint64_t rows, std::uint64_t columns, unsigned int seed) {
  RMatrix m;
  Initialize(m, rows, columns, RandomVector(rows * columns, seed).data());
  return m;
}

inline RMatrix RandomSymmetric(std::uint64_t n, unsigned int seed) {
  RMatrix m = RandomMatrix(n, n, seed);
  Add(m, Transpose(m));
  return m;
}

/// B B^T + shift I.
inline RMatrix RandomPositive(std::uint64_t n, unsigned int seed, double shift = 0.1) {
  const RMatrix b = RandomMatrix(n, n, seed);
  RMatrix m;
  OuterProduct(b, b, m);
  for (std::uint64_t i = 0; i < n; ++i) m(i, i) += shift;
  return m;
}

inline RMatrix Hilbert(std::uint64_t n) {
  RMatrix m(n, n);
  for (std::uint64_t i = 0; i < n; ++i) {
    for (std::uint64_t j = 0; j < n; ++j) m(i, j) = 1.0 / static_cast<double>(i + j + 1);
  }
  return m;
}

inline RMatrix Vandermonde(const RVector& points, std::uint64_t columns) {
  RMatrix m(points.size(), columns);
  for (std::uint64_t i = 0; i < points.size(); ++i) {
    double power = 1.0;
    for (std::uint64_t j = 0; j < columns; ++j, power *= points(i)) m(i, j) = power;
  }
  return m;
}

/// Powers of ten from 10^first in equal steps to 10^last.
inline RVector Grades(std::uint64_t n, double first, double last) {
  RVector v(n);
  for (std::uint64_t i = 0; i < n; ++i) {
    const double part = n < 2 ? 0.0 : static_cast<double>(i) / static_cast<double>(n - 1);
    v(i) = std::pow(10.0, std::round(first + (last - first) * part));
  }
  return v;
}

/// D M D for the diagonal matrix D of `grades`.
inline RMatrix Graded(RMatrix m, const RVector& grades) {
  for (std::uint64_t i = 0; i < m.Rows(); ++i) {
    for (std::uint64_t j = 0; j < m.Columns(); ++j) m(i, j) *= grades(i) * grades(j);
  }
  return m;
}

/// Returns |a x - b| / (|a| |x| + |b|) in the norm of the largest row sum, 0 for nothing at all.
inline double RelativeResidual(const RMatrix& a, const RVector& x, const RVector& b) {
  RVector r;
  Product(a, x, r);
  Subtract(r, b);
  const double size = LInfNorm(a) * LInfNorm(x) + LInfNorm(b);
  return LInfNorm(r) == 0.0 ? 0.0 : LInfNorm(r) / size;
}

/// Returns |Q^T Q - I| in the Frobenius norm.
inline double OrthogonalityError(const RMatrix& q) {
  RMatrix product, identity;
  InnerProduct(q, q, product);
  Eye(identity, q.Columns(), q.Columns());
  Subtract(product, identity);
  return FNorm(product);
}

/// Returns a with the lower triangle mirrored to the upper one.
inline RMatrix MirrorLower(RMatrix a) {
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    for (std::uint64_t j = 0; j < i; ++j) a(j, i) = a(i, j);
  }
  return a;
}

/// Returns the lower triangle; with `isUnit` its diagonal is 1.
inline RMatrix LowerOf(const RMatrix& a, bool isUnit = false) {
  RMatrix l;
  Zeros(l, a.Rows(), a.Columns());
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    for (std::uint64_t j = 0; j <= i; ++j) l(i, j) = i == j && isUnit ? 1.0 : a(i, j);
  }
  return l;
}

inline constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
inline constexpr double INFINITE = std::numeric_limits<double>::infinity();

}  // namespace shr
