// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/Utf.h"

#include <bit>
#include <cstring>

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

/// Decodes the sequence at `in`, which is not ASCII, and moves `in` behind it.
char32_t DecodeSequence(const unsigned char*& in, const unsigned char* end) {
  const unsigned char first = *in++;
  const Lead lead = LeadOf(first);
  const std::size_t count = ValidTrailCount(lead, in, end);
  const unsigned char* trail = in;
  in += count;
  if (lead.trailCount == 0 || count < static_cast<std::size_t>(lead.trailCount)) return REPLACEMENT;
  char32_t value = first & (0x3Fu >> lead.trailCount);
  for (std::size_t i = 0; i < count; ++i) value = value << 6 | (trail[i] & 0x3Fu);
  return value;
}

wchar_t* PutWide(char32_t ch, wchar_t* out) {
  if (WIDE_IS_UTF16 && ch > 0xFFFF) {
    *out++ = static_cast<wchar_t>(0xD7C0 + (ch >> 10));
    *out++ = static_cast<wchar_t>(0xDC00 | (ch & 0x3FF));
    return out;
  }
  *out++ = static_cast<wchar_t>(ch);
  return out;
}

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

}  // namespace

std::size_t Utf8ToWide(std::string_view bytes, wchar_t* out) noexcept {
  const auto* in = reinterpret_cast<const unsigned char*>(bytes.data());
  const unsigned char* end = in + bytes.size();
  wchar_t* next = out;
  while (in < end) {
    if (*in < 0x80) {
      *next++ = static_cast<wchar_t>(*in++);
    } else {
      next = PutWide(DecodeSequence(in, end), next);
    }
  }
  return static_cast<std::size_t>(next - out);
}

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
  for (const wchar_t unit : text) {
    char32_t ch = Unit(unit);
    if (ch > LAST_CODE_POINT) ch = REPLACEMENT;
    if (ch > 0xFFFF) {
      next = PutUtf16(0xD7C0 + (ch >> 10), order, next);
      ch = 0xDC00 | (ch & 0x3FF);
    }
    next = PutUtf16(ch, order, next);
  }
  return static_cast<std::size_t>(reinterpret_cast<char*>(next) - out);
}

}  // namespace shr
