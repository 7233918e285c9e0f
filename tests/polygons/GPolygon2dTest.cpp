// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: closing and turning of contours, including the tolerance of closing; the flat form there
// and back; appended contours; counts and bounds; rectangles and what resembles them; containment
// on edges and vertices, in nested, crossing and tiny contours, and against the even-odd rule on
// random stars; copies, moves and failures that change nothing; numbers without sense.

#include "shared/polygons/GPolygon2d.h"

#include <gtest/gtest.h>

#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/MultiPolygon.h"
#include "tests/polygons/PolygonTestSupport.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

const Points UNIT_SQUARE = {{0, 0}, {0, 1}, {1, 1}, {1, 0}};

Points PointsOf(const GPolygon2d& polygon, bool closed = true) {
  Points points;
  Counts counts;
  polygon.GetPolyPolygon(points, counts, closed);
  return points;
}

Counts CountsOf(const GPolygon2d& polygon, bool closed = true) {
  Points points;
  Counts counts;
  polygon.GetPolyPolygon(points, counts, closed);
  return counts;
}

TEST(GPolygon2d, contoursAreClosedAndTurnedClockwise) {
  const double ulp = DBL_EPSILON;
  const struct {
    const char* name;
    Points contour;
    Points stored;
  } rows[] = {
      {"open", {{0, 0}, {0, 1}, {1, 1}}, {{0, 0}, {0, 1}, {1, 1}, {0, 0}}},
      {"closed", {{0, 0}, {0, 1}, {1, 1}, {0, 0}}, {{0, 0}, {0, 1}, {1, 1}, {0, 0}}},
      {"counter-clockwise", {{0, 0}, {1, 1}, {0, 1}}, {{0, 0}, {0, 1}, {1, 1}, {0, 0}}},
      {"far away",
       {{1e9, 1e9}, {1e9 + 1, 1e9 + 1}, {1e9, 1e9 + 1}},
       {{1e9, 1e9}, {1e9, 1e9 + 1}, {1e9 + 1, 1e9 + 1}, {1e9, 1e9}}},
      {"closed but for a unit",
       {{1, 1}, {1, 2}, {2, 2}, {1 + ulp, 1}},
       {{1, 1}, {1, 2}, {2, 2}, {1 + ulp, 1}}},
      {"open by two units",
       {{1, 1}, {1, 2}, {2, 2}, {1 + 2 * ulp, 1}},
       {{1, 1}, {1, 2}, {2, 2}, {1 + 2 * ulp, 1}, {1, 1}}},
      {"there and back", {{0, 0}, {1, 0}, {0, 0}}, {{0, 0}, {1, 0}, {0, 0}}},
      {"two points", {{0, 0}, {1, 0}}, {{0, 0}, {1, 0}}},
      {"one point", {{3, 4}}, {{3, 4}}},
      {"none", {}, {}},
  };
  for (const auto& row : rows) {
    const GPolygon2d polygon(row.contour);
    EXPECT_EQ(PointsOf(polygon), row.stored) << row.name;
    EXPECT_EQ(polygon.GetTotalVertexCount(), row.stored.size()) << row.name;
    EXPECT_EQ(polygon.GetNumContours(), 1u) << row.name;
    Box2d bounds;
    bounds.BoundPoints(row.contour);
    EXPECT_EQ(polygon.GetBBox(), bounds) << row.name;
    const GPolygon2d again(PointsOf(polygon), CountsOf(polygon));
    EXPECT_EQ(PointsOf(again), row.stored) << row.name;
    const bool closesExactly = row.stored.size() >= 4 && row.stored.front() == row.stored.back();
    if (!closesExactly) continue;
    const GPolygon2d reopened(PointsOf(polygon, false), CountsOf(polygon, false));
    EXPECT_EQ(PointsOf(reopened), row.stored) << row.name;
  }
}

