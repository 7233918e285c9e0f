// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the constants named like macros when the library's header comes first (the other order is
// in MathUtilityLateTest.cpp); constants against each other; steps between neighbours, zeros,
// infinities and NaN in both precisions, and against steps made one by one.

#include "shared/geometry/MathUtility.h"
// The order is the case.
#include <gtest/gtest.h>
#include <math.h>

#include <cmath>
#include <random>

namespace {

static_assert(shr::INFINITY > DBL_MAX && ::INFINITY == shr::INFINITY);
static_assert(shr::NAN != shr::NAN);

using namespace shr;

TEST(MathUtility, namesOfMacrosAreConstantsWhenTheHeaderComesFirst) {
  EXPECT_TRUE(std::isinf(INFINITY));
  EXPECT_TRUE(std::isnan(NAN));
  EXPECT_EQ(-INFINITY, NEG_INFINITY);
}

TEST(MathUtility, constantsAgreeWithEachOtherAndWithFunctions) {
  const struct {
    const char* name;
    double value;
    double expected;
  } rows[] = {
      {"PI", PI, std::acos(-1.0)},
      {"THREE_PI", THREE_PI, 3.0 * PI},
      {"THIRD_PI", THIRD_PI, PI / 3.0},
      {"PI_INV", PI_INV, 1.0 / PI},
      {"TWO_PI_INV", TWO_PI_INV, 1.0 / TWO_PI},
      {"SQRT_PI", SQRT_PI, std::sqrt(PI)},
      {"SQRT_PI_INV", SQRT_PI_INV, 1.0 / std::sqrt(PI)},
      {"SQRT_TWO_PI", SQRT_TWO_PI, std::sqrt(TWO_PI)},
      {"SQRT_TWO_PI_INV", SQRT_TWO_PI_INV, 1.0 / std::sqrt(TWO_PI)},
      {"DEG_TO_RAD", DEG_TO_RAD, PI / 180.0},
      {"RAD_TO_DEG", RAD_TO_DEG, 180.0 / PI},
      {"EULER_E", EULER_E, std::exp(1.0)},
      {"GOLDEN_RATIO", GOLDEN_RATIO, (1.0 + std::sqrt(5.0)) / 2.0},
      {"LN_TWO", LN_TWO, std::log(2.0)},
      {"LN_TEN", LN_TEN, std::log(10.0)},
      {"EPSILON", EPSILON, 2.220446049250313e-16},
      {"SUKOSHI", SUKOSHI, 1.1754943508222875e-38},
  };
  for (const auto& row : rows) EXPECT_DOUBLE_EQ(row.value, row.expected) << row.name;
}

TEST(AlmostEqual, countsStepsBetweenNumbers) {
  const double smallest = std::nextafter(0.0, 1.0);
  const struct {
    const char* name;
    double a;
    double b;
    int steps;  // -1: never equal
  } rows[] = {
      {"same", 1.0, 1.0, 0},
      {"next above one", 1.0, 1.0 + DBL_EPSILON, 1},
      {"next below one", 1.0, 1.0 - DBL_EPSILON / 2.0, 1},
      {"the two zeros", 0.0, -0.0, 1},
      {"across zero", smallest, -smallest, 3},
      {"negative neighbours", -2.0, std::nextafter(-2.0, 0.0), 1},
      {"largest and infinity", DBL_MAX, shr::INFINITY, 1},
      {"NaN", shr::NAN, shr::NAN, -1},
      {"NaN and number", 1.0, shr::NAN, -1},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(AlmostEqual(row.a, row.b, row.steps), row.steps >= 0) << row.name;
    EXPECT_EQ(AlmostEqual(row.b, row.a, row.steps), row.steps >= 0) << row.name;
    EXPECT_FALSE(AlmostEqual(row.a, row.b, row.steps - 1)) << row.name;
  }
  EXPECT_FALSE(AlmostEqual(NEG_INFINITY, shr::INFINITY, INT_MAX));
  EXPECT_FALSE(AlmostEqual(shr::NAN, 1.0, INT_MAX));
}

TEST(AlmostEqual, agreesWithStepsTakenOneByOne) {
  std::mt19937_64 random(20261121);
  std::uniform_real_distribution<float> exponent(-140.0f, 120.0f);
  for (int i = 0; i < 2000; ++i) {
    const float start =
        std::ldexp(random() % 2 == 0 ? 1.0f : -1.5f, static_cast<int>(exponent(random)));
    const int steps = static_cast<int>(random() % 6);
    float end = start;
    for (int step = 0; step < steps; ++step) end = std::nextafter(end, 1000.0f);
    EXPECT_TRUE(AlmostEqual(start, end, steps)) << start;
    EXPECT_EQ(AlmostEqual(start, end, steps - 1), start == end && steps > 0) << start;
  }
}

TEST(MathUtility, lengthOfThreeDoesNotOverflow) {
  EXPECT_EQ(shr::hypot(2.0, -3.0, 6.0), 7.0);
  EXPECT_EQ(shr::hypot(0.0, 0.0, -4.0), 4.0);
  EXPECT_DOUBLE_EQ(shr::hypot(2e300, 3e300, 6e300), 7e300);
  EXPECT_DOUBLE_EQ(shr::hypot(2e-300, 6e-300, 3e-300), 7e-300);
  EXPECT_TRUE(std::isnan(shr::hypot(0.0, 0.0, 0.0)));
}

static_assert(Normalize(15.0, 10.0, 20.0) == 0.5 && Normalize(5.0, 10.0, 20.0) == 0.0);
static_assert(Normalize(25.0, 10.0, 20.0) == 1.0 && Normalize(15.0, 20.0, 10.0) == 0.5);

TEST(MathUtility, everyValueLiesAtAnEndOfARangeWithoutExtent) {
  EXPECT_EQ(Normalize(3.0, 2.0, 2.0), 1.0);
  EXPECT_EQ(Normalize(1.0, 2.0, 2.0), 0.0);
  EXPECT_TRUE(std::isnan(Normalize(2.0, 2.0, 2.0)));
}

TEST(RoundSig, keepsTheDigitsAskedFor) {
  const struct {
    double value;
    int digits;
    double expected;
  } rows[] = {
      {123456.0, 3, 123000.0},
      {-0.00123456, 3, -0.00123},
      {999.9, 3, 1000.0},
      {0.5, 1, 0.5},
      {25.0, 1, 30.0},
      {1000.0, 1, 1000.0},
      {1.0 / 3.0, 15, 0.333333333333333},
      {1e300 / 7.0, 2, 1.4e299},
      {3e-310, 1, 3e-310},
      {123.0, 0, 123.0},
      {1.0 / 3.0, 16, 1.0 / 3.0},
      {0.0, 3, 0.0},
      {shr::NEG_INFINITY, 3, shr::NEG_INFINITY},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(AlmostEqual(RoundSig(row.value, row.digits), row.expected, 1)) << row.value;
  }
  EXPECT_EQ(RoundSig(1.2345, 3), 1.23);
  EXPECT_TRUE(std::isnan(RoundSig(shr::NAN, 3)));
}

TEST(RoundSig, errorIsHalfAUnitOfTheLastDigitAndRoundingTwiceChangesNothing) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> mantissa(1.0, 10.0);
  for (int i = 0; i < 2000; ++i) {
    const int digits = 1 + i % 15;
    const int exponent = i % 600 - 300;
    const double value = mantissa(random) * std::pow(10.0, exponent);
    const double rounded = RoundSig(value, digits);
    const double unit = std::pow(10.0, exponent - digits + 1);
    ASSERT_LE(std::abs(rounded - value), 0.5 * unit + 1e-15 * value) << value << " to " << digits;
    ASSERT_TRUE(AlmostEqual(RoundSig(rounded, digits), rounded, 4)) << value << " to " << digits;
  }
}

}  // namespace
