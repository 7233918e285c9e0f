// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CPlanarRegression`: the plane z = a x + b y + c that fits points best, with what an analysis of
/// variance says about it.
///
///     const std::vector<Vec3d> samples{{0, 0, 1}, {1, 0, 3}, {0, 1, 2}, {1, 1, 4.5}};
///     CPlanarRegression regression;
///     Load(regression, samples);
///     double slope = regression.a;              // of z along x: 2.25
///     double fit = regression.determination;    // R squared
///
/// Threads: plain values.

#pragma once

#include <cstdint>
#include <limits>
#include <span>

#include "shared/Export.h"
#include "shared/geometry/Vec3.h"

namespace shr {

/// What is known of a fit. A value that does not apply is NaN, as are all of them by default.
struct SHARED_API CPlanarRegression {
  static constexpr double NONE = std::numeric_limits<double>::quiet_NaN();

  /// All values become NaN, the count 0.
  void Clear() { *this = CPlanarRegression(); }

  std::uint64_t count = 0;  ///< n, of the points

  // These need points that are not on one line.
  double a = NONE;
  double errorA = NONE;  ///< standard error of a
  double b = NONE;
  double errorB = NONE;
  double c = NONE;
  double errorC = NONE;
  double regressionSumSquares = NONE;
  double residualSumSquares = NONE;
  double totalSumSquares = NONE;
  double regressionMeanSquare = NONE;  ///< regression sum of squares / 2
  double residualMeanSquare = NONE;    ///< residual sum of squares / (n - 3); n > 3
  double fRatio = NONE;                ///< the quotient of both
  double determination = NONE;         ///< regression sum of squares / total one
  double correlationAB = NONE;         ///< of the estimates
  double correlationAC = NONE;
  double correlationBC = NONE;

  // These do not.
  double correlationXY = NONE;  ///< of the samples
  double correlationXZ = NONE;
  double correlationYZ = NONE;
};

/// Fits a plane to `count` points of which the means are known and the sums of the products of the
/// deviations from them, Sxx = sum of (x - meanX)^2 and so on. Mind the order: Syz comes before
/// Syy.
///
/// With det = Sxx Syy - Sxy^2: a = (Sxz Syy - Sxy Syz) / det, b = (Sxx Syz - Sxy Sxz) / det,
/// c = meanZ - a meanX - b meanY; regression sum of squares = a Sxz + b Syz, residual = Szz - that;
/// with m the residual mean square, errorA = sqrt(m Syy / det), errorB = sqrt(m Sxx / det), errorC
/// = sqrt(m (1/n + (meanY^2 Sxx + meanX^2 Syy - 2 meanX meanY Sxy) / det)); correlationAB =
/// -(Sxy/det) m / (errorA errorB), correlationAC = ((meanY Sxy - meanX Syy)/det) m / (errorC
/// errorA), correlationBC = ((meanX Sxy - meanY Sxx)/det) m / (errorC errorB). NaN stays what has a
/// divisor or radicand that does not exceed 1.1754943508222875e-38; without points, all of it.
/// Error bound: a and b 2 units of the last place of the exact value for these arguments, the
/// others 4; 2^-96 of the terms where they cancel to less. The residual of a perfect fit is what
/// the rounding of the arguments left, which may be below 0: for residuals far below the total take
/// the form for points.
SHARED_API void Load(CPlanarRegression& regression, std::uint64_t count, double meanX, double meanY,
                     double meanZ, double sxx, double sxy, double sxz, double syz, double syy,
                     double szz);

/// Fits a plane to `points`: means and sums are formed and taken with 100 bits. Cost: O(n).
/// Error bound: 4 units of the last place of the exact value for these points; 2^-90 of the terms
/// where they cancel to less.
SHARED_API void Load(CPlanarRegression& regression, std::span<const Vec3d> points);

}  // namespace shr
