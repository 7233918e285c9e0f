// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Numbers of 106 bits, as sums of two doubles, for oracles in tests that must be both fast and far
/// more precise than what they judge.
///
/// Source: T. J. Dekker, "A Floating-Point Technique for Extending the Available Precision", 1971.
/// Values whose square overflows are outside its domain.
///
///     DoubleDouble third = DoubleDouble(1.0) / DoubleDouble(3.0);   // off by less than 1e-31

#pragma once

namespace shr::test {

class DoubleDouble {
public:
  constexpr DoubleDouble() = default;
  constexpr explicit DoubleDouble(double value) : high_(value) {}

  constexpr explicit operator double() const { return high_ + low_; }

  friend constexpr DoubleDouble operator+(const DoubleDouble& a, const DoubleDouble& b) {
    const DoubleDouble sum = Sum(a.high_, b.high_);
    return QuickSum(sum.high_, sum.low_ + (a.low_ + b.low_));
  }
  friend constexpr DoubleDouble operator-(const DoubleDouble& a) {
    return DoubleDouble(-a.high_, -a.low_);
  }
  friend constexpr DoubleDouble operator-(const DoubleDouble& a, const DoubleDouble& b) {
    return a + -b;
  }
  friend constexpr DoubleDouble operator*(const DoubleDouble& a, const DoubleDouble& b) {
    const DoubleDouble product = Product(a.high_, b.high_);
    return QuickSum(product.high_, product.low_ + (a.high_ * b.low_ + a.low_ * b.high_));
  }
  friend constexpr DoubleDouble operator/(const DoubleDouble& a, const DoubleDouble& b) {
    const double first = a.high_ / b.high_;
    const DoubleDouble rest = a - b * DoubleDouble(first);
    const double second = rest.high_ / b.high_;
    const double third = (rest - b * DoubleDouble(second)).high_ / b.high_;
    return QuickSum(first, second) + DoubleDouble(third);
  }
  constexpr DoubleDouble& operator+=(const DoubleDouble& b) { return *this = *this + b; }

  friend constexpr bool operator<(const DoubleDouble& a, const DoubleDouble& b) {
    return a.high_ < b.high_ || (a.high_ == b.high_ && a.low_ < b.low_);
  }
  friend constexpr bool operator==(const DoubleDouble& a, const DoubleDouble& b) {
    return a.high_ == b.high_ && a.low_ == b.low_;
  }

private:
  constexpr DoubleDouble(double high, double low) : high_(high), low_(low) {}

  static constexpr DoubleDouble QuickSum(double large, double small) {
    const double sum = large + small;
    return DoubleDouble(sum, small - (sum - large));
  }
  static constexpr DoubleDouble Sum(double a, double b) {
    const double sum = a + b;
    const double part = sum - a;
    return DoubleDouble(sum, (a - (sum - part)) + (b - part));
  }
  static constexpr DoubleDouble Split(double value) {
    const double scaled = 134217729.0 * value;  // 2^27 + 1
    const double high = scaled - (scaled - value);
    return DoubleDouble(high, value - high);
  }
  static constexpr DoubleDouble Product(double a, double b) {
    const double product = a * b;
    const DoubleDouble x = Split(a);
    const DoubleDouble y = Split(b);
    const double error =
        ((x.high_ * y.high_ - product) + x.high_ * y.low_ + x.low_ * y.high_) + x.low_ * y.low_;
    return DoubleDouble(product, error);
  }

  double high_ = 0.0;
  double low_ = 0.0;
};

}  // namespace shr::test
