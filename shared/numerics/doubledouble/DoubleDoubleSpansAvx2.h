// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The span functions for processors with AVX2; for
/// shared/numerics/doubledouble/DoubleDoubleSpans.cpp only. Numbers are given as their parts, head
/// and tail in turn. Threads: any.

#pragma once

#include <cstddef>

namespace shr::doubledouble_avx2 {

/// Partial sums; element i of the operands goes to the sum i mod 16.
inline constexpr std::size_t PARTIAL_SUMS = 16;

/// Add the first `blocks` times 16 elements, or products of elements, to the 16 partial sums, by
/// the plain steps: where one of them is not finite the sums mean nothing. Require: `HasAvx2()`.
void SumDoubles(const double* x, std::size_t blocks, double* sums) noexcept;
void SumPairs(const double* x, std::size_t blocks, double* sums) noexcept;
void DotDoubles(const double* x, const double* y, std::size_t blocks, double* sums) noexcept;
void DotPairs(const double* x, const double* y, std::size_t blocks, double* sums) noexcept;

/// Work on elements, four at a time, as far as the plain steps do and return the number of those
/// that are done, a multiple of 4. Require: `HasAvx2()`.
std::size_t AddPairs(const double* x, const double* y, std::size_t count, double* result) noexcept;
std::size_t SubtractPairs(const double* x, const double* y, std::size_t count,
                          double* result) noexcept;
std::size_t MultiplyPairs(const double* x, const double* y, std::size_t count,
                          double* result) noexcept;
std::size_t DividePairs(const double* x, const double* y, std::size_t count,
                        double* result) noexcept;

}  // namespace shr::doubledouble_avx2
