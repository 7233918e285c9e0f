// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Sums, dot products and element-wise arithmetic of many numbers in double-double.
///
/// Processors with AVX2 work on four numbers at a time; the results have the same bits on every
/// processor.
///
///     std::vector<double> weights = {1e16, 1.0, -1e16}, ones(3, 1.0);
///     doubledouble sum = Sum(std::span<const double>(weights));        // 1, not 0
///     doubledouble dot = DotProduct(std::span<const double>(weights),
///                                   std::span<const double>(ones));    // 1, too
///
/// Threads: no state; calls may run together where nobody changes what they read.

#pragma once

#include <span>

#include "shared/Export.h"
#include "shared/numerics/doubledouble/DoubleDouble.h"

namespace shr {

/// Return the sum of all elements and of all products of elements. Element i goes to the partial
/// sum i mod 16, and the partial sums are added in pairs. Products of doubles are exact before
/// they are summed. Degenerate: 0 for no elements; infinities and NaN as the operators give them.
/// Error bound: (n / 16 + 8) 2^-104 times the sum of the magnitudes of what is summed.
/// Errors: the library's internal error for spans of different lengths. Cost: O(n), no allocation.
SHARED_API doubledouble Sum(std::span<const double> x);
SHARED_API doubledouble Sum(std::span<const doubledouble> x);
SHARED_API doubledouble DotProduct(std::span<const double> x, std::span<const double> y);
SHARED_API doubledouble DotProduct(std::span<const doubledouble> x,
                                   std::span<const doubledouble> y);

/// Write what the operators give for each pair of elements to `result`, which may be one of the
/// operands but must not overlap them otherwise. Errors: the library's internal error for spans of
/// different lengths, nothing written.
SHARED_API void Add(std::span<const doubledouble> x, std::span<const doubledouble> y,
                    std::span<doubledouble> result);
SHARED_API void Subtract(std::span<const doubledouble> x, std::span<const doubledouble> y,
                         std::span<doubledouble> result);
SHARED_API void Multiply(std::span<const doubledouble> x, std::span<const doubledouble> y,
                         std::span<doubledouble> result);
SHARED_API void Divide(std::span<const doubledouble> x, std::span<const doubledouble> y,
                       std::span<doubledouble> result);

}  // namespace shr
