// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Operations of `GPolygon` and what is built on them: {union, intersection, difference, XOR} x {in
// place, into an operand, with itself, with a box}, containment against the even-odd rule,
// `GPolygonContains`, rectangles that come back as such. That areas are right is tested with the
// clipper.

#include <gtest/gtest.h>

#include <random>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/formats/PolygonText.h"
#include "tests/polygons/BooleanCases.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

GPolygon FromWkt(std::string_view text) {
  GPolygon polygon;
  ParseWkt(text, polygon);
  return polygon;
}

struct Operation {
  const char* name;
  GPolygon::SET_OPERATION code;
  void (GPolygon::*inPlace)(const GPolygon&);
  void (GPolygon::*into)(const GPolygon&, GPolygon&) const;
  const char* outcome;
};

const Operation OPERATIONS[] = {
    {"intersection", GPolygon::SET_INTERSECTION, &GPolygon::Intersection, &GPolygon::Intersection,
     "POLYGON ((1 3, 1 1, 3 1, 3 3, 1 3))"},
    {"union", GPolygon::SET_UNION, &GPolygon::Union, &GPolygon::Union,
     "POLYGON ((1 4, 1 3, 0 3, 0 0, 3 0, 3 1, 4 1, 4 4, 1 4))"},
    {"difference", GPolygon::SET_DIFFERENCE, &GPolygon::Difference, &GPolygon::Difference,
     "POLYGON ((0 3, 0 0, 3 0, 3 1, 1 1, 1 3, 0 3))"},
    {"XOR", GPolygon::SET_XOR, &GPolygon::XOR, &GPolygon::XOR,
     "MULTIPOLYGON (((1 4, 1 3, 3 3, 3 1, 4 1, 4 4, 1 4)), "
     "((0 3, 0 0, 3 0, 3 1, 1 1, 1 3, 0 3)))"},
};

TEST(GPolygonOperations, allWaysToCallThemGiveTheSame) {
  const GPolygon a(0, 0, 3, 3);
  const GPolygon b(1, 1, 4, 4);
  for (const Operation& operation : OPERATIONS) {
    GPolygon result;
    (a.*operation.into)(b, result);
    EXPECT_EQ(operation.outcome, ToWkt(result)) << operation.name;
    result = a;
    (result.*operation.inPlace)(b);
    EXPECT_EQ(operation.outcome, ToWkt(result)) << operation.name;
    result = b;
    a.Combine(result, operation.code, result);
    EXPECT_EQ(operation.outcome, ToWkt(result)) << operation.name;
    result = a;
    (result.*operation.into)(b, result);
    EXPECT_EQ(operation.outcome, ToWkt(result)) << operation.name;
  }
}

TEST(GPolygonOperations, withItselfLeaveThePolygonAloneOrEmptyIt) {
  // Crossing and repeated on purpose: the clipper would clean it.
  const GPolygon source(Points{{0, 0}, {2, 2}, {2, 0}, {0, 2}, {0, 2}});
  for (const Operation& operation : OPERATIONS) {
    GPolygon polygon = source;
    (polygon.*operation.inPlace)(polygon);
    const bool isKept =
        operation.code == GPolygon::SET_INTERSECTION || operation.code == GPolygon::SET_UNION;
    EXPECT_EQ(isKept ? 5u : 0u, polygon.GetTotalVertexCount()) << operation.name;
    EXPECT_EQ(isKept ? source.GetBBox() : Box2d(), polygon.GetBBox()) << operation.name;
  }
}

TEST(GPolygonOperations, faultsLeaveThePolygonUnchanged) {
  GPolygon polygon(0, 0, 1, 1);
  EXPECT_EQ(L"[GPolygon]", test::Failure([&] {
              polygon.Combine(GPolygon(), static_cast<GPolygon::SET_OPERATION>(4));
            }));
  EXPECT_NE(L"(nothing)", test::Failure([&] { polygon.Union(GPolygon(0, 0, NAN, 1)); }));
  EXPECT_TRUE(polygon.IsRectangle());
}

TEST(GPolygonOperations, resultsThatAreRectanglesAreKnownAsSuch) {
  GPolygon polygon(0, 0, 3, 3);
  polygon.Intersection(Box2d(1, -1, 4, 2));
  Box2d box;
  EXPECT_TRUE(polygon.IsRectangle(&box));
  EXPECT_EQ(Box2d(1, 0, 3, 2), box);
  polygon.Intersection(Box2d(1, 1, 1, 2));
  EXPECT_EQ(0u, polygon.GetNumContours());
}

