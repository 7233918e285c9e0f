// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Decoding UTF-8 goes by blocks: the block at hand is widened whole, as if it were ASCII, and as
// many units of that count as there are ASCII bytes at its head. Writing too much is harmless, for
// a unit never takes less than a byte of input, and it saves the branch on the length of a run that
// no predictor can foresee. Runs of two- and three-byte sequences, which whole alphabets consist
// of, are decoded from one 32-bit load each; what they refuse, and the last bytes of the input,
// take the exact way.

#include "shared/text/Utf.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "shared/platform/CpuFeatures.h"
#include "shared/text/Utf8Avx2.h"
#include "shared/text/Utf8Line.h"
#include "shared/text/WideBlocks.h"

namespace shr {
namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;
constexpr char32_t LAST_CODE_POINT = 0x10FFFF;
constexpr bool WIDE_IS_UTF16 = sizeof(wchar_t) == 2;

constexpr bool IsHighSurrogate(char32_t ch) {
  return (ch & 0xFFFFFC00) == 0xD800;
}
constexpr bool IsLowSurrogate(char32_t ch) {
  return (ch & 0xFFFFFC00) == 0xDC00;
}
constexpr bool IsSurrogate(char32_t ch) {
  return (ch & 0xFFFFF800) == 0xD800;
}
constexpr char32_t JoinPair(char32_t high, char32_t low) {
  return 0x10000 + ((high & 0x3FF) << 10) + (low & 0x3FF);
}

/// Value of a wide unit without the sign that wchar_t may have.
constexpr char32_t Unit(wchar_t ch) {
  return WIDE_IS_UTF16 ? static_cast<char32_t>(ch) & 0xFFFF : static_cast<char32_t>(ch);
}

constexpr bool IsTrail(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

/// What a lead byte promises: how many bytes follow and the range of the first of them.
struct Lead {
  int trailCount;
  unsigned char secondMin;
  unsigned char secondMax;
};

constexpr Lead LeadOf(unsigned char byte) {
  if (byte < 0xC2 || byte > 0xF4) return {0, 1, 0};
  if (byte < 0xE0) return {1, 0x80, 0xBF};
  if (byte == 0xE0) return {2, 0xA0, 0xBF};
  if (byte == 0xED) return {2, 0x80, 0x9F};
  if (byte < 0xF0) return {2, 0x80, 0xBF};
  if (byte == 0xF0) return {3, 0x90, 0xBF};
  if (byte == 0xF4) return {3, 0x80, 0x8F};
  return {3, 0x80, 0xBF};
}

/// Returns how many bytes behind the lead byte belong to its sequence, at most those it promises.
std::size_t ValidTrailCount(const Lead& lead, const unsigned char* next, const unsigned char* end) {
  std::size_t count = 0;
  while (count < static_cast<std::size_t>(lead.trailCount) && next + count < end) {
    const unsigned char byte = next[count];
    const bool fits = count == 0 ? byte >= lead.secondMin && byte <= lead.secondMax : IsTrail(byte);
    if (!fits) break;
    ++count;
  }
  return count;
}

struct Decoded {
  char32_t value;
  std::size_t length;
};

/// Decodes the sequence at `in`, which is not ASCII.
Decoded DecodeSequence(const unsigned char* in, const unsigned char* end) {
  const Lead lead = LeadOf(*in);
  const std::size_t count = ValidTrailCount(lead, in + 1, end);
  if (count == 0 || count < static_cast<std::size_t>(lead.trailCount))
    return {REPLACEMENT, 1 + count};
  char32_t value = *in & (0x3Fu >> lead.trailCount);
  for (std::size_t i = 1; i <= count; ++i) value = value << 6 | (in[i] & 0x3Fu);
  return {value, 1 + count};
}

wchar_t* PutWide(char32_t ch, wchar_t* out) {
  return out + CharacterToWide(ch, out);
}

#if SHARED_HAS_SSE2

constexpr std::ptrdiff_t MOST_TRIPLES = 4;

/// Writes four code points below U+10000 as wide units.
void StoreCodePoints(wchar_t* out, __m128i values) {
  if constexpr (WIDE_IS_UTF16) {
    const __m128i keepBits = _mm_srai_epi32(_mm_slli_epi32(values, 16), 16);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packs_epi32(keepBits, keepBits));
  } else {
    StoreBlock(out, values);
  }
}

__m128i LoadLow(const unsigned char* in) {
  std::int32_t bytes;
  std::memcpy(&bytes, in, sizeof bytes);
  return _mm_cvtsi32_si128(bytes);
}

/// Widens a block and returns how many bytes at its head are ASCII. The units behind those are
/// worthless.
template <BlockStore STORE = StoreBlock>
std::ptrdiff_t WidenBlock(const unsigned char* in, wchar_t* out) {
  const __m128i bytes = LoadBlock(in);
  StoreBytes<STORE>(out, bytes);
  return std::countr_zero(BytesBeyondAscii(bytes) | 1u << WIDE_BLOCK);
}

/// Output of inputs from this size on does not stay in the caches, and reading its lines into them
/// before they are overwritten would halve the speed.
constexpr std::size_t STREAM_SIZE = std::size_t{8} << 20;

/// Bytes that must all be ASCII to be worth writing past the caches.
constexpr std::ptrdiff_t STRETCH = 256;

bool IsAsciiStretch(const unsigned char* in) {
  __m128i all = _mm_setzero_si128();
  for (std::ptrdiff_t i = 0; i < STRETCH; i += WIDE_BLOCK) {
    all = _mm_or_si128(all, LoadBlock(in + i));
  }
  return _mm_movemask_epi8(all) == 0;
}

/// Requires: the block at `in` is ASCII and has been widened. Widens the stretches of ASCII that
/// follow past the caches and returns the number of bytes done, the block at least.
std::ptrdiff_t StreamAscii(const unsigned char* in, const unsigned char* end, wchar_t* out) {
  constexpr std::size_t alignment = WIDE_BLOCK * sizeof(wchar_t);
  const std::size_t misaligned = reinterpret_cast<std::uintptr_t>(out) % alignment;
  const std::size_t gap = misaligned == 0 ? 0 : alignment - misaligned;
  const auto first = static_cast<std::ptrdiff_t>(gap / sizeof(wchar_t));
  std::ptrdiff_t count = first;
  while (end - in - count >= STRETCH && IsAsciiStretch(in + count)) {
    for (const std::ptrdiff_t stop = count + STRETCH; count < stop; count += WIDE_BLOCK) {
      WidenBlock<StreamBlock>(in + count, out + count);
    }
  }
  _mm_sfence();
  return count == first ? WIDE_BLOCK : count;
}

/// Decodes four sequences of three bytes from the first 13 bytes at `in` and returns how many at
/// the head are well-formed. The units behind those are worthless.
std::ptrdiff_t DecodeTriples(const unsigned char* in, wchar_t* out) {
  const __m128i first = _mm_unpacklo_epi32(LoadLow(in), LoadLow(in + 3));
  const __m128i second = _mm_unpacklo_epi32(LoadLow(in + 6), LoadLow(in + 9));
  const __m128i bytes = _mm_unpacklo_epi64(first, second);
  const __m128i marks = _mm_and_si128(bytes, _mm_set1_epi32(0xC0C0F0));
  const __m128i high = _mm_and_si128(_mm_slli_epi32(bytes, 12), _mm_set1_epi32(0xF000));
  const __m128i middle = _mm_and_si128(_mm_srli_epi32(bytes, 2), _mm_set1_epi32(0xFC0));
  const __m128i low = _mm_and_si128(_mm_srli_epi32(bytes, 16), _mm_set1_epi32(0x3F));
  const __m128i values = _mm_or_si128(_mm_or_si128(high, middle), low);
  StoreCodePoints(out, values);
  const __m128i isMarked = _mm_cmpeq_epi32(marks, _mm_set1_epi32(0x8080E0));
  const __m128i isLong = _mm_cmpgt_epi32(values, _mm_set1_epi32(0x7FF));
  const __m128i isSurrogate =
      _mm_cmpeq_epi32(_mm_and_si128(values, _mm_set1_epi32(0xF800)), _mm_set1_epi32(0xD800));
  const __m128i isGood = _mm_andnot_si128(isSurrogate, _mm_and_si128(isMarked, isLong));
  const auto good = static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(isGood)));
  return std::countr_one(good);
}

