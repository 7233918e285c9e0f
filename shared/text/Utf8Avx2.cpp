// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A block of 64 bytes is decoded without a branch on its content, and the place of the next block
// does not depend on it.
//
// 1. Validation by classification: three look-ups by nibble, of the byte before, its low half and
//    the byte itself, whose conjunction names every kind of error that two neighbours can have; the
//    second continuation of three bytes is expected behind a lead two bytes before (Keiser and
//    Lemire, "Validating UTF-8 In Less Than One Instruction Per Byte", 2021).
// 2. Every byte is taken for the last of its sequence: with the two bytes before it, loaded from
//    one and two places earlier, it gives a 16-bit unit. For a byte that is not the last one that
//    is nonsense.
// 3. The set of last bytes is a mask of the block: those that no continuation follows (the last of
//    the block: that do not begin or continue what needs more). Eight bits
//    of it choose the shuffle that moves the units of last bytes to the front of a vector (the use
//    of such sets as keys of shuffle tables: Lemire and Mula, "Transcoding billions of Unicode
//    characters per second with SIMD instructions", 2022). The vector is stored whole and the
//    output moves on by the number of bits.
//
// Text of three-byte sequences nearly alone, as Chinese is, leaves most of these lanes unused.
// Where a block shows it, runs of such sequences are decoded eight at a time, each from a 32-bit
// lane of its own in which it is checked, too; single ASCII bytes between long runs are taken
// along.
//
// A sequence that begins in one block and ends in the next is written with the latter. Blocks with
// errors or sequences of four bytes are left to the caller, as is what begins in the block before
// and does not end there. Nothing of a header but the intrinsics may be called here, see
// shared_avx2_units.

#include "shared/text/Utf8Avx2.h"

#include <immintrin.h>

#include <cstdint>

namespace shr {
namespace {

constexpr std::ptrdiff_t BLOCK = UTF8_AVX2_BLOCK;
constexpr bool WIDE_IS_UTF16 = sizeof(wchar_t) == 2;

// Shuffles.

/// For each set of eight 16-bit lanes the shuffle that moves its members to the front, in order.
struct Shuffles {
  alignas(16) unsigned char bytes[256][16];
};

constexpr Shuffles MakeShuffles() {
  Shuffles shuffles{};
  for (unsigned set = 0; set < 256; ++set) {
    unsigned count = 0;
    for (unsigned lane = 0; lane < 8; ++lane) {
      if ((set >> lane & 1) == 0) continue;
      shuffles.bytes[set][2 * count] = static_cast<unsigned char>(2 * lane);
      shuffles.bytes[set][2 * count + 1] = static_cast<unsigned char>(2 * lane + 1);
      ++count;
    }
  }
  return shuffles;
}

constexpr Shuffles SHUFFLES = MakeShuffles();

// Kinds of error that two neighbouring bytes can have.

constexpr unsigned char TOO_SHORT = 1 << 0;   // a lead and no continuation
constexpr unsigned char TOO_LONG = 1 << 1;    // ASCII and a continuation
constexpr unsigned char OVERLONG_3 = 1 << 2;  // E0 and below A0
constexpr unsigned char TOO_LARGE = 1 << 3;   // F0 and above: not for this decoder
constexpr unsigned char SURROGATE = 1 << 4;   // ED and from A0 on
constexpr unsigned char OVERLONG_2 = 1 << 5;  // C0 or C1
constexpr unsigned char TWO_TRAILS = 1 << 7;  // two continuations: right behind a lead of three

/// A look-up by nibble, once in each half of a vector.
__m256i Nibbles(const unsigned char (&table)[16]) {
  return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(table)));
}

