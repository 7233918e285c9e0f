// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The idea. A line end is looked for in the raw bytes, where a search runs at memory speed, and
// only then is the line decoded, a scratch buffer at a time that never leaves the fastest cache,
// and appended to the caller's string, whose storage is reused from line to line. Nothing is
// touched twice outside that cache, and no string grows with zeros that are overwritten afterwards.
//
// Code pages come in two kinds. When every byte stands for one unit of its own and ASCII for
// itself, a table of 256 units decodes whole lines; sixteen bytes at a time are widened and those
// outside ASCII looked up. Whether a page is of this kind is not looked up but tried: a text in
// which each of the 65,536 pairs of bytes occurs must decode as its bytes do one by one. (The text
// is a de Bruijn sequence, the concatenation of the Lyndon words of length one and two: Fredricksen
// and Maiorana, "Necklaces of beads in k colors and k-ary de Bruijn sequences", 1978.) All other
// pages go through the platform's converter in pieces of 255 bytes, each by itself: a character
// that two pieces share is decoded in two halves.

#include "shared/files/TextCodec.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <map>
#include <mutex>

#include "shared/platform/CodePages.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define SHARED_HAS_SSE2 1
#else
#define SHARED_HAS_SSE2 0
#endif

namespace shr {
namespace {

using std::size_t;
using std::string_view;

constexpr size_t NPOS = string_view::npos;

/// Bytes of a multi-byte page that are converted together.
constexpr size_t PIECE_BYTES = 255;
/// Wide units that are encoded together.
constexpr size_t ENCODED_UNITS = 1024;
/// An unfinished line keeps so many bytes back: a carriage return and what a line feed may take.
constexpr size_t KEPT_BYTES = 4;
/// Pages up to this number are names for pages that the user's settings choose.
constexpr std::uint32_t LAST_ALIAS_PAGE = 3;

bool IsHighSurrogate(wchar_t unit) noexcept {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsUtf16Encoding(TextEncoding encoding) noexcept {
  return encoding == EncodingUTF16LE || encoding == EncodingUTF16BE;
}

ByteOrder OrderOf(TextEncoding encoding) noexcept {
  return encoding == EncodingUTF16BE ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
}

// Tables of single-byte pages.

/// Returns a text in which every pair of bytes occurs, but for the one that closes the circle.
std::string MakeAllPairs() {
  std::string text;
  text.reserve(256 * 256);
  for (int first = 0; first < 256; ++first) {
    text.push_back(static_cast<char>(first));
    for (int second = first + 1; second < 256; ++second) {
      text.push_back(static_cast<char>(first));
      text.push_back(static_cast<char>(second));
    }
  }
  return text;
}

/// Returns the table of a page, or null when the page is not of that kind.
std::shared_ptr<const SingleByteTable> MakeTable(std::uint32_t codePage) {
  auto table = std::make_shared<SingleByteTable>();
  std::wstring wide;
  for (size_t byte = 0; byte < table->size(); ++byte) {
    const char narrow = static_cast<char>(byte);
    wide.clear();
    if (!platform::AppendWide(codePage, {&narrow, 1}, wide) || wide.size() != 1) return nullptr;
    if (byte < 0x80 && wide[0] != static_cast<wchar_t>(byte)) return nullptr;
    (*table)[byte] = wide[0];
  }
  const std::string pairs = MakeAllPairs();
  wide.clear();
  if (!platform::AppendWide(codePage, pairs, wide) || wide.size() != pairs.size()) return nullptr;
  const auto matches = [&table](char byte, wchar_t unit) {
    return (*table)[static_cast<unsigned char>(byte)] == unit;
  };
  return std::equal(pairs.begin(), pairs.end(), wide.begin(), matches) ? table : nullptr;
}

std::shared_ptr<const SingleByteTable> TableOf(std::uint32_t codePage) {
  if (codePage <= LAST_ALIAS_PAGE) return MakeTable(codePage);
  static std::mutex mutex;
  static std::map<std::uint32_t, std::shared_ptr<const SingleByteTable>> tables;
  const std::lock_guard lock(mutex);
  const auto found = tables.find(codePage);
  if (found != tables.end()) return found->second;
  return tables.emplace(codePage, MakeTable(codePage)).first->second;
}

// Kernels.

#if SHARED_HAS_SSE2

constexpr size_t BLOCK_BYTES = sizeof(__m128i);

__m128i LoadBlock(const char* bytes) noexcept {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

void StoreBlock(wchar_t* out, __m128i block) noexcept {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), block);
}

/// Stores eight 16-bit units as wide units.
void StoreUnits(wchar_t* out, __m128i units) noexcept {
  if constexpr (sizeof(wchar_t) == 2) {
    StoreBlock(out, units);
  } else {
    const __m128i zero = _mm_setzero_si128();
    StoreBlock(out, _mm_unpacklo_epi16(units, zero));
    StoreBlock(out + 4, _mm_unpackhi_epi16(units, zero));
  }
}

/// Widens sixteen bytes and returns the set of those outside ASCII, one bit a byte.
unsigned WidenBlock(const char* bytes, wchar_t* out) noexcept {
  const __m128i block = LoadBlock(bytes);
  const __m128i zero = _mm_setzero_si128();
  StoreUnits(out, _mm_unpacklo_epi8(block, zero));
  StoreUnits(out + 8, _mm_unpackhi_epi8(block, zero));
  return static_cast<unsigned>(_mm_movemask_epi8(block));
}

/// Swaps the bytes of eight 16-bit units where the order asks for it.
__m128i OrderUnits(__m128i units, ByteOrder order) noexcept {
  if (order == ByteOrder::LittleEndian) return units;
  return _mm_or_si128(_mm_slli_epi16(units, 8), _mm_srli_epi16(units, 8));
}

bool HasSurrogate(__m128i units) noexcept {
  const __m128i kind = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800)));
  const __m128i hits = _mm_cmpeq_epi16(kind, _mm_set1_epi16(static_cast<short>(0xD800)));
  return _mm_movemask_epi8(hits) != 0;
}

