// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Prints how exact the linear algebra is beside its peers, the tables of docs/linear-algebra.md:
// digits of certified regressions beside LAPACK's dgels, and relative errors of the eigenvalues of
// graded positive definite matrices beside the plain loops of Jacobi's method and Eigen. Not a
// benchmark.

#include <Eigen/Eigenvalues>

#include <cstdio>

#include "bench/numerics/PlainJacobi.h"
#include "shared/numerics/linear/CyclicJacobi.h"
#include "shared/numerics/linear/LeastSquares.h"
#include "tests/numerics/ExactEigenvalues.h"
#include "tests/numerics/LinearCases.h"
#include "tests/numerics/ReferenceProblems.h"

extern "C" void dgels_(const char* trans, const int* m, const int* n, const int* sides, double* a,
                       const int* lda, double* b, const int* ldb, double* work, const int* workSize,
                       int* info);

namespace shr::bench {
namespace {

RVector SolveByLapack(const Regression& problem) {
  RMatrix columns = Transpose(problem.a);
  RVector side = problem.b, work(10000), x(problem.certified.size());
  const int m = static_cast<int>(problem.a.Rows()), n = static_cast<int>(problem.a.Columns());
  const int one = 1, size = static_cast<int>(work.size());
  int info = 0;
  dgels_("N", &m, &n, &one, columns.data(), &m, side.data(), &m, work.data(), &size, &info);
  std::copy_n(side.begin(), x.size(), x.begin());
  return x;
}

void PrintRegressions() {
  std::printf("%-12s %6s %6s   right digits of the worst coefficient\n", "regression", "ours",
              "dgels");
  for (Regression& problem : Regressions()) {
    const double peer = DigitsOf(SolveByLapack(problem), problem.certified);
    RVector x(problem.certified.size());
    if (!MGSLeastSquares(problem.a, x, problem.b)) std::printf("MGSLeastSquares failed\n");
    std::printf("%-12s %6.1f %6.1f\n", problem.name.c_str(), DigitsOf(x, problem.certified), peer);
  }
}

double LargestError(RVector w, const std::vector<long double>& exact) {
  std::sort(w.begin(), w.end(), std::greater<>());
  double largest = 0.0;
  for (std::size_t i = 0; i < exact.size(); ++i) {
    largest = std::max(largest, static_cast<double>(std::abs(w(i) / exact[i] - 1.0L)));
  }
  return largest;
}

RVector ByEigen(const RMatrix& a) {
  using Rows = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
  const auto n = static_cast<Eigen::Index>(a.Rows());
  const Eigen::MatrixXd copy = Eigen::Map<const Rows>(a.data(), n, n);
  const Eigen::VectorXd values = Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>(copy).eigenvalues();
  return RVector(std::span<const double>(values.data(), a.Rows()));
}

void PrintEigenvalues() {
  std::printf("\n%-5s %-12s %9s %9s %9s   largest relative error of an eigenvalue\n", "n",
              "graded to", "ours", "plain", "Eigen");
  for (const std::uint64_t n : {20u, 50u, 100u}) {
    for (const double grade : {0.0, -3.0, -8.0, -20.0}) {
      const RMatrix a = Graded(RandomPositive(n, 1, 1.0), Grades(n, 0.0, grade));
      const std::vector<long double> exact = ExactEigenvalues(a);
      RMatrix vectors = a, plain = a, plainVectors;
      RVector w, plainValues;
      if (!CyclicJacobi(vectors, w)) std::printf("CyclicJacobi failed\n");
      PlainJacobi(plain, plainVectors);
      ExtractDiagonal(plain, plainValues);
      std::printf("%-5d 1e%-10.0f %9.1e %9.1e %9.1e\n", static_cast<int>(n), 2.0 * grade,
                  LargestError(w, exact), LargestError(plainValues, exact),
                  LargestError(ByEigen(a), exact));
    }
  }
}

}  // namespace
}  // namespace shr::bench

int main() {
  shr::bench::PrintRegressions();
  shr::bench::PrintEigenvalues();
}
