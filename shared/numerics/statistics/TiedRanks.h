// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Ranks of numbers that may lie in a column of a matrix. Not installed; programs take
/// `ComputeTiedRank` of shared/numerics/statistics/MultivariateStatistics.h.
///
///     FindTiedRanks(values.data(), 1, values.size(), ranks.data());
///
/// Threads: no state.

#pragma once

#include <cstddef>

namespace shr {

/// Writes the rank of `values[i * stride]` to `ranks[i * stride]` for all i below `count`. Both
/// must not overlap.
void FindTiedRanks(const double* values, std::size_t stride, std::size_t count, double* ranks);

}  // namespace shr
