// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the residual is orthogonal to the columns and Q R is the matrix; exact systems; dependent
// columns and what they leave; more columns than rows, nothing, NaN, wrong shapes.

#include "shared/numerics/linear/LeastSquares.h"

#include <gtest/gtest.h>

#include "shared/diagnostics/Exception.h"
#include "tests/numerics/LinearCases.h"
#include "tests/numerics/ReferenceProblems.h"

namespace shr {
namespace {

/// Of epsilon times rows, of the sizes that meet.
constexpr double BOUND = 4.0;

struct Shape {
  std::uint64_t rows, columns;
};

TEST(LeastSquares, residualsAreOrthogonalToTheColumns) {
  for (const Shape& shape :
       {Shape{1, 1}, {5, 2}, {12, 12}, {63, 4}, {64, 9}, {65, 20}, {300, 17}}) {
    SCOPED_TRACE(testing::Message() << shape.rows << " x " << shape.columns);
    const RMatrix a = RandomMatrix(shape.rows, shape.columns, 1);
    const RVector b = RandomVector(shape.rows, 2);
    RMatrix q = a;
    RVector x(shape.columns), residual = b, product, expected;
    ASSERT_TRUE(MGSLeastSquares(q, x, residual));
    const double bound = BOUND * static_cast<double>(shape.rows) * EPSILON;
    InnerProduct(a, residual, product);
    EXPECT_LE(LInfNorm(product), bound * FNorm(a) * L2Norm(b));
    Product(a, x, expected);
    Subtract(b, expected, expected);
    EXPECT_TRUE(IsEqual(residual, expected, bound * (FNorm(a) * L2Norm(x) + L2Norm(b))));
    EXPECT_LE(OrthogonalityError(q), 1e-12);  // times the condition of a
    RMatrix r, back;
    InnerProduct(q, a, r);  // Q^T A is R: it has nothing below its diagonal
    Product(q, r, back);
    EXPECT_TRUE(IsEqual(back, a, 1e-12));

    RMatrix again = a, sides(shape.rows, 2), solutions(shape.columns, 2);
    AssignCol(b, 0, sides);
    AssignCol(b, 1, sides);
    ASSERT_TRUE(MGSLeastSquares(again, solutions, sides));
    RVector column;
    ExtractCol(solutions, 1, column);
    EXPECT_TRUE(IsEqual(column, x, bound * 1e3 * (1.0 + LInfNorm(x))));
  }
}

TEST(LeastSquares, certifiedRegressionsAreMet) {
  // Digits of the worst coefficient, 15 certified: those of Filip's polynomial of degree 10 suffer
  // from a condition of 1e15.
  constexpr struct {
    const char* name;
    double digits;
  } EXPECTED[] = {{"longley", 12.5}, {"filip", 7.5},    {"wampler1", 9.0}, {"wampler2", 12.5},
                  {"wampler3", 9.0}, {"wampler4", 8.0}, {"wampler5", 6.0}};
  std::vector<Regression> problems = Regressions();
  ASSERT_EQ(problems.size(), std::size(EXPECTED));
  for (std::size_t i = 0; i < problems.size(); ++i) {
    Regression& problem = problems[i];
    ASSERT_EQ(problem.name, EXPECTED[i].name);
    RVector x(problem.certified.size());
    ASSERT_TRUE(MGSLeastSquares(problem.a, x, problem.b)) << problem.name;
    EXPECT_GE(DigitsOf(x, problem.certified), EXPECTED[i].digits) << problem.name;
    RecordProperty(problem.name, std::to_string(DigitsOf(x, problem.certified)));
  }
}

TEST(LeastSquares, aDependentColumnLeavesWhatWasDone) {
  RMatrix a{{1.0, 2.0, 1.0}, {0.0, 0.0, 1.0}, {0.0, 0.0, 0.0}};
  RVector x{-1.0, -1.0, -1.0}, b{3.0, 4.0, 5.0};
  EXPECT_FALSE(MGSLeastSquares(a, x, b));
  EXPECT_TRUE(IsEqual(a, RMatrix{{1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, {0.0, 0.0, 0.0}}, 0));
  EXPECT_TRUE(IsEqual(b, RVector{0.0, 4.0, 5.0}, 0));
  EXPECT_TRUE(IsEqual(x, RVector{3.0, -1.0, -1.0}, 0));
  RMatrix small{{1e-8}}, enough{{2e-8}};
  RVector one(1), side{1.0};
  EXPECT_FALSE(MGSLeastSquares(small, one, side));
  EXPECT_TRUE(MGSLeastSquares(enough, one, side));
  EXPECT_DOUBLE_EQ(one(0), 5e7);
}

TEST(LeastSquares, fewerRowsThanColumnsFailAndNothingSucceeds) {
  RMatrix wide = RandomMatrix(2, 3, 1), noColumns(3, 0), noRows(0, 2);
  RVector x(3), b{1.0, 2.0}, none, three{1.0, 2.0, 3.0}, two(2);
  EXPECT_FALSE(MGSLeastSquares(wide, x, b));
  EXPECT_TRUE(MGSLeastSquares(noColumns, none, three));
  EXPECT_EQ(three(2), 3.0);
  EXPECT_FALSE(MGSLeastSquares(noRows, two, none));
}

TEST(LeastSquares, notANumberPassesIntoTheResult) {
  RMatrix a = RandomMatrix(10, 3, 1);
  a(4, 1) = NOT_A_NUMBER;
  RVector x(3), b = RandomVector(10, 2);
  EXPECT_TRUE(MGSLeastSquares(a, x, b));
  EXPECT_TRUE(std::isnan(x(0)) && std::isnan(b(0)));
}

TEST(LeastSquares, shapesThatDoNotFitAreRefused) {
  RMatrix a(3, 2), x(2, 2), b(3, 1);
  RVector two(2), three(3);
  EXPECT_THROW(std::ignore = MGSLeastSquares(a, three, three), InternalErrorException);
  EXPECT_THROW(std::ignore = MGSLeastSquares(a, two, two), InternalErrorException);
  EXPECT_THROW(std::ignore = MGSLeastSquares(a, x, b), InternalErrorException);
}

}  // namespace
}  // namespace shr
