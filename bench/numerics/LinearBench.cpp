// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The linear algebra beside Eigen, compiled with the options of the library, beside OpenBLAS with
// one thread and, for eigenvalues, beside the plain loops of the cyclic Jacobi method. Each run
// includes a copy of what it overwrites. Before a contender is timed its result must be ours up to
// rounding.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <numeric>
#include <random>

#include "bench/numerics/LinearWork.h"
#include "bench/numerics/PlainJacobi.h"
#include "shared/numerics/linear/CyclicJacobi.h"
#include "shared/numerics/linear/GaussSolve.h"
#include "shared/numerics/linear/LeastSquares.h"
#include "shared/numerics/linear/MatrixProducts.h"
#include "shared/numerics/linear/MatrixUtility.h"
#include "shared/numerics/linear/SymmetricSolve.h"
#include "shared/numerics/linear/Tridiagonal.h"

namespace shr::bench {
namespace {

/// Results may differ by so much of their largest number: rounding times the condition.
constexpr double SAME = 1e-8;

struct WorkInfo {
  const char* name;
  std::vector<std::int64_t> sizes;
};

const WorkInfo& InfoOf(LinearWork work) {
  static const WorkInfo INFO[] = {
      {"cholesky", {10, 100, 1000}}, {"gauss", {10, 100, 1000}},
      {"product", {10, 100, 1000}},  {"eigen", {10, 50, 200, 500}},
      {"tridiagonal", {50, 500}},    {"least-squares", {100, 1000, 10000}}};
  return INFO[static_cast<std::size_t>(work)];
}

bool SameResult(const std::vector<double>& a, const std::vector<double>& b) {
  double largest = 0.0;
  for (const double element : a) largest = std::max(largest, std::abs(element));
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [largest](double x, double y) { return std::abs(x - y) <= SAME * largest; });
}

struct Ours {
  RMatrix a, work, other;
  RVector b, side, x, d, e;
};

void Fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

std::vector<double> ListOf(std::span<const double> elements) {
  return {elements.begin(), elements.end()};
}

Ours StateOf(const LinearInput& input) {
  Ours state;
  Initialize(state.a, input.rows, input.columns, input.a.data());
  Initialize(state.b, input.b.size(), input.b.data());
  state.x.Resize(input.columns);
  return state;
}

std::unique_ptr<LinearJob> Cholesky(const LinearInput& input) {
  return MakeJobOf<Ours>(
      StateOf(input),
      [](Ours& s) {
        s.work = s.a;
        if (!CholeskyDecomposition(s.work)) Fail("CholeskyDecomposition failed");
      },
      [](const Ours& s) {
        RMatrix l = s.work;
        for (std::uint64_t i = 0; i < l.Rows(); ++i) {
          for (std::uint64_t j = i + 1; j < l.Rows(); ++j) l(i, j) = 0.0;
        }
        return ListOf(l);
      });
}

std::unique_ptr<LinearJob> Gauss(const LinearInput& input) {
  return MakeJobOf<Ours>(
      StateOf(input),
      [](Ours& s) {
        s.work = s.a;
        s.x = s.b;
        if (!GaussSolve(s.work, s.x)) Fail("GaussSolve failed");
      },
      [](const Ours& s) { return ListOf(s.x); });
}

std::unique_ptr<LinearJob> Products(const LinearInput& input) {
  return MakeJobOf<Ours>(
      StateOf(input), [](Ours& s) { Product(s.a, s.a, s.work); },
      [](const Ours& s) { return ListOf(s.work); });
}

std::unique_ptr<LinearJob> Jacobi(const LinearInput& input) {
  return MakeJobOf<Ours>(
      StateOf(input),
      [](Ours& s) {
        s.work = s.a;
        if (!CyclicJacobi(s.work, s.x)) Fail("CyclicJacobi failed");
      },
      [](const Ours& s) { return ListOf(s.x); });
}

std::unique_ptr<LinearJob> Reduction(const LinearInput& input) {
  return MakeJobOf<Ours>(
      StateOf(input),
      [](Ours& s) {
        s.work = s.a;
        if (!TridiagonalDecomposition(s.work, s.d, s.e)) Fail("TridiagonalDecomposition failed");
      },
      [](const Ours& s) {
        const double trace = std::accumulate(s.d.begin(), s.d.end(), 0.0);
        return std::vector<double>{trace, std::hypot(L2Norm(s.d), std::sqrt(2.0) * L2Norm(s.e))};
      });
}

std::unique_ptr<LinearJob> Fit(const LinearInput& input) {
  return MakeJobOf<Ours>(
      StateOf(input),
      [](Ours& s) {
        s.work = s.a;
        s.side = s.b;
        if (!MGSLeastSquares(s.work, s.x, s.side)) Fail("MGSLeastSquares failed");
      },
      [](const Ours& s) { return ListOf(s.x); });
}

std::unique_ptr<LinearJob> PlainLoops(const LinearInput& input) {
  return MakeJobOf<Ours>(
      StateOf(input),
      [](Ours& s) {
        s.work = s.a;
        PlainJacobi(s.work, s.other);
        ExtractDiagonal(s.work, s.x);
        std::sort(s.x.begin(), s.x.end(),
                  [](double a, double b) { return std::abs(a) > std::abs(b); });
      },
      [](const Ours& s) { return ListOf(s.x); });
}

const MakeJob& OursOf(LinearWork work) {
  static const MakeJob MAKERS[] = {Cholesky, Gauss, Products, Jacobi, Reduction, Fit};
  return MAKERS[static_cast<std::size_t>(work)];
}

void RequireSameResult(LinearWork work, std::size_t size, const std::string& contender,
                       LinearJob& job) {
  const std::unique_ptr<LinearJob> ours = OursOf(work)(InputOf(work, size));
  ours->Run();
  job.Run();
  if (SameResult(ours->Result(), job.Result())) return;
  std::fprintf(stderr, "%s disagrees on %s of %zu\n", contender.c_str(), InfoOf(work).name, size);
  std::abort();
}

[[maybe_unused]] const int ADDED = [] {
  int count = 0;
  for (int work = 0; work < 6; ++work) {
    count +=
        AddContender(static_cast<LinearWork>(work), "ours", OursOf(static_cast<LinearWork>(work)));
  }
  return count + AddContender(LinearWork::Eigen, "plain", PlainLoops);
}();

}  // namespace