constexpr unsigned char BY_FIRST_HIGH[16] = {
    TOO_LONG,
    TOO_LONG,
    TOO_LONG,
    TOO_LONG,
    TOO_LONG,
    TOO_LONG,
    TOO_LONG,
    TOO_LONG,
    TWO_TRAILS,
    TWO_TRAILS,
    TWO_TRAILS,
    TWO_TRAILS,
    TOO_SHORT | OVERLONG_2,
    TOO_SHORT,
    TOO_SHORT | OVERLONG_3 | SURROGATE,
    TOO_SHORT | TOO_LARGE,
};
constexpr unsigned char EVERY_LOW = TOO_SHORT | TOO_LONG | TWO_TRAILS | TOO_LARGE;
constexpr unsigned char BY_FIRST_LOW[16] = {
    EVERY_LOW | OVERLONG_3 | OVERLONG_2,
    EVERY_LOW | OVERLONG_2,
    EVERY_LOW,
    EVERY_LOW,
    EVERY_LOW,
    EVERY_LOW,
    EVERY_LOW,
    EVERY_LOW,
    EVERY_LOW,
    EVERY_LOW,
    EVERY_LOW,
    EVERY_LOW,
    EVERY_LOW,
    EVERY_LOW | SURROGATE,
    EVERY_LOW,
    EVERY_LOW,
};
constexpr unsigned char EVERY_TRAIL = TOO_LONG | TWO_TRAILS | OVERLONG_2 | TOO_LARGE;
constexpr unsigned char BY_SECOND_HIGH[16] = {
    TOO_SHORT,
    TOO_SHORT,
    TOO_SHORT,
    TOO_SHORT,
    TOO_SHORT,
    TOO_SHORT,
    TOO_SHORT,
    TOO_SHORT,
    EVERY_TRAIL | OVERLONG_3,
    EVERY_TRAIL | OVERLONG_3,
    EVERY_TRAIL | SURROGATE,
    EVERY_TRAIL | SURROGATE,
    TOO_SHORT,
    TOO_SHORT,
    TOO_SHORT,
    TOO_SHORT,
};

// Blocks.

__m256i Load(const unsigned char* in) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
}

__m256i Every(int byte) {
  return _mm256_set1_epi8(static_cast<char>(byte));
}

/// Half a block with what stands one and two places before each of its bytes.
struct Half {
  __m256i bytes;
  __m256i before;
  __m256i twoBefore;
};

Half LoadHalf(const unsigned char* in) {
  return {Load(in), Load(in - 1), Load(in - 2)};
}

__m256i HighNibbles(__m256i bytes) {
  return _mm256_and_si256(_mm256_srli_epi16(bytes, 4), Every(0x0F));
}

/// Returns zero where half a block is well-formed and has no sequence of four bytes.
__m256i Errors(const Half& half) {
  const __m256i byFirstHigh = _mm256_shuffle_epi8(Nibbles(BY_FIRST_HIGH), HighNibbles(half.before));
  const __m256i byFirstLow =
      _mm256_shuffle_epi8(Nibbles(BY_FIRST_LOW), _mm256_and_si256(half.before, Every(0x0F)));
  const __m256i bySecondHigh =
      _mm256_shuffle_epi8(Nibbles(BY_SECOND_HIGH), HighNibbles(half.bytes));
  const __m256i kinds = _mm256_and_si256(_mm256_and_si256(byFirstHigh, byFirstLow), bySecondHigh);
  // From E0 on the subtraction leaves the high bit, which is that of two continuations.
  const __m256i isThird =
      _mm256_and_si256(_mm256_subs_epu8(half.twoBefore, Every(0xE0 - 0x80)), Every(0x80));
  const __m256i isLong = _mm256_subs_epu8(half.bytes, Every(0xEF));
  return _mm256_or_si256(_mm256_xor_si256(kinds, isThird), isLong);
}

__m256i AreTrails(__m256i bytes) {
  return _mm256_cmpgt_epi8(Every(0xC0), bytes);
}

std::uint32_t Mask(__m256i lanes) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(lanes));
}

/// Units of half a block, one for each byte as if it were the last of its sequence: the first and
/// third group of eight in the first vector, the second and fourth in the second.
struct Units {
  __m256i even;
  __m256i odd;
};

