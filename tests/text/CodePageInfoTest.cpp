// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/CodePageInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/CodePages.h"
#include "shared/text/StringCompare.h"

namespace {

using shr::CodePageInfo;
using shr::GString;

constexpr std::size_t PAGE_COUNT = 140;

/// Opens the steps that order the list.
class Steps : public CodePageInfo {
public:
  using CodePageInfo::InitInternalList;
  using CodePageInfo::MoveCodePageToListTop;
  using CodePageInfo::SortListByNumber;
};

std::vector<std::uint32_t> NumbersOf(const CodePageInfo& pages) {
  std::vector<std::uint32_t> numbers;
  for (std::size_t i = 0; i < pages.GetCount(); ++i)
    numbers.push_back(pages.GetPageNumberByIndex(i));
  return numbers;
}

TEST(CodePageInfo, everyOrderHoldsTheSamePagesOnce) {
  const CodePageInfo byNumber(CodePageInfo::CPI_ORDER_BY_NUMBER);
  ASSERT_EQ(byNumber.GetCount(), PAGE_COUNT);
  const std::vector<std::uint32_t> numbers = NumbersOf(byNumber);
  EXPECT_EQ(std::set<std::uint32_t>(numbers.begin(), numbers.end()).size(), PAGE_COUNT);
  EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
  CodePageInfo other;
  EXPECT_NE(NumbersOf(other), numbers);
  other.SetOrder(CodePageInfo::CPI_ORDER_BY_NUMBER);
  EXPECT_EQ(NumbersOf(other), numbers);
}

TEST(CodePageInfo, tellsWhichPagesAreServed) {
  const CodePageInfo pages(CodePageInfo::CPI_ORDER_BY_NUMBER);
  for (std::size_t i = 0; i < pages.GetCount(); ++i) {
    const std::uint32_t number = pages.GetPageNumberByIndex(i);
    EXPECT_EQ(pages.IsServedByIndex(i), CodePageInfo::IsServed(number)) << number;
    std::string narrow;
    EXPECT_EQ(pages.IsServedByIndex(i), shr::platform::AppendNarrow(number, L"A", narrow))
        << number;
  }
  for (const std::uint32_t number : {0u, 1u, 437u, 932u, 1200u, 1252u, 20127u, 65001u}) {
    EXPECT_TRUE(CodePageInfo::IsServed(number)) << number;
  }
  EXPECT_FALSE(CodePageInfo::IsServed(4711) || CodePageInfo::IsServed(70000));
  EXPECT_THROW(pages.IsServedByIndex(PAGE_COUNT), shr::Exception);
}

TEST(CodePageInfo, commonPagesComeFirstAndTheRestByName) {
  const CodePageInfo byName(CodePageInfo::CPI_ORDER_BY_NAME);
  for (std::size_t i = 1; i < byName.GetCount(); ++i) {
    EXPECT_TRUE(shr::StringLess()(byName.GetNameByIndex(i - 1).String(),
                                  byName.GetNameByIndex(i).String()));
  }
  const CodePageInfo common;
  const std::vector<std::uint32_t> head = {0, 1, 65001, 864};
  EXPECT_TRUE(std::equal(head.begin(), head.end(), NumbersOf(common).begin()));
  std::vector<std::uint32_t> rest = NumbersOf(byName);
  std::erase_if(rest, [](std::uint32_t number) { return number <= 1 || number == 65001; });
  const std::vector<std::uint32_t> all = NumbersOf(common);
  EXPECT_EQ(std::vector<std::uint32_t>(all.begin() + 3, all.end()), rest);
}

TEST(CodePageInfo, keepsTheNamesAndNumbersOfStoredDocuments) {
  const std::pair<std::uint32_t, const wchar_t*> rows[] = {
      {0, L"Machine Local (Windows)"},
      {1, L"Machine Local (DOS)"},
      {708, L"Arabic (ASMO 708)"},
      {1201, L"Unicode (Mac)"},
      {20105, L"Western European (IAS)"},
      {20107, L"Swedish (IAS)"},
      {29593, L"Latin 3 (ISO)"},
      {29595, L"Cyrillic (ISO)"},
      {50222, L"Japanese (JUS-1 byte Kana)"},
      {57011, L"ISCII Punjabi"},
      {65001, L"UTF-8"},
  };
  const CodePageInfo pages;
  for (const auto& [number, name] : rows) {
    std::size_t index = 999;
    ASSERT_TRUE(pages.GetIndexFromPageNumber(number, index)) << number;
    EXPECT_EQ(pages.GetNameByIndex(index), name);
    EXPECT_EQ(pages.GetPageNumberByIndex(index), number);
    std::size_t indexOfName = 999;
    EXPECT_TRUE(pages.GetIndexFromName(pages.GetNameByIndex(index).ToUpper(), indexOfName));
    EXPECT_EQ(indexOfName, index) << number;
  }
}

TEST(CodePageInfo, searchesSetTheIndexToZeroWhenNothingIsFound) {
  const CodePageInfo pages;
  std::size_t index = 999;
  EXPECT_FALSE(pages.GetIndexFromPageNumber(28593, index));
  EXPECT_EQ(index, 0u);
  index = 999;
  EXPECT_FALSE(pages.GetIndexFromName(GString(L"UTF-9"), index));
  EXPECT_EQ(index, 0u);
}

TEST(CodePageInfo, ownOrderPutsTheUnicodePagesAmongTheEbcdicOnes) {
  Steps pages;
  pages.InitInternalList();
  const std::vector<std::uint32_t> numbers = NumbersOf(pages);
  const auto place = [&numbers](std::uint32_t number) {
    return std::find(numbers.begin(), numbers.end(), number) - numbers.begin();
  };
  EXPECT_EQ(place(1200), place(1149) + 1);
  EXPECT_EQ(place(1201), place(1200) + 1);
  EXPECT_GT(place(1141), place(1201));
  EXPECT_GT(place(1147), place(1201));
  EXPECT_EQ(place(29593), place(28592) + 1);
  EXPECT_EQ(place(29595), place(28594) + 1);
}

TEST(CodePageInfo, movingAPageToTheTopKeepsTheOrderOfTheRest) {
  Steps pages;
  pages.SortListByNumber();
  std::vector<std::uint32_t> expected = NumbersOf(pages);
  std::erase(expected, 1252u);
  expected.insert(expected.begin(), 1252);
  pages.MoveCodePageToListTop(1252);
  EXPECT_EQ(NumbersOf(pages), expected);
  EXPECT_THROW(pages.MoveCodePageToListTop(4711), shr::InternalErrorException);
  EXPECT_EQ(NumbersOf(pages), expected);
}

TEST(CodePageInfo, refusesWhatIsOutOfRange) {
  CodePageInfo pages;
  std::size_t index = 0;
  const auto expectRefused = [](const auto& call) {
    try {
      call();
      FAIL() << "nothing was thrown";
    } catch (const shr::Exception& error) {
      EXPECT_EQ(error.GetDescription(), shr::INVALID_PARAMETER_TEXT);
      EXPECT_EQ(error.GetSrcFile(), L"CodePageInfo");
    }
  };
  expectRefused([&] { (void)pages.GetNameByIndex(PAGE_COUNT); });
  expectRefused([&] { (void)pages.GetPageNumberByIndex(PAGE_COUNT); });
  expectRefused([&] { (void)pages.GetIndexFromPageNumber(65536, index); });
  expectRefused([&] { pages.SetOrder(static_cast<CodePageInfo::CPIOrder>(3)); });
  expectRefused([&] { pages.SetOrder(static_cast<CodePageInfo::CPIOrder>(-1)); });
  EXPECT_FALSE(pages.GetIndexFromPageNumber(65535, index));
}

TEST(DbfLanguage, bytesAndPagesMapAsDbaseFilesHaveThem) {
  const std::pair<int, int> pageOfByte[] = {{0, 0},     {1, 437},   {0x57, 1252}, {88, 1252},
                                            {100, 852}, {108, 863}, {204, 1257},  {205, 0},
                                            {5, 0},     {255, 0}};
  for (const auto& [byte, page] : pageOfByte) {
    EXPECT_EQ(shr::MapDBFLangIDtoCodePage(static_cast<unsigned char>(byte)), page) << byte;
  }
  const std::pair<int, int> byteOfPage[] = {{1252, 3},    {852, 31},  {863, 28}, {865, 8}, {437, 1},
                                            {10029, 151}, {65001, 0}, {0, 0},    {-1, 0}};
  for (const auto& [page, byte] : byteOfPage) {
    EXPECT_EQ(shr::MapCodePageToDBFLangID(page), byte) << page;
  }
}

TEST(DbfLanguage, chosenBytesLeadBackToTheirPage) {
  int bytes = 0;
  std::map<int, int> pages;
  for (int byte = 0; byte < 256; ++byte) {
    const int page = shr::MapDBFLangIDtoCodePage(static_cast<unsigned char>(byte));
    bytes += page != 0;
    if (page != 0) ++pages[page];
  }
  EXPECT_EQ(bytes, 63);
  EXPECT_EQ(pages.size(), 25u);
  for (const auto& [page, count] : pages) {
    const unsigned char byte = shr::MapCodePageToDBFLangID(page);
    EXPECT_EQ(shr::MapDBFLangIDtoCodePage(byte), page) << count << " bytes";
  }
}

}  // namespace
