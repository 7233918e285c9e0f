// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: eigenvalues and vectors of dense, diagonal, repeated, graded, huge and tiny matrices, in
// order; known eigenvalues; matrices that are not finite; solves by the pseudo-inverse.

#include "shared/numerics/linear/CyclicJacobi.h"

#include <gtest/gtest.h>

#include "shared/diagnostics/Exception.h"
#include "tests/numerics/ExactEigenvalues.h"
#include "tests/numerics/LinearCases.h"

namespace shr {
namespace {

/// Of n epsilon.
constexpr double EIGEN_BOUND = 10.0;

void ExpectDecomposed(const RMatrix& a) {
  const std::uint64_t n = a.Rows();
  RMatrix v = a, product, scaled;
  for (std::uint64_t i = 0; i < n; ++i) {
    for (std::uint64_t j = 0; j < i; ++j) v(i, j) = NOT_A_NUMBER;
  }
  RVector w;
  ASSERT_TRUE(CyclicJacobi(v, w));
  ASSERT_EQ(w.size(), n);
  for (std::uint64_t i = 1; i < n; ++i) EXPECT_GE(std::abs(w(i - 1)), std::abs(w(i)));
  const double bound = EIGEN_BOUND * static_cast<double>(n) * EPSILON;
  EXPECT_LE(OrthogonalityError(v), bound);
  Product(a, v, product);
  scaled = v;
  for (std::uint64_t i = 0; i < n; ++i) {
    for (std::uint64_t j = 0; j < n; ++j) scaled(i, j) *= w(j);
  }
  EXPECT_TRUE(IsEqual(product, scaled, bound * LInfNorm(w)));
}

TEST(CyclicJacobi, vectorsAndValuesBelongTogether) {
  for (const std::uint64_t n : {0u, 1u, 2u, 3u, 10u, 15u, 16u, 17u, 18u, 40u, 65u, 100u}) {
    SCOPED_TRACE(n);
    ExpectDecomposed(RandomSymmetric(n, static_cast<unsigned int>(n)));
    ExpectDecomposed(RandomPositive(n, static_cast<unsigned int>(n)));
    RMatrix negative = RandomPositive(n, 1);
    Negate(negative);
    ExpectDecomposed(negative);
  }
}

TEST(CyclicJacobi, hardMatricesAreDecomposed) {
  RMatrix ones, huge = RandomSymmetric(20, 1), tiny = huge, zero;
  Ones(ones, 40, 40);
  Zeros(zero, 30, 30);
  for (double& element : huge) element *= 1e306;
  for (double& element : tiny) element *= 1e-300;
  const RMatrix cases[] = {ones,
                           zero,
                           huge,
                           tiny,
                           Hilbert(12),
                           Hilbert(30),
                           Graded(RandomSymmetric(30, 1), Grades(30, 0, -70)),
                           Graded(RandomSymmetric(30, 1), Grades(30, -70, 70)),
                           Graded(RandomPositive(30, 1), Grades(30, 60, -60)),
                           RMatrix{{1.0, 1e-200}, {1e-200, 1.0}},
                           RMatrix{{1e300, 1.0}, {1.0, -1e300}}};
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(i);
    ExpectDecomposed(cases[i]);
  }
}

TEST(CyclicJacobi, diagonalMatricesAreOnlySorted) {
  for (const std::uint64_t n : {5u, 60u}) {
    RMatrix a;
    Zeros(a, n, n);
    AssignDiagonal(Grades(n, 0, 0), a);
    a(1, 1) = -3.0;
    a(3, 3) = 3.0;
    a(4, 4) = 5.0;
    RVector w;
    ASSERT_TRUE(CyclicJacobi(a, w));
    const std::uint64_t order[] = {4, 1, 3, 0, 2};
    const double values[] = {5.0, -3.0, 3.0, 1.0, 1.0};
    RVector column, unit;
    for (std::uint64_t i = 0; i < 5; ++i) {
      EXPECT_EQ(w(i), values[i]);
      ExtractCol(a, i, column);
      Unit(unit, n, order[i]);
      EXPECT_TRUE(IsEqual(column, unit, 0));
    }
  }
}

TEST(CyclicJacobi, knownEigenvaluesAreFound) {
  constexpr double PI = 3.14159265358979323846;
  for (const std::uint64_t n :
       {4u, 12u, 80u}) {  // the second difference: 2 - 2 cos(k pi / (n + 1))
    RMatrix a;
    Zeros(a, n, n);
    for (std::uint64_t i = 0; i < n; ++i) {
      a(i, i) = 2.0;
      if (i > 0) a(i, i - 1) = a(i - 1, i) = -1.0;
    }
    RVector w;
    ASSERT_TRUE(CyclicJacobi(a, w));
    for (std::uint64_t i = 0; i < n; ++i) {
      const double sine =
          std::sin(static_cast<double>(n - i) * PI / (2.0 * static_cast<double>(n + 1)));
      EXPECT_NEAR(w(i), 4.0 * sine * sine, EIGEN_BOUND * EPSILON * 4.0);
    }
  }
}

TEST(CyclicJacobi, gradedDefiniteMatricesHaveAllEigenvaluesRight) {
  for (const double grade : {0.0, -5.0, -10.0, -40.0, -70.0}) {
    for (const bool isRising : {false, true}) {
      SCOPED_TRACE(grade);
      constexpr std::uint64_t N = 24;
      const RMatrix even = RandomPositive(N, 1, 1.0);  // of condition 30
      const RMatrix a = Graded(even, isRising ? Grades(N, grade, 0) : Grades(N, 0, grade));
      RMatrix v = a;
      RVector w;
      ASSERT_TRUE(CyclicJacobi(v, w));
      const std::vector<long double> exact = ExactEigenvalues(a);
      for (std::uint64_t i = 0; i < N; ++i) {
        EXPECT_NEAR(w(i) / static_cast<double>(exact[i]), 1.0, EIGEN_BOUND * N * EPSILON) << i;
      }
      EXPECT_LE(OrthogonalityError(v), EIGEN_BOUND * N * EPSILON);
    }
  }
}

TEST(CyclicJacobi, tellsOfWhatIsNotFiniteAndFillsTheOutputs) {
  for (const double bad : {NOT_A_NUMBER, INFINITE}) {
    for (const std::uint64_t n : {1u, 3u, 50u}) {
      RMatrix a = RandomSymmetric(n, 1);
      a(0, n - 1) = bad;
      RVector w;
      EXPECT_FALSE(CyclicJacobi(a, w)) << n;
      EXPECT_EQ(w.size(), n);
    }
  }
  RMatrix wide(2, 3);
  RVector w;
  EXPECT_THROW(std::ignore = CyclicJacobi(wide, w), InternalErrorException);
}

TEST(SVDSolve, dropsSmallEigenvalues) {
  RMatrix v;
  Eye(v, 3, 3);
  RVector x{4.0, 6.0, 8.0};
  SVDSolve(v, RVector{2.0, -3e-9, 1e-10 * 2.0}, x);
  EXPECT_TRUE(IsEqual(x, RVector{2.0, -2e9, 0.0}, 1e-6));
  RMatrix sides{{4.0, 2.0}, {1.0, 1.0}, {8.0, 8.0}};
  SVDSolve(v, RVector{2.0, 1.0, 0.0}, sides);
  EXPECT_TRUE(IsEqual(sides, RMatrix{{2.0, 1.0}, {1.0, 1.0}, {0.0, 0.0}}, 0));
  x = RVector{1.0, 2.0, 3.0};
  SVDSolve(v, RVector{0.0, 0.0, 0.0}, x);
  EXPECT_TRUE(IsZero(x, 0));
  EXPECT_THROW(SVDSolve(v, RVector{1.0}, x), InternalErrorException);
}

TEST(GeneralizedSolve, isThePseudoInverse) {
  for (const std::uint64_t n : {3u, 12u, 50u}) {
    // Of rank n - 1: the vector of ones is mapped to 0.
    RMatrix a = RandomPositive(n, 1), projection;
    Eye(projection, n, n);
    Subtract(projection, 1.0 / static_cast<double>(n));
    Product(projection, a, a);
    Product(a, projection);
    const RVector b = RandomVector(n, 2);
    RVector x, image, expected;
    ASSERT_TRUE(GeneralizedSolve(a, b, x));
    double sum = 0.0;
    for (const double element : x) sum += element;
    EXPECT_NEAR(sum / L1Norm(x), 0.0, 1e-10);
    Product(a, x, image);
    Product(projection, b, expected);
    EXPECT_TRUE(IsEqual(image, expected, 1e-9));
  }
  RVector x{5.0};
  EXPECT_FALSE(GeneralizedSolve(RMatrix{{NOT_A_NUMBER}}, RVector{1.0}, x));
  EXPECT_EQ(x(0), 5.0);
}

}  // namespace
}  // namespace shr
