// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every operation on random operands against MPFR with 2,600 bits: numbers of like and of
// any size, nearly equal ones, tails far below their heads, arguments near the multiples of pi.
// The bounds are those of the table in docs/double-double.md, in units of 2^-106 of the result; the
// test prints the largest errors that it meets.

#include <gtest/gtest.h>
#include <mpfr.h>

#include <cstdio>
#include <functional>
#include <random>

#include "shared/numerics/doubledouble/DoubleDouble.h"
#include "shared/numerics/doubledouble/DoubleDoubleMath.h"
#include "shared/numerics/doubledouble/DoubleDoubleSpans.h"

namespace shr {
namespace {

constexpr mpfr_prec_t PRECISION = 2600;

class Real {
public:
  Real() { mpfr_init2(value_, PRECISION); }
  explicit Real(const doubledouble& x) : Real() {
    mpfr_set_d(value_, x.head, MPFR_RNDN);
    mpfr_add_d(value_, value_, x.tail, MPFR_RNDN);
  }
  Real(const Real&) = delete;
  Real& operator=(const Real&) = delete;
  ~Real() { mpfr_clear(value_); }
  operator mpfr_ptr() { return value_; }

private:
  mpfr_t value_;
};

/// |got / expected - 1| in units of 2^-106.
double ErrorOf(const doubledouble& got, Real& expected) {
  Real error(got);
  if (mpfr_zero_p(expected) != 0) return got.head == 0 ? 0 : 1e300;
  mpfr_sub(error, error, expected, MPFR_RNDN);
  mpfr_div(error, error, expected, MPFR_RNDN);
  return std::fabs(std::ldexp(mpfr_get_d(error, MPFR_RNDN), 106));
}

std::mt19937_64& Random() {
  static std::mt19937_64 random(10);
  return random;
}

double Uniform(double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(Random());
}

/// A number with a head of one of the binary exponents, every eighth with a far tail.
doubledouble Any(int low, int high) {
  const double head = std::ldexp(Uniform(1, 2), std::uniform_int_distribution(low, high)(Random()));
  const int gap = Random()() % 8 == 0 ? static_cast<int>(Random()() % 40) : 0;
  const double tail = head * std::ldexp(Uniform(-1, 1), -53 - gap);
  return normalize({Random()() % 2 == 0 ? head : -head, Random()() % 9 == 0 ? 0 : tail});
}

doubledouble Beside(const doubledouble& x) {
  const doubledouble difference = x * scalb(Uniform(-1, 1), -static_cast<long>(Random()() % 110));
  return -x + difference;
}

doubledouble NearQuarterTurn() {
  const doubledouble turns = static_cast<double>(1 + Random()() % 1000000);
  return turns * (atan2(1, 0) + (Random()() % 2 == 0 ? 0.0 : Uniform(-1e-20, 1e-20)));
}

using Pair = std::pair<doubledouble, doubledouble>;

struct Row {
  const char* name;
  double bound;
  std::function<Pair()> draw;
  std::function<doubledouble(const doubledouble&, const doubledouble&)> ours;
  std::function<void(Real&, Real&, Real&)> exact;
};

#define EXACTLY(CALL) [](Real& z, [[maybe_unused]] Real& x, [[maybe_unused]] Real& y) { CALL; }
#define OURS(EXPRESSION)                             \
  [](const doubledouble& x, const doubledouble& y) { \
    static_cast<void>(y);                            \
    return doubledouble(EXPRESSION);                 \
  }

Pair Like() {
  return {Any(-3, 3), Any(-3, 3)};
}
Pair Wide() {
  return {Any(-400, 400), Any(-400, 400)};
}
Pair Close() {
  const doubledouble x = Any(-3, 3);
  return {x, Beside(x)};
}
Pair Positive(int low, int high) {
  return {fabs(Any(low, high)), 0};
}

const Row ROWS[] = {
    {"add, like sizes", 3, Like, OURS(x + y), EXACTLY(mpfr_add(z, x, y, MPFR_RNDN))},
    {"add, any sizes", 3, Wide, OURS(x + y), EXACTLY(mpfr_add(z, x, y, MPFR_RNDN))},
    {"add, nearly opposite", 3, Close, OURS(x + y), EXACTLY(mpfr_add(z, x, y, MPFR_RNDN))},
    {"multiply, like sizes", 8, Like, OURS(x* y), EXACTLY(mpfr_mul(z, x, y, MPFR_RNDN))},
    {"multiply, any sizes", 8, Wide, OURS(x* y), EXACTLY(mpfr_mul(z, x, y, MPFR_RNDN))},
    {"divide, like sizes", 10, Like, OURS(x / y), EXACTLY(mpfr_div(z, x, y, MPFR_RNDN))},
    {"divide, any sizes", 10, Wide, OURS(x / y), EXACTLY(mpfr_div(z, x, y, MPFR_RNDN))},
    {"divide, nearly equal", 10, Close, OURS(x / y), EXACTLY(mpfr_div(z, x, y, MPFR_RNDN))},
    {"sqrt", 8, [] { return Positive(-900, 900); }, OURS(sqrt(x)),
     EXACTLY(mpfr_sqrt(z, x, MPFR_RNDN))},
    {"hypot", 16, Wide, OURS(hypot(x, y)), EXACTLY(mpfr_hypot(z, x, y, MPFR_RNDN))},
    {"pow 10", 80, Like, OURS(pow(x, 10)), EXACTLY(mpfr_pow_si(z, x, 10, MPFR_RNDN))},
    {"exp", 8, [] { return Pair(Any(-30, 8), 0); }, OURS(exp(x)),
     EXACTLY(mpfr_exp(z, x, MPFR_RNDN))},
    {"log", 8, [] { return Positive(-900, 1000); }, OURS(log(x)),
     EXACTLY(mpfr_log(z, x, MPFR_RNDN))},
    {"log, near 1", 16, [] { return Pair(doubledouble(1) + Any(-60, -2), 0); }, OURS(log(x)),
     EXACTLY(mpfr_log(z, x, MPFR_RNDN))},
    {"sin, to 1e6", 8, [] { return Pair(Any(-40, 20), 0); }, OURS(sin(x)),
     EXACTLY(mpfr_sin(z, x, MPFR_RNDN))},
    {"sin, any size", 8, [] { return Pair(Any(20, 1023), 0); }, OURS(sin(x)),
     EXACTLY(mpfr_sin(z, x, MPFR_RNDN))},
    {"sin, near k pi / 2", 8, [] { return Pair(NearQuarterTurn(), 0); }, OURS(sin(x)),
     EXACTLY(mpfr_sin(z, x, MPFR_RNDN))},
    {"cos, to 1e6", 8, [] { return Pair(Any(-40, 20), 0); }, OURS(cos(x)),
     EXACTLY(mpfr_cos(z, x, MPFR_RNDN))},
    {"cos, any size", 8, [] { return Pair(Any(20, 1023), 0); }, OURS(cos(x)),
     EXACTLY(mpfr_cos(z, x, MPFR_RNDN))},
    {"cos, near k pi / 2", 8, [] { return Pair(NearQuarterTurn(), 0); }, OURS(cos(x)),
     EXACTLY(mpfr_cos(z, x, MPFR_RNDN))},
    {"atan2, like sizes", 12, Like, OURS(atan2(x, y)), EXACTLY(mpfr_atan2(z, x, y, MPFR_RNDN))},
    {"atan2, any sizes", 12, Wide, OURS(atan2(x, y)), EXACTLY(mpfr_atan2(z, x, y, MPFR_RNDN))},
    {"atan2, near the diagonal", 12, Close, OURS(atan2(x, y)),
     EXACTLY(mpfr_atan2(z, x, y, MPFR_RNDN))},
};

TEST(DoubleDoubleMpfr, staysWithinTheBounds) {
  constexpr int TIMES = 500;
  for (const Row& row : ROWS) {
    double largest = 0;
    for (int i = 0; i < TIMES; ++i) {
      const auto [x, y] = row.draw();
      Real exactX(x), exactY(y), expected;
      row.exact(expected, exactX, exactY);
      const double error = ErrorOf(row.ours(x, y), expected);
      largest = std::max(largest, error);
      ASSERT_LE(error, row.bound) << row.name << " of " << x << " and " << y;
    }
    std::printf("  %-26s %6.2f of %g\n", row.name, largest, row.bound);
  }
}

/// A text of up to 45 digits, now and then of hundreds, many of them nines and zeros.
std::string RandomText() {
  std::mt19937_64& random = Random();
  const auto draw = [&random](std::uint64_t count) { return static_cast<int>(random() % count); };
  const int digits = draw(50) == 0 ? 1 + draw(1500) : 1 + draw(45);
  const int point = draw(4) == 0 ? -1 : draw(static_cast<std::uint64_t>(digits) + 1);
  std::string text = draw(2) == 0 ? "-" : "";
  for (int i = 0; i < digits; ++i) {
    if (i == point) text += '.';
    text += draw(3) == 0 ? static_cast<char>(draw(2) == 0 ? '0' : '9')
                         : static_cast<char>('0' + draw(10));
  }
  if (draw(2) == 0) text += "e" + std::to_string(draw(700) - 350 - (digits > 100 ? digits : 0));
  return text;
}

TEST(DoubleDoubleMpfr, readsTextCorrectlyRounded) {
  Real number;
  mpfr_set_prec(number, 12000);
  for (int i = 0; i < 2000; ++i) {
    const std::string text = RandomText();
    mpfr_set_str(number, text.c_str(), 10, MPFR_RNDN);
    const double head = mpfr_get_d(number, MPFR_RNDN);
    mpfr_sub_d(number, number, head, MPFR_RNDN);
    const double tail = mpfr_get_d(number, MPFR_RNDN);
    doubledouble value;
    const bool isRead = StringToDoubleDouble(std::string_view(text), value);
    ASSERT_EQ(isRead, std::isfinite(head)) << text;
    if (!isRead) continue;
    ASSERT_EQ(value, normalize({head, tail})) << text;
    ASSERT_EQ(atodd(DoubleDoubleToString(value).c_str()), value) << text;
  }
}

TEST(DoubleDoubleMpfr, sumsWithinTheBound) {
  constexpr std::size_t COUNT = 5000;
  std::vector<doubledouble> x, y;
  Real exact, magnitude;
  mpfr_set_zero(exact, 1);
  mpfr_set_zero(magnitude, 1);
  for (std::size_t i = 0; i < COUNT; ++i) {
    x.push_back(i % 3 == 2 ? Beside(x.back()) : Any(-30, 30));
    y.push_back(i % 3 == 2 ? y.back() : Any(-30, 30));
    Real product(x.back()), factor(y.back());
    mpfr_mul(product, product, factor, MPFR_RNDN);
    mpfr_add(exact, exact, product, MPFR_RNDN);
    mpfr_abs(product, product, MPFR_RNDN);
    mpfr_add(magnitude, magnitude, product, MPFR_RNDN);
  }
  Real error(DotProduct(x, y));
  mpfr_sub(error, error, exact, MPFR_RNDN);
  mpfr_div(error, error, magnitude, MPFR_RNDN);
  const double bound = std::ldexp(static_cast<double>(COUNT) / 16 + 8, -104);
  EXPECT_LE(std::fabs(mpfr_get_d(error, MPFR_RNDN)), bound);
}

}  // namespace
}  // namespace shr
