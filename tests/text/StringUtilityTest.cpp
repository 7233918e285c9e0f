// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every function narrow and wide. Trimming under another global locale; wildcards against a
// naive matcher and against patterns that are slow to match; tokens by table; streams in which the
// part crosses the buffer's border or overlaps itself; escapes against the regular expression they
// are defined by.

#include "shared/text/StringUtility.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <limits>
#include <locale>
#include <random>
#include <sstream>

#include "shared/text/GString.h"
#include "shared/text/WhiteSpace.h"

namespace shr {
namespace {

std::wstring WideBytes(std::string_view text) {
  std::wstring wide;
  for (const char ch : text) wide += static_cast<wchar_t>(static_cast<unsigned char>(ch));
  return wide;
}

TEST(StringUtility, trimsWhiteSpaceOfBothEnds) {
  for (const std::string text : {"", " ", "a", " \t\r\n\v\fa b ", "a  ", "  a", "\xE9 a\xE9"}) {
    const std::size_t first = std::min(text.find_first_not_of(" \t\r\n\v\f"), text.size());
    const std::size_t end = text.find_last_not_of(" \t\r\n\v\f") + 1;
    std::string left = text;
    EXPECT_EQ(&TrimLeft(left), &left);
    EXPECT_EQ(left, text.substr(first));
    std::string right = text;
    EXPECT_EQ(TrimRight(right), text.substr(0, end));
    std::wstring both = WideBytes(text);
    EXPECT_EQ(Trim(both), WideBytes(Trim(right = text)));
    EXPECT_EQ(right, end > first ? text.substr(first, end - first) : "");
  }
  std::wstring dots = L"..a..";
  EXPECT_EQ(TrimRight(dots, L'.'), L"..a");
  dots = L"...";
  EXPECT_EQ(TrimRight(dots, L'.'), L"");
}

/// White space is "_" and nothing else.
struct UnderscoreSpace : std::ctype<wchar_t> {
  bool do_is(std::ctype_base::mask kinds, wchar_t ch) const override {
    return (kinds & std::ctype_base::space) != 0 && ch == L'_';
  }
  const wchar_t* do_scan_not(std::ctype_base::mask, const wchar_t* first,
                             const wchar_t* last) const override {
    while (first != last && *first == L'_') ++first;
    return first;
  }
};

TEST(StringUtility, trimmingFollowsTheGlobalLocale) {
  const std::locale old = std::locale::global(std::locale(std::locale(), new UnderscoreSpace));
  std::wstring text = L"_ a __";
  Trim(text);
  std::locale::global(old);
  EXPECT_EQ(text, L" a ");
}

TEST(StringUtility, onlyAsciiLettersChangeCase) {
  std::string narrow;
  for (int i = 0; i < 256; ++i) narrow += static_cast<char>(i);
  std::wstring wide;
  for (int i = 0; i < 0x3000; ++i) wide += static_cast<wchar_t>(i);
  const std::string lower = ToLower(narrow);
  const std::wstring upper = ToUpper(wide);
  for (std::size_t i = 0; i < narrow.size(); ++i) {
    ASSERT_EQ(lower[i], i >= 'A' && i <= 'Z' ? narrow[i + 32] : narrow[i]) << i;
  }
  for (std::size_t i = 0; i < wide.size(); ++i) {
    ASSERT_EQ(upper[i], i >= 'a' && i <= 'z' ? wide[i - 32] : wide[i]) << i;
  }
  EXPECT_EQ(ToUpper(narrow), ToUpper(lower));
  EXPECT_EQ(ToLower(wide), ToLower(upper));
  MakeLower(narrow);
  EXPECT_EQ(narrow, lower);
  MakeUpper(wide);
  EXPECT_EQ(wide, upper);
}

TEST(StringUtility, booleansAreOneOfSixWords) {
  const struct {
    const char* text;
    bool valid;
    bool value;
  } rows[] = {{"t", true, true},      {"1", true, true},       {"TRUE", true, true},
              {"tRuE", true, true},   {"F", true, false},      {"0", true, false},
              {"False", true, false}, {" true", false, false}, {"true ", false, false},
              {"", false, false},     {"yes", false, false},   {"01", false, false}};
  for (const auto& row : rows) {
    bool narrow = !row.value;
    bool wide = !row.value;
    EXPECT_EQ(StringToBool(row.text, narrow), row.valid) << row.text;
    EXPECT_EQ(StringToBool(WideBytes(row.text), wide), row.valid) << row.text;
    EXPECT_TRUE(narrow == row.value && wide == row.value) << row.text;
  }
  bool value = true;
  EXPECT_FALSE(StringToBool(L"\u0174", value)) << "a unit whose low byte is a word";
  EXPECT_TRUE(StringToBool(BoolToString(true), value) && value);
  EXPECT_TRUE(StringToBool(BoolToStringW(false), value) && !value);
  EXPECT_EQ(BoolToStringW(true), L"True");
}

TEST(StringUtility, doublesPrintAsAClassicStreamDoes) {
  std::mt19937_64 random(99);
  const double fixedValues[] = {
      3.14159, 1e20, 0.0, -0.0, 0.5, 2.5, 1e-7, 5e-324, std::numeric_limits<double>::max(), -1e300};
  std::vector<double> values(std::begin(fixedValues), std::end(fixedValues));
  for (int i = 0; i < 200; ++i) {
    values.push_back(
        std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 400) - 230));
  }
  for (const double value : values) {
    for (const std::size_t precision : {0u, 1u, 2u, 17u, 300u, 1500u}) {
      std::ostringstream stream;
      stream.imbue(std::locale::classic());
      stream << std::fixed << std::setprecision(static_cast<int>(precision)) << value;
      ASSERT_EQ(DoubleToString(value, precision), stream.str());
    }
  }
  EXPECT_EQ(DoubleToString(3.14159, 2), "3.14");
  EXPECT_EQ(DoubleToStringW(1e20, 0), L"100000000000000000000");
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(DoubleToString(infinity, 3) + DoubleToString(-infinity, 2000), "inf-inf");
  EXPECT_EQ(DoubleToStringW(std::numeric_limits<double>::quiet_NaN(), 2000), L"nan");
}

