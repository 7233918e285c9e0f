// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Eigenvalues to more digits than a double has, where long double is wider.
///
/// Threads: no state.

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <vector>

#include "shared/numerics/linear/RMatrix.h"

namespace shr {

/// The eigenvalues of a positive definite matrix in long double, by rotations of the columns of its
/// Cholesky factor, which keep small ones right beside large ones.
inline std::vector<long double> ExactEigenvalues(const RMatrix& a) {
  const std::size_t n = a.Rows();
  std::vector<std::vector<long double>> columns(n, std::vector<long double>(n));
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t i = k; i < n; ++i) {
      long double rest = a(i, k);
      for (std::size_t m = 0; m < k; ++m) rest -= columns[m][i] * columns[m][k];
      columns[k][i] = i == k ? std::sqrt(rest) : rest / columns[k][k];
    }
  }
  const auto dot = [n](const auto& x, const auto& y) {
    return std::inner_product(x.begin(), x.begin() + static_cast<std::ptrdiff_t>(n), y.begin(),
                              0.0L);
  };
  bool isRotated = true;
  for (int sweep = 0; isRotated && sweep < 30; ++sweep) {
    isRotated = false;
    for (std::size_t p = 0; p < n; ++p) {
      for (std::size_t q = p + 1; q < n; ++q) {
        auto &x = columns[p], &y = columns[q];
        const long double product = dot(x, y);
        if (std::abs(product) <= 1e-18L * std::sqrt(dot(x, x)) * std::sqrt(dot(y, y))) continue;
        isRotated = true;
        const long double half = (dot(y, y) - dot(x, x)) / (2.0L * product);
        const long double t = 1.0L / (half + std::copysign(std::hypot(1.0L, half), half));
        const long double c = 1.0L / std::hypot(1.0L, t);
        for (std::size_t i = 0; i < n; ++i) {
          const long double u = x[i], v = y[i];
          x[i] = c * (u - t * v);
          y[i] = c * (v + t * u);
        }
      }
    }
  }
  std::vector<long double> values;
  for (const auto& column : columns) values.push_back(dot(column, column));
  std::sort(values.rbegin(), values.rend());
  return values;
}

}  // namespace shr
