// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: factors times each other are the matrix, for orders on both sides of panels; the upper
// triangle stays; a refused pivot at every column leaves what is told; indefinite, singular, graded
// and Hilbert matrices; solves of all kinds; nothing, NaN, wrong shapes.

#include "shared/numerics/linear/SymmetricSolve.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "shared/diagnostics/Exception.h"
#include "tests/numerics/LinearCases.h"

namespace shr {
namespace {

/// Of n epsilon times |L| |L|^T.
constexpr double FACTOR_BOUND = 2.0;
/// Of n epsilon.
constexpr double RESIDUAL_BOUND = 4.0;

const std::uint64_t ORDERS[] = {1, 2, 3, 10, 32, 33, 40, 64, 65, 72, 100, 130};

/// Fills what is above the diagonal with NaN.
RMatrix SpoilUpper(RMatrix a) {
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    for (std::uint64_t j = i + 1; j < a.Rows(); ++j) a(i, j) = NOT_A_NUMBER;
  }
  return a;
}

bool IsUpperSpoilt(const RMatrix& a) {
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    for (std::uint64_t j = i + 1; j < a.Rows(); ++j) {
      if (!std::isnan(a(i, j))) return false;
    }
  }
  return true;
}

RMatrix Magnitudes(RMatrix m) {
  for (double& element : m) element = std::abs(element);
  return m;
}

/// Expects left right^T to be `a` within the bound of factors.
void ExpectProduct(const RMatrix& left, const RMatrix& right, const RMatrix& a) {
  RMatrix product, sizes;
  OuterProduct(left, right, product);
  OuterProduct(Magnitudes(left), Magnitudes(right), sizes);
  const double bound = FACTOR_BOUND * static_cast<double>(a.Rows() + 3) * EPSILON;
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    for (std::uint64_t j = 0; j <= i; ++j) {
      ASSERT_NEAR(product(i, j), a(i, j), bound * sizes(i, j)) << i << ", " << j;
    }
  }
}

TEST(Cholesky, factorsGiveTheMatrixBack) {
  for (const std::uint64_t n : ORDERS) {
    SCOPED_TRACE(n);
    const RMatrix a = RandomPositive(n, static_cast<unsigned int>(n));
    RMatrix l = SpoilUpper(a);
    ASSERT_TRUE(CholeskyDecomposition(l));
    EXPECT_TRUE(IsUpperSpoilt(l));
    ExpectProduct(LowerOf(l), LowerOf(l), a);
    const RVector b = RandomVector(n, 5);
    RVector x = b;
    CholeskySolve(l, x);
    EXPECT_LE(RelativeResidual(a, x, b), RESIDUAL_BOUND * static_cast<double>(n) * EPSILON);
    RMatrix sides(n, 2);
    AssignCol(b, 0, sides);
    AssignCol(b, 1, sides);
    CholeskySolve(l, sides);
    ExtractCol(sides, 1, x);
    EXPECT_LE(RelativeResidual(a, x, b), RESIDUAL_BOUND * static_cast<double>(n) * EPSILON);
  }
}

TEST(Cholesky, aRefusedPivotLeavesItsColumnReducedAndLaterOnesUntouched) {
  for (const std::uint64_t n : {5u, 40u, 72u, 100u}) {
    const RMatrix whole = RandomPositive(n, 3);
    RMatrix factor = whole;
    ASSERT_TRUE(CholeskyDecomposition(factor));
    for (const std::uint64_t bad : {std::uint64_t{0}, n / 3, n / 2, n - 2, n - 1}) {
      SCOPED_TRACE(testing::Message() << n << ", column " << bad);
      RMatrix a = whole;
      a(bad, bad) = -1.0;
      const RMatrix given = a;
      EXPECT_FALSE(CholeskyDecomposition(a));
      for (std::uint64_t i = 0; i < n; ++i) {
        for (std::uint64_t j = 0; j < n; ++j) {
          if (j > i || j > bad) {
            ASSERT_EQ(a(i, j), given(i, j));
          } else if (j < bad) {
            ASSERT_EQ(a(i, j), factor(i, j));
          } else if (i > bad) {
            ASSERT_NEAR(a(i, j), factor(i, j) * factor(j, j), 1e-10);
          }
        }
      }
      EXPECT_LT(a(bad, bad), -1.0 + 1e-10);
    }
  }
}