#else

constexpr std::ptrdiff_t MOST_TRIPLES = 1;

std::ptrdiff_t WidenBlock(const unsigned char* in, wchar_t* out) {
  std::ptrdiff_t count = 0;
  for (; count < WIDE_BLOCK && in[count] < 0x80; ++count)
    out[count] = static_cast<wchar_t>(in[count]);
  return count;
}

constexpr std::size_t STREAM_SIZE = ~std::size_t{0};

std::ptrdiff_t StreamAscii(const unsigned char*, const unsigned char*, wchar_t*) {
  return WIDE_BLOCK;
}

/// Decodes the sequence of three bytes at `in` and returns 1, or 0 when it is not well-formed.
std::ptrdiff_t DecodeTriples(const unsigned char* in, wchar_t* out) {
  if (!IsTrail(in[1]) || !IsTrail(in[2])) return 0;
  const char32_t ch = (in[0] & 0xFu) << 12 | (in[1] & 0x3Fu) << 6 | (in[2] & 0x3Fu);
  if (ch < 0x800 || IsSurrogate(ch)) return 0;
  *out = static_cast<wchar_t>(ch);
  return 1;
}

#endif

constexpr bool IsPair(unsigned char first, unsigned char second) {
  return first >= 0xC2 && first < 0xE0 && IsTrail(second);
}

