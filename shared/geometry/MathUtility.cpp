// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/geometry/MathUtility.h"

namespace shr {
namespace {

/// Returns value * 10^exponent, for exponents from -400 to 400. Divisions by powers up to 10^22,
/// which have no error of their own, make the digits after the point right.
double ScaleByPowerOfTen(double value, int exponent) {
  constexpr double POWERS[] = {1e1, 1e2, 1e4, 1e8, 1e16, 1e32, 1e64, 1e128, 1e256};
  const bool isUp = exponent >= 0;
  double factor = 1.0;
  int rest = isUp ? exponent : -exponent;
  if (rest >= 256) {
    value = isUp ? value * POWERS[8] : value / POWERS[8];
    rest -= 256;
  }
  for (int bit = 0; bit < 8; ++bit) {
    if ((rest >> bit & 1) != 0) factor *= POWERS[bit];
  }
  return isUp ? value * factor : value / factor;
}

/// Returns the largest exponent of ten whose power is at most `magnitude`.
int DecimalExponent(double magnitude) {
  int exponent = static_cast<int>(std::floor(std::log10(magnitude)));
  // The logarithm may be off by its last bit beside a power of ten.
  const double scaled = ScaleByPowerOfTen(magnitude, -exponent);
  if (scaled >= 10.0) ++exponent;
  if (scaled < 1.0) --exponent;
  return exponent;
}

}  // namespace

double RoundSig(double value, int digits) {
  if (digits < 1 || digits >= 16 || value == 0.0 || !std::isfinite(value)) return value;
  const int exponent = digits - 1 - DecimalExponent(std::abs(value));
  return ScaleByPowerOfTen(std::round(ScaleByPowerOfTen(value, exponent)), -exponent);
}

}  // namespace shr