TEST(Cholesky, comparesThePivotWithItsSign) {
  RMatrix negative{{-1.0}}, zero{{0.0}}, small{{2.2e-16}}, least{{EPSILON}}, nothing;
  EXPECT_FALSE(CholeskyDecomposition(negative));
  EXPECT_FALSE(CholeskyDecomposition(zero));
  EXPECT_FALSE(CholeskyDecomposition(small));
  EXPECT_TRUE(CholeskyDecomposition(least));
  EXPECT_TRUE(CholeskyDecomposition(nothing));
  RMatrix symmetric{{-1.0}};
  EXPECT_TRUE(SymmetricDecomposition(symmetric));
  RMatrix notANumber{{NOT_A_NUMBER, 0.0}, {1.0, 1.0}};
  EXPECT_TRUE(CholeskyDecomposition(notANumber));
  EXPECT_TRUE(std::isnan(notANumber(1, 0)));
}

TEST(Cholesky, hilbertMatricesAreFactoredUntilTheirPivotsVanish) {
  for (std::uint64_t n = 1; n <= 20; ++n) {
    const RMatrix a = Hilbert(n);
    RMatrix l = a;
    if (!CholeskyDecomposition(l)) {
      EXPECT_GT(n, 11u);
      continue;
    }
    ExpectProduct(LowerOf(l), LowerOf(l), a);
  }
}

TEST(Symmetric, factorsGiveTheMatrixBack) {
  for (const std::uint64_t n : ORDERS) {
    SCOPED_TRACE(n);
    RMatrix a = RandomSymmetric(n, static_cast<unsigned int>(n));
    for (std::uint64_t i = 0; i < n; ++i)
      a(i, i) += (i % 2 == 0 ? 3.0 : -3.0) * static_cast<double>(n);
    RMatrix f = SpoilUpper(a);
    ASSERT_TRUE(SymmetricDecomposition(f));
    EXPECT_TRUE(IsUpperSpoilt(f));
    const RMatrix l = LowerOf(f, true);
    RMatrix scaled = l;
    for (std::uint64_t i = 0; i < n; ++i) {
      for (std::uint64_t j = 0; j < n; ++j) scaled(i, j) *= f(j, j);
    }
    ExpectProduct(l, scaled, a);
    const RVector b = RandomVector(n, 5);
    RVector x = b;
    SymmetricSolve(f, x);
    EXPECT_LE(RelativeResidual(a, x, b), RESIDUAL_BOUND * static_cast<double>(n) * EPSILON);
    RMatrix sides(n, 1);
    AssignCol(b, 0, sides);
    SymmetricSolve(f, sides);
    ExtractCol(sides, 0, x);
    EXPECT_LE(RelativeResidual(a, x, b), RESIDUAL_BOUND * static_cast<double>(n) * EPSILON);
  }
}

TEST(Symmetric, aRefusedPivotStandsOnTheDiagonalAlone) {
  for (const std::uint64_t n : {4u, 40u, 100u}) {
    RMatrix a;
    Eye(a, n, n);
    for (std::uint64_t i = 0; i < n; ++i) a(i, 0) = 1.0;  // the reduced rest is I - 1 1^T
    a(n - 1, n - 1) = 2.0;
    const std::uint64_t bad = 1;
    const RMatrix given = a;
    EXPECT_FALSE(SymmetricDecomposition(a));
    EXPECT_EQ(a(bad, bad), 0.0);
    RMatrix changed = given;
    changed(bad, bad) = 0.0;
    EXPECT_TRUE(IsEqual(a, changed, 0));
  }
}

TEST(Symmetric, solveLeavesUndividedWhatFollowsABadPivot) {
  const RMatrix factor{{2.0, 0.0, 0.0}, {0.0, 1e-17, 0.0}, {0.0, 0.0, 4.0}};
  RVector b{2.0, 3.0, 4.0};
  SymmetricSolve(factor, b);
  EXPECT_TRUE(IsEqual(b, RVector{1.0, 3.0, 4.0}, 0));
}

