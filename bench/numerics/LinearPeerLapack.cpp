// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// OpenBLAS with one thread, by the interfaces of BLAS and LAPACK, matrices column by column.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "bench/numerics/LinearWork.h"

extern "C" {
void openblas_set_num_threads(int count);
void dgemm_(const char* transA, const char* transB, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
            const double* beta, double* c, const int* ldc);
void dpotrf_(const char* uplo, const int* n, double* a, const int* lda, int* info);
void dgesv_(const int* n, const int* sides, double* a, const int* lda, int* pivots, double* b,
            const int* ldb, int* info);
void dsyevd_(const char* job, const char* uplo, const int* n, double* a, const int* lda, double* w,
             double* work, const int* workSize, int* integers, const int* integerSize, int* info);
void dsytrd_(const char* uplo, const int* n, double* a, const int* lda, double* d, double* e,
             double* tau, double* work, const int* workSize, int* info);
void dorgtr_(const char* uplo, const int* n, double* a, const int* lda, const double* tau,
             double* work, const int* workSize, int* info);
void dgels_(const char* trans, const int* m, const int* n, const int* sides, double* a,
            const int* lda, double* b, const int* ldb, double* work, const int* workSize,
            int* info);
}

namespace shr::bench {
namespace {

constexpr double ONE = 1.0, ZERO = 0.0;
constexpr int ONE_SIDE = 1;

struct State {
  int rows, columns;
  std::vector<double> a, b, work, side, w, d, e, tau, space;
  std::vector<int> integers;
  int info = 0;
};

/// Transposes, as LAPACK stores by columns.
State StateOf(const LinearInput& input) {
  openblas_set_num_threads(1);
  State s;
  s.rows = static_cast<int>(input.rows);
  s.columns = static_cast<int>(input.columns);
  s.a.resize(input.a.size());
  for (std::size_t i = 0; i < input.rows; ++i) {
    for (std::size_t j = 0; j < input.columns; ++j) {
      s.a[j * input.rows + i] = input.a[i * input.columns + j];
    }
  }
  s.b = input.b;
  s.work = s.a;
  s.w.resize(input.columns);
  s.d.resize(input.columns);
  s.e.resize(input.columns);
  s.tau.resize(input.columns);
  s.space.resize(1 + 6 * input.columns + 2 * input.columns * input.columns + 64 * input.rows);
  s.integers.resize(3 + 5 * input.columns);
  return s;
}

int SpaceOf(const State& s) {
  return static_cast<int>(s.space.size());
}

void RequireSuccess(const State& s) {
  if (s.info == 0) return;
  std::fprintf(stderr, "LAPACK reports %d\n", s.info);
  std::abort();
}

std::vector<double> RowsOf(const std::vector<double>& columns, std::size_t n, bool isLower) {
  std::vector<double> rows(n * n);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < (isLower ? i + 1 : n); ++j) rows[i * n + j] = columns[j * n + i];
  }
  return rows;
}

void Factor(State& s) {
  s.work = s.a;
  dpotrf_("L", &s.rows, s.work.data(), &s.rows, &s.info);
  RequireSuccess(s);
}

void Solve(State& s) {
  s.work = s.a;
  s.side = s.b;
  dgesv_(&s.rows, &ONE_SIDE, s.work.data(), &s.rows, s.integers.data(), s.side.data(), &s.rows,
         &s.info);
  RequireSuccess(s);
}

void Multiply(State& s) {
  dgemm_("N", "N", &s.rows, &s.rows, &s.rows, &ONE, s.a.data(), &s.rows, s.a.data(), &s.rows, &ZERO,
         s.work.data(), &s.rows);
}

void FindEigenvalues(State& s) {
  s.work = s.a;
  const int space = SpaceOf(s), integers = static_cast<int>(s.integers.size());
  dsyevd_("V", "L", &s.rows, s.work.data(), &s.rows, s.w.data(), s.space.data(), &space,
          s.integers.data(), &integers, &s.info);
  RequireSuccess(s);
}

void Reduce(State& s) {
  s.work = s.a;
  const int space = SpaceOf(s);
  dsytrd_("L", &s.rows, s.work.data(), &s.rows, s.d.data(), s.e.data(), s.tau.data(),
          s.space.data(), &space, &s.info);
  RequireSuccess(s);
}

void ReduceWithQ(State& s) {
  Reduce(s);
  const int space = SpaceOf(s);
  dorgtr_("L", &s.rows, s.work.data(), &s.rows, s.tau.data(), s.space.data(), &space, &s.info);
  RequireSuccess(s);
}

void Fit(State& s) {
  s.work = s.a;
  s.side = s.b;
  const int space = SpaceOf(s);
  dgels_("N", &s.rows, &s.columns, &ONE_SIDE, s.work.data(), &s.rows, s.side.data(), &s.rows,
         s.space.data(), &space, &s.info);
  RequireSuccess(s);
}

std::vector<double> Triangle(const State& s) {
  return RowsOf(s.work, static_cast<std::size_t>(s.rows), true);
}
std::vector<double> Whole(const State& s) {
  return RowsOf(s.work, static_cast<std::size_t>(s.rows), false);
}
std::vector<double> Solution(const State& s) {
  return {s.side.begin(), s.side.begin() + s.columns};
}
std::vector<double> ByMagnitude(const State& s) {
  std::vector<double> values = s.w;
  std::sort(values.begin(), values.end(),
            [](double a, double b) { return std::abs(a) > std::abs(b); });
  return values;
}
std::vector<double> TraceAndNorm(const State& s) {
  double trace = 0.0, squares = 0.0;
  for (const double element : s.d) trace += element, squares += element * element;
  for (std::size_t i = 0; i + 1 < s.e.size(); ++i) squares += 2.0 * s.e[i] * s.e[i];
  return {trace, std::sqrt(squares)};
}

MakeJob Maker(void (*run)(State&), std::vector<double> (*result)(const State&)) {
  return [run, result](const LinearInput& input) {
    return MakeJobOf<State>(StateOf(input), run, result);
  };
}

[[maybe_unused]] const int ADDED = [] {
  return AddContender(LinearWork::Cholesky, "openblas", Maker(Factor, Triangle)) +
         AddContender(LinearWork::Gauss, "openblas", Maker(Solve, Solution)) +
         AddContender(LinearWork::Product, "openblas", Maker(Multiply, Whole)) +
         AddContender(LinearWork::Eigen, "openblas", Maker(FindEigenvalues, ByMagnitude)) +
         AddContender(LinearWork::Tridiagonal, "openblas", Maker(ReduceWithQ, TraceAndNorm)) +
         AddContender(LinearWork::Tridiagonal, "_openblas-without-q", Maker(Reduce, TraceAndNorm)) +
         AddContender(LinearWork::LeastSquares, "openblas", Maker(Fit, Solution));
}();

}  // namespace
}  // namespace shr::bench
