// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What is stored of contours given: open or closed, one or many, of every point type; the flat form
// that comes back; rectangles; the model of polygons with holes; failing memory. Operations are in
// GPolygonOperationsTest.cpp.

#include "shared/polygons/GPolygon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <boost/geometry/algorithms/area.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <boost/geometry/strategies/cartesian.hpp>
#include <cmath>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <utility>

#include "shared/platform/WindowsTypes.h"
#include "shared/polygons/BoostGeometry.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

const Points SQUARE = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
const Points TRIANGLE = {{2, 0}, {3, 0}, {3, 2}};

Points Joined(const Points& a, const Points& b) {
  Points points = a;
  points.insert(points.end(), b.begin(), b.end());
  return points;
}

Points Flat(const GPolygon& polygon, bool closed) {
  Points points;
  Counts counts;
  polygon.GetPolyPolygon(points, counts, closed);
  return points;
}

TEST(GPolygon, contoursAreStoredOpenAndGivenOutEitherWay) {
  const Points closed = Joined(SQUARE, {SQUARE.front()});
  const GPolygon polygon(Joined(closed, TRIANGLE), Counts{5, 3});
  EXPECT_EQ(2u, polygon.GetNumContours());
  EXPECT_EQ(4u, polygon.GetContourVertexCount(0));
  EXPECT_EQ(7u, polygon.GetTotalVertexCount());
  EXPECT_EQ(Box2d(0, 0, 3, 2), polygon.GetBBox());
  EXPECT_EQ(Joined(SQUARE, TRIANGLE), Flat(polygon, false));
  EXPECT_EQ(Joined(closed, Joined(TRIANGLE, {TRIANGLE.front()})), Flat(polygon, true));
  EXPECT_EQ(9u, polygon.GetPolyPolygon(nullptr, nullptr, true));
  EXPECT_EQ(L"[GPolygon]", test::Failure([&] { polygon.GetContour(2); }));
}

TEST(GPolygon, smallContoursAreKept) {
  const GPolygon polygon(Points{{1, 2}, {3, 4}, {3, 4}, {5, 6}}, Counts{1, 0, 2, 1});
  EXPECT_EQ(4u, polygon.GetNumContours());
  EXPECT_EQ((Points{{1, 2}, {3, 4}, {5, 6}}), Flat(polygon, true));
  const GPolygon repeated(Points{{0, 0}, {1, 1}, {0, 0}, {0, 0}});
  EXPECT_EQ((Points{{0, 0}, {1, 1}}), Flat(repeated, true));
  EXPECT_EQ((Points{{0, 0}, {1, 1}}), Flat(GPolygon(repeated), true));
  EXPECT_EQ(0u, GPolygon().GetTotalVertexCount());
  EXPECT_EQ(Box2d(), GPolygon().GetBBox());
}

TEST(GPolygon, everyKindOfInputGivesTheSameContours) {
  const POINT points[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}};
  const unsigned int count = 5;
  EXPECT_EQ(SQUARE, Flat(GPolygon(points, 5), false));
  EXPECT_EQ(SQUARE, Flat(GPolygon(points, &count, 1), false));
  const Points clockwise = {{0, 0}, {0, 1}, {1, 1}, {1, 0}};
  EXPECT_EQ(clockwise, Flat(GPolygon(GPolygon2d(SQUARE)), false));
  const Vec2f floats[] = {{0.0f, 0.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}};
  const GPolygon::FloatContour contours[] = {{4, floats}, {3, floats}};
  const int flags[] = {0, 1};
  GPolygon polygon(TRIANGLE);
  polygon.ConstructFromFloats({2, flags, contours});
  EXPECT_EQ(Joined(SQUARE, {{0, 0}, {1, 0}, {1, 1}}), Flat(polygon, false));
  EXPECT_FALSE(polygon.IsHole(0));
  EXPECT_TRUE(polygon.IsHole(1));
  const GpcPolygon& record = polygon.GetRecord();
  const GPolygon copy(
      GPolygon::tagGCONTOURLIST{record.contourCount, record.holeFlags, record.contours});
  EXPECT_EQ(Flat(polygon, true), Flat(copy, true));
  EXPECT_TRUE(copy.IsHole(1));
  EXPECT_EQ(L"[GPolygon]", test::Failure([&] {
              GPolygon(GPolygon::tagGCONTOURLIST{-1, nullptr, nullptr});
            }));
}

