// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `TwoLanes`, two doubles that are computed with at once, and `LaneSum`, a compensated sum of
/// them. Every operation is rounded as that of one double, so vectors and plain code agree. Not
/// installed.
///
///     LaneSum sum;
///     sum.Add(TwoLanes(1.0) / TwoLanes::Load(values));   // of the two lanes, each in its own sum
///     sum.AddTo(exactSum);
///
/// Threads: plain values.

#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "shared/numerics/statistics/ExactSum.h"
#include "shared/platform/Simd.h"

namespace shr {

#if SHARED_HAS_SSE2

class TwoLanes {
public:
  TwoLanes() : lanes_(_mm_setzero_pd()) {}
  explicit TwoLanes(double both) : lanes_(_mm_set1_pd(both)) {}
  static TwoLanes Load(const double* values) { return _mm_loadu_pd(values); }
  void Store(double* values) const { _mm_storeu_pd(values, lanes_); }

  friend TwoLanes operator+(TwoLanes a, TwoLanes b) { return _mm_add_pd(a.lanes_, b.lanes_); }
  friend TwoLanes operator-(TwoLanes a, TwoLanes b) { return _mm_sub_pd(a.lanes_, b.lanes_); }
  friend TwoLanes operator*(TwoLanes a, TwoLanes b) { return _mm_mul_pd(a.lanes_, b.lanes_); }
  friend TwoLanes operator/(TwoLanes a, TwoLanes b) { return _mm_div_pd(a.lanes_, b.lanes_); }
  friend TwoLanes Abs(TwoLanes a) { return _mm_andnot_pd(_mm_set1_pd(-0.0), a.lanes_); }
  /// Requires numbers.
  friend TwoLanes Max(TwoLanes a, TwoLanes b) { return _mm_max_pd(a.lanes_, b.lanes_); }
  friend TwoLanes Min(TwoLanes a, TwoLanes b) { return _mm_min_pd(a.lanes_, b.lanes_); }
  friend bool IsAnyEqual(TwoLanes a, TwoLanes b) {
    return _mm_movemask_pd(_mm_cmpeq_pd(a.lanes_, b.lanes_)) != 0;
  }
  /// Returns numbers of [1, 2) with the mantissas of positive normal ones.
  friend TwoLanes Mantissas(TwoLanes a) {
    const __m128i bits = _mm_castpd_si128(a.lanes_);
    const __m128i mantissa = _mm_and_si128(bits, _mm_set1_epi64x(0x000FFFFFFFFFFFFF));
    return _mm_castsi128_pd(_mm_or_si128(mantissa, _mm_set1_epi64x(0x3FF0000000000000)));
  }

private:
  TwoLanes(__m128d lanes) : lanes_(lanes) {}  // NOLINT: the same thing
  __m128d lanes_;
};

#else

class TwoLanes {
public:
  TwoLanes() = default;
  explicit TwoLanes(double both) : first_(both), second_(both) {}
  static TwoLanes Load(const double* values) { return {values[0], values[1]}; }
  void Store(double* values) const {
    values[0] = first_;
    values[1] = second_;
  }

