// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: arcs by their ends, through every quarter and across the beginning of the circle, the full
// ellipse; points that lie on the ellipse in equal steps of direction, the topmost and lowest ones
// exactly; refused arguments; both precisions.

#include "shared/viewing/ArcToCurve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "shared/geometry/MathUtility.h"

namespace shr {
namespace {

const Box2d ELLIPSE(-3.0, 1.0, 5.0, 5.0);  // center (1, 3), radii 4 and 2

Vec2d InDirection(double angle, double distance = 1.0) {
  return Vec2d(1.0 + distance * std::cos(angle), 3.0 + distance * std::sin(angle));
}

TEST(ArcToCurve, pointsLieOnTheEllipseInEqualStepsOfDirection) {
  for (int from = 0; from < 16; ++from) {
    for (int to = 0; to < 16; ++to) {
      const double first = 0.1 + from * PI / 8.0;
      const double last = 0.1 + to * PI / 8.0;
      const double sweep = last > first + 1e-9 ? last - first : last - first + TWO_PI;
      std::vector<Vec2d> points(24);
      const bool full = from == to;
      const Vec2d end = full ? InDirection(first) : InDirection(last, 50.0);
      ASSERT_TRUE(ArcToCurve(ELLIPSE, InDirection(first), end, points));
      for (std::size_t i = 0; i < points.size(); ++i) {
        const Vec2d offset = points[i] - Vec2d(1.0, 3.0);
        ASSERT_NEAR((offset / Vec2d(4.0, 2.0)).Length(), 1.0, 1e-12) << from << ' ' << to;
        const double angle = first + sweep * static_cast<double>(i) / 23.0;
        ASSERT_NEAR(std::remainder(std::atan2(offset.y, offset.x) - angle, TWO_PI), 0.0, 0.0051)
            << from << ' ' << to << ' ' << i;
      }
      ASSERT_TRUE(!full || points.front() == points.back()) << from;
    }
  }
}

TEST(ArcToCurve, verticalDirectionsGiveTheEndsOfTheAxis) {
  for (const double tilt : {-0.0049, 0.0, 0.0049}) {
    Vec2d points[5];
    Box2d bounds;
    const Vec2d start = InDirection(HALF_PI + tilt);
    ASSERT_TRUE(ArcToCurve(ELLIPSE, start, start, 5, points, &bounds));
    EXPECT_EQ(points[0], Vec2d(1.0, 5.0)) << tilt;
    EXPECT_EQ(points[2], Vec2d(1.0, 1.0)) << tilt;
    EXPECT_EQ(points[4], Vec2d(1.0, 5.0)) << tilt;
    EXPECT_LT(points[1].x, -2.9) << tilt;
    EXPECT_GT(points[3].x, 4.9) << tilt;
    Vec2d same[5];
    ASSERT_TRUE(ArcToCurve(Box2d(5.0, 5.0, -3.0, 1.0), start, start, same));
    EXPECT_TRUE(std::equal(points, points + 5, same)) << "corners count in any order";
    EXPECT_EQ(bounds.yMax(), 5.0);
    EXPECT_EQ(bounds.xMin(), points[1].x);
  }
}

TEST(ArcToCurve, theStepBesideTheTopIsAsToldForTallEllipses) {
  for (const double ratio : {1.0, 20.0, 200.0, 2000.0}) {
    const Box2d tall(-1.0, -ratio, 1.0, ratio);
    const Vec2d beside(std::sin(0.00501), std::cos(0.00501));
    const Vec2d within(std::sin(0.00499), std::cos(0.00499));
    Vec2d step[2];
    ASSERT_TRUE(ArcToCurve(tall, beside, within, step));
    const double x = 1.0 / std::hypot(1.0, 200.0 / ratio);
    EXPECT_NEAR(step[0].x, x, 0.01 * x) << ratio;
    EXPECT_NEAR(step[0].y, 200.0 * x, 2.0 * x) << ratio;
    EXPECT_EQ(step[1], Vec2d(0.0, ratio));
  }
}

TEST(ArcToCurve, whatHasNoArcIsRefused) {
  const Vec2d center(1.0, 3.0);
  const Vec2d east(5.0, 3.0);
  const double nan = NAN;
  Vec2d points[3] = {east, east, east};
  EXPECT_FALSE(ArcToCurve(ELLIPSE, east, east, 1, points));
  EXPECT_FALSE(ArcToCurve(ELLIPSE, east, east, -3, points));
  EXPECT_FALSE(ArcToCurve(ELLIPSE, east, east, 3, nullptr));
  EXPECT_FALSE(ArcToCurve(ELLIPSE, center, east, points));
  EXPECT_FALSE(ArcToCurve(ELLIPSE, east, center, points));
  EXPECT_FALSE(ArcToCurve(ELLIPSE, Vec2d(nan, 0.0), east, points));
  EXPECT_FALSE(ArcToCurve(Box2d(1.0, 1.0, 1.0, 5.0), east, east, points));
  EXPECT_FALSE(ArcToCurve(Box2d(1.0, 1.0, 5.0, 1.0), east, east, points));
  EXPECT_FALSE(ArcToCurve(Box2d(nan, 1.0, 5.0, 1.0), east, east, points));
  EXPECT_EQ(points[0], east);
}

TEST(ArcToCurve, singlePrecisionGivesTheRoundedPoints) {
  std::vector<Vec2d> exact(7);
  std::vector<Vec2f> rounded(7);
  Box2f bounds;
  ASSERT_TRUE(ArcToCurve(ELLIPSE, Vec2d(5.0, 3.0), Vec2d(1.0, 0.0), exact));
  ASSERT_TRUE(ArcToCurve(Box2f(ELLIPSE), Vec2f(5.0f, 3.0f), Vec2f(1.0f, 0.0f), rounded, &bounds));
  for (std::size_t i = 0; i < exact.size(); ++i) EXPECT_EQ(Vec2f(exact[i]), rounded[i]) << i;
  EXPECT_EQ(rounded.back(), Vec2f(1.0f, 1.0f));
  EXPECT_EQ(bounds.Max(), Vec2f(5.0f, 5.0f));
}

}  // namespace
}  // namespace shr
