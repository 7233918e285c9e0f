// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Values of parsed numbers. The oracle of doubles is std::from_chars on the same digits; both
// widths are read. Cases: random bits printed with 17 digits and fewer, exact middles of two
// doubles with digits far behind them, subnormals, the borders of the range, hundreds of digits,
// huge exponents that long texts make up for; integers around their limits; every power of ten; the
// two 128-bit products.

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "shared/text/DigitChunk.h"
#include "shared/text/Multiply128.h"
#include "shared/text/StringUtility.h"

namespace shr {
namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();

std::wstring Widen(const std::string& text) {
  return std::wstring(text.begin(), text.end());
}

/// Parses in both widths; both must agree to the bit.
bool ParseBoth(const std::string& text, double& value) {
  double wide = 42;
  value = 42;
  const bool valid = StringToDouble(text, value);
  EXPECT_EQ(StringToDouble(Widen(text), wide), valid) << text;
  EXPECT_EQ(std::bit_cast<std::uint64_t>(wide), std::bit_cast<std::uint64_t>(value)) << text;
  return valid;
}

void ExpectNearest(const std::string& text) {
  double expected = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), expected);
  ASSERT_EQ(result.ptr, text.data() + text.size()) << text;
  double value = 0;
  const bool valid = ParseBoth(text, value);
  if (result.ec == std::errc::result_out_of_range) {
    ASSERT_EQ(value, 0) << text;
    return;
  }
  ASSERT_TRUE(valid) << text;
  ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << text;
}

std::string Print(double value, std::chars_format format, int precision) {
  char buffer[2048];
  return std::string(buffer,
                     std::to_chars(buffer, buffer + sizeof buffer, value, format, precision).ptr);
}

double RandomDouble(std::mt19937_64& random) {
  for (;;) {
    const double value = std::bit_cast<double>(random());
    if (std::isfinite(value)) return value;
  }
}

TEST(NumberParsing, randomDigitsGiveTheNearestDouble) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const double value = RandomDouble(random);
    ExpectNearest(Print(value, std::chars_format::scientific, 16));
    ExpectNearest(Print(value, std::chars_format::scientific, static_cast<int>(random() % 25)));
    ExpectNearest(std::to_string(random()) + "." + std::to_string(random()) + "e" +
                  std::to_string(static_cast<int>(random() % 660) - 340));
  }
}

TEST(NumberParsing, plainNumbersGiveTheNearestDouble) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 20000; ++i) {
    const auto digits = static_cast<double>(static_cast<std::int64_t>(random() >> (random() % 64)));
    ExpectNearest(Print(digits / 1000, std::chars_format::fixed, 3));
    ExpectNearest(Print(digits, std::chars_format::fixed, 0));
    ExpectNearest(std::to_string(random() >> (random() % 64)) + "e" +
                  std::to_string(static_cast<int>(random() % 50) - 25));
  }
}

TEST(NumberParsing, shortestTextReturnsTheValue) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 20000; ++i) {
    const double value = RandomDouble(random);
    char buffer[64];
    double back = 0;
    ASSERT_TRUE(ParseBoth({buffer, std::to_chars(buffer, buffer + 64, value).ptr}, back));
    ASSERT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(value)) << buffer;
  }
}

TEST(NumberParsing, everyPowerOfTenIsNearest) {
  for (int exponent = -400; exponent <= 400; ++exponent) {
    ExpectNearest("1e" + std::to_string(exponent));
    ExpectNearest("9007199254740993e" + std::to_string(exponent));
    ExpectNearest("18446744073709551615e" + std::to_string(exponent));
  }
}

/// The exact digits of the middle between a positive double and the next one: an odd integer of 54
/// bits times a power of two.
std::string MiddleAbove(double value) {
  const std::uint64_t bits = std::bit_cast<std::uint64_t>(value);
  const auto power = static_cast<int>(bits >> 52);
  std::uint64_t mantissa = bits & ((std::uint64_t{1} << 52) - 1);
  if (power != 0) mantissa |= std::uint64_t{1} << 52;
  int scale = std::max(power, 1) - 1075 - 1;
  std::string digits = std::to_string(mantissa * 2 + 1);
  std::size_t decimals = 0;
  for (; scale > 0; --scale) {
    int carry = 0;
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
      const int doubled = (*digit - '0') * 2 + carry;
      *digit = static_cast<char>('0' + doubled % 10);
      carry = doubled / 10;
    }
    if (carry != 0) digits.insert(digits.begin(), '1');
  }
  for (; scale < 0; ++scale) {
    digits += '0';
    ++decimals;
    int rest = 0;
    for (char& digit : digits) {
      const int number = rest * 10 + (digit - '0');
      digit = static_cast<char>('0' + number / 2);
      rest = number % 2;
    }
  }
  if (decimals >= digits.size()) digits.insert(0, decimals - digits.size() + 1, '0');
  return digits.insert(digits.size() - decimals, ".");
}

