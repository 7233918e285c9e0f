// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/CodePageInfo.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/CodePages.h"
#include "shared/text/StringCompare.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"CodePageInfo";

constexpr std::uint32_t LAST_PAGE_NUMBER = 65535;

struct CatalogueRow {
  std::uint32_t number;
  const wchar_t* name;
};

/// The pages in the order of the list before any sort. 29593 and 29595 are the numbers under which
/// the applications store the ISO pages 3 and 5; numbers and spellings are kept as stored documents
/// have them.
constexpr CatalogueRow CATALOGUE[] = {
    {0, L"Machine Local (Windows)"},
    {1, L"Machine Local (DOS)"},
    {37, L"IBM EBCDIC (US-Canada)"},
    {437, L"OEM United States"},
    {500, L"IBM EBCDIC (International)"},
    {708, L"Arabic (ASMO 708)"},
    {720, L"Arabic (DOS)"},
    {737, L"Greek (DOS)"},
    {775, L"Baltic (DOS)"},
    {819, L"IBM AS/400 Latin-1"},
    {850, L"Western European (DOS)"},
    {852, L"Central European (DOS)"},
    {855, L"OEM Cyrillic"},
    {857, L"Turkish (DOS)"},
    {858, L"OEM Multilingual Latin I"},
    {860, L"Portuguese (DOS)"},
    {861, L"Icelandic (DOS)"},
    {862, L"Hebrew (DOS)"},
    {863, L"French Canadian (DOS)"},
    {864, L"Arabic (864)"},
    {865, L"Nordic (DOS)"},
    {866, L"Cyrillic (DOS)"},
    {869, L"Greek, Modern (DOS)"},
    {870, L"IBM EBCDIC (Multilingual Latin-2)"},
    {874, L"Thai (Windows)"},
    {875, L"IBM EBCDIC (Greek Modern)"},
    {932, L"Japanese (Shift-JIS)"},
    {936, L"Chinese Simplified (GB2312)"},
    {949, L"Korean"},
    {950, L"Chinese Traditional (Big5)"},
    {1026, L"IBM EBCDIC (Turkish Latin-5)"},
    {1047, L"IBM Latin-1"},
    {1140, L"IBM EBCDIC (US-Canada-Euro)"},
    {1142, L"IBM EBCDIC (Denmark-Norway-Euro)"},
    {1143, L"IBM EBCDIC (Finland-Sweden-Euro)"},
    {1144, L"IBM EBCDIC (Italy-Euro)"},
    {1145, L"IBM EBCDIC (Spain-Euro)"},
    {1146, L"IBM EBCDIC (UK-Euro)"},
    {1148, L"IBM EBCDIC (International-Euro)"},
    {1149, L"IBM EBCDIC (Icelandic-Euro)"},
    {1200, L"Unicode (Windows)"},
    {1201, L"Unicode (Mac)"},
    {1141, L"IBM EBCDIC (Germany-Euro)"},
    {1147, L"IBM EBCDIC (France-Euro)"},
    {1250, L"Central European (Windows)"},
    {1251, L"Cyrillic (Windows)"},
    {1252, L"Western European (Windows)"},
    {1253, L"Greek (Windows)"},
    {1254, L"Turkish (Windows)"},
    {1255, L"Hebrew (Windows)"},
    {1256, L"Arabic (Windows)"},
    {1257, L"Baltic (Windows)"},
    {1258, L"Vietnamese (Windows)"},
    {1361, L"Korean (Johab)"},
    {10000, L"Western European (Mac)"},
    {10001, L"Japanese (Mac)"},
    {10002, L"Chinese Traditional (Mac)"},
    {10003, L"Korean (Mac)"},
    {10004, L"Arabic (Mac)"},
    {10005, L"Hebrew (Mac)"},
    {10006, L"Greek (Mac)"},
    {10007, L"Cyrillic (Mac)"},
    {10008, L"Chinese Simplified (Mac)"},
    {10010, L"Romanian (Mac)"},
    {10017, L"Ukrainian (Mac)"},
    {10021, L"Thai (Mac)"},
    {10029, L"Central European (Mac)"},
    {10079, L"Icelandic (Mac)"},
    {10081, L"Turkish (Mac)"},
    {10082, L"Croatian (Mac)"},
    {20000, L"Chinese Traditional (CNS)"},
    {20001, L"TCA Taiwan"},
    {20002, L"Chinese Traditional (Eten)"},
    {20003, L"IBM5550 Taiwan"},
    {20004, L"TeleText Taiwan"},
    {20005, L"Wang Taiwan"},
    {20105, L"Western European (IAS)"},
    {20106, L"German (IA5)"},
    {20107, L"Swedish (IAS)"},
    {20108, L"Norwegian (IAS)"},
    {20127, L"US-ASCII"},
    {20261, L"T.61"},
    {20269, L"ISO-6937"},
    {20273, L"IBM EBCDIC (Germany)"},
    {20277, L"IBM EBCDIC (Denmark-Norway)"},
    {20278, L"IBM EBCDIC (Finland-Sweden)"},
    {20280, L"IBM EBCDIC (Italy)"},
    {20284, L"IBM EBCDIC (Spain)"},
    {20285, L"IBM EBCDIC (UK)"},
    {20290, L"IBM EBCDIC (Japanese katakana)"},
    {20297, L"IBM EBCDIC (France)"},
    {20420, L"IBM EBCDIC (Arabic)"},
    {20423, L"IBM EBCDIC (Greek)"},
    {20424, L"IBM EBCDIC (Hebrew)"},
    {20833, L"IBM EBCDIC (Korean Extended)"},
    {20838, L"IBM EBCDIC (Thai)"},
    {20866, L"Cyrillic (KOI8-R)"},
    {20871, L"IBM EBCDIC (Icelandic)"},
    {20880, L"IBM EBCDIC (Cyrillic Russian)"},
    {20905, L"IBM EBCDIC (Turkish)"},
    {20924, L"IBM Latin-9"},
    {20932, L"Japanese (JIS 0208,0212-1990)"},
    {20936, L"Chinese Simplified (GB2312-80)"},
    {20949, L"Korean Wansung"},
    {21025, L"IBM EBCDIC (Cyrillic Serbian-Bulgarian)"},
    {21866, L"Cyrillic (KOI8-U)"},
    {28591, L"Western European (ISO)"},
    {28592, L"Central European (ISO)"},
    {29593, L"Latin 3 (ISO)"},
    {28594, L"Baltic (ISO)"},
    {29595, L"Cyrillic (ISO)"},
    {28596, L"Arabic (ISO)"},
    {28597, L"Greek (ISO)"},
    {28598, L"Hebrew (ISO-Logical)"},
    {28599, L"Turkish (ISO)"},
    {28600, L"Nordic (ISO)"},
    {28603, L"Lithuanian (ISO)"},
    {28605, L"Latin 9 (ISO)"},
    {50220, L"Japanese (JIS)"},
    {50221, L"Japanese (JIS-1 byte Kana)"},
    {50222, L"Japanese (JUS-1 byte Kana)"},
    {50225, L"Korean (ISO)"},
    {50227, L"Chinese Simplified (ISO-2022)"},
    {51932, L"Japanese (EUC)"},
    {51936, L"Chinese Simplified (EUC)"},
    {51949, L"Korean (EUC)"},
    {52936, L"Chinese Simplified (HZ)"},
    {54936, L"Chinese Simplified (GB18030)"},
    {57002, L"ISCII Devanagari"},
    {57003, L"ISCII Bengali"},
    {57004, L"ISCII Tamil"},
    {57005, L"ISCII Telugu"},
    {57006, L"ISCII Assamese"},
    {57007, L"ISCII Oriya"},
    {57008, L"ISCII Kannada"},
    {57009, L"ISCII Malayalam"},
    {57010, L"ISCII Gujarati"},
    {57011, L"ISCII Punjabi"},
    {65000, L"UTF-7"},
    {65001, L"UTF-8"},
};