const LinearInput& InputOf(LinearWork work, std::size_t size) {
  static std::map<std::pair<LinearWork, std::size_t>, LinearInput> inputs;
  LinearInput& input = inputs[{work, size}];
  if (!input.a.empty()) return input;
  std::mt19937 random(static_cast<unsigned int>(size));
  const auto draw = [&random] { return static_cast<double>(random()) / 2147483648.0 - 1.0; };
  input.rows = size;
  input.columns = work == LinearWork::LeastSquares ? UNKNOWNS : size;
  input.a.resize(input.rows * input.columns);
  input.b.resize(size);
  std::generate(input.a.begin(), input.a.end(), draw);
  std::generate(input.b.begin(), input.b.end(), draw);
  if (work == LinearWork::Gauss || work == LinearWork::Product ||
      work == LinearWork::LeastSquares) {
    return input;
  }
  for (std::size_t i = 0; i < size; ++i) {
    for (std::size_t j = 0; j < i; ++j) input.a[i * size + j] = input.a[j * size + i];
    if (work == LinearWork::Cholesky) input.a[i * size + i] += static_cast<double>(size);
  }
  return input;
}

int AddContender(LinearWork work, const std::string& contender, const MakeJob& make) {
  const std::string name = std::string("numerics/") + InfoOf(work).name + "/" + contender;
  auto* const added =
      benchmark::RegisterBenchmark(name.c_str(), [work, contender, make](benchmark::State& state) {
        const auto size = static_cast<std::size_t>(state.range(0));
        const std::unique_ptr<LinearJob> job = make(InputOf(work, size));
        RequireSameResult(work, size, contender, *job);
        for (auto _ : state) job->Run();
      });
  for (const std::int64_t size : InfoOf(work).sizes) added->Arg(size);
  return 1;
}

}  // namespace shr::bench
