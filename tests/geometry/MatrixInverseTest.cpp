// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: matrices of random integers, ordinary ones and ones whose determinant is small beside
// their elements, with rows and columns scaled by far powers of two, against cofactors in integers;
// the stated error bound; exactly singular matrices; elements that are no finite numbers.

#include "shared/geometry/MatrixInverse.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>

namespace shr {
namespace {

using Integer = std::int64_t;

template <int N>
struct IntegerMatrix {
  Integer elements[N][N];

  IntegerMatrix<N - 1> Minor(int row, int column) const {
    IntegerMatrix<N - 1> minor;
    for (int i = 0; i < N - 1; ++i) {
      for (int k = 0; k < N - 1; ++k)
        minor.elements[i][k] = elements[i + (i >= row)][k + (k >= column)];
    }
    return minor;
  }

  Integer Determinant() const {
    if constexpr (N == 1) {
      return elements[0][0];
    } else {
      Integer sum = 0;
      for (int i = 0; i < N; ++i) sum += Cofactor(0, i) * elements[0][i];
      return sum;
    }
  }

  Integer Cofactor(int row, int column) const {
    const Integer minor = Minor(row, column).Determinant();
    return (row + column) % 2 == 0 ? minor : -minor;
  }
};

/// Elements below 2^11, so that no determinant of four rows overflows.
template <int N>
IntegerMatrix<N> RandomMatrix(std::mt19937& random) {
  IntegerMatrix<N> matrix;
  for (auto& row : matrix.elements) {
    for (Integer& value : row) value = std::uniform_int_distribution<int>(-2000, 2000)(random);
  }
  return matrix;
}

/// Replaces the last row by the sum of two others, changed by `change` in one element.
template <int N>
void MakeNearlySingular(IntegerMatrix<N>& matrix, int change) {
  for (int i = 0; i < N; ++i) {
    matrix.elements[N - 1][i] = matrix.elements[0][i] + (N > 2 ? matrix.elements[1][i] : 0);
  }
  matrix.elements[N - 1][0] += change;
}

template <int N>
double RowSumNorm(const double (&a)[N][N]) {
  double largest = 0.0;
  for (const auto& row : a) {
    double sum = 0.0;
    for (const double value : row) sum += std::abs(value);
    largest = std::max(largest, sum);
  }
  return largest;
}

/// Checks the inverse of `matrix` with rows and columns multiplied by random powers of two.
template <int N>
void CheckInverse(const IntegerMatrix<N>& matrix, std::mt19937& random) {
  std::uniform_int_distribution<int> exponent(-200, 200);
  int rowExponents[N];
  int columnExponents[N];
  for (int& value : rowExponents) value = exponent(random);
  for (int& value : columnExponents) value = exponent(random);
  double scaled[N][N];
  double inverse[N][N];
  for (int i = 0; i < N; ++i) {
    for (int k = 0; k < N; ++k) {
      scaled[i][k] = inverse[i][k] = std::ldexp(static_cast<double>(matrix.elements[i][k]),
                                                rowExponents[i] + columnExponents[k]);
    }
  }
  const Integer determinant = matrix.Determinant();
  ASSERT_EQ(MatrixInverse::Invert(inverse), determinant != 0);
  if (determinant == 0) return;
  MatrixInverse::Scales<N> scales{};
  ASSERT_TRUE(MatrixInverse::Scale(scaled, scales));
  double exact[N][N];
  double error[N][N];
  for (int i = 0; i < N; ++i) {
    for (int k = 0; k < N; ++k) {
      const double quotient = static_cast<double>(static_cast<long double>(matrix.Cofactor(k, i)) /
                                                  static_cast<long double>(determinant));
      const double unscaled = std::ldexp(quotient, -columnExponents[i] - rowExponents[k]);
      exact[i][k] = unscaled / scales.columns[i] / scales.rows[k];
      error[i][k] = inverse[i][k] / scales.columns[i] / scales.rows[k] - exact[i][k];
    }
  }
  const double norm = RowSumNorm(exact);
  EXPECT_LE(RowSumNorm(error),
            MatrixInverse::ERROR_FACTOR * 0x1p-53 * RowSumNorm(scaled) * norm * norm)
      << "determinant " << determinant;
}

template <int N>
void CheckSize() {
  std::mt19937 random(N);
  for (int i = 0; i < 500; ++i) {
    IntegerMatrix<N> matrix = RandomMatrix<N>(random);
    CheckInverse(matrix, random);
    MakeNearlySingular(matrix, i % 3);
    CheckInverse(matrix, random);
    if (testing::Test::HasFailure()) FAIL() << "case " << i << " of size " << N;
  }
}

TEST(MatrixInverse, staysWithinTheStatedBoundAndFindsSingularMatrices) {
  CheckSize<2>();
  CheckSize<3>();
  CheckSize<4>();
}

TEST(MatrixInverse, leavesWhatIsNotRegularAsItIs) {
  const double infinite = std::numeric_limits<double>::infinity();
  const struct {
    const char* name;
    double elements[2][2];
  } rows[] = {
      {"zero", {{0.0, 0.0}, {0.0, 0.0}}},
      {"zero row", {{0.0, 0.0}, {1.0, 2.0}}},
      {"dependent rows", {{1.0, 3.0}, {0.1, 0.3}}},
      {"below the threshold", {{1.0, 1.0}, {1.0, 1.0 + 0x1p-48}}},
      {"infinite", {{infinite, 0.0}, {0.0, 1.0}}},
      {"inverse beyond range", {{1e-310, 0.0}, {0.0, 1.0}}},
  };
  for (const auto& row : rows) {
    double elements[2][2] = {{row.elements[0][0], row.elements[0][1]},
                             {row.elements[1][0], row.elements[1][1]}};
    EXPECT_FALSE(MatrixInverse::Invert(elements)) << row.name;
    for (int i = 0; i < 4; ++i) EXPECT_EQ(elements[i / 2][i % 2], row.elements[i / 2][i % 2]);
  }
  double numberless[2][2] = {{1.0, std::nan("")}, {0.0, 1.0}};
  EXPECT_FALSE(MatrixInverse::Invert(numberless));
  double regular[2][2] = {{1.0, 1.0}, {1.0, 1.0 + 0x1p-46}};
  EXPECT_TRUE(MatrixInverse::Invert(regular));
  EXPECT_EQ(regular[1][1], 0x1p46);
}

}  // namespace
}  // namespace shr