/// Ascending by byte.
constexpr std::pair<unsigned char, int> PAGE_OF_LANGUAGE[] = {
    {1, 437},     {2, 850},     {3, 1252},   {4, 10000},  {8, 865},    {9, 437},    {10, 850},
    {11, 437},    {13, 437},    {14, 850},   {15, 437},   {16, 850},   {17, 437},   {18, 850},
    {19, 932},    {20, 850},    {21, 437},   {22, 850},   {23, 865},   {24, 437},   {25, 437},
    {26, 850},    {27, 437},    {28, 863},   {29, 850},   {31, 852},   {34, 852},   {35, 852},
    {36, 860},    {37, 850},    {38, 866},   {55, 850},   {64, 852},   {77, 936},   {78, 949},
    {79, 950},    {80, 874},    {87, 1252},  {88, 1252},  {89, 1252},  {100, 852},  {101, 866},
    {102, 865},   {103, 861},   {106, 737},  {107, 857},  {108, 863},  {120, 950},  {121, 949},
    {122, 936},   {123, 932},   {124, 874},  {134, 737},  {135, 852},  {136, 857},  {150, 10007},
    {151, 10029}, {152, 10006}, {200, 1250}, {201, 1251}, {202, 1254}, {203, 1253}, {204, 1257},
};

