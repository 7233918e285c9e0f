// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: signed areas of known shapes, closed or not, far from the origin; the half-open rule on
// edges and vertices as a property of rectangles side by side; any number of edges with any
// coordinates against a test edge by edge; nested contours as holes; what is no
// polygon; null pointers and counts that are too large.

#include "shared/polygons/FlatPolygon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <random>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/geometry/MathUtility.h"

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

/// The even-odd rule for one edge after another, by the signed area of edge and point.
bool IsInsideEdgeByEdge(const Vec2d& p, const Points& contour) {
  bool isInside = false;
  for (std::size_t i = 0; i < contour.size(); ++i) {
    const Vec2d a = contour[i == 0 ? contour.size() - 1 : i - 1];
    const Vec2d b = contour[i];
    const double up = (a.x - b.x) * (p.y - b.y);
    const double side = (a.y - b.y) * (p.x - b.x);
    if (b.y <= p.y && !(a.y <= p.y)) isInside ^= up > side;
    if (a.y <= p.y && !(b.y <= p.y)) isInside ^= side > up;
  }
  return isInside;
}

TEST(PointInPolygon, isTheSameToTheBitForEverySizeAndAnyNumbers) {
  std::mt19937_64 random(45);
  std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
  const double odd[] = {0.0, 1.0, -1.0, 0.5, 1e-300, NAN, HUGE_VAL, -HUGE_VAL, 1e308, -1e308};
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
