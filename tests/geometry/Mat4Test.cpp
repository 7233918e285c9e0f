// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what is known while compiling; the table of types and when they are forgotten; products of
// every pair of types against the sum over all terms, and laws; inverses per type; order of
// operations; rotations by axis; parts of a transform and back, with shears, reflections and scales
// of 0; determinants.

#include "shared/geometry/Mat4.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "shared/geometry/MathUtility.h"
#include "tests/geometry/RandomMatrices.h"

namespace shr {
namespace {

using M = Mat4d;

static_assert(M().Equals(M::ZERO, 0.0) && M::IDENTITY.IsIdentity() && !M::ZERO.IsIdentity());
static_assert(Vec3d(1.0, 2.0, 3.0) * M::MakeTranslation(Vec3d(1.0, 1.0, 1.0)) ==
              Vec3d(2.0, 3.0, 4.0));
static_assert(M::MakeScale(Vec3d(2.0, 4.0, 8.0)).Inverse() ==
              M::MakeScale(Vec3d(0.5, 0.25, 0.125)));
static_assert(M::MakeScale(Vec3d(1.0, 0.0, 1.0)).Inverse() == M::ZERO);
static_assert(M(Mat3d::MakeTranslation(Vec2d(2.0, 3.0))) ==
              M::MakeTranslation(Vec3d(2.0, 3.0, 0.0)));
static_assert(Mat4f(M::MakeScale(Vec3d(2.0, 2.0, 2.0))).Det3() == 8.0f);
static_assert(M(Quat4d(0.0, 0.0, 1.0, 1.0)) == M(0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1));
static_assert(Vec4d(1.0, 2.0, 3.0, 1.0) * M::IDENTITY == M::IDENTITY * Vec4d(1.0, 2.0, 3.0, 1.0));

TEST(Mat4, typeComesFromTheElements) {
  const struct {
    const char* name;
    int row;
    int column;
    double value;
    M::Type type;
  } rows[] = {
      {"nothing", 0, 0, 1.0, M::TYPE_IDENTITY}, {"scale x", 0, 0, 2.0, M::TYPE_2D},
      {"shear", 0, 1, 1.0, M::TYPE_2D},         {"shear", 1, 0, 1.0, M::TYPE_2D},
      {"scale y", 1, 1, 0.0, M::TYPE_2D},       {"move x", 3, 0, 1.0, M::TYPE_2D},
      {"move y", 3, 1, 1.0, M::TYPE_2D},        {"scale z", 2, 2, 2.0, M::TYPE_AFFINE},
      {"x to z", 0, 2, 1.0, M::TYPE_AFFINE},    {"y to z", 1, 2, 1.0, M::TYPE_AFFINE},
      {"z to x", 2, 0, 1.0, M::TYPE_AFFINE},    {"z to y", 2, 1, 1.0, M::TYPE_AFFINE},
      {"move z", 3, 2, 1.0, M::TYPE_AFFINE},    {"x to w", 0, 3, 1.0, M::TYPE_COMPLEX},
      {"y to w", 1, 3, 1.0, M::TYPE_COMPLEX},   {"z to w", 2, 3, 1.0, M::TYPE_COMPLEX},
      {"w", 3, 3, 2.0, M::TYPE_COMPLEX},        {"numberless", 3, 3, NAN, M::TYPE_COMPLEX},
      {"-0", 0, 1, -0.0, M::TYPE_IDENTITY},
  };
  for (const auto& row : rows) {
    M m = M::IDENTITY;
    EXPECT_EQ(m.ClassifyType(), M::TYPE_IDENTITY);
    m[row.row][row.column] = row.value;
    EXPECT_EQ(m.GetType(), row.type) << row.name;
    EXPECT_EQ(m.ClassifyType(), row.type) << row.name;
    m.SetIdentity();
    EXPECT_TRUE(m.IsIdentity()) << row.name;
  }
}

TEST(Mat4, typeIsForgottenByEveryChangeAndBelievedWhenGiven) {
  const M identity(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, M::TYPE_COMPLEX);
  EXPECT_EQ(identity.GetType(), M::TYPE_COMPLEX);
  const auto typeAfter = [](auto change) {
    M m = M::IDENTITY;
    m.ClassifyType();
    change(m);
    return m.GetType();
  };
  EXPECT_EQ(typeAfter([](M& m) { m.SetRow(3, Vec4d(0.0, 0.0, 0.0, 2.0)); }), M::TYPE_COMPLEX);
  EXPECT_EQ(typeAfter([](M& m) { m.SetCol(0, Vec4d(2.0, 0.0, 0.0, 0.0)); }), M::TYPE_2D);
  EXPECT_EQ(typeAfter([](M& m) { m *= M::MakeScale(Vec3d(1.0, 1.0, 2.0)); }), M::TYPE_AFFINE);
  EXPECT_EQ(typeAfter([](M& m) { m.RotateX(1.0, M::ORDER_PRE); }), M::TYPE_AFFINE);
  EXPECT_EQ(typeAfter([](M& m) { m.Translate(Vec3d::UNIT_X, M::ORDER_PRE); }), M::TYPE_2D);
  EXPECT_EQ(typeAfter([](M& m) { m = m.Transpose(); }), M::TYPE_IDENTITY);
  EXPECT_EQ(M(0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1, M::TYPE_2D).Transpose().GetType(),
            M::TYPE_COMPLEX);
}

template <class Matrix>
Matrix NaiveProduct(const Matrix& a, const Matrix& b) {
  Matrix result;
  for (int i = 0; i < 16; ++i) {
    for (int k = 0; k < 4; ++k) result[i / 4][i % 4] += a[i / 4][k] * b[k][i % 4];
  }
  return result;
}

template <class Matrix>
void CheckProducts() {
  std::mt19937 random(1);
  for (int i = 0; i < 320; ++i) {
    const Matrix a = RandomOfType<Matrix>(1 + i % 4, random);
    const Matrix b = RandomOfType<Matrix>(1 + i / 4 % 4, random);
    ASSERT_EQ(a * b, NaiveProduct(a, b)) << a << b;
    Matrix post = a;
    Matrix pre = b;
    ASSERT_EQ(post.PostMultiply(b), pre.PreMultiply(a));
    ASSERT_EQ(post.GetType(), NaiveProduct(a, b).GetType());
    ASSERT_TRUE((a * b).Transpose().Equals(b.Transpose() * a.Transpose(), 1e-5f));
  }
}

TEST(Mat4, productsOfEveryTypeAreTheSumsOverAllTerms) {
  CheckProducts<Mat4d>();
  CheckProducts<Mat4f>();
}

TEST(Mat4, determinantsMultiplyAndFollowCofactors) {
  std::mt19937 random(2);
  for (int i = 0; i < 100; ++i) {
    const M a = RandomOfType<M>(1 + i % 4, random);
    const M b = RandomOfType<M>(1 + i / 4 % 4, random);
    ASSERT_NEAR((a * b).Det4(), a.Det4() * b.Det4(), 1e-9) << a << b;
    double byColumn = 0.0;
    for (int row = 0; row < 4; ++row) {
      int others[3];
      int count = 0;
      for (int k = 0; k < 4; ++k) {
        if (k != row) others[count++] = k;
      }
      byColumn += (row % 2 == 0 ? 1.0 : -1.0) * a[row][0] *
                  a.Det3(others[0], others[1], others[2], 1, 2, 3);
    }
    ASSERT_NEAR(a.Det4(), byColumn, 1e-11) << a;
  }
}

template <class Matrix, class Number>
void CheckInverses(Number tolerance) {
  std::mt19937 random(3);
  for (int i = 0; i < 200; ++i) {
    const Matrix m = RandomOfType<Matrix>(1 + i % 4, random);
    Matrix inverse;
    ASSERT_TRUE(m.Inverse(inverse)) << m;
    ASSERT_EQ(inverse.GetType(), m.GetType()) << m;
    ASSERT_TRUE((m * inverse).Equals(Matrix::IDENTITY, tolerance)) << m;
    ASSERT_EQ(m.Inverse(), inverse);
  }
}

TEST(Mat4, inverseHasTheSameTypeAndLeadsBack) {
  CheckInverses<Mat4d>(1e-10);
  CheckInverses<Mat4f>(2e-2f);
  M kept = M::IDENTITY;
  EXPECT_FALSE(M::MakeScale(Vec3d(2.0, 0.0, 1.0)).Inverse(kept));
  EXPECT_FALSE(M::MakeScale(Vec3d(2.0, 1.0, 0.0)).Inverse(kept));
  EXPECT_FALSE(M::ZERO.Inverse(kept));
  EXPECT_FALSE(M::MakeTranslation(Vec3d(0.0, NAN, 0.0)).Inverse(kept));
  EXPECT_TRUE(kept.IsIdentity());
  Mat4f tiny = Mat4f::MakeScale(Vec3f(1e-40f, 1.0f, 1.0f));
  EXPECT_FALSE(tiny.Inverse(tiny));
  EXPECT_TRUE(M::MakeScale(Vec3d(1e-200, 1e200, 1.0)).Inverse(kept));
}

TEST(Mat4, operationsComeBeforeOrAfterWhatIsThere) {
  std::mt19937 random(4);
  const M m = RandomOfType<M>(M::TYPE_AFFINE, random);
  const Vec3d p(0.5, -2.0, 3.0);
  const Vec3d t(10.0, 20.0, 30.0);
  const Quat4d turn(Vec3d(1.0, 2.0, 2.0), 0.7);
  const auto apply = [&](auto operation) {
    M result = m;
    operation(result);
    return p * result;
  };
  const double tolerance = 1e-13;
  EXPECT_LT(apply([&](M& r) { r.Translate(t, M::ORDER_PRE); }).Distance((p + t) * m), tolerance);
  EXPECT_LT(apply([&](M& r) { r.Translate(t, M::ORDER_POST); }).Distance(p * m + t), tolerance);
  EXPECT_LT(apply([&](M& r) { r.Scale(t, M::ORDER_PRE); }).Distance((p * t) * m), tolerance);
  EXPECT_LT(apply([&](M& r) { r.Scale(t, M::ORDER_POST); }).Distance((p * m) * t), 30 * tolerance);
  EXPECT_LT(apply([&](M& r) { r.Rotate(turn, M::ORDER_PRE); }).Distance((turn * p) * m), tolerance);
  EXPECT_LT(apply([&](M& r) { r.Rotate(turn, M::ORDER_POST); }).Distance(turn * (p * m)),
            tolerance);
}

TEST(Mat4, rotationsByAxisAreThoseOfQuaternions) {
  const struct {
    const char* name;
    Vec3d axis;
    void (M::*rotate)(double, M::Order);
  } rows[] = {{"x", Vec3d::UNIT_X, &M::RotateX},
              {"y", Vec3d::UNIT_Y, &M::RotateY},
              {"z", Vec3d::UNIT_Z, &M::RotateZ}};
  for (const auto& row : rows) {
    for (const double angle : {0.0, 0.3, -2.0, HALF_PI, PI}) {
      M m = M::IDENTITY;
      (m.*row.rotate)(angle, M::ORDER_POST);
      EXPECT_TRUE(m.Equals(M::MakeRotation(Quat4d(row.axis, angle)), 1e-15)) << row.name << angle;
    }
  }
}

template <class Matrix, class Number>
void CheckParts(const Matrix& m, Number tolerance) {
  using Vec = typename Matrix::Vec;
  const Vec center(1, 2, 3);
  Vec translation;
  Vec scale;
  Quat4<Number> rotation;
  Quat4<Number> orientation;
  m.GetTransform(translation, rotation, scale, orientation, center);
  Matrix again;
  again.SetTransform(translation, rotation, scale, orientation, center);
  Number largest = 0;
  for (const Number element : m.Elements()) largest = std::max(largest, std::abs(element));
  ASSERT_TRUE(again.Equals(m, tolerance * largest)) << m << again << scale << rotation;
  ASSERT_TRUE(rotation.IsUnit(Number{0.001f}) && orientation.IsUnit(Number{0.001f})) << m;
  ASSERT_EQ(scale.x * scale.y * scale.z < 0, m.Det3() < 0) << m << scale;
}

TEST(Mat4, partsOfATransformMakeItAgain) {
  std::mt19937 random(5);
  for (int i = 0; i < 200; ++i) {
    CheckParts(RandomOfType<Mat4d>(1 + i % 3, random), 1e-14);
    CheckParts(RandomOfType<Mat4f>(1 + i % 3, random), 1e-6f);
  }
  for (int signs = 0; signs < 27; ++signs) {
    const Vec3d scale(signs % 3 - 1, 2.0 * (signs / 3 % 3 - 1), 3.0 * (signs / 9 - 1));
    CheckParts(M::MakeScale(scale), 1e-14);
    CheckParts(M::MakeScale(scale) * M(Quat4d(Vec3d(1.0, 2.0, 3.0), 2.0)), 1e-14);
    CheckParts(M(Quat4d(Vec3d(1.0, 2.0, 3.0), 2.0)) * M::MakeScale(scale), 1e-14);
  }
  CheckParts(M(1, 0, 0, 0, 1e7, 1, 0, 0, 0, 1e-7, 1, 0, 0, 0, 0, 1), 1e-14);
  CheckParts(M(1, 2, 3, 0, 2, 4, 6, 0, 3, 6, 9, 0, 0, 0, 0, 1), 1e-14);
  CheckParts(M(0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1), 1e-14);
}

TEST(Mat4, partsOfATurnedScaleAreThoseItWasMadeOf) {
  std::mt19937 random(6);
  std::uniform_real_distribution<double> number(0.5, 3.0);
  for (int i = 0; i < 100; ++i) {
    const Quat4d turn(Vec3d(number(random), -number(random), number(random)), number(random));
    const bool same = i % 4 == 0;
    Vec3d scale(number(random), number(random), number(random));
    if (same) scale = Vec3d::ONE * scale.x;
    if (i % 5 == 0) scale = -scale;
    M m;
    m.SetTransform(Vec3d(1.0, 2.0, 3.0), turn, scale);
    Vec3d translation;
    Vec3d scaleAgain;
    Quat4d rotation;
    Quat4d orientation;
    m.GetTransform(translation, rotation, scaleAgain, orientation);
    ASSERT_EQ(translation, Vec3d(1.0, 2.0, 3.0));
    ASSERT_EQ(orientation, Quat4d::IDENTITY);
    if (i % 5 == 0) continue;  // another way to write a reflection
    ASSERT_LT(scaleAgain.Distance(scale), 1e-14);
    ASSERT_TRUE(rotation.Equals(turn, 1e-14) || rotation.Equals(-turn, 1e-14)) << turn << rotation;
  }
}

TEST(Mat4, aReflectionReversesTheAxesThatLeaveTheSmallerRotation) {
  const Quat4d turn(Vec3d(1.0, -2.0, 3.0), 0.3);
  const Vec3d scales[] = {{2, 3, -4}, {2, -3, 4}, {-2, 3, 4}, {-2, -3, -4}, {5, -5, 5}};
  for (const Vec3d& scale : scales) {
    for (const Quat4d& rotation : {Quat4d::IDENTITY, turn}) {
      const M m = M::MakeScale(scale) * M(rotation);
      Vec3d translation;
      Vec3d found;
      Quat4d foundRotation;
      Quat4d orientation;
      m.GetTransform(translation, foundRotation, found, orientation);
      EXPECT_LT(found.Distance(scale), 1e-14) << scale << found;
      EXPECT_TRUE(foundRotation.Equals(rotation, 1e-14) || foundRotation.Equals(-rotation, 1e-14))
          << scale << foundRotation;
    }
  }
  // A matrix that loses a dimension has no sense to reverse: the lost axis takes the turn.
  Vec3d translation;
  Vec3d scale;
  Quat4d rotation;
  Quat4d orientation;
  M::MakeScale(Vec3d(3, 0, -4)).GetTransform(translation, rotation, scale, orientation);
  EXPECT_EQ(scale, Vec3d(3, 0, 4));
  EXPECT_LT((rotation * Vec3d::UNIT_Z).Distance(-Vec3d::UNIT_Z), 1e-15);
  EXPECT_LT((rotation * Vec3d::UNIT_X).Distance(Vec3d::UNIT_X), 1e-15);
}

TEST(Mat4, planePartIsThatOfTheMatrixOfThePlane) {
  M m = M::MakeScale(Vec3d(2.0, 3.0, 4.0));
  m.RotateZ(0.5, M::ORDER_POST);
  EXPECT_NEAR(m.GetRotation2(), 0.5, 1e-15);
  EXPECT_NEAR(m.GetAspect2(), 2.0 / 3.0, 1e-15);
  EXPECT_FALSE(m.IsSheared2(1e-12));
  m[0][1] = 5.0;
  EXPECT_TRUE(m.IsSheared2(1e-12));
}

}  // namespace
}  // namespace shr
