// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CUnivariateStatistics`: forty values that describe one sample, from its count to its kurtosis,
/// and a histogram. For several variables see shared/numerics/statistics/MultivariateStatistics.h,
/// for points SpatialStatistics.h beside it. docs/statistics.md tells how exact the values are.
///
///     std::vector<double> values{1.0, 2.0, 3.0, 4.0};
///     CUnivariateStatistics statistics;
///     Load(statistics, values.begin(), values.end());   // reorders the values
///     double spread = statistics.stdDev;                // 1.29...
///     std::cout << statistics;
///
/// Threads: plain values; loads of different ranges may run together.

#pragma once

#include <cstdint>
#include <iosfwd>
#include <iterator>
#include <limits>
#include <span>
#include <vector>

#include "shared/Export.h"

namespace shr {

/// What `Load` finds out about n numbers. A value that the sample does not have is NaN, as are all
/// of them by default; the comments tell when, beyond an empty sample.
struct SHARED_API CUnivariateStatistics {
  static constexpr double NONE = std::numeric_limits<double>::quiet_NaN();

  /// All values become NaN, the count 0, the histogram empty.
  void Clear() { *this = CUnivariateStatistics(); }

  /// n, with the NaN among the elements.
  std::uint64_t count = 0;

  /// Elements of the sorted sample, without interpolation: at 0-based position (n - 1) p / 100,
  /// rounded down. `percentile50` is the lower middle one where n is even, unlike `median`.
  double percentile01 = NONE;
  double percentile05 = NONE;
  double percentile10 = NONE;
  double percentile25 = NONE;
  double percentile50 = NONE;
  double percentile75 = NONE;
  double percentile90 = NONE;
  double percentile95 = NONE;
  double percentile99 = NONE;

  double minimum = NONE;
  double maximum = NONE;
  double mean = NONE;               ///< sum / n, also where the sum overflows
  double median = NONE;             ///< the middle element, the mean of both where n is even
  double geometricMean = NONE;      ///< only where the minimum exceeds 1.1754943508222875e-38
  double harmonicMean = NONE;       ///< likewise
  double rootMeanSquare = NONE;     ///< only where the mean square is positive
  double trimMean = NONE;           ///< from the 5th to the 95th percentile inclusive; n >= 20
  double interQuartileMean = NONE;  ///< from the 25th to the 75th percentile inclusive
  double midrange = NONE;           ///< (minimum + maximum) / 2
  /// Those before the 10th percentile count as it, those from the 90th on as that one.
  double winsorizedMean = NONE;
  double triMean = NONE;             ///< (P25 + 2 P50 + P75) / 4
  double variance = NONE;            ///< sum of (x - mean)^2 / (n - 1); n >= 2
  double stdDev = NONE;              ///< square root of the variance; only where that is positive
  double interQuartileRange = NONE;  ///< P75 - P25
  double range = NONE;               ///< maximum - minimum
  double meanDiff = NONE;            ///< mean of |x - y| over all pairs (Gini); 2 <= n <= 25000
  double medianAbsDev = NONE;        ///< median of |x - median|
  double avgAbsDev = NONE;           ///< mean of |x - median|: about the median, not the mean
  /// (P75 - P25) / (P75 + P25); only where the minimum exceeds 1.1754943508222875e-38.
  double quartileCoefDisp = NONE;
  /// meanDiff / mean; only where minimum >= 0 and mean exceeds 1.1754943508222875e-38.
  double relativeMeanDiff = NONE;
  double stdError = NONE;       ///< stdDev / sqrt(n)
  double coefVariation = NONE;  ///< stdDev / mean; where `relativeMeanDiff` may be
  /// Sum of (x - mean)^3 / (n stdDev^3); only where that divisor exceeds 1.1754943508222875e-38.
  double skewness = NONE;
  /// Sum of (x - mean)^4 / (n variance^2), 3 for a normal distribution; likewise.
  double kurtosis = NONE;
  double sum = NONE;
  double sumAbs = NONE;     ///< of magnitudes
  double sumSquare = NONE;  ///< of squares
  double meanSquare = NONE;

  /// How many elements fall into each of n / 25 bins, at least 20 and at most 100, of equal width
  /// from minimum to maximum; empty where n < 11 or the range does not exceed
  /// 1.1754943508222875e-38. Counts wrap at 32 bits.
  std::vector<std::uint32_t> histogram;
};

/// Computes everything from `values` and reorders them; what was in `statistics` is lost.
///
/// Degenerate: an empty range leaves everything NaN. NaN count as elements above all numbers: they
/// make sums, means and the maximum NaN, and percentiles stay numbers as long as enough of them
/// are. Infinities give what arithmetic with them gives.
/// Error bound: 4 units of the last place of the exact value for the doubles that are stored for
/// mean, variance, kurtosis and every sum (the sum itself is the nearest double), however large
/// the sample; for the skewness that or 2^-96 n^(1/2), whichever is larger. Overflow and
/// underflow on the way to a value do not harm it.
/// Errors: `std::bad_cast` with the text "bad numeric conversion: positive overflow" where a value
/// times the number of bins overflows, which takes a range above 1e306; everything but the
/// histogram is there then. `std::bad_alloc`.
/// Cost: O(n) and less than three calls of `std::nth_element`; up to 25000 elements are sorted.
/// Extra memory: below n doubles, mostly a small part of that.
SHARED_API void Load(CUnivariateStatistics& statistics, std::span<double> values);

/// The same for the range from `first` to `last`, iterators of a `std::vector<double>` or pointers.
template <std::contiguous_iterator Iterator>
void Load(CUnivariateStatistics& statistics, Iterator first, Iterator last) {
  Load(statistics, std::span<double>(first, last));
}

/// Writes a line for each value: its label, left-aligned in a field of 20, and the shortest text
/// that gives the same double when it is read, "nan" and "inf" for what is not a number. Minimum,
/// Maximum, Mean, Variance and StdDev come twice, in front and in their place. A last line,
/// "Histogram", has the counts with blanks between, where there are any. Flags, width and locale of
/// the stream are not used.
SHARED_API std::ostream& operator<<(std::ostream& stream, const CUnivariateStatistics& statistics);

}  // namespace shr
