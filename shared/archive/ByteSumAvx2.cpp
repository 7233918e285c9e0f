// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/archive/ByteSumAvx2.h"

#include <immintrin.h>

namespace shr {
namespace {

/// Moves 32 bytes and returns the sums of each 8 of them.
__m256i Move(unsigned char* to, const unsigned char* from) {
  const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), bytes);
  return _mm256_sad_epu8(bytes, _mm256_setzero_si256());
}

}  // namespace

std::uint64_t CopyAndSumAvx2(unsigned char* to, const unsigned char* from,
                             std::size_t blocks) noexcept {
  __m256i sums[4] = {_mm256_setzero_si256(), _mm256_setzero_si256(), _mm256_setzero_si256(),
                     _mm256_setzero_si256()};
  for (; blocks > 0; --blocks) {
    sums[0] = _mm256_add_epi64(sums[0], Move(to, from));
    sums[1] = _mm256_add_epi64(sums[1], Move(to + 32, from + 32));
    sums[2] = _mm256_add_epi64(sums[2], Move(to + 64, from + 64));
    sums[3] = _mm256_add_epi64(sums[3], Move(to + 96, from + 96));
    to += 128;
    from += 128;
  }
  const __m256i all =
      _mm256_add_epi64(_mm256_add_epi64(sums[0], sums[1]), _mm256_add_epi64(sums[2], sums[3]));
  const __m128i half = _mm_add_epi64(_mm256_castsi256_si128(all), _mm256_extracti128_si256(all, 1));
  return static_cast<std::uint64_t>(
      _mm_cvtsi128_si64(_mm_add_epi64(half, _mm_unpackhi_epi64(half, half))));
}

}  // namespace shr
