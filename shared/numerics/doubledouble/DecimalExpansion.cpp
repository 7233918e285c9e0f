// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A double-double is a multiple of 2^-1074 below 2^1025, so it fits a binary fixed-point number of
// 2,176 bits, and its decimal digits end. Those before the point are the remainders of divisions by
// a power of ten, those behind it are what products by that power carry over the point. Limbs that
// are zero at either end are left out: a number about 1 has one before the point and four behind.

#include "shared/numerics/doubledouble/DecimalExpansion.h"

#include <cstdint>

namespace shr {
namespace {

constexpr int LIMB_BITS = 32;
constexpr int FRACTION_LIMBS = 34;
constexpr int LIMBS = FRACTION_LIMBS + 33;
constexpr int LOWEST_EXPONENT = -FRACTION_LIMBS * LIMB_BITS;

constexpr std::uint32_t CHUNK = 1'000'000'000;
constexpr int CHUNK_DIGITS = 9;

/// A number without sign; limb 0 is the lowest.
class FixedPoint {
public:
  /// Adds |part| or takes it away.
  void Add(double part, bool isNegative) {
    int exponent = 0;
    const double fraction = std::frexp(std::fabs(part), &exponent);
    const auto mantissa = static_cast<std::uint64_t>(std::ldexp(fraction, 53));
    const int position = exponent - 53 - LOWEST_EXPONENT;
    if (mantissa == 0) return;
    AddLimbs(mantissa, position, isNegative ? ~std::uint32_t{0} : 0);
    while (first_ < end_ && limbs_[first_] == 0) ++first_;
    while (end_ > first_ && limbs_[end_ - 1] == 0) --end_;
  }

  /// Divides what stands before the point by CHUNK and returns the remainder.
  std::uint32_t DivideInteger() {
    std::uint64_t rest = 0;
    for (std::size_t i = end_; i-- > FRACTION_LIMBS;) {
      const std::uint64_t dividend = rest << LIMB_BITS | limbs_[i];
      limbs_[i] = static_cast<std::uint32_t>(dividend / CHUNK);
      rest = dividend % CHUNK;
    }
    while (end_ > FRACTION_LIMBS && limbs_[end_ - 1] == 0) --end_;
    return static_cast<std::uint32_t>(rest);
  }
  bool HasInteger() const { return end_ > FRACTION_LIMBS; }

  /// Multiplies what stands behind the point by CHUNK and returns what comes to stand before it.
  std::uint32_t MultiplyFraction() {
    std::uint64_t carry = 0;
    for (std::size_t i = first_; i < FRACTION_LIMBS; ++i) {
      carry += std::uint64_t{limbs_[i]} * CHUNK;
      limbs_[i] = static_cast<std::uint32_t>(carry);
      carry >>= LIMB_BITS;
    }
    while (HasFraction() && limbs_[first_] == 0) ++first_;
    return static_cast<std::uint32_t>(carry);
  }
  bool HasFraction() const { return first_ < FRACTION_LIMBS; }

private:
  /// Adds a mantissa whose lowest bit has this position; `flip` of all ones subtracts it.
  void AddLimbs(std::uint64_t mantissa, int position, std::uint32_t flip) {
    // Subtracting is adding the complement, limb by limb, and one.
    const int start = position < 0 ? 0 : position / LIMB_BITS;
    // Bits below the lowest limb are zeros of a subnormal mantissa.
    if (position < 0) mantissa >>= -position;
    const int shift = position < 0 ? 0 : position % LIMB_BITS;
    const std::uint32_t parts[3] = {
        static_cast<std::uint32_t>(mantissa << shift),
        static_cast<std::uint32_t>(mantissa >> (LIMB_BITS - shift)),
        shift == 0 ? 0 : static_cast<std::uint32_t>(mantissa >> (2 * LIMB_BITS - shift))};
    std::uint64_t carry = flip & 1;
    for (int i = start; i < LIMBS; ++i) {
      const std::uint32_t part = i - start < 3 ? parts[i - start] : 0;
      if (i - start >= 3 && carry == (flip & 1)) break;
      const auto index = static_cast<std::size_t>(i);
      carry += std::uint64_t{limbs_[index]} + (part ^ flip);
      limbs_[index] = static_cast<std::uint32_t>(carry);
      carry >>= LIMB_BITS;
    }
    first_ = first_ < static_cast<std::size_t>(start) ? first_ : static_cast<std::size_t>(start);
    end_ = LIMBS;
  }

  std::array<std::uint32_t, LIMBS> limbs_{};
  std::size_t first_ = LIMBS;  ///< All limbs before this one and from `end_` on are zero.
  std::size_t end_ = LIMBS;
};

/// Collects digits, leaves out the zeros in front.
class DigitWriter {
public:
  explicit DigitWriter(DecimalExpansion& expansion) : expansion_(expansion) {}

  void Write(std::uint32_t chunk) {
    char digits[CHUNK_DIGITS];
    for (int i = CHUNK_DIGITS; i-- > 0; chunk /= 10) digits[i] = static_cast<char>(chunk % 10);
    for (const char digit : digits) {
      if (expansion_.count == 0 && digit == 0) {
        --expansion_.exponent;
      } else {
        expansion_.digits[static_cast<std::size_t>(expansion_.count++)] = digit;
      }
    }
  }

  void TrimZeros() {
    while (expansion_.count > 0 &&
           expansion_.digits[static_cast<std::size_t>(expansion_.count - 1)] == 0) {
      --expansion_.count;
    }
  }

private:
  DecimalExpansion& expansion_;
};

}  // namespace

DecimalExpansion ExpandDecimal(const doubledouble& x, int wanted) {
  FixedPoint number;
  number.Add(x.head, false);
  number.Add(x.tail, (x.tail < 0) != (x.head < 0));

  std::array<std::uint32_t, LIMBS> chunks;
  std::size_t chunkCount = 0;
  while (number.HasInteger()) chunks[chunkCount++] = number.DivideInteger();

  DecimalExpansion expansion;
  expansion.exponent = static_cast<int>(chunkCount) * CHUNK_DIGITS;
  DigitWriter writer(expansion);
  while (chunkCount > 0) writer.Write(chunks[--chunkCount]);
  while (number.HasFraction() && expansion.count < wanted) writer.Write(number.MultiplyFraction());
  expansion.isExact = !number.HasFraction();
  if (expansion.isExact) writer.TrimZeros();
  if (expansion.count == 0) expansion.exponent = 0;
  return expansion;
}

}  // namespace shr