TEST(GPolygonOperations, holesAreFlagged) {
  GPolygon polygon(0, 0, 9, 9);
  polygon.Difference(GPolygon(1, 1, 8, 8));
  polygon.Union(GPolygon(2, 2, 3, 3));
  ASSERT_EQ(3u, polygon.GetNumContours());
  int holes = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    const double area = PolygonArea(polygon.GetContour(i));
    EXPECT_EQ(area > 0.0, polygon.IsHole(i));
    holes += polygon.IsHole(i);
  }
  EXPECT_EQ(1, holes);
}

TEST(GPolygonOperations, spikesAreRemoved) {
  GPolygon polygon(Points{{0, 0}, {4, 0}, {4, 2}, {9, 2}, {4, 2}, {4, 4}, {0, 4}});
  polygon.RemoveZeroWidthReturnPaths();
  EXPECT_EQ(Box2d(0, 0, 4, 4), polygon.GetBBox());
  EXPECT_EQ(16.0, std::abs(PolygonArea(polygon.GetContour(0))));
}

TEST(GPolygonOperations, pointsInsideAreFoundAsByTheEvenOddRule) {
  std::mt19937_64 random(11);
  std::uniform_real_distribution<double> place(-1.2, 1.2);
  for (int round = 0; round < 4; ++round) {
    Points points = test::MakeStar({0, 0}, 1.0, 40, random);
    const Points hole = test::MakeStar({0, 0}, 0.2, 10, random);
    points.insert(points.end(), hole.begin(), hole.end());
    const Counts counts = {40, 10};
    const GPolygon polygon(points, counts);
    for (int i = 0; i < 100; ++i) {
      const Vec2d point(place(random), place(random));
      EXPECT_EQ(PointInPolygon(point, points, counts), polygon.PointInside(point))
          << point.x << ' ' << point.y;
    }
    for (const Vec2d& point : hole) EXPECT_TRUE(polygon.PointInside(point));
  }
}

TEST(GPolygonOperations, pointsOnTheBorderAreInside) {
  const GPolygon rectangle(Points{{0, 0}, {4, 0}, {4, 4}, {0, 4}});
  const GPolygon notch = FromWkt("POLYGON ((0 0, 4 0, 4 4, 2 4, 2 2, 0 2, 0 0))");
  for (const Vec2d& point : Points{{0, 1}, {4, 1}, {2, 0}, {0, 0}, {4, 4}}) {
    EXPECT_TRUE(rectangle.PointInside(point));
    EXPECT_TRUE(notch.PointInside(point));
  }
  EXPECT_TRUE(rectangle.PointInside({1, 3}));
  EXPECT_FALSE(notch.PointInside({1, 3}));
  EXPECT_FALSE(notch.PointInside({5, 1}));
}

