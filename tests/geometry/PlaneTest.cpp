// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the three ways to make a plane; sides; lines; transformed planes against transformed
// points, projective matrices and reflections included; degenerate input. Also the pixel geometry
// of rectangles and segments.

#include "shared/geometry/Plane.h"

#include <gtest/gtest.h>

#include <random>

#include "shared/geometry/Line3d.h"
#include "shared/geometry/RectUtility.h"
#include "shared/platform/WindowsTypes.h"
#include "tests/geometry/RandomMatrices.h"

namespace shr {
namespace {

static_assert(Plane().GetNormal() == Vec3d::ZERO && Plane().GetDistanceFromOrigin() == 0.0);

TEST(Plane, containsThePointsItWasMadeOf) {
  const Plane plane(Vec3d(1.0, 0.0, 3.0), Vec3d(2.0, 0.0, 3.0), Vec3d(1.0, 5.0, 3.0));
  EXPECT_EQ(plane.GetNormal(), Vec3d::UNIT_Z);
  EXPECT_EQ(plane.GetDistanceFromOrigin(), 3.0);
  EXPECT_EQ(plane, Plane(Vec3d(0.0, 0.0, 1e-200), 3.0));
  EXPECT_EQ(plane, Plane(Vec3d(0.0, 0.0, 1e200), Vec3d(7.0, 7.0, 3.0)));
  EXPECT_NE(plane, Plane(-Vec3d::UNIT_Z, 3.0));
  EXPECT_EQ(plane.GetDistance(Vec3d(9.0, 9.0, 1.0)), -2.0);
  EXPECT_TRUE(plane.IsInHalfSpace(Vec3d(0.0, 0.0, 3.0)));
  EXPECT_FALSE(plane.IsInHalfSpace(Vec3d(0.0, 0.0, 2.9)));
  Plane moved = plane;
  moved.Offset(-5.0);
  EXPECT_EQ(moved.GetDistance(Vec3d::ZERO), 2.0);
  const Plane tiny(Vec3d::ZERO, Vec3d(1e-160, 0.0, 0.0), Vec3d(0.0, 1e-170, 0.0));
  EXPECT_EQ(tiny.GetNormal(), Vec3d::UNIT_Z);
  EXPECT_EQ(Plane(Vec3d::ZERO, Vec3d::ONE, Vec3d::ONE * 2.0).GetNormal(), Vec3d::ZERO);
}

TEST(Plane, meetsLinesThatAreNotParallel) {
  const Plane plane(Vec3d(1.0, 2.0, 2.0), 3.0);
  Vec3d point;
  ASSERT_TRUE(plane.Intersect(Line3d(Vec3d(9.0, 0.0, 0.0), Vec3d(0.0, 0.0, 9.0)), point));
  EXPECT_NEAR(plane.GetDistance(point), 0.0, 1e-14);
  EXPECT_NEAR(point.x + point.z, 9.0, 1e-14);
  EXPECT_FALSE(plane.Intersect(Line3d(Vec3d::ZERO, Vec3d(0.0, 1.0, -1.0)), point));
}

TEST(Plane, imageHoldsTheImagesOfItsPoints) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> number(-4.0, 4.0);
  for (int i = 0; i < 400; ++i) {
    const Mat4d m = RandomOfType<Mat4d>(1 + i % 4, random);
    Vec3d corners[4];
    for (Vec3d& corner : corners) corner.Set(number(random), number(random), number(random));
    const Plane plane(corners[0], corners[1], corners[2]);
    Plane image = plane;
    ASSERT_TRUE(image.Transform(m)) << m;
    for (int k = 0; k < 3; ++k) {
      const Vec3d moved = corners[k] * m;
      ASSERT_NEAR(image.GetDistance(moved) / (1.0 + moved.Length()), 0.0, 1e-10) << m;
    }
    if (m.GetType() == Mat4d::TYPE_COMPLEX) continue;
    ASSERT_EQ(image.IsInHalfSpace(corners[3] * m), plane.IsInHalfSpace(corners[3])) << m;
  }
  Plane kept(Vec3d::UNIT_X, 1.0);
  EXPECT_FALSE(kept.Transform(Mat4d::ZERO));
  EXPECT_EQ(kept, Plane(Vec3d::UNIT_X, 1.0));
}

TEST(RectUtility, cornersMakeTheRectangleAgain) {
  const RECT rect{30, 2, 3, 40};
  POINT two[2];
  POINT four[4];
  RectToPoints(rect, two);
  RectToPoints(rect, four);
  EXPECT_EQ(Vec2i(two[1]), Vec2i(3, 40));
  EXPECT_EQ(Vec2i(four[1]), Vec2i(3, 2));
  EXPECT_EQ(Vec2i(four[3]), Vec2i(30, 40));
  for (const bool isTwo : {true, false}) {
    RECT again{};
    isTwo ? RectFromPoints(two, again) : RectFromPoints(four, again);
    EXPECT_EQ(again.left, 30);
    EXPECT_EQ(again.top, 2);
    EXPECT_EQ(again.right, 3);
    EXPECT_EQ(again.bottom, 40);
  }
}

TEST(RectUtility, distanceFromASegmentEndsAtItsEnds) {
  constexpr LONG LIMIT = 2147483647;
  const struct {
    const char* name;
    POINT point;
    POINT begin;
    POINT end;
    double expected;
  } rows[] = {
      {"beside", {5, 3}, {0, 0}, {10, 0}, 9.0},
      {"slanting", {0, 10}, {0, 0}, {10, 10}, 50.0},
      {"before", {-3, 4}, {0, 0}, {10, 0}, 25.0},
      {"beyond", {13, -4}, {0, 0}, {10, 0}, 25.0},
      {"one point", {3, 4}, {0, 0}, {0, 0}, 25.0},
      {"on it", {5, 5}, {0, 0}, {10, 10}, 0.0},
      {"far", {LIMIT, 0}, {-LIMIT, 0}, {-LIMIT, 10}, 4.0 * LIMIT * LIMIT},
  };
  for (const auto& row : rows) {
    EXPECT_DOUBLE_EQ(PointLineSegDistSq(row.point, row.begin, row.end), row.expected) << row.name;
    EXPECT_DOUBLE_EQ(PointLineSegDistSq(row.point, row.end, row.begin), row.expected) << row.name;
  }
}

}  // namespace
}  // namespace shr
