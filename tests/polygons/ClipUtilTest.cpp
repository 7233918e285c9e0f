// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Polygons to rectangles and to polygons: {GPolygon, GPolygon2d, flat form} x {outside, inside,
// across, at an edge} and the choice of the algorithm. `CPolyClip` and the operations have tests of
// their own.

#include "shared/polygons/ClipUtil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "tests/polygons/PolygonTestSupport.h"
#include "tests/support/Failures.h"

namespace shr {
namespace {

using test::Counts;
using test::Points;

const Box2d BOX(0, 0, 4, 4);

struct FlatForm {
  Points points;
  Counts counts;
  bool operator==(const FlatForm&) const = default;
};

template <class Polygon>
FlatForm FlatOf(const Polygon& polygon, bool closed) {
  FlatForm flat;
  polygon.GetPolyPolygon(flat.points, flat.counts, closed);
  return flat;
}

TEST(ClipUtil, contoursInsideComeBackRotatedAndThoseOutsideDoNot) {
  const Points inside = {{1, 1}, {2, 1}, {3, 2}, {3, 3}, {2, 3}, {1, 2}};
  Points points = inside;
  points.insert(points.end(), {{5, 5}, {6, 5}, {6, 6}});
  GPolygon result(9, 9, 10, 10);
  GClipGPolygonToRect(GPolygon(points, Counts{6, 3}), BOX, result);
  Points rotated = inside;
  std::rotate(rotated.begin(), rotated.begin() + 4, rotated.end());
  EXPECT_EQ((FlatForm{rotated, {6}}), FlatOf(result, false));
}

TEST(ClipUtil, edgesOnTheBorderStayAndTheBoxNeedNotBeInOrder) {
  GPolygon result(0, 1, 2, 3);
  GClipGPolygonToRect(result, Box2d(4, 4, 0, 0), result);
  EXPECT_EQ(Box2d(0, 1, 2, 3), result.GetBBox());
  EXPECT_EQ(4u, result.GetTotalVertexCount());
  GPolygon2d result2d(-1, 1, 2, 3);
  GClipGPolygonToRect(result2d, Box2d(4, 4, 0, 0), result2d);
  EXPECT_EQ(Box2d(0, 1, 2, 3), result2d.GetBBox());
}

TEST(ClipUtil, contoursOfTwoPointsStayAndThoseOfOneDoNot) {
  const Points points = {{1, 1}, {3, 3}, {2, 2}, {-1, 1}, {1, 3}};
  const std::vector<unsigned int> counts = {2, 1, 2};
  GPolygon result;
  GClipGPolygonToRect(GPolygon(points, counts), Box2d(0, 0, 4, 4), result);
  ASSERT_EQ(result.GetNumContours(), 2u);
  EXPECT_EQ(result.GetContourVertexCount(0), 2u);
  EXPECT_GE(result.GetContourVertexCount(1), 2u) << "cut on the way there and back";
}

TEST(ClipUtil, holesAreClippedAsContoursAndLoseTheirFlag) {
  GPolygon polygon(-1, -1, 9, 9);
  polygon.Difference(GPolygon(1, 1, 8, 8));
  GPolygon result;
  GClipGPolygonToRect(polygon, BOX, result);
  ASSERT_EQ(2u, result.GetNumContours());
  EXPECT_FALSE(result.IsHole(0) || result.IsHole(1));
  EXPECT_EQ(16.0, std::abs(PolygonArea(result.GetContour(0))));
  EXPECT_EQ(9.0, std::abs(PolygonArea(result.GetContour(1))));
}

TEST(ClipUtil, allFormsOfTheSameCallAgree) {
  std::mt19937_64 random(21);
  for (int round = 0; round < 10; ++round) {
    const Points star = test::MakeStar({2, 2}, 4.0, 30, random);
    const Counts counts = {20, 10};
    const GPolygon clip(test::MakeStar({3, 3}, 4.0, 20, random));
    const GPolygon rectangle(BOX);
    for (const bool closed : {false, true}) {
      const GPolygon polygon(star, counts);
      GPolygon clipped;
      FlatForm flat;
      GClipGPolygonToRect(polygon, BOX, clipped);
      GClipGPolygonToRect(polygon, BOX, flat.points, flat.counts, closed);
      EXPECT_EQ(FlatOf(clipped, closed), flat);
      GClipPolyPolygonToRect(star.data(), counts.data(), 2, BOX, flat.points, flat.counts, closed);
      EXPECT_EQ(FlatOf(clipped, closed), flat);
      GClipPolyPolygonToGPolygon(star.data(), counts.data(), 2, rectangle, flat.points, flat.counts,
                                 closed);
      EXPECT_EQ(FlatOf(clipped, closed), flat);
      polygon.Intersection(clip, clipped);
      GClipGPolygonToGPolygon(polygon, clip, flat.points, flat.counts, closed);
      EXPECT_EQ(FlatOf(clipped, closed), flat);

      const GPolygon2d polygon2d(star, counts);
      GPolygon2d clipped2d;
      polygon2d.Intersection(BOX, clipped2d);
      GClipGPolygonToRect(polygon2d, BOX, flat.points, flat.counts, closed);
      EXPECT_EQ(FlatOf(clipped2d, closed), flat);
      GClipPolyPolygonToRectUsingGPolygon2d(star.data(), counts.data(), 2, BOX, flat.points,
                                            flat.counts, closed);
      EXPECT_EQ(FlatOf(clipped2d, closed), flat);
      GClipGPolygonToGPolygon(polygon2d, GPolygon2d(0, 0, 4, 4), flat.points, flat.counts, closed);
      EXPECT_EQ(FlatOf(clipped2d, closed), flat);
      const GPolygon2d clip2d(clip);
      polygon2d.Intersection(clip2d, clipped2d);
      GClipGPolygonToGPolygon(polygon2d, clip2d, flat.points, flat.counts, closed);
      EXPECT_EQ(FlatOf(clipped2d, closed), flat);
      GClipPolyPolygonToGPolygon(star.data(), counts.data(), 2, clip2d, flat.points, flat.counts,
                                 closed);
      EXPECT_EQ(FlatOf(clipped2d, closed), flat);
    }
  }
}

TEST(ClipUtil, missingArraysAreFaultsOfTheCaller) {
  FlatForm out;
  const unsigned int count = 3;
  EXPECT_EQ(L"[ClipUtil]", test::Failure([&] {
              GClipPolyPolygonToRect(nullptr, &count, 1, BOX, out.points, out.counts, true);
            }));
  EXPECT_EQ(L"[ClipUtil]", test::Failure([&] {
              GClipPolyPolygonToRectUsingGPolygon2d(out.points.data(), nullptr, 1, BOX, out.points,
                                                    out.counts, true);
            }));
}

}  // namespace
}  // namespace shr
