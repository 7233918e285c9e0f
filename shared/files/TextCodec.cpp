// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The idea. A short line of UTF-8 or of a single-byte page is found and decoded in one pass over
// its bytes, into a buffer on the stack, and appended to the caller's string, whose storage is
// reused from line to line. In all other text the line end is looked for in the raw bytes first,
// and the line is then decoded where it stands into the string.
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
#include <span>

#include "shared/platform/CodePages.h"
#include "shared/text/Utf8Line.h"
#include "shared/text/WideBlocks.h"

namespace shr {
namespace {

using std::size_t;
using std::string_view;

constexpr size_t NPOS = string_view::npos;

/// Bytes of a multi-byte page that are converted together.
constexpr size_t PIECE_BYTES = 255;
/// Units of lines that are decoded on the stack.
constexpr size_t SHORT_UNITS = 512;
/// Wide units that are encoded together.
constexpr size_t ENCODED_UNITS = 1024;
/// Pages up to this number are names for pages that the user's settings choose.
constexpr std::uint32_t LAST_ALIAS_PAGE = 3;
/// The page in which a tilde at the end of a line joins it to the next.
constexpr std::uint32_t HZ_PAGE = 52936;

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

std::shared_ptr<const SingleByteTable> TableOf(std::uint32_t number) {
  const std::uint32_t codePage = platform::ActualCodePage(number);
  if (codePage <= LAST_ALIAS_PAGE) return MakeTable(codePage);
  static std::mutex mutex;
  static std::map<std::uint32_t, std::shared_ptr<const SingleByteTable>> tables;
  const std::lock_guard lock(mutex);
  const auto found = tables.find(codePage);
  if (found != tables.end()) return found->second;
  return tables.emplace(codePage, MakeTable(codePage)).first->second;
}

// Kernels.

/// Bytes that are decoded in one step.
constexpr size_t BLOCK_BYTES = WIDE_BLOCK;
/// An unfinished line keeps so many bytes back: a carriage return and what a line feed may take,
/// and what makes it possible to load whole blocks before them.
constexpr size_t KEPT_BYTES = 4 + BLOCK_BYTES;

#if SHARED_HAS_SSE2

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

/// Bytes to decode, and where the memory ends from which whole blocks may be loaded.
struct Input {
  const char* begin;
  const char* end;
  const char* loadable;

