// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The table of powers of five that the parser and the formatter of real numbers share.
///
/// Entry q is 5^q scaled by a power of two to 128 bits, the highest of them set; it is exact for q
/// from 0 to 55 and off by less than one unit elsewhere.
///
///     const Product128& power = PowerOfFive(q);     // 5^q = power * 2^(BinaryExponent(q) - q -
///     127)
///
/// Threads: all functions may be called on any thread.

#pragma once

#include "shared/text/Multiply128.h"

namespace shr {

inline constexpr int SMALLEST_POWER_OF_TEN = -342;
inline constexpr int LARGEST_POWER_OF_TEN = 308;

extern const Product128 POWERS_OF_FIVE[LARGEST_POWER_OF_TEN - SMALLEST_POWER_OF_TEN + 1];

/// Requires: `q` is from SMALLEST_POWER_OF_TEN to LARGEST_POWER_OF_TEN.
inline const Product128& PowerOfFive(int q) noexcept {
  return POWERS_OF_FIVE[q - SMALLEST_POWER_OF_TEN];
}

/// Returns floor(log2(10^q)) for every q of the table.
constexpr int BinaryExponent(int q) noexcept {
  return (217706 * q) >> 16;
}

}  // namespace shr
