// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/linear/Multiply.h"

#include <algorithm>

namespace shr {

void Multiplier::Add(const MultiplyJob& job) {
  if (job.rows == 0 || job.columns == 0 || job.depth == 0) return;
  constexpr std::size_t SMALL = 1024;
  double small[SMALL];
  const std::size_t depth = std::min(job.depth, MULTIPLY_DEPTH);
  const std::size_t columns = std::min(job.columns, MULTIPLY_COLUMNS) + MULTIPLY_STRIP - 1;
  const std::size_t size =
      depth * MULTIPLY_ROWS + depth * (columns / MULTIPLY_STRIP * MULTIPLY_STRIP);
  if (size <= SMALL) return Kernels().multiply(job, small);
  if (size > size_) {
    workspace_.reset(new double[size]);
    size_ = size;
  }
  Kernels().multiply(job, workspace_.get());
}

}  // namespace shr
