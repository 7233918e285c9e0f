// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Comoments`, the sums of products of the deviations of several variables from their means. Not
/// installed.
///
///     const std::array<const double*, 2> columns{x.data(), y.data()};
///     const Comoments moments(columns, 1, x.size());
///     double covariance = (moments.Sum(0, 1) / ScaledPair(n - 1.0)).ToDouble();
///
/// Threads: const calls may run together.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "shared/numerics/statistics/ErrorFree.h"

namespace shr {

/// Sums over `count` observations; element i of the variable v is `columns[v][i * stride]`. Where a
/// variable is not finite, its mean and sums are not either. Error bound: means and sums have 100
/// bits of the sum of the magnitudes. Cost: O(count v^2) for v variables, about 3 ns a product.
class Comoments {
public:
  /// About the means of the variables, as exact as they are found.
  Comoments(std::span<const double* const> columns, std::size_t stride, std::size_t count);
  /// About given means, one a variable.
  Comoments(std::span<const double* const> columns, std::size_t stride, std::size_t count,
            std::span<const double> means);

  const ScaledPair& Mean(std::size_t variable) const { return means_[variable]; }
  /// Returns the sum of (x - mean x)(y - mean y) of two variables, in any order.
  const ScaledPair& Sum(std::size_t a, std::size_t b) const {
    return a < b ? sums_[Index(a, b)] : sums_[Index(b, a)];
  }

private:
  class Columns;

  void AddProducts(Columns& columns, std::size_t count);
  std::size_t Index(std::size_t a, std::size_t b) const { return a * means_.size() + b; }

  std::vector<ScaledPair> means_;
  std::vector<ScaledPair> sums_;  // a square, its upper half in use
};

/// Returns the exact sum of `count` numbers, divided by `count`.
ScaledPair MeanOfColumn(const double* column, std::size_t stride, std::size_t count);

}  // namespace shr