TEST(GPolygon2d, emptyPolygonHasNothing) {
  GPolygon2d polygon;
  EXPECT_EQ(polygon.GetNumContours(), 0u);
  EXPECT_EQ(polygon.GetTotalVertexCount(), 0u);
  EXPECT_EQ(polygon.GetBBox(), Box2d());
  EXPECT_FALSE(polygon.PointInside(Vec2d::ZERO));
  EXPECT_FALSE(polygon.IsRectangle());
  EXPECT_EQ(polygon.GetPolyPolygon(nullptr, nullptr, true), 0u);
  EXPECT_EQ(polygon.GetPolygon(nullptr), 0u);
  polygon.Intersection(Box2d(0, 0, 1, 1));
  polygon.RemoveZeroWidthReturnPaths();
  polygon.AddContours(GPolygon2d());
  EXPECT_EQ(polygon.GetNumContours(), 0u);
}

TEST(GPolygon2d, contoursAreAppendedInOrder) {
  GPolygon2d polygon(UNIT_SQUARE);
  const Points more = {{5, 5}, {5, 7}, {7, 7}, {-1, -1}, {-1, 0}, {0, 0}, {0, -1}};
  polygon.AddContours(more, Counts{3, 0, 4});
  polygon.AddContours(polygon);
  EXPECT_EQ(CountsOf(polygon), (Counts{5, 4, 0, 5, 5, 4, 0, 5}));
  EXPECT_EQ(CountsOf(polygon, false), (Counts{4, 3, 0, 4, 4, 3, 0, 4}));
  EXPECT_EQ(polygon.GetNumContours(), 8u);
  EXPECT_EQ(polygon.GetNumRings(), 8u);
  EXPECT_EQ(polygon.GetContourVertexCount(1), 4u);
  EXPECT_EQ(polygon.GetContourVertexCount(7), 5u);
  EXPECT_EQ(polygon.GetBBox(), Box2d(-1, -1, 7, 7));
  EXPECT_TRUE(polygon.PointInside(Vec2d(5.5, 6)));
  Points points(polygon.GetPolyPolygon(nullptr, nullptr, false));
  EXPECT_EQ(polygon.GetPolyPolygon(points.data(), nullptr, false), 22u);
  EXPECT_EQ(points, PointsOf(polygon, false));
  EXPECT_THROW(polygon.GetContourVertexCount(8), InternalErrorException);
}

TEST(GPolygon2d, singleContourHasTheAreaOfAll) {
  const GPolygon2d polygon(
      Points{{0, 0}, {0, 2}, {2, 2}, {2, 0}, {9, 9}, {9, 10}, {10, 10}, {5, 5}, {5, 6}, {6, 6}},
      Counts{4, 3, 3});
  Points joined;
  EXPECT_EQ(polygon.GetPolygon(joined), 5u + 4u + 1u + 4u + 1u);
  ASSERT_EQ(joined.size(), 15u);
  EXPECT_EQ(joined.front(), joined.back());
  EXPECT_EQ(PolygonArea(joined), -5.0);
}

TEST(GPolygon2d, rectanglesAreToldFromWhatResemblesThem) {
  const struct {
    const char* name;
    GPolygon2d polygon;
    bool expected;
  } rows[] = {
      {"four numbers", GPolygon2d(1, 2, 3, 5), true},
      {"four numbers the wrong way round", GPolygon2d(3, 5, 1, 2), true},
      {"begun elsewhere", GPolygon2d(Points{{3, 2}, {3, 5}, {1, 5}, {1, 2}}), true},
      {"diamond", GPolygon2d(Points{{1, 3.5}, {2, 5}, {3, 3.5}, {2, 2}}), false},
      {"bow tie", GPolygon2d(Points{{1, 2}, {3, 5}, {3, 2}, {1, 5}}), false},
      {"point on an edge", GPolygon2d(Points{{1, 2}, {1, 3}, {1, 5}, {3, 5}, {3, 2}}), false},
      {"triangle", GPolygon2d(Points{{1, 2}, {1, 5}, {3, 5}}), false},
      {"no width", GPolygon2d(1, 2, 1, 5), false},
      {"two of them",
       GPolygon2d(Points{{1, 2}, {1, 5}, {3, 5}, {3, 2}, {1, 2}, {1, 5}, {3, 5}, {3, 2}},
                  Counts{4, 4}),
       false},
  };
  for (const auto& row : rows) {
    Box2d bounds;
    EXPECT_EQ(row.polygon.IsRectangle(&bounds), row.expected) << row.name;
    EXPECT_EQ(row.polygon.IsRectangle(), row.expected) << row.name;
    EXPECT_EQ(bounds, row.expected ? Box2d(1, 2, 3, 5) : Box2d()) << row.name;
  }
}

