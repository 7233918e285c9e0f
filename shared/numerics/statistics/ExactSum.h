// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `ExactSum`, which adds doubles and products of doubles without any rounding. Not installed.
///
///     ExactSum sum;
///     sum.Add(1e308);
///     sum.AddProduct(-1e200, 1e108);
///     sum.Add(0.1);
///     double rest = sum.Value().ToDouble();   // 0.1
///
/// Threads: const calls may run together.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "shared/Export.h"
#include "shared/numerics/statistics/ErrorFree.h"

namespace shr {

/// The sum of everything that was added, whatever the order and the magnitudes; the default is 0.
/// Infinities and NaN give what arithmetic with them gives: NaN for both infinities together.
/// Requires fewer than 2^60 additions. Cost: a few nanoseconds an addition, 1.1 kB of memory.
/// Source: R. M. Neal, "Fast exact summation using small and large superaccumulators", 2015 (the
/// small one).
class SHARED_API ExactSum {
public:
  void Add(double value);
  void Add(std::span<const double> values);
  void Add(const ExactSum& other);
  /// Adds a b, which need not be within the range of doubles.
  void AddProduct(double a, double b);
  /// Adds `value` as many times as told.
  void AddMultiple(double value, std::uint64_t times);

  /// Returns the sum within 2^-101 of it.
  ScaledPair Value() const;
  /// Returns the sum divided by `count`, within 2^-101 of it.
  ScaledPair Mean(std::uint64_t count) const;

private:
  // The sum is that of digits_[i] 2^(32 i + LOWEST_EXPONENT). Digits have 32 bits after carrying;
  // those that have not been carried yet are above. Products reach from 2^-2148 to 2^2048.
  static constexpr int LOWEST_EXPONENT = -2304;
  static constexpr std::size_t DIGIT_COUNT = 144;
  /// An addition puts less than 2^53 into a digit.
  static constexpr int ADDITIONS_WITHOUT_CARRY = 512;

  void AddBits(std::uint64_t bits, int exponent, bool isNegative);
  void AddFinite(double value);
  void AddSpecial(double value);
  void Carry();

  std::array<std::int64_t, DIGIT_COUNT> digits_{};
  int room_ = ADDITIONS_WITHOUT_CARRY;
  double special_ = 0.0;  // the sum of the infinities and NaN
};

}  // namespace shr
