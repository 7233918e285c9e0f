// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the same answers as PointInPolygon for every kind of contour (stars, spikes, combs, tiles,
// nested and empty contours, slivers, far from the origin, tiny and huge, no numbers at all), asked
// at random, at vertices, on edges and a step of the last bit beside them; null pointers.

#include "shared/polygons/PointLocator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <ostream>
#include <random>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/FlatPolygon.h"
#include "tests/polygons/PolygonTestSupport.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

using Contours = test::FlatLines;

Contours MakeComb(int teeth) {
  Contours contours;
  Points comb = {{0, -1}};
  for (int i = 0; i < teeth; ++i) {
    comb.push_back(Vec2d(i, 0));
    comb.push_back(Vec2d(i + 0.5, 10));
  }
  comb.push_back(Vec2d(teeth, -1));
  contours.Add(comb);
  return contours;
}

Contours MakeTiles() {
  Contours contours;
  for (int i = 0; i < 9; ++i) {
    const Vec2d corner(i % 3, i / 3);
    contours.Add({corner, corner + Vec2d(1, 0), corner + Vec2d(1, 1), corner + Vec2d(0, 1)});
    contours.Add({});
  }
  contours.Add({{0.25, 0.25}, {0.25, 2.5}, {2.5, 2.5}, {2.5, 0.25}, {0.25, 0.25}});
  return contours;
}

Contours Transform(Contours contours, double scale, const Vec2d& offset) {
  for (Vec2d& point : contours.points) point = point * scale + offset;
  return contours;
}

/// Points anywhere around the contours and wherever a rounding error could show.
Points MakeQueries(const Contours& contours, std::mt19937_64& random) {
  Box2d bounds;
  bounds.BoundPoints(contours.points);
  Points queries = {{NAN, 0.0}, {0.0, NAN}, {HUGE_VAL, 0.5}, {-HUGE_VAL, 0.5}, {1e300, 0.5}, {}};
  std::uniform_real_distribution<double> unit(-0.1, 1.1);
  for (int i = 0; i < 300; ++i) {
    queries.push_back(bounds.Min() +
                      Vec2d(bounds.xRange() * unit(random), bounds.yRange() * unit(random)));
  }
  for (std::size_t i = 0; i < 100 && !contours.points.empty(); ++i) {
    const Vec2d a = contours.points[random() % contours.points.size()];
    const Vec2d b = contours.points[random() % contours.points.size()];
    for (const Vec2d& base :
         {a, a.Lerp(b, 0.5), a.Lerp(contours.points[i % contours.points.size()], unit(random)),
          Vec2d(a.x, b.y)}) {
      queries.push_back(base);
      queries.emplace_back(std::nextafter(base.x, 1e300), base.y);
      queries.emplace_back(base.x, std::nextafter(base.y, -1e300));
    }
  }
  return queries;
}

TEST(PointLocator, answersAsPointInPolygonToTheBit) {
  std::mt19937_64 random(46);
  const Contours stars = test::MakeStars(50, random);
  Contours withNan = stars;
  withNan.points[7].x = NAN;
  Contours withInfinity = stars;
  withInfinity.points[9].y = HUGE_VAL;
  Contours flat = stars;
  for (Vec2d& point : flat.points) point.y = 0.5;
  Contours almostFlat = stars;
  almostFlat.points[3].y = std::nextafter(almostFlat.points[2].y, 10.0);
  Contours steps;
  steps.Add({{0, 0}, {1, 0}, {1, 1e-200}, {2, 1e-200}, {2, 1}, {0, 1}});
  const struct {
    const char* name;
    Contours contours;
  } rows[] = {
      {"nothing", {}},
      {"a triangle", test::MakeStars(3, random)},
      {"stars of 50", stars},
      {"stars of 1000", test::MakeStars(1000, random)},
      {"comb", MakeComb(60)},
      {"tiles", MakeTiles()},
      {"far away", Transform(stars, 1e-6, Vec2d(1e6, -1e6))},
      {"a few units of the last place", Transform(stars, 1e-13, Vec2d(1000, 1000))},
      {"tiles far away", Transform(MakeTiles(), 0.1, Vec2d(1e9 + 0.1, 0.7))},
      {"tiny", Transform(stars, 1e-90, Vec2d())},
      {"beyond tiny", Transform(stars, 1e-200, Vec2d())},
      {"huge", Transform(stars, 1e99, Vec2d())},
      {"beyond huge", Transform(stars, 1e200, Vec2d())},
      {"no number", withNan},
      {"infinite", withInfinity},
      {"flat", flat},
      {"almost flat edge", almostFlat},
      {"flatter than a product can tell", steps},
  };
  int inside = 0;
  for (const auto& row : rows) {
    const PointLocator locator(row.contours.points, row.contours.counts);
    for (const Vec2d& query : MakeQueries(row.contours, random)) {
      const bool expected = PointInPolygon(query, row.contours.points, row.contours.counts);
      ASSERT_EQ(locator.Contains(query), expected) << row.name << ' ' << query;
      inside += expected;
    }
  }
  EXPECT_GT(inside, 3000);
}

TEST(PointLocator, takesOneContourAndRefusesArraysThatAreNotThere) {
  const Points square = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
  const unsigned int counts[] = {4, 1};
  PointLocator copy = PointLocator(square.data(), square.size());
  const PointLocator locator = copy;
  copy = PointLocator();
  EXPECT_TRUE(locator.Contains(Vec2d(0, 0.5)));
  EXPECT_FALSE(locator.Contains(Vec2d(1, 0.5)));
  EXPECT_FALSE(copy.Contains(Vec2d(0, 0.5)));
  EXPECT_TRUE(PointLocator(square.data(), counts, 1).Contains(Vec2d(0, 0.5)));
  EXPECT_THROW(PointLocator(nullptr, 1), InternalErrorException);
  EXPECT_THROW(PointLocator(nullptr, counts, 1), InternalErrorException);
  EXPECT_THROW(PointLocator(square, counts), InternalErrorException);
}

}  // namespace
}  // namespace shr