  size_t Size() const noexcept { return static_cast<size_t>(end - begin); }
  string_view Bytes() const noexcept { return {begin, Size()}; }
  /// Returns true when a block may be loaded from any place before the end.
  bool CanLoadBlocks() const noexcept {
    return loadable - end >= static_cast<std::ptrdiff_t>(BLOCK_BYTES);
  }
};

/// Requires, like the other kernels: `out` has room for a block behind the units that come out.
size_t DecodeSingleByte(const Input& input, const SingleByteTable& table, wchar_t* out) noexcept {
  const auto lookUp = [&table](char byte) { return table[static_cast<unsigned char>(byte)]; };
  const char* in = input.begin;
#if SHARED_HAS_SSE2
  const char* const blocksEnd = input.CanLoadBlocks() ? input.end : in;
  for (; in < blocksEnd; in += BLOCK_BYTES, out += BLOCK_BYTES) {
    // The last block may load bytes behind the end; their units are not counted.
    const __m128i block = LoadBlock(in);
    StoreBytes(out, block);
    unsigned others = BytesBeyondAscii(block);
    for (; others != 0; others &= others - 1) {
      const int at = std::countr_zero(others);
      out[at] = lookUp(in[at]);
    }
  }
#endif
  for (; in < input.end; ++in) *out++ = lookUp(*in);
  return input.Size();
}

/// Finds and decodes the first line like `DecodeUtf8Line`.
Utf8Line DecodeSingleByteLine(string_view bytes, const SingleByteTable& table,
                              std::span<wchar_t> out) noexcept {
#if SHARED_HAS_SSE2
  const size_t reach = std::min(bytes.size(), out.size());
  for (size_t at = 0; at + BLOCK_BYTES <= reach; at += BLOCK_BYTES) {
    const __m128i block = LoadBlock(bytes.data() + at);
    StoreBytes(out.data() + at, block);
    const unsigned feeds = LineFeeds(block);
    // Those before the first line feed.
    unsigned others = BytesBeyondAscii(block) & (feeds - 1) & ~feeds;
    for (; others != 0; others &= others - 1) {
      const size_t place = at + static_cast<size_t>(std::countr_zero(others));
      out[place] = table[static_cast<unsigned char>(bytes[place])];
    }
    if (feeds == 0) continue;
    const size_t size = at + static_cast<size_t>(std::countr_zero(feeds)) + 1;
    return {size, size};
  }
#endif
  return {};
}

/// Decodes UTF-16; text without surrogates goes eight units at a time.
size_t DecodeUtf16(string_view bytes, ByteOrder order, wchar_t* out) noexcept {
  size_t i = 0;
#if SHARED_HAS_SSE2
  const auto decodeBlock = [&](size_t begin) {
    const __m128i units = OrderUnits(LoadBlock(bytes.data() + begin), order);
    if (sizeof(wchar_t) != 2 && HasSurrogate(units)) return false;
    StoreUnits(out + begin / 2, units);
    return true;
  };
  const size_t whole = bytes.size() & ~size_t{1};
  while (i + BLOCK_BYTES <= whole && decodeBlock(i)) i += BLOCK_BYTES;
  // The last block reaches back into the one before it, where it finds the same units again.
  const bool isTail = i >= BLOCK_BYTES && i < whole && whole - i < BLOCK_BYTES;
  if (isTail && decodeBlock(whole - BLOCK_BYTES)) i = whole;
#endif
  if (i == bytes.size()) return i / 2;
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

size_t FindLineFeed(string_view bytes, size_t from) noexcept {
  if (from >= bytes.size()) return NPOS;
  const void* at = std::memchr(bytes.data() + from, '\n', bytes.size() - from);
  return at == nullptr ? NPOS : static_cast<size_t>(static_cast<const char*>(at) - bytes.data());
}

size_t FindEndOfLine(string_view bytes, size_t from, TextEncoding encoding) noexcept {
  if (!IsUtf16Encoding(encoding)) {
    const size_t at = FindLineFeed(bytes, from);
    return at == NPOS ? NPOS : at + 1;
  }
  const size_t at = FindUtf16LineFeed(bytes, from & ~size_t{1}, OrderOf(encoding));
  return at == NPOS ? NPOS : at + 2;
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

/// Returns the length of the longest head of `bytes` that ends with a character.
size_t CompleteLength(string_view bytes, TextEncoding encoding) noexcept {
  if (IsUtf16Encoding(encoding)) return Utf16CompleteLength(bytes, OrderOf(encoding));
  return encoding == EncodingUTF8 ? Utf8CompleteLength(bytes) : bytes.size();
}

/// Appends text of UTF or, with a table, of a single-byte page.
void AppendDecoded(const Input& input, TextEncoding encoding, const SingleByteTable* table,
                   std::wstring& text) {
  const size_t begin = text.size();
  // Kernels write straight into the string; none of them gives more units than it takes bytes.
  text.resize(begin + input.Size() + BLOCK_BYTES);
  wchar_t* const out = text.data() + begin;
  size_t units = 0;
  if (encoding == EncodingUTF8) {
    units = Utf8ToWide(input.Bytes(), out);
  } else if (encoding == EncodingANSI) {
    units = DecodeSingleByte(input, *table, out);
  } else {
    units = DecodeUtf16(input.Bytes(), OrderOf(encoding), out);
  }
  text.resize(begin + units);
}

/// Appends text of a multi-byte page.
void AppendPieces(string_view bytes, const TextFormat& format, std::wstring& text) {
  while (!bytes.empty()) {
    const string_view piece = bytes.substr(0, format.isInWholeLines ? NPOS : PIECE_BYTES);
    platform::AppendWide(format.codePage, piece, text);
    bytes.remove_prefix(piece.size());
  }
}

}  // namespace

TextDecoder::TextDecoder(const TextFormat& format) : format_(format) {
  if (format_.encoding != EncodingANSI) return;
  table_ = TableOf(format_.codePage);
  isUsable_ = table_ != nullptr || platform::IsCodePageServed(format_.codePage);
}

Taken TextDecoder::Take(string_view bytes, size_t searched, TakenText what, std::wstring& text) {
  if (!isUsable_) return {};
  if (what == TakenText::Line && searched == 0) {
    const Taken line = TakeShortLine(bytes, text);
    if (line.isLine) return line;
  }
  size_t size = FindEndOfLine(bytes, searched, format_.encoding);
  const bool isLine = size != NPOS;
  if (!isLine) {
    if (what == TakenText::Line) return {};
    size = what == TakenText::Rest ? bytes.size() : HeadLength(bytes);
  }
  const size_t begin = text.size();
  if (IsInPieces()) {
    AppendInPieces(bytes.substr(0, size), text);
    const bool hasLineEnd = text.size() > begin && text.back() == L'\n';
    const bool isContinued = isLine && format_.codePage == HZ_PAGE && !hasLineEnd;
    return {size, isLine && !isContinued, isContinued};
  }
  const Input input = {bytes.data(), bytes.data() + size, bytes.data() + bytes.size()};
  AppendDecoded(input, format_.encoding, table_.get(), text);
  if (format_.lineEnds == LineEnds::CarriageReturnLineFeed) JoinLineEnd(text, begin);
  return {size, isLine};
}

/// Takes a line of UTF-8 or a single-byte page that is found and decoded in one pass; nothing when
/// there is none in reach. The units go through the stack: a string cannot grow without being
/// filled first.
Taken TextDecoder::TakeShortLine(string_view bytes, std::wstring& text) const {
  wchar_t units[SHORT_UNITS];
  Utf8Line line;
  if (format_.encoding == EncodingUTF8) {
    line = DecodeUtf8Line(bytes, units);
  } else if (table_) {
    line = DecodeSingleByteLine(bytes, *table_, units);
  }
  if (line.bytes == 0) return {};
  const bool isPair = line.units >= 2 && units[line.units - 2] == L'\r';
  if (isPair && format_.lineEnds == LineEnds::CarriageReturnLineFeed) {
    units[--line.units - 1] = L'\n';
  }
  text.append(units, line.units);
  return {line.bytes, true, false};
}

size_t TextDecoder::HeadLength(string_view bytes) const noexcept {
  if (bytes.size() <= MAX_REST) return 0;
  const string_view head = bytes.substr(0, bytes.size() - KEPT_BYTES);
  if (IsInPieces()) return head.size() - head.size() % PIECE_BYTES;
  return CompleteLength(head, format_.encoding);
}

void TextDecoder::AppendInPieces(string_view bytes, std::wstring& text) const {
  if (format_.lineEnds == LineEnds::AsStored || !bytes.ends_with("\r\n")) {
    return AppendPieces(bytes, format_, text);
  }
  std::string joined(bytes.substr(0, bytes.size() - 2));
  joined.push_back('\n');
  AppendPieces(joined, format_, text);
}

void TextEncoder::Append(std::wstring_view text, std::string& bytes) {
  if (text.empty()) return;
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
  if (!text.empty()) Encode(text, bytes);
}

void TextEncoder::Finish(std::string& bytes) {
  if (held_ == 0) return;
  const wchar_t unit = held_;
  held_ = 0;
  Encode({&unit, 1}, bytes);
}

void TextEncoder::Encode(std::wstring_view text, std::string& bytes) const {
  const bool isStored = format_.lineEnds == LineEnds::AsStored;
  if (format_.encoding == EncodingANSI) {
    if (isStored) {
      platform::AppendNarrow(format_.codePage, text, bytes);
      return;
    }
    std::string narrow;
    platform::AppendNarrow(format_.codePage, text, narrow);
    return AppendWithReturns(narrow, bytes);
  }
  if (isStored) return EncodeUtf(text, bytes);
  while (!text.empty()) {
    const size_t end = std::min(text.find(L'\n'), text.size());
    EncodeUtf(text.substr(0, end), bytes);
    if (end == text.size()) break;
    EncodeUtf(L"\r\n", bytes);
    text.remove_prefix(end + 1);
  }
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