TEST(GPolygon, integerPointsAreRoundedAndLimited) {
  const GPolygon polygon(Points{{0.5, -0.5}, {2.4999, 1e300}, {-1e300, NAN}});
  POINT points[3];
  polygon.GetPolyPolygon(points, nullptr, false);
  EXPECT_EQ(1, points[0].x);
  EXPECT_EQ(-1, points[0].y);
  EXPECT_EQ(2, points[1].x);
  EXPECT_EQ(2147483647, points[1].y);
  EXPECT_EQ(-2147483647 - 1, points[2].x);
  EXPECT_EQ(0, points[2].y);
}

TEST(GPolygon2d, integerPointsComeAndGo) {
  const POINT points[] = {{0, 0}, {0, 4}, {4, 4}, {4, 0}, {1, 1}, {1, 3}, {3, 3}};
  const unsigned int counts[] = {4, 3};
  const GPolygon2d polygon(points, counts, 2);
  std::vector<POINT> flat;
  Counts flatCounts;
  EXPECT_EQ(7u, polygon.GetPolyPolygon(flat, flatCounts, false));
  EXPECT_EQ((Counts{4, 3}), flatCounts);
  EXPECT_TRUE(std::equal(flat.begin(), flat.end(), points,
                         [](const POINT& a, const POINT& b) { return a.x == b.x && a.y == b.y; }));
  Box2d box;
  EXPECT_TRUE(GPolygon2d(RECT{1, 5, 3, 2}).IsRectangle(&box));
  EXPECT_EQ(Box2d(1, 2, 3, 5), box);
  EXPECT_EQ(2u, GPolygon2d(GPolygon(points, counts, 2)).GetNumContours());
  const long longCounts[] = {4, 3};
  EXPECT_TRUE(PointInPolygon(POINT{3, 1}, points, longCounts, 2));
  EXPECT_FALSE(PointInPolygon(POINT{1, 2}, points, longCounts, 2));
  EXPECT_TRUE(PointInPolygon(POINT{1, 1}, points, 4));
  const long negative = -1;
  EXPECT_EQ(L"[FlatPolygon]", test::Failure([&] {
              PointInPolygon(POINT{1, 1}, points, &negative, 1);
            }));
}

TEST(GPolygon, rectanglesAreKnownByTheOrderOfTheirCorners) {
  struct Row {
    const char* name;
    GPolygon polygon;
    bool isRectangle;
    Box2d box;
  };
  const Box2d box(1, 2, 3, 5);
  const Row rows[] = {
      {"built", GPolygon(1, 2, 3, 5), true, box},
      {"from a box", GPolygon(box), true, box},
      {"from a RECT", GPolygon(RECT{1, 5, 3, 2}), true, box},
      {"from below", GPolygon(Points{{1, 2}, {3, 2}, {3, 5}, {1, 5}}), true, Box2d(1, 5, 3, 2)},
      {"turned by one", GPolygon(Points{{3, 5}, {3, 2}, {1, 2}, {1, 5}}), false, {}},
      {"not square", GPolygon(Points{{1, 5}, {3, 5}, {3, 2}, {1, 2.5}}), false, {}},
      {"twice", GPolygon(Joined(SQUARE, SQUARE), Counts{4, 4}), false, {}},
      {"empty", GPolygon(), false, {}},
  };
  for (const Row& row : rows) {
    Box2d found;
    EXPECT_EQ(row.isRectangle, row.polygon.IsRectangle(&found)) << row.name;
    EXPECT_EQ(row.box, found) << row.name;
  }
}

TEST(GPolygon, addedContoursComeBehindAndAFailureChangesNothing) {
  GPolygon polygon(SQUARE);
  for (int i = 0; i < 5; ++i) polygon.AddContours(polygon);
  EXPECT_EQ(32u, polygon.GetNumContours());
  const unsigned int count = 3;
  polygon.AddContours(TRIANGLE.data(), &count, 1);
  EXPECT_EQ(Box2d(0, 0, 3, 2), polygon.GetBBox());
  EXPECT_EQ(L"[GPolygon]", test::Failure([&] { polygon.AddContours(nullptr, &count, 1); }));
  EXPECT_EQ(33u, polygon.GetNumContours());
  GPolygon moved = std::move(polygon);
  EXPECT_EQ(0u, polygon.GetNumContours());
  EXPECT_EQ(131u, moved.GetTotalVertexCount());
}

