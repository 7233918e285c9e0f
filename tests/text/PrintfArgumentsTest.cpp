// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: text objects of every kind through every printf-like function, beside plain arguments of
// every promotion (bit-fields, scoped enumerations, arrays, null); objects where the format takes
// none or one of the other width, and formats that ask for more; the C entries as function
// pointers. That objects of other classes do not compile is shown in
// tests/compile/text/PrintfArguments.cpp.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/Logger.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/files/BufferedFile.h"
#include "shared/text/CodePageConversion.h"
#include "shared/text/GString.h"
#include "shared/text/StringUtility.h"

namespace shr {
namespace {

using namespace std::string_view_literals;

const GString TEXT(L"t\u00E9");
const std::wstring STRING = L"s";
const std::wstring_view VIEW = L"vw"sv.substr(0, 1);
const std::string NARROW = "n\xE9";
const std::string_view NARROW_VIEW = "mn"sv.substr(0, 1);

template <class Call>
std::wstring DescriptionOf(Call call) {
  try {
    call();
  } catch (const Exception& error) {
    return error.GetDescription();
  }
  return L"nothing was thrown";
}

TEST(PrintfArguments, takeTextObjectsInEveryFormatFunction) {
  GString text;
  EXPECT_TRUE(text.FormatString(L"%s %s %ls %d %hs %S", TEXT, STRING, VIEW, 7, NARROW, NARROW));
  EXPECT_EQ(text, L"t\u00E9 s v 7 n\u00E9 n\u00E9");
  EXPECT_TRUE(text.FormatString("%s%hs", TEXT, NARROW_VIEW));
  EXPECT_TRUE(text.AppendFormatString(L"|%3s|%-3s|%.1s", VIEW, STRING, TEXT));
  EXPECT_TRUE(text.AppendFormatString("|%*s", 3, GString(L"x")));
  EXPECT_EQ(text, L"t\u00E9m|  v|s  |t|  x");
  EXPECT_TRUE(text.FormatString(L"<%s>", text));
  EXPECT_EQ(text, L"<t\u00E9m|  v|s  |t|  x>");

  std::wstring wide;
  EXPECT_TRUE(FormatString(wide, L"%s", TEXT) && AppendFormatString(wide, L"%ws%hs", VIEW, NARROW));
  EXPECT_EQ(wide, L"t\u00E9vn\u00E9");
  std::string narrow;
  EXPECT_TRUE(FormatString(narrow, "%s", NARROW) &&
              AppendFormatString(narrow, "%ls%S", TEXT, VIEW));
  EXPECT_EQ(narrow, "n\xE9t\xE9v");
  EXPECT_TRUE(FormatString(narrow, "%s", "plain") && FormatString(wide, L"%d", 1));

  EXPECT_STREQ(AtoWV("%s %ls", NARROW, TEXT), L"n\u00E9 t\u00E9");
  EXPECT_STREQ(AtoWV("%d", TEXT), L"");
}

TEST(PrintfArguments, takeTextObjectsInErrorsLogsAndFiles) {
  EXPECT_EQ(DescriptionOf([] { ThrowErrorImpl(L"Unit", 1, L"%s: %d", TEXT, 2); }), L"t\u00E9: 2");
  EXPECT_EQ(DescriptionOf([] { ThrowErrorImpl(L"Unit", 1, L"%d", TEXT); }), L"%d");
  EXPECT_EQ(DescriptionOf([] { ThrowSharedError(L"M", L"Unit", 1, L"%s%s", VIEW, STRING); }),
            L"vs");
  EXPECT_EQ(DescriptionOf([] { ThrowSharedError(L"M", L"Unit", 1, L"%s%s", VIEW); }), L"%s%s");

  CLogger logger;
  logger.SendVA(LogInfo, L"%s %hs %d", TEXT, NARROW, 3);
  logger.SendVA(LogInfo, L"%d", TEXT);
  logger.SetType(LogError);
  logger.SendVA(LogInfo, L"%s", TEXT);
  EXPECT_EQ(logger.GetBuffer(), L"t\u00E9 n\u00E9 3\n%d\n");
  CRemoteLogger remote(L"127.0.0.1", 9, 100);
  EXPECT_TRUE(remote.SendVA(L"%s", TEXT));
  EXPECT_FALSE(remote.SendVA(L"%d", TEXT));

  CBufferedFile file;
  file.Open();
  EXPECT_EQ(file.Printf("%s %ls\n", NARROW, TEXT), 6);
  EXPECT_EQ(DescriptionOf([&file] { file.Printf("%s", TEXT); }), INVALID_PARAMETER_TEXT);
  file.Rewind();
  std::string line;
  EXPECT_TRUE(file.ReadString(line));
  EXPECT_EQ(line, "n\xE9 t\xE9");
}

enum class Small : signed char { Minus = -3 };
enum class Large : std::uint64_t { Top = 0xFFFFFFFFFFFFFFFF };
enum Old { OLD = 5 };

struct Bits {
  unsigned three : 3;
  long long wide : 40;
};

TEST(PrintfArguments, leavePlainArgumentsAsTheyAre) {
  const Bits bits{5, -7};
  const volatile short small = -2;
  wchar_t buffer[] = L"array";
  const wchar_t* const none = nullptr;
  const auto write = [&](const auto&... last) {
    GString text;
    text.FormatString(L"%u %lld %d %s %s %d %c %g %lu%s", bits.three,
                      static_cast<long long>(bits.wide), small, buffer, none, OLD, L'c', 0.5f, 1ul,
                      last...);
    return text;
  };
  const GString expected = L"5 -7 -2 array (null) 5 c 0.5 1";
  EXPECT_EQ(write(L"!"), expected + L"!");
  EXPECT_EQ(write(GString(L"!")), expected + L"!");
  GString text;
  EXPECT_TRUE(text.FormatString(L"%u %s", bits.three, TEXT)) << "a bit-field beside an object";
  EXPECT_TRUE(text.FormatString(L"%d %llu", Small::Minus, Large::Top));
  EXPECT_EQ(text, L"-3 18446744073709551615");
  EXPECT_TRUE(text.FormatString(L"%p %s", nullptr, TEXT));
  EXPECT_EQ(text, L"0000000000000000 t\u00E9");
  EXPECT_TRUE(text.FormatString(L"%d%% %s %hs", 5, std::wstring_view(), std::string_view()));
  EXPECT_EQ(text, L"5%  ");
  bool (GString::*const entry)(const wchar_t*, ...) = &GString::FormatString;
  EXPECT_TRUE((text.*entry)(L"%d", 9));
  bool (*const freeEntry)(std::string&, const char*, ...) = &FormatString;
  std::string narrow;
  EXPECT_TRUE(freeEntry(narrow, "%d", 8));
  EXPECT_EQ(text + narrow, L"98");
}

TEST(PrintfArguments, areRefusedWhereTheFormatTakesNoSuchText) {
  const struct {
    const char* name;
    bool (*format)(GString& text);
  } rows[] = {
      {"text for a number", [](GString& text) { return text.FormatString(L"%d", TEXT); }},
      {"text for a long", [](GString& text) { return text.FormatString(L"%I64d", TEXT); }},
      {"text for a character", [](GString& text) { return text.FormatString(L"%c", TEXT); }},
      {"text for a pointer", [](GString& text) { return text.FormatString(L"%p", TEXT); }},
      {"text for a width", [](GString& text) { return text.FormatString(L"%*d", TEXT, 1); }},
      {"text for a precision", [](GString& text) { return text.FormatString(L"%.*s", TEXT, L""); }},
      {"narrow for wide", [](GString& text) { return text.FormatString(L"%s", NARROW); }},
      {"narrow for long", [](GString& text) { return text.FormatString(L"%ls", NARROW); }},
      {"wide for narrow", [](GString& text) { return text.FormatString(L"%hs", TEXT); }},
      {"wide for S", [](GString& text) { return text.FormatString(L"%S", TEXT); }},
      {"narrow in a narrow format", [](GString& text) { return text.FormatString("%s", NARROW); }},
      {"missing argument", [](GString& text) { return text.FormatString(L"%s%s", TEXT); }},
      {"missing behind a width",
       [](GString& text) { return text.FormatString(L"%s%*d", TEXT, 2); }},
      {"malformed format", [](GString& text) { return text.FormatString(L"%s%", TEXT); }},
      {"appending", [](GString& text) { return text.AppendFormatString(L"%d", VIEW); }},
      {"appending narrow", [](GString& text) { return text.AppendFormatString("%d", VIEW); }},
      {"free function", [](GString& text) { return FormatString(text, L"%d", STRING); }},
      {"free appending", [](GString& text) { return AppendFormatString(text, L"%hs", STRING); }},
  };
  for (const auto& row : rows) {
    GString text(L"old");
    EXPECT_FALSE(row.format(text)) << row.name;
    EXPECT_EQ(text, L"old") << row.name;
  }
  std::string narrow = "old";
  EXPECT_FALSE(FormatString(narrow, "%s", TEXT) || AppendFormatString(narrow, "%ls", NARROW));
  EXPECT_EQ(narrow, "old");
}

}  // namespace
}  // namespace shr