  friend TwoLanes operator+(TwoLanes a, TwoLanes b) {
    return {a.first_ + b.first_, a.second_ + b.second_};
  }
  friend TwoLanes operator-(TwoLanes a, TwoLanes b) {
    return {a.first_ - b.first_, a.second_ - b.second_};
  }
  friend TwoLanes operator*(TwoLanes a, TwoLanes b) {
    return {a.first_ * b.first_, a.second_ * b.second_};
  }
  friend TwoLanes operator/(TwoLanes a, TwoLanes b) {
    return {a.first_ / b.first_, a.second_ / b.second_};
  }
  friend TwoLanes Abs(TwoLanes a) { return {std::fabs(a.first_), std::fabs(a.second_)}; }
  /// Requires numbers.
  friend TwoLanes Max(TwoLanes a, TwoLanes b) {
    return {std::max(a.first_, b.first_), std::max(a.second_, b.second_)};
  }
  friend TwoLanes Min(TwoLanes a, TwoLanes b) {
    return {std::min(a.first_, b.first_), std::min(a.second_, b.second_)};
  }
  friend bool IsAnyEqual(TwoLanes a, TwoLanes b) {
    return a.first_ == b.first_ || a.second_ == b.second_;
  }
  /// Returns numbers of [1, 2) with the mantissas of positive normal ones.
  friend TwoLanes Mantissas(TwoLanes a) {
    const auto mantissa = [](double value) {
      const auto bits = std::bit_cast<std::uint64_t>(value) & 0x000FFFFFFFFFFFFF;
      return std::bit_cast<double>(bits | 0x3FF0000000000000);
    };
    return {mantissa(a.first_), mantissa(a.second_)};
  }

private:
  TwoLanes(double first, double second) : first_(first), second_(second) {}
  double first_ = 0.0;
  double second_ = 0.0;
};

#endif

/// A number in each lane to about 106 bits.
struct LanePair {
  TwoLanes high;
  TwoLanes low;
};

/// The upper 26 bits of numbers and the rest.
struct LaneHalves {
  LaneHalves(TwoLanes upper, TwoLanes lower) : high(upper), low(lower) {}
  explicit LaneHalves(TwoLanes value) {
    const TwoLanes scaled = TwoLanes(SPLITTER) * value;
    high = scaled - (scaled - value);
    low = value - high;
  }
  TwoLanes high;
  TwoLanes low;
};

inline LanePair LaneSquare(const LanePair& a, const LaneHalves& halves) {
  const TwoLanes square = a.high * a.high;
  const TwoLanes rest =
      ((halves.high * halves.high - square) + (halves.high + halves.high) * halves.low) +
      halves.low * halves.low;
  return {square, rest + (a.high + a.high) * a.low};
}

inline LanePair LaneProduct(const LanePair& a, const LaneHalves& aHalves, const LanePair& b,
                            const LaneHalves& bHalves) {
  const TwoLanes product = a.high * b.high;
  const TwoLanes rest = (((aHalves.high * bHalves.high - product) + aHalves.high * bHalves.low) +
                         aHalves.low * bHalves.high) +
                        aHalves.low * bHalves.low;
  return {product, rest + (a.high * b.low + a.low * b.high)};
}

/// Returns value - (center + rest) for a `rest` of at most half a unit in the last place of
/// `center`, or any center and no rest.
inline LanePair LaneDeviation(TwoLanes value, TwoLanes center, const LanePair& rest) {
  const TwoLanes difference = value - center;
  const TwoLanes part = difference - value;
  const TwoLanes error = (value - (difference - part)) - (center + part);
  const TwoLanes correction = error - rest.high;
  const TwoLanes high = difference + correction;
  return {high, ((difference - high) + correction) - rest.low};
}

/// Sums in both lanes, each with the sum of what rounding lost (T. Ogita, S. M. Rump and S. Oishi,
/// "Accurate sum and dot product", 2005). After n additions of numbers of one sign it is off by at
/// most n^2 2^-105 of the sum: it is to be emptied into an exact sum at times.
class LaneSum {
public:
  void Add(TwoLanes value) { Add({value, TwoLanes()}); }
  void Add(const LanePair& value) {
    const TwoLanes sum = sum_ + value.high;
    const TwoLanes part = sum - sum_;
    lost_ = lost_ + (((sum_ - (sum - part)) + (value.high - part)) + value.low);
    sum_ = sum;
  }
  /// Returns the sum of both lanes.
  ScaledPair Total() const {
    double sums[2], lost[2];
    sum_.Store(sums);
    lost_.Store(lost);
    const ExactPair total = TwoSum(sums[0], sums[1]);
    return {total.high, total.low + (lost[0] + lost[1]), 0};
  }
  /// Adds the sum of both lanes, or of the first alone, to `total` and starts again at 0.
  void EmptyInto(ExactSum& total, bool onlyFirst = false) {
    double parts[4];
    sum_.Store(parts);
    lost_.Store(parts + 2);
    if (onlyFirst) parts[1] = parts[3] = 0.0;
    total.Add(parts);
    *this = LaneSum();
  }

private:
  TwoLanes sum_;
  TwoLanes lost_;
};

/// Calls `add(lanes)` for the numbers of `values` two by two and `empty(onlyFirst)` after every
/// 65536 of them and at the end; `onlyFirst` tells that the second lane is not one of them.
template <class Add, class Empty>
void ForEachLanes(std::span<const double> values, Add add, Empty empty) {
  constexpr std::size_t BLOCK = 65536;
  const std::size_t even = values.size() / 2 * 2;
  for (std::size_t start = 0; start < even; start += BLOCK) {
    const std::size_t end = std::min(even, start + BLOCK);
    for (std::size_t i = start; i < end; i += 2) add(TwoLanes::Load(&values[i]));
    empty(false);
  }
  if (even < values.size()) {
    add(TwoLanes(values.back()));
    empty(true);
  }
}

}  // namespace shr
