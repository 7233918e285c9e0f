// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the fourth component in every operation of `Vec4`; points for records and their tag.

#include "shared/geometry/Vec4.h"

#include <gtest/gtest.h>

#include <sstream>

#include "shared/geometry/Points.h"

namespace shr {
namespace {

constexpr float FLOATS[] = {1.0f, 2.0f, 3.0f, 4.0f};

static_assert(Vec4d(FLOATS) == Vec4d(Vec3d(1.0, 2.0, 3.0), 4.0) && Vec4d() == Vec4d::ZERO);
static_assert(Vec4d(Vec4f(FLOATS)) * 2.0 - Vec4d::ONE == Vec4d(1.0, 3.0, 5.0, 7.0));
static_assert(Vec4d(FLOATS).Dot(Vec4d(FLOATS)) == 30.0 && Vec4f::UNIT_Y.y == 1.0f);
static_assert(Vec4d(0.0, 0.0, 0.0, 3.0).Equals(Vec4d(4.0, 0.0, 0.0, 0.0), 5.0));
static_assert(!Vec4d(0.0, 0.0, 0.0, 3.0).Equals(Vec4d(4.0, 0.0, 0.0, 0.0), 4.999));
static_assert(sizeof(Point2<int>) == 8 && sizeof(Point3<double>) == 24);
static_assert(sizeof(Point4<float>) == 16 &&
              std::is_same_v<Point4<float>, Point4<float, unsigned>>);
static_assert(RPoint().X() == 0.0 && RPoint(1.0, 2.0) == Point2<double>(1.0, 2.0));

TEST(Vec4, lengthAndToleranceSeeEveryComponent) {
  Vec4d vector(1.0, -2.0, 2.0, 4.0);
  EXPECT_EQ(vector.Length(), 5.0);
  EXPECT_TRUE(vector.Normalize());
  EXPECT_EQ(vector, Vec4d(0.2, -0.4, 0.4, 0.8));
  Vec4f small(0.0f, 0.0f, 0.0f, FLT_EPSILON);
  EXPECT_FALSE(small.Normalize());
  EXPECT_TRUE(Vec4d(0.0, 0.0, 0.0, FLT_EPSILON).Normalize());
  const auto [x, y, z, w] = vector;
  EXPECT_EQ(w, 0.8);
  EXPECT_EQ(vector[3], w);
  EXPECT_EQ(Vec4d(x, y, z, w), vector);
}

TEST(Points, arithmeticLeavesTheTagAlone) {
  Point4<double> point(1.0, 2.0, 3.0, 17);
  point += point;
  point *= 2.0;
  point -= Point4<double>(0.0, 0.0, 12.0, 99);
  EXPECT_EQ(point, (Point4<double>(4.0, 8.0, 0.0, 17)));
  EXPECT_NE(point, (Point4<double>(4.0, 8.0, 0.0, 18)));
  EXPECT_EQ(point.W(), 17u);
  point.Z(5.0);
  EXPECT_EQ(point.Z(), 5.0);
  Point3<int> integers(7, 8, 9);
  integers /= 2;
  EXPECT_EQ(integers, Point3<int>(3, 4, 4));
  RPoints points(2);
  points[1].Y(3.0);
  const RPoints copy = points;
  points[1].X(1.0);
  EXPECT_EQ(copy[1], RPoint(0.0, 3.0));
  std::ostringstream text;
  text << points[1];
  EXPECT_EQ(text.str(), "(1, 3)");
}

}  // namespace
}  // namespace shr