/// Decodes sequences, and single ASCII bytes between them, until a run of ASCII begins, `stop` is
/// reached or fewer than `WIDE_BLOCK` bytes are left.
void DecodeRun(const unsigned char*& source, const unsigned char* stop, const unsigned char* end,
               wchar_t*& target) {
  const unsigned char* in = source;
  wchar_t* out = target;
  while (in < stop && end - in >= WIDE_BLOCK) {
    const unsigned char first = *in;
    if (first < 0x80) {
      if (in[1] < 0x80) break;
      *out++ = static_cast<wchar_t>(first);
      ++in;
      continue;
    }
    if ((first & 0xF0) == 0xE0) {
      const std::ptrdiff_t count = DecodeTriples(in, out);
      if (count == MOST_TRIPLES) {
        in += 3 * MOST_TRIPLES;
        out += MOST_TRIPLES;
        continue;
      }
      in += 3 * count;
      out += count;
      if (count != 0) continue;
    } else if (IsPair(first, in[1])) {
      *out++ = static_cast<wchar_t>((first & 0x1F) << 6 | (in[1] & 0x3F));
      in += 2;
      continue;
    }
    const Decoded decoded = DecodeSequence(in, end);
    out = PutWide(decoded.value, out);
    in += decoded.length;
  }
  source = in;
  target = out;
}

/// Tries blocks of AVX2 where the processor has it and they promise to help.
class WideDecoder {
public:
  WideDecoder(const unsigned char* begin, const unsigned char* end, bool leavesAscii)
      : leavesAscii_(leavesAscii), end_(end), retry_(end) {
    if (end - begin >= LEAST_SIZE && HasAvx2()) retry_ = begin + UTF8_AVX2_HEAD;
  }

  /// Decodes what it can from `source`, where a sequence begins.
  void Run(const unsigned char*& source, wchar_t*& target) {
    if (source < retry_) return;
    if (end_ - source < UTF8_AVX2_BLOCK) {
      retry_ = end_;
    } else if (IsTrail(*source)) {
      retry_ = source + 1;
    } else {
      const Utf8Place place = DecodeUtf8Avx2(source, end_, target, leavesAscii_);
      source = place.in;
      target = place.out;
      retry_ = source + std::min(end_ - source, UTF8_AVX2_BLOCK);
    }
  }

  /// Returns where it is to be asked again, a place behind the last one.
  const unsigned char* Retry() const { return retry_; }

private:
  /// Shorter input is not worth asking for the processor.
  static constexpr std::ptrdiff_t LEAST_SIZE = 160;

  bool leavesAscii_;
  const unsigned char* end_;
  const unsigned char* retry_;
};

unsigned char* PutUtf8(char32_t ch, unsigned char* out) {
  const auto put = [&out](char32_t value) { *out++ = static_cast<unsigned char>(value); };
  const auto putTrail = [&put](char32_t value) { put(0x80 | (value & 0x3F)); };
  if (ch < 0x80) {
    put(ch);
  } else if (ch < 0x800) {
    put(0xC0 | ch >> 6);
    putTrail(ch);
  } else if (ch < 0x10000) {
    put(0xE0 | ch >> 12);
    putTrail(ch >> 6);
    putTrail(ch);
  } else {
    put(0xF0 | ch >> 18);
    putTrail(ch >> 12);
    putTrail(ch >> 6);
    putTrail(ch);
  }
  return out;
}

char32_t ReadUtf16(const unsigned char* in, ByteOrder order) {
  return order == ByteOrder::LittleEndian ? static_cast<char32_t>(in[0] | in[1] << 8)
                                          : static_cast<char32_t>(in[0] << 8 | in[1]);
}