std::int64_t allocationsLeft = 0;

void* FailingSource(std::size_t size) {
  return allocationsLeft-- > 0 ? std::malloc(size) : nullptr;
}

TEST(GPolygon, failingMemoryIsReportedAndLeavesThePolygonAsItWas) {
  const Points points = Joined(SQUARE, TRIANGLE);
  std::int64_t failures = 0;
  for (std::int64_t limit = 0;; ++limit) {
    GPolygon polygon(SQUARE);
    allocationsLeft = limit;
    GpcSetMemorySource(FailingSource);
    const GString text = test::Failure([&] { polygon.AddContours(points, Counts{4, 3}); });
    GpcSetMemorySource(nullptr);
    if (text == L"(nothing)") break;
    ++failures;
    EXPECT_EQ(L"Out of global memory", text);
    EXPECT_EQ(SQUARE, Flat(polygon, false));
    EXPECT_EQ(Box2d(0, 0, 1, 1), polygon.GetBBox());
  }
  EXPECT_EQ(4, failures);
}

TEST(GPolygonRecord, addedContoursAreCopiedOrNothingIsChanged) {
  GpcPolygon polygon;
  Points points = SQUARE;
  gpc_add_contour(polygon, {4, points.data()}, 0);
  gpc_add_contour(polygon, polygon.contours[0], 1);
  allocationsLeft = 2;
  GpcSetMemorySource(FailingSource);
  const GString text = test::Failure([&] { gpc_add_contour(polygon, {4, points.data()}, 0); });
  GpcSetMemorySource(nullptr);
  EXPECT_EQ(L"GPCAlloc failure: contour creation", text);
  EXPECT_EQ(2, polygon.contourCount);
  EXPECT_EQ(1, polygon.holeFlags[1]);
  EXPECT_EQ(SQUARE[2], polygon.contours[1].vertices[2]);
  gpc_free_polygon(polygon);
  EXPECT_EQ(nullptr, polygon.contours);
}

TEST(MultiPolygon, validityHoldsHolesToTheOrientationOfOuterRings) {
  const Ring2d clockwise = {{0, 0}, {0, 1}, {1, 1}, {1, 0}, {0, 0}};
  const Ring2d counterClockwise(clockwise.rbegin(), clockwise.rend());
  EXPECT_TRUE(IsValidRing(clockwise));
  EXPECT_FALSE(IsValidRing(counterClockwise));
  EXPECT_FALSE(IsValidRing(std::span(clockwise).first(4)));
  EXPECT_FALSE(IsValidRing(Ring2d{{0, 0}, {1, 1}, {0, 0}}));
  EXPECT_FALSE(IsValidRing({}));
  EXPECT_TRUE(IsValidPolygon({clockwise, {clockwise}}));
  EXPECT_FALSE(IsValidPolygon({clockwise, {counterClockwise}}));
  EXPECT_TRUE(IsValidMultiPolygon({}));
  EXPECT_FALSE(IsValidMultiPolygon({{clockwise, {}}, {counterClockwise, {}}}));
}

TEST(MultiPolygon, modelsOfBoostGeometryAreTakenAndGiven) {
  namespace bg = boost::geometry;
  bg::model::multi_polygon<bg::model::polygon<Vec2d>> overlay;
  overlay.resize(2);
  overlay[0].outer() = {{0, 0}, {0, 9}, {9, 9}, {9, 0}, {0, 0}};
  overlay[0].inners().push_back({{1, 1}, {2, 1}, {2, 2}, {1, 1}});
  overlay[1].outer() = {{20, 0}, {20, 1}, {21, 0}, {20, 0}};
  MultiPolygon2d model;
  CopyMultiPolygon(overlay, model);
  const GPolygon2d polygon(model);
  EXPECT_EQ(2u, polygon.GetNumContours());
  EXPECT_FALSE(polygon.PointInside({1.75, 1.5}));
  polygon.GetMultiPolygon(model);
  overlay.clear();
  CopyMultiPolygon(model, overlay);
  EXPECT_EQ(81.0 - 0.5 + 0.5, bg::area(overlay));
}