TEST(Aasen, factorsGiveTheMatrixBackWithAndWithoutExchanges) {
  for (const std::uint64_t n : {1u, 2u, 3u, 4u, 5u, 12u, 40u}) {
    for (const bool isPivoted : {false, true}) {
      SCOPED_TRACE(testing::Message() << n << (isPivoted ? ", pivoted" : ""));
      RMatrix a = RandomSymmetric(n, static_cast<unsigned int>(n));
      if (isPivoted) {
        for (std::uint64_t i = 0; i < n; ++i) a(i, i) = 0.0;
      }
      RMatrix f = SpoilUpper(a), l, t;
      std::vector<std::uint64_t> order(n);
      for (std::uint64_t i = 0; i < n; ++i) order[i] = i;
      isPivoted ? AasenDecomposition(f, order) : AasenDecomposition(f);
      EXPECT_TRUE(IsUpperSpoilt(f));
      Eye(l, n, n);
      Zeros(t, n, n);
      for (std::uint64_t i = 0; i < n; ++i) {
        for (std::uint64_t j = 1; j < i; ++j) l(i, j) = f(i, j - 1);
        t(i, i) = f(i, i);
        if (i > 0) t(i, i - 1) = t(i - 1, i) = f(i, i - 1);
      }
      RMatrix product, ordered(n, n);
      Product(l, t, product);
      OuterProduct(product, l);
      for (std::uint64_t i = 0; i < n; ++i) {
        for (std::uint64_t j = 0; j < n; ++j) ordered(i, j) = a(order[i], order[j]);
      }
      const double size = FNorm(a) + FNorm(l) * FNorm(t) * FNorm(l);
      EXPECT_TRUE(IsEqual(product, ordered, RESIDUAL_BOUND * EPSILON * size));
      EXPECT_TRUE(!isPivoted || IsZero(l, 1.0));
      if (n == 1 && isPivoted) continue;  // that matrix is 0
      const RVector b = RandomVector(n, 7);
      RVector x = b;
      ASSERT_TRUE(isPivoted ? AasenSolve(f, order, x) : AasenSolve(f, x));
      const double growth = isPivoted ? 1.0 : FNorm(l) * FNorm(t) * FNorm(l) / FNorm(a);
      EXPECT_LE(RelativeResidual(a, x, b),
                RESIDUAL_BOUND * static_cast<double>(n) * EPSILON * growth);
    }
  }
}

TEST(Aasen, singularMatricesAreNotSolved) {
  RMatrix ones, zeros;
  Ones(ones, 4, 4);
  Zeros(zeros, 3, 3);
  std::vector<std::uint64_t> order;
  RVector b{1.0, 2.0, 3.0, 4.0}, c{1.0, 2.0, 3.0};
  AasenDecomposition(ones, order);
  EXPECT_FALSE(AasenSolve(ones, order, b));
  AasenDecomposition(zeros);
  EXPECT_FALSE(AasenSolve(zeros, c));
  EXPECT_TRUE(IsZero(zeros, 0));
}

TEST(Symmetric, nothingSucceedsAndWrongShapesAreRefused) {
  RMatrix nothing, wide(2, 3);
  RVector none, two(2);
  std::vector<std::uint64_t> order{0, 5};
  EXPECT_TRUE(SymmetricDecomposition(nothing) && CholeskyDecomposition(nothing));
  AasenDecomposition(nothing);
  EXPECT_TRUE(AasenSolve(nothing, none));
  SymmetricSolve(nothing, none);
  EXPECT_THROW(std::ignore = CholeskyDecomposition(wide), InternalErrorException);
  EXPECT_THROW(std::ignore = SymmetricDecomposition(wide), InternalErrorException);
  EXPECT_THROW(AasenDecomposition(wide), InternalErrorException);
  EXPECT_THROW(CholeskySolve(RMatrix(3, 3), two), InternalErrorException);
  EXPECT_THROW(std::ignore = AasenSolve(RMatrix(3, 3), two), InternalErrorException);
  EXPECT_THROW(std::ignore = AasenSolve(RMatrix(2, 2), order, two), InternalErrorException);
}

}  // namespace
}  // namespace shr