Units UnitsOf(const Half& half) {
  const __m256i isTrail = AreTrails(half.bytes);
  const __m256i second = _mm256_and_si256(_mm256_slli_epi16(half.before, 6), Every(0xC0));
  const __m256i last = _mm256_or_si256(_mm256_and_si256(half.bytes, Every(0x3F)), second);
  const __m256i low = _mm256_blendv_epi8(half.bytes, last, isTrail);
  const __m256i first = _mm256_and_si256(_mm256_slli_epi16(half.twoBefore, 4), Every(0xF0));
  const __m256i ofThree = _mm256_and_si256(first, AreTrails(half.before));
  const __m256i middle = _mm256_and_si256(_mm256_srli_epi16(half.before, 2), Every(0x0F));
  const __m256i high = _mm256_and_si256(_mm256_or_si256(ofThree, middle), isTrail);
  return {_mm256_unpacklo_epi8(low, high), _mm256_unpackhi_epi8(low, high)};
}

void StoreEight(__m128i units, wchar_t* out) {
  if constexpr (WIDE_IS_UTF16) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), units);
  } else {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_cvtepu16_epi32(units));
  }
}

/// Writes the units of a group that the low eight bits of `ends` name.
wchar_t* PutGroup(__m128i units, std::uint64_t ends, wchar_t* out) {
  const auto set = static_cast<unsigned>(ends & 0xFF);
  const auto* shuffle = reinterpret_cast<const __m128i*>(SHUFFLES.bytes[set]);
  StoreEight(_mm_shuffle_epi8(units, _mm_load_si128(shuffle)), out);
  return out + _mm_popcnt_u32(set);
}

wchar_t* PutHalf(const Units& units, std::uint64_t ends, wchar_t* out) {
  out = PutGroup(_mm256_castsi256_si128(units.even), ends, out);
  out = PutGroup(_mm256_castsi256_si128(units.odd), ends >> 8, out);
  out = PutGroup(_mm256_extracti128_si256(units.even, 1), ends >> 16, out);
  return PutGroup(_mm256_extracti128_si256(units.odd, 1), ends >> 24, out);
}

void WidenBlock(const unsigned char* in, wchar_t* out) {
  for (std::ptrdiff_t i = 0; i < BLOCK; i += 8) {
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in + i));
    StoreEight(_mm_cvtepu8_epi16(bytes), out + i);
  }
}

/// Returns how many bytes before `in`, at most two, begin a sequence and do not end it.
int CountOpen(const unsigned char* in) {
  if (in[-1] >= 0xC0) return 1;
  return in[-1] >= 0x80 && in[-2] >= 0xE0 ? 2 : 0;
}

// Runs of three-byte sequences.

constexpr unsigned TRIPLES = 8;
/// Bytes that must be there to load the sequences.
constexpr std::ptrdiff_t TRIPLE_BYTES = 32;
/// A block with at most so many sequences promises runs of triples; pure ones have 21 or 22.
constexpr int MOST_ENDS = 24;
/// Runs shorter than this are better decoded by blocks.
constexpr unsigned LEAST_RUN = 6;

/// Reads eight sequences into 32-bit lanes, the last byte lowest.
__m256i LoadTriples(const unsigned char* in) {
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 12));
  const __m256i both = _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
  const __m128i turn = _mm_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1);
  return _mm256_shuffle_epi8(both, _mm256_broadcastsi128_si256(turn));
}

void StoreTriples(__m256i values, wchar_t* out) {
  if constexpr (WIDE_IS_UTF16) {
    const __m128i low = _mm256_castsi256_si128(values);
    const __m128i high = _mm256_extracti128_si256(values, 1);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi32(low, high));
  } else {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), values);
  }
}

