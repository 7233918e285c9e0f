// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: arrays of every pair of point types, of every length up to some vectors of the processor
// and in place, against single points to the bit; sums of all terms; numbers that are not finite;
// boxes by their two corners.

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "shared/geometry/Mat4.h"
#include "shared/geometry/MathUtility.h"
#include "shared/platform/WindowsTypes.h"
#include "tests/geometry/RandomMatrices.h"

namespace shr {
namespace {

/// True when both have the same bits, or a NaN in the same places.
template <class Point>
bool IsSame(const Point& a, const Point& b) {
  bool same = true;
  Point::ForEach(
      [&same](const auto& x, const auto& y) {
        same = same && ((x != x && y != y) || std::memcmp(&x, &y, sizeof x) == 0);
      },
      a, b);
  return same;
}

std::vector<Vec3d> RandomPoints(std::size_t count, std::mt19937& random) {
  std::normal_distribution<double> number(0.0, 1000.0);
  std::vector<Vec3d> points(count);
  for (Vec3d& p : points) p.Set(number(random), number(random), number(random));
  return points;
}

TEST(Mat4Transform, arraysOfEveryLengthGiveTheBitsOfSinglePoints) {
  std::mt19937 random(1);
  for (std::size_t count = 0; count < 40; ++count) {
    std::vector<Vec3d> points = RandomPoints(count, random);
    if (count > 3) points[count / 2].y = count % 2 == 0 ? INFINITY : NAN;
    for (int type = Mat4d::TYPE_IDENTITY; type <= Mat4d::TYPE_COMPLEX; ++type) {
      const Mat4d m = RandomOfType<Mat4d>(type, random);
      std::vector<Vec3d> images(count + 1, Vec3d(7.0, 7.0, 7.0));
      m.Transform(points.data(), images.data(), count);
      for (std::size_t i = 0; i < count; ++i) {
        ASSERT_TRUE(IsSame(images[i], points[i] * m)) << m << points[i] << images[i];
      }
      ASSERT_EQ(images[count], Vec3d(7.0, 7.0, 7.0)) << "written beyond the end";
      std::vector<Vec3d> inPlace = points;
      m.Transform(inPlace, inPlace);
      for (std::size_t i = 0; i < count; ++i) ASSERT_TRUE(IsSame(inPlace[i], images[i]));
    }
  }
}

TEST(Mat4Transform, largeArraysGiveTheBitsOfSinglePointsWhereverTheyBegin) {
  std::mt19937 random(5);
  const std::size_t count = 80010;
  const std::vector<Vec3d> points = RandomPoints(count, random);
  for (const int type : {Mat4d::TYPE_2D, Mat4d::TYPE_AFFINE, Mat4d::TYPE_COMPLEX}) {
    const Mat4d m = RandomOfType<Mat4d>(type, random);
    std::vector<Vec3d> images(count + 1);
    const std::size_t begin = static_cast<std::size_t>(type - Mat4d::TYPE_2D);
    m.Transform(points.data(), images.data() + begin, count - 2);
    for (std::size_t i = 0; i < count - 2; ++i) {
      if (!IsSame(images[begin + i], points[i] * m)) FAIL() << i << m;
    }
    ASSERT_EQ(images[begin + count - 2], Vec3d::ZERO);
  }
}

TEST(Mat4Transform, pointsAreTheSumsOverAllTerms) {
  std::mt19937 random(2);
  for (int i = 0; i < 100; ++i) {
    const Mat4d m = RandomOfType<Mat4d>(1 + i % 4, random);
    const Vec3d p = RandomPoints(1, random)[0];
    const Vec4d row = Vec4d(p, 1.0) * m;
    ASSERT_LT((Vec3d(&row.x) / row.w).Distance(p * m), 1e-9 * (p * m).Length()) << m << p;
    ASSERT_LT((p * m - Vec3d::ZERO * m).Distance(m.DirMult(p)), i % 4 == 3 ? INFINITY : 1e-9)
        << m << p;
  }
}

template <class T>
void CheckPointTypes() {
  std::mt19937 random(3);
  std::vector<Vec3<T>> points;
  std::vector<Vec2<T>> flat;
  for (const Vec3d& p : RandomPoints(9, random)) {
    points.emplace_back(p);
    flat.emplace_back(static_cast<T>(p.x), static_cast<T>(p.y));
  }
  std::vector<POINT> pixels(points.size());
  Mat4<T>::IDENTITY.Transform(flat, pixels);
  for (int type = Mat4d::TYPE_IDENTITY; type <= Mat4d::TYPE_COMPLEX; ++type) {
    const Mat4<T> m = RandomOfType<Mat4<T>>(type, random);
    std::vector<Vec3<T>> images(points.size());
    std::vector<Vec2d> doubles(points.size());
    std::vector<Vec2f> floats(points.size());
    std::vector<Vec2i> integers(points.size());
    std::vector<POINT> spots(points.size());
    std::vector<Vec2<T>> flatImages(points.size());
    std::vector<Vec2i> flatIntegers(points.size());
    std::vector<POINT> flatSpots(points.size());
    std::vector<Vec2<T>> fromPixels(points.size());
    m.Transform(points, images);
    m.Transform(points, doubles);
    m.Transform(points, floats);
    m.Transform(points, integers);
    m.Transform(points, spots);
    m.Transform(flat, flatImages);
    m.Transform(flat, flatIntegers);
    m.Transform(flat, flatSpots);
    m.Transform(pixels, fromPixels);
    for (std::size_t i = 0; i < points.size(); ++i) {
      const Vec3<T> image = points[i] * m;
      ASSERT_TRUE(IsSame(images[i], image));
      ASSERT_TRUE(IsSame(doubles[i], Vec2d(image.x, image.y)));
      ASSERT_TRUE(IsSame(floats[i], Vec2f(Vec2d(image.x, image.y))));
      ASSERT_NEAR(integers[i].x, image.x, 0.5);
      ASSERT_NEAR(integers[i].y, image.y, 0.5);
      ASSERT_EQ(Vec2i(spots[i]), integers[i]);
      ASSERT_EQ(flatImages[i], flat[i] * m) << m;
      ASSERT_NEAR(flatIntegers[i].x, flatImages[i].x, 0.5);
      ASSERT_EQ(Vec2i(flatSpots[i]), flatIntegers[i]);
      const Vec2<T> pixel(static_cast<T>(pixels[i].x), static_cast<T>(pixels[i].y));
      ASSERT_EQ(fromPixels[i], pixel * m) << m;
    }
  }
}

TEST(Mat4Transform, everyPairOfPointTypesGoesThroughTheSameSums) {
  CheckPointTypes<double>();
  CheckPointTypes<float>();
}

TEST(Mat4Transform, boxesGoByTheirTwoCorners) {
  Mat4d m = Mat4d::IDENTITY;
  m[0][0] = m[1][1] = -1.0;
  Box2d flat(1.0, 2.0, 3.0, 5.0);
  m.Transform(flat, flat);
  EXPECT_EQ(flat, Box2d(-1.0, -2.0, -3.0, -5.0));
  Box3d box;
  m.Transform(Box3d(0.0, 0.0, 0.0, 1.0, 2.0, 3.0), box);
  EXPECT_EQ(box, Box3d(0.0, 0.0, 0.0, -1.0, -2.0, 3.0));
  RECT pixels;
  m.Transform(Box2d(0.5, 1.5, 2.6, 3.0), pixels);
  EXPECT_EQ(pixels.left, -1);
  EXPECT_EQ(pixels.top, -2);
  EXPECT_EQ(pixels.right, -3);
  EXPECT_EQ(pixels.bottom, -3);
}

}  // namespace
}  // namespace shr
