// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Every function takes its argument apart so that what is left for a series is small:
//
// exp    x = k ln 2 + j / 64 + s, |s| <= 1/128: 2^k times a table entry times a Taylor series. The
//        leading 42 bits of ln 2 times k are exact and are taken off first.
// log    x = 2^k m: a factor c of 9 bits near 1 / m makes m c = 1 + f, |f| < 1/64, without an error
//        that would count; log m is the table's log of 1 / c and 2 atanh(f / (2 + f)). Within 1/16
//        of 1 the series does without a table, so that nothing cancels.
// sin    The angle is multiplied by 2 / pi in fixed-point arithmetic, by the limbs of 2 / pi that
// cos    matter for its exponent; whole turns fall out on the left. 384 bits behind the point are
//        kept, since an angle of two parts may come as close to a multiple of pi / 2 as chance
//        allows, which is about 2^-190. The rest, at most half a quadrant, goes to a Taylor series.
// atan2  With 0 <= y <= x and c = j / 32 next to y / x, the angle is atan c from the table and the
//        series of (y - c x) / (x + c y), at most 1/64.

#include "shared/numerics/doubledouble/DoubleDoubleMath.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

namespace shr {
namespace {

#include "shared/numerics/doubledouble/DoubleDoubleTables.inc"

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

/// x * 2^n for a power of two that is a normal number.
doubledouble Times(const doubledouble& x, double powerOfTwo) {
  return {x.head * powerOfTwo, x.tail * powerOfTwo};
}

// Series.

/// Sums c[first] + c[first + step] x + c[first + 2 step] x^2 + ..., `count` terms, with the sign of
/// x for each power.
doubledouble Polynomial(std::span<const doubledouble> coefficients, std::size_t first,
                        std::size_t step, std::size_t count, const doubledouble& x) {
  doubledouble sum = coefficients[first + step * (count - 1)];
  for (std::size_t i = count - 1; i-- > 0;) sum = sum * x + coefficients[first + step * i];
  return sum;
}

/// x + x^3 / 3 + x^5 / 5 + ..., of x^2 with its sign.
doubledouble OddSeries(const doubledouble& x, const doubledouble& square, std::size_t count) {
  return x + x * square * Polynomial(INVERSE_ODDS, 1, 1, count - 1, square);
}

/// exp(x) - 1 for |x| <= 1/128.
doubledouble ShortExpm1(const doubledouble& x) {
  constexpr std::size_t TERMS = 13;
  return x + x * x * Polynomial(INVERSE_FACTORIALS, 2, 1, TERMS - 2, x);
}

/// Returns log(1 + f), |f| <= 1/16.
doubledouble Log1p(const doubledouble& f, std::size_t terms) {
  const doubledouble s = f / (doubledouble(2) + f);
  return Times(OddSeries(s, s * s, terms), 2);
}

/// Of an angle of at most about pi / 4.
doubledouble ShortSin(const doubledouble& x) {
  constexpr std::size_t TERMS = 15;
  const doubledouble square = -(x * x);
  return x + x * square * Polynomial(INVERSE_FACTORIALS, 3, 2, TERMS - 1, square);
}
doubledouble ShortCos(const doubledouble& x) {
  constexpr std::size_t TERMS = 16;
  const doubledouble square = -(x * x);
  return doubledouble(1) + square * Polynomial(INVERSE_FACTORIALS, 2, 2, TERMS - 1, square);
}

// Angles.

/// A number of quarter turns: an integer modulo 4 and a rest of at most half a quarter.
struct QuarterTurns {
  unsigned int whole;
  doubledouble rest;  ///< In radians.
};

constexpr int LIMB_BITS = 32;
constexpr int FRACTION_LIMBS = 12;

/// Fixed point with one limb before the point, modulo 2^32; limb 0 is the lowest.
using Turns = std::array<std::uint32_t, FRACTION_LIMBS + 1>;

void Negate(Turns& turns) {
  std::uint64_t carry = 1;
  for (std::uint32_t& limb : turns) {
    carry += static_cast<std::uint32_t>(~limb);
    limb = static_cast<std::uint32_t>(carry);
    carry >>= LIMB_BITS;
  }
}

void Add(Turns& turns, const Turns& other) {
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < turns.size(); ++i) {
    carry += std::uint64_t{turns[i]} + other[i];
    turns[i] = static_cast<std::uint32_t>(carry);
    carry >>= LIMB_BITS;
  }
}

/// Adds factor * limb at a place; what goes beyond the limbs on either side is dropped.
void AddProduct(Turns& turns, int place, std::uint32_t factor, std::uint32_t limb) {
  std::uint64_t product = std::uint64_t{factor} * limb;
  for (; product != 0 && place < static_cast<int>(turns.size()); ++place) {
    const std::uint64_t low = product & 0xFFFFFFFFu;
    product >>= LIMB_BITS;
    if (place < 0) continue;
    auto& sum = turns[static_cast<std::size_t>(place)];
    const std::uint64_t total = sum + low;
    sum = static_cast<std::uint32_t>(total);
    product += total >> LIMB_BITS;
  }
}

/// Returns part * 2 / pi modulo 2^32.
Turns TurnsOf(double part) {
  Turns turns{};
  if (part == 0) return turns;
  int exponent = 0;
  const double fraction = std::frexp(std::fabs(part), &exponent);
  const auto mantissa = static_cast<std::uint64_t>(std::ldexp(fraction, 53));
  // part = mantissa * 2^shift * 2^(32 lowest), the shifted mantissa as three limbs.
  const int lowest = (exponent - 53 + 64 * LIMB_BITS) / LIMB_BITS - 64;
  const int shift = exponent - 53 - lowest * LIMB_BITS;
  const std::uint32_t factors[3] = {
      static_cast<std::uint32_t>(mantissa << shift),
      static_cast<std::uint32_t>(mantissa >> (LIMB_BITS - shift)),
      shift == 0 ? 0 : static_cast<std::uint32_t>(mantissa >> (2 * LIMB_BITS - shift))};
  constexpr int LIMB_COUNT = static_cast<int>(std::size(TWO_OVER_PI));
  for (int j = 0; j < 3; ++j) {
    // The place of the product with the first limb, which stands just behind the point; those of
    // the next ones are lower by one each. From `first` on a product reaches the limbs kept.
    const int place = lowest + j - 1 + FRACTION_LIMBS;
    const int first = std::max(place - FRACTION_LIMBS, 0);
    for (int i = first; i < LIMB_COUNT && place - i >= -1; ++i) {
      AddProduct(turns, place - i, factors[j], TWO_OVER_PI[i]);
    }
  }
  if (part < 0) Negate(turns);
  return turns;
}

QuarterTurns ReduceAngle(const doubledouble& x) {
  if (std::fabs(x.head) <= QUARTER_PI.head) return {0, x};
  Turns turns = TurnsOf(x.head);
  Add(turns, TurnsOf(x.tail));
  unsigned int whole = turns[FRACTION_LIMBS];
  const bool isAboveHalf = turns[FRACTION_LIMBS - 1] >> 31 != 0;
  if (isAboveHalf) {
    ++whole;
    Negate(turns);
  }
  // Five limbs from the first that is not zero hold at least 129 bits.
  int top = FRACTION_LIMBS - 1;
  while (top > 4 && turns[static_cast<std::size_t>(top)] == 0) --top;
  doubledouble rest = 0;
  for (int i = top - 4; i <= top; ++i) {
    rest = Times(rest, 0x1p-32) + static_cast<double>(turns[static_cast<std::size_t>(i)]);
  }
  rest = scalb(rest, (top - FRACTION_LIMBS) * LIMB_BITS) * HALF_PI;
  return {whole & 3, isAboveHalf ? -rest : rest};
}

// The arc tangent.

/// Of y / x, 0 <= y <= x, 0 < x. `quotient` is near y / x.
doubledouble FirstOctantAngle(const doubledouble& y, const doubledouble& x, double quotient) {
  constexpr std::size_t TERMS = 10;
  const int index = static_cast<int>(quotient * ATAN_STEPS + 0.5);
  const doubledouble c = static_cast<double>(index) / ATAN_STEPS;
  const doubledouble u = index == 0 ? y / x : (y - c * x) / (x + c * y);
  const doubledouble angle = OddSeries(u, -(u * u), TERMS);
  return index == 0 ? angle : ARC_TANGENTS[index] + angle;
}

/// Of two numbers that are not zero, any of which may be the larger.
doubledouble QuadrantAngle(const doubledouble& y, const doubledouble& x) {
  // Under this a quotient is its own arc tangent.
  constexpr double TINY = 0x1p-60;
  const double quotient = y.head / x.head;
  if (quotient < TINY) return y / x;
  if (quotient > 1 / TINY) return HALF_PI - x / y;
  int exponent = 0;
  std::frexp(std::max(y.head, x.head), &exponent);
  const doubledouble scaledY = scalb(y, -exponent);
  const doubledouble scaledX = scalb(x, -exponent);
  if (y <= x) return FirstOctantAngle(scaledY, scaledX, std::min(quotient, 1.0));
  return HALF_PI - FirstOctantAngle(scaledX, scaledY, std::min(1 / quotient, 1.0));
}

/// The angle that `std::atan2` gives for zeros and infinities, one of eight.
doubledouble SpecialAngle(double y, double x) {
  const double angle = std::atan2(y, x);
  const int eighths = static_cast<int>(std::round(std::fabs(angle) / QUARTER_PI.head));
  const doubledouble magnitude = eighths == 3 ? HALF_PI + QUARTER_PI : QUARTER_PI * eighths;
  return std::signbit(angle) ? -magnitude : magnitude;
}

}  // namespace

