// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: known shapes against boxes that hold, miss, touch, cut and share edges with them; boxes
// without area; contours that touch or cross themselves; huge numbers; spikes; every country
// against windows of many sizes, where areas must equal those of an independent integral and
// sampled points must stay on their side.

#include <gtest/gtest.h>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "tests/polygons/PolygonTestSupport.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

double AreaOf(const GPolygon2d& polygon) {
  Points points;
  Counts counts;
  polygon.GetPolyPolygon(points, counts, true);
  return -PolygonArea(points, counts);
}

/// Expects closed rings inside the box, bounded by what the polygon says.
void ExpectSound(const GPolygon2d& polygon, const Box2d& box, const char* name) {
  Points points;
  Counts counts;
  polygon.GetPolyPolygon(points, counts, true);
  Box2d bounds;
  bounds.BoundPoints(points);
  EXPECT_EQ(polygon.GetBBox(), bounds) << name;
  std::size_t first = 0;
  for (const unsigned int count : counts) {
    ASSERT_GE(count, 4u) << name;
    EXPECT_EQ(points[first], points[first + count - 1]) << name;
    for (std::size_t i = first; i < first + count; ++i)
      ASSERT_TRUE(box.Contains(points[i])) << name << points[i];
    first += count;
  }
}

TEST(GPolygon2dClip, keepsTheCommonPart) {
  const Points letterU = {{0, 0}, {0, 9}, {3, 9}, {3, 3}, {6, 3}, {6, 9}, {9, 9}, {9, 0}};
  const Points pinched = {{0, 0}, {4, 4}, {0, 8}, {8, 8}, {4, 4}, {8, 0}};
  const Points eight = {{0, 0}, {8, 8}, {8, 0}, {0, 8}};
  const Points bridgedHole = {{0, 0}, {0, 9}, {9, 9}, {9, 0}, {0, 0},
                              {3, 3}, {6, 3}, {6, 6}, {3, 6}, {3, 3}};
  const struct {
    const char* name;
    Points contour;
    Box2d box;
    double area;
    std::size_t minContours;
  } rows[] = {
      {"box around", letterU, {-1, -1, 10, 10}, 63, 1},
      {"box equal to the bounds", letterU, {0, 0, 9, 9}, 63, 1},
      {"box inside", letterU, {1, 1, 2, 2}, 1, 1},
      {"box aside", letterU, {10, 0, 12, 9}, 0, 0},
      {"box touches an edge", letterU, {9, 0, 12, 9}, 0, 0},
      {"box touches a corner", letterU, {9, 9, 12, 12}, 0, 0},
      {"box in the notch", letterU, {4, 4, 5, 5}, 0, 0},
      {"box across both arms", letterU, {-1, 5, 10, 7}, 12, 2},
      {"box shares the notch's floor", letterU, {0, 3, 9, 9}, 36, 2},
      {"box along an inner edge", letterU, {3, 0, 6, 9}, 9, 1},
      {"pinched contour cut at the pinch", pinched, {0, 4, 8, 8}, 16, 1},
      {"pinched contour cut elsewhere", pinched, {0, 2, 8, 9}, 20, 1},
      {"contour that crosses itself", eight, {0, 0, 4, 8}, 16, 1},
      {"hole at the end of a bridge", bridgedHole, {0, 0, 5, 9}, 45 - 6, 1},
      {"spike only", {{0, 0}, {4, 0}, {8, 0}, {4, 0}}, {0, -1, 9, 1}, 0, 0},
      {"box without width", letterU, {2, 0, 2, 9}, 0, 0},
      {"inverted box", letterU, {9, 9, 0, 0}, 0, 0},
      {"empty box", letterU, Box2d(), 0, 0},
      {"box without numbers", letterU, {NAN, 0, 9, 9}, 0, 0},
      {"no bounds", letterU, Box2d::UNIVERSE, 63, 1},
  };
  for (const auto& row : rows) {
    const GPolygon2d polygon(row.contour);
    GPolygon2d result;
    polygon.Intersection(row.box, result);
    EXPECT_NEAR(std::abs(AreaOf(result)), row.area, 1e-12) << row.name;
    EXPECT_GE(result.GetNumContours(), row.minContours) << row.name;
    EXPECT_EQ(result.GetNumContours() == 0, row.minContours == 0) << row.name;
    ExpectSound(result, row.box, row.name);
    GPolygon2d inPlace(polygon);
    inPlace.Intersection(row.box);
    EXPECT_EQ(AreaOf(inPlace), AreaOf(result)) << row.name;
  }
}