unsigned char* PutUtf16(char32_t unit, ByteOrder order, unsigned char* out) {
  const auto low = static_cast<unsigned char>(unit & 0xFF);
  const auto high = static_cast<unsigned char>(unit >> 8 & 0xFF);
  out[0] = order == ByteOrder::LittleEndian ? low : high;
  out[1] = order == ByteOrder::LittleEndian ? high : low;
  return out + 2;
}

/// Encodes whole blocks at the head of `text` until one has a unit beyond 16 bits, and returns how
/// many units that were. The loops have a fixed length, so that compilers make vectors of them.
std::size_t PutUtf16Blocks(std::wstring_view text, ByteOrder order, unsigned char* out) {
  constexpr std::size_t UNITS = 8;
  const bool isNative =
      (order == ByteOrder::LittleEndian) == (std::endian::native == std::endian::little);
  std::size_t done = 0;
  for (; text.size() - done >= UNITS; done += UNITS) {
    std::uint16_t units[UNITS];
    char32_t all = 0;
    for (std::size_t i = 0; i < UNITS; ++i) {
      const char32_t ch = Unit(text[done + i]);
      all |= ch;
      units[i] = static_cast<std::uint16_t>(ch);
    }
    if (all > 0xFFFF) break;
    for (std::size_t i = 0; !isNative && i < UNITS; ++i) {
      units[i] = static_cast<std::uint16_t>(units[i] << 8 | units[i] >> 8);
    }
    std::memcpy(out + 2 * done, units, sizeof(units));
  }
  return done;
}

}  // namespace

std::size_t Utf8ToWide(std::string_view bytes, wchar_t* out) noexcept {
  const auto* in = reinterpret_cast<const unsigned char*>(bytes.data());
  const unsigned char* end = in + bytes.size();
  const bool isLarge = bytes.size() >= STREAM_SIZE;
  wchar_t* next = out;
  WideDecoder wideDecoder(in, end, isLarge);
  while (end - in >= WIDE_BLOCK) {
    const std::ptrdiff_t count = WidenBlock(in, next);
    if (count == WIDE_BLOCK) {
      const std::ptrdiff_t done = isLarge ? StreamAscii(in, end, next) : WIDE_BLOCK;
      in += done;
      next += done;
      continue;
    }
    in += count;
    next += count;
    wideDecoder.Run(in, next);
    DecodeRun(in, wideDecoder.Retry(), end, next);
  }
  while (in < end) {
    if (*in < 0x80) {
      *next++ = static_cast<wchar_t>(*in++);
      continue;
    }
    const Decoded decoded = DecodeSequence(in, end);
    next = PutWide(decoded.value, next);
    in += decoded.length;
  }
  return static_cast<std::size_t>(next - out);
}

#if SHARED_HAS_SSE2

/// What may be loaded or stored behind the place of a block: the rest of it behind a pair that its
/// last byte begins.
constexpr std::ptrdiff_t LINE_REACH = 2 * WIDE_BLOCK + 1;

// Blocks follow each other at a fixed distance while they hold ASCII and pairs, so that loading one
// never waits for what the one before holds. Behind a pair the rest of its block is widened again.
Utf8Line DecodeUtf8Line(std::string_view bytes, std::span<wchar_t> out) noexcept {
  const auto* const begin = reinterpret_cast<const unsigned char*>(bytes.data());
  // No sequence has more units than bytes, so one limit holds for both.
  const unsigned char* const limit = begin + std::min(bytes.size(), out.size());
  const unsigned char* in = begin;
  wchar_t* next = out.data();
  while (limit - in >= LINE_REACH) {
    const __m128i block = LoadBlock(in);
    StoreBytes(next, block);
    const unsigned feeds = LineFeeds(block);
    unsigned stops = feeds | BytesBeyondAscii(block);
    int from = 0;
    while (stops != 0) {
      const int at = std::countr_zero(stops);
      next += at - from;
      from = at;
      if ((feeds >> at & 1) != 0) {
        const auto units = static_cast<std::size_t>(next - out.data());
        return {static_cast<std::size_t>(in - begin + at) + 1, units + 1};
      }
      if (!IsPair(in[at], in[at + 1])) break;
      *next++ = static_cast<wchar_t>((in[at] & 0x1F) << 6 | (in[at + 1] & 0x3F));
      from = at + 2;
      StoreBytes(next, LoadBlock(in + from));
      stops &= ~0u << from;
    }
    if (stops == 0) {
      const int whole = std::max(from, static_cast<int>(WIDE_BLOCK));
      next += whole - from;
      in += whole;
      continue;
    }
    const unsigned char* const run = in + from;
    const unsigned char* runEnd = run + 1;
    while (runEnd < limit && *runEnd >= 0x80) ++runEnd;
    // A run that goes on behind the limit is not whole.
    if (runEnd == limit) break;
    const auto size = static_cast<std::size_t>(runEnd - run);
    next += Utf8ToWide({reinterpret_cast<const char*>(run), size}, next);
    in = runEnd;
  }
  return {};
}

