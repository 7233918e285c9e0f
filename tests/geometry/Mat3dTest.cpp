// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what is known while compiling; products and order of operations against points moved one
// step at a time; inverse; parts of a transform and back, with shears, reflections and scales of 0;
// arrays against single points; rounding to integers; boxes by their two corners.

#include "shared/geometry/Mat3d.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <vector>

#include "shared/geometry/MathUtility.h"
#include "shared/platform/WindowsTypes.h"

namespace shr {
namespace {

constexpr Mat3d PROJECTIVE(1.0, 0.0, 0.5, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0);

constexpr Mat3d SixValues() {
  Mat3d m;
  m.Set(1.0, 2.0, 3.0, 4.0, 5.0, 6.0);
  return m;
}
static_assert(SixValues() == Mat3d(1.0, 2.0, 0.0, 3.0, 4.0, 0.0, 5.0, 6.0, 1.0));
static_assert(Vec2d(1.0, 1.0) * SixValues() == Vec2d(9.0, 12.0));
static_assert(Mat3d().Equals(Mat3d::ZERO, 0.0) && Mat3d::IDENTITY.IsIdentity());
static_assert(SixValues().Transpose().GetRow(0) == Vec3d(1.0, 3.0, 5.0));
static_assert(SixValues().Det2() == -2.0 && SixValues().Det3() == -2.0);
static_assert(SixValues() * SixValues().Inverse() == Mat3d::IDENTITY);
static_assert(Mat3d::ZERO.Inverse() == Mat3d::ZERO);
static_assert(Vec2d(2.0, 3.0) * PROJECTIVE == Vec2d(1.0, 1.5));
static_assert(PROJECTIVE * Vec3d(2.0, 4.0, 6.0) == Vec3d(5.0, 4.0, 6.0));
static_assert(PROJECTIVE.Inverse() * PROJECTIVE == Mat3d::IDENTITY);
static_assert(SixValues().DirMult(Vec2d::UNIT_Y) == Vec2d(3.0, 4.0));

Mat3d RandomMatrix(std::mt19937& random) {
  std::uniform_real_distribution<double> element(-3.0, 3.0);
  Mat3d m;
  for (int row = 0; row < 3; ++row) {
    m.SetRow(row, Vec3d(element(random), element(random), element(random)));
  }
  return m;
}

Mat3d RandomAffine(std::mt19937& random) {
  Mat3d m = RandomMatrix(random);
  m.SetCol(2, Vec3d::UNIT_Z);
  return m;
}

TEST(Mat3d, productsSendPointsThroughTheLeftMatrixFirst) {
  std::mt19937 random(1);
  for (int i = 0; i < 200; ++i) {
    const Mat3d a = RandomMatrix(random);
    const Mat3d b = RandomMatrix(random);
    const Vec3d row = RandomMatrix(random).GetCol(1);
    ASSERT_LT(((row * a) * b).Distance(row * (a * b)), 1e-13) << a << b;
    ASSERT_LT((a * (b * row)).Distance((a * b) * row), 1e-13) << a << b;
    ASSERT_TRUE((a * b).Transpose().Equals(b.Transpose() * a.Transpose(), 1e-14)) << a << b;
    ASSERT_NEAR((a * b).Det3(), a.Det3() * b.Det3(), 1e-11) << a << b;
    Mat3d post = a;
    Mat3d pre = b;
    ASSERT_EQ(post.PostMultiply(b), pre.PreMultiply(a));
  }
}

TEST(Mat3d, operationsComeBeforeOrAfterWhatIsThere) {
  const Mat3d m = SixValues();
  const Vec2d p(0.5, -2.0);
  const auto apply = [&](auto operation) {
    Mat3d result = m;
    operation(result);
    return p * result;
  };
  using M = Mat3d;
  const Vec2d t(10.0, 20.0);
  EXPECT_EQ(apply([&](M& r) { r.Translate(t, M::ORDER_PRE); }), (p + t) * m);
  EXPECT_EQ(apply([&](M& r) { r.Translate(t, M::ORDER_POST); }), p * m + t);
  EXPECT_EQ(apply([&](M& r) { r.Scale(t, M::ORDER_PRE); }), (p * t) * m);
  EXPECT_EQ(apply([&](M& r) { r.Scale(t, static_cast<M::Order>(7)); }), (p * m) * t);
  const Vec2d turned = apply([&](M& r) { r.Rotate(HALF_PI, M::ORDER_POST); });
  EXPECT_LT(turned.Distance(Vec2d(-(p * m).y, (p * m).x)), 1e-15);
}

TEST(Mat3d, inverseLeadsPointsBack) {
  std::mt19937 random(2);
  for (int i = 0; i < 200; ++i) {
    const Mat3d m = i % 2 == 0 ? RandomAffine(random) : RandomMatrix(random);
    Mat3d inverse;
    ASSERT_TRUE(m.Inverse(inverse)) << m;
    ASSERT_EQ(inverse.IsAffine(), m.IsAffine());
    ASSERT_TRUE((m * inverse).Equals(Mat3d::IDENTITY, 1e-10)) << m;
  }
  Mat3d kept = SixValues();
  EXPECT_FALSE(Mat3d(1.0, 2.0, 0.0, 2.0, 4.0, 0.0, 5.0, 6.0, 1.0).Inverse(kept));
  EXPECT_FALSE(Mat3d::MakeTranslation(Vec2d(INFINITY, 0.0)).Inverse(kept));
  EXPECT_EQ(kept, SixValues());
}

TEST(Mat3d, partsOfATransformMakeItAgain) {
  std::mt19937 random(3);
  const Mat3d special[] = {Mat3d::IDENTITY,
                           Mat3d::ZERO,
                           Mat3d::MakeScale(Vec2d(3.0, 0.0)),
                           Mat3d::MakeScale(Vec2d(-2.0, 1.0)),
                           Mat3d::MakeScale(Vec2d(-1.0, -1.0)),
                           Mat3d(1.0, 1.0, 0.0, 1.0, 1.0, 0.0, 0.0, 0.0, 1.0),
                           Mat3d(0.0, 1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0),
                           Mat3d(1.0, 0.0, 0.0, 1e9, 1.0, 0.0, 0.0, 0.0, 1.0),
                           Mat3d(1e-200, 2e-200, 0.0, 3e-200, 1e-200, 0.0, 0.0, 0.0, 1.0)};
  for (int i = 0; i < 300; ++i) {
    Mat3d m = RandomAffine(random);
    if (i < static_cast<int>(std::size(special))) m = special[i];
    m.SetCol(2, Vec3d::UNIT_Z);
    const Vec2d center(i % 7, i % 5);
    Vec2d translation;
    Vec2d scale;
    double rotation = 0.0;
    double orientation = 0.0;
    m.GetTransform(translation, rotation, scale, orientation, center);
    Mat3d again;
    again.SetTransform(translation, rotation, scale, orientation, center);
    double largest = 0.0;
    for (const double element : m.Elements()) largest = std::max(largest, std::abs(element));
    const double linear =
        std::max({std::abs(m[0][0]), std::abs(m[0][1]), std::abs(m[1][0]), std::abs(m[1][1])});
    ASSERT_TRUE(again.Equals(m, 1e-14 * std::max(1.0, largest))) << m << again;
    ASSERT_NEAR(again[1][0], m[1][0], 1e-14 * linear) << m << again;
    ASSERT_EQ(scale.x * scale.y < 0.0, m.Det2() < 0.0) << m << scale;
  }
}

TEST(Mat3d, partsOfATurnedScaleAreThoseItWasMadeOf) {
  Mat3d m;
  m.SetTransform(Vec2d(5.0, 6.0), 0.5, Vec2d(2.0, 3.0));
  Vec2d translation;
  Vec2d scale;
  double rotation = 0.0;
  double orientation = 1.0;
  m.GetTransform(translation, rotation, scale, orientation);
  EXPECT_EQ(translation, Vec2d(5.0, 6.0));
  EXPECT_NEAR(rotation, 0.5, 1e-15);
  EXPECT_LT(scale.Distance(Vec2d(2.0, 3.0)), 1e-15);
  EXPECT_EQ(orientation, 0.0);
  EXPECT_NEAR(m.GetRotation2(), 0.5, 1e-15);
  EXPECT_NEAR(m.GetAspect2(), 2.0 / 3.0, 1e-15);
  EXPECT_FALSE(m.IsSheared2(1e-12));
  m.SetTransform(Vec2d(), 0.5, Vec2d(2.0, 3.0), 0.25);
  EXPECT_TRUE(m.IsSheared2(1e-12));
}

TEST(Mat3d, arraysGoThroughAsSinglePointsDo) {
  std::mt19937 random(4);
  std::vector<Vec2d> points(23);
  for (Vec2d& point : points) point = Vec2d(RandomMatrix(random)[0]);
  for (const Mat3d& m : {Mat3d::IDENTITY, RandomAffine(random), RandomMatrix(random)}) {
    std::vector<Vec2d> images(points.size());
    m.Transform(points, images);
    std::vector<POINT> pixels(points.size());
    m.Transform(points, pixels);
    std::vector<Vec2d> moved(points.size());
    m.Transform(pixels, moved);
    for (std::size_t i = 0; i < points.size(); ++i) {
      ASSERT_EQ(images[i], points[i] * m);
      ASSERT_NEAR(pixels[i].x, images[i].x, 0.5);
      ASSERT_NEAR(pixels[i].y, images[i].y, 0.5);
      ASSERT_EQ(moved[i], Vec2d(Vec2i(pixels[i])) * m);
    }
    std::vector<Vec2d> inPlace = points;
    m.Transform(inPlace.data(), inPlace.data(), inPlace.size());
    ASSERT_EQ(inPlace, images);
  }
}

TEST(Mat3d, integersAreRoundedToTheNearestAndStopAtTheirRange) {
  const struct {
    double value;
    int expected;
  } rows[] = {{0.5, 1},
              {-0.5, -1},
              {1.5, 2},
              {-1.5, -2},
              {0.49999999999999994, 0},
              {-0.49999999999999994, 0},
              {2147483646.4999998, 2147483646},
              {NAN, 0},
              {1e300, 2147483647},
              {2147483646.5, 2147483647},
              {-INFINITY, -2147483647 - 1}};
  for (const auto& row : rows) {
    const Vec2d point(row.value, 0.0);
    Vec2i image;
    Mat3d::IDENTITY.Transform(&point, &image, 1);
    EXPECT_EQ(image.x, row.expected) << row.value;
  }
}

TEST(Mat3d, boxesGoByTheirTwoCorners) {
  const Box2d box(1.0, 2.0, 3.0, 5.0);
  const Mat3d turned(-1.0, 0.0, 0.0, 0.0, -1.0, 0.0, 0.5, 0.0, 1.0);
  Box2d image;
  turned.Transform(box, image);
  EXPECT_EQ(image, Box2d(-0.5, -2.0, -2.5, -5.0));
  RECT pixels;
  turned.Transform(box, pixels);
  EXPECT_EQ(pixels.left, -1);
  EXPECT_EQ(pixels.top, -2);
  EXPECT_EQ(pixels.right, -3);
  EXPECT_EQ(pixels.bottom, -5);
  std::ostringstream text;
  text << turned;
  EXPECT_EQ(text.str(), "[-1, 0, 0; 0, -1, 0; 0.5, 0, 1]");
}

}  // namespace
}  // namespace shr