TEST(MultiPolygon, flatOutputFollowsTheRings) {
  const Ring2d outer = {{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}};
  const Ring2d inner = {{1, 1}, {2, 1}, {2, 2}, {1, 1}};
  const MultiPolygon2d model = {{outer, {inner}}};
  Points points(GetLegacyMultiPolygonPoints(model, static_cast<Vec2d*>(nullptr), false));
  GetLegacyMultiPolygonPoints(model, points.data(), false);
  EXPECT_EQ((Points{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {1, 1}, {2, 1}, {2, 2}}), points);
  unsigned int counts[2];
  EXPECT_EQ(2u, GetLegacyMultiPolygonUINTCounts(model, counts, true));
  EXPECT_EQ(4u, counts[1]);
  Points joined(10);
  EXPECT_EQ(10u, GetLegacyMultiPolygonAsSinglePolygon(model, joined.data()));
  EXPECT_EQ(joined.front(), joined.back());
  EXPECT_EQ(PolygonArea(outer) + PolygonArea(inner), PolygonArea(joined));
}

// Nested boxes, cut from the cells of their parents so that they often share corners and sides with
// each other and with the parent, then mapped by an integer matrix so that their sides are slanted.

using Key = std::vector<std::pair<double, double>>;  // sorted corners

struct Nest {
  std::mt19937_64 random;
  Points points;
  Counts counts;
  std::map<Key, std::set<Key>> groups;  // of each outer contour, its holes
};

Key Sorted(const Points& points) {
  std::set<std::pair<double, double>> corners;
  for (const Vec2d& point : points) corners.emplace(point.x, point.y);
  return Key(corners.begin(), corners.end());
}

Points Slanted(const Box2d& box) {
  Vec2d corners[4];
  box.GetCorners(corners);
  Points points;
  for (const Vec2d& p : corners) points.push_back({p.x + 2.0 * p.y, 3.0 * p.y - p.x});
  return points;
}

void AddNest(Nest& nest, const Box2d& box, const Key* outer, int depth) {
  Points contour = Slanted(box);
  const Key key = Sorted(contour);
  if (outer != nullptr) nest.groups[*outer].insert(key);
  if (outer == nullptr) nest.groups[key];
  const auto roll = [&nest](std::size_t sides) { return nest.random() % sides; };
  std::rotate(contour.begin(), contour.begin() + static_cast<std::ptrdiff_t>(roll(4)),
              contour.end());
  if (roll(2) == 0) std::reverse(contour.begin(), contour.end());
  nest.points.insert(nest.points.begin(), contour.begin(), contour.end());
  nest.counts.push_back(4);
  if (depth == 0) return;
  const Vec2d step = (box.Max() - box.Min()) / 4.0;
  for (int cell = 0; cell < 16; ++cell) {
    if (roll(3) != 0) continue;
    const Vec2d low = box.Min() + Vec2d(step.x * (cell % 4), step.y * (cell / 4));
    const double inset = roll(2) == 0 ? 0.0 : 1.0;
    AddNest(nest, Box2d(low + inset, low + step - inset), outer == nullptr ? &key : nullptr,
            depth - 1);
  }
}

TEST(MultiPolygon, contoursAreGroupedByWhatLiesInWhat) {
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    Nest nest;
    nest.random.seed(seed);
    AddNest(nest, Box2d(0, 0, 65536, 65536), nullptr, 3);
    MultiPolygon2d model;
    GPolygon(nest.points, nest.counts).GetMultiPolygon(model);
    std::map<Key, std::set<Key>> groups;
    for (const Polygon2d& polygon : model) {
      EXPECT_TRUE(IsValidRing(polygon.outer()));
      std::set<Key>& holes = groups[Sorted(polygon.outer())];
      for (const Ring2d& inner : polygon.inners()) {
        EXPECT_GT(PolygonArea(inner), 0.0);
        holes.insert(Sorted(inner));
      }
    }
    EXPECT_TRUE(groups == nest.groups) << "seed " << seed << " of " << nest.counts.size();
  }
}

}  // namespace
}  // namespace shr