#else

Utf8Line DecodeUtf8Line(std::string_view, std::span<wchar_t>) noexcept {
  return {};
}

#endif

std::size_t Utf8CompleteLength(std::string_view bytes) noexcept {
  const auto* begin = reinterpret_cast<const unsigned char*>(bytes.data());
  const unsigned char* end = begin + bytes.size();
  for (std::size_t back = 1; back <= 3 && back <= bytes.size(); ++back) {
    const unsigned char* in = end - back;
    if (IsTrail(*in)) continue;
    const Lead lead = LeadOf(*in);
    const bool open = ValidTrailCount(lead, in + 1, end) == back - 1 &&
                      static_cast<std::size_t>(lead.trailCount) > back - 1;
    return open ? bytes.size() - back : bytes.size();
  }
  return bytes.size();
}

std::size_t WideToUtf8(std::wstring_view text, char* out) noexcept {
  auto* next = reinterpret_cast<unsigned char*>(out);
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t ch = Unit(text[i]);
    if (IsHighSurrogate(ch) && i + 1 < text.size() && IsLowSurrogate(Unit(text[i + 1]))) {
      ch = JoinPair(ch, Unit(text[++i]));
    }
    next = PutUtf8(IsSurrogate(ch) || ch > LAST_CODE_POINT ? REPLACEMENT : ch, next);
  }
  return static_cast<std::size_t>(reinterpret_cast<char*>(next) - out);
}

std::size_t Utf16ToWide(std::string_view bytes, ByteOrder order, wchar_t* out) noexcept {
  const auto* in = reinterpret_cast<const unsigned char*>(bytes.data());
  const std::size_t unitCount = bytes.size() / 2;
  wchar_t* next = out;
  for (std::size_t i = 0; i < unitCount; ++i) {
    char32_t ch = ReadUtf16(in + 2 * i, order);
    if (!WIDE_IS_UTF16 && IsHighSurrogate(ch) && i + 1 < unitCount) {
      const char32_t low = ReadUtf16(in + 2 * i + 2, order);
      if (IsLowSurrogate(low)) {
        ch = JoinPair(ch, low);
        ++i;
      }
    }
    *next++ = static_cast<wchar_t>(ch);
  }
  if (bytes.size() % 2 != 0) *next++ = static_cast<wchar_t>(REPLACEMENT);
  return static_cast<std::size_t>(next - out);
}

std::size_t Utf16CompleteLength(std::string_view bytes, ByteOrder order) noexcept {
  const std::size_t whole = bytes.size() - bytes.size() % 2;
  if (whole == 0) return 0;
  const auto* last = reinterpret_cast<const unsigned char*>(bytes.data()) + whole - 2;
  return IsHighSurrogate(ReadUtf16(last, order)) ? whole - 2 : whole;
}

std::size_t WideToUtf16(std::wstring_view text, ByteOrder order, char* out) noexcept {
  auto* next = reinterpret_cast<unsigned char*>(out);
  while (!text.empty()) {
    const std::size_t blocks = PutUtf16Blocks(text, order, next);
    next += 2 * blocks;
    text.remove_prefix(blocks);
    // As many units one by one before blocks are tried again.
    constexpr std::size_t SINGLE = 8;
    for (const wchar_t unit : text.substr(0, SINGLE)) {
      char32_t ch = Unit(unit);
      if (ch > LAST_CODE_POINT) ch = REPLACEMENT;
      if (ch > 0xFFFF) {
        next = PutUtf16(0xD7C0 + (ch >> 10), order, next);
        ch = 0xDC00 | (ch & 0x3FF);
      }
      next = PutUtf16(ch, order, next);
    }
    text.remove_prefix(std::min(SINGLE, text.size()));
  }
  return static_cast<std::size_t>(reinterpret_cast<char*>(next) - out);
}

}  // namespace shr
