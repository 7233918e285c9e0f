// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The works of the linear algebra that contenders are timed on, and how their results are
/// compared.

#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace shr::bench {

enum class LinearWork {
  Cholesky,      // L of a positive definite matrix
  Gauss,         // x of a general system
  Product,       // A B
  Eigen,         // values and vectors of a symmetric matrix
  Tridiagonal,   // T and Q of a symmetric matrix
  LeastSquares,  // x of `size` equations with 20 unknowns
};

inline constexpr std::size_t UNKNOWNS = 20;

/// A matrix, row by row, and a right-hand side.
struct LinearInput {
  std::size_t rows;
  std::size_t columns;
  std::vector<double> a;
  std::vector<double> b;
};
const LinearInput& InputOf(LinearWork work, std::size_t size);

/// Does a work on one input again and again.
class LinearJob {
public:
  virtual ~LinearJob() = default;
  virtual void Run() = 0;
  /// Numbers that all contenders must find, after a run: see `SameResult`.
  virtual std::vector<double> Result() const = 0;
};

/// L row by row with zeros above; x; the product; eigenvalues by decreasing magnitude; trace and
/// Frobenius norm of T; x.
using MakeJob = std::function<std::unique_ptr<LinearJob>(const LinearInput&)>;

/// Makes the benchmark "numerics/<work>/<contender>" over the sizes of the work. Its results are
/// compared with ours before it is timed.
int AddContender(LinearWork work, const std::string& contender, const MakeJob& make);

/// A job of two functions on a state.
template <class State>
class JobOf : public LinearJob {
public:
  JobOf(State state, void (*run)(State&), std::vector<double> (*result)(const State&))
      : state_(std::move(state)), run_(run), result_(result) {}
  void Run() override { run_(state_); }
  std::vector<double> Result() const override { return result_(state_); }

private:
  State state_;
  void (*run_)(State&);
  std::vector<double> (*result_)(const State&);
};

template <class State>
std::unique_ptr<LinearJob> MakeJobOf(State state, void (*run)(State&),
                                     std::vector<double> (*result)(const State&)) {
  return std::make_unique<JobOf<State>>(std::move(state), run, result);
}

}  // namespace shr::bench
