// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CMultivariateStatistics`: means, covariances, correlations, rank correlations and principal
/// components of several variables; and the functions that compute each. For one variable see
/// shared/numerics/statistics/UnivariateStatistics.h. docs/statistics.md tells how exact they are.
///
///     const RMatrix table{{1.0, 2.0}, {2.0, 3.5}, {3.0, 6.5}};   // a row is an observation
///     CMultivariateStatistics summary;
///     Load(summary, table);
///     double r = summary.correlation(0, 1);
///     RVector ranks = ComputeTiedRank(RVector{10.0, 20.0, 20.0, 30.0});   // 1, 2.5, 2.5, 4
///
/// Numbers that are not finite give NaN, except for ranks. Memory that is not there is
/// `std::bad_alloc`. Threads: no state.

#pragma once

#include <cstdint>

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

/// What is known of n observations of p variables.
struct CMultivariateStatistics {
  /// The count becomes 0, vector and matrices are freed.
  void Clear() { *this = CMultivariateStatistics(); }

  std::uint64_t count = 0;      ///< n
  RVector mean;                 ///< p
  RMatrix covariance;           ///< p x p, and so are the correlations
  RMatrix correlation;          ///< Pearson's
  RMatrix rankCorrelation;      ///< Spearman's
  RMatrix principalComponents;  ///< p x (p + 1); see `ComputePrincipalComponents`
};

/// Computes everything from n rows of p columns. Without rows or columns the matrices have the
/// shapes told above and hold NaN.
SHARED_API void Load(CMultivariateStatistics& statistics, const RMatrix& data);

/// Returns the sum of each column, divided by the number of rows. Error bound: half a unit in the
/// last place and 2^-49 of one, whatever cancels. Cost: O(n p).
[[nodiscard]] SHARED_API RVector ComputeMean(const RMatrix& data);

/// Returns the sums over all rows of (x_i - mean_i)(x_j - mean_j), divided by n - 1, a symmetric
/// matrix. Error bound: 2 units in the last place of the exact value for `mean` as it is given, or
/// 2^-96 of the sum of the magnitudes where that is larger. A mean that is rounded adds n / (n - 1)
/// times the product of what two means lack; the form without it takes means of 106 bits, and so
/// does `Load`. Cost: O(n p^2). Requires: one mean a column, otherwise it is the library's internal
/// error.
[[nodiscard]] SHARED_API RMatrix ComputeCovariance(const RMatrix& data, const RVector& mean);
[[nodiscard]] SHARED_API RMatrix ComputeCovariance(const RMatrix& data);

/// Returns covariance_ij / (sqrt(covariance_ii) sqrt(covariance_jj)): NaN where a variance is 0.
/// The data are not looked at where the covariance is given; its size is that of the result.
[[nodiscard]] SHARED_API RMatrix ComputeCorrelation(const RMatrix& data, const RMatrix& covariance);
[[nodiscard]] SHARED_API RMatrix ComputeCorrelation(const RMatrix& data);

/// Returns the places of the elements in ascending order, from 1; equal elements, among them 0 and
/// -0, all get the mean of their places. NaN follow the numbers in the order in which they stand,
/// each in a place of its own. A matrix is ranked column by column. Cost: O(n), by radix sort;
/// memory for 32 n bytes.
[[nodiscard]] SHARED_API RVector ComputeTiedRank(const RVector& values);
[[nodiscard]] SHARED_API RMatrix ComputeTiedRank(const RMatrix& data);

/// Returns the correlation of the tied ranks, Spearman's coefficient.
[[nodiscard]] SHARED_API RMatrix ComputeRankCorrelation(const RMatrix& data);

/// Returns a p x (p + 1) matrix: as its first p columns the eigenvectors of `covariance`, of unit
/// length, by decreasing magnitude of their eigenvalues, and as the last column the eigenvalues.
/// Where they are not found (`CyclicJacobi`) all elements are NaN; an empty matrix gives an empty
/// one. Requires: a square matrix, otherwise it is the library's internal error.
[[nodiscard]] SHARED_API RMatrix ComputePrincipalComponents(const RMatrix& covariance);

}  // namespace shr
