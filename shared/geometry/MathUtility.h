// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Mathematical constants, units of length, comparison by units in the last place and rounding to
/// significant digits.
///
/// `INFINITY` and `NAN` are macros of the C library, so a plain constant of the same name cannot be
/// written after `<cmath>`. This header includes `<cmath>` itself and turns both into macros that
/// expand to themselves; `INFINITY`, `::INFINITY` and `shr::INFINITY` then all name one constant of
/// type `double`, whatever is included before or after.
///
///     double angle = 30.0 * shr::DEG_TO_RAD;
///     double nearest = shr::INFINITY;
///     bool same = shr::AlmostEqual(0.1 + 0.2, 0.3, 1);  // true
///
/// Threads: no state.

#pragma once

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>

#include "shared/Export.h"

#undef INFINITY
#undef NAN
#define INFINITY INFINITY
#define NAN NAN

namespace shr {

inline constexpr double PI = 3.14159265358979323846;
inline constexpr double ONE_PI = PI;
inline constexpr double TWO_PI = 2.0 * PI;
inline constexpr double THREE_PI = 9.42477796076937971539;
inline constexpr double FOUR_PI = 4.0 * PI;
inline constexpr double HALF_PI = PI / 2.0;
inline constexpr double THIRD_PI = 1.04719755119659774615;
inline constexpr double QUARTER_PI = PI / 4.0;
inline constexpr double PI_INV = 0.31830988618379067154;
inline constexpr double TWO_PI_INV = PI_INV / 2.0;
inline constexpr double SQRT_PI = 1.77245385090551602730;
inline constexpr double SQRT_PI_INV = 0.56418958354775628695;
inline constexpr double SQRT_TWO_PI = 2.50662827463100050242;
inline constexpr double SQRT_TWO_PI_INV = 0.39894228040143267794;
inline constexpr double DEG_TO_RAD = 0.01745329251994329577;
inline constexpr double RAD_TO_DEG = 57.2957795130823208768;
inline constexpr double EULER_GAMMA = 0.5772156649015329;
inline constexpr double EULER_E = 2.71828182845904523536;
inline constexpr double GOLDEN_RATIO = 1.618033988749895;
inline constexpr double LN_TWO = 0.69314718055994530942;
inline constexpr double LN_TEN = 2.30258509299404568402;

inline constexpr double METERS_PER_INCH = 0.0254;
inline constexpr double INCHES_PER_METER = 1.0 / METERS_PER_INCH;
inline constexpr double CM_PER_INCH = 2.54;
inline constexpr double INCHES_PER_CM = 1.0 / CM_PER_INCH;
inline constexpr double POINTS_PER_INCH = 72.0;
inline constexpr double INCHES_PER_POINT = 1.0 / POINTS_PER_INCH;
inline constexpr double TWIPS_PER_POINT = 20.0;
inline constexpr double POINTS_PER_TWIP = 0.05;
inline constexpr double TWIPS_PER_INCH = 1440.0;
inline constexpr double INCHES_PER_TWIP = 1.0 / TWIPS_PER_INCH;

/// The distance from 1 to the next larger `double`.
inline constexpr double EPSILON = DBL_EPSILON;
/// The smallest normal `float`.
inline constexpr double SUKOSHI = FLT_MIN;

inline constexpr double INFINITY = std::numeric_limits<double>::infinity();
inline constexpr double NEG_INFINITY = -std::numeric_limits<double>::infinity();
inline constexpr double NAN = std::numeric_limits<double>::quiet_NaN();

/// Alpha of a fully transparent and of a fully opaque `Color4b`.
inline constexpr unsigned char ALPHA_MIN = 0;
inline constexpr unsigned char ALPHA_MAX = 255;

/// Returns true when at most `maxUlps` steps from one representable value to the next lie between
/// `a` and `b`. +0 and -0 are one step apart, the infinities follow the largest finite values.
/// Degenerate: false when either is NaN or `maxUlps` is negative.
constexpr bool AlmostEqual(double a, double b, int maxUlps);
constexpr bool AlmostEqual(float a, float b, int maxUlps);

/// Returns the root of a^2 + b^2 + c^2, which only overflows when the result does. Degenerate: NaN
/// when all are 0 or one is infinite or NaN.
inline double hypot(double a, double b, double c);

/// Returns where `value` lies between `low` and `high`: 0 at `low` or before, 1 at `high` or
/// beyond. Degenerate: NaN when `value` is at both or a value is NaN.
constexpr double Normalize(double value, double low, double high);

/// Rounds to this many significant digits, halves away from 0. Degenerate: the value itself for
/// digits outside 1 to 15, and 0, infinities and NaN. Error bound: 4 ulps beside the decimal
/// number.
SHARED_API double RoundSig(double value, int digits);

// Implementation details follow.

inline double hypot(double a, double b, double c) {
  a = std::abs(a);
  b = std::abs(b);
  c = std::abs(c);
  double largest = a > b ? a : b;
  if (c > largest) largest = c;
  a /= largest;
  b /= largest;
  c /= largest;
  return largest * std::sqrt(a * a + b * b + c * c);
}

constexpr double Normalize(double value, double low, double high) {
  const double position = (value - low) / (high - low);
  return position < 0.0 ? 0.0 : position > 1.0 ? 1.0 : position;
}

/// Maps the bits of a floating-point value to an unsigned integer of the same order. Negative
/// values are mirrored by the complement of all bits, which keeps the two zeros distinct.
template <class Bits, class Float>
constexpr Bits OrderedBits(Float value) {
  constexpr Bits SIGN_BIT = Bits{1} << (sizeof(Bits) * 8 - 1);
  const Bits bits = std::bit_cast<Bits>(value);
  return (bits & SIGN_BIT) != 0 ? ~bits : bits | SIGN_BIT;
}

template <class Bits, class Float>
constexpr bool AlmostEqualBits(Float a, Float b, int maxUlps) {
  if (a != a || b != b || maxUlps < 0) return false;
  const Bits orderedA = OrderedBits<Bits>(a);
  const Bits orderedB = OrderedBits<Bits>(b);
  return (orderedA > orderedB ? orderedA - orderedB : orderedB - orderedA) <=
         static_cast<Bits>(maxUlps);
}

constexpr bool AlmostEqual(double a, double b, int maxUlps) {
  return AlmostEqualBits<std::uint64_t>(a, b, maxUlps);
}

constexpr bool AlmostEqual(float a, float b, int maxUlps) {
  return AlmostEqualBits<std::uint32_t>(a, b, maxUlps);
}

}  // namespace shr

using shr::INFINITY;
using shr::NAN;
