// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: construction from every kind of text (wide, narrow, ranges, moved) x what is kept; single
// bytes from the ANSI page; narrow output per page; editing through to the standard string;
// formatting limits around 8,192 units and unchanged text on failure; keys of ordered and hashed
// containers; both kinds of streams.

#include "shared/text/GString.h"

#include <gtest/gtest.h>

#include <list>
#include <map>
#include <sstream>
#include <stdexcept>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace shr {
namespace {

constexpr std::uint32_t UTF8 = 65001;
constexpr std::uint32_t LATIN1 = 1252;

static_assert(sizeof(GString) == sizeof(std::wstring), "the wide string is the only data member");
static_assert(!std::is_polymorphic_v<GString>);
static_assert(std::is_nothrow_move_constructible_v<GString>);
static_assert(std::is_nothrow_move_assignable_v<GString>);
static_assert(!std::is_constructible_v<GString, std::nullptr_t>);

TEST(GString, isBuiltFromEveryKindOfText) {
  const std::wstring wide = L"abc";
  const std::list<wchar_t> units = {L'a', L'b', L'c'};
  const std::string_view bytes = "abc";
  const struct {
    const char* name;
    GString text;
  } rows[] = {
      {"wide literal", GString(L"abc")},
      {"wide string", GString(wide)},
      {"moved wide string", GString(std::wstring(wide))},
      {"wide view", GString(std::wstring_view(L"abcdef", 3))},
      {"counted wide text", GString(L"abcdef", 3)},
      {"narrow literal", GString("abc")},
      {"narrow string", GString(std::string("abc"))},
      {"initializer list", GString({L'a', L'b', L'c'})},
      {"range of a list", GString(units.begin(), units.end())},
      {"range of bytes", GString(bytes.begin(), bytes.end())},
  };
  for (const auto& row : rows) EXPECT_EQ(row.text, wide) << row.name;
  EXPECT_EQ(GString(4, L'x'), L"xxxx");
  EXPECT_TRUE(GString().empty());
}

TEST(GString, keepsEmbeddedZeroUnitsOfCountedText) {
  const std::wstring wide(L"a\0b", 3);
  EXPECT_EQ(GString(wide).size(), 3u);
  EXPECT_EQ(GString(std::string("a\0b", 3)).String(), wide);
  EXPECT_EQ(GString(wide).ToNarrow(UTF8), std::string("a\0b", 3));
}

TEST(GString, movesTakeTheBufferOver) {
  std::wstring wide(100, L'm');
  const wchar_t* const buffer = wide.data();
  GString text(std::move(wide));
  EXPECT_EQ(text.data(), buffer);
  GString other;
  other = std::move(text);
  EXPECT_EQ(other.data(), buffer);
  std::wstring more(200, L'n');
  const wchar_t* const moreBuffer = more.data();
  other = std::move(more);
  EXPECT_EQ(other.data(), moreBuffer);
  const GString copy(other);
  EXPECT_NE(copy.data(), other.data());
  EXPECT_EQ(copy, other);
}

TEST(GString, readsSingleBytesInTheAnsiPage) {
  GString text;
  text = '\xE9';
  EXPECT_EQ(text, L"\u00E9");
  EXPECT_EQ(text.ToNarrow(UTF8), "\xC3\xA9");
  text += '\x80';
  EXPECT_EQ(text, L"\u00E9\u20AC");
  EXPECT_EQ(GString("\xE9\x80"), text);
  EXPECT_EQ(text.ToNarrow(LATIN1), "\xE9\x80");
}

TEST(GString, convertsBetweenPages) {
  GString text;
  text.FromNarrow("\xC3\xA9\xE4\xB8\xAD", UTF8);
  EXPECT_EQ(text, L"\u00E9\u4E2D");
  EXPECT_EQ(text.ToNarrow(UTF8), "\xC3\xA9\xE4\xB8\xAD");
  EXPECT_EQ(text.ToNarrow(LATIN1), "\xE9?");
  text.FromNarrow(std::string_view("a\0b", 3), LATIN1);
  EXPECT_EQ(text.size(), 3u);
  text.FromWide(L"w", 12345);
  EXPECT_EQ(text, L"w");
  EXPECT_EQ(&text.ToWide(LATIN1), &text.ToWide(UTF8));
  EXPECT_EQ(&text.ToWide(0), &text.String());
}

TEST(GString, diagnosticsTextIsAscii) {
  EXPECT_EQ(GString(L"a\u4E2D").WtoAForDiagnostics(), "a\\U+4E2D");
  EXPECT_EQ(GString(L"\u007F\u0080\u00E9").WtoAForDiagnostics(), "\x7F\\U+0080\\U+00E9");
  EXPECT_EQ(GString().WtoAForDiagnostics(), "");
}

TEST(GString, editsLikeTheStandardString) {
  GString text(L"abc");
  text += L"def";
  text += L'g';
  text.append(L"hij").append(L"klmno", 2).append(2, L'!');
  EXPECT_EQ(text, L"abcdefghijkl!!");
  text.erase(3, 7);
  EXPECT_EQ(text, L"abckl!!");
  text.erase(text.cbegin());
  text.erase(text.cbegin(), text.cbegin() + 2);
  EXPECT_EQ(text, L"kl!!");
  EXPECT_EQ(text.find(L'!', 0), 2u);
  EXPECT_EQ(GString::npos, std::wstring::npos);
  EXPECT_EQ(text.find(GString(L"!!"), 3), GString::npos);
  EXPECT_EQ(text.find_last_of(L'!'), 3u);
  EXPECT_EQ(text.find_last_of(L'!', 2), 2u);
  EXPECT_EQ(text.substr(1, 2), L"l!");
  EXPECT_THROW(text.substr(5), std::out_of_range);
  text.resize(6);
  EXPECT_EQ(text[5], L'\0');
  text.assign(L"xyz", 2);
  EXPECT_EQ(std::wstring(text.rbegin(), text.rend()), L"yx");
  text = L'q';
  EXPECT_EQ(L"<" + text + L'>' + text + L"|", L"<q>q|");
  text.clear();
  EXPECT_EQ(text.c_str()[0], L'\0');
  EXPECT_THROW(text.resize(std::wstring().max_size() + 1), std::length_error);
}

TEST(GString, forwardsTextOperations) {
  GString text(L"  AbC \t");
  EXPECT_EQ(text.ToLower(), L"  abc \t");
  EXPECT_EQ(text.ToUpper(), L"  ABC \t");
  EXPECT_EQ(text.TrimLeft(), L"AbC \t");
  EXPECT_EQ(text.TrimRight(), L"AbC");
  EXPECT_EQ(GString(L" x ").Trim(), L"x");
  EXPECT_EQ(text.MakeUpper(), L"ABC");
  EXPECT_EQ(text.MakeLower(), L"abc");
  EXPECT_TRUE(GString(L"a.TXT").WildCmp(L"*.txt", false));
  EXPECT_FALSE(GString(L"a.TXT").WildCmp(L"*.txt", true));
  GString::size_type pos = 0;
  const GString list(L"a, \"b,c\" ,d");
  EXPECT_EQ(list.ParseToken(pos, L','), L"a");
  EXPECT_EQ(list.ParseToken(pos, L','), L"b,c");
  EXPECT_EQ(list.ParseToken(pos, L','), L"d");
  EXPECT_EQ(pos, list.size());
}

TEST(GString, parsesValues) {
  int number = 7;
  EXPECT_TRUE(GString(L" -12 ").ToInt(number));
  EXPECT_EQ(number, -12);
  EXPECT_FALSE(GString(L"12abc").ToInt(number));
  EXPECT_EQ(number, 0);
  std::int64_t big = 0;
  EXPECT_TRUE(GString(L"-9223372036854775808").ToInt64(big));
  EXPECT_EQ(big, std::numeric_limits<std::int64_t>::min());
  unsigned int count = 7;
  EXPECT_FALSE(GString(L"+5").ToUnsignedInt(count));
  EXPECT_EQ(count, 0u);
  double real = 0;
  EXPECT_TRUE(GString(L"1e3").ToDouble(real));
  EXPECT_EQ(real, 1000.0);
  bool flag = false;
  EXPECT_TRUE(GString(L"TRUE").ToBool(flag));
  EXPECT_TRUE(flag);
  EXPECT_FALSE(GString(L" true").ToBool(flag));
  EXPECT_FALSE(flag);
}

TEST(GString, formatsWideArgumentsAlsoInNarrowFormats) {
  GString text;
  EXPECT_TRUE(text.FormatString(L"%s=%d", L"abc", 12));
  EXPECT_EQ(text, L"abc=12");
  EXPECT_TRUE(text.FormatString("%s\xE9%hs", L"w", "\xE9"));
  EXPECT_EQ(text, L"w\u00E9\u00E9");
  EXPECT_TRUE(text.AppendFormatString("%c", L'!'));
  EXPECT_TRUE(text.AppendFormatString(L"%S", "x"));
  EXPECT_EQ(text, L"w\u00E9\u00E9!x");
  EXPECT_TRUE(text.FormatString(L"<%s>", text.c_str()));
  EXPECT_EQ(text, L"<w\u00E9\u00E9!x>");
}

TEST(GString, refusesResultsOf8192Units) {
  const GString longest(8191, L'x');
  const GString tooLong(8192, L'x');
  GString text(L"old");
  EXPECT_FALSE(text.FormatString(L"%s", tooLong.c_str()));
  EXPECT_FALSE(text.AppendFormatString(L"%9000d", 1));
  EXPECT_FALSE(text.FormatString("%s%s", longest.c_str(), L"y"));
  EXPECT_EQ(text, L"old");
  EXPECT_TRUE(text.AppendFormatString(L"%s", longest.c_str()));
  EXPECT_EQ(text, L"old" + longest);
  EXPECT_TRUE(text.FormatString(L"%s", longest.c_str()));
  EXPECT_EQ(text, longest);
}

TEST(GString, countsUnitsOfCharactersBeyondTheFirstPlane) {
  constexpr bool hasPairs = sizeof(wchar_t) == 2;
  const GString smile(L"\U0001F600");
  EXPECT_EQ(smile.size(), hasPairs ? 2u : 1u);
  EXPECT_TRUE(smile.WildCmp(hasPairs ? L"??" : L"?", true));
  EXPECT_FALSE(smile.WildCmp(hasPairs ? L"?" : L"??", true));
  GString text;
  EXPECT_TRUE(text.FormatString(L"%3s", smile));
  EXPECT_EQ(text, (hasPairs ? L" " : L"  ") + smile);
  EXPECT_TRUE(text.FormatString(L"%.1s", smile));
  EXPECT_EQ(text, smile.substr(0, 1));
  EXPECT_EQ(text == smile, !hasPairs);
  EXPECT_EQ(smile < L"\uE000", hasPairs);
  EXPECT_EQ(smile < L"\uFFFD", hasPairs);
  EXPECT_EQ(smile.ToUtf8(), "\xF0\x9F\x98\x80");
  EXPECT_TRUE(smile.ToNarrow(CODE_PAGE_WINDOWS_1252).starts_with('?'));
}

TEST(GString, isAKeyOfOrderedAndHashedContainers) {
  std::map<GString, int> ordered = {{L"b", 2}, {L"B", 1}, {L"a", 3}};
  EXPECT_EQ(ordered.begin()->first, L"B") << "code-unit order";
  std::map<GString, int, StringLess> folded = {{L"abc", 1}};
  EXPECT_FALSE(folded.emplace(L"ABC", 2).second);
  std::unordered_map<GString, int> hashed = {{L"k", 1}, {L"l", 2}};
  EXPECT_EQ(hashed.at(L"l"), 2);
  EXPECT_EQ(std::hash<GString>()(L"key"), std::hash<std::wstring>()(L"key"));
}

TEST(GString, comparesWithEveryWideText) {
  const GString text(L"abc");
  EXPECT_TRUE(text == std::wstring(L"abc") && text == std::wstring_view(L"abc") && L"abc" == text);
  EXPECT_TRUE(text != L"ABC" && text < L"abd" && L"abb" < text && text >= GString(L"abc"));
  EXPECT_TRUE(text > std::wstring_view(L"ab") && text <= std::wstring(L"abc"));
  EXPECT_TRUE(StringLess()(L"abc", L"ABD"));
  EXPECT_TRUE(StringEquivalent()(GString(L"Abc"), GString(L"aBC")));
  EXPECT_TRUE(StringLess()("abc", "ABD") && StringEquivalent()("Abc", "aBC"));
  EXPECT_FALSE(StringEquivalent()(L"\u00E9", L"\u00C9")) << "only ASCII letters fold";
  GString a(L"1");
  GString b(L"2");
  swap(a, b);
  EXPECT_EQ(a, L"2");
}

TEST(GString, isInsertedIntoStreams) {
  std::wostringstream wide;
  wide << GString(L"\u4E2D") << 1;
  EXPECT_EQ(wide.str(), L"\u4E2D1");
  std::ostringstream narrow;
  narrow << GString(L"\u4E2D") << 1;
  EXPECT_EQ(narrow.str(),
            "\xE4\xB8\xAD"
            "1");
}

TEST(GString, handsItsStringToStandardFunctions) {
  GString text(L"abc");
  std::wstring& inside = text;
  inside += L"d";
  const GString& constant = text;
  const std::wstring& view = constant;
  EXPECT_EQ(view, L"abcd");
  EXPECT_EQ(std::wstring_view(text).size(), 4u);
}

}  // namespace
}  // namespace shr
