// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The table is made by the compiler: each power is five times, or a fifth of, its neighbour, kept
// to 320 bits. Every step cuts less than 2^-317 of the number off, 365 of them less than 2^-308, so
// that the leading 192 bits are short of the power by little more than one unit.

#include "shared/numerics/doubledouble/LongPowersOfFive.h"

#include <array>
#include <bit>
#include <cstddef>

#include "shared/text/Multiply128.h"

namespace shr {
namespace {

constexpr std::size_t WORKING_LIMBS = 5;

struct WorkingPower {
  std::uint64_t limbs[WORKING_LIMBS];
  int exponent;
};

constexpr WorkingPower FiveTimes(const WorkingPower& power) {
  WorkingPower result{{}, power.exponent};
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < WORKING_LIMBS; ++i) {
    const Product128 product = MultiplyHalves(power.limbs[i], 5);
    result.limbs[i] = product.low + carry;
    carry = product.high + (result.limbs[i] < carry ? 1 : 0);
  }
  const int shift = static_cast<int>(std::bit_width(carry));
  for (std::size_t i = 0; i < WORKING_LIMBS; ++i) {
    const std::uint64_t above = i + 1 < WORKING_LIMBS ? result.limbs[i + 1] : carry;
    result.limbs[i] = result.limbs[i] >> shift | above << (64 - shift);
  }
  result.exponent += shift;
  return result;
}

constexpr WorkingPower FifthOf(const WorkingPower& power) {
  WorkingPower result{{}, power.exponent};
  std::uint64_t rest = 0;
  for (std::size_t i = WORKING_LIMBS; i-- > 0;) {
    const std::uint64_t upper = rest << 32 | power.limbs[i] >> 32;
    const std::uint64_t lower = upper % 5 << 32 | (power.limbs[i] & 0xFFFFFFFFu);
    result.limbs[i] = upper / 5 << 32 | lower / 5;
    rest = lower % 5;
  }
  const int shift = std::countl_zero(result.limbs[WORKING_LIMBS - 1]);
  for (std::size_t i = WORKING_LIMBS; i-- > 0;) {
    const std::uint64_t below = i > 0 ? result.limbs[i - 1] : 0;
    result.limbs[i] = result.limbs[i] << shift | below >> (64 - shift);
  }
  result.exponent -= shift;
  return result;
}

constexpr LongPower LeadingLimbs(const WorkingPower& power) {
  return {{power.limbs[2], power.limbs[3], power.limbs[4]}, power.exponent + 128};
}

using Table = std::array<LongPower, LARGEST_LONG_POWER - LEAST_LONG_POWER + 1>;

constexpr Table MakeTable() {
  constexpr WorkingPower ONE = {{0, 0, 0, 0, std::uint64_t{1} << 63}, -319};
  Table table{};
  constexpr std::size_t MIDDLE = -LEAST_LONG_POWER;
  WorkingPower power = ONE;
  for (std::size_t i = MIDDLE; i < table.size(); ++i) {
    table[i] = LeadingLimbs(power);
    power = FiveTimes(power);
  }
  power = ONE;
  for (std::size_t i = MIDDLE; i-- > 0;) {
    power = FifthOf(power);
    table[i] = LeadingLimbs(power);
  }
  return table;
}

constexpr Table TABLE = MakeTable();

}  // namespace

const LongPower& LongPowerOfFive(int q) noexcept {
  return TABLE[static_cast<std::size_t>(q - LEAST_LONG_POWER)];
}

}  // namespace shr
