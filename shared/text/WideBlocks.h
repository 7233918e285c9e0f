// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Sixteen bytes of text at a time: loading, widening and storing as wide units. Internal to the
/// decoders of text; not for sources of `shared_avx2_units`.

#pragma once

#include <cstddef>

#include "shared/platform/Simd.h"

namespace shr {

/// Bytes of a block.
inline constexpr std::ptrdiff_t WIDE_BLOCK = 16;

#if SHARED_HAS_SSE2

inline __m128i LoadBlock(const void* bytes) noexcept {
  return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

inline void StoreBlock(wchar_t* out, __m128i block) noexcept {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), block);
}

/// Stores past the caches. Requires: `out` is aligned to 16 bytes.
inline void StreamBlock(wchar_t* out, __m128i block) noexcept {
  _mm_stream_si128(reinterpret_cast<__m128i*>(out), block);
}

using BlockStore = void (*)(wchar_t* out, __m128i block);

/// Stores eight 16-bit units as wide units.
template <BlockStore STORE = StoreBlock>
void StoreUnits(wchar_t* out, __m128i units) noexcept {
  if constexpr (sizeof(wchar_t) == 2) {
    STORE(out, units);
  } else {
    const __m128i zero = _mm_setzero_si128();
    STORE(out, _mm_unpacklo_epi16(units, zero));
    STORE(out + 4, _mm_unpackhi_epi16(units, zero));
  }
}

/// Stores each byte of a block as a wide unit.
template <BlockStore STORE = StoreBlock>
void StoreBytes(wchar_t* out, __m128i block) noexcept {
  const __m128i zero = _mm_setzero_si128();
  StoreUnits<STORE>(out, _mm_unpacklo_epi8(block, zero));
  StoreUnits<STORE>(out + 8, _mm_unpackhi_epi8(block, zero));
}

/// Returns the set of the bytes outside ASCII, one bit a byte.
inline unsigned BytesBeyondAscii(__m128i block) noexcept {
  return static_cast<unsigned>(_mm_movemask_epi8(block));
}

/// Returns the set of the line feeds, one bit a byte.
inline unsigned LineFeeds(__m128i block) noexcept {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n'))));
}

#endif

}  // namespace shr