TEST(GPolygon2d, pointsOnEdgesAreNotInside) {
  const GPolygon2d square(UNIT_SQUARE);
  const GPolygon2d wedge(Points{{0, 0}, {1, 3}, {3, 0}, {1, 1}});
  const GPolygon2d closedButForAUnit(Points{{1, 1}, {1, 2}, {2, 2}, {2, 1}, {1 + DBL_EPSILON, 1}});
  const struct {
    const char* name;
    const GPolygon2d& polygon;
    Vec2d point;
    bool expected;
  } rows[] = {
      {"left edge", square, {0, 0.5}, false},
      {"right edge", square, {1, 0.5}, false},
      {"bottom edge", square, {0.5, 0}, false},
      {"top edge", square, {0.5, 1}, false},
      {"corner", square, {1, 1}, false},
      {"beyond a corner", square, {2, 1}, false},
      {"beside a corner", square, {-1, 1}, false},
      {"one unit inside", square, {DBL_EPSILON, 0.5}, true},
      {"one unit outside", square, {-DBL_EPSILON, 0.5}, false},
      {"at the height of a notch", wedge, {0.75, 1}, true},
      {"beyond the notch at its height", wedge, {1.5, 1}, true},
      {"left of all at the height of the notch", wedge, {0.25, 1}, false},
      {"on a slanted edge", wedge, {0.5, 1.5}, false},
      {"top vertex", wedge, {1, 3}, false},
      {"just below the top vertex", wedge, {1, 2.999}, true},
      {"no number", square, {NAN, 0.5}, false},
      {"infinity", square, {0.5, INFINITY}, false},
      {"height of the seam", closedButForAUnit, {1.5, 1.5}, true},
      {"left of the seam", closedButForAUnit, {0.5, 1}, false},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.polygon.PointInside(row.point), row.expected) << row.name;
}

TEST(GPolygon2d, exactlyCollinearPointsAreOnTheEdge) {
  // Plain arithmetic calls some of the points beside this edge collinear, and some on it not.
  const GPolygon2d polygon(Points{{12, 12}, {24, 24}, {30, -10}, {0.25, 0.25}});
  for (int i = 0; i < 32; ++i) {
    for (int j = 0; j < 32; ++j) {
      const Vec2d point(0.5 + i * 0x1p-53, 0.5 + j * 0x1p-53);
      EXPECT_EQ(polygon.PointInside(point), point.y < point.x) << i << ", " << j;
    }
  }
}

TEST(GPolygon2d, ringsDecideByTheirWindingAndPolygonsInOrder) {
  const GPolygon2d nested(Points{{0, 0}, {0, 9}, {9, 9}, {9, 0}, {3, 3}, {3, 6}, {6, 6}, {6, 3}},
                          Counts{4, 4});
  EXPECT_TRUE(nested.PointInside(Vec2d(4, 4)));
  EXPECT_TRUE(nested.PointInside(Vec2d(3, 4)));
  const GPolygon2d edgeFirst(Points{{3, 3}, {3, 6}, {6, 6}, {6, 3}, {0, 0}, {0, 9}, {9, 9}, {9, 0}},
                             Counts{4, 4});
  EXPECT_FALSE(edgeFirst.PointInside(Vec2d(3, 4)));
  // Twice around: the winding number is 2, which the even-odd rule calls outside.
  const Points twice = {{0, 0}, {0, 4}, {4, 4}, {4, 0}, {1, 1}, {1, 3}, {3, 3}, {3, 1}};
  EXPECT_TRUE(GPolygon2d(twice).PointInside(Vec2d(2.5, 2.75)));
  EXPECT_FALSE(PointInPolygon(Vec2d(2.5, 2.75), twice));
  EXPECT_FALSE(GPolygon2d(Points{{0, 0}, {2, 0}, {0, 0}}).PointInside(Vec2d(1, 0)));
}

