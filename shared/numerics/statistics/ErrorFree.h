// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Error-free transformations of sums and products, and `ScaledPair`, a number of 106 bits with an
/// exponent of its own. The statistics form their last steps with it. Not installed.
///
///     const ScaledPair ratio = ScaledPair(1.0) / ScaledPair(3.0);
///     double nearest = ratio.ToDouble();
///
/// Nothing here overflows or underflows before `ToDouble`. Threads: plain values.

#pragma once

#include <cmath>
#include <limits>

#include "shared/numerics/linear/Pivot.h"

namespace shr {

inline constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

/// A sum of two doubles that is not rounded; `low` is at most half a unit of the last place of
/// `high`.
struct ExactPair {
  double high = 0.0;
  double low = 0.0;
};

/// Returns a + b exactly. Requires |a| >= |b| or a = 0. Source: T. J. Dekker, "A floating-point
/// technique for extending the available precision", 1971.
inline ExactPair FastTwoSum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

/// Returns a + b exactly. Source: D. E. Knuth, "The Art of Computer Programming 2", 4.2.2.
inline ExactPair TwoSum(double a, double b) {
  const double sum = a + b;
  const double part = sum - a;
  return {sum, (a - (sum - part)) + (b - part)};
}

/// Multiplying by it and subtracting leaves the upper 26 bits of a double (Veltkamp, in Dekker).
inline constexpr double SPLITTER = 134217729.0;  // 2^27 + 1

/// Returns a b exactly where neither it nor its last bits leave the range of doubles.
inline ExactPair TwoProduct(double a, double b) {
  const double product = a * b;
  const double aScaled = SPLITTER * a, bScaled = SPLITTER * b;
  const double aHigh = aScaled - (aScaled - a), bHigh = bScaled - (bScaled - b);
  const double aLow = a - aHigh, bLow = b - bHigh;
  return {product, ((aHigh * bHigh - product) + aHigh * bLow + aLow * bHigh) + aLow * bLow};
}

/// (high + low) 2^exponent with 0.5 <= |high| < 1, or 0, an infinity or NaN in `high` alone.
/// Error bound of each operation: 2^-102 of the result, of the larger operand for sums.
class ScaledPair {
public:
  ScaledPair() = default;
  ScaledPair(double value) : ScaledPair(value, 0.0, 0) {}  // NOLINT: every double is one
  ScaledPair(double high, double low, int exponent) {
    const ExactPair sum = TwoSum(high, low);
    if (!std::isfinite(sum.high) || sum.high == 0.0) {
      high_ = sum.high;
      return;
    }
    int shift = 0;
    high_ = std::frexp(sum.high, &shift);
    low_ = std::ldexp(sum.low, -shift);
    exponent_ = exponent + shift;
  }

  double High() const { return high_; }
  double Low() const { return low_; }
  int Exponent() const { return exponent_; }

  /// Returns the nearest double; where that is below the normal ones the last bit may be off.
  double ToDouble() const { return std::ldexp(high_, exponent_); }
  /// Returns the value times 2^shift.
  ScaledPair Times2To(int shift) const {
    ScaledPair result = *this;
    if (high_ != 0.0 && std::isfinite(high_)) result.exponent_ += shift;
    return result;
  }
  /// Returns the value as two doubles; what is below their range is lost.
  ExactPair ToPair() const { return {std::ldexp(high_, exponent_), std::ldexp(low_, exponent_)}; }

  ScaledPair operator-() const {
    ScaledPair result = *this;
    result.high_ = -high_;
    result.low_ = -low_;
    return result;
  }
  friend ScaledPair operator+(const ScaledPair& a, const ScaledPair& b) {
    if (!std::isfinite(a.high_) || !std::isfinite(b.high_)) return {a.high_ + b.high_, 0.0, 0};
    if (a.high_ == 0.0) return b;
    if (b.high_ == 0.0) return a;
    if (a.exponent_ < b.exponent_) return b + a;
    const int shift = b.exponent_ - a.exponent_;
    const ExactPair highs = TwoSum(a.high_, std::ldexp(b.high_, shift));
    const ExactPair lows = TwoSum(a.low_, std::ldexp(b.low_, shift));
    const ExactPair upper = FastTwoSum(highs.high, highs.low + lows.high);
    return {upper.high, upper.low + lows.low, a.exponent_};
  }
  friend ScaledPair operator-(const ScaledPair& a, const ScaledPair& b) { return a + -b; }
  friend ScaledPair operator*(const ScaledPair& a, const ScaledPair& b) {
    const ExactPair product = TwoProduct(a.high_, b.high_);
    if (!std::isfinite(product.high)) return {a.high_ * b.high_, 0.0, 0};
    return {product.high, product.low + (a.high_ * b.low_ + a.low_ * b.high_),
            a.exponent_ + b.exponent_};
  }
  friend ScaledPair operator/(const ScaledPair& a, const ScaledPair& b) {
    const double first = a.high_ / b.high_;
    if (!std::isfinite(first) || !std::isfinite(b.high_)) return {first, 0.0, 0};
    const ScaledPair quotient(first, 0.0, a.exponent_ - b.exponent_);
    const ScaledPair rest = a - quotient * b;
    return quotient + ScaledPair(rest.high_ / b.high_, 0.0, rest.exponent_ - b.exponent_);
  }
  /// Of a negative number NaN.
  friend ScaledPair Sqrt(const ScaledPair& a) {
    if (!(a.high_ > 0.0) || !std::isfinite(a.high_)) return {std::sqrt(a.high_), 0.0, 0};
    const int odd = a.exponent_ & 1;
    const ScaledPair even(odd != 0 ? a.high_ * 2.0 : a.high_, odd != 0 ? a.low_ * 2.0 : a.low_, 0);
    const double root = std::sqrt(even.ToDouble());
    const ScaledPair rest = even - ScaledPair(root) * ScaledPair(root);
    return ScaledPair(root, rest.ToDouble() / (2.0 * root), (a.exponent_ - odd) / 2);
  }

private:
  double high_ = 0.0;
  double low_ = 0.0;
  int exponent_ = 0;
};

}  // namespace shr
