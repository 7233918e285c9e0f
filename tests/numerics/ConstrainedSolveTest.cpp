// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: definite and conditionally definite systems, as radial basis functions give them, by both
// solvers; constraints that depend on each other, none and as many as unknowns; sides near zero.

#include "shared/numerics/linear/ConstrainedSolve.h"

#include <gtest/gtest.h>

#include "shared/diagnostics/Exception.h"
#include "shared/numerics/linear/SymmetricSolve.h"
#include "tests/numerics/LinearCases.h"

namespace shr {
namespace {

/// |A x + B^T y - c| for |c| of about 1: the root of the absolute limit for the square, and
/// rounding.
constexpr double RESIDUAL_BOUND = 1.5e-8;
constexpr double CONSTRAINT_BOUND = 1e-11;

struct System {
  const char* name;
  RMatrix a, b;
};

/// Interpolation by distances at points of the plane, with a linear polynomial: -|p - q| is
/// positive definite on vectors that sum up to 0.
System Distances(std::uint64_t n) {
  const RMatrix points = RandomMatrix(n, 2, 4);
  System system{"distances", RMatrix(n, n), RMatrix(3, n)};
  for (std::uint64_t i = 0; i < n; ++i) {
    system.b(0, i) = 1.0;
    system.b(1, i) = points(i, 0);
    system.b(2, i) = points(i, 1);
    for (std::uint64_t j = 0; j < n; ++j) {
      system.a(i, j) = -L2Norm(RVector{points(i, 0) - points(j, 0), points(i, 1) - points(j, 1)});
    }
  }
  return system;
}

double ResidualOf(const System& system, const RVector& c, const RVector& x, const RVector& y) {
  RVector image, multipliers;
  Product(system.a, x, image);
  InnerProduct(system.b, y, multipliers);
  Add(image, multipliers);
  Subtract(image, c);
  return L2Norm(image) / (1.0 + L2Norm(c) * 1e-9);
}

double ConstraintOf(const System& system, const RVector& x) {
  RVector image;
  Product(system.b, x, image);
  return LInfNorm(image) / (1.0 + LInfNorm(x));
}

TEST(ConstrainedSolve, bothSolversSatisfyTheEquations) {
  const System systems[] = {{"definite", RandomPositive(12, 1, 1.0), RandomMatrix(3, 12, 2)},
                            {"one constraint", RandomPositive(8, 1, 1.0), RandomMatrix(1, 8, 2)},
                            {"two unknowns", RMatrix{{2.0, 0.0}, {0.0, 2.0}}, RMatrix{{1.0, 1.0}}},
                            {"no constraint", RandomPositive(6, 1, 1.0), RMatrix(0, 6)},
                            {"all constrained", RandomPositive(3, 1, 1.0), RandomMatrix(3, 3, 2)},
                            Distances(10),
                            Distances(40)};
  for (const System& system : systems) {
    SCOPED_TRACE(testing::Message() << system.name << ", n = " << system.a.Rows());
    const RVector c = RandomVector(system.a.Rows(), 3);
    RVector x, y, alternateX, alternateY;
    ASSERT_TRUE(CPDSolve(system.a, system.b, c, x, y));
    EXPECT_LE(ResidualOf(system, c, x, y), RESIDUAL_BOUND);
    EXPECT_LE(ConstraintOf(system, x), CONSTRAINT_BOUND);
    ASSERT_TRUE(AlternateSolve(system.a, system.b, c, alternateX, alternateY));
    EXPECT_LE(ResidualOf(system, c, alternateX, alternateY), RESIDUAL_BOUND);
    EXPECT_LE(ConstraintOf(system, alternateX), CONSTRAINT_BOUND);
    EXPECT_TRUE(IsEqual(x, alternateX, 1e-6));
    EXPECT_TRUE(IsEqual(y, alternateY, 1e-6));
  }
}

TEST(ConstrainedSolve, indefiniteSystemsAreForTheAlternative) {
  const System system{"indefinite", RandomSymmetric(20, 1), RandomMatrix(2, 20, 2)};
  const RMatrix c = RandomMatrix(20, 3, 3);
  RMatrix x, y;
  ASSERT_TRUE(AlternateSolve(system.a, system.b, c, x, y));
  for (std::uint64_t j = 0; j < 3; ++j) {
    RVector side, columnX, columnY;
    ExtractCol(c, j, side);
    ExtractCol(x, j, columnX);
    ExtractCol(y, j, columnY);
    EXPECT_LE(ResidualOf(system, side, columnX, columnY), RESIDUAL_BOUND);
    EXPECT_LE(ConstraintOf(system, columnX), CONSTRAINT_BOUND);
  }
  RMatrix definite = RandomPositive(6, 1);
  Negate(definite);
  RVector u, v;
  EXPECT_FALSE(CPDSolve(definite, RandomMatrix(1, 6, 2), RandomVector(6, 3), u, v));
}

TEST(ConstrainedSolve, dependentConstraintsAreRefusedByTheFirst) {
  const RMatrix a = RandomPositive(4, 1, 1.0);
  const RMatrix b{{1.0, 1.0, 1.0, 1.0}, {2.0, 2.0, 2.0, 2.0}};
  const RVector c = RandomVector(4, 1);
  RVector x, y;
  EXPECT_FALSE(CPDSolve(a, b, c, x, y));
  EXPECT_TRUE(IsEqual(x, RVector{0.0, 0.0, 0.0, 0.0}, 0) && IsEqual(y, RVector{0.0, 0.0}, 0));
  ASSERT_TRUE(AlternateSolve(a, b, c, x, y));
  EXPECT_LE(ResidualOf({"", a, b}, c, x, y), RESIDUAL_BOUND);
}

TEST(ConstrainedSolve, aSmallSideNeedsNoStep) {
  RVector x, y;
  EXPECT_TRUE(CPDSolve(RMatrix{{1.0}}, RMatrix(0, 1), RVector{1e-9}, x, y));
  EXPECT_EQ(x(0), 0.0);
}

TEST(ConstrainedSolve, badNumbersEndWithoutSuccess) {
  RMatrix a = RandomPositive(5, 1);
  const RMatrix b = RandomMatrix(1, 5, 2);
  RVector c = RandomVector(5, 3), x, y;
  a(2, 2) = NOT_A_NUMBER;
  EXPECT_FALSE(CPDSolve(a, b, c, x, y));
  EXPECT_FALSE(AlternateSolve(a, b, c, x, y));
  c(0) = INFINITE;
  EXPECT_FALSE(CPDSolve(RandomPositive(5, 1), b, c, x, y));
}

TEST(ConstrainedSolve, projectionLeavesTheConstraintsSatisfied) {
  const RMatrix b = RandomMatrix(3, 9, 1);
  RMatrix l;
  OuterProduct(b, b, l);
  ASSERT_TRUE(CholeskyDecomposition(l));
  const RVector original = RandomVector(9, 2);
  RVector x = original, y, part, zero;
  CPDProject(b, l, x, y);
  Product(b, x, zero);
  EXPECT_TRUE(IsZero(zero, 1e-14));
  InnerProduct(b, y, part);
  Add(part, x);
  EXPECT_TRUE(IsEqual(part, original, 1e-14));
}

TEST(ConstrainedSolve, shapesThatDoNotFitAreRefused) {
  RVector x, y, c(3);
  EXPECT_THROW(std::ignore = CPDSolve(RMatrix(3, 2), RMatrix(1, 3), c, x, y),
               InternalErrorException);
  EXPECT_THROW(std::ignore = CPDSolve(RMatrix(3, 3), RMatrix(1, 2), c, x, y),
               InternalErrorException);
  EXPECT_THROW(std::ignore = AlternateSolve(RMatrix(4, 4), RMatrix(1, 4), c, x, y),
               InternalErrorException);
  EXPECT_THROW(CPDProject(RMatrix(1, 3), RMatrix(2, 2), c, y), InternalErrorException);
}

}  // namespace
}  // namespace shr
