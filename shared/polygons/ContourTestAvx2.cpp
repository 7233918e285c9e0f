// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Four edges at once. Each takes the same products and comparisons as the test of one edge in
// ContourEdge.h, so that the answer has the same bits; only whether the number of crossings is
// odd counts, so that their order does not matter.
//
// Most edges of a long contour lie above or below the point. Sixteen at a time are passed over when
// all of their points are on one and the same side, which takes the y values alone.

#include "shared/polygons/ContourTestAvx2.h"

#include <immintrin.h>

namespace shr {
namespace {

constexpr std::size_t BLOCK_SIZE = 16;

/// The point in all lanes.
struct Target {
  __m256d x;
  __m256d y;
};

/// Returns the edges that toggle the answer, as bits in the order of edges 0, 2, 1, 3. `to` is the
/// end point of the first edge; each edge begins at the point before its end.
inline __m256d Toggles(const double* to, const Target& point) {
  const double* const from = to - 2;
  const __m256d to01 = _mm256_loadu_pd(to);
  const __m256d to23 = _mm256_loadu_pd(to + 4);
  const __m256d from01 = _mm256_loadu_pd(from);
  const __m256d from23 = _mm256_loadu_pd(from + 4);
  const __m256d toX = _mm256_unpacklo_pd(to01, to23);
  const __m256d toY = _mm256_unpackhi_pd(to01, to23);
  const __m256d fromX = _mm256_unpacklo_pd(from01, from23);
  const __m256d fromY = _mm256_unpackhi_pd(from01, from23);

  const __m256d isToBelow = _mm256_cmp_pd(toY, point.y, _CMP_LE_OQ);
  const __m256d isFromBelow = _mm256_cmp_pd(fromY, point.y, _CMP_LE_OQ);
  const __m256d upward = _mm256_mul_pd(_mm256_sub_pd(fromX, toX), _mm256_sub_pd(point.y, toY));
  const __m256d sideward = _mm256_mul_pd(_mm256_sub_pd(fromY, toY), _mm256_sub_pd(point.x, toX));
  // Where the edge ends above, the comparison is the other way round: of the negated products.
  const __m256d sign = _mm256_andnot_pd(isToBelow, _mm256_set1_pd(-0.0));
  const __m256d isRight =
      _mm256_cmp_pd(_mm256_xor_pd(upward, sign), _mm256_xor_pd(sideward, sign), _CMP_GT_OQ);
  return _mm256_and_pd(_mm256_xor_pd(isToBelow, isFromBelow), isRight);
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
  return (0x6996 >> (bits & 0xF) & 1) != 0;
}

/// One edge, as ContourEdge.h has it.
inline bool IsToggledByEdge(double x, double y, const double* to, const double* from) {
  const bool isToBelow = to[1] <= y;
  const bool isFromBelow = from[1] <= y;
  const double upward = (from[0] - to[0]) * (y - to[1]);
  const double sideward = (from[1] - to[1]) * (x - to[0]);
  return isToBelow != isFromBelow && (isToBelow ? upward > sideward : sideward > upward);
}

/// Edge by edge, for contours whose edges fill no vector.
bool IsInSmallContour(double x, double y, const double* xy, std::size_t count) {
  bool isInside = IsToggledByEdge(x, y, xy, xy + 2 * (count - 1));
  for (std::size_t i = 1; i < count; ++i) {
    isInside ^= IsToggledByEdge(x, y, xy + 2 * i, xy + 2 * (i - 1));
  }
  return isInside;
}

}  // namespace

bool IsInContourAvx2(double x, double y, const double* xy, std::size_t count) {
  if (count == 0) return false;
  if (count < 5) return IsInSmallContour(x, y, xy, count);
  const Target point{_mm256_set1_pd(x), _mm256_set1_pd(y)};
  __m256d toggles = _mm256_setzero_pd();
  std::size_t i = 1;  // the end of the next edge
  for (bool isFromBelow = xy[1] <= y; i + BLOCK_SIZE <= count; i += BLOCK_SIZE) {
    const double* const to = xy + 2 * i;
    if (IsOnOneSide(to, point, isFromBelow)) continue;
    for (std::size_t k = 0; k < 2 * BLOCK_SIZE; k += 8) {
      toggles = _mm256_xor_pd(toggles, Toggles(to + k, point));
    }
    isFromBelow = to[2 * BLOCK_SIZE - 1] <= y;
  }
  for (; i + 4 <= count; i += 4) toggles = _mm256_xor_pd(toggles, Toggles(xy + 2 * i, point));
  int bits = _mm256_movemask_pd(toggles);
  if (i < count) {
    // The last four edges once more, of which those not yet seen count.
    constexpr int UNSEEN[] = {0x0, 0x8, 0xA, 0xE};
    const int last = _mm256_movemask_pd(Toggles(xy + 2 * (count - 4), point));
    bits ^= last & UNSEEN[count - i];
  }
  return IsOdd(bits) != IsToggledByEdge(x, y, xy, xy + 2 * (count - 1));
}

}  // namespace shr
