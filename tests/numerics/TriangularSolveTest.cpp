// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every solver against the triangle that it must have read, with garbage in the other one;
// pivots just below, at and above the limit, and what a refused one leaves; nothing; wrong shapes.

#include "shared/numerics/linear/TriangularSolve.h"

#include <gtest/gtest.h>

#include <functional>

#include "shared/diagnostics/Exception.h"
#include "tests/numerics/LinearCases.h"

namespace shr {
namespace {

/// Of n epsilon: what a solution may differ by in the equations it solves.
constexpr double RESIDUAL_BOUND = 2.0;

/// A triangle with a strong diagonal and with NaN above it.
RMatrix Triangle(std::uint64_t n) {
  RMatrix l = RandomMatrix(n, n, static_cast<unsigned int>(n));
  for (std::uint64_t i = 0; i < n; ++i) {
    l(i, i) += l(i, i) < 0.0 ? -4.0 : 4.0;
    for (std::uint64_t j = i + 1; j < n; ++j) l(i, j) = NOT_A_NUMBER;
  }
  return l;
}

struct Case {
  const char* name;
  std::function<bool(const RMatrix&, RVector&)> vector;
  std::function<bool(const RMatrix&, RMatrix&)> matrix;
  bool isUnit;
  bool isTransposed;
};

template <class Side>
auto Always(void (*solve)(const RMatrix&, Side&)) {
  return [solve](const RMatrix& l, Side& b) {
    solve(l, b);
    return true;
  };
}

template <class Side>
using Solver = bool (*)(const RMatrix&, Side&);

const Case CASES[] = {
    {"forward", Solver<RVector>(ForwardElimination), Solver<RMatrix>(ForwardElimination), false,
     false},
    {"back", Solver<RVector>(BackSubstitution), Solver<RMatrix>(BackSubstitution), false, true},
    {"unit forward", Always<RVector>(UnitForwardElimination),
     Always<RMatrix>(UnitForwardElimination), true, false},
    {"unit back", Always<RVector>(UnitBackSubstitution), Always<RMatrix>(UnitBackSubstitution),
     true, true},
};

TEST(TriangularSolve, solutionsSatisfyTheEquations) {
  for (const Case& solver : CASES) {
    for (const std::uint64_t n : {1u, 2u, 3u, 7u, 30u}) {
      SCOPED_TRACE(testing::Message() << solver.name << ", n = " << n);
      RMatrix l = Triangle(n);
      if (solver.isUnit) {
        for (std::uint64_t i = 0; i < n; ++i) l(i, i) = NOT_A_NUMBER;
        for (std::uint64_t i = 0; i < n; ++i) {
          for (std::uint64_t j = 0; j < i; ++j) l(i, j) /= 4.0;
        }
      }
      RMatrix used = LowerOf(l, solver.isUnit);
      if (solver.isTransposed) used = Transpose(used);
      const RMatrix sides = RandomMatrix(n, 3, 9);
      RMatrix solutions = sides;
      ASSERT_TRUE(solver.matrix(l, solutions));
      for (std::uint64_t j = 0; j < 3; ++j) {
        RVector b, x, column;
        ExtractCol(sides, j, b);
        ExtractCol(solutions, j, column);
        x = b;
        ASSERT_TRUE(solver.vector(l, x));
        const double bound = RESIDUAL_BOUND * static_cast<double>(n) * EPSILON;
        EXPECT_LE(RelativeResidual(used, x, b), bound);
        EXPECT_LE(RelativeResidual(used, column, b), bound);
      }
    }
  }
}

TEST(TriangularSolve, pivotsBelowEpsilonAreRefusedWhereTheyStand) {
  for (const double pivot : {0.0, 2.2e-16, -2.2e-16, 1e-300}) {
    const RMatrix m{{2.0, 0.0, 0.0}, {1.0, pivot, 0.0}, {1.0, 1.0, 2.0}};
    RVector b{2.0, 3.0, 4.0};
    EXPECT_FALSE(DiagonalSolve(m, b));
    EXPECT_TRUE(IsEqual(b, RVector{1.0, 3.0, 4.0}, 0));
    b = RVector{2.0, 3.0, 4.0};
    EXPECT_FALSE(ForwardElimination(m, b));
    EXPECT_TRUE(IsEqual(b, RVector{1.0, 3.0, 4.0}, 0));
    b = RVector{2.0, 3.0, 4.0};
    EXPECT_FALSE(BackSubstitution(m, b));
    EXPECT_TRUE(IsEqual(b, RVector{2.0, 3.0, 2.0}, 0));
    RMatrix sides{{2.0, 4.0}, {3.0, 3.0}, {4.0, 2.0}};
    EXPECT_FALSE(BackSubstitution(m, sides));
    EXPECT_TRUE(IsEqual(sides, RMatrix{{2.0, 4.0}, {3.0, 3.0}, {2.0, 1.0}}, 0));
    EXPECT_FALSE(DiagonalSolve(m, sides));
    EXPECT_TRUE(IsEqual(sides, RMatrix{{1.0, 2.0}, {3.0, 3.0}, {2.0, 1.0}}, 0));
  }
  RVector b{1.0};
  EXPECT_TRUE(DiagonalSolve(RMatrix{{EPSILON}}, b));
  EXPECT_EQ(b(0), 1.0 / EPSILON);
  EXPECT_TRUE(ForwardElimination(RMatrix{{-EPSILON}}, b));
}

TEST(TriangularSolve, notANumberPassesIntoTheResult) {
  RVector b{1.0, 1.0};
  EXPECT_TRUE(ForwardElimination(RMatrix{{NOT_A_NUMBER, 0.0}, {1.0, 1.0}}, b));
  EXPECT_TRUE(std::isnan(b(0)) && std::isnan(b(1)));
}

TEST(TriangularSolve, nothingSucceedsWithoutWork) {
  RVector b;
  RMatrix sides(0, 3);
  EXPECT_TRUE(DiagonalSolve(RMatrix(), b) && DiagonalSolve(RMatrix(), sides));
  EXPECT_TRUE(ForwardElimination(RMatrix(), b) && BackSubstitution(RMatrix(), b));
  EXPECT_TRUE(ForwardElimination(RMatrix(), sides) && BackSubstitution(RMatrix(), sides));
  RMatrix noSides(2, 0);
  EXPECT_TRUE(ForwardElimination(RMatrix{{1.0, 0.0}, {1.0, 1.0}}, noSides));
}

TEST(TriangularSolve, shapesThatDoNotFitAreRefused) {
  RVector three{1.0, 2.0, 3.0};
  RMatrix sides(3, 1);
  for (const Case& solver : CASES) {
    EXPECT_THROW(solver.vector(RMatrix(2, 2), three), InternalErrorException);
    EXPECT_THROW(solver.vector(RMatrix(3, 2), three), InternalErrorException);
    EXPECT_THROW(solver.matrix(RMatrix(2, 3), sides), InternalErrorException);
  }
  EXPECT_THROW(std::ignore = DiagonalSolve(RMatrix(4, 4), three), InternalErrorException);
  EXPECT_EQ(three(2), 3.0);
}

}  // namespace
}  // namespace shr
