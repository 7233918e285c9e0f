// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: area, border and centroid of told shapes in both classes: simple, with holes, crossing
// themselves, overlapping, side by side, without area, without a number; far from the origin; the
// locators of both classes against their own answers and on borders between polygons.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/PointLocator.h"
#include "tests/polygons/PolygonTestSupport.h"

namespace shr {
namespace {

using test::Counts;
using test::FlatLines;
using test::Points;

const Points SQUARE = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
const double ROOT = std::sqrt(2.0);

FlatLines Join(std::initializer_list<Points> contours) {
  FlatLines lines;
  for (const Points& contour : contours) lines.Add(contour);
  return lines;
}

struct Measures {
  double area;
  double perimeter;
  Vec2d centroid;
};

template <class Polygon>
void ExpectMeasures(const Polygon& polygon, const Measures& expected, const char* name) {
  EXPECT_DOUBLE_EQ(polygon.GetArea(), expected.area) << name;
  EXPECT_DOUBLE_EQ(polygon.GetPerimeter(), expected.perimeter) << name;
  const Vec2d centroid = polygon.GetCentroid();
  if (expected.centroid.IsFinite()) {
    EXPECT_LT(centroid.Distance(expected.centroid), 1e-12) << name << centroid;
  } else {
    EXPECT_FALSE(centroid.IsFinite()) << name << centroid;
  }
}

TEST(PolygonMeasures, areThoseOfTheRegion) {
  const struct {
    const char* name;
    FlatLines contours;
    Measures evenOdd;   // GPolygon
    Measures together;  // GPolygon2d
  } rows[] = {
      {"square", Join({SQUARE}), {16, 16, {2, 2}}, {16, 16, {2, 2}}},
      {"clockwise",
       Join({{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}}}),
       {16, 16, {2, 2}},
       {16, 16, {2, 2}}},
      {"bow tie",
       Join({{{0, 0}, {2, 0}, {0, 2}, {2, 2}}}),
       {2, 4 + 4 * ROOT, {1, 1}},
       {2, 4 + 4 * ROOT, {1, 1}}},
      {"nested",
       Join({SQUARE, {{1, 1}, {3, 1}, {3, 3}, {1, 3}}}),
       {12, 24, {2, 2}},
       {16, 16, {2, 2}}},
      {"overlapping",
       Join({SQUARE, {{2, 0}, {6, 0}, {6, 4}, {2, 4}}}),
       {16, 24, {3, 2}},
       {24, 20, {3, 2}}},
      {"side by side",
       Join({SQUARE, {{4, 0}, {8, 0}, {8, 4}, {4, 4}}}),
       {32, 24, {4, 2}},
       {32, 24, {4, 2}}},
      {"twice the same", Join({SQUARE, SQUARE}), {0, 0, {2, 2}}, {16, 16, {2, 2}}},
      {"a line",
       Join({{{0, 0}, {4, 0}}, {{4, 0}, {4, 2}}}),
       {0, 0, {8.0 / 3.0, 1.0 / 3.0}},
       {0, 0, {8.0 / 3.0, 1.0 / 3.0}}},
      {"points", Join({{{1, 1}}, {{3, 1}}}), {0, 0, {2, 1}}, {0, 0, {2, 1}}},
      {"nothing", {}, {0, 0, {NAN, NAN}}, {0, 0, {NAN, NAN}}},
      {"no number", Join({{{0, 0}, {4, 0}, {NAN, 4}}}), {0, 0, {NAN, NAN}}, {0, 0, {NAN, NAN}}},
  };
  for (const auto& row : rows) {
    const FlatLines& c = row.contours;
    ExpectMeasures(GPolygon(c.points, c.counts), row.evenOdd, row.name);
    ExpectMeasures(GPolygon2d(c.points, c.counts), row.together, row.name);
  }
}

TEST(PolygonMeasures, keepTheirDigitsFarFromTheOrigin) {
  const Vec2d far(1e9, -1e9);
  Points points = SQUARE;
  for (Vec2d& point : points) point += far;
  EXPECT_EQ(GPolygon(points).GetArea(), 16.0);
  EXPECT_EQ(GPolygon2d(points).GetCentroid(), far + Vec2d(2, 2));
}

TEST(PolygonMeasures, holesOfAModelAreLeftOut) {
  MultiPolygon2d model(1);
  model[0].outer() = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};
  model[0].inners().push_back({{1, 1}, {2, 1}, {2, 2}, {1, 2}});
  ExpectMeasures(GPolygon2d(model), {15, 20, Vec2d(30.5, 30.5) / 15.0}, "with a hole");
  ExpectMeasures(GPolygon(model), {15, 20, Vec2d(30.5, 30.5) / 15.0}, "with a hole");
}

TEST(PointInside, isFalseForWhatIsNoNumber) {
  const Points points = {{0, 0}, {8, 0}, {9, 8}, {0, 8}, {-2, 3}};
  for (std::size_t i = 0; i < points.size(); ++i) {
    for (const double odd : {static_cast<double>(NAN), HUGE_VAL}) {
      Points broken = points;
      broken[i].x = odd;
      EXPECT_NO_THROW(EXPECT_FALSE(GPolygon(broken).PointInside(Vec2d(4, 4)))) << i << odd;
      EXPECT_NO_THROW(EXPECT_FALSE(GPolygon2d(broken).PointInside(Vec2d(4, 4)))) << i << odd;
    }
  }
  for (const Vec2d& point : {Vec2d(NAN, 4), Vec2d(4, NAN), Vec2d(NAN, NAN)}) {
    EXPECT_NO_THROW(EXPECT_FALSE(GPolygon(points).PointInside(point)));
    EXPECT_NO_THROW(EXPECT_FALSE(GPolygon(0, 0, 8, 8).PointInside(point)));
    EXPECT_NO_THROW(EXPECT_FALSE(GPolygon2d(points).PointInside(point)));
    EXPECT_FALSE(PointLocator(GPolygon2d(points)).Contains(point));
  }
}

TEST(PointLocator, answersForPolygonsOfBothClasses) {
  std::mt19937_64 random(50);
  std::uniform_real_distribution<double> anywhere(-2.0, 4.0);
  const FlatLines stars = test::MakeStars(40, random);  // three that overlap
  const GPolygon evenOdd(stars.points, stars.counts);
  const GPolygon2d together(stars.points, stars.counts);
  const PointLocator ofEvenOdd(evenOdd);
  const PointLocator ofTogether(together);
  int inBoth = 0;
  for (int i = 0; i < 3000; ++i) {
    const Vec2d point(anywhere(random), anywhere(random));
    ASSERT_EQ(ofEvenOdd.Contains(point), PointInPolygon(point, stars.points, stars.counts));
    ASSERT_EQ(ofTogether.Contains(point), together.PointInside(point)) << point;
    inBoth += ofTogether.Contains(point) && !ofEvenOdd.Contains(point);
  }
  EXPECT_GT(inBoth, 100);
  const FlatLines tiles = Join({SQUARE, {{4, 0}, {8, 1}, {8, 5}, {4, 4}}});
  const PointLocator ofTiles(GPolygon2d(tiles.points, tiles.counts));
  EXPECT_TRUE(ofTiles.Contains(Vec2d(4, 2))) << "the border between two polygons";
  EXPECT_FALSE(PointLocator(GPolygon2d()).Contains(Vec2d()));
  EXPECT_FALSE(PointLocator(GPolygon()).Contains(Vec2d()));
}

}  // namespace
}  // namespace shr
