// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The passes over a sample in which `Load` of `CUnivariateStatistics` forms its sums. Not
/// installed.
///
///     const int exponent = ScaleExponent(sample.largest);
///     const CentralSums sums = SumCentral(values, exponent, CenterOf(sum, count, exponent));
///
/// All take finite numbers. Sums are of numbers scaled by a power of two, so that none overflows,
/// and the result is scaled back. Threads: no state.

#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "shared/numerics/statistics/ErrorFree.h"
#include "shared/numerics/statistics/ExactSum.h"

namespace shr {

/// Returns the largest magnitude, NaN where an element is not finite.
double LargestMagnitude(std::span<const double> values);

/// Returns an exponent e such that `largest` 2^-e is below 1 and 2^-e is a normal number.
int ScaleExponent(double largest);

/// The mean of numbers scaled by 2^-exponent: `center` and what it lacks.
struct Center {
  double center = 0.0;
  ExactPair rest;
};

/// Returns the mean of `count` numbers with the sum `sum`, within 2^-100 of `rest`.
Center CenterOf(const ExactSum& sum, std::uint64_t count, int exponent);

struct AbsoluteSums {
  ScaledPair magnitudes;
  ScaledPair squares;
  ScaledPair deviations;  // |x - median|
};
AbsoluteSums SumAbsolute(std::span<const double> values, int exponent, double median);

/// Sums of powers of x - mean. Error bound: 2^-97 of the sum of the magnitudes.
struct CentralSums {
  ScaledPair squares;
  ScaledPair cubes;
  ScaledPair fourths;
};
CentralSums SumCentral(std::span<const double> values, int exponent, const Center& mean);

struct PositiveMeans {
  double geometric;
  double harmonic;
};
/// Requires numbers from `minimum` on, which is positive and normal.
PositiveMeans MeansOfPositive(std::span<const double> values, double minimum);

/// Counts into `bins` equal bins from `minimum` to `minimum` + `range`. Errors: see `Load`.
std::vector<std::uint32_t> CountIntoBins(std::span<const double> values, std::size_t bins,
                                         double minimum, double range);

}  // namespace shr