#endif

size_t DecodeSingleByte(string_view bytes, const SingleByteTable& table, wchar_t* out) noexcept {
  size_t i = 0;
#if SHARED_HAS_SSE2
  for (; i + BLOCK_BYTES <= bytes.size(); i += BLOCK_BYTES) {
    unsigned others = WidenBlock(bytes.data() + i, out + i);
    for (; others != 0; others &= others - 1) {
      const size_t at = i + static_cast<size_t>(std::countr_zero(others));
      out[at] = table[static_cast<unsigned char>(bytes[at])];
    }
  }
#endif
  for (; i < bytes.size(); ++i) out[i] = table[static_cast<unsigned char>(bytes[i])];
  return bytes.size();
}

/// Decodes UTF-16; runs without surrogates go eight units at a time.
size_t DecodeUtf16(string_view bytes, ByteOrder order, wchar_t* out) noexcept {
  size_t i = 0;
#if SHARED_HAS_SSE2
  for (; i + BLOCK_BYTES <= bytes.size(); i += BLOCK_BYTES) {
    const __m128i units = OrderUnits(LoadBlock(bytes.data() + i), order);
    if (sizeof(wchar_t) != 2 && HasSurrogate(units)) break;
    StoreUnits(out + i / 2, units);
  }
#endif
  return i / 2 + Utf16ToWide(bytes.substr(i), order, out + i / 2);
}

/// Returns the offset of the first line feed unit at or behind the even offset `from`.
size_t FindUtf16LineFeed(string_view bytes, size_t from, ByteOrder order) noexcept {
  const size_t highAt = order == ByteOrder::LittleEndian ? 1 : 0;
  size_t i = from;
#if SHARED_HAS_SSE2
  const __m128i wanted = _mm_set1_epi16(order == ByteOrder::LittleEndian ? 0x000A : 0x0A00);
  for (; i + BLOCK_BYTES <= bytes.size(); i += BLOCK_BYTES) {
    const __m128i hits = _mm_cmpeq_epi16(LoadBlock(bytes.data() + i), wanted);
    const auto set = static_cast<unsigned>(_mm_movemask_epi8(hits));
    if (set != 0) return i + static_cast<size_t>(std::countr_zero(set));
  }
#endif
  for (; i + 2 <= bytes.size(); i += 2) {
    if (bytes[i + highAt] == '\0' && bytes[i + 1 - highAt] == '\n') return i;
  }
  return NPOS;
}

/// Makes CR LF at the end of what was appended to `text` behind `begin` a plain line feed.
void JoinLineEnd(std::wstring& text, size_t begin) {
  const size_t size = text.size();
  if (size < begin + 2 || text[size - 1] != L'\n' || text[size - 2] != L'\r') return;
  text.pop_back();
  text.back() = L'\n';
}

/// Appends narrow text with its line feeds written as CR LF.
void AppendWithReturns(string_view narrow, std::string& bytes) {
  for (const char ch : narrow) {
    if (ch == '\n') bytes.push_back('\r');
    bytes.push_back(ch);
  }
}

}  // namespace

TextDecoder::TextDecoder(const TextFormat& format)
    : format_(format), scratch_(std::make_unique_for_overwrite<wchar_t[]>(SCRATCH_UNITS)) {
  if (format_.encoding == EncodingANSI) table_ = TableOf(format_.codePage);
}

bool TextDecoder::IsUtf16() const noexcept {
  return IsUtf16Encoding(format_.encoding);
}

ByteOrder TextDecoder::Order() const noexcept {
  return OrderOf(format_.encoding);
}

size_t TextDecoder::FindLineEnd(string_view bytes, size_t from) const noexcept {
  if (IsUtf16()) {
    const size_t at = FindUtf16LineFeed(bytes, from & ~size_t{1}, Order());
    return at == NPOS ? NPOS : at + 2;
  }
  if (from >= bytes.size()) return NPOS;
  const void* at = std::memchr(bytes.data() + from, '\n', bytes.size() - from);
  return at == nullptr ? NPOS
                       : static_cast<size_t>(static_cast<const char*>(at) - bytes.data()) + 1;
}