/// Ascending by page.
constexpr std::pair<int, unsigned char> LANGUAGE_OF_PAGE[] = {
    {437, 1},   {737, 106},   {850, 2},     {852, 31},    {857, 107},  {860, 36},   {861, 103},
    {863, 28},  {865, 8},     {866, 38},    {874, 80},    {932, 19},   {936, 77},   {949, 78},
    {950, 79},  {1250, 200},  {1251, 201},  {1252, 3},    {1253, 203}, {1254, 202}, {1257, 204},
    {10000, 4}, {10006, 152}, {10007, 150}, {10029, 151},
};

/// Returns the value of `key` in a map that is ascending by key, 0 when it has none.
template <typename Key, typename Value, std::size_t Size>
Value Look(const std::pair<Key, Value> (&map)[Size], Key key) {
  const auto* found = std::lower_bound(
      std::begin(map), std::end(map), key,
      [](const std::pair<Key, Value>& row, Key wanted) { return row.first < wanted; });
  return found != std::end(map) && found->first == key ? found->second : Value();
}

}  // namespace

CodePageInfo::CodePageInfo(CPIOrder order) {
  InitInternalList();
  SetOrder(order);
}

void CodePageInfo::SetOrder(CPIOrder order) {
  switch (order) {
    case CPI_ORDER_BY_NUMBER:
      SortListByNumber();
      return;
    case CPI_ORDER_BY_NAME:
      SortListByName();
      return;
    case CPI_ORDER_COMMON_FIRST:
      SortListByName();
      for (const std::uint32_t number : {65001u, 1u, 0u}) MoveCodePageToListTop(number);
      return;
  }
  ThrowErrorImpl(UNIT, __LINE__, INVALID_PARAMETER_TEXT);
}

GString CodePageInfo::GetNameByIndex(std::size_t index) const {
  return EntryAt(index).name;
}

std::uint32_t CodePageInfo::GetPageNumberByIndex(std::size_t index) const {
  return EntryAt(index).number;
}

bool CodePageInfo::IsServed(std::uint32_t number) {
  return platform::IsCodePageServed(number);
}

bool CodePageInfo::IsServedByIndex(std::size_t index) const {
  return IsServed(EntryAt(index).number);
}

bool CodePageInfo::GetIndexFromPageNumber(std::uint32_t number, std::size_t& index) const {
  if (number > LAST_PAGE_NUMBER) ThrowErrorImpl(UNIT, __LINE__, INVALID_PARAMETER_TEXT);
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [number](const Entry& entry) { return entry.number == number; });
  const bool isThere = found != entries_.end();
  index = isThere ? static_cast<std::size_t>(found - entries_.begin()) : 0;
  return isThere;
}

bool CodePageInfo::GetIndexFromName(const GString& name, std::size_t& index) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [&name](const Entry& entry) {
    return CompareNoCase(std::wstring_view(entry.name), std::wstring_view(name)) == 0;
  });
  const bool isThere = found != entries_.end();
  index = isThere ? static_cast<std::size_t>(found - entries_.begin()) : 0;
  return isThere;
}

void CodePageInfo::InitInternalList() {
  entries_.clear();
  entries_.reserve(std::size(CATALOGUE));
  for (const CatalogueRow& row : CATALOGUE) entries_.push_back({row.number, row.name});
}

void CodePageInfo::MoveCodePageToListTop(std::uint32_t number) {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [number](const Entry& entry) { return entry.number == number; });
  if (found == entries_.end()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  std::rotate(entries_.begin(), found, found + 1);
}

void CodePageInfo::SortListByNumber() {
  std::sort(entries_.begin(), entries_.end(),
            [](const Entry& a, const Entry& b) { return a.number < b.number; });
}

void CodePageInfo::SortListByName() {
  std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
    return CompareNoCase(std::wstring_view(a.name), std::wstring_view(b.name)) < 0;
  });
}

const CodePageInfo::Entry& CodePageInfo::EntryAt(std::size_t index) const {
  if (index >= entries_.size()) ThrowErrorImpl(UNIT, __LINE__, INVALID_PARAMETER_TEXT);
  return entries_[index];
}

int MapDBFLangIDtoCodePage(unsigned char langId) {
  return Look(PAGE_OF_LANGUAGE, langId);
}

unsigned char MapCodePageToDBFLangID(int codePage) {
  return Look(LANGUAGE_OF_PAGE, codePage);
}

}  // namespace shr
