// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Loops of `Mat4d` over arrays of `Vec3d` for processors with AVX2.
///
///     const std::size_t done = HasAvx2() ? TransformAffineAvx2(m, source, destination, count) : 0;
///
/// Threads: no state.

#pragma once

#include <cstddef>

namespace shr {

// `m` are the sixteen elements of the matrix; points are three numbers each. Source and destination
// are the same array or do not overlap. All return how many points they did, a multiple of 4 that
// leaves at most 3, with the bits of the baseline code. Fastest when the destination lies at a
// multiple of 32 bytes.

/// Elements 0, 1, 4, 5, 12 and 13; z stays.
std::size_t Transform2dAvx2(const double* m, const double* source, double* destination,
                            std::size_t count);
/// Columns 0 to 2.
std::size_t TransformAffineAvx2(const double* m, const double* source, double* destination,
                                std::size_t count);
/// All columns.
std::size_t TransformComplexAvx2(const double* m, const double* source, double* destination,
                                 std::size_t count);

}  // namespace shr
