// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Powers of five to 192 bits, for shared/numerics/doubledouble/DoubleDoubleText.cpp only.
/// Threads: no state.

#pragma once

#include <cstdint>

namespace shr {

/// The number (limbs + d) * 2^exponent, where d is at least 0 and below 2, and 0 for the powers
/// from 0 to EXACT_LONG_POWER. Limb 0 is the lowest, the highest bit of limb 2 is set.
struct LongPower {
  std::uint64_t limbs[3];
  int exponent;
};

inline constexpr int LEAST_LONG_POWER = -365;
inline constexpr int LARGEST_LONG_POWER = 308;
inline constexpr int EXACT_LONG_POWER = 82;

/// Returns 5^q. Requires: q is between the bounds above.
const LongPower& LongPowerOfFive(int q) noexcept;

}  // namespace shr
