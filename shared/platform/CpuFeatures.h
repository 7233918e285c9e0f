// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the processor can do beyond the x86-64 baseline, for code that chooses at run time.
///
/// Code for wider vectors stands in sources of its own, listed with `shared_avx2_units` in CMake;
/// it gives the same bits as the baseline code beside it.
///
///     if (HasAvx2()) return CountAvx2(points, count);
///     return CountBaseline(points, count);
///
/// Threads: any.

#pragma once

namespace shr {

/// Returns true when processor and operating system run AVX2 code. Cost: asked once, then a load.
bool HasAvx2() noexcept;

}  // namespace shr
