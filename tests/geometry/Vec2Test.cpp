// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what is known while compiling; conversions that must not happen unasked; lengths and the
// tolerance of normalising per precision; integer products beyond 32 bits; standard-library
// manners.

#include "shared/geometry/Vec2.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <type_traits>
#include <unordered_set>

#include "shared/geometry/MathUtility.h"
#include "shared/platform/WindowsTypes.h"

namespace shr {
namespace {

constexpr float FLOATS[] = {1.5f, 2.5f, 9.0f};

static_assert(std::is_trivially_copyable_v<Vec2d> && std::is_standard_layout_v<Vec2d>);
static_assert(std::is_convertible_v<Vec2f, Vec2d> && std::is_convertible_v<Vec2i, Vec2d>);
static_assert(!std::is_convertible_v<Vec2d, Vec2f> && std::is_constructible_v<Vec2f, Vec2d>);
static_assert(!std::is_convertible_v<Vec2i, Vec2f> && !std::is_convertible_v<Vec2d, Vec2i>);
static_assert(std::is_convertible_v<POINT, Vec2i> && Vec2i(POINT{3, -4}) == Vec2i(3, -4));
static_assert(!std::is_constructible_v<Vec2f, POINT>);
static_assert(Vec2d() == Vec2d::ZERO && Vec2d(FLOATS) == Vec2d(1.5, 2.5));
static_assert(-Vec2d(1.0, -2.0) == Vec2d(-1.0, 2.0));
static_assert((Vec2d(1.0, 2.0) + Vec2f(0.5f, 0.5f)) * 2.0 == Vec2d(3.0, 5.0));
static_assert(2 * Vec2i(1, 2) == Vec2i(2, 4) && Vec2i(7, -7) / 2 == Vec2i(3, -3));
static_assert(Vec2d(6.0, 8.0) / Vec2d(2.0, 4.0) - Vec2d::ONE == Vec2d(2.0, 1.0));
static_assert(1.0 + Vec2d::UNIT_X - 1.0 == Vec2d::UNIT_X);
static_assert(Vec2d(1.0, 2.0).Lerp(Vec2d(3.0, -2.0), 0.25) == Vec2d(1.5, 1.0));
static_assert(Vec2d::UNIT_X.Dot(Vec2d::UNIT_Y) == 0.0);
static_assert(Vec2d(1.0, 2.0).DistanceSquared(Vec2d(4.0, 6.0)) == 25.0);
static_assert(Vec2i(0, 5) < Vec2i(1, 0) && Vec2i(1, 0) < Vec2i(1, 1) && !(Vec2i::ONE < Vec2i::ONE));

TEST(Vec2, comparisonIsExactAndANumberlessVectorEqualsNothing) {
  EXPECT_NE(Vec2d(0.1 + 0.2, 0.0), Vec2d(0.3, 0.0));
  EXPECT_EQ(Vec2d(0.0, -0.0), Vec2d(-0.0, 0.0));
  const Vec2d numberless(NAN, 0.0);
  EXPECT_FALSE(numberless == numberless);
}

static_assert((Vec2i(0, 5) <=> Vec2i(0, 4)) > 0 && Vec2i(-1, 9) <= Vec2i(0, -9));
static_assert(Vec2d(3.0, 1.0).Cross(Vec2d(2.0, 4.0)) == 10.0);
static_assert(Vec2d::ONE.IsFinite() && !Vec2d(1.0, -INFINITY).IsFinite() && Vec2i().IsFinite());

TEST(Vec2, productsOfIntegersHoldWhateverTheCoordinates) {
  constexpr int LOW = -2147483647 - 1;
  constexpr int HIGH = 2147483647;
  const double two31 = 2147483648.0;
  const double two62 = two31 * two31;
  EXPECT_EQ(Vec2i(LOW, LOW).LengthSquared(), 2.0 * two62);
  EXPECT_EQ(Vec2i(LOW, LOW).Dot(Vec2i(HIGH, HIGH)), -2.0 * two31 * (two31 - 1.0));
  EXPECT_EQ(Vec2i(LOW, 0).Distance(Vec2i(HIGH, 0)), 4294967295.0);
  EXPECT_EQ(Vec2i(LOW, LOW).DistanceSquared(Vec2i(HIGH, HIGH)), 2.0 * 4294967295.0 * 4294967295.0);
  EXPECT_EQ(Vec2i(HIGH, LOW).Cross(Vec2i(LOW, LOW)), -two31 * (two31 - 1.0) - two62);
  // Rounded once: the last units decide the sign.
  EXPECT_EQ(Vec2i(HIGH, LOW).Dot(Vec2i(HIGH, HIGH - 1)), 1.0);
  EXPECT_EQ(Vec2i(94906267, 1).LengthSquared(), 9007199515875290.0);
  EXPECT_EQ(Vec2i(3, -4).Dot(Vec2i(-5, 6)), -39.0);
}

TEST(Vec2, lengthsOfIntegersDoNotOverflow) {
  const Vec2i distant(2000000000, -2000000000);
  EXPECT_EQ(distant.LengthSquared(), 8000000000000000000);
  EXPECT_DOUBLE_EQ(distant.Length(), 2e9 * std::sqrt(2.0));
  EXPECT_DOUBLE_EQ(Vec2i(3, 0).Distance(Vec2i(0, 4)), 5.0);
}

template <class Vector, class Scalar>
void ExpectNormalize(const char* name, Scalar x, Scalar y, bool expected) {
  Vector vector(x, y);
  const Vector before = vector;
  ASSERT_EQ(vector.Normalize(), expected) << name;
  if (expected) {
    EXPECT_NEAR(vector.Length(), 1.0, sizeof(Scalar) == 4 ? 1e-6 : 1e-15) << name;
    EXPECT_NEAR(vector.x * before.y, vector.y * before.x, 1e-12) << name;
  } else {
    EXPECT_EQ(vector[0], before[0]) << name;
  }
}

TEST(Vec2, normalizingStopsAtTheToleranceOfDoubleInBothPrecisions) {
  ExpectNormalize<Vec2d>("ordinary", 3.0, -4.0, true);
  ExpectNormalize<Vec2d>("zero", 0.0, 0.0, false);
  ExpectNormalize<Vec2d>("at the tolerance", DBL_EPSILON, 0.0, false);
  ExpectNormalize<Vec2d>("above the tolerance", 2.0 * DBL_EPSILON, 0.0, true);
  ExpectNormalize<Vec2d>("overflowing", 1e200, 1e200, false);
  ExpectNormalize<Vec2f>("small float", 1e-9f, 1e-9f, true);
  ExpectNormalize<Vec2f>("large float", 3e38f, 3e38f, true);
  ExpectNormalize<Vec2f>("tiny float", 1e-17f, 0.0f, false);
  Vec2d numberless(NAN, 1.0);
  EXPECT_FALSE(numberless.Normalize());
  EXPECT_EQ(numberless.y, 1.0);
  EXPECT_TRUE(std::isnan(Vec2d().Normalized().x));
  EXPECT_EQ(Vec2d(0.0, 2.0).Normalized(), Vec2d::UNIT_Y);
}

TEST(Vec2, worksAsArrayTupleKeyAndText) {
  Vec2d vector(1.0, 2.0);
  vector[1] = 5.0;
  double* components = vector;
  components[0] = 4.0;
  const auto [x, y] = vector;
  EXPECT_EQ(x, 4.0);
  EXPECT_EQ(y, 5.0);
  const std::unordered_set<Vec2i> hashed = {{1, 2}, {2, 1}, {1, 2}, {-1, 2}};
  EXPECT_EQ(hashed.size(), 3u);
  EXPECT_EQ(std::set<Vec2i>(hashed.begin(), hashed.end()).begin()->x, -1);
  std::wostringstream wide;
  wide << Vec2d(0.5, -2.0);
  EXPECT_EQ(wide.str(), L"(0.5, -2)");
}

}  // namespace
}  // namespace shr
