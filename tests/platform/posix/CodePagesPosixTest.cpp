// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>

#include "shared/platform/CodePages.h"
#include "shared/text/CodePageConversion.h"
#include "shared/text/CodePageInfo.h"
#include "shared/text/GString.h"

namespace {

using namespace shr;
using shr::platform::AppendNarrow;
using shr::platform::AppendWide;

TEST(CodePagesOnPosix, serveAllOfTheCatalogueButTheUnknownTables) {
  const std::set<std::uint32_t> refused = {10001, 10002, 10003, 10004, 10005, 10008, 10010, 10021,
                                           10082, 20000, 20001, 20002, 20003, 20004, 20005, 20105};
  const CodePageInfo pages;
  for (std::size_t i = 0; i < pages.GetCount(); ++i) {
    const std::uint32_t page = pages.GetPageNumberByIndex(i);
    std::string narrow;
    std::wstring wide;
    const bool isServed = shr::platform::IsCodePageServed(page);
    EXPECT_EQ(isServed, refused.count(page) == 0) << page;
    EXPECT_EQ(AppendNarrow(page, L"Az 09", narrow), isServed) << page;
    EXPECT_EQ(AppendWide(page, narrow, wide), isServed) << page;
    EXPECT_EQ(wide, isServed ? L"Az 09" : L"") << page;
  }
}

TEST(CodePagesOnPosix, streamedPagesKeepTheirStateWithinOneConversion) {
  struct Case {
    std::uint32_t page;
    const wchar_t* text;
    std::string bytes;
  };
  const Case cases[] = {
      {54936, L"\x4E2D\xE9\U0001F600", "\xD6\xD0\xA8\xA6\x94\x39\xFC\x36"},
      {51932, L"\x3042\x5106", "\xA4\xA2\x8F\xB2\xCA"},
      {57002, L"\x0905\x0915", "\xEF\x42\xA4\xB3"},
  };
  for (const Case& row : cases) {
    std::string narrow;
    ASSERT_TRUE(AppendNarrow(row.page, row.text, narrow)) << row.page;
    std::wstring wide;
    ASSERT_TRUE(AppendWide(row.page, narrow, wide)) << row.page;
    EXPECT_EQ(wide, row.text) << row.page;
    EXPECT_EQ(narrow, row.bytes) << row.page;
  }
}

TEST(CodePagesOnPosix, streamedPagesReplaceWhatIsBad) {
  std::string narrow;
  ASSERT_TRUE(AppendNarrow(51932, L"a\xE9\U0001F600z", narrow));
  EXPECT_EQ(narrow, "a\x8F\xAB\xB1??z");
  std::wstring wide;
  ASSERT_TRUE(AppendWide(54936, "a\xFFz\x81", wide));
  EXPECT_EQ(wide, L"a?z?");
}

TEST(ActivePages, canBeSetByTheProgram) {
  const std::uint32_t before = GetDefaultCodePage();
  ASSERT_TRUE(SetDefaultCodePage(CODE_PAGE_WINDOWS_1251));
  EXPECT_EQ(GString("\xE9"), L"\u0439");
  EXPECT_EQ(GetDefaultCodePage(), CODE_PAGE_WINDOWS_1251);
  ASSERT_TRUE(SetDefaultCodePage(CODE_PAGE_UTF8));
  EXPECT_EQ(GString("\xC3\xA9"), L"\u00E9");
  EXPECT_EQ(GString(L"\u00E9").ToNarrow(CODE_PAGE_ANSI), "\xC3\xA9");
  EXPECT_FALSE(SetDefaultCodePage(CODE_PAGE_UTF16LE));
  EXPECT_EQ(GetDefaultCodePage(), CODE_PAGE_UTF8);
  ASSERT_TRUE(SetDefaultCodePage(before));
}

/// Runs once as it is and again under the environments that the build file names.
TEST(ActivePages, areThoseOfTheEnvironment) {
  const auto expected = [](const char* variable, unsigned fallback) {
    const char* text = std::getenv(variable);
    return text == nullptr ? fallback : static_cast<unsigned>(std::strtoul(text, nullptr, 10));
  };
  const std::string everyByte = [] {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
    return bytes;
  }();
  const auto wide = [&everyByte](std::uint32_t page) {
    std::wstring text;
    EXPECT_TRUE(AppendWide(page, everyByte, text));
    return text;
  };
  EXPECT_EQ(wide(0), wide(expected("EXPECTED_ACP", 1252)));
  EXPECT_EQ(wide(1), wide(expected("EXPECTED_OEMCP", 437)));
}

}  // namespace
