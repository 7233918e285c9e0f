// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `SHARED_HAS_SSE2`: 1 where the baseline has the vectors of SSE2, the intrinsics of which are
/// then declared, else 0. `SHARED_ALWAYS_INLINE` begins a function of a kernel that must become
/// part of its callers. Internal; wider vectors are asked for by shared/platform/CpuFeatures.h.

#pragma once

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define SHARED_HAS_SSE2 1
#else
#define SHARED_HAS_SSE2 0
#endif

#ifdef _MSC_VER
#define SHARED_ALWAYS_INLINE __forceinline
#else
#define SHARED_ALWAYS_INLINE [[gnu::always_inline]] inline
#endif
