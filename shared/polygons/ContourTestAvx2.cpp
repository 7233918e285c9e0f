// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Four edges at once, each by the same products and comparisons as in the test of one edge in
// ContourEdge.h. Only whether the number of crossings is odd counts, so that their order does not
// matter. Where the rounded products do not decide, which asks for a point all but on an edge, the
// contour is left to the test of single edges.
//
// Most edges of a long contour lie above or below the point. Sixteen at a time are passed over when
// all of their points are on one and the same side, which takes the y values alone.

#include "shared/polygons/ContourTestAvx2.h"

#include <immintrin.h>

#include "shared/polygons/SideError.h"

namespace shr {
namespace {

constexpr std::size_t BLOCK_SIZE = 16;

/// The point in all lanes.
struct Target {
  __m256d x;
  __m256d y;
};

/// Four edges: their ends, and the points from which they come, as pairs of x and y.
struct Edges {
  __m256d to01;
  __m256d to23;
  __m256d from01;
  __m256d from23;
};

/// Returns the edges that end at the four points from `to` on.
inline Edges LoadEdges(const double* to) {
  return {_mm256_loadu_pd(to), _mm256_loadu_pd(to + 4), _mm256_loadu_pd(to - 2),
          _mm256_loadu_pd(to + 2)};
}

/// Returns the last edges of a contour, from that to the point of the index, which may be one past
/// the end, to the one that closes the contour at its first point. The others have no length.
inline Edges LoadLastEdges(const double* xy, std::size_t count, std::size_t index) {
  const auto load = [=](std::size_t i) { return _mm_loadu_pd(xy + 2 * (i < count ? i : 0)); };
  const auto join = [](__m128d a, __m128d b) {
    return _mm256_insertf128_pd(_mm256_castpd128_pd256(a), b, 1);
  };
  const __m128d p0 = load(index - 1);
  const __m128d p1 = load(index);
  const __m128d p2 = load(index + 1);
  const __m128d p3 = load(index + 2);
  const __m128d p4 = load(index + 3);
  return {join(p1, p2), join(p3, p4), join(p0, p1), join(p2, p3)};
}

/// What is known of the edges so far, one a lane, in the sign bits.
struct Crossings {
  __m256d toggles;   ///< whether they toggle the answer
  __m256d isUnsure;  ///< whether some edge was too near the point to tell
};

inline void AddCrossings(const Edges& edges, const Target& point, Crossings& crossings) {
  const __m256d toX = _mm256_unpacklo_pd(edges.to01, edges.to23);
  const __m256d toY = _mm256_unpackhi_pd(edges.to01, edges.to23);
  const __m256d fromX = _mm256_unpacklo_pd(edges.from01, edges.from23);
  const __m256d fromY = _mm256_unpackhi_pd(edges.from01, edges.from23);

  const __m256d isToBelow = _mm256_cmp_pd(toY, point.y, _CMP_LE_OQ);
  const __m256d isFromBelow = _mm256_cmp_pd(fromY, point.y, _CMP_LE_OQ);
  const __m256d left = _mm256_mul_pd(_mm256_sub_pd(fromX, point.x), _mm256_sub_pd(toY, point.y));
  const __m256d right = _mm256_mul_pd(_mm256_sub_pd(fromY, point.y), _mm256_sub_pd(toX, point.x));
  const __m256d determinant = _mm256_sub_pd(left, right);
  const __m256d signBit = _mm256_set1_pd(-0.0);
  const __m256d magnitude = _mm256_andnot_pd(signBit, _mm256_add_pd(left, right));
  const __m256d error = _mm256_add_pd(_mm256_mul_pd(_mm256_set1_pd(SIDE_ERROR_FACTOR), magnitude),
                                      _mm256_set1_pd(SIDE_ERROR_OF_UNDERFLOW));
  const __m256d isUnsure =
      _mm256_cmp_pd(_mm256_andnot_pd(signBit, determinant), error, _CMP_NGT_UQ);
  const __m256d isSpanning = _mm256_xor_pd(isToBelow, isFromBelow);
  // Of these numbers the sign bits are read: upward and not negative, or downward and negative.
  const __m256d isToggle = _mm256_and_pd(isSpanning, _mm256_xor_pd(determinant, isFromBelow));
  crossings.toggles = _mm256_xor_pd(crossings.toggles, isToggle);
  crossings.isUnsure = _mm256_or_pd(crossings.isUnsure, _mm256_and_pd(isUnsure, isSpanning));
}

/// Returns whether every point of a block is below like the one before it, or none.
inline bool IsOnOneSide(const double* to, const Target& point, bool isFromBelow) {
  __m256d all = _mm256_cmp_pd(_mm256_loadu_pd(to), point.y, _CMP_LE_OQ);
  __m256d any = all;
  for (std::size_t i = 4; i < 2 * BLOCK_SIZE; i += 4) {
    const __m256d isBelow = _mm256_cmp_pd(_mm256_loadu_pd(to + i), point.y, _CMP_LE_OQ);
    all = _mm256_and_pd(all, isBelow);
    any = _mm256_or_pd(any, isBelow);
  }
  constexpr int Y_LANES = 0xA;  // the others compare an x and mean nothing
  return isFromBelow ? (_mm256_movemask_pd(all) & Y_LANES) == Y_LANES
                     : (_mm256_movemask_pd(any) & Y_LANES) == 0;
}

inline bool IsOdd(int bits) {
  return (0x6996 >> bits & 1) != 0;
}

}  // namespace

ContourAnswer IsInContourAvx2(double x, double y, const double* xy, std::size_t count) {
  if (count == 0) return ContourAnswer::OUTSIDE;
  const Target point{_mm256_set1_pd(x), _mm256_set1_pd(y)};
  Crossings crossings{_mm256_setzero_pd(), _mm256_setzero_pd()};
  std::size_t i = 1;  // the end of the next edge
  for (bool isFromBelow = xy[1] <= y; i + BLOCK_SIZE <= count; i += BLOCK_SIZE) {
    const double* const to = xy + 2 * i;
    if (IsOnOneSide(to, point, isFromBelow)) continue;
    for (std::size_t k = 0; k < 2 * BLOCK_SIZE; k += 8) {
      AddCrossings(LoadEdges(to + k), point, crossings);
    }
    isFromBelow = to[2 * BLOCK_SIZE - 1] <= y;
  }
  for (; i + 4 <= count; i += 4) AddCrossings(LoadEdges(xy + 2 * i), point, crossings);
  AddCrossings(LoadLastEdges(xy, count, i), point, crossings);
  if (_mm256_movemask_pd(crossings.isUnsure) != 0) return ContourAnswer::UNSURE;
  return IsOdd(_mm256_movemask_pd(crossings.toggles)) ? ContourAnswer::INSIDE
                                                      : ContourAnswer::OUTSIDE;
}

}  // namespace shr