/// Decodes eight sequences and returns the set of those that are not three well-formed bytes, the
/// units of which are worthless.
unsigned DecodeTriples(const unsigned char* in, wchar_t* out) {
  const __m256i bytes = LoadTriples(in);
  const __m256i marks = _mm256_and_si256(bytes, _mm256_set1_epi32(0xF0C0C0));
  const __m256i payload = _mm256_and_si256(bytes, _mm256_set1_epi32(0x0F3F3F));
  const __m256i halves = _mm256_maddubs_epi16(payload, _mm256_set1_epi32(0x00014001));
  const __m256i values = _mm256_madd_epi16(halves, _mm256_set1_epi32(0x10000001));
  StoreTriples(values, out);
  const __m256i isMarked = _mm256_cmpeq_epi32(marks, _mm256_set1_epi32(0xE08080));
  const __m256i isLong = _mm256_cmpgt_epi32(values, _mm256_set1_epi32(0x7FF));
  const __m256i row = _mm256_and_si256(values, _mm256_set1_epi32(0xF800));
  const __m256i isSurrogate = _mm256_cmpeq_epi32(row, _mm256_set1_epi32(0xD800));
  const __m256i isGood = _mm256_andnot_si256(isSurrogate, _mm256_and_si256(isMarked, isLong));
  return static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(isGood))) ^ 0xFF;
}

/// Decodes runs of triples from `place` on while they are long. Where the next one begins follows
/// from the place of the ASCII byte that ends the run alone, long before the sequences are decoded
/// and found to be good: nothing waits for that.
Utf8Place DecodeRuns(Utf8Place place, const unsigned char* end) {
  const unsigned char* in = place.in;
  wchar_t* out = place.out;
  unsigned run = 0;
  while (end - in >= TRIPLE_BYTES) {
    const unsigned ascii = ~Mask(Load(in)) & 0xFFFFFF;
    const unsigned bad = DecodeTriples(in, out);
    if (ascii == 0) {
      if (bad != 0) break;
      in += 3 * TRIPLES;
      out += TRIPLES;
      run += TRIPLES;
      continue;
    }
    // The bits below the lowest one.
    const auto bytes = static_cast<unsigned>(_mm_popcnt_u32((ascii - 1) & ~ascii));
    const unsigned count = bytes * 0x5556 >> 16;
    const bool isWhole = 3 * count == bytes && (bad & ((1u << count) - 1)) == 0;
    if (!isWhole || run + count < LEAST_RUN) break;
    out[count] = static_cast<wchar_t>(in[bytes]);
    in += bytes + 1;
    out += count + 1;
    run = 0;
  }
  return {in, out};
}

}  // namespace

Utf8Place DecodeUtf8Avx2(const unsigned char* in, const unsigned char* end, wchar_t* out,
                         bool leavesAscii) noexcept {
  const unsigned char* const begin = in;
  bool wasAscii = false;
  for (; end - in >= BLOCK;) {
    const Half low = LoadHalf(in);
    const Half high = LoadHalf(in + 32);
    const bool isAscii = Mask(_mm256_or_si256(low.bytes, high.bytes)) == 0 && in[-1] < 0x80;
    if (isAscii) {
      if (leavesAscii && wasAscii) break;
      wasAscii = true;
      WidenBlock(in, out);
      in += BLOCK;
      out += BLOCK;
      continue;
    }
    wasAscii = false;
    const __m256i errors = _mm256_or_si256(Errors(low), Errors(high));
    if (_mm256_testz_si256(errors, errors) == 0) break;
    const std::uint64_t trails =
        Mask(AreTrails(low.bytes)) | std::uint64_t{Mask(AreTrails(high.bytes))} << 32;
    const std::uint64_t isOpen = CountOpen(in + BLOCK) != 0 ? 1 : 0;
    const std::uint64_t ends = ~(trails >> 1 | isOpen << 63);
    out = PutHalf(UnitsOf(low), ends, out);
    out = PutHalf(UnitsOf(high), ends >> 32, out);
    in += BLOCK;
    if (_mm_popcnt_u64(ends) > MOST_ENDS) continue;
    const Utf8Place place = DecodeRuns({in - CountOpen(in), out}, end);
    in = place.in;
    out = place.out;
  }
  return {in == begin ? in : in - CountOpen(in), out};
}

}  // namespace shr
