// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Eight units of text at a time as the bytes of one integer, for the number parser.
///
/// Eight digits are recognised by one test and converted by three multiplications (D. Lemire,
/// "Number Parsing at a Gigabyte per Second", 2021, section 6). Units that are no ASCII characters
/// become bytes that are no digits.
///
///     const DigitChunk chunk = LoadDigitChunk(next);     // eight units are read
///     if (AreDigits(chunk)) number = number * 100000000 + DigitsValue(chunk);
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "shared/platform/Simd.h"

namespace shr {

/// Eight units less the digit zero each, the first one in the lowest byte.
struct DigitChunk {
  std::uint64_t bytes;
};

inline constexpr std::uint64_t EACH_BYTE = 0x0101010101010101;

/// Returns the units one by one; units that are no ASCII characters give 255.
template <typename Char>
DigitChunk LoadDigitChunkPlainly(const Char* text) noexcept {
  std::uint64_t bytes = 0;
  for (int i = 0; i < 8; ++i) {
    const auto unit = static_cast<std::uint32_t>(text[i]);
    bytes |= (unit < 0x80 ? unit ^ '0' : std::uint64_t{0xFF}) << (8 * i);
  }
  return {bytes};
}

/// Returns the eight units at `text`.
inline DigitChunk LoadDigitChunk(const char* text) noexcept {
  if constexpr (std::endian::native != std::endian::little) return LoadDigitChunkPlainly(text);
  std::uint64_t bytes;
  std::memcpy(&bytes, text, sizeof bytes);
  return {bytes ^ EACH_BYTE * '0'};
}

inline DigitChunk LoadDigitChunk(const wchar_t* text) noexcept {
#if SHARED_HAS_SSE2
  const auto load = [](const wchar_t* at) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
  };
  // The packings saturate, so that no large unit turns into a digit.
  __m128i units = load(text);
  if constexpr (sizeof(wchar_t) > 2) units = _mm_packs_epi32(units, load(text + 4));
  const __m128i bytes = _mm_packus_epi16(units, units);
  return {static_cast<std::uint64_t>(_mm_cvtsi128_si64(bytes)) ^ EACH_BYTE * '0'};
#else
  return LoadDigitChunkPlainly(text);
#endif
}

/// Returns true when all eight units are decimal digits.
constexpr bool AreDigits(DigitChunk chunk) noexcept {
  const std::uint64_t carried = (chunk.bytes & EACH_BYTE * 0x7F) + EACH_BYTE * (0x80 - 10);
  return ((carried | chunk.bytes) & EACH_BYTE * 0x80) == 0;
}

/// Returns the number that eight digits write.
constexpr std::uint64_t DigitsValue(DigitChunk chunk) noexcept {
  constexpr std::uint64_t PAIRS = 0x000000FF000000FF;
  const std::uint64_t pairs = chunk.bytes * 10 + (chunk.bytes >> 8);
  const std::uint64_t outer = (pairs & PAIRS) * (100 + (std::uint64_t{1000000} << 32));
  const std::uint64_t inner = ((pairs >> 16) & PAIRS) * (1 + (std::uint64_t{10000} << 32));
  return (outer + inner) >> 32;
}

}  // namespace shr
