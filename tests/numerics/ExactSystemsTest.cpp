// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Every solver on systems of integers, scaled Hilbert, Vandermonde, Pascal, Frank and indefinite
// matrices, whose exact solutions tools/make_exact_systems.py found by rational arithmetic. A
// solution may be wrong by the rounding of a backward stable method times the exact condition.

#include <gtest/gtest.h>

#include <functional>

#include "shared/numerics/linear/CyclicJacobi.h"
#include "shared/numerics/linear/GaussSolve.h"
#include "shared/numerics/linear/LeastSquares.h"
#include "shared/numerics/linear/SymmetricSolve.h"
#include "tests/numerics/LinearCases.h"
#include "tests/numerics/NumberFile.h"

namespace shr {
namespace {

constexpr std::size_t SYSTEM_COUNT = 16;
/// Of n epsilon times the condition.
constexpr double FORWARD_BOUND = 2.0;

struct ExactSystem {
  std::string name;
  RMatrix a;
  RVector b, x;
  double condition;
  bool isDefinite;
  bool isSymmetric;
};

std::vector<ExactSystem> ReadSystems() {
  const std::vector<std::string> lines = LinesOf("exact-systems.txt");
  std::vector<ExactSystem> systems;
  for (std::size_t at = 0; at < lines.size();) {
    ExactSystem system;
    std::uint64_t n = 0;
    std::istringstream(lines[at++]) >> system.name >> n >> system.condition >> system.isDefinite;
    for (std::uint64_t i = 0; i < n; ++i) {
      ConcatenateRows(system.a, RVector(std::span<const double>(NumbersOf(lines[at++]))));
    }
    system.b = RVector(std::span<const double>(NumbersOf(lines[at++])));
    system.x = RVector(std::span<const double>(NumbersOf(lines[at++])));
    system.isSymmetric = IsSymmetric(system.a, 0.0);
    systems.push_back(std::move(system));
  }
  return systems;
}

struct ExactSolver {
  const char* name;
  bool (*isFor)(const ExactSystem&);
  bool (*solve)(RMatrix a, RVector& x);
};

const ExactSolver SOLVERS[] = {
    {"Gauss", [](const ExactSystem&) { return true; },
     [](RMatrix a, RVector& x) { return GaussSolve(a, x); }},
    {"Cholesky", [](const ExactSystem& system) { return system.isDefinite; },
     [](RMatrix a, RVector& x) {
       if (!CholeskyDecomposition(a)) return false;
       CholeskySolve(a, x);
       return true;
     }},
    {"symmetric", [](const ExactSystem& system) { return system.isDefinite; },
     [](RMatrix a, RVector& x) {
       if (!SymmetricDecomposition(a)) return false;
       SymmetricSolve(a, x);
       return true;
     }},
    {"Aasen", [](const ExactSystem& system) { return system.isSymmetric; },
     [](RMatrix a, RVector& x) {
       std::vector<std::uint64_t> order;
       AasenDecomposition(a, order);
       return AasenSolve(a, order, x);
     }},
    {"Gram-Schmidt", [](const ExactSystem& system) { return system.condition < 1e9; },
     [](RMatrix a, RVector& x) {
       RVector b(x);
       return MGSLeastSquares(a, x, b);
     }},
    {"pseudo-inverse",
     [](const ExactSystem& system) { return system.isSymmetric && system.condition < 1e8; },
     [](RMatrix a, RVector& x) { return GeneralizedSolve(a, x, x); }},
};

TEST(ExactSystems, solutionsAreWithinConditionTimesRounding) {
  const std::vector<ExactSystem> systems = ReadSystems();
  ASSERT_EQ(systems.size(), SYSTEM_COUNT);
  for (const ExactSystem& system : systems) {
    for (const ExactSolver& solver : SOLVERS) {
      if (!solver.isFor(system)) continue;
      SCOPED_TRACE(system.name + ", " + solver.name);
      RVector x = system.b;
      ASSERT_TRUE(solver.solve(system.a, x));
      Subtract(x, system.x);
      const double n = static_cast<double>(system.x.size());
      EXPECT_LE(LInfNorm(x), FORWARD_BOUND * n * EPSILON * system.condition * LInfNorm(system.x));
    }
  }
}

}  // namespace
}  // namespace shr
