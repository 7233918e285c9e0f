// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the scales of ordinary, mirrored and degenerate rectangles with and without the aspect;
// results of every kind; the laws that centers meet, that the reverse undoes and that the matrix is
// the same mapping.

#include "shared/viewing/RectTransformer.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "shared/platform/WindowsTypes.h"

namespace shr {
namespace {

TEST(CRectTransformer, scalesFollowFromTheRectangles) {
  const Box2d source(0.0, 0.0, 10.0, 20.0);
  const struct {
    const char* name;
    Box2d source, destination;
    bool keepAspect;
    Vec2d scale;
  } rows[] = {
      {"each axis", source, Box2d(0.0, 0.0, 30.0, 20.0), false, {3.0, 1.0}},
      {"the smaller one", source, Box2d(0.0, 0.0, 30.0, 20.0), true, {1.0, 1.0}},
      {"mirrored", source, Box2d(0.0, 40.0, 5.0, 0.0), false, {0.5, -2.0}},
      {"mirrored with aspect", source, Box2d(0.0, 40.0, 5.0, 0.0), true, {0.5, -0.5}},
      {"no width", Box2d(5.0, 0.0, 5.0, 20.0), Box2d(0.0, 0.0, 7.0, 10.0), false, {0.5, 0.5}},
      {"no height", Box2d(0.0, 5.0, 10.0, 5.0), Box2d(0.0, 0.0, 7.0, 10.0), false, {0.7, 0.7}},
      {"next to nothing",
       Box2d(0.0, 0.0, 2e-16, 20.0),
       Box2d(0.0, 0.0, 7.0, 10.0),
       true,
       {0.5, 0.5}},
      {"a point", Box2d(3.0, 3.0, 3.0, 3.0), Box2d(0.0, 0.0, 7.0, 10.0), false, {1.0, 1.0}},
      {"onto a line", source, Box2d(1.0, 0.0, 1.0, 40.0), false, {0.0, 2.0}},
  };
  for (const auto& row : rows) {
    const CRectTransformer transformer(row.source, row.destination, row.keepAspect);
    EXPECT_EQ(transformer.GetScale(), row.scale) << row.name;
    EXPECT_EQ(transformer.Transform(row.source.Center()), row.destination.Center()) << row.name;
    EXPECT_EQ(transformer.ReverseTransform(row.destination.Center()), row.source.Center())
        << row.name;
  }
}

TEST(CRectTransformer, resultsHaveEveryKind) {
  const CRectTransformer transformer(Box2d(0.0, 0.0, 10.0, 10.0), Box2d(0.0, 25.0, 25.0, 0.0),
                                     false);
  const std::vector<Vec2d> points{{1.0, 1.0}, {-1.0, 13.0}, {1e300, 0.0}};
  std::vector<Vec2d> moved(3);
  std::vector<POINT> pixels(3);
  transformer.Transform(points.data(), moved.data(), points.size());
  transformer.Transform(points, pixels);
  EXPECT_EQ(moved[0], Vec2d(2.5, 22.5));
  EXPECT_EQ(moved[1], Vec2d(-2.5, -7.5));
  EXPECT_EQ(Vec2i(pixels[0]), Vec2i(3, 23));
  EXPECT_EQ(Vec2i(pixels[1]), Vec2i(-3, -8));
  EXPECT_EQ(Vec2i(pixels[2]), Vec2i(2147483647, 25));
  transformer.ReverseTransform(moved, moved);
  EXPECT_EQ(moved[1], points[1]);
  POINT pixel;
  transformer.ReverseTransform(Vec2d(20.0, 20.0), pixel);
  EXPECT_EQ(Vec2i(pixel), Vec2i(8, 2));

  Box2d box;
  transformer.Transform(Box2d(0.0, 0.0, 1.0, 2.0), box);
  EXPECT_EQ(box, Box2d(0.0, 25.0, 2.5, 20.0)) << "the corners stay corners";
  RECT rect;
  transformer.Transform(Box2d(0.0, 0.0, 1.0, 2.0), rect);
  EXPECT_EQ(Vec2i(rect.left, rect.top), Vec2i(0, 25));
  EXPECT_EQ(Vec2i(rect.right, rect.bottom), Vec2i(3, 20));
  transformer.ReverseTransform(box, box);
  EXPECT_EQ(box, Box2d(0.0, 0.0, 1.0, 2.0));
  transformer.ReverseTransform(Box2d(0.0, 25.0, 25.0, 0.0), rect);
  EXPECT_EQ(Vec2i(rect.right, rect.bottom), Vec2i(10, 10));
}

TEST(CRectTransformer, theMatrixIsTheSameMapping) {
  std::mt19937 random(6);
  std::uniform_real_distribution<double> anywhere(-1000.0, 1000.0);
  for (int round = 0; round < 500; ++round) {
    const auto box = [&] {
      return Box2d(anywhere(random), anywhere(random), anywhere(random), anywhere(random));
    };
    const CRectTransformer transformer(box(), box(), round % 2 == 0);
    const Mat3d matrix = transformer;
    const Vec2d point(anywhere(random), anywhere(random));
    const Vec2d moved = transformer.Transform(point);
    const double size = 1e-12 * (1.0 + moved.Length()) * (1.0 + transformer.GetScale().Length());
    ASSERT_LE((point * matrix).Distance(moved), size) << round;
    ASSERT_TRUE(matrix.IsAffine());
    const Vec2d& scale = transformer.GetScale();
    const double stretch = 1.0 / std::min(std::abs(scale.x), std::abs(scale.y));
    ASSERT_LE(transformer.ReverseTransform(moved).Distance(point), 1e-11 * (1.0 + stretch))
        << round;
  }
}

}  // namespace
}  // namespace shr
