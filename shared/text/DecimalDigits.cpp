// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A double is m * 2^-k with m of 53 bits.
//
// Decimals: the fraction is F / 2^k, and F * 10^decimals fits 128 bits. Its bits from k upwards are
// the decimals, those below k compare exactly with the half. No approximation takes part.
//
// Significant digits: m * 10^s, of which the wanted digits are the whole part, is m * 5^s shifted.
// 5^s comes from a table of 128 bits; of the product of 192 bits the upper 128 are kept. They are
// off by less than two units, so the rounding is certain unless the part behind the digits is
// within two units of the half (the approach of U. Adams, "Ryu: Fast Float-to-String Conversion",
// 2018, section 3, with a test in place of a longer table).

#include "shared/text/DecimalDigits.h"

#include <bit>

#include "shared/text/PowersOfFive.h"
#include "shared/text/PowersOfTen.h"

namespace shr {
namespace {

constexpr int MANTISSA_BITS = 52;
constexpr int EXPONENT_BIAS = 1075;  ///< of the mantissa as an integer

constexpr char PAIRS[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

/// mantissa * 2^power
struct Binary {
  std::uint64_t mantissa;
  int power;
};

Binary Split(double magnitude) {
  const auto bits = std::bit_cast<std::uint64_t>(magnitude);
  const std::uint64_t stored = bits & ((std::uint64_t{1} << MANTISSA_BITS) - 1);
  const auto exponent = static_cast<int>(bits >> MANTISSA_BITS);
  if (exponent == 0) return {stored, 1 - EXPONENT_BIAS};
  return {stored | std::uint64_t{1} << MANTISSA_BITS, exponent - EXPONENT_BIAS};
}

/// The lowest `count` bits, up to 63.
constexpr std::uint64_t LowBits(std::uint64_t value, int count) {
  return value & ((std::uint64_t{1} << count) - 1);
}

/// A number of 128 bits cut in front of bit `place`, 1 to 127.
struct Cut {
  std::uint64_t whole;  ///< what is above, which must fit
  Product128 rest;
  Product128 half;  ///< half of a unit of `whole`
};

Cut CutAt(const Product128& number, int place) {
  if (place < 64) {
    return {number.high << (64 - place) | number.low >> place,
            {0, LowBits(number.low, place)},
            {0, std::uint64_t{1} << (place - 1)}};
  }
  if (place == 64) return {number.high, {0, number.low}, {0, std::uint64_t{1} << 63}};
  return {number.high >> (place - 64),
          {LowBits(number.high, place - 64), number.low},
          {std::uint64_t{1} << (place - 65), 0}};
}

bool Less(const Product128& a, const Product128& b) {
  return a.high != b.high ? a.high < b.high : a.low < b.low;
}

/// True when the two differ by no more than the error of a product.
bool IsNear(const Product128& a, const Product128& b) {
  constexpr std::uint64_t ERROR_BOUND = 2;
  const std::uint64_t low = a.low - b.low;
  const std::uint64_t high = a.high - b.high - (a.low < b.low ? 1 : 0);
  return (high == 0 && low <= ERROR_BOUND) || (high == ~std::uint64_t{0} && low >= 0 - ERROR_BOUND);
}

/// floor(log10(2^power)), for every power of a double.
constexpr int DecimalExponent(int power) {
  return (power * 78913) >> 18;
}

/// The upper 128 bits of value * power.
Product128 MultiplyUpper(std::uint64_t value, const Product128& power) {
  Product128 product = Multiply128(value, power.high);
  const std::uint64_t carry = Multiply128(value, power.low).high;
  product.low += carry;
  if (product.low < carry) ++product.high;
  return product;
}

}  // namespace

bool RoundToDecimals(double magnitude, int decimals, FixedDecimal& rounded) noexcept {
  const auto [mantissa, power] = Split(magnitude);
  rounded = {};
  if (power >= 0) {
    if (power > 63 - MANTISSA_BITS) return false;
    rounded.whole = mantissa << power;
    return true;
  }
  const int places = -power;
  const std::uint64_t fraction = places < 64 ? LowBits(mantissa, places) : mantissa;
  if (places < 64) rounded.whole = mantissa >> places;
  // The product has at most 117 bits: from here on it is less than half a unit.
  if (places >= 120) return true;
  const Cut cut = CutAt(Multiply128(fraction, POWERS_OF_TEN[decimals]), places);
  rounded.fraction = cut.whole;
  const bool isOdd = ((decimals == 0 ? rounded.whole : rounded.fraction) & 1) != 0;
  if (Less(cut.rest, cut.half) || (cut.rest == cut.half && !isOdd)) return true;
  if (decimals == 0 || ++rounded.fraction == POWERS_OF_TEN[decimals]) {
    rounded.fraction = 0;
    ++rounded.whole;
  }
  return true;
}

bool RoundToSignificant(double magnitude, int count, SignificantDecimal& rounded) noexcept {
  rounded = {};
  const auto [mantissa, power] = Split(magnitude);
  if (mantissa == 0) return true;
  const int leadingZeros = std::countl_zero(mantissa);
  int exponent = DecimalExponent(power + 63 - leadingZeros);
  for (;; ++exponent) {
    const int scale = count - 1 - exponent;
    if (scale > LARGEST_POWER_OF_TEN) return false;
    const Product128 product = MultiplyUpper(mantissa << leadingZeros, PowerOfFive(scale));
    const Cut cut = CutAt(product, 63 + leadingZeros - power - BinaryExponent(scale));
    // The exponent is that of the power of two below; it may be one too small.
    if (cut.whole >= POWERS_OF_TEN[count]) continue;
    if (IsNear(cut.rest, cut.half)) return false;
    rounded = {cut.whole + (Less(cut.rest, cut.half) ? 0 : 1), exponent};
    if (rounded.digits == POWERS_OF_TEN[count]) {
      rounded.digits /= 10;
      ++rounded.exponent;
    }
    return true;
  }
}

int CountDigits(std::uint64_t value) noexcept {
  // 1233 / 4096 is a little more than log10(2), close enough for 64 bits.
  const int guess = (static_cast<int>(std::bit_width(value | 1)) * 1233) >> 12;
  return guess + ((value | 1) >= POWERS_OF_TEN[guess] ? 1 : 0);
}

char* TakeDigits(std::uint64_t& value, int count, char* end) noexcept {
  for (; count >= 2; count -= 2) {
    const std::uint64_t pair = value % 100;
    value /= 100;
    *--end = PAIRS[2 * pair + 1];
    *--end = PAIRS[2 * pair];
  }
  if (count == 1) {
    *--end = static_cast<char>('0' + value % 10);
    value /= 10;
  }
  return end;
}

}  // namespace shr