TEST(NumberParsing, middlesOfTwoDoublesRoundToEven) {
  std::mt19937_64 random(4);
  std::vector<double> values = {1.0,  5e-324, 2.2250738585072014e-308, 9007199254740991.0,
                                1e22, 1e-5};
  for (int i = 0; i < 150; ++i) values.push_back(std::fabs(RandomDouble(random)));
  for (const double value : values) {
    const std::string middle = MiddleAbove(value);
    const double next = std::nextafter(value, INFINITE);
    const bool even = (std::bit_cast<std::uint64_t>(value) & 1) == 0;
    double parsed = 0;
    ASSERT_TRUE(ParseBoth(middle, parsed)) << middle;
    ASSERT_EQ(parsed, even ? value : next) << middle;
    ASSERT_TRUE(ParseBoth(middle + std::string(900, '0') + "1", parsed));
    ASSERT_EQ(parsed, next) << "a little above " << middle;
    std::string below = middle;
    const std::size_t last = below.find_last_not_of(".0");
    below[last] = static_cast<char>(below[last] - 1);
    below.append(below.find('.') == std::string::npos ? "." : "").append(900, '9');
    ASSERT_TRUE(ParseBoth(below, parsed));
    ASSERT_EQ(parsed, value) << "a little below " << middle;
  }
}

TEST(NumberParsing, manyDigitsGiveTheNearestDouble) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 2000; ++i) {
    std::string text;
    for (std::size_t count = random() % 60; count-- > 0;) text += std::to_string(random());
    text.insert(random() % (text.size() + 1), ".");
    if (text == ".") text = "0.";
    ExpectNearest(text + "e" + std::to_string(static_cast<int>(random() % 1400) - 700));
    const double value = RandomDouble(random);
    ExpectNearest(
        Print(value, std::chars_format::scientific, 17 + static_cast<int>(random() % 800)));
  }
}

TEST(NumberParsing, longTextsMakeUpForHugeExponents) {
  const std::string zeros(5000, '0');
  const struct {
    const char* name;
    std::string text;
    double value;
  } rows[] = {
      {"fraction against exponent", "0." + zeros + "1e5001", 1},
      {"integer against exponent", "25" + zeros + "e-5001", 2.5},
      {"leading zeros", zeros + "7", 7},
      {"leading zeros and point", zeros + "." + zeros + "7e5001", 7},
      {"trailing zeros", "1." + zeros, 1},
      {"far below every double", "1e-99999999999", 0},
      {"negative and far below", "-1e-99999999999999999999999999", -0.0},
      {"zero with a huge exponent", "0e99999999999", 0},
      {"zeros with a huge exponent", "0.000e+18446744073709551617", 0},
      {"half of the smallest", "2.4703282292062327e-324", 0},
      {"more than half of the smallest", "2.4703282292062328e-324", 5e-324},
      {"smallest", "4.9e-324", 5e-324},
      {"last that rounds to the largest", "1.7976931348623158e308",
       std::numeric_limits<double>::max()},
      {"largest subnormal", "2.2250738585072011e-308", 2.2250738585072011e-308},
  };
  for (const auto& row : rows) {
    double value = 42;
    EXPECT_TRUE(ParseBoth(row.text, value)) << row.name;
    EXPECT_EQ(value, row.value) << row.name;
    EXPECT_EQ(std::signbit(value), std::signbit(row.value)) << row.name;
  }
}

TEST(NumberParsing, numbersBeyondTheLargestDoubleFail) {
  for (const std::string& text :
       {std::string("1e309"), std::string("-1.7976931348623159e308"), std::string("1e99999999999"),
        std::string("1e18446744073709551617"), std::string(400, '9'), "1" + std::string(5000, '0'),
        MiddleAbove(std::numeric_limits<double>::max())}) {
    double value = 42;
    EXPECT_FALSE(ParseBoth(text, value)) << text;
    EXPECT_EQ(value, 0) << text;
  }
}

TEST(NumberParsing, wordsGiveInfinityAndNan) {
  double value = 0;
  EXPECT_TRUE(ParseBoth("inf", value) && value == INFINITE);
  EXPECT_TRUE(ParseBoth(" -InFiNiTy ", value) && value == -INFINITE);
  EXPECT_TRUE(ParseBoth("nan", value) && std::isnan(value) && !std::signbit(value));
  EXPECT_TRUE(ParseBoth("-NAN", value) && std::isnan(value) && std::signbit(value));
}

TEST(NumberParsing, textBehindTheViewIsNotRead) {
  const std::string text = "12345678901234567890e5";
  double value = 0;
  for (std::size_t length = 1; length <= 20; ++length) {
    // A copy of exactly that length, so that the sanitizer sees a read behind it.
    const std::vector<wchar_t> units(text.begin(),
                                     text.begin() + static_cast<std::ptrdiff_t>(length));
    ASSERT_TRUE(StringToDouble(std::wstring_view(units.data(), length), value));
    ASSERT_EQ(value, std::stod(text.substr(0, length)));
  }
}