bool TextDecoder::AppendLine(string_view bytes, std::wstring& text) {
  const size_t begin = text.size();
  if (format_.encoding == EncodingANSI && !table_) {
    const bool isJoined =
        format_.lineEnds == LineEnds::CarriageReturnLineFeed && bytes.ends_with("\r\n");
    if (!isJoined) return AppendPieces(bytes, text);
    std::string joined(bytes.substr(0, bytes.size() - 2));
    joined.push_back('\n');
    return AppendPieces(joined, text);
  }
  AppendDecoded(bytes, text);
  if (format_.lineEnds == LineEnds::CarriageReturnLineFeed) JoinLineEnd(text, begin);
  return true;
}

bool TextDecoder::AppendHead(string_view bytes, std::wstring& text, size_t& used) {
  used = 0;
  if (bytes.size() <= MAX_REST) return true;
  const string_view head = bytes.substr(0, bytes.size() - KEPT_BYTES);
  if (format_.encoding == EncodingANSI && !table_) {
    used = head.size() - head.size() % PIECE_BYTES;
    return AppendPieces(head.substr(0, used), text);
  }
  used = CompleteLength(head);
  AppendDecoded(head.substr(0, used), text);
  return true;
}

size_t TextDecoder::CompleteLength(string_view bytes) const noexcept {
  if (IsUtf16()) return Utf16CompleteLength(bytes, Order());
  return format_.encoding == EncodingUTF8 ? Utf8CompleteLength(bytes) : bytes.size();
}

size_t TextDecoder::DecodePiece(string_view bytes) noexcept {
  switch (format_.encoding) {
    case EncodingUTF8:
      return Utf8ToWide(bytes, scratch_.get());
    case EncodingUTF16LE:
    case EncodingUTF16BE:
      return DecodeUtf16(bytes, Order(), scratch_.get());
    case EncodingANSI:
      break;
  }
  return DecodeSingleByte(bytes, *table_, scratch_.get());
}

void TextDecoder::AppendDecoded(string_view bytes, std::wstring& text) {
  while (bytes.size() > SCRATCH_UNITS) {
    const size_t size = CompleteLength(bytes.substr(0, SCRATCH_UNITS));
    text.append(scratch_.get(), DecodePiece(bytes.substr(0, size)));
    bytes.remove_prefix(size);
  }
  text.append(scratch_.get(), DecodePiece(bytes));
}

bool TextDecoder::AppendPieces(string_view bytes, std::wstring& text) {
  const size_t before = text.size();
  while (!bytes.empty()) {
    const string_view piece = bytes.substr(0, PIECE_BYTES);
    if (!platform::AppendWide(format_.codePage, piece, text)) {
      text.resize(before);
      return false;
    }
    bytes.remove_prefix(piece.size());
  }
  return true;
}

bool TextEncoder::Append(std::wstring_view text, std::string& bytes) {
  if (text.empty()) return true;
  if (IsUtf16Encoding(format_.encoding)) return Encode(text, bytes);
  std::wstring joined;
  if (held_ != 0) {
    joined.reserve(text.size() + 1);
    joined.push_back(held_);
    joined.append(text);
    text = joined;
    held_ = 0;
  }
  if (IsHighSurrogate(text.back())) {
    held_ = text.back();
    text.remove_suffix(1);
  }
  return text.empty() || Encode(text, bytes);
}

bool TextEncoder::Finish(std::string& bytes) {
  if (held_ == 0) return true;
  const wchar_t unit = held_;
  held_ = 0;
  return Encode({&unit, 1}, bytes);
}

bool TextEncoder::Encode(std::wstring_view text, std::string& bytes) {
  if (format_.encoding == EncodingANSI) {
    if (format_.lineEnds == LineEnds::AsStored) {
      return platform::AppendNarrow(format_.codePage, text, bytes);
    }
    std::string narrow;
    if (!platform::AppendNarrow(format_.codePage, text, narrow)) return false;
    AppendWithReturns(narrow, bytes);
    return true;
  }
  if (format_.lineEnds == LineEnds::AsStored) {
    EncodeUtf(text, bytes);
    return true;
  }
  while (!text.empty()) {
    const size_t end = std::min(text.find(L'\n'), text.size());
    EncodeUtf(text.substr(0, end), bytes);
    if (end == text.size()) break;
    EncodeUtf(L"\r\n", bytes);
    text.remove_prefix(end + 1);
  }
  return true;
}

void TextEncoder::EncodeUtf(std::wstring_view text, std::string& bytes) const {
  std::array<char, ENCODED_UNITS * 4> scratch;
  while (!text.empty()) {
    size_t count = std::min(text.size(), ENCODED_UNITS);
    // A pair goes into one piece.
    if (count < text.size() && IsHighSurrogate(text[count - 1])) --count;
    const std::wstring_view piece = text.substr(0, count);
    const size_t size = IsUtf16Encoding(format_.encoding)
                            ? WideToUtf16(piece, OrderOf(format_.encoding), scratch.data())
                            : WideToUtf8(piece, scratch.data());
    bytes.append(scratch.data(), size);
    text.remove_prefix(count);
  }
}

}  // namespace shr
