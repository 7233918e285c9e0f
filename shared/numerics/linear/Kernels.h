// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The inner loops of the linear algebra, once for any processor and once for those with AVX2, with
/// the same bits.
///
///     const double product = Kernels().dot(a, b, n);
///
/// Threads: no state.

#pragma once

#include <cstddef>

#include "shared/Export.h"

namespace shr {

/// Elements (i, j) at data[i * rowStep + j * columnStep].
struct Strided {
  const double* data;
  std::size_t rowStep;
  std::size_t columnStep;
};

/// What `LinearKernels::multiply` adds to: C (rows x columns, row by row with `step` between rows)
/// becomes C + A B or, where `isSubtracted`, C - A B; A is rows x depth, B depth x columns.
struct MultiplyJob {
  std::size_t rows;
  std::size_t columns;
  std::size_t depth;
  Strided a;
  Strided b;
  double* c;
  std::size_t step;
  bool isSubtracted;
};

/// Rows for `LinearKernels::project`.
struct ProjectJob {
  double* rows;
  std::size_t step;
  std::size_t count;
  std::size_t columns;
  const double* r;
  const double* q;
  const double* v;
  double* sums;
};

// Vectors are `n` numbers side by side. What is written does not overlap with what is read unless
// it is the same vector.
struct LinearKernels {
  /// Returns the sum of x_i y_i. Lane i mod 4 of accumulator (i / 4) mod 4 takes element i as long
  /// as there are 16 of them, the rest goes to the first accumulator and at last to the sum.
  double (*dot)(const double* x, const double* y, std::size_t n);
  /// y += factor x.
  void (*axpy)(double factor, const double* x, double* y, std::size_t n);
  /// x *= factor.
  void (*scale)(double factor, double* x, std::size_t n);
  /// x /= divisor.
  void (*divide)(double divisor, double* x, std::size_t n);
  /// x = c x - s y, y = s x + c y.
  void (*rotate)(double c, double s, double* x, double* y, std::size_t n);
  /// Of `count` + 1 rows of 8 numbers that follow each other, joins the last one with the one
  /// before, that one with the one before it and so on up to the first, each by `rotate` of (row,
  /// next row) with the next c and s.
  void (*rotateChain)(const double* c, const double* s, std::size_t count, double* rows);
  /// Of rows that are `step` apart: row_i -= q_i r, then sums += v_i row_i, `columns` numbers each.
  void (*project)(const ProjectJob& job);
  /// y = A x for a symmetric A of n rows that are `step` apart, of which the upper triangle is
  /// read. Rows go four at a time, from the first.
  void (*multiplySymmetric)(const double* a, std::size_t step, std::size_t n, const double* x,
                            double* y);
  /// Every element of A B is summed in the order of k, blocks of `MULTIPLY_DEPTH` apart.
  /// `workspace` holds what `Multiplier` knows how to reckon.
  void (*multiply)(const MultiplyJob& job, double* workspace);
};

/// How many terms of a product are summed before the sum goes to the result.
inline constexpr std::size_t MULTIPLY_DEPTH = 256;
/// Rows of the right factor are packed in strips of so many columns.
inline constexpr std::size_t MULTIPLY_STRIP = 8;
/// Columns of the right factor that are packed at a time, so that they stay in the second cache,
/// and below the half megabyte from which on Windows gives memory back at once.
inline constexpr std::size_t MULTIPLY_COLUMNS = 240;
/// No tile has more rows.
inline constexpr std::size_t MULTIPLY_ROWS = 6;

/// The loops that this processor runs.
SHARED_API const LinearKernels& Kernels() noexcept;

/// Each set of loops by itself, for tests. Those for AVX2 need HasAvx2().
SHARED_API const LinearKernels& BaselineKernels() noexcept;
SHARED_API const LinearKernels& Avx2Kernels() noexcept;

}  // namespace shr