TEST(GPolygonContains, comparesAreasWithTheirBorders) {
  struct Row {
    const char* name;
    const char* a;
    const char* b;
    bool isContained;
  };
  const Row rows[] = {
      {"inside", "POLYGON ((0 0, 9 0, 9 9, 0 9))", "POLYGON ((1 1, 2 1, 2 2))", true},
      {"at the border", "POLYGON ((0 0, 9 0, 9 9, 0 9))", "POLYGON ((0 0, 9 0, 0 3))", true},
      {"equal", "POLYGON ((0 0, 9 0, 9 9, 0 9))", "POLYGON ((9 9, 9 0, 0 0, 0 9))", true},
      {"across", "POLYGON ((0 0, 9 0, 9 9, 0 9))", "POLYGON ((1 1, 10 1, 2 2))", false},
      {"beside", "POLYGON ((0 0, 9 0, 9 9, 0 9))", "POLYGON ((9 0, 10 0, 10 9, 9 9))", false},
      {"around", "POLYGON ((1 1, 2 1, 2 2))", "POLYGON ((0 0, 9 0, 9 9, 0 9))", false},
      {"over a hole", "POLYGON ((0 0, 9 0, 9 9, 0 9), (4 4, 5 4, 5 5))",
       "POLYGON ((1 1, 8 1, 8 8))", false},
      {"around a hole", "POLYGON ((0 0, 9 0, 9 9, 0 9), (4 4, 5 4, 5 5))",
       "POLYGON ((1 1, 8 1, 8 8, 1 8), (4 4, 5 4, 5 5))", true},
      {"across two that touch", "MULTIPOLYGON (((0 0, 5 0, 5 9, 0 9)), ((5 0, 9 0, 9 9, 5 9)))",
       "POLYGON ((1 1, 8 1, 8 8))", true},
      {"nothing", "POLYGON ((0 0, 9 0, 9 9, 0 9))", "POLYGON EMPTY", true},
      {"in nothing", "POLYGON EMPTY", "POLYGON ((0 0, 9 0, 9 9, 0 9))", false},
      {"no area", "POLYGON EMPTY", "POLYGON ((0 0, 9 0, 0 0))", true},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.isContained, GPolygonContains(FromWkt(row.a), FromWkt(row.b))) << row.name;
    GPolygon2d a;
    GPolygon2d b;
    ParseWkt(row.a, a);
    ParseWkt(row.b, b);
    EXPECT_EQ(row.isContained, GPolygonContains(a, b)) << row.name;
  }
  // Overlapping polygons of a GPolygon2d are one area; contours of a GPolygon cancel out.
  const Points overlapping = {{0, 0}, {5, 0}, {5, 5}, {0, 5}, {3, 0}, {9, 0}, {9, 5}, {3, 5}};
  const Points across = {{1, 1}, {8, 1}, {8, 2}};
  const Counts counts = {4, 4};
  const Counts count = {3};
  EXPECT_TRUE(GPolygonContains(GPolygon2d(overlapping, counts), across, count));
  EXPECT_FALSE(GPolygonContains(GPolygon(overlapping, counts), across, count));
}

TEST(GPolygonContains, holdsForWhatWasCutOut) {
  std::mt19937_64 random(3);
  for (int round = 0; round < 20; ++round) {
    const GPolygon a(test::MakeStar({1e6, 5e5}, 10.0, 50, random));
    const GPolygon b(test::MakeStar({1e6 + 3.0, 5e5}, 10.0, 50, random));
    GPolygon common;
    a.Intersection(b, common);
    EXPECT_TRUE(GPolygonContains(a, common) && GPolygonContains(b, common)) << round;
    GPolygon all;
    a.Union(b, all);
    EXPECT_TRUE(GPolygonContains(all, a) && GPolygonContains(all, b)) << round;
    EXPECT_FALSE(GPolygonContains(a, all)) << round;
  }
}

GPolygon FromContours(const test::Contours& contours) {
  GPolygon polygon;
  for (const Points& contour : contours) {
    const auto count = static_cast<unsigned int>(contour.size());
    polygon.AddContours(contour, {&count, 1});
  }
  return polygon;
}

TEST(GPolygonContains, holdsForResultsOfHardPairs) {
  for (const test::CaseFamily& family : test::BooleanCaseFamilies()) {
    for (std::uint64_t seed = 0; seed < 8; ++seed) {
      std::mt19937_64 random(seed);
      const test::BooleanCase pair = family.make(random);
      const GPolygon a = FromContours(pair.subject);
      const GPolygon b = FromContours(pair.clip);
      GPolygon common;
      a.Intersection(b, common);
      EXPECT_TRUE(GPolygonContains(a, common)) << family << ", seed " << seed;
      EXPECT_TRUE(GPolygonContains(b, common)) << family << ", seed " << seed;
      GPolygon all;
      a.Union(b, all);
      EXPECT_TRUE(GPolygonContains(all, a)) << family << ", seed " << seed;
      EXPECT_TRUE(GPolygonContains(GPolygon2d(all), GPolygon2d(common))) << family << ", " << seed;
    }
  }
}

TEST(GPolygonContains, toleratesAFewSnapDistancesOnly) {
  const double snap = GPC_SNAP * 900.0;
  const GPolygon square(Box2d(0.0, 0.0, 900.0, 900.0));
  const auto wider = [](double by) { return GPolygon(Box2d(1.0, 1.0, 900.0 + by, 899.0)); };
  EXPECT_TRUE(GPolygonContains(square, wider(4.0 * snap)));
  EXPECT_FALSE(GPolygonContains(square, wider(64.0 * snap)));
  // Small, but no sliver.
  const GPolygon dot(Box2d(1000.0, 1.0, 1000.0 + 1e-9, 1.0 + 1e-9));
  EXPECT_FALSE(GPolygonContains(square, dot));
}

}  // namespace
}  // namespace shr