TEST(StringUtility, tokensEndAtTheDelimiter) {
  const struct {
    const char* name;
    const char* text;
    std::vector<std::string> tokens;
  } rows[] = {
      {"quoted field", "a,\"b,c\",d", {"a", "b,c", "d"}},
      {"white space is dropped", "  a b \t,\tc ", {"a b", "c"}},
      {"white space in quotes is kept", " \" a \" , b", {" a ", "b"}},
      {"rest behind the closing quote is dropped", "\"a\"x\"y,b", {"a", "b"}},
      {"quote that is not closed", "\"a,b ", {"a,b "}},
      {"quote inside a token", "a\"b,c", {"a\"b", "c"}},
      {"empty tokens", ",,a,", {"", "", "a"}},
      {"quotes around nothing", "\"\",\"", {"", ""}},
      {"spaces alone", "  ", {""}},
      {"space before the delimiter", " ,a", {"", "a"}},
      {"nothing", "", {}},
  };
  for (const auto& row : rows) {
    const std::string text = row.text;
    std::vector<std::string> tokens;
    std::size_t pos = 0;
    std::size_t widePos = 0;
    while (pos < text.size()) {
      tokens.push_back(ParseToken(text, pos, ','));
      EXPECT_EQ(ParseToken(WideBytes(text), widePos, L','), WideBytes(tokens.back())) << row.name;
      EXPECT_EQ(widePos, pos) << row.name;
    }
    EXPECT_EQ(tokens, row.tokens) << row.name;
  }
  std::size_t past = 9;
  EXPECT_EQ(ParseToken("abc", past, ','), "");
  EXPECT_EQ(past, 9u);
  std::size_t pos = 0;
  EXPECT_EQ(ParseToken(L"\u00A0\u3000a\u2003;b", pos, L';'), L"a");
}

TEST(StringUtility, whiteSpaceOfTokensIsFixed) {
  std::wstring spaces;
  for (std::uint32_t unit = 0; unit < 0x10000; ++unit) {
    if (IsWhiteSpace(static_cast<wchar_t>(unit))) spaces += static_cast<wchar_t>(unit);
  }
  EXPECT_EQ(spaces,
            L"\t\n\v\f\r \u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009"
            L"\u200A\u2028\u2029\u202F\u205F\u3000");
  EXPECT_FALSE(IsWhiteSpace('\xA0'));
}

bool NaiveMatch(std::string_view pattern, std::string_view text) {
  if (pattern.empty()) return text.empty();
  if (pattern[0] == '*') {
    return NaiveMatch(pattern.substr(1), text) ||
           (!text.empty() && NaiveMatch(pattern, text.substr(1)));
  }
  const bool unit = !text.empty() && (pattern[0] == '?' || pattern[0] == text[0]);
  return unit && NaiveMatch(pattern.substr(1), text.substr(1));
}

