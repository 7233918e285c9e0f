// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Products of blocks of matrices, for the solvers: the loops of Kernels.h with the memory they
/// need.
///
///     Multiplier multiplier;
///     multiplier.Add({rows, columns, depth, a, b, c, step, true});   // C -= A B
///
/// Threads: an object is of one thread.

#pragma once

#include <cstddef>
#include <memory>

#include "shared/numerics/linear/Kernels.h"
#include "shared/numerics/linear/RMatrix.h"

namespace shr {

/// Views of a matrix and of its transpose.
inline Strided ViewOf(const RMatrix& matrix) {
  return {matrix.data(), static_cast<std::size_t>(matrix.Columns()), 1};
}
inline Strided TransposeOf(const RMatrix& matrix) {
  return {matrix.data(), 1, static_cast<std::size_t>(matrix.Columns())};
}

/// Runs products and keeps the memory that they work in.
class Multiplier {
public:
  /// Errors: `std::bad_alloc`, nothing is changed.
  void Add(const MultiplyJob& job);

private:
  std::unique_ptr<double[]> workspace_;
  std::size_t size_ = 0;
};

}  // namespace shr
