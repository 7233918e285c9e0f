// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Quick rounding of doubles to decimal digits, for the formatter.
///
/// Every result is the exact value of the double rounded to nearest, ties to even, as printf rounds
/// it. What the quick ways cannot decide, or do not cover, is said so and left to std::to_chars.
///
///     const FixedDecimal number = RoundToDecimals(2.675, 2);     // 2 and 67; the double is less
///     const SignificantDecimal digits = RoundToSignificant(0.0299, 2);     // 30 * 10^-3
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstdint>

namespace shr {

inline constexpr int MAX_QUICK_DECIMALS = 19;
inline constexpr int MAX_QUICK_SIGNIFICANT = 17;

/// whole + fraction / 10^decimals.
struct FixedDecimal {
  std::uint64_t whole = 0;
  std::uint64_t fraction = 0;
};

/// Rounds a finite `magnitude` >= 0 to so many decimals, 0 to MAX_QUICK_DECIMALS. Returns false
/// when the magnitude is 2^64 or more.
bool RoundToDecimals(double magnitude, int decimals, FixedDecimal& rounded) noexcept;

/// The digits d.ddd * 10^exponent as an integer of as many digits as were asked for; 0 for zero.
struct SignificantDecimal {
  std::uint64_t digits = 0;
  int exponent = 0;
};

/// Rounds a finite `magnitude` >= 0 to so many digits, 1 to MAX_QUICK_SIGNIFICANT. Returns false
/// when the magnitude is too near the middle between two results, or very small.
bool RoundToSignificant(double magnitude, int count, SignificantDecimal& rounded) noexcept;

/// Number of decimal digits; 1 for zero.
int CountDigits(std::uint64_t value) noexcept;

/// Moves the last `count` decimal digits of `value` in front of `end`, with leading zeros; `value`
/// keeps the digits above. Returns where they begin.
char* TakeDigits(std::uint64_t& value, int count, char* end) noexcept;

}  // namespace shr
