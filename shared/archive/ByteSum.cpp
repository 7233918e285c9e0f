// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Both ways add many bytes by one instruction. The vector way sums 16 bytes into two 64-bit lanes
// (the sum of absolute differences from zero) and keeps four such sums, so that no addition waits
// for the one before. The portable way keeps the even and the odd bytes of a 64-bit word as four
// 16-bit lanes each; a lane holds 255 times 256 at most before the lanes must be added up.
//
// Copying and summing in one pass reads everything once; with vectors of 32 bytes the sum hides
// behind the copy.

#include "shared/archive/ByteSum.h"

#include <algorithm>
#include <cstring>

#include "shared/archive/ByteSumAvx2.h"
#include "shared/platform/CpuFeatures.h"
#include "shared/platform/Simd.h"

namespace shr {
namespace {

std::uint64_t SumSingly(const unsigned char* bytes, std::size_t size) {
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < size; ++i) sum += bytes[i];
  return sum;
}

std::uint64_t AddLanes(std::uint64_t lanes) {
  constexpr std::uint64_t EVEN_LANES = 0x0000FFFF0000FFFFu;
  const std::uint64_t pairs = (lanes & EVEN_LANES) + (lanes >> 16 & EVEN_LANES);
  return (pairs & 0xFFFFFFFFu) + (pairs >> 32);
}

#if SHARED_HAS_SSE2

__m128i SumBlock(const unsigned char* bytes) {
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  return _mm_sad_epu8(block, _mm_setzero_si128());
}

__m128i SumWord(std::uint64_t word) {
  return _mm_sad_epu8(_mm_cvtsi64_si128(static_cast<long long>(word)), _mm_setzero_si128());
}

std::uint64_t LoadWord(const unsigned char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

/// Returns the lanes of the sum of the first `size` bytes, a multiple of 64.
__m128i SumBlocks(const unsigned char* bytes, std::size_t size) {
  __m128i sums[4] = {_mm_setzero_si128(), _mm_setzero_si128(), _mm_setzero_si128(),
                     _mm_setzero_si128()};
  for (std::size_t i = 0; i < size; i += 64) {
    sums[0] = _mm_add_epi64(sums[0], SumBlock(bytes + i));
    sums[1] = _mm_add_epi64(sums[1], SumBlock(bytes + i + 16));
    sums[2] = _mm_add_epi64(sums[2], SumBlock(bytes + i + 32));
    sums[3] = _mm_add_epi64(sums[3], SumBlock(bytes + i + 48));
  }
  return _mm_add_epi64(_mm_add_epi64(sums[0], sums[1]), _mm_add_epi64(sums[2], sums[3]));
}

/// Returns the sum of 8 bytes or more. What is left behind the last whole word is taken from the
/// word that ends the bytes, the bytes that were added before shifted out of it.
std::uint64_t SumVectors(const unsigned char* bytes, std::size_t size) {
  const unsigned char* const end = bytes + size;
  const std::size_t blocks = size / 64 * 64;
  __m128i sum = blocks != 0 ? SumBlocks(bytes, blocks) : _mm_setzero_si128();
  bytes += blocks;
  for (; end - bytes >= 16; bytes += 16) sum = _mm_add_epi64(sum, SumBlock(bytes));
  if (end - bytes >= 8) {
    sum = _mm_add_epi64(sum, SumWord(LoadWord(bytes)));
    bytes += 8;
  }
  if (bytes != end) {
    sum = _mm_add_epi64(sum, SumWord(LoadWord(end - 8) >> 8 * (8 - (end - bytes))));
  }
  return static_cast<std::uint64_t>(
      _mm_cvtsi128_si64(_mm_add_epi64(sum, _mm_unpackhi_epi64(sum, sum))));
}

#endif

}  // namespace

std::uint16_t PortableByteSum(const void* bytes, std::size_t size) noexcept {
  constexpr std::uint64_t EVEN_BYTES = 0x00FF00FF00FF00FFu;
  constexpr std::size_t WORD = sizeof(std::uint64_t);
  constexpr std::size_t WORDS_A_LANE = 256;
  const unsigned char* next = static_cast<const unsigned char*>(bytes);
  std::uint64_t sum = 0;
  while (size >= WORD) {
    std::uint64_t even = 0;
    std::uint64_t odd = 0;
    for (std::size_t count = std::min(size / WORD, WORDS_A_LANE); count > 0; --count) {
      std::uint64_t word;
      std::memcpy(&word, next, WORD);
      even += word & EVEN_BYTES;
      odd += word >> 8 & EVEN_BYTES;
      next += WORD;
      size -= WORD;
    }
    sum += AddLanes(even) + AddLanes(odd);
  }
  return static_cast<std::uint16_t>(sum + SumSingly(next, size));
}

std::uint16_t ByteSum(const void* bytes, std::size_t size) noexcept {
#if SHARED_HAS_SSE2
  const unsigned char* const first = static_cast<const unsigned char*>(bytes);
  return static_cast<std::uint16_t>(size < 8 ? SumSingly(first, size) : SumVectors(first, size));
#else
  return PortableByteSum(bytes, size);
#endif
}

std::uint16_t CopyAndSum(void* to, const void* from, std::size_t size) noexcept {
  constexpr std::size_t AVX2_BLOCK = 128;
  constexpr std::size_t PIECE = 16 * 1024;  // the nearest cache still holds it when it is summed
  auto* out = static_cast<unsigned char*>(to);
  const auto* in = static_cast<const unsigned char*>(from);
  std::uint64_t sum = 0;
  if (size >= 2 * AVX2_BLOCK && HasAvx2()) {
    // Stores to whole lines of the cache.
    const std::size_t head = -reinterpret_cast<std::uintptr_t>(out) % 32;
    std::memcpy(out, in, head);
    const std::size_t blocks = (size - head) / AVX2_BLOCK;
    sum = ByteSum(in, head) + CopyAndSumAvx2(out + head, in + head, blocks);
    const std::size_t done = head + blocks * AVX2_BLOCK;
    out += done;
    in += done;
    size -= done;
  }
  while (size > 0) {
    const std::size_t piece = std::min(size, PIECE);
    std::memcpy(out, in, piece);
    sum += ByteSum(out, piece);
    out += piece;
    in += piece;
    size -= piece;
  }
  return static_cast<std::uint16_t>(sum);
}

}  // namespace shr