TEST(StringUtility, wildcardsAgreeWithANaiveMatcher) {
  std::mt19937 random(7);
  const auto draw = [&random](const char* letters, std::size_t count, std::size_t longest) {
    std::string text(random() % (longest + 1), ' ');
    for (char& ch : text) ch = letters[random() % count];
    return text;
  };
  int matches = 0;
  for (int i = 0; i < 30000; ++i) {
    const std::string pattern = draw("ab*?", 4, 7);
    const std::string text = draw("ab", 2, 9);
    const bool expected = NaiveMatch(pattern, text);
    matches += expected ? 1 : 0;
    ASSERT_EQ(WildCmp(pattern.c_str(), text.c_str(), true), expected) << pattern << " / " << text;
    ASSERT_EQ(WildCmp(WideBytes(pattern).c_str(), WideBytes(ToUpper(text)).c_str(), false),
              expected);
  }
  EXPECT_GT(matches, 1000);
}

TEST(StringUtility, wildcardsFoldAsciiOnly) {
  EXPECT_TRUE(WildCmp(L"*.txt", L"a.TXT", false));
  EXPECT_FALSE(WildCmp(L"*.txt", L"a.TXT", true));
  EXPECT_FALSE(WildCmp(L"\u00E9", L"\u00C9", false));
  EXPECT_TRUE(WildCmp(L"**", L"", true));
  EXPECT_FALSE(WildCmp(nullptr, L"a", true));
  EXPECT_FALSE(WildCmp("a", nullptr, true));
}

TEST(StringUtility, wildcardsTakeZeroUnitsOfCountedText) {
  using namespace std::string_view_literals;
  EXPECT_FALSE(WildCmp("a"sv, "a\0b"sv, true));
  EXPECT_FALSE(WildCmp("a\0c"sv, "a\0b"sv, true));
  EXPECT_TRUE(WildCmp("a?b"sv, "a\0b"sv, true));
  EXPECT_TRUE(WildCmp(L"*b"sv, std::wstring(L"a\0b", 3), true));
  EXPECT_TRUE(WildCmp(L"A\0*"sv, GString(L"a\0b", 3), false));
  EXPECT_FALSE(GString(L"a\0b", 3).WildCmp(L"a", true));
  EXPECT_TRUE(GString(L"a\0b", 3).WildCmp(GString(L"a\0*", 3), true));
  EXPECT_TRUE(WildCmp(""sv, ""sv, true) && WildCmp("*"sv, ""sv, true));
}

TEST(StringUtility, manyStarsStayCheap) {
  std::string pattern;
  for (int i = 0; i < 200; ++i) pattern += "*a";
  const std::string text(20000, 'a');
  EXPECT_FALSE(WildCmp((pattern + "b").c_str(), text.c_str(), true));
  EXPECT_TRUE(WildCmp((pattern + "*").c_str(), text.c_str(), true));
}

TEST(StringUtility, containsNeedsTwoTexts) {
  EXPECT_TRUE(Contains("abc", "bc"));
  EXPECT_FALSE(Contains("abc", "BC"));
  EXPECT_FALSE(Contains("abc", ""));
  EXPECT_FALSE(Contains(L"", L""));
  EXPECT_TRUE(Contains(L"a\u4E2D", L"\u4E2D"));
}

/// A stream buffer that hands out three units at a time.
class SmallBuffer : public std::streambuf {
public:
  explicit SmallBuffer(std::string text) : text_(std::move(text)) {}

protected:
  int_type underflow() override {
    const std::size_t count = std::min<std::size_t>(3, text_.size() - given_);
    if (count == 0) return traits_type::eof();
    char* const first = text_.data() + given_;
    setg(first, first, first + count);
    given_ += count;
    return traits_type::to_int_type(*first);
  }

private:
  std::string text_;
  std::size_t given_ = 0;
};

TEST(StringUtility, streamsStandBehindWhatWasFound) {
  SmallBuffer buffer("xaabaaaabaabaac!");
  std::istream in(&buffer);
  EXPECT_TRUE(Contains(in, "aabaac")) << "overlaps a head of itself and the buffer's border";
  EXPECT_EQ(in.get(), '!');
  std::wistringstream wide(L"one two one");
  EXPECT_FALSE(Contains(wide, L""));
  EXPECT_TRUE(Contains(wide, L"one"));
  EXPECT_TRUE(Contains(wide, L"one"));
  EXPECT_FALSE(Contains(wide, L"one"));
  EXPECT_TRUE(wide.eof());
  EXPECT_FALSE(Contains(wide, L"o")) << "a stream at its end";
}

