// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Which texts are numbers: exactly those that the numeric parsers of Boost.Spirit accept between
// ASCII white space. Values are not compared but for integers, since those parsers round real
// numbers less carefully. Texts with an exponent beyond `int` are left out: there the parsers of
// Spirit stop before the exponent, while the library reads it. In a source of its own, because
// Spirit is slow to compile.

#include <gtest/gtest.h>

#include <boost/spirit/include/qi_char_class.hpp>
#include <boost/spirit/include/qi_int.hpp>
#include <boost/spirit/include/qi_parse.hpp>
#include <boost/spirit/include/qi_real.hpp>
#include <boost/spirit/include/qi_uint.hpp>
#include <cmath>
#include <random>
#include <string>

#include "shared/text/StringUtility.h"

namespace shr {
namespace {

namespace qi = boost::spirit::qi;

template <typename Parser, typename Value>
bool SpiritAccepts(const std::string& text, const Parser& parser, Value& value) {
  auto first = text.begin();
  return qi::phrase_parse(first, text.end(), parser, boost::spirit::ascii::space, value) &&
         first == text.end();
}

std::string Draw(std::mt19937& random, const char* letters, std::size_t longest) {
  const std::string_view set = letters;
  std::string text(random() % (longest + 1), ' ');
  for (char& ch : text) ch = set[random() % set.size()];
  return text;
}

/// Spirit refuses a zero whose exponent alone is out of range; the library does not, since zero is
/// in range.
bool IsZeroWithLargeExponent(const std::string& text, double value) {
  const std::size_t mark = text.find_first_of("eE");
  return value == 0 && mark != std::string::npos && text.find_last_of("0123456789") >= mark + 3;
}

void ExpectSameReal(const std::string& text) {
  double expected = 0;
  bool accepted = SpiritAccepts(text, qi::double_, expected);
  // Digits that give an infinity are out of range.
  if (std::isinf(expected) && text.find_first_of("iI") == std::string::npos) accepted = false;
  double value = 0;
  const bool valid = StringToDouble(text, value);
  ASSERT_TRUE(valid == accepted || (valid && IsZeroWithLargeExponent(text, value)))
      << "\"" << text << "\"";
  ASSERT_EQ(StringToDouble(std::wstring(text.begin(), text.end()), value), valid) << text;
}

TEST(NumberSyntax, realNumbersAreThoseOfSpirit) {
  for (const char* text :
       {"1e3",      ".5",       "5.",      ".",         "",       "-",     "+.5",  "--1",
        "+-1",      "1e",       "1e+",     "1.e5",      ".e5",    "e5",    "1e5.", "0x10",
        "1,000",    "1 2",      "- 1",     "1 e5",      "nan",    "NaN",   "-nan", "nan(",
        "nan()",    "nan(a b)", "nan(x)y", "nan()()",   "nan ()", "inf",   "+INF", "infinity",
        "InFiNiTy", "infi",     "infinit", "infinityx", "in",     "i",     "n",    "na",
        "\v1\f",    "1\xA0",    "1e05",    "1d5",       "1E-0",   "00.00", "-0",   "1.5.",
        "1..5",     "1e5e5",    "1__",     "infnan"}) {
    ExpectSameReal(text);
  }
}

TEST(NumberSyntax, randomTextsAreNumbersWhenSpiritSaysSo) {
  std::mt19937 random(21);
  for (int i = 0; i < 150000; ++i) {
    ExpectSameReal(Draw(random, "0123.eE+- ", 7));
    ExpectSameReal(Draw(random, "naN()iInfty- +1", 5));
  }
}

TEST(NumberSyntax, integersAreThoseOfSpirit) {
  std::mt19937 random(22);
  int accepted = 0;
  for (int i = 0; i < 100000; ++i) {
    const std::string text = Draw(random, "0129+- .", 6) + Draw(random, "0189 ", 13);
    int number = 0;
    int expectedNumber = 0;
    const bool isInt = SpiritAccepts(text, qi::int_, expectedNumber);
    ASSERT_EQ(StringToInt(text, number), isInt) << "\"" << text << "\"";
    ASSERT_EQ(number, isInt ? expectedNumber : 0) << text;
    unsigned int count = 0;
    unsigned int expectedCount = 0;
    const bool isUnsigned = SpiritAccepts(text, qi::uint_, expectedCount);
    ASSERT_EQ(StringToUnsigned(text, count), isUnsigned) << "\"" << text << "\"";
    ASSERT_EQ(count, isUnsigned ? expectedCount : 0) << text;
    std::int64_t big = 0;
    std::int64_t expectedBig = 0;
    const bool isBig = SpiritAccepts(text, qi::int_parser<std::int64_t>(), expectedBig);
    ASSERT_EQ(StringToInt64(text, big), isBig) << "\"" << text << "\"";
    ASSERT_EQ(big, isBig ? expectedBig : 0) << text;
    accepted += isInt ? 1 : 0;
  }
  EXPECT_GT(accepted, 1000);
}

}  // namespace
}  // namespace shr
