// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: systems of orders on both sides of panels, whole-number systems solved exactly, pivot
// ties, refused pivots and what they leave of b, Hilbert, Vandermonde and graded matrices, the
// matrix of the largest growth, NaN, nothing, wrong shapes; Cramer's rule with its sign.

#include "shared/numerics/linear/GaussSolve.h"

#include <gtest/gtest.h>

#include "shared/diagnostics/Exception.h"
#include "tests/numerics/LinearCases.h"

namespace shr {
namespace {

/// Of n epsilon.
constexpr double RESIDUAL_BOUND = 8.0;

void ExpectSolved(const RMatrix& a, const RVector& b) {
  RMatrix destroyed = a;
  RVector x = b;
  ASSERT_TRUE(GaussSolve(destroyed, x));
  EXPECT_LE(RelativeResidual(a, x, b), RESIDUAL_BOUND * static_cast<double>(a.Rows()) * EPSILON);
}

TEST(GaussSolve, solutionsSatisfyTheEquations) {
  for (const std::uint64_t n : {1u, 2u, 10u, 32u, 33u, 64u, 65u, 72u, 100u, 135u}) {
    SCOPED_TRACE(n);
    const auto seed = static_cast<unsigned int>(n);
    const RMatrix a = RandomMatrix(n, n, seed);
    ExpectSolved(a, RandomVector(n, 1));
    RMatrix destroyed = a, x = RandomMatrix(n, 3, 2);
    const RMatrix b = x;
    ASSERT_TRUE(GaussSolve(destroyed, x));
    for (std::uint64_t j = 0; j < 3; ++j) {
      RVector column, side;
      ExtractCol(x, j, column);
      ExtractCol(b, j, side);
      EXPECT_LE(RelativeResidual(a, column, side),
                RESIDUAL_BOUND * static_cast<double>(n) * EPSILON);
    }
  }
}

TEST(GaussSolve, hardMatricesAreSolvedToTheirResidual) {
  ExpectSolved(Hilbert(8), RandomVector(8, 1));
  ExpectSolved(Vandermonde(RVector{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, 10), RandomVector(10, 1));
  ExpectSolved(Graded(RandomMatrix(40, 40, 1), Grades(40, 75, 0)), RandomVector(40, 1));
  // Wilkinson's matrix doubles its last column in every step.
  RMatrix growing;
  Eye(growing, 50, 50);
  for (std::uint64_t i = 0; i < 50; ++i) {
    for (std::uint64_t j = 0; j < i; ++j) growing(i, j) = -1.0;
    growing(i, 49) = 1.0;
  }
  RVector x(50);
  Product(growing, RandomVector(50, 1), x);
  const RVector b = x;
  RMatrix destroyed = growing;
  ASSERT_TRUE(GaussSolve(destroyed, x));
  EXPECT_LE(RelativeResidual(growing, x, b), 1e-3);  // growth 2^49 against 2^-52
}

TEST(GaussSolve, keepsTheUpperRowOfEqualPivots) {
  // Elimination with the upper row is exact; with the lower one the result would be rounded.
  RMatrix a{{3.0, 1.0}, {-3.0, 2.0}};
  RVector b{1.0, 5.0};
  ASSERT_TRUE(GaussSolve(a, b));
  EXPECT_EQ(a(0, 0), 3.0);
  EXPECT_EQ(b(1), 2.0);
  RMatrix large = RandomMatrix(40, 40, 1);
  for (std::uint64_t i = 0; i < 40; ++i) large(i, 0) = i % 2 == 0 ? 2.0 : -2.0;
  RVector side(40);
  Zeros(side);
  const double first = large(0, 1);
  ASSERT_TRUE(GaussSolve(large, side));
  EXPECT_EQ(large(0, 0), 2.0);
  EXPECT_EQ(large(0, 1), first);
}

TEST(GaussSolve, aRefusedPivotLeavesTheSidesEliminatedSoFar) {
  for (const std::uint64_t n : {3u, 40u, 72u}) {
    for (const std::uint64_t bad : {std::uint64_t{1}, n / 2, n - 1}) {
      SCOPED_TRACE(testing::Message() << n << ", column " << bad);
      // Unit lower triangle times diagonal: the pivots are in place, that of `bad` is 0.
      RMatrix a = LowerOf(RandomMatrix(n, n, 1), true);
      for (std::uint64_t i = 0; i < n; ++i) a(i, bad) = 0.0;
      RVector b = RandomVector(n, 2), expected = b;
      for (std::uint64_t k = 0; k < bad; ++k) {
        for (std::uint64_t i = k + 1; i < n; ++i) expected(i) -= a(i, k) * expected(k);
      }
      RMatrix again = a, side(n, 2);
      AssignCol(b, 0, side);
      AssignCol(b, 1, side);
      EXPECT_FALSE(GaussSolve(a, b));
      EXPECT_TRUE(IsEqual(b, expected, 1e-8));
      EXPECT_FALSE(GaussSolve(again, side));
      ExtractCol(side, 1, b);
      EXPECT_TRUE(IsEqual(b, expected, 1e-8));
    }
  }
}

TEST(GaussSolve, limitIsAbsolute) {
  RMatrix small{{2.2e-16}}, enough{{EPSILON}}, diagonal{{1e-17, 0.0}, {0.0, 1.0}};
  RVector b{1.0}, c{1.0, 1.0};
  EXPECT_FALSE(GaussSolve(small, b));
  EXPECT_EQ(b(0), 1.0);
  EXPECT_TRUE(GaussSolve(enough, b));
  EXPECT_EQ(b(0), 1.0 / EPSILON);
  EXPECT_FALSE(GaussSolve(diagonal, c));
}

TEST(GaussSolve, notANumberPassesIntoTheResult) {
  RMatrix a = RandomMatrix(40, 40, 1);
  a(20, 20) = NOT_A_NUMBER;
  RVector b = RandomVector(40, 1);
  EXPECT_TRUE(GaussSolve(a, b));
  EXPECT_TRUE(std::isnan(b(0)));
}

TEST(GaussSolve, nothingSucceedsAndWrongShapesAreRefused) {
  RMatrix nothing, wide(2, 3), square(2, 2), noSides(2, 0);
  RVector none, three(3);
  EXPECT_TRUE(GaussSolve(nothing, none));
  Eye(square, 2, 2);
  EXPECT_TRUE(GaussSolve(square, noSides));
  EXPECT_THROW(std::ignore = GaussSolve(wide, none), InternalErrorException);
  EXPECT_THROW(std::ignore = GaussSolve(square, three), InternalErrorException);
}

TEST(Solve3x3, followsCramersRuleAndRefusesANegativeDeterminant) {
  const RMatrix a{{2.0, 1.0, 0.0}, {0.0, 3.0, 1.0}, {1.0, 0.0, 4.0}};  // determinant 25
  RVector x{4.0, 9.0, 13.0};
  EXPECT_TRUE(Solve3x3(a, x, x));
  EXPECT_TRUE(IsEqual(x, RVector{1.0, 2.0, 3.0}, 1e-15));
  const RMatrix exchanged{{0.0, 1.0, 0.0}, {1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}};  // determinant -1
  RVector kept{7.0};
  EXPECT_FALSE(Solve3x3(exchanged, x, kept));
  EXPECT_EQ(kept(0), 7.0);
  EXPECT_FALSE(Solve3x3(RMatrix{{1.1e-38, 0, 0}, {0, 1.0, 0}, {0, 0, 1.0}}, x, kept));
  EXPECT_TRUE(Solve3x3(RMatrix{{1.2e-38, 0, 0}, {0, 1.0, 0}, {0, 0, 1.0}}, x, kept));
  EXPECT_THROW(std::ignore = Solve3x3(RMatrix(2, 3), x, x), InternalErrorException);
  EXPECT_THROW(std::ignore = Solve3x3(a, RVector{1.0}, x), InternalErrorException);
}

}  // namespace
}  // namespace shr
