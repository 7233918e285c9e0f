// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Least-squares problems with certified results: the linear regressions of higher difficulty of
/// the Statistical Reference Datasets, National Institute of Standards and Technology.
///
/// Threads: no state.

#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"
#include "tests/numerics/NumberFile.h"

namespace shr {

struct Regression {
  std::string name;
  RMatrix a;
  RVector b;
  RVector certified;
};

/// The first line of a file holds the coefficients, the others y and x, or y and all x.
inline Regression ReadRegression(const std::string& name, bool isPolynomial) {
  const std::vector<std::string> lines = LinesOf(name + ".txt");
  Regression problem{name, {}, {}, {}};
  if (lines.empty()) return problem;
  problem.certified = RVector(std::span<const double>(NumbersOf(lines[0])));
  problem.a.Resize(lines.size() - 1, problem.certified.size());
  problem.b.Resize(lines.size() - 1);
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    const std::vector<double> row = NumbersOf(lines[i + 1]);
    problem.b(i) = row[0];
    problem.a(i, 0) = 1.0;
    for (std::size_t j = 1; j < problem.certified.size(); ++j) {
      problem.a(i, j) = isPolynomial ? problem.a(i, j - 1) * row[1] : row[j];
    }
  }
  return problem;
}

/// Wampler's polynomials at 0 to 20: all coefficients are 1, or powers of 1/10 for the second; to
/// the third, fourth and fifth numbers are added that are orthogonal to the columns, ever larger
/// ones.
inline Regression Wampler(int number) {
  constexpr double ADDED[] = {759,   -2048, 2048,  -2048, 2523,  -2048, 2048,
                              -2048, 1838,  -2048, 2048,  -2048, 1838,  -2048,
                              2048,  -2048, 2523,  -2048, 2048,  -2048, 759};
  constexpr std::size_t ROWS = 21, COLUMNS = 6;
  const double factors[] = {0, 0, 0, 1, 100, 10000};
  Regression problem{"wampler" + std::to_string(number), RMatrix(ROWS, COLUMNS), RVector(ROWS),
                     RVector(COLUMNS)};
  for (std::size_t j = 0; j < COLUMNS; ++j) {
    constexpr double POWERS[] = {1.0, 0.1, 0.01, 0.001, 0.0001, 0.00001};
    problem.certified(j) = number == 2 ? POWERS[j] : 1.0;
  }
  for (std::size_t i = 0; i < ROWS; ++i) {
    double sum = 0.0, power = 1.0;
    for (std::size_t j = 0; j < COLUMNS; ++j, power *= static_cast<double>(i)) {
      problem.a(i, j) = power;
      // The second's values have five decimals: an integer is divided once.
      sum += number == 2 ? power * std::round(std::pow(10.0, 5.0 - static_cast<double>(j))) : power;
    }
    problem.b(i) = number == 2 ? sum / 100000.0 : sum + factors[number] * ADDED[i];
  }
  return problem;
}

inline std::vector<Regression> Regressions() {
  std::vector<Regression> problems;
  problems.push_back(ReadRegression("longley", false));
  problems.push_back(ReadRegression("filip", true));
  for (int number = 1; number <= 5; ++number) problems.push_back(Wampler(number));
  return problems;
}

/// Returns how many leading decimal digits of the worst coefficient are right, 15 at most, as many
/// as are certified.
inline double DigitsOf(const RVector& x, const RVector& certified) {
  double digits = 15.0;
  for (std::uint64_t i = 0; i < certified.size(); ++i) {
    const double error = std::abs(x(i) / certified(i) - 1.0);
    digits = std::min(digits, std::isnan(error) ? 0.0 : -std::log10(std::max(error, 1e-15)));
  }
  return std::max(digits, 0.0);
}

}  // namespace shr
