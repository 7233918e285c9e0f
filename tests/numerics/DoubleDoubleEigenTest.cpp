// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: a system that a double cannot solve, by several decompositions.

#include "shared/numerics/doubledouble/DoubleDoubleEigen.h"

#include <gtest/gtest.h>

#include <Eigen/Dense>

namespace shr {
namespace {

/// Returns the largest error of the solution of a Hilbert system whose solution is all ones.
template <class Scalar, class Solve>
double HilbertError(const Solve& solve) {
  constexpr int SIZE = 12;
  Eigen::Matrix<Scalar, Eigen::Dynamic, Eigen::Dynamic> hilbert(SIZE, SIZE);
  for (int i = 0; i < SIZE; ++i) {
    for (int j = 0; j < SIZE; ++j) hilbert(i, j) = Scalar(1) / Scalar(i + j + 1);
  }
  using Column = Eigen::Matrix<Scalar, Eigen::Dynamic, 1>;
  const Column ones = Column::Ones(SIZE);
  const Column right = hilbert * ones;
  const Column solution = solve(hilbert, right);
  return static_cast<double>(Scalar((solution - ones).cwiseAbs().maxCoeff()));
}

const auto BY_LU = [](const auto& matrix, const auto& right) {
  return matrix.partialPivLu().solve(right).eval();
};
const auto BY_QR = [](const auto& matrix, const auto& right) {
  return matrix.householderQr().solve(right).eval();
};
const auto BY_CHOLESKY = [](const auto& matrix, const auto& right) {
  return matrix.llt().solve(right).eval();
};

TEST(DoubleDoubleEigen, solvesAHilbertSystemOfTwelve) {
  constexpr double BOUND = 1e-15;
  EXPECT_LT(HilbertError<doubledouble>(BY_LU), BOUND);
  EXPECT_LT(HilbertError<doubledouble>(BY_QR), BOUND);
  EXPECT_LT(HilbertError<doubledouble>(BY_CHOLESKY), BOUND);
  EXPECT_GT(HilbertError<double>(BY_LU), 0.01);
}

TEST(DoubleDoubleEigen, findsEigenvalues) {
  Eigen::Matrix<doubledouble, 2, 2> matrix;
  matrix << 2, 1, 1, 2;
  const Eigen::SelfAdjointEigenSolver<Eigen::Matrix<doubledouble, 2, 2>> solver(matrix);
  EXPECT_LT(fabs(solver.eigenvalues()(0) - 1), doubledouble(1e-30));
  EXPECT_LT(fabs(solver.eigenvalues()(1) - 3), doubledouble(1e-30));
}

}  // namespace
}  // namespace shr
