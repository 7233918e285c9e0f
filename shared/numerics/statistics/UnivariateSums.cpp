// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A deviation from the mean is formed as value - center - rest, where the center is the mean
// rounded to a double and the rest is known to 106 bits: the first difference is exact as a pair,
// so a deviation has about 100 bits even where the numbers agree in all but their last digits. Its
// powers keep as many. That is why the sums do not depend on where zero lies.
//
// The geometric mean multiplies mantissas and adds exponents: one logarithm does for all, and the
// exponents, the larger part of the logarithm, are exact.

#include "shared/numerics/statistics/UnivariateSums.h"

#include <algorithm>
#include <bit>
#include <boost/numeric/conversion/cast.hpp>
#include <cmath>
#include <vector>

#include "shared/numerics/registration/PortableMath.h"
#include "shared/numerics/statistics/TwoLanes.h"

namespace shr {
namespace {

constexpr double LN_2 = 0.69314718055994530942;

/// The product of numbers as mantissa and exponent.
class ScaledProduct {
public:
  void Multiply(double value) {
    int shift = 0;
    mantissa_ = std::frexp(mantissa_ * value, &shift);
    exponent_ += shift;
  }
  void AddExponent(std::int64_t exponent) { exponent_ += exponent; }

  /// Returns the root of the order `count`.
  double Root(std::uint64_t count) const {
    const auto n = static_cast<std::int64_t>(count);
    std::int64_t whole = exponent_ / n, left = exponent_ % n;
    if (left < 0) {
      left += n;
      --whole;
    }
    const double logarithm = PortableLog(mantissa_) + static_cast<double>(left) * LN_2;
    return std::ldexp(PortableExp(logarithm / static_cast<double>(count)), static_cast<int>(whole));
  }

private:
  double mantissa_ = 1.0;
  std::int64_t exponent_ = 0;
};

ScaledProduct ProductOf(std::span<const double> values) {
  constexpr std::size_t BLOCK = 1024;  // 512 factors below 2 in a lane
  constexpr int BIAS = 1023;
  ScaledProduct product;
  const std::size_t even = values.size() / 2 * 2;
  for (std::size_t start = 0; start < even; start += BLOCK) {
    const std::size_t end = std::min(even, start + BLOCK);
    TwoLanes first(1.0);
    std::int64_t exponents = 0;
    for (std::size_t i = start; i < end; i += 2) {
      first = first * Mantissas(TwoLanes::Load(&values[i]));
      exponents += static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(values[i]) >> 52) +
                   static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(values[i + 1]) >> 52);
    }
    double lanes[2];
    first.Store(lanes);
    product.Multiply(lanes[0]);
    product.Multiply(lanes[1]);
    product.AddExponent(exponents - BIAS * static_cast<std::int64_t>(end - start));
  }
  if (even < values.size()) product.Multiply(values.back());
  return product;
}

/// The bin of a value at `place` from the first border, as a number of bins.
std::size_t BinOf(double place, std::size_t bins) {
  constexpr double LIMIT = 2147483648.0;
  if (place >= LIMIT || place <= -LIMIT - 1.0) (void)boost::numeric_cast<int>(place);  // throws
  if (!(place > 0.0)) return 0;  // also what is not a number, infinity over infinity
  return std::min(static_cast<std::size_t>(static_cast<int>(place)), bins - 1);
}

}  // namespace

double LargestMagnitude(std::span<const double> values) {
  TwoLanes largest, specials;
  ForEachLanes(
      values,
      [&](TwoLanes value) {
        largest = Max(largest, Abs(value));
        specials = specials + (value - value);
      },
      [](bool) {});
  double lanes[2], special[2];
  largest.Store(lanes);
  specials.Store(special);
  if (!(special[0] == 0.0 && special[1] == 0.0)) return NOT_A_NUMBER;
  return std::max(lanes[0], lanes[1]);
}

int ScaleExponent(double largest) {
  constexpr int LOWEST = -1000;
  int exponent = 0;
  (void)std::frexp(largest, &exponent);
  return std::max(exponent, LOWEST);
}

Center CenterOf(const ExactSum& sum, std::uint64_t count, int exponent) {
  const double mean = sum.Mean(count).ToDouble();
  ExactSum rest = sum;
  rest.AddMultiple(-mean, count);
  return {std::ldexp(mean, -exponent), rest.Mean(count).Times2To(-exponent).ToPair()};
}

AbsoluteSums SumAbsolute(std::span<const double> values, int exponent, double median) {
  const TwoLanes scale(std::ldexp(1.0, -exponent));
  const TwoLanes center(std::ldexp(median, -exponent));
  LaneSum magnitudes, squares, deviations;
  ExactSum totals[3];
  ForEachLanes(
      values,
      [&](TwoLanes value) {
        const TwoLanes scaled = value * scale;
        magnitudes.Add(Abs(scaled));
        squares.Add(scaled * scaled);
        deviations.Add(Abs(scaled - center));
      },
      [&](bool onlyFirst) {
        magnitudes.EmptyInto(totals[0], onlyFirst);
        squares.EmptyInto(totals[1], onlyFirst);
        deviations.EmptyInto(totals[2], onlyFirst);
      });
  return {totals[0].Value().Times2To(exponent), totals[1].Value().Times2To(2 * exponent),
          totals[2].Value().Times2To(exponent)};
}

CentralSums SumCentral(std::span<const double> values, int exponent, const Center& mean) {
  const TwoLanes scale(std::ldexp(1.0, -exponent)), center(mean.center);
  const LanePair rest{TwoLanes(mean.rest.high), TwoLanes(mean.rest.low)};
  LaneSum squares, cubes, fourths;
  ExactSum totals[3];
  ForEachLanes(
      values,
      [&](TwoLanes value) {
        const LanePair deviation = LaneDeviation(value * scale, center, rest);
        const LaneHalves halves(deviation.high);
        const LanePair square = LaneSquare(deviation, halves);
        const LaneHalves squareHalves(square.high);
        squares.Add(square);
        cubes.Add(LaneProduct(square, squareHalves, deviation, halves));
        fourths.Add(LaneSquare(square, squareHalves));
      },
      [&](bool onlyFirst) {
        squares.EmptyInto(totals[0], onlyFirst);
        cubes.EmptyInto(totals[1], onlyFirst);
        fourths.EmptyInto(totals[2], onlyFirst);
      });
  return {totals[0].Value().Times2To(2 * exponent), totals[1].Value().Times2To(3 * exponent),
          totals[2].Value().Times2To(4 * exponent)};
}

PositiveMeans MeansOfPositive(std::span<const double> values, double minimum) {
  // Reciprocals are those of numbers scaled to 1 and more.
  int exponent = 0;
  (void)std::frexp(minimum, &exponent);
  const TwoLanes numerator(std::ldexp(1.0, exponent - 1));
  LaneSum sum;
  ExactSum total;
  ForEachLanes(
      values, [&](TwoLanes value) { sum.Add(numerator / value); },
      [&](bool onlyFirst) { sum.EmptyInto(total, onlyFirst); });
  const ScaledPair harmonic = (ScaledPair(1.0) / total.Mean(values.size())).Times2To(exponent - 1);
  return {ProductOf(values).Root(values.size()), harmonic.ToDouble()};
}

std::vector<std::uint32_t> CountIntoBins(std::span<const double> values, std::size_t bins,
                                         double minimum, double range) {
  std::vector<std::uint32_t> counts(bins);
  const auto factor = static_cast<double>(bins);
  for (const double value : values) ++counts[BinOf((value - minimum) * factor / range, bins)];
  return counts;
}

}  // namespace shr
