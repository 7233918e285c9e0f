// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Vectors and matrices seen as objects of Eigen, as docs/linear-algebra.md shows.

#include <gtest/gtest.h>

#include <Eigen/Dense>

#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {
namespace {

// [eigen]
using EigenMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

/// Looks at the elements of `m`; changes go there. Valid as long as they are.
Eigen::Map<EigenMatrix> ToEigen(RMatrix& m) {
  return {m.data(), static_cast<Eigen::Index>(m.Rows()), static_cast<Eigen::Index>(m.Columns())};
}

Eigen::Map<Eigen::VectorXd> ToEigen(RVector& v) {
  return {v.data(), static_cast<Eigen::Index>(v.size())};
}
// [end]

TEST(RMatrixEigen, mapsSeeTheElementsWhereTheyAre) {
  RMatrix a{{2.0, 1.0, 0.0}, {1.0, 3.0, 5.0}};
  RVector v{1.0, 2.0, 3.0};
  const Eigen::VectorXd product = ToEigen(a) * ToEigen(v);
  EXPECT_EQ(product(0), 4.0);
  EXPECT_EQ(product(1), 22.0);
  ToEigen(a)(1, 2) = 7.0;
  EXPECT_EQ(a(1, 2), 7.0);
  EXPECT_EQ(ToEigen(a).data(), a.data());
}

}  // namespace
}  // namespace shr