TEST(GPolygon2d, agreesWithTheEvenOddRuleOnSimpleContours) {
  std::mt19937_64 random(42);
  std::uniform_real_distribution<double> coordinate(-1.1, 1.1);
  for (const std::size_t size : {3u, 10u, 300u}) {
    const Points star = test::MakeStar(Vec2d::ZERO, 1.0, size, random);
    const GPolygon2d polygon(star);
    int inside = 0;
    for (int i = 0; i < 3000; ++i) {
      const Vec2d point(coordinate(random), coordinate(random));
      ASSERT_EQ(polygon.PointInside(point), PointInPolygon(point, star)) << size << ": " << point;
      inside += polygon.PointInside(point);
    }
    EXPECT_GT(inside, 100) << size;
    for (const Vec2d& vertex : star)
      ASSERT_FALSE(polygon.PointInside(vertex)) << size << ": " << vertex;
  }
}

TEST(GPolygon2d, copiesAreDeepAndMovedPolygonsEmpty) {
  GPolygon2d original(UNIT_SQUARE);
  GPolygon2d copy(original);
  original.MakeEmpty();
  EXPECT_EQ(copy.GetTotalVertexCount(), 5u);
  GPolygon2d moved(std::move(copy));
  EXPECT_EQ(copy.GetNumContours(), 0u);  // NOLINT(bugprone-use-after-move): the state is promised
  original = moved;
  original = *&original;
  EXPECT_TRUE(original.PointInside(Vec2d(0.5, 0.5)));
}

TEST(GPolygon2d, failuresChangeNothing) {
  GPolygon2d polygon(UNIT_SQUARE);
  const Counts tooMany = {3, 2};
  const Points before = PointsOf(polygon);
  EXPECT_THROW(polygon.AddContours(UNIT_SQUARE, tooMany), InternalErrorException);
  EXPECT_THROW(polygon.AddContours(nullptr, tooMany.data(), 2), InternalErrorException);
  EXPECT_THROW(polygon.AddContours(UNIT_SQUARE.data(), nullptr, 1), InternalErrorException);
  EXPECT_THROW(GPolygon2d(static_cast<const Vec2d*>(nullptr), 3), InternalErrorException);
  EXPECT_EQ(PointsOf(polygon), before);
  polygon.AddContours(nullptr, nullptr, 0);
  EXPECT_EQ(PointsOf(polygon), before);
}

TEST(GPolygon2d, polygonsWithoutSenseAreKeptButHaveNoInside) {
  for (const double bad : {NAN, INFINITY, NEG_INFINITY}) {
    GPolygon2d polygon(Points{{0, 0}, {0, 1}, {bad, 1}, {1, 0}});
    polygon.AddContours(GPolygon2d(2, 2, 3, 3));
    EXPECT_EQ(polygon.GetTotalVertexCount(), 10u);
    EXPECT_FALSE(polygon.PointInside(Vec2d(0.25, 0.5)));
    EXPECT_TRUE(polygon.PointInside(Vec2d(2.5, 2.5)));
    polygon.Intersection(Box2d::UNIVERSE);
    EXPECT_EQ(polygon.GetTotalVertexCount(), 5u);
  }
  // A ring that begins at such a point is closed once, however often it is taken over.
  for (const double bad : {NAN, INFINITY}) {
    const GPolygon2d polygon(Points{{bad, 1}, {0, 1}, {1, 0}});
    EXPECT_EQ(polygon.GetTotalVertexCount(), 4u);
    MultiPolygon2d model;
    polygon.GetMultiPolygon(model);
    EXPECT_EQ(GPolygon2d(model).GetTotalVertexCount(), 4u);
  }
}

}  // namespace
}  // namespace shr