TEST(NumberParsing, otherDigitsAreNoDigits) {
  // Units whose low byte is an ASCII digit, and digits of other scripts, at every place of a chunk.
  for (const std::uint32_t unit : {0x0661u, 0x0130u, 0xFF11u, 0x3131u, 0x8031u, 0x002Fu, 0x003Au}) {
    for (std::size_t place = 0; place < 16; ++place) {
      std::wstring text = L"0.11111111111111";
      text[place] = static_cast<wchar_t>(unit);
      double value = 42;
      int number = 42;
      EXPECT_FALSE(StringToDouble(text, value)) << unit << " at " << place;
      EXPECT_FALSE(StringToInt(text.substr(place, 1), number));
      EXPECT_EQ(value + number, 0);
    }
  }
}

TEST(NumberParsing, chunksOfBothLoadersAgree) {
  std::mt19937 random(6);
  for (int i = 0; i < 5000; ++i) {
    wchar_t wide[8];
    char narrow[8];
    std::uint64_t expected = 0;
    for (int k = 0; k < 8; ++k) {
      narrow[k] = static_cast<char>(random() % 40 == 0 ? random() % 256 : '0' + random() % 10);
      wide[k] = static_cast<wchar_t>(
          random() % 40 == 0 ? random() : static_cast<unsigned>('0' + random() % 10));
      expected = expected * 10 + static_cast<std::uint64_t>(narrow[k] - '0');
    }
    const DigitChunk chunk = LoadDigitChunk(narrow);
    ASSERT_EQ(AreDigits(chunk), AreDigits(LoadDigitChunkPlainly(narrow)));
    ASSERT_EQ(AreDigits(LoadDigitChunk(wide)), AreDigits(LoadDigitChunkPlainly(wide)));
    if (AreDigits(chunk)) {
      ASSERT_EQ(DigitsValue(chunk), expected);
    }
  }
}

TEST(NumberParsing, productsOf128BitsAgree) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 10000; ++i) {
    const std::uint64_t a = random() >> (random() % 64);
    const std::uint64_t b = random() >> (random() % 64);
    ASSERT_EQ(Multiply128(a, b), MultiplyHalves(a, b));
  }
  EXPECT_EQ(MultiplyHalves(~0ull, ~0ull), (Product128{~0ull - 1, 1}));
}

template <typename Integer>
void ExpectInteger(bool (*parse)(std::string_view, Integer&),
                   bool (*parseWide)(std::wstring_view, Integer&), const std::string& text,
                   bool valid, Integer expected) {
  Integer narrow = 42;
  Integer wide = 42;
  EXPECT_EQ(parse(text, narrow), valid) << text;
  EXPECT_EQ(parseWide(Widen(text), wide), valid) << text;
  EXPECT_EQ(narrow, valid ? expected : 0) << text;
  EXPECT_EQ(wide, narrow) << text;
}

TEST(NumberParsing, integersWithinTheirLimits) {
  const struct {
    const char* text;
    bool valid;
    int value;
  } ints[] = {{" -12 ", true, -12},
              {"+0012", true, 12},
              {"2147483647", true, 2147483647},
              {"-2147483648", true, std::numeric_limits<int>::min()},
              {"2147483648", false, 0},
              {"-2147483649", false, 0},
              {"00000000000000000000007", true, 7},
              {"99999999999999999999999", false, 0},
              {"12abc", false, 0},
              {"0x10", false, 0},
              {"1,000", false, 0},
              {"", false, 0},
              {" \t", false, 0},
              {"-", false, 0},
              {"+-1", false, 0},
              {"1 2", false, 0},
              {"1.0", false, 0},
              {"\v\f\r\n1\v\f\r\n", true, 1},
              {"\xA0"
               "1",
               false, 0}};
  for (const auto& row : ints)
    ExpectInteger<int>(StringToInt, StringToInt, row.text, row.valid, row.value);
  ExpectInteger<std::int64_t>(StringToInt64, StringToInt64, "9223372036854775807", true,
                              std::numeric_limits<std::int64_t>::max());
  ExpectInteger<std::int64_t>(StringToInt64, StringToInt64, "-9223372036854775808", true,
                              std::numeric_limits<std::int64_t>::min());
  ExpectInteger<std::int64_t>(StringToInt64, StringToInt64, "9223372036854775808", false, 0);
  ExpectInteger<std::int64_t>(StringToInt64, StringToInt64, "-9223372036854775809", false, 0);
  ExpectInteger<unsigned>(StringToUnsigned, StringToUnsigned, " 4294967295 ", true, 4294967295u);
  ExpectInteger<unsigned>(StringToUnsigned, StringToUnsigned, "4294967296", false, 0);
  ExpectInteger<unsigned>(StringToUnsigned, StringToUnsigned, "+5", false, 0);
  ExpectInteger<unsigned>(StringToUnsigned, StringToUnsigned, "-0", false, 0);
}

}  // namespace
}  // namespace shr
