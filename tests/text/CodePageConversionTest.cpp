// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/CodePageConversion.h"

#include <gtest/gtest.h>

#include <string>

#include "shared/text/GString.h"

namespace {

using shr::AtoW;
using shr::AtoWV;
using shr::WtoA;
using shr::WtoAArray;

constexpr std::uint32_t UNKNOWN_PAGE = 4711;

TEST(CodePageConversion, convertsTerminatedTextBothWays) {
  struct Case {
    const char* name;
    std::uint32_t page;
    const char* narrow;
    const wchar_t* wide;
  };
  const Case cases[] = {
      {"active ANSI page", 0, "caf\xE9", L"caf\x00E9"},
      {"OEM page", 1, "caf\x82", L"caf\x00E9"},
      {"Western European", 1252, "\x80 \x96", L"\x20AC \x2013"},
      {"Japanese", 932, "\x93\xFA\x96{", L"\x65E5\x672C"},
      {"EBCDIC", 37, "\xC1\x81\xF0", L"Aa0"},
      {"UTF-8", 65001, "\xE4\xB8\xAD\xF0\x9F\x98\x80", L"\x4E2D\U0001F600"},
      {"empty", 1252, "", L""},
  };
  for (const Case& row : cases) {
    EXPECT_STREQ(AtoW(row.narrow, row.page), row.wide) << row.name;
    EXPECT_STREQ(AtoW(std::string(row.narrow), row.page), row.wide) << row.name;
    EXPECT_STREQ(WtoA(row.wide, row.page), row.narrow) << row.name;
  }
}

TEST(CodePageConversion, takesTextObjects) {
  const std::wstring text(L"\x00E9\0b", 3);
  const WtoA converted(shr::GString(text), shr::CODE_PAGE_UTF8);
  EXPECT_EQ(std::string(converted, 4), std::string("\xC3\xA9\0b", 4));
  EXPECT_STREQ(WtoA(text, shr::CODE_PAGE_WINDOWS_1252), "\xE9");
  EXPECT_STREQ(WtoA(std::wstring_view(text).substr(0, 1), 0), "\xE9");
}

TEST(CodePageConversion, theDefaultPageIsOneThatCanBeConverted) {
  const std::uint32_t page = shr::GetDefaultCodePage();
  EXPECT_NE(page, shr::CODE_PAGE_ANSI);
  EXPECT_TRUE(shr::SetDefaultCodePage(page));
  for (const std::uint32_t other : {shr::CODE_PAGE_ANSI, shr::CODE_PAGE_OEM, shr::CODE_PAGE_UTF7,
                                    shr::CODE_PAGE_UTF16LE, shr::CODE_PAGE_UTF16BE, UNKNOWN_PAGE}) {
    EXPECT_FALSE(shr::SetDefaultCodePage(other)) << other;
  }
  EXPECT_EQ(shr::GetDefaultCodePage(), page);
}

TEST(CodePageConversion, nullStaysNull) {
  EXPECT_EQ(static_cast<const wchar_t*>(AtoW(nullptr, 0)), nullptr);
  EXPECT_EQ(static_cast<const char*>(WtoA(nullptr, 0)), nullptr);
  const char* noFormat = nullptr;
  EXPECT_EQ(static_cast<const wchar_t*>(AtoWV(noFormat)), nullptr);
}

TEST(CodePageConversion, anUnknownPageGivesTheEmptyText) {
  EXPECT_STREQ(AtoW("text", UNKNOWN_PAGE), L"");
  EXPECT_STREQ(WtoA(L"text", UNKNOWN_PAGE), "");
}

TEST(CodePageConversion, formatsNarrowTextAndReadsItInTheActivePage) {
  EXPECT_STREQ(AtoWV("%s: %d%%", "\xE9t\xE9", 42), L"\x00E9t\x00E9: 42%");
  EXPECT_STREQ(AtoWV("%s", std::string(8191, 'x').c_str()), std::wstring(8191, L'x').c_str());
  EXPECT_STREQ(AtoWV("%s", std::string(8192, 'x').c_str()), L"");
}

TEST(CodePageConversion, theArrayCanBeFilledAgain) {
  WtoAArray array;
  EXPECT_STREQ(array.c_str(), "");
  array.SetArray(L"\x00E9t\x00E9, a longer text than before");
  EXPECT_STREQ(array.c_str(), "\xE9t\xE9, a longer text than before");
  array.SetArray(L"\x4E2D");
  EXPECT_STREQ(array.c_str(), "?");
  array.SetArray(nullptr);
  EXPECT_STREQ(array.c_str(), "");
}

}  // namespace
