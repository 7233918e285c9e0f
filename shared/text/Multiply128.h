// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The full product of two 64-bit integers, for the number parser.
///
/// `Multiply128` uses the compiler's 128-bit type where it has one, `MultiplyHalves` plain 64-bit
/// arithmetic; both give the same product.
///
///     const Product128 product = Multiply128(a, b);     // product.high * 2^64 + product.low
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstdint>

namespace shr {

struct Product128 {
  std::uint64_t high = 0;
  std::uint64_t low = 0;
  friend constexpr bool operator==(const Product128&, const Product128&) = default;
};

/// Multiplies by halves of 32 bits, as on paper.
constexpr Product128 MultiplyHalves(std::uint64_t a, std::uint64_t b) noexcept {
  constexpr std::uint64_t LOW_HALF = 0xFFFFFFFF;
  const std::uint64_t lowLow = (a & LOW_HALF) * (b & LOW_HALF);
  const std::uint64_t lowHigh = (a & LOW_HALF) * (b >> 32);
  const std::uint64_t highLow = (a >> 32) * (b & LOW_HALF);
  const std::uint64_t highHigh = (a >> 32) * (b >> 32);
  const std::uint64_t middle = (lowLow >> 32) + (lowHigh & LOW_HALF) + (highLow & LOW_HALF);
  return {highHigh + (lowHigh >> 32) + (highLow >> 32) + (middle >> 32),
          (middle << 32) | (lowLow & LOW_HALF)};
}

constexpr Product128 Multiply128(std::uint64_t a, std::uint64_t b) noexcept {
#if defined(__SIZEOF_INT128__)
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  return {static_cast<std::uint64_t>(product >> 64), static_cast<std::uint64_t>(product)};
#else
  return MultiplyHalves(a, b);
#endif
}

}  // namespace shr
