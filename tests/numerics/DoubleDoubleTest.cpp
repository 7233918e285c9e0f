// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: values that a double loses; conversions both ways; all operand types; comparison; results
// of the plain steps, golden; what is beyond them: infinities, NaN, zeros, operands that overflow
// when split, results at the edge of the range; rounding, powers, scaling; limits and hashes.

#include "shared/numerics/doubledouble/DoubleDouble.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <type_traits>
#include <unordered_set>

namespace shr {
namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double LARGEST = std::numeric_limits<double>::max();
using Limits = std::numeric_limits<doubledouble>;

/// The same parts, where zeros of both signs are the same and NaN is itself.
bool IsSame(const doubledouble& a, const doubledouble& b) {
  return a == b || (isnan(a) && isnan(b));
}

TEST(DoubleDouble, keepsWhatADoubleLoses) {
  const doubledouble sum = doubledouble(1) + 1e-20;
  EXPECT_EQ(sum.head, 1.0);
  EXPECT_EQ(sum.tail, 1e-20);
  EXPECT_EQ(static_cast<double>(sum), 1.0);
  EXPECT_EQ(static_cast<double>(sum - 1), 1e-20);
  const doubledouble product = Multiply(134217729.0, 134217729.0);
  EXPECT_EQ(product, doubledouble(std::int64_t{18014398777917441}));
  EXPECT_EQ(product.tail, 1.0);
  EXPECT_LT(fabs(sqr(sqrt(doubledouble(2))) - 2), doubledouble(1e-30));
}

TEST(DoubleDouble, holdsThePartsItIsMadeOf) {
  constexpr doubledouble pair(1.0, 5.0);
  static_assert(pair.head == 1.0 && pair.tail == 5.0);
  static_assert(normalize(pair) == doubledouble(6.0));
  static_assert(doubledouble().head == 0.0 && doubledouble(-7) == doubledouble(-7.0));
  static_assert(offsetof(doubledouble, head) == 0 && offsetof(doubledouble, tail) == 8);
  static_assert(std::is_trivially_copyable_v<doubledouble>);
  static_assert(!std::is_convertible_v<doubledouble, double>);
  static_assert(doubledouble(UINT64_MAX) == doubledouble(0x1p64, -1.0));
  static_assert(doubledouble(INT64_MIN) == doubledouble(-0x1p63));
  static_assert(doubledouble(INT64_MIN + 1) == doubledouble(-0x1p63, 1.0));
  static_assert(doubledouble(1) / 4 + 0.5 * doubledouble(3) == doubledouble(1.75));
}

TEST(DoubleDouble, becomesAnIntWithoutItsFraction) {
  struct Row {
    doubledouble value;
    int expected;
  };
  const Row rows[] = {{2.9, 2},
                      {-2.9, -2},
                      {{5.0, -1e-20}, 4},
                      {{-5.0, 1e-20}, -4},
                      {{5.0, 1e-20}, 5},
                      {{2147483648.0, -0.5}, INT_MAX},
                      {{-2147483648.0, -0.5}, INT_MIN},
                      {{-2147483648.0, 0.5}, -INT_MAX},
                      {1e300, INT_MAX},
                      {-INFINITE, INT_MIN},
                      {NO_NUMBER, 0}};
  for (const Row& row : rows) EXPECT_EQ(static_cast<int>(row.value), row.expected) << row.value;
}

TEST(DoubleDouble, takesDoublesAndIntsOnEitherSide) {
  const doubledouble x = 10;
  EXPECT_TRUE(x + 2 == 12 && 2 + x == 12.0 && x - 2.0 == 8 && 2 - x == -8 && x * 2 == 20);
  EXPECT_TRUE(2.5 * x == 25 && x / 4 == 2.5 && 5 / x == 0.5 && -x == -10 && +x == x);
  doubledouble y = 1;
  y += 2;
  y -= 0.5;
  y *= x;
  y /= 5;
  EXPECT_EQ(y, 5);
  EXPECT_TRUE(x != 9.0 && 9 < x && x <= 10 && x > 9.5 && 10.0 >= x && !(x < 10));
  y += y;
  EXPECT_EQ(y, 10);
}

TEST(DoubleDouble, comparesHeadsThenTails) {
  const doubledouble one(1.0), more(1.0, 1e-20), less(1.0, -1e-20), none(NO_NUMBER);
  EXPECT_TRUE(less < one && one < more && more > less && less <= less && more >= one);
  EXPECT_FALSE(one == more || more <= one || one >= more);
  EXPECT_TRUE(none != none);
  EXPECT_FALSE(none == none || none < one || none >= one || one <= none);
  EXPECT_EQ(doubledouble(0.0), doubledouble(-0.0));
}

TEST(DoubleDouble, givesTheHeadsOfDoublesWhereResultsAreNotFinite) {
  const double values[] = {0.0,       -0.0,    1.0,      -2.5,      INFINITE, -INFINITE,
                           NO_NUMBER, LARGEST, -LARGEST, 0x1p-1074, 1e300,    1e-300};
  for (const double a : values) {
    for (const double b : values) {
      const doubledouble x(a), y(b);
      const auto check = [&](const char* name, const doubledouble& got, double expected) {
        const bool isExtreme = !std::isfinite(expected) || expected == 0;
        const bool isRight = isExtreme ? IsSame(got, expected) : got.head == expected;
        EXPECT_TRUE(isRight) << a << name << b << " is " << got;
      };
      check(" + ", x + y, a + b);
      check(" - ", x - y, a - b);
      check(" * ", x * y, a * b);
      check(" / ", x / y, a / b);
    }
  }
}

TEST(DoubleDouble, multipliesAndDividesLargeNumbersAsOthers) {
  // The same numbers at the size of 1 and scaled, where splitting overflows.
  std::mt19937_64 random(4);
  for (int i = 0; i < 200; ++i) {
    const auto draw = [&random] {
      const double head = std::ldexp(static_cast<double>(random() >> 11), -53) + 0.5;
      return normalize({head, head * 0x1p-54 * std::ldexp(static_cast<double>(random()), -64)});
    };
    const doubledouble a = draw(), b = draw();
    EXPECT_EQ(scalb(a, 1020) * b, scalb(a * b, 1020));
    EXPECT_EQ(a * scalb(b, 1020), scalb(a * b, 1020));
    EXPECT_EQ(scalb(a, 1020) * scalb(b, -900), scalb(a * b, 120));
    EXPECT_EQ(scalb(a, 1020) / b, scalb(a / b, 1020));
    EXPECT_EQ(a / scalb(b, 1020), scalb(a / b, -1020));
    EXPECT_EQ(scalb(a, 1020) / scalb(b, 1010), scalb(a / b, 10));
    EXPECT_EQ(Multiply(a.head, 0x1p1000), scalb(a.head, 1000));
  }
}

TEST(DoubleDouble, overflowsToInfinityWithoutATail) {
  const doubledouble largest = Limits::max();
  const doubledouble infinity = Limits::infinity();
  EXPECT_TRUE(isfinite(largest) && normalize(largest) == largest);
  EXPECT_EQ(largest + 0x1p970, infinity);
  EXPECT_EQ(largest + 0x1p969, infinity);
  EXPECT_EQ(largest + largest, infinity);
  EXPECT_EQ(-largest - largest, -infinity);
  EXPECT_EQ(largest * 2, infinity);
  EXPECT_EQ(largest / 0.5, infinity);
  EXPECT_EQ(largest * (doubledouble(1) + 1e-20), infinity);
  EXPECT_EQ(largest + 1, largest);
  EXPECT_EQ(largest * 1, largest);
  EXPECT_EQ(largest / 1, largest);
  EXPECT_EQ(largest - largest, 0);
  EXPECT_EQ(scalb(largest, 1), infinity);
  EXPECT_EQ(infinity.tail, 0.0);
}

TEST(DoubleDouble, takesRoots) {
  EXPECT_EQ(sqrt(doubledouble(0)), 0);
  EXPECT_EQ(sqrt(doubledouble(6.25)), 2.5);
  EXPECT_TRUE(isnan(sqrt(doubledouble(-1))));
  EXPECT_TRUE(isnan(sqrt(doubledouble(NO_NUMBER))));
  EXPECT_EQ(sqrt(Limits::infinity()), Limits::infinity());
  const doubledouble root = scalb(sqrt(Limits::max()), -512);
  EXPECT_LT(fabs(sqr(root) - scalb(Limits::max(), -1024)), doubledouble(1e-31));
  EXPECT_EQ(hypot(3, 4), 5);
  EXPECT_LT(fabs(hypot(3e200, -4e200) / 1e200 - 5), doubledouble(1e-14));
  EXPECT_EQ(hypot(scalb(3, 1000), scalb(4, 1000)), scalb(5, 1000));
  EXPECT_EQ(hypot(scalb(3, -1000), scalb(-4, -1000)), scalb(5, -1000));
  EXPECT_EQ(hypot(0, 0), 0);
  EXPECT_EQ(hypot(0, -7), 7);
  EXPECT_EQ(hypot(NO_NUMBER, -INFINITE), INFINITE);
  EXPECT_TRUE(isnan(hypot(NO_NUMBER, 1)));
}

TEST(DoubleDouble, roundsToIntegersByBothParts) {
  struct Row {
    doubledouble value, down, up;
  };
  const Row rows[] = {{2.5, 2, 3},
                      {-2.5, -3, -2},
                      {{3.0, 1e-20}, 3, 4},
                      {{3.0, -1e-20}, 2, 3},
                      {{-3.0, -1e-20}, -4, -3},
                      {{0x1p60, 0.25}, 0x1p60, doubledouble(0x1p60, 1)},
                      {{0x1p60, -0.25}, doubledouble(0x1p60, -1), 0x1p60},
                      {{0x1p100, -0.25}, doubledouble(0x1p100, -1), 0x1p100},
                      {0, 0, 0},
                      {INFINITE, INFINITE, INFINITE}};
  for (const Row& row : rows) {
    EXPECT_EQ(floor(row.value), row.down) << row.value;
    EXPECT_EQ(ceil(row.value), row.up) << row.value;
  }
  EXPECT_TRUE(isnan(floor(doubledouble(NO_NUMBER))));
  EXPECT_EQ(fabs(doubledouble(-2.0, 1e-20)), doubledouble(2.0, -1e-20));
}

TEST(DoubleDouble, raisesToPowers) {
  EXPECT_EQ(pow(3, 40), doubledouble(std::uint64_t{12157665459056928801u}));
  EXPECT_EQ(pow(2, -1074), 0x1p-1074);
  EXPECT_EQ(pow(-0.5, 3), -0.125);
  EXPECT_EQ(pow(0.5, INT_MIN), INFINITE);
  EXPECT_EQ(pow(2, INT_MIN), 0);
  EXPECT_EQ(pow(1, INT_MIN), 1);
  EXPECT_EQ(pow(NO_NUMBER, 0), 1);
  EXPECT_EQ(pow(0, -1), INFINITE);
  EXPECT_LT(fabs(pow(doubledouble("1.1"), 100) * pow(doubledouble("1.1"), -100) - 1),
            doubledouble(1e-29));
}

TEST(DoubleDouble, scalesAndTakesApart) {
  const doubledouble x("-1234567.891011121314151617181920");
  const auto [m, e] = partition(x);
  EXPECT_EQ(e, 21);
  EXPECT_LT(fabs(m), 1);
  EXPECT_GE(fabs(m).head, 0.5);
  EXPECT_EQ(scalb(m, e), x);
  EXPECT_EQ(scalb(scalb(x, 900), -900), x);
  EXPECT_EQ(partition(0), (std::pair<doubledouble, long>(0, 0)));
  EXPECT_EQ(partition(INFINITE), (std::pair<doubledouble, long>(INFINITE, 0)));
  EXPECT_EQ(partition(0x1p-1074), (std::pair<doubledouble, long>(0.5, -1073)));
  EXPECT_EQ(scalb(1, LONG_MAX), INFINITE);
  EXPECT_EQ(scalb(1, LONG_MIN), 0);
  // A tail just under 1 is in [0.5, 1) with its head, which is 1.
  EXPECT_EQ(partition({1.0, -1e-20}).second, 1);
}

TEST(DoubleDouble, knowsItsLimitsAndHashes) {
  EXPECT_NE(doubledouble(1) + Limits::epsilon(), 1);
  EXPECT_EQ(Limits::max() + Limits::lowest(), 0);
  EXPECT_EQ(Limits::min(), scalb(1, Limits::min_exponent - 1));
  EXPECT_EQ(Limits::max_digits10, static_cast<int>(std::ceil(Limits::digits * 0.30103)) + 1);
  std::unordered_set<doubledouble> seen = {0.0, doubledouble(1.0, 1e-20),
                                           doubledouble(1.0, -1e-20)};
  EXPECT_TRUE(seen.contains(-0.0));
  EXPECT_TRUE(seen.contains(doubledouble(1) + 1e-20));
  EXPECT_FALSE(seen.contains(1.0));
  EXPECT_EQ(seen.size(), 3u);
}

#if defined(__GNUC__) && defined(__x86_64__)
TEST(DoubleDouble, readsTheControlWordOfTheX87Unit) {
  unsigned short before = 0;
  __asm__ volatile("fnstcw %0" : "=m"(before));
  const auto set = [](unsigned int precision) {
    const auto word = static_cast<unsigned short>(0x7Fu | precision);
    __asm__ volatile("fldcw %0" : : "m"(word));
  };
  set(0x200);
  EXPECT_TRUE(doubledouble::CheckPrecision());
  set(0x300);
  EXPECT_FALSE(doubledouble::CheckPrecision());
  set(0x000);
  EXPECT_FALSE(doubledouble::CheckPrecision());
  __asm__ volatile("fldcw %0" : : "m"(before));
}
#endif

}  // namespace
}  // namespace shr
