// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What the operators of the header leave out: products and quotients whose operands overflow when
// they are split are formed of operands scaled to about 1, and the result is scaled back. Scaling
// by a power of two is exact, but for a result whose parts become subnormal.

#include "shared/numerics/doubledouble/DoubleDouble.h"

#include <algorithm>
#include <climits>

#include "shared/platform/FloatControl.h"

namespace shr {
namespace {

using namespace doubledouble_formulas;

/// The exponent of frexp; 0 for 0.
int ExponentOf(double a) {
  int exponent = 0;
  std::frexp(a, &exponent);
  return exponent;
}

doubledouble Scaled(const doubledouble& x, int exponent) {
  const doubledouble scaled(std::ldexp(x.head, exponent), std::ldexp(x.tail, exponent));
  // An infinite head has no tail, and a head that was rounded may have one of its own size.
  return IsFinite(scaled.head) ? normalize(scaled) : doubledouble(scaled.head);
}

/// Rounds both parts by `round`, floor or ceil.
doubledouble Rounded(const doubledouble& x, double (*round)(double)) {
  const double head = round(x.head);
  if (head != x.head || !isfinite(x)) return head;
  return normalize({head, round(x.tail)});
}

}  // namespace

doubledouble doubledouble_formulas::ExtremeProduct(const doubledouble& x, const doubledouble& y) {
  const double product = x.head * y.head;
  if (!isfinite(x) || !isfinite(y) || x.head == 0 || y.head == 0) return product;
  const int xExponent = ExponentOf(x.head);
  const int yExponent = ExponentOf(y.head);
  const Pair<double> scaled =
      ProductOf(PairOf(Scaled(x, -xExponent)), PairOf(Scaled(y, -yExponent)));
  return Scaled({scaled.head, scaled.tail}, xExponent + yExponent);
}

doubledouble doubledouble_formulas::ExtremeQuotient(const doubledouble& x, const doubledouble& y) {
  const double quotient = x.head / y.head;
  if (!isfinite(x) || !isfinite(y) || x.head == 0 || y.head == 0) return quotient;
  const int xExponent = ExponentOf(x.head);
  const int yExponent = ExponentOf(y.head);
  const Pair<double> scaled =
      QuotientOf(PairOf(Scaled(x, -xExponent)), PairOf(Scaled(y, -yExponent)));
  return Scaled({scaled.head, scaled.tail}, xExponent - yExponent);
}

bool doubledouble::CheckPrecision() {
  return IsX87PrecisionDouble();
}

doubledouble floor(const doubledouble& x) {
  return Rounded(x, [](double part) { return std::floor(part); });
}

doubledouble ceil(const doubledouble& x) {
  return Rounded(x, [](double part) { return std::ceil(part); });
}

doubledouble pow(const doubledouble& x, int n) {
  const unsigned int times = n < 0 ? 0u - static_cast<unsigned int>(n) : static_cast<unsigned>(n);
  const auto positivePower = [times](doubledouble square) {
    doubledouble result = 1;
    for (unsigned int rest = times; rest != 0; rest >>= 1) {
      if ((rest & 1) != 0) result *= square;
      if (rest > 1) square *= square;
    }
    return result;
  };
  if (n >= 0) return positivePower(x);
  const doubledouble power = positivePower(x);
  // A power beyond the range may have a reciprocal within, among the smallest numbers.
  const bool isLost = isfinite(x) && x.head != 0 && (!isfinite(power) || power.head == 0);
  return isLost ? positivePower(recip(x)) : recip(power);
}

doubledouble scalb(const doubledouble& x, long n) {
  constexpr long ENOUGH = 5000;  // to take any number to 0 or infinity
  return isfinite(x) ? Scaled(x, static_cast<int>(std::clamp(n, -ENOUGH, ENOUGH))) : x;
}

doubledouble hypot(const doubledouble& x, const doubledouble& y) {
  if (isinf(x) || isinf(y)) return std::numeric_limits<double>::infinity();
  if (isnan(x) || isnan(y)) return std::numeric_limits<double>::quiet_NaN();
  const int exponent = std::max(x.head == 0 ? INT_MIN / 2 : ExponentOf(x.head),
                                y.head == 0 ? INT_MIN / 2 : ExponentOf(y.head));
  if (x.head == 0 && y.head == 0) return 0.0;
  return Scaled(sqrt(sqr(Scaled(x, -exponent)) + sqr(Scaled(y, -exponent))), exponent);
}

std::pair<doubledouble, long> partition(const doubledouble& x) {
  if (!isfinite(x) || x.head == 0) return {x, 0};
  const int exponent = ExponentOf(x.head);
  return {Scaled(x, -exponent), exponent};
}

}  // namespace shr
