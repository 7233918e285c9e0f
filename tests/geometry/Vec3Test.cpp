// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what is known while compiling; conversions; the vector product and its laws; the tolerance
// of normalising per precision; standard-library manners.

#include "shared/geometry/Vec3.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <sstream>
#include <unordered_set>

namespace shr {
namespace {

constexpr double DOUBLES[] = {1.5, 2.5, 9.0};

static_assert(std::is_trivially_copyable_v<Vec3d> && std::is_standard_layout_v<Vec3d>);
static_assert(std::is_convertible_v<Vec3f, Vec3d> && !std::is_convertible_v<Vec3d, Vec3f>);
static_assert(Vec3d() == Vec3d::ZERO && Vec3f(DOUBLES) == Vec3f(1.5f, 2.5f, 9.0f));
static_assert(Vec3d(Vec2d(1.0, 2.0), 3.0) == Vec3d(1.0, 2.0, 3.0));
static_assert(-Vec3i(1, -2, 3) * 2 == Vec3i(-2, 4, -6));
static_assert(Vec3d(1.0, 2.0, 3.0).Dot(Vec3d(4.0, 5.0, 6.0)) == 32.0);
static_assert(Vec3d::UNIT_X.Cross(Vec3d::UNIT_Y) == Vec3d::UNIT_Z);
static_assert(Vec3i(1000000, 1, 0).Cross(Vec3i(1000000, 1, 0)) == Vec3i::ZERO);
static_assert(Vec3i(0, 0, 9) < Vec3i(0, 1, 0) && Vec3i(0, 1, 2) < Vec3i(0, 1, 3) &&
              !(Vec3i::ONE < Vec3i::ONE));

TEST(Vec3, vectorProductIsPerpendicularAndAlternates) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> component(-30000, 30000);
  for (int i = 0; i < 200; ++i) {
    const Vec3i a(component(random), component(random), component(random));
    const Vec3i b(component(random), component(random), component(random));
    const Vec3d c = Vec3d(a).Cross(b);
    ASSERT_EQ(c.Dot(a), 0.0) << a << b;
    ASSERT_EQ(c.Dot(b), 0.0) << a << b;
    ASSERT_EQ(c, -Vec3d(b).Cross(a)) << a << b;
    // Lagrange: |a x b|^2 + (a.b)^2 = |a|^2 |b|^2.
    const double dot = Vec3d(a).Dot(b);
    const double lengths = Vec3d(a).LengthSquared() * Vec3d(b).LengthSquared();
    ASSERT_NEAR((c.LengthSquared() + dot * dot) / lengths, 1.0, 1e-14) << a << b;
  }
}

static_assert((Vec3i(1, 2, 3) <=> Vec3i(1, 2, 2)) > 0 && Vec3i(0, 9, 9) <= Vec3i(1, 0, 0));
static_assert(!Vec3d(0.0, 0.0, NAN).IsFinite() && Vec3f::ONE.IsFinite());

TEST(Vec3, productsOfIntegersHoldWhateverTheCoordinates) {
  constexpr int LOW = -2147483647 - 1;
  constexpr int HIGH = 2147483647;
  const double two62 = 2147483648.0 * 2147483648.0;
  EXPECT_EQ(Vec3i(LOW, LOW, LOW).LengthSquared(), 3.0 * two62);
  EXPECT_EQ(Vec3i(LOW, LOW, LOW).Dot(Vec3i(HIGH, HIGH, HIGH)), -3.0 * (two62 - 2147483648.0));
  EXPECT_EQ(Vec3i(LOW, 0, 0).Distance(Vec3i(HIGH, 0, 0)), 4294967295.0);
  EXPECT_DOUBLE_EQ(Vec3i(LOW, LOW, LOW).Distance(Vec3i(HIGH, HIGH, HIGH)),
                   4294967295.0 * std::sqrt(3.0));
  EXPECT_EQ(Vec3i(HIGH, LOW, 1).Dot(Vec3i(HIGH, HIGH - 1, -2)), -1.0);
}

TEST(Vec3, normalizingStopsAtTheToleranceOfItsPrecision) {
  Vec3f small(1e-9f, 1e-9f, 1e-9f);
  EXPECT_FALSE(small.Normalize());
  EXPECT_EQ(small, Vec3f(1e-9f, 1e-9f, 1e-9f));
  Vec3f atTolerance(0.0f, FLT_EPSILON, 0.0f);
  EXPECT_FALSE(atTolerance.Normalize());
  Vec3d same(1e-9, 1e-9, 1e-9);
  EXPECT_TRUE(same.Normalize());
  EXPECT_NEAR(same.Length(), 1.0, 1e-15);
  EXPECT_TRUE(std::isnan(Vec3d().Normalized().z));
  EXPECT_EQ(Vec3d(0.0, 0.0, -2.0).Normalized(), -Vec3d::UNIT_Z);
}

TEST(Vec3, worksAsArrayTupleKeyAndText) {
  Vec3d vector(Vec2d(1.0, 2.0), 3.0);
  vector[2] = 5.0;
  const auto [x, y, z] = vector;
  EXPECT_EQ(z, 5.0);
  EXPECT_EQ(Vec3d(x, y, z), vector);
  std::unordered_set<Vec3i> hashed;
  for (int i = 0; i < 1000; ++i) hashed.insert(Vec3i(i % 10, i / 10 % 10, i / 100));
  EXPECT_EQ(hashed.size(), 1000u);
  std::set<std::size_t> hashes;
  for (const Vec3i& v : hashed) hashes.insert(std::hash<Vec3i>()(v));
  EXPECT_EQ(hashes.size(), 1000u);
  std::ostringstream text;
  text << Vec3f(0.5f, -2.0f, 3.0f);
  EXPECT_EQ(text.str(), "(0.5, -2, 3)");
}

}  // namespace
}  // namespace shr
