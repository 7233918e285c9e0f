// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: vectors and arrays of them seen and changed in place; quaternions that turn the same way;
// matrices of both kinds as transposes of each other, there and back.

#include "shared/geometry/EigenMaps.h"

#include <gtest/gtest.h>

#include <vector>

namespace shr {
namespace {

static_assert(!EigenVector<Mat3d> && EigenVector<Vec2i> && EigenVector<Vec4f>);

TEST(EigenMaps, showVectorsInPlace) {
  Vec3d axis(1.0, 2.0, 2.0);
  ToEigen(axis).normalize();
  EXPECT_DOUBLE_EQ(axis.z, 2.0 / 3.0);
  const Vec2i point(3, -4);
  EXPECT_EQ(ToEigen(point).squaredNorm(), 25);
  EXPECT_EQ(FromEigen(Eigen::Vector2i(ToEigen(point) * 2)), Vec2i(6, -8));
  EXPECT_EQ(FromEigen(Eigen::Vector4f(1.0f, 2.0f, 3.0f, 4.0f)), Vec4f(1.0f, 2.0f, 3.0f, 4.0f));
  std::vector<Vec2d> points = {{0.0, 1.0}, {2.0, 3.0}, {4.0, 8.0}};
  ToEigen(std::span(points)).row(1).array() += 10.0;
  EXPECT_EQ(points[2], Vec2d(4.0, 18.0));
  const Eigen::Vector2d mean = ToEigen(std::span<const Vec2d>(points)).rowwise().mean();
  EXPECT_EQ(FromEigen(mean), Vec2d(2.0, 14.0));
  EXPECT_EQ(ToEigen(std::span<const Vec3d>()).cols(), 0);
}

TEST(EigenMaps, turnAndMoveAlike) {
  Quat4d turn(Vec3d(1.0, -2.0, 0.5), 0.7);
  const Vec3d vector(3.0, 1.0, -2.0);
  const Eigen::Vector3d turned = ToEigen(turn) * ToEigen(vector);
  EXPECT_LT(FromEigen(turned).Distance(turn * vector), 1e-14);
  EXPECT_EQ(FromEigen(Eigen::Quaterniond(ToEigen(turn))), turn);
  Mat4d matrix(turn);
  matrix.Translate(Vec3d(1.0, 2.0, 3.0), Mat4d::ORDER_POST);
  const Eigen::Matrix4d columns = ToEigen(matrix).transpose();
  const Eigen::Vector4d image = columns * ToEigen(vector).homogeneous();
  EXPECT_LT(FromEigen(Eigen::Vector3d(image.head<3>())).Distance(vector * matrix), 1e-14);
  EXPECT_EQ(FromEigen(Eigen::Matrix4d(ToEigen(matrix))), matrix);
  const Mat3d plane(1.0, 2.0, 0.0, 3.0, 4.0, 0.0, 5.0, 6.0, 1.0);
  EXPECT_EQ(ToEigen(plane)(2, 0), 5.0);
  EXPECT_EQ(FromEigen(Eigen::Matrix3d(ToEigen(plane))), plane);
}

}  // namespace
}  // namespace shr
