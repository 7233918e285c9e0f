// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every product against sums of integers, which are exact in any order, for shapes on all
// sides of tiles, strips and blocks; results that are arguments; sums of nothing; wrong shapes.

#include "shared/numerics/linear/MatrixProducts.h"

#include <gtest/gtest.h>

#include "shared/diagnostics/Exception.h"
#include "tests/numerics/LinearCases.h"

namespace shr {
namespace {

/// Small whole numbers: their products sum up without rounding.
RMatrix WholeNumbers(std::uint64_t rows, std::uint64_t columns, unsigned int seed) {
  RMatrix m = RandomMatrix(rows, columns, seed);
  for (double& element : m) element = std::round(element * 100.0);
  return m;
}

RMatrix PlainProduct(const RMatrix& a, const RMatrix& b) {
  RMatrix m;
  Zeros(m, a.Rows(), b.Columns());
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    for (std::uint64_t k = 0; k < a.Columns(); ++k) {
      for (std::uint64_t j = 0; j < b.Columns(); ++j) m(i, j) += a(i, k) * b(k, j);
    }
  }
  return m;
}

struct Shape {
  std::uint64_t rows, depth, columns;
};

TEST(MatrixProducts, agreeWithSumsOfWholeNumbers) {
  constexpr Shape SHAPES[] = {{1, 1, 1},   {3, 2, 5},    {6, 8, 8},   {7, 9, 9},    {12, 16, 24},
                              {13, 1, 40}, {50, 60, 16}, {1, 300, 7}, {5, 257, 33}, {40, 256, 32},
                              {9, 520, 8}, {2, 3, 260},  {60, 7, 513}};
  for (const Shape& shape : SHAPES) {
    SCOPED_TRACE(testing::Message()
                 << shape.rows << " x " << shape.depth << " x " << shape.columns);
    const RMatrix a = WholeNumbers(shape.rows, shape.depth, 1);
    const RMatrix b = WholeNumbers(shape.depth, shape.columns, 2);
    const RMatrix expected = PlainProduct(a, b);
    RMatrix m;
    Product(a, b, m);
    EXPECT_TRUE(IsEqual(m, expected, 0));
    InnerProduct(Transpose(a), b, m);
    EXPECT_TRUE(IsEqual(m, expected, 0));
    OuterProduct(a, Transpose(b), m);
    EXPECT_TRUE(IsEqual(m, expected, 0));
    m = a;
    Product(m, b);
    EXPECT_TRUE(IsEqual(m, expected, 0));

    RVector column, r, row;
    ExtractCol(b, 0, column);
    Product(a, column, r);
    ExtractCol(expected, 0, row);
    EXPECT_TRUE(IsEqual(r, row, 0));
    InnerProduct(Transpose(a), column, column);
    EXPECT_TRUE(IsEqual(column, row, 0));
  }
}

TEST(MatrixProducts, vectorsGiveNumbersAndMatrices) {
  const RVector a{1.0, 2.0, 3.0}, b{4.0, 5.0};
  EXPECT_EQ(DotProduct(a, a), 14.0);
  double result = 0.0;
  InnerProduct(b, b, result);
  EXPECT_EQ(result, 41.0);
  RMatrix m;
  OuterProduct(a, b, m);
  EXPECT_TRUE(IsEqual(m, RMatrix{{4.0, 5.0}, {8.0, 10.0}, {12.0, 15.0}}, 0));
  EXPECT_EQ(QuadraticProduct(a, m, b), 14.0 * 41.0);
  QuadraticProduct(a, m, b, result);
  EXPECT_EQ(result, 574.0);
  OuterProduct(m, m);
  EXPECT_EQ(m(2, 2), 369.0);
  InnerProduct(m, m);
  EXPECT_EQ(m.Rows(), 3u);
}

TEST(MatrixProducts, dotProductsStayWithinTheirBound) {
  for (const std::uint64_t n : {1u, 3u, 4u, 15u, 16u, 17u, 100u, 1000u}) {
    const RVector a = RandomVector(n, 1), b = RandomVector(n, 2);
    long double exact = 0.0L, magnitudes = 0.0L;
    for (std::uint64_t i = 0; i < n; ++i) {
      exact += static_cast<long double>(a(i)) * b(i);
      magnitudes += std::abs(static_cast<long double>(a(i)) * b(i));
    }
    const double bound = (static_cast<double>(n) / 16.0 + 20.0) * EPSILON;
    EXPECT_NEAR(DotProduct(a, b), static_cast<double>(exact),
                bound * static_cast<double>(magnitudes));
  }
}

TEST(MatrixProducts, sumsOfNothingAreZero) {
  RMatrix m{{5.0}};
  Product(RMatrix(2, 0), RMatrix(0, 3), m);
  EXPECT_TRUE(m.Rows() == 2 && m.Columns() == 3 && IsZero(m, 0));
  EXPECT_EQ(DotProduct(RVector(), RVector()), 0.0);
  RVector r;
  InnerProduct(RMatrix(0, 3), RVector(), r);
  EXPECT_TRUE(IsEqual(r, RVector{0.0, 0.0, 0.0}, 0));
}

TEST(MatrixProducts, shapesThatDoNotFitAreRefused) {
  RMatrix a(2, 3), m{{1.0}};
  RVector v(2), r{1.0};
  EXPECT_THROW(Product(a, a, m), InternalErrorException);
  EXPECT_THROW(InnerProduct(a, Transpose(a), m), InternalErrorException);
  EXPECT_THROW(OuterProduct(a, Transpose(a), m), InternalErrorException);
  EXPECT_THROW(Product(a, v, r), InternalErrorException);
  EXPECT_THROW(InnerProduct(a, RVector(3), r), InternalErrorException);
  EXPECT_THROW(DotProduct(v, RVector(3)), InternalErrorException);
  EXPECT_THROW(QuadraticProduct(v, a, v), InternalErrorException);
  EXPECT_TRUE(m(0, 0) == 1.0 && r(0) == 1.0);
}

}  // namespace
}  // namespace shr