doubledouble exp(const doubledouble& x) {
  constexpr double LARGEST = 710;
  constexpr double LEAST = -746;
  if (isnan(x)) return NO_NUMBER;
  if (x.head > LARGEST) return INFINITE;
  if (x.head < LEAST) return 0.0;
  const int k = static_cast<int>(std::floor(x.head / LN2_LEADING + 0.5));
  const doubledouble r = (x - k * LN2_LEADING) - k * LN2_REST;
  const int j = static_cast<int>(std::floor(r.head * EXP_STEPS + 0.5));
  const doubledouble& factor = EXPONENTIALS[std::clamp(j, -EXP_LAST, EXP_LAST) + EXP_LAST];
  const doubledouble rest = ShortExpm1(r - static_cast<double>(j) / EXP_STEPS);
  return scalb(factor + factor * rest, k);
}

doubledouble log(const doubledouble& x) {
  constexpr double NEAR_ONE = 1.0 / 16;
  if (isnan(x) || x.head < 0) return NO_NUMBER;
  if (x.head == 0) return -INFINITE;
  if (isinf(x)) return INFINITE;
  const doubledouble difference = x - 1.0;
  if (std::fabs(difference.head) < NEAR_ONE) return Log1p(difference, 12);
  auto [m, k] = partition(x);
  constexpr double ROOT_OF_HALF = 0.70710678118654752;
  if (m.head < ROOT_OF_HALF) {
    m = Times(m, 2);
    --k;
  }
  const int index = static_cast<int>(m.head * LOG_STEPS + 0.5) - LOG_FIRST;
  const double factor = LOG_FACTORS[index];
  const doubledouble product = Multiply(m.head, factor);
  const doubledouble f = doubledouble(product.head - 1) + product.tail + m.tail * factor;
  const doubledouble logarithm = LOGARITHMS[index] + Log1p(f, 9);
  const auto exponent = static_cast<double>(k);
  return exponent * LN2_LEADING + (exponent * LN2_REST + logarithm);
}

doubledouble sin(const doubledouble& x) {
  if (!isfinite(x)) return NO_NUMBER;
  const QuarterTurns turns = ReduceAngle(x);
  const doubledouble value = turns.whole % 2 == 0 ? ShortSin(turns.rest) : ShortCos(turns.rest);
  return turns.whole < 2 ? value : -value;
}

doubledouble cos(const doubledouble& x) {
  if (!isfinite(x)) return NO_NUMBER;
  const QuarterTurns turns = ReduceAngle(x);
  const doubledouble value = turns.whole % 2 == 0 ? ShortCos(turns.rest) : ShortSin(turns.rest);
  return turns.whole == 0 || turns.whole == 3 ? value : -value;
}

doubledouble atan2(const doubledouble& y, const doubledouble& x) {
  if (isnan(x) || isnan(y)) return NO_NUMBER;
  const bool isSpecial = !isfinite(x) || !isfinite(y) || x.head == 0 || y.head == 0;
  if (isSpecial) return SpecialAngle(y.head, x.head);
  const doubledouble angle = QuadrantAngle(fabs(y), fabs(x));
  const doubledouble upper = x.head > 0 ? angle : PI - angle;
  return y.head > 0 ? upper : -upper;
}

}  // namespace shr
