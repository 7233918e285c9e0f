// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Eigen, with matrices stored as it likes them best.

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>

#include "bench/numerics/LinearWork.h"

namespace shr::bench {
namespace {

using Rows = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

struct State {
  Eigen::MatrixXd a, result;
  Eigen::VectorXd b, x;
};

State StateOf(const LinearInput& input) {
  State state;
  state.a = Eigen::Map<const Rows>(input.a.data(), static_cast<Eigen::Index>(input.rows),
                                   static_cast<Eigen::Index>(input.columns));
  state.b =
      Eigen::Map<const Eigen::VectorXd>(input.b.data(), static_cast<Eigen::Index>(input.b.size()));
  return state;
}

std::vector<double> ListOf(const Eigen::MatrixXd& m) {
  const Rows rows = m;
  return {rows.data(), rows.data() + rows.size()};
}

std::vector<double> Solution(const State& s) {
  return ListOf(s.x);
}

std::vector<double> ByMagnitude(const State& s) {
  std::vector<double> values = ListOf(s.x);
  std::sort(values.begin(), values.end(),
            [](double a, double b) { return std::abs(a) > std::abs(b); });
  return values;
}

[[maybe_unused]] const int ADDED = [] {
  return AddContender(
             LinearWork::Cholesky, "eigen",
             [](const LinearInput& input) {
               return MakeJobOf<State>(
                   StateOf(input),
                   [](State& s) { s.result = Eigen::LLT<Eigen::MatrixXd>(s.a).matrixLLT(); },
                   [](const State& s) { return ListOf(s.result.triangularView<Eigen::Lower>()); });
             }) +
         AddContender(
             LinearWork::Gauss, "eigen",
             [](const LinearInput& input) {
               return MakeJobOf<State>(
                   StateOf(input),
                   [](State& s) { s.x = Eigen::PartialPivLU<Eigen::MatrixXd>(s.a).solve(s.b); },
                   Solution);
             }) +
         AddContender(LinearWork::Product, "eigen",
                      [](const LinearInput& input) {
                        return MakeJobOf<State>(
                            StateOf(input), [](State& s) { s.result.noalias() = s.a * s.a; },
                            [](const State& s) { return ListOf(s.result); });
                      }) +
         AddContender(LinearWork::Eigen, "eigen",
                      [](const LinearInput& input) {
                        return MakeJobOf<State>(
                            StateOf(input),
                            [](State& s) {
                              const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(s.a);
                              s.x = solver.eigenvalues();
                              s.result = solver.eigenvectors();
                            },
                            ByMagnitude);
                      }) +
         AddContender(LinearWork::LeastSquares, "eigen", [](const LinearInput& input) {
           return MakeJobOf<State>(
               StateOf(input),
               [](State& s) { s.x = Eigen::HouseholderQR<Eigen::MatrixXd>(s.a).solve(s.b); },
               Solution);
         });
}();

}  // namespace
}  // namespace shr::bench
