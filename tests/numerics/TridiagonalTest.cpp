// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: tridiagonal solves and their refused pivots; Householder vectors as reflections; the
// reduction of dense, diagonal, tridiagonal, graded, tiny and huge matrices; nothing, NaN, shapes.

#include "shared/numerics/linear/Tridiagonal.h"

#include <gtest/gtest.h>

#include "shared/diagnostics/Exception.h"
#include "tests/numerics/LinearCases.h"

namespace shr {
namespace {

/// Of n epsilon.
constexpr double REDUCTION_BOUND = 8.0;
constexpr double RESIDUAL_BOUND = 8.0;

RMatrix TridiagonalOf(const RVector& d, const RVector& e) {
  RMatrix t;
  Zeros(t, d.size(), d.size());
  AssignDiagonal(d, t);
  for (std::uint64_t i = 0; i < e.size(); ++i) t(i, i + 1) = t(i + 1, i) = e(i);
  return t;
}

TEST(TridiagonalSolve, solvesAndLeavesTheFactors) {
  for (const std::uint64_t n : {1u, 2u, 5u, 50u}) {
    RVector d = RandomVector(n, 1), e = RandomVector(n - 1, 2);
    for (double& element : d) element += 3.0;
    const RMatrix t = TridiagonalOf(d, e);
    const RVector b = RandomVector(n, 3);
    RVector x = b, factorD = d, factorE = e;
    ASSERT_TRUE(TridiagonalSolve(factorD, factorE, x));
    EXPECT_LE(RelativeResidual(t, x, b), RESIDUAL_BOUND * EPSILON);
    for (std::uint64_t i = 0; i + 1 < n; ++i) {
      EXPECT_EQ(factorE(i), e(i) / factorD(i));
      EXPECT_EQ(factorD(i + 1), d(i + 1) - factorE(i) * e(i));
    }
    RMatrix sides(n, 2);
    AssignCol(b, 0, sides);
    AssignCol(b, 1, sides);
    ASSERT_TRUE(TridiagonalSolve(d, e, sides));
    RVector column;
    ExtractCol(sides, 1, column);
    EXPECT_TRUE(IsEqual(column, x, 0));
  }
}

TEST(TridiagonalSolve, aRefusedPivotStopsBeforeTheSide) {
  RVector d{1.0, 1.0, 5.0}, e{1.0, 2.0}, b{1.0, 2.0, 3.0};
  EXPECT_FALSE(TridiagonalSolve(d, e, b));
  EXPECT_TRUE(IsEqual(d, RVector{1.0, 0.0, 5.0}, 0) && IsEqual(e, RVector{1.0, 2.0}, 0));
  EXPECT_TRUE(IsEqual(b, RVector{1.0, 2.0, 3.0}, 0));
  RVector zero{0.0}, none, one{1.0};
  EXPECT_FALSE(TridiagonalSolve(zero, none, one));
  RVector noD, noE, noB;
  EXPECT_TRUE(TridiagonalSolve(noD, noE, noB));
  EXPECT_THROW(std::ignore = TridiagonalSolve(d, d, b), InternalErrorException);
  EXPECT_THROW(std::ignore = TridiagonalSolve(d, e, one), InternalErrorException);
}

TEST(Householder, reflectsToTheFirstAxis) {
  const RVector cases[] = {{3.0, 4.0},
                           {-3.0, 4.0},
                           {0.0, 0.0, -2.0},
                           {1e-200, 1e-200},
                           {1e200, 1e3},
                           {1e200, -1e200, 1e200},
                           {1.0, 1e-9, 2.0, -3.0}};
  for (const RVector& original : cases) {
    RVector u = original;
    Householder(u);
    const double beta = u(0);
    u(0) = 1.0;
    RVector image = original;
    Update_xpay(image, -beta * DotProduct(u, original), u);
    const double length = L2Norm(original);
    EXPECT_NEAR(image(0) / length, 1.0, 4.0 * EPSILON) << original;
    for (std::uint64_t i = 1; i < image.size(); ++i) {
      EXPECT_NEAR(image(i) / length, 0.0, 4.0 * EPSILON) << original;
    }
  }
}

TEST(Householder, betaIsZeroWhereNothingIsToBeDone) {
  RVector along{-5.0, 0.0, 0.0}, tiny{1.0, 1e-20}, zero{0.0, 0.0}, one{3.0}, none;
  for (RVector* const v : {&along, &tiny, &zero, &one, &none}) Householder(*v);
  EXPECT_TRUE(IsEqual(along, RVector{0.0, 0.0, 0.0}, 0));
  EXPECT_EQ(tiny(0), 0.0);
  EXPECT_EQ(tiny(1), 1e-20);
  EXPECT_EQ(zero(0), 0.0);
  EXPECT_EQ(one(0), 0.0);
  EXPECT_TRUE(none.empty());
}

void ExpectReduced(const RMatrix& a) {
  const std::uint64_t n = a.Rows();
  RMatrix q = a, product;
  for (std::uint64_t i = 0; i < n; ++i) {
    for (std::uint64_t j = i + 1; j < n; ++j) q(i, j) = NOT_A_NUMBER;
  }
  RVector d, e;
  ASSERT_TRUE(TridiagonalDecomposition(q, d, e));
  ASSERT_EQ(d.size(), n);
  ASSERT_EQ(e.size(), n == 0 ? 0 : n - 1);
  const double bound = REDUCTION_BOUND * static_cast<double>(n) * EPSILON;
  EXPECT_LE(OrthogonalityError(q), bound);
  Product(q, TridiagonalOf(d, e), product);
  OuterProduct(product, q);
  EXPECT_TRUE(IsEqual(product, a, bound * FNorm(a)));
  for (std::uint64_t i = 0; i < n; ++i) EXPECT_EQ(q(i, 0), i == 0 ? 1.0 : 0.0);
}

TEST(TridiagonalDecomposition, givesTheMatrixBack) {
  for (const std::uint64_t n : {0u, 1u, 2u, 3u, 4u, 10u, 33u, 64u, 65u, 100u, 131u}) {
    SCOPED_TRACE(n);
    ExpectReduced(RandomSymmetric(n, static_cast<unsigned int>(n)));
  }
  ExpectReduced(Hilbert(12));
  ExpectReduced(Graded(RandomSymmetric(30, 1), Grades(30, 0, -70)));
  ExpectReduced(Graded(RandomSymmetric(30, 1), Grades(30, -70, 0)));
  RMatrix huge = RandomSymmetric(20, 1);
  for (double& element : huge) element *= 1e280;
  ExpectReduced(huge);
}

TEST(TridiagonalDecomposition, columnsWithoutWeightAreLeftOut) {
  RMatrix diagonal, identity;
  Eye(identity, 6, 6);
  diagonal = identity;
  AssignDiagonal(RVector{3.0, 1.0, -2.0, 5.0, 0.0, 4.0}, diagonal);
  RVector d, e;
  ASSERT_TRUE(TridiagonalDecomposition(diagonal, d, e));
  EXPECT_TRUE(IsEqual(diagonal, identity, 0) && IsZero(e, 0));
  EXPECT_TRUE(IsEqual(d, RVector{3.0, 1.0, -2.0, 5.0, 0.0, 4.0}, 0));
  RMatrix small{{1.0, 0.0, 0.0}, {1e-16, 2.0, 0.0}, {1e-16, 1e-30, 3.0}};
  ASSERT_TRUE(TridiagonalDecomposition(small, d, e));
  EXPECT_EQ(e(0), 0.0);
  EXPECT_EQ(e(1), 1e-30);  // the last two rows are taken as they stand
  RMatrix two{{1.0, 9.0}, {5.0, 2.0}};
  ASSERT_TRUE(TridiagonalDecomposition(two, d, e));
  EXPECT_TRUE(IsIdentity(two, 0) && IsEqual(d, RVector{1.0, 2.0}, 0) && e(0) == 5.0);
}

TEST(TridiagonalDecomposition, givesSolvesTheirFactors) {
  const RMatrix a = RandomPositive(40, 1);
  RMatrix q = a;
  RVector d, e;
  const RVector b = RandomVector(40, 2);
  RVector x = b;
  ASSERT_TRUE(TridiagonalDecomposition(q, d, e));
  ASSERT_TRUE(TridiagonalSolve(q, d, e, x));
  EXPECT_LE(RelativeResidual(a, x, b), RESIDUAL_BOUND * 40.0 * EPSILON);
  RVector zero{0.0, 1.0}, beside{1.0}, side{2.0, 3.0}, expected;
  RMatrix turn{{0.0, 1.0}, {1.0, 0.0}};
  EXPECT_FALSE(TridiagonalSolve(turn, zero, beside, side));
  EXPECT_TRUE(IsEqual(side, RVector{3.0, 2.0}, 0));
}

TEST(TridiagonalDecomposition, tellsOfWhatIsNotFinite) {
  RMatrix bad = RandomSymmetric(10, 1), wide(2, 3);
  bad(5, 3) = NOT_A_NUMBER;
  RVector d, e;
  EXPECT_FALSE(TridiagonalDecomposition(bad, d, e));
  bad = RandomSymmetric(10, 1);
  bad(9, 9) = INFINITE;
  EXPECT_FALSE(TridiagonalDecomposition(bad, d, e));
  EXPECT_THROW(std::ignore = TridiagonalDecomposition(wide, d, e), InternalErrorException);
}

}  // namespace
}  // namespace shr
