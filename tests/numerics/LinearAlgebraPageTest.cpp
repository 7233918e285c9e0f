// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What docs/linear-algebra.md shows.

#include <gtest/gtest.h>

#include "shared/numerics/linear/CyclicJacobi.h"
#include "shared/numerics/linear/GaussSolve.h"
#include "shared/numerics/linear/LeastSquares.h"
#include "shared/numerics/linear/MatrixUtility.h"

namespace shr {
namespace {

TEST(LinearAlgebraPage, equationsAreSolvedAndLinesFitted) {
  // [solve]
  RMatrix a{{2.0, 1.0}, {1.0, 3.0}};
  RVector b{4.0, 7.0};
  const bool isSolved = GaussSolve(a, b);  // b is 1, 2; a is used up

  RMatrix points{{1.0, 0.0}, {1.0, 1.0}, {1.0, 2.0}};  // a column of ones and one of x
  RVector y{1.0, 3.0, 5.0}, line(2);
  const bool isFitted = MGSLeastSquares(points, line, y);  // line is 1, 2; y is the residual, 0

  RMatrix vectors{{2.0, 1.0}, {1.0, 2.0}};
  RVector values;
  const bool isConverged = CyclicJacobi(vectors, values);  // values are 3, 1
  // [end]
  EXPECT_TRUE(isSolved && isFitted && isConverged);
  EXPECT_TRUE(IsEqual(b, RVector{1.0, 2.0}, 1e-15));
  EXPECT_TRUE(IsEqual(line, RVector{1.0, 2.0}, 1e-14));
  EXPECT_TRUE(IsEqual(values, RVector{3.0, 1.0}, 1e-15));
}

}  // namespace
}  // namespace shr