TEST(GPolygon2dClip, nestedPolygonsStayApartAndInOrder) {
  GPolygon2d polygon(Points{{0, 0},
                            {0, 9},
                            {9, 9},
                            {9, 0},
                            {20, 20},
                            {20, 21},
                            {21, 21},
                            {3, 3},
                            {3, 6},
                            {6, 6},
                            {6, 3}},
                     Counts{4, 3, 4});
  polygon.Intersection(Box2d(-1, -1, 5, 10));
  ASSERT_EQ(polygon.GetNumContours(), 2u);
  EXPECT_EQ(AreaOf(polygon), 45.0 + 6.0);
  Points points;
  Counts counts;
  polygon.GetPolyPolygon(points, counts, false);
  EXPECT_EQ(counts, (Counts{4, 4}));
  EXPECT_EQ(points[counts[0]].x >= 3.0, true);
}

TEST(GPolygon2dClip, hugeNumbersGiveFiniteParts) {
  for (const double size : {1e150, 1e300, DBL_MAX}) {
    GPolygon2d polygon(Points{{-size, -size}, {-size, size}, {size, size}, {size, -size}});
    polygon.Intersection(Box2d(-1, -2, 3, 4));
    EXPECT_EQ(AreaOf(polygon), 24.0) << size;
    ExpectSound(polygon, Box2d(-1, -2, 3, 4), "huge");
  }
}

TEST(GPolygon2dClip, spikesAreRemoved) {
  const struct {
    const char* name;
    Points contour;
  } rows[] = {
      {"outward from a corner", {{0, 0}, {0, 4}, {4, 4}, {8, 8}, {4, 4}, {4, 0}}},
      {"outward from an edge", {{0, 0}, {0, 4}, {2, 4}, {2, 9}, {2, 4}, {4, 4}, {4, 0}}},
      {"inward from an edge", {{0, 0}, {0, 4}, {2, 4}, {2, 1}, {2, 4}, {4, 4}, {4, 0}}},
      {"along an edge", {{0, 0}, {0, 9}, {0, 4}, {4, 4}, {4, 0}}},
      {"of several points", {{0, 0}, {0, 4}, {4, 4}, {6, 6}, {8, 8}, {6, 6}, {4, 4}, {4, 0}}},
  };
  for (const auto& row : rows) {
    GPolygon2d polygon(row.contour);
    polygon.RemoveZeroWidthReturnPaths();
    EXPECT_EQ(polygon.GetBBox(), Box2d(0, 0, 4, 4)) << row.name;
    EXPECT_EQ(AreaOf(polygon), 16.0) << row.name;
    EXPECT_TRUE(polygon.IsRectangle()) << row.name;
  }
}

/// The areas of every country in every window of a grid.
void ExpectCountryAreas(const std::vector<test::Outline>& outlines, double step) {
  double total = 0.0;
  double whole = 0.0;
  for (const test::Outline& outline : outlines) {
    const GPolygon2d country(outline.points);
    const Box2d bounds = country.GetBBox();
    whole += AreaOf(country);
    const double firstX = std::floor(bounds.xMin() / step) * step;
    const double firstY = std::floor(bounds.yMin() / step) * step;
    for (double x = firstX; x < bounds.xMax(); x += step) {
      for (double y = firstY; y < bounds.yMax(); y += step) {
        const Box2d window(x, y, x + step, y + step);
        GPolygon2d part;
        country.Intersection(window, part);
        const double expected = std::abs(test::AreaInBox(outline.points, window));
        ASSERT_NEAR(AreaOf(part), expected, 1e-9 * step * step) << outline.name << window;
        ExpectSound(part, window, outline.name.c_str());
        total += AreaOf(part);
      }
    }
  }
  EXPECT_NEAR(total, whole, 1e-9 * whole) << step;
}

TEST(GPolygon2dClip, countriesFillTheWindowsOfEveryGrid) {
  const std::vector<test::Outline> outlines = test::ReadOutlines("countries-110m.txt");
  ASSERT_EQ(outlines.size(), 289u);
  ExpectCountryAreas(outlines, 90.0);
  ExpectCountryAreas(outlines, 17.3);
}

TEST(GPolygon2dClip, detailedCountriesKeepAreaAndSidesInWindows) {
  const std::vector<test::Outline> outlines = test::ReadOutlines("countries-50m.txt");
  ASSERT_EQ(outlines.size(), 1631u);
  std::mt19937_64 random(11);
  for (const Box2d& window :
       {Box2d(-25, 34, 45, 72), Box2d(95, -11, 141, 20), Box2d(-180, -90, 0, 0)}) {
    std::uniform_real_distribution<double> x(window.xMin(), window.xMax());
    std::uniform_real_distribution<double> y(window.yMin(), window.yMax());
    Points samples(20);
    for (const test::Outline& outline : outlines) {
      const GPolygon2d country(outline.points);
      GPolygon2d part;
      country.Intersection(window, part);
      const double expected = std::abs(test::AreaInBox(outline.points, window));
      ASSERT_NEAR(AreaOf(part), expected, 1e-9) << outline.name << window;
      ExpectSound(part, window, outline.name.c_str());
      for (Vec2d& point : samples) {
        point.Set(x(random), y(random));
        ASSERT_EQ(part.PointInside(point), country.PointInside(point)) << outline.name << point;
      }
    }
  }
}

}  // namespace
}  // namespace shr
