// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Compares many points with the four sides of a box in one go, for the clippers. Not installed.

#pragma once

#include <span>

#include "shared/geometry/Vec2.h"
#include "shared/platform/Simd.h"

namespace shr {

/// For each side a bit: `all` when every point keeps it, `any` when some point does. A point on the
/// side keeps it; a NaN keeps none.
struct SideBits {
  static constexpr unsigned RIGHT = 1, TOP = 2, LEFT = 4, BOTTOM = 8, EVERY = 15;
  unsigned all = EVERY;
  unsigned any = 0;
};

#if SHARED_HAS_SSE2

/// One comparison with the upper corner and one with the lower a point: all numbers in registers.
inline SideBits ScanSides(std::span<const Vec2d> points, const Vec2d& low, const Vec2d& high) {
  const __m128d lows = _mm_loadu_pd(&low.x);
  const __m128d highs = _mm_loadu_pd(&high.x);
  __m128d allHigh = _mm_cmpeq_pd(_mm_setzero_pd(), _mm_setzero_pd());
  __m128d allLow = allHigh;
  __m128d anyHigh = _mm_setzero_pd();
  __m128d anyLow = anyHigh;
  for (const Vec2d& p : points) {
    const __m128d point = _mm_loadu_pd(&p.x);
    const __m128d isBelowHigh = _mm_cmple_pd(point, highs);
    const __m128d isAboveLow = _mm_cmpge_pd(point, lows);
    allHigh = _mm_and_pd(allHigh, isBelowHigh);
    anyHigh = _mm_or_pd(anyHigh, isBelowHigh);
    allLow = _mm_and_pd(allLow, isAboveLow);
    anyLow = _mm_or_pd(anyLow, isAboveLow);
  }
  const auto bits = [](__m128d ofHigh, __m128d ofLow) {
    return static_cast<unsigned>(_mm_movemask_pd(ofHigh) | _mm_movemask_pd(ofLow) << 2);
  };
  return {bits(allHigh, allLow), bits(anyHigh, anyLow)};
}

#else

inline SideBits ScanSides(std::span<const Vec2d> points, const Vec2d& low, const Vec2d& high) {
  SideBits sides;
  for (const Vec2d& p : points) {
    const unsigned kept =
        (p.x <= high.x ? SideBits::RIGHT : 0u) | (p.y <= high.y ? SideBits::TOP : 0u) |
        (p.x >= low.x ? SideBits::LEFT : 0u) | (p.y >= low.y ? SideBits::BOTTOM : 0u);
    sides.all &= kept;
    sides.any |= kept;
  }
  return sides;
}

#endif

}  // namespace shr
