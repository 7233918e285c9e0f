// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: points a few units in the last place off a diagonal, where plain arithmetic gives wrong
// signs (after L. Kettner, K. Mehlhorn, S. Pion, S. Schirra and C. Yap, "Classroom Examples of
// Robustness Problems in Geometric Computations", 2008), at sizes from tiny to huge; the laws of
// exchange on random points; numbers without sense.

#include "shared/geometry/Orientation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "shared/geometry/MathUtility.h"

namespace shr {
namespace {

constexpr double ULP = 0x1p-53;

int Sign(double value) {
  return (value > 0.0) - (value < 0.0);
}

TEST(OrientationSign, isExactBesideADiagonal) {
  for (const int scale : {0, -1000, -540, -300, 300, 500, 1018}) {
    const Vec2d q(std::ldexp(12.0, scale), std::ldexp(12.0, scale));
    const Vec2d r(std::ldexp(24.0, scale), std::ldexp(24.0, scale));
    for (int i = 0; i < 64; ++i) {
      for (int j = 0; j < 64; ++j) {
        const Vec2d p(std::ldexp(0.5 + i * ULP, scale), std::ldexp(0.5 + j * ULP, scale));
        // Above the diagonal is to the left of the way from q to r.
        EXPECT_EQ(OrientationSign(q, r, p), Sign(p.y - p.x)) << scale << ": " << i << ", " << j;
      }
    }
  }
}

TEST(OrientationSign, keepsTheLawsOfExchange) {
  std::mt19937_64 random(7);
  std::uniform_int_distribution<int> small(-8, 8);
  std::uniform_real_distribution<double> scale(0.1, 1e9);
  for (int i = 0; i < 5000; ++i) {
    const double unit = scale(random);
    const auto point = [&] { return Vec2d(small(random) * unit, small(random) / 3.0); };
    const Vec2d a = point();
    const Vec2d b = point();
    const Vec2d c = point();
    const int sign = OrientationSign(a, b, c);
    EXPECT_EQ(OrientationSign(b, c, a), sign) << a << b << c;
    EXPECT_EQ(OrientationSign(b, a, c), -sign) << a << b << c;
    EXPECT_EQ(OrientationSign(a, a, c), 0) << a << c;
  }
}

TEST(OrientationSign, isZeroForNumbersWithoutSense) {
  const Vec2d a(0.0, 0.0);
  const Vec2d b(1.0, 0.0);
  for (const double bad : {INFINITY, NEG_INFINITY, NAN}) {
    EXPECT_EQ(OrientationSign(a, b, Vec2d(bad, 1.0)), 0);
    EXPECT_EQ(OrientationSign(a, Vec2d(1.0, bad), b), 0);
  }
  EXPECT_EQ(OrientationSign(a, b, Vec2d(DBL_MAX, DBL_MAX)), 1);
}

}  // namespace
}  // namespace shr
