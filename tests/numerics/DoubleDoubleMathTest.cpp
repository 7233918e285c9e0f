// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: values that are exact, signs and special values as those of doubles have them, ends of the
// range, laws that tie the functions to each other. How near results are to the true ones:
// DoubleDoubleGoldenTest.cpp and, where there is MPFR, DoubleDoubleMpfrTest.cpp.

#include "shared/numerics/doubledouble/DoubleDoubleMath.h"

#include <gtest/gtest.h>

#include <random>

namespace shr {
namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

TEST(DoubleDoubleMath, isExactWhereItCanBe) {
  EXPECT_EQ(exp(0), 1);
  EXPECT_EQ(log(1), 0);
  EXPECT_EQ(sin(0), 0);
  EXPECT_EQ(cos(0), 1);
  EXPECT_EQ(exp(doubledouble(1e-25)), doubledouble(1.0, 1e-25));
  EXPECT_EQ(log(doubledouble(1.0, 1e-170)), 1e-170);
  EXPECT_EQ(sin(doubledouble(1e-170)), 1e-170);
  EXPECT_EQ(atan2(1e-170, 1), 1e-170);
}

TEST(DoubleDoubleMath, hasTheSpecialValuesOfDoubles) {
  EXPECT_EQ(exp(INFINITE), INFINITE);
  EXPECT_EQ(exp(-INFINITE), 0);
  EXPECT_EQ(exp(710), INFINITE);
  EXPECT_TRUE(isfinite(exp(709.78)));
  EXPECT_EQ(exp(-1e10), 0);
  EXPECT_EQ(exp(-745), 0x1p-1074);
  EXPECT_EQ(log(0), -INFINITE);
  EXPECT_EQ(log(INFINITE), INFINITE);
  for (const doubledouble& none : {exp(NO_NUMBER), log(-1), log(NO_NUMBER), sin(INFINITE),
                                   cos(-INFINITE), sin(NO_NUMBER), atan2(1, NO_NUMBER)}) {
    EXPECT_TRUE(isnan(none));
  }
  const double values[] = {0.0, -0.0, 1.0, -1.0, INFINITE, -INFINITE, 1e300, -1e-300};
  for (const double y : values) {
    for (const double x : values) {
      const doubledouble angle = atan2(y, x);
      const double expected = std::atan2(y, x);
      EXPECT_LE(std::fabs(angle.head - expected), std::fabs(expected) * 1e-15) << y << " " << x;
      EXPECT_EQ(std::signbit(angle.head), std::signbit(expected)) << y << " " << x;
    }
  }
}

TEST(DoubleDoubleMath, obeysItsLaws) {
  constexpr double BOUND = 1e-30;
  std::mt19937_64 random(9);
  std::uniform_real_distribution<double> uniform(-300, 300);
  for (int i = 0; i < 300; ++i) {
    const doubledouble x = doubledouble(uniform(random)) + uniform(random) * 1e-18;
    const doubledouble y = doubledouble(uniform(random)) + uniform(random) * 1e-18;
    EXPECT_LE(fabs(log(exp(x)) - x), BOUND * (1 + fabs(x)));
    EXPECT_LE(fabs(exp(x) * exp(-x) - 1), BOUND * (1 + fabs(x)));
    EXPECT_LE(fabs(sqr(sin(x)) + sqr(cos(x)) - 1), BOUND);
    const doubledouble distance = hypot(x, y);
    const doubledouble angle = atan2(y, x);
    EXPECT_LE(fabs(distance * cos(angle) - x) + fabs(distance * sin(angle) - y), BOUND * distance);
    EXPECT_EQ(sin(-x), -sin(x));
    EXPECT_EQ(cos(-x), cos(x));
    EXPECT_EQ(atan2(-y, x), -angle);
  }
}

}  // namespace
}  // namespace shr