TEST(StringUtility, streamsAgreeWithTextSearch) {
  std::mt19937 random(11);
  for (int i = 0; i < 3000; ++i) {
    std::string text(random() % 20, 'a');
    std::string part(1 + random() % 5, 'a');
    for (char& ch : text) ch = static_cast<char>('a' + random() % 2);
    for (char& ch : part) ch = static_cast<char>('a' + random() % 2);
    SmallBuffer buffer(text);
    std::istream in(&buffer);
    ASSERT_EQ(Contains(in, part), Contains(text, part)) << text << " " << part;
  }
}

TEST(StringUtility, linesEndAtEveryKindOfBreak) {
  const struct {
    const char* text;
    std::vector<std::string> lines;
  } rows[] = {{"a\r\n\nb\n", {"a", "", "b"}},
              {"a\r\rb", {"a", "", "b"}},
              {"\n", {""}},
              {"\n\r", {"", ""}},
              {"", {}},
              {"a", {"a"}},
              {"a\n\r\nb", {"a", "", "b"}},
              {nullptr, {}}};
  for (const auto& row : rows) {
    std::vector<std::string> lines = {"old"};
    EXPECT_EQ(BreakIntoSubstrings(row.text, lines), row.lines.size());
    EXPECT_EQ(lines, row.lines);
  }
  std::vector<std::wstring> wide;
  EXPECT_EQ(BreakIntoSubstrings(L"a\r\nb", wide), 2u);
  EXPECT_EQ(wide.back(), L"b");
}

TEST(StringUtility, entitiesAreReplacedInOrder) {
  EXPECT_EQ(ReplaceHTMLSpecialEntities("&lt;a b=&quot;&apos;&gt;&amp;"), "<a b=\"'>&");
  EXPECT_EQ(ReplaceHTMLSpecialEntities("&amp;lt; &amp;amp;"), "&lt; &amp;");
  EXPECT_EQ(ReplaceHTMLSpecialEntities("&ampamp; &lt &LT; &"), "&ampamp; &lt &LT; &");
  EXPECT_EQ(ReplaceHTMLSpecialEntities("&&quot;lt;"), "&\"lt;");
  EXPECT_EQ(ReplaceHTMLSpecialEntities(L"\u4E2D&amp;"), L"\u4E2D&");
  EXPECT_EQ(ReplaceHTMLSpecialEntities(L"plain"), L"plain");
}

/// Tries every number of digits at every place.
std::wstring ReplaceByTrial(const std::wstring& text) {
  std::wstring result;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t length = 0;
    for (std::size_t digits = 1; digits <= 4 && length == 0; ++digits) {
      const std::wstring part = text.substr(i, digits + 3);
      if (part.size() == digits + 3 && (part.substr(0, 2) == L"_x" || part.substr(0, 2) == L"_X") &&
          part.find_first_not_of(L"0123456789abcdefABCDEF", 2) == digits + 2 &&
          part.back() == L'_') {
        length = part.size();
        result += static_cast<wchar_t>(std::stoul(part.substr(2, digits), nullptr, 16));
      }
    }
    if (length == 0) result += text[i];
    i += std::max<std::size_t>(length, 1);
  }
  return result;
}

TEST(StringUtility, hexCodesAgreeWithTrial) {
  std::mt19937 random(13);
  for (int i = 0; i < 20000; ++i) {
    std::wstring text(random() % 16, L' ');
    for (wchar_t& ch : text) ch = L"__xX012aFg"[random() % 10];
    ASSERT_EQ(ReplaceHTMLHexCodes(text), ReplaceByTrial(text))
        << std::string(text.begin(), text.end());
  }
}

TEST(StringUtility, hexCodesGiveSingleUnits) {
  EXPECT_EQ(ReplaceHTMLHexCodes(L"_x41_x42_"), L"Ax42_");
  EXPECT_EQ(ReplaceHTMLHexCodes(L"a_x20_b_X4e2D__x12345_"), L"a b\u4E2D_x12345_");
  EXPECT_EQ(ReplaceHTMLHexCodes("_xE9__x20__x0100_"), "\xE9 _x0100_");
  EXPECT_EQ(ReplaceHTMLHexCodes(L"_xD83D__xDE00_"), L"\U0001F600");
  EXPECT_EQ(ReplaceHTMLHexCodes(L"_x0_"), std::wstring(1, L'\0'));
}

TEST(StringUtility, copiesTerminatedText) {
  EXPECT_EQ(ToString("abc"), "abc");
  EXPECT_EQ(ToString(L"abc"), L"abc");
}

}  // namespace
}  // namespace shr
