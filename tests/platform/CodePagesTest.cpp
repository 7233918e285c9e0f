// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Grid: single bytes, pairs and stateful pages x defined, undefined and incomplete input x short
// text and text that is converted in parts. The digests in code-page-digests.txt cover every byte
// pair and every unit of the pages that both targets serve; they were taken from the system's own
// tables where it has the page. The list of the tables of Windows 2000 is checked line by line.

#include "shared/platform/CodePages.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "shared/text/Utf.h"

namespace {

using shr::platform::AppendNarrow;
using shr::platform::AppendWide;
using shr::platform::IsCodePageServed;
using namespace std::string_view_literals;

std::wstring Wide(std::uint32_t page, std::string_view bytes) {
  std::wstring wide;
  EXPECT_TRUE(AppendWide(page, bytes, wide)) << "page " << page;
  return wide;
}

std::string Narrow(std::uint32_t page, std::wstring_view text) {
  std::string narrow;
  EXPECT_TRUE(AppendNarrow(page, text, narrow)) << "page " << page;
  return narrow;
}

/// FNV-1a of Fowler, Noll and Vo.
std::uint64_t DigestOf(std::string_view bytes, std::uint64_t digest) {
  for (const char byte : bytes)
    digest = (digest ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  return digest;
}

std::string EveryPair() {
  std::string bytes;
  for (unsigned pair = 0; pair < 0x10000; ++pair) {
    bytes += static_cast<char>(pair >> 8);
    bytes += static_cast<char>(pair & 0xFF);
    bytes += '\n';
  }
  return bytes;
}

std::wstring EveryUnit() {
  std::wstring units;
  for (unsigned unit = 0; unit < 0x10000; ++unit) {
    if (unit < 0xD800 || unit > 0xDFFF) units += static_cast<wchar_t>(unit);
  }
  return units;
}

std::uint64_t DigestOfPage(std::uint32_t page, const std::string& pairs,
                           const std::wstring& units) {
  const std::wstring wide = Wide(page, pairs);
  std::string utf16(wide.size() * sizeof(wchar_t), '\0');
  utf16.resize(shr::WideToUtf16(wide, shr::ByteOrder::LittleEndian, utf16.data()));
  return DigestOf(Narrow(page, units), DigestOf(utf16, 0xCBF29CE484222325));
}

TEST(CodePages, convertEveryPairAndEveryUnitAlikeOnBothTargets) {
  std::ifstream file(SHARED_TEST_DATA_DIR "/platform/code-page-digests.txt");
  const std::string pairs = EveryPair();
  const std::wstring units = EveryUnit();
  std::uint32_t page = 0;
  std::string expected;
  int count = 0;
  while (file >> page >> expected) {
    char digest[17];
    std::snprintf(digest, sizeof digest, "%016llx",
                  static_cast<unsigned long long>(DigestOfPage(page, pairs, units)));
    EXPECT_EQ(digest, expected) << "page " << page;
    ++count;
  }
  EXPECT_EQ(count, 107);
}

/// The numbers that a page of the list is served under.
std::vector<std::uint32_t> NumbersOf(std::uint32_t page) {
  if (page == 28593 || page == 28595) return {page, page + 1000};
  return {page};
}

TEST(CodePages, haveTheListedTablesOfWindows) {
  std::ifstream file(SHARED_TEST_DATA_DIR "/../../tools/codepages/windows-2000-pages.txt");
  std::uint32_t page = 0;
  unsigned byte = 0;
  unsigned unit = 0;
  std::string direction;
  int lines = 0;
  std::map<std::uint32_t, std::set<unsigned>> listed;
  while (file >> std::dec >> page >> std::hex >> byte >> unit >> direction) {
    ++lines;
    for (const std::uint32_t number : NumbersOf(page)) {
      const std::string bytes(1, static_cast<char>(byte));
      const std::wstring text(1, static_cast<wchar_t>(unit));
      EXPECT_EQ(Narrow(number, text), bytes) << number << " unit " << std::hex << unit;
      if (direction == "both") {
        EXPECT_EQ(Wide(number, bytes), text) << number << " byte " << byte;
      }
      listed[number].insert(unit);
    }
  }
  EXPECT_EQ(lines, 8509);
  EXPECT_EQ(listed.size(), 24u);
  // What is not in the list is not in the page.
  for (const auto& [number, units] : listed) {
    const std::string standIn = Narrow(number, L"\x4E2D");
    for (const wchar_t other : EveryUnit()) {
      const bool isListed = units.count(static_cast<unsigned>(other)) != 0;
      if (isListed) continue;
      EXPECT_EQ(Narrow(number, std::wstring(1, other)), standIn)
          << number << " unit " << std::hex << static_cast<unsigned>(other);
    }
  }
}

TEST(CodePages, decodeWhatWindowsDecodes) {
  struct Case {
    const char* name;
    std::uint32_t page;
    std::string_view bytes;
    std::wstring_view wide;
  };
  const Case cases[] = {
      {"undefined bytes are C1 controls", 1252, "\x81\x8D"sv, L"\x81\x8D"sv},
      {"undefined bytes are private use", 1253, "\xAA\xD2\xFF"sv, L"\xF8F9\xF8FA\xF8FB"sv},
      {"controls stay in place", 437, "\x1A\x1C\x7F"sv, L"\x1A\x1C\x7F"sv},
      {"micro sign of the DOS page", 437, "\xE6"sv, L"\xB5"sv},
      {"the eighth bit of ASCII is dropped", 20127, "\xC1"sv, L"A"sv},
      {"undefined EBCDIC byte", 875, "\xDC"sv, L"\x1A"sv},
      {"embedded zeros", 1252, "a\0b\0"sv, L"a\0b\0"sv},
      {"pairs and single bytes", 932, "a\xB1\x82\xA0z"sv, L"a\xFF71\x3042z"sv},
      {"undefined pair takes its trail byte", 932, "\x81\x20z"sv, L"\x30FBz"sv},
      {"undefined pair of Chinese", 936, "\x81\x20z"sv, L"?z"sv},
      {"lone lead byte at the end", 932, "a\x81"sv, L"a\x30FB"sv},
      {"lone lead byte at the end", 949, "a\x81"sv, L"a?"sv},
      {"lead byte before a zero", 936, "\x81\0z"sv, L"?\0z"sv},
      {"second set of EUC-JP", 20932, "\xA4\xA2\xB2\x4A"sv, L"\x3042\x5106"sv},
      {"Johab", 1361, "\x88\x61"sv, L"\xAC00"sv},
      {"EUC form of Chinese", 51936, "\xD6\xD0"sv, L"\x4E2D"sv},
      {"EUC form of Korean", 51949, "\xB0\xA1"sv, L"\xAC00"sv},
      {"telex accent and letter", 20261, "\xC2\x65"sv, L"\xE9"sv},
      {"page numbers of stored documents", 29593, "\xA1"sv, L"\x126"sv},
      {"page numbers of stored documents", 29595, "\xD0"sv, L"\x430"sv},
      {"line feed of EBCDIC", 1047, "\x15\x25"sv, L"\n\x85"sv},
      {"undefined EBCDIC byte of a listed page", 20833, "\x41\xC1"sv, L"\x1A\x41"sv},
      {"EBCDIC with the euro", 1140, "\x9F"sv, L"\x20AC"sv},
      {"UTF-16", 1200, "a\0\x2D\x4E"sv, L"a\x4E2D"sv},
      {"UTF-16 of the other order, odd tail", 1201, "\0a\x4E"sv, L"a\xFFFD"sv},
      {"bad UTF-8 keeps the next letter", 65001, "a\xE9z"sv, L"a\xFFFDz"sv},
      {"UTF-7 run", 65000, "+AOk-t+Ti1z"sv, L"\xE9t\x4E2D"sv},
      {"UTF-7 bytes outside a run", 65000, "\x80~+-+!"sv, L"\x80~+!"sv},
  };
  for (const Case& row : cases) EXPECT_EQ(Wide(row.page, row.bytes), row.wide) << row.name;
}

TEST(CodePages, encodeWhatWindowsEncodes) {
  struct Case {
    const char* name;
    std::uint32_t page;
    std::wstring wide;
    std::string_view bytes;
  };
  const wchar_t high = static_cast<wchar_t>(0xD83D);
  const Case cases[] = {
      {"best-fit letters", 1252, L"\x0100\x0141\x2212\xFF21", "AL-A"},
      {"best-fit of a DOS page", 437, L"\xC0\x2018\x25CB", "A\x60\x09"},
      {"no best fit that only the converter has", 855, L"\xFF21", "?"},
      {"default character", 1252, L"a\x4E2Dz", "a?z"},
      {"EBCDIC default character", 37, L"\x4E2D", "\x6F"},
      {"own EBCDIC table", 20273, L"\x4E2D\xE4", "\x6F\xC0"},
      {"supplementary", 1252, L"\U0001F600", "??"},
      {"supplementary in a double-byte page", 932, L"\U0001F600", "??"},
      {"lone surrogate", 1252, std::wstring(1, high), "?"},
      {"lone surrogate in UTF-8", 65001, std::wstring(1, high), "\xEF\xBF\xBD"},
      {"lone surrogate in UTF-16", 1200, std::wstring(1, high), "\x3D\xD8"},
      {"pairs", 932, L"a\x3042\xFF71z", "a\x82\xA0\xB1z"},
      {"embedded zeros", 950, std::wstring(L"\0\x4E2D\0", 3), "\0\xA4\xA4\0"sv},
      {"UTF-7", 65000, L"\xE9+t~", "+AOk-+-t+AH4-"},
  };
  for (const Case& row : cases) EXPECT_EQ(Narrow(row.page, row.wide), row.bytes) << row.name;
}

TEST(CodePages, shiftedTextIsClosedAndCanBeJoined) {
  struct Case {
    std::uint32_t page;
    std::wstring_view wide;
    std::string_view bytes;
  };
  const Case cases[] = {
      {50220, L"a\x4E2Dz", "a\x1B$BCf\x1B(Bz"},
      {50220, L"\x4E2D\n\x4E2D", "\x1B$BCf\x1B(B\n\x1B$BCf\x1B(B"},
      {50220, L"\\~\xA5\x203E\x2460\x9AD9", "\\~\x1B(J\\~\x1B$B-!|b\x1B(B"},
      {50221, L"a\xFF71\x3042", "a\x1B(I1\x1B$B$\"\x1B(B"},
      {50221, L"\x4E02\xD55C", "\x1B$(D0!\x1B$(CGQ\x1B(B"},
      {50222, L"a\xFF71\x3042", "a\x0E\x31\x0F\x1B$B$\"\x1B(B"},
      {50225, L"\\~abc\n", "\\~abc\n"},
      {50225, L"a\xAC00\n\xAC00", "\x1B$)Ca\x0E\x30!\x0F\n\x0E\x30!\x0F"},
      {52936, L"\x4E2D", "~{VP~}"},
      {52936, L"a~\x4E2D\nz", "a~~~{VP~}\nz"},
  };
  for (const Case& row : cases) {
    const std::string bytes = Narrow(row.page, row.wide);
    const std::wstring twice = std::wstring(row.wide).append(row.wide);
    EXPECT_EQ(bytes, row.bytes) << row.page;
    EXPECT_EQ(Wide(row.page, bytes + bytes), twice) << row.page;
  }
  EXPECT_EQ(Narrow(50220, L"\xFF71\xFF8A\xFF9F"), "\x1B$B%\"%O!,\x1B(B");
  EXPECT_EQ(Narrow(50220, L"\xB7\x2212\x301C"), Narrow(50220, L"\x30FB\xFF0D\xFF5E")) << "best fit";
  EXPECT_EQ(Narrow(50220, L"a\x1B\xE9\U0001F600z"), "a????z");
}

TEST(CodePages, damagedShiftsLoseNoMoreThanThemselves) {
  struct Case {
    const char* name;
    std::uint32_t page;
    std::string_view bytes;
    std::wstring_view wide;
  };
  const Case cases[] = {
      {"announcement alone", 50220, "\x1B$B", L""},
      {"half a pair at the end", 50220, "\x1B$BCf\x43", L"\x4E2D?"},
      {"half a pair before a line feed", 50220, "\x1B$BCfC\nCf", L"\x4E2D?\nCf"},
      {"escape cut off", 50220, "a\x1B", L"a?"},
      {"escape of nothing", 50220, "a\x1B[z", L"a?[z"},
      {"revisions of the set", 50220, "\x1B$@0!\x1B&@\x1B$B0!\x1B(B", L"\x4E9C\x4E9C"},
      {"every form of katakana", 50220, "\x1B(I1\x1B(B\xB1\x0E\x31\x0F\x31",
       L"\xFF71\xFF71\xFF71"
       L"1"},
      {"bytes of no set", 50221, "a\x80\xFFz", L"a??z"},
      {"text without announcement", 50225, "\x0E\x30!\x0F", L"\xAC00"},
      {"shift ends with the line", 50225, "\x1B$)C\x0E\x30!\n0!", L"\xAC00\n0!"},
      {"unclosed at the end", 52936, "~{VPVP", L"\x4E2D\x4E2D"},
      {"unclosed at the line end", 52936, "~{VP\nab", L"\x4E2D\nab"},
      {"half a pair at the end", 52936, "~{VPV", L"\x4E2D?"},
      {"stray end of Chinese", 52936, "~}a~{VP~}~}z", L"a\x4E2Dz"},
      {"tilde at the end", 52936, "a~", L"a~"},
      {"tilde of nothing", 52936, "~a~\xD6", L"~a~?"},
      {"continued line", 52936, "a~\nb~\r\nc", L"abc"},
      {"undefined pair", 52936, "~{)!~}z", L"?z"},
  };
  for (const Case& row : cases) EXPECT_EQ(Wide(row.page, row.bytes), row.wide) << row.name;
}

TEST(CodePages, textInPartsReadsLikeTheWhole) {
  // A pair lies across every place where the text may be cut.
  for (const std::size_t shift : {0u, 1u}) {
    std::string bytes(shift, 'x');
    std::wstring wide(shift, L'x');
    for (int i = 0; i < 5000; ++i) {
      bytes += "\x82\xA0";
      wide += L'\x3042';
    }
    EXPECT_EQ(Wide(932, bytes), wide);
    EXPECT_EQ(Narrow(932, wide), bytes);
  }
  std::string utf8 = "x";
  std::wstring wide = L"x";
  for (int i = 0; i < 5000; ++i) {
    utf8 += "\xF0\x9F\x98\x80";
    wide += L"\U0001F600";
  }
  EXPECT_EQ(Wide(65001, utf8), wide);
  EXPECT_EQ(Narrow(65001, wide), utf8);
  EXPECT_EQ(Wide(1201, Narrow(1201, wide)), wide);
}

TEST(CodePages, conversionsAppend) {
  for (const std::uint32_t page : {0u, 37u, 932u, 1140u, 1200u, 65000u, 65001u}) {
    std::wstring wide = L"before ";
    std::string narrow = "before ";
    EXPECT_TRUE(AppendWide(page, Narrow(page, L"after"), wide));
    EXPECT_TRUE(AppendNarrow(page, L"after", narrow));
    EXPECT_TRUE(AppendWide(page, "", wide));
    EXPECT_EQ(wide, L"before after") << page;
    EXPECT_EQ(narrow, "before " + Narrow(page, L"after")) << page;
  }
}

TEST(CodePages, refusingAPageChangesNothing) {
  for (const std::uint32_t page : {20000u, 20105u, 4711u, 70000u, ~0u}) {
    std::wstring wide = L"kept";
    std::string narrow = "kept";
    EXPECT_FALSE(IsCodePageServed(page)) << page;
    EXPECT_FALSE(AppendWide(page, "text", wide)) << page;
    EXPECT_FALSE(AppendNarrow(page, L"text", narrow)) << page;
    EXPECT_FALSE(AppendWide(page, "", wide)) << page;
    EXPECT_EQ(wide, L"kept");
    EXPECT_EQ(narrow, "kept");
  }
}

TEST(CodePages, manyThreadsMayMeetAtTheFirstUse) {
  std::vector<std::thread> threads;
  std::vector<std::wstring> results(8);
  for (std::size_t i = 0; i < results.size(); ++i) {
    threads.emplace_back([&result = results[i]] {
      for (const std::uint32_t page : {866u, 949u, 28605u, 20880u, 51949u}) {
        AppendWide(page, "\xE0\xA4", result);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::wstring& result : results) EXPECT_EQ(result, results[0]);
}

}  // namespace
