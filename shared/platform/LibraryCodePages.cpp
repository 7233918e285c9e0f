// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/LibraryCodePages.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <mutex>

#include "shared/platform/CodePageRuns.h"
#include "shared/text/Utf.h"

namespace shr::platform {
namespace {

#include "shared/platform/LibraryCodePages.inc"

constexpr CodePageRuns RUNS{LIBRARY_PAGES, LIBRARY_SETS, LIBRARY_DECODE, LIBRARY_ENCODE};

/// EBCDIC has its letter A at C1; such a page shows a question mark as 6F, and its substitute
/// control decodes what the page leaves undefined.
constexpr unsigned char EBCDIC_A = 0xC1;
constexpr CodePageTable::StandIns EBCDIC_STAND_INS{0x1A, 0x6F};
constexpr CodePageTable::StandIns ASCII_STAND_INS{u'?', '?'};

/// Bytes converted at a time on their way through the stack.
constexpr std::size_t PART = 2048;

bool IsEbcdic(std::uint32_t codePage) {
  bool found = false;
  ForEachMapping(RUNS, RUNS.decode, codePage, [&](std::uint16_t key, std::uint16_t value) {
    found = found || (key == EBCDIC_A && value == u'A');
  });
  return found;
}

/// Decodings hold in both directions, the first byte of a unit winning, unless an encoding says
/// otherwise.
std::unique_ptr<const CodePageTable> BuildTable(std::uint32_t codePage) {
  auto table =
      std::make_unique<CodePageTable>(IsEbcdic(codePage) ? EBCDIC_STAND_INS : ASCII_STAND_INS);
  ForEachMapping(RUNS, RUNS.decode, codePage, [&](std::uint16_t key, std::uint16_t value) {
    SetDecoding(*table, key, value);
    if (value != LEAD_VALUE && !table->HasEncoding(value)) table->SetEncoding(value, key);
  });
  ForEachMapping(RUNS, RUNS.encode, codePage,
                 [&](std::uint16_t key, std::uint16_t value) { table->SetEncoding(key, value); });
  return table;
}

/// GB 2312 within its Windows extension, KS X 1001 in the form of Wansung.
constexpr EucPage EUC_PAGES[] = {{20936, 936, 0xF7}, {51936, 936, 0xF7}, {51949, 20949, 0xFE}};

struct Slot {
  std::once_flag once;
  std::unique_ptr<const CodePageTable> table;
};

ByteOrder OrderOf(std::uint32_t utf16Page) {
  return utf16Page == UTF16_BIG_ENDIAN_PAGE ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
}

std::size_t CompleteLength(std::uint32_t utfPage, std::string_view bytes) {
  return utfPage == UTF8_PAGE ? Utf8CompleteLength(bytes)
                              : Utf16CompleteLength(bytes, OrderOf(utfPage));
}

std::size_t Decode(std::uint32_t utfPage, std::string_view bytes, wchar_t* out) {
  return utfPage == UTF8_PAGE ? Utf8ToWide(bytes, out) : Utf16ToWide(bytes, OrderOf(utfPage), out);
}

std::size_t Encode(std::uint32_t utfPage, std::wstring_view text, char* out) {
  return utfPage == UTF8_PAGE ? WideToUtf8(text, out) : WideToUtf16(text, OrderOf(utfPage), out);
}

bool IsFirstOfPair(wchar_t unit) {
  return (static_cast<char32_t>(unit) & 0xFFFFFC00) == 0xD800;
}

}  // namespace

bool IsUtfPage(std::uint32_t codePage) noexcept {
  return codePage == UTF8_PAGE || codePage == UTF16_LITTLE_ENDIAN_PAGE ||
         codePage == UTF16_BIG_ENDIAN_PAGE;
}

void AppendWideFromUtf(std::uint32_t utfPage, std::string_view bytes, std::wstring& wide) {
  wchar_t part[PART];
  if (bytes.size() > PART) wide.reserve(wide.size() + bytes.size() / 2);
  while (!bytes.empty()) {
    std::string_view head = bytes;
    if (bytes.size() > PART) {
      head = bytes.substr(0, PART);
      head = head.substr(0, CompleteLength(utfPage, head));
    }
    wide.append(part, Decode(utfPage, head, part));
    bytes.remove_prefix(head.size());
  }
}

void AppendNarrowToUtf(std::uint32_t utfPage, std::wstring_view text, std::string& narrow) {
  char part[PART * 4];
  if (text.size() > PART) narrow.reserve(narrow.size() + text.size());
  while (!text.empty()) {
    std::size_t count = text.size();
    if (count > PART) count = IsFirstOfPair(text[PART - 1]) ? PART - 1 : PART;
    narrow.append(part, Encode(utfPage, text.substr(0, count), part));
    text.remove_prefix(count);
  }
}

bool HasLibraryTable(std::uint32_t codePage) noexcept {
  return RUNS.Has(codePage);
}

const CodePageTable* LibraryCodePageTable(std::uint32_t codePage) {
  static Slot* const slots = new Slot[std::size(LIBRARY_PAGES)];
  const auto found = std::lower_bound(RUNS.pages.begin(), RUNS.pages.end(), codePage);
  if (found == RUNS.pages.end() || *found != codePage) return nullptr;
  Slot& slot = slots[found - RUNS.pages.begin()];
  std::call_once(slot.once, [&] { slot.table = BuildTable(codePage); });
  return slot.table.get();
}

const EucPage* FindEucPage(std::uint32_t codePage) noexcept {
  const auto* found =
      std::find_if(std::begin(EUC_PAGES), std::end(EUC_PAGES),
                   [codePage](const EucPage& row) { return row.codePage == codePage; });
  return found == std::end(EUC_PAGES) ? nullptr : found;
}

std::unique_ptr<const CodePageTable> BuildEucTable(
    const EucPage& page, const std::function<char16_t(unsigned lead, unsigned trail)>& decodePair) {
  auto table = std::make_unique<CodePageTable>(ASCII_STAND_INS);
  for (std::uint16_t byte = 0; byte < 0x80; ++byte) {
    SetDecoding(*table, byte, byte);
    table->SetEncoding(byte, byte);
  }
  for (unsigned lead = 0xA1; lead <= page.lastLead; ++lead) {
    table->SetLead(static_cast<unsigned char>(lead));
    for (unsigned trail = 0xA1; trail <= 0xFE; ++trail) {
      const char16_t unit = decodePair(lead, trail);
      if (unit == u'?') continue;
      const auto pair = static_cast<std::uint16_t>(lead << 8 | trail);
      table->SetPair(pair, unit);
      if (!table->HasEncoding(unit)) table->SetEncoding(unit, pair);
    }
  }
  return table;
}

}  // namespace shr::platform
