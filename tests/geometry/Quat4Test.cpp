// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what is known while compiling; axis and angle, matrices and pairs of directions, there and
// back; the algebra of rotations; interpolation with its linear stretch; both precisions.

#include "shared/geometry/Quat4.h"

#include <gtest/gtest.h>

#include <random>

#include "shared/geometry/Mat4.h"
#include "shared/geometry/MathUtility.h"

namespace shr {
namespace {

static_assert(Quat4d() == Quat4d::IDENTITY && Quat4d::IDENTITY.IsIdentity());
static_assert(Quat4d(0.0, 0.0, 1.0, 1.0) * Vec3d::UNIT_X == Vec3d::UNIT_Y);
static_assert(Quat4d(1.0, 2.0, 3.0, 4.0).UnitInverse() == Quat4d(-1.0, -2.0, -3.0, 4.0));
static_assert(Quat4d(Quat4f(1.0f, 2.0f, 3.0f, 4.0f)) == Quat4d(1.0, 2.0, 3.0, 4.0));
static_assert(Quat4d(0.0, 0.0, 0.0, 2.0).Inverse() == Quat4d(0.0, 0.0, 0.0, 0.5));
static_assert(Quat4d::IDENTITY.IsUnit(1e-8) && !Quat4d(0.0, 0.0, 0.0, 1.1).IsUnit(0.1));
static_assert(Quat4d::ZERO * Vec3d::UNIT_X == Vec3d::UNIT_X);

Vec3d RandomVector(std::mt19937& random) {
  std::normal_distribution<double> number;
  return Vec3d(number(random), number(random), number(random));
}

Quat4d RandomRotation(std::mt19937& random) {
  return Quat4d(RandomVector(random), std::uniform_real_distribution<double>(0.0, TWO_PI)(random));
}

/// True when both write the same rotation.
bool IsSameRotation(const Quat4d& a, const Quat4d& b, double tolerance) {
  return a.Equals(b, tolerance) || a.Equals(-b, tolerance);
}

TEST(Quat4, axisAndAngleComeBack) {
  std::mt19937 random(1);
  for (int i = 0; i < 200; ++i) {
    const Vec3d axis = RandomVector(random);
    const double angle = std::uniform_real_distribution<double>(0.01, 6.2)(random);
    Vec3d axisAgain;
    double angleAgain = 0.0;
    Quat4d(axis, angle).Get(axisAgain, angleAgain);
    ASSERT_NEAR(angleAgain, angle, 1e-13);
    ASSERT_LT(axisAgain.Distance(axis.Normalized()), 1e-13);
  }
  Vec3d axis;
  double angle = 1.0;
  Quat4d::IDENTITY.Get(axis, angle);
  EXPECT_EQ(axis, Vec3d::UNIT_Z);
  EXPECT_EQ(angle, 0.0);
  Quat4d(1e-8, 0.0, 0.0, 1.0).Get(axis, angle);
  EXPECT_EQ(axis, Vec3d::UNIT_Z);
  Vec3f floatAxis;
  float floatAngle = 0.0f;
  Quat4f(Vec3f(0.0f, 2.0f, 0.0f), 1.0f).Get(floatAxis, floatAngle);
  EXPECT_NEAR(floatAngle, 1.0f, 1e-6f);
}

TEST(Quat4, matricesTurnVectorsAlikeAndComeBack) {
  std::mt19937 random(2);
  for (int i = 0; i < 300; ++i) {
    Quat4d q = RandomRotation(random);
    if (i < 40) q = Quat4d(i % 4 == 0, i % 4 == 1, i % 4 == 2, i % 4 == 3 ? 1.0 : i * 1e-10);
    q.Normalize();
    const Vec3d v = RandomVector(random);
    Mat4d m;
    q.Get(m);
    ASSERT_LT((v * m).Distance(q * v), 1e-14) << q;
    ASSERT_NEAR((q * v).Length(), v.Length(), 1e-14) << q;
    ASSERT_TRUE(IsSameRotation(Quat4d(m), q, 1e-15)) << q << Quat4d(m);
    const Quat4d other = RandomRotation(random);
    ASSERT_LT(((q * other) * v).Distance(q * (other * v)), 1e-14);
    ASSERT_TRUE(Mat4d(q * other).Equals(Mat4d(other) * Mat4d(q), 1e-15));
  }
}

TEST(Quat4, inverseAndLengthFollowTheirLaws) {
  std::mt19937 random(3);
  for (int i = 0; i < 100; ++i) {
    const Quat4d unit = RandomRotation(random);
    const Quat4d q(unit.x * 3.0, unit.y * 3.0, unit.z * 3.0, unit.w * 3.0);
    const Vec3d v = RandomVector(random);
    ASSERT_TRUE((q * q.Inverse()).Equals(Quat4d::IDENTITY, 1e-15)) << q;
    ASSERT_LT((q * v).Distance(unit * v), 1e-14) << q;
    ASSERT_TRUE(unit.Inverse().Equals(unit.UnitInverse(), 1e-15));
    ASSERT_NEAR(q.Norm(), 3.0, 1e-14);
    Quat4d normal = q;
    ASSERT_TRUE(normal.Normalize());
    ASSERT_TRUE(normal.Equals(unit, 1e-15));
    Quat4d thrice = Quat4d(Vec3d::UNIT_Y, 0.01 * i);
    thrice.ScaleAngle(3.0);
    ASSERT_TRUE(IsSameRotation(thrice, Quat4d(Vec3d::UNIT_Y, 0.03 * i), 1e-13)) << i;
  }
  Quat4d zero = Quat4d::ZERO;
  EXPECT_FALSE(zero.Normalize());
  EXPECT_EQ(zero, Quat4d::ZERO);
}

TEST(Quat4, takesOneDirectionToAnother) {
  std::mt19937 random(4);
  for (int i = 0; i < 300; ++i) {
    const Vec3d from = RandomVector(random);
    Vec3d to = RandomVector(random);
    if (i % 3 == 1) to = -2.0 * from + RandomVector(random) * std::pow(0.1, i / 10);
    if (i % 3 == 2) to = 3.0 * from + RandomVector(random) * std::pow(0.1, i / 10);
    const Quat4d q(from, to);
    ASSERT_NEAR(q.Norm(), 1.0, 1e-14) << from << to;
    ASSERT_LT((q * from.Normalized()).Distance(to.Normalized()), 2e-15) << from << to;
    // The shortest rotation has its axis perpendicular to both.
    ASSERT_NEAR(Vec3d(q.x, q.y, q.z).Dot(from) / from.Length(), 0.0, 1e-14) << from << to;
  }
  EXPECT_TRUE(Quat4d(Vec3d::UNIT_X, Vec3d::UNIT_X).IsIdentity());
  EXPECT_TRUE(Quat4d(Vec3d::ZERO, Vec3d::UNIT_X).IsIdentity());
  for (const Vec3d& unit : {Vec3d::UNIT_X, Vec3d::UNIT_Y, Vec3d::UNIT_Z}) {
    EXPECT_LT((Quat4d(unit, -unit) * unit).Distance(-unit), 1e-15) << unit;
  }
}

TEST(Quat4, interpolatesAlongTheShortestArc) {
  const Quat4d a = Quat4d(Vec3d::UNIT_Z, 0.2);
  const Quat4d b = Quat4d(Vec3d::UNIT_Z, 1.4);
  EXPECT_EQ(Quat4d::Slerp(a, b, -0.5), a);
  EXPECT_EQ(Quat4d::Slerp(a, -b, 1.0), -b);
  for (const double t : {0.1, 0.25, 0.5, 0.9}) {
    const Quat4d expected(Vec3d::UNIT_Z, 0.2 + 1.2 * t);
    EXPECT_TRUE(Quat4d::Slerp(a, b, t).Equals(expected, 1e-15)) << t;
    EXPECT_TRUE(Quat4d::Slerp(a, -b, t).Equals(expected, 1e-15)) << t;
    EXPECT_TRUE(Quat4d::Slerp(b, a, 1.0 - t).Equals(expected, 1e-15)) << t;
  }
  // Nearly equal rotations are blended by the plain weights.
  const Quat4d close(Vec3d::UNIT_Z, 0.2 + 1e-4);
  const Quat4d blend = Quat4d::Slerp(a, close, 0.25);
  EXPECT_EQ(blend.z, a.z * 0.75 + close.z * 0.25);
  EXPECT_EQ(blend.w, a.w * 0.75 + close.w * 0.25);
  const Quat4f half = Quat4f::Slerp(Quat4f(a), Quat4f(b), 0.5f);
  EXPECT_TRUE(Quat4d(half).Equals(Quat4d(Vec3d::UNIT_Z, 0.8), 1e-6));
}

}  // namespace
}  // namespace shr
