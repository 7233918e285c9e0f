// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: signed areas of known shapes, closed or not, far from the origin; the half-open rule on
// edges and vertices as a property of rectangles side by side, and of polygons with a slanted
// border; any number of edges with any coordinates against a test edge by edge; nested contours as
// holes; what is no polygon; null pointers and counts that are too large.

#include "shared/polygons/FlatPolygon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <random>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/geometry/MathUtility.h"
#include "shared/geometry/Orientation.h"

namespace shr {
namespace {

using Points = std::vector<Vec2d>;

TEST(PolygonArea, isSignedByTheOrderOfThePoints) {
  const struct {
    const char* name;
    Points points;
    double area;
  } rows[] = {
      {"square", {{0, 0}, {2, 0}, {2, 2}, {0, 2}}, 4.0},
      {"clockwise", {{0, 0}, {0, 2}, {2, 2}, {2, 0}}, -4.0},
      {"closed", {{0, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}}, 4.0},
      {"triangle", {{0, 0}, {3, 0}, {0, 5}}, 7.5},
      {"eight", {{0, 0}, {2, 2}, {2, 0}, {0, 2}}, 0.0},
      {"high above the axis", {{0, 1e15}, {1, 1e15}, {1, 1e15 + 1}, {0, 1e15 + 1}}, 1.0},
      {"segment", {{0, 0}, {3, 0}}, 0.0},
      {"nothing", {}, 0.0},
  };
  Points all;
  std::vector<unsigned int> counts;
  double sum = 0.0;
  for (const auto& row : rows) {
    EXPECT_EQ(PolygonArea(row.points), row.area) << row.name;
    EXPECT_EQ(PolygonArea(row.points.data(), row.points.size()), row.area) << row.name;
    all.insert(all.end(), row.points.begin(), row.points.end());
    counts.push_back(static_cast<unsigned int>(row.points.size()));
    sum += row.area;
  }
  EXPECT_EQ(PolygonArea(all, counts), sum);
}

TEST(PointInPolygon, exactlyOneOfTheTilesAroundAPointHoldsIt) {
  for (double x = 0.25; x < 3.0; x += 0.25) {
    for (double y = 0.25; y < 3.0; y += 0.25) {
      int holders = 0;
      for (int tile = 0; tile < 9; ++tile) {
        const double left = tile % 3;
        const double bottom = tile / 3;
        const Points square = {
            {left, bottom}, {left + 1, bottom}, {left + 1, bottom + 1}, {left, bottom + 1}};
        const bool inside = PointInPolygon(Vec2d(x, y), square);
        EXPECT_EQ(inside, left <= x && x < left + 1 && bottom <= y && y < bottom + 1)
            << x << ' ' << y;
        holders += inside;
      }
      EXPECT_EQ(holders, 1) << x << ", " << y;
    }
  }
}

/// Points on the borders of two triangles or a step of the last bit beside them; returns how many
/// lie in both or in none.
int CountDisputed(std::mt19937_64& random, double offset, int tries) {
  std::uniform_real_distribution<double> coordinate(0.0, 1.0);
  int disputed = 0;
  for (int i = 0; i < tries; ++i) {
    const auto make = [&] { return Vec2d(coordinate(random) + offset, coordinate(random)); };
    const Vec2d a = make();
    const Vec2d b = make();
    const Vec2d left = a.Lerp(b, 0.5) + Vec2d(-(b - a).y, (b - a).x) * 3.0;
    const Vec2d right = a.Lerp(b, 0.5) - Vec2d(-(b - a).y, (b - a).x) * 3.0;
    Vec2d point = a.Lerp(b, 0.1 + 0.8 * coordinate(random));
    if (i % 3 == 1) point.x = std::nextafter(point.x, 9.0 + offset);
    if (i % 3 == 2) point.x = std::nextafter(point.x, -9.0);
    const bool isInLeft = PointInPolygon(point, Points{a, b, left});
    const bool isInRight = PointInPolygon(point, i % 2 == 0 ? Points{b, a, right}    // either way
                                                            : Points{a, b, right});  // round
    disputed += isInLeft == isInRight;
  }
  return disputed;
}

TEST(PointInPolygon, exactlyOneOfTheNeighboursHoldsAPointOnASlantedBorder) {
  std::mt19937_64 random(49);
  for (const double offset : {0.0, 1000.0, 1e6}) {
    EXPECT_EQ(CountDisputed(random, offset, 20000), 0) << offset;
  }
  // A border with a vertex more on one side of it, exactly on the line.
  const Points whole = {{0, 0}, {3, 9}, {-9, 4}};
  const Points parts = {{0, 0}, {9, 4}, {3, 9}, {2, 6}, {1, 3}};
  for (double y = 0.1; y < 9.0; y += 0.1) {
    const Vec2d point(y / 3.0, y);
    EXPECT_NE(PointInPolygon(point, whole), PointInPolygon(point, parts)) << y;
  }
}

/// The even-odd rule for one edge after another, by the exact side of the point.
bool IsInsideEdgeByEdge(const Vec2d& p, const Points& contour) {
  bool isInside = false;
  for (std::size_t i = 0; i < contour.size(); ++i) {
    const Vec2d a = contour[i == 0 ? contour.size() - 1 : i - 1];
    const Vec2d b = contour[i];
    if (b.y <= p.y && !(a.y <= p.y)) isInside ^= OrientationSign(b, a, p) > 0;
    if (a.y <= p.y && !(b.y <= p.y)) isInside ^= OrientationSign(a, b, p) > 0;
  }
  return isInside;
}

TEST(PointInPolygon, isTheSameToTheBitForEverySizeAndAnyNumbers) {
  std::mt19937_64 random(45);
  std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
  const double odd[] = {0.0, 1.0, -1.0, 0.5, 1e-50, NAN, HUGE_VAL, -HUGE_VAL, 1e60, -1e60};
  for (std::size_t size = 0; size < 90; ++size) {
    for (int kind = 0; kind < 4; ++kind) {
      const auto makePoint = [&]() -> Vec2d {
        if (kind == 0) return {coordinate(random), coordinate(random)};
        const std::size_t limit = kind == 3 ? std::size(odd) : 4;
        return {odd[random() % limit], odd[random() % limit]};
      };
      Points contour(size);
      for (Vec2d& point : contour) point = makePoint();
      if (kind == 1)
        std::sort(contour.begin(), contour.end(), [](const Vec2d& a, const Vec2d& b) {
          return a.y < b.y;  // long runs on one side of the point
        });
      for (int query = 0; query < 20; ++query) {
        const Vec2d point = makePoint();
        ASSERT_EQ(PointInPolygon(point, contour), IsInsideEdgeByEdge(point, contour))
            << size << ' ' << kind << ": " << point;
      }
    }
  }
}

TEST(PointInPolygon, contoursInsideContoursAreHoles) {
  const Points points = {{0, 0}, {9, 0}, {9, 9}, {0, 9}, {3, 3}, {3, 6},
                         {6, 6}, {6, 3}, {4, 4}, {5, 4}, {4, 5}};
  const std::vector<unsigned int> counts = {4, 4, 0, 3};
  EXPECT_TRUE(PointInPolygon(Vec2d(1, 1), points, counts));
  EXPECT_FALSE(PointInPolygon(Vec2d(3.5, 3.5), points, counts));
  EXPECT_TRUE(PointInPolygon(Vec2d(4.25, 4.25), points, counts));
  EXPECT_FALSE(PointInPolygon(Vec2d(10, 1), points, counts));
  EXPECT_FALSE(PointInPolygon(Vec2d(NAN, 1), points, counts));
  EXPECT_FALSE(PointInPolygon(Vec2d(0, 0), Points()));
}

TEST(FlatPolygon, refusesArraysThatAreNotThere) {
  const Points points = {{0, 0}, {1, 0}, {0, 1}};
  const unsigned int counts[] = {3, 1};
  EXPECT_EQ(PolygonArea(nullptr, 0), 0.0);
  EXPECT_FALSE(PointInPolygon(Vec2d(), nullptr, nullptr, 0));
  EXPECT_THROW(PolygonArea(nullptr, 1), InternalErrorException);
  EXPECT_THROW(PolygonArea(points.data(), nullptr, 1), InternalErrorException);
  EXPECT_THROW(PolygonArea(points, counts), InternalErrorException);
  EXPECT_THROW(PointInPolygon(Vec2d(), points, counts), InternalErrorException);
  EXPECT_THROW(PointInPolygon(Vec2d(), nullptr, counts, 2), InternalErrorException);
}

}  // namespace
}  // namespace shr
