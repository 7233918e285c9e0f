// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: text and characters (width of the format x width of the argument x padding and cutting),
// integers (every prefix), real numbers, pointers; each table row is formatted narrow and wide.
// Integers and finite real numbers are also compared with the C runtime over random flags, widths
// and precisions. Limits: results around 8,192 units, huge widths and precisions, malformed
// formats, arguments inside the target.

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>
#include <locale>
#include <random>
#include <string>

#include "shared/text/StringUtility.h"

namespace shr {
namespace {

std::wstring WideAscii(const std::string& text) {
  return std::wstring(text.begin(), text.end());
}

/// Formats through both engines; the results must agree. Only for arguments of either format.
template <typename... Arguments>
std::string Both(const std::string& format, Arguments... arguments) {
  std::string narrow = "old";
  std::wstring wide = L"old";
  const bool done = FormatString(narrow, format.c_str(), arguments...);
  EXPECT_EQ(FormatString(wide, WideAscii(format).c_str(), arguments...), done) << format;
  EXPECT_EQ(wide, WideAscii(narrow)) << format;
  return done ? narrow : "failed: " + narrow;
}

std::wstring Wide(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::wstring text;
  EXPECT_TRUE(FormatStringVA(text, format, arguments)) << WideAscii("wide format");
  va_end(arguments);
  return text;
}

std::string Narrow(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text;
  EXPECT_TRUE(FormatStringVA(text, format, arguments)) << format;
  va_end(arguments);
  return text;
}

TEST(PrintfFormat, textArgumentsOfWideFormats) {
  EXPECT_EQ(Wide(L"%s|%ls|%ws", L"a\u4E2D", L"b", L"c"), L"a\u4E2D|b|c");
  EXPECT_EQ(Wide(L"%S|%hs|%hS", "a\xE9", "\x80", "z"), L"a\u00E9|\u20AC|z");
  EXPECT_EQ(Wide(L"%c%lc%C%hc", L'\u4E2D', L'b', '\xE9', 'd'), L"\u4E2Db\u00E9d");
  EXPECT_EQ(Wide(L"[%5s|%-5s|%.2s|%5.1s|%*s|%-*s|%.*s]", L"ab", L"ab", L"abc", L"xyz", 3, L"q", 3,
                 L"r", 1, L"st"),
            L"[   ab|ab   |ab|    x|  q|r  |s]");
  EXPECT_EQ(Wide(L"[%*s|%.*s|%05s]", -4, L"a", -1, L"bc", L"d"), L"[a   |bc|    d]");
  EXPECT_EQ(Wide(L"[%3c|%-3c|%3hs]", L'a', L'b', "\xE9"), L"[  a|b  |  \u00E9]");
}

TEST(PrintfFormat, textArgumentsOfNarrowFormats) {
  EXPECT_EQ(Narrow("%s|%hs|%S|%ls|%ws", "a\xE9", "b", L"\u00E9", L"\u20AC", L"e"),
            "a\xE9|b|\xE9|\x80|e");
  EXPECT_EQ(Narrow("%c%hc%C%lc", '\xE9', 'b', L'\u20AC', L'd'),
            "\xE9"
            "b\x80"
            "d");
  EXPECT_EQ(Narrow("[%4ls|%-4S|%.1ls]", L"\u00E9", L"b", L"cd"), "[   \xE9|b   |c]");
}

TEST(PrintfFormat, nullTextIsSpeltOut) {
  const wchar_t* const wide = nullptr;
  const char* const narrow = nullptr;
  EXPECT_EQ(Wide(L"%s %S %8.3s", wide, narrow, wide), L"(null) (null)      (nu");
  EXPECT_EQ(Narrow("%s %ls", narrow, wide), "(null) (null)");
}

TEST(PrintfFormat, precisionGuardsUnterminatedText) {
  const wchar_t wide[] = {L'a', L'b', L'c'};
  const char narrow[] = {'a', 'b', 'c'};
  EXPECT_EQ(Wide(L"%.3s%.*S", wide, 3, narrow), L"abcabc");
  EXPECT_EQ(Narrow("%.3s%.2ls", narrow, wide), "abcab");
}

TEST(PrintfFormat, integerPrefixes) {
  const std::int64_t big = -5000000000;
  const auto bits = static_cast<std::uint64_t>(big);
  EXPECT_EQ(Both("%d %i %5d|%-5d|%05d|%+d|% d", -7, 8, 42, 42, -42, 42, 42),
            "-7 8    42|42   |-0042|+42| 42");
  EXPECT_EQ(Both("%I64d %lld %jd %zd %td %Id", big, big, big, big, big, big),
            "-5000000000 -5000000000 -5000000000 -5000000000 -5000000000 -5000000000");
  EXPECT_EQ(Both("%I64u %Iu %zu", bits, bits, bits),
            "18446744068709551616 18446744068709551616 18446744068709551616");
  EXPECT_EQ(Both("%I64x %I64X %#I64o", bits, bits, bits),
            "fffffffed5fa0e00 FFFFFFFED5FA0E00 01777777777732576407000");
  EXPECT_EQ(Both("%I32d %I32u %hd %hu %hhd %hhu", -70000, 7, -70000, 70000, 300, 300),
            "-70000 7 -4464 4464 44 44");
  EXPECT_EQ(Both("%ld %lu", -70000L, 70000UL), "-70000 70000");
  EXPECT_EQ(Both("%I64d", std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(Both("%#x %#X %#o %#x %#o %#.0o %.0d|%.0x", 255, 255, 8, 0, 0, 0, 0, 0),
            "0xff 0XFF 010 0 0 0 |");
}

TEST(PrintfFormat, pointersHaveSixteenDigits) {
  void* const pointer = reinterpret_cast<void*>(std::uintptr_t{0xABCDEF1234});
  EXPECT_EQ(Both("%p|%20p|%-18p|", pointer, pointer, pointer),
            "000000ABCDEF1234|    000000ABCDEF1234|000000ABCDEF1234  |");
  EXPECT_EQ(Both("%p", static_cast<void*>(nullptr)), "0000000000000000");
}

TEST(PrintfFormat, realNumbers) {
  const double number = -1234567.891;
  EXPECT_EQ(
      Both("%g %e %f %G %E %F", number, number, number, number, number, number),
      "-1.23457e+06 -1.234568e+06 -1234567.891000 -1.23457E+06 -1.234568E+06 -1234567.891000");
  EXPECT_EQ(Both("%015.3f|%-12.3e|%+.2f|% .0f", number, number, 2.5, 2.5),
            "-0001234567.891|-1.235e+06  |+2.50| 2");
  EXPECT_EQ(Both("%.17lG %.14g %lf", 0.1, 0.1, 0.5), "0.10000000000000001 0.1 0.500000");
  EXPECT_EQ(Both("%.0f %.0f %.0f %.1f %.2f", 0.5, 1.5, 2.5, 0.25, 2.675), "0 2 2 0.2 2.67");
  EXPECT_EQ(Both("%g %g %e", 1e100, 1e-300, 0.0), "1e+100 1e-300 0.000000e+00");
  EXPECT_EQ(Both("%#.0f %#.0e %#g %#.3g %#g", 3.0, 3.0, 1.0, 100.0, 1e-5),
            "3. 3.e+00 1.00000 100. 1.00000e-05");
  EXPECT_EQ(Both("%a %A %.0a %.2a %020a", 1.0, -0.1, 1.5, 1.999, 2.0),
            "0x1p+0 -0X1.999999999999AP-4 0x2p+0 0x2.00p+0 0x000000000000001p+1");
  EXPECT_EQ(Both("%Lf %.3Lg", 0.5L, 0.125L), "0.500000 0.125");
}

TEST(PrintfFormat, infinitiesAndNanAreWords) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(Both("%f %g %e %a %.2f", infinity, -infinity, infinity, infinity, infinity),
            "inf -inf inf inf inf");
  EXPECT_EQ(Both("%F %G %E %A", infinity, -infinity, nan, nan), "INF -INF NAN NAN");
  EXPECT_EQ(Both("%+f|%6g|%-6g|%06g|% g", infinity, -infinity, nan, infinity, nan),
            "+inf|  -inf|nan   |   inf| nan");
  EXPECT_EQ(Both("%g", std::copysign(nan, -1.0)), "-nan");
}

enum class Padding { None, Random };

/// Flags, width and precision drawn at random, for a conversion.
std::string RandomFormat(std::mt19937& random, const std::string& conversion, const char* flags,
                         Padding padding) {
  std::string text = "%";
  for (; *flags != '\0'; ++flags) {
    if (random() % 3 == 0) text += *flags;
  }
  if (padding == Padding::Random && random() % 2 == 0) text += std::to_string(random() % 30);
  if (random() % 2 == 0) text += "." + std::to_string(random() % 25);
  return text + conversion;
}

/// What the runtime makes of the same format. Its name is hidden from the compiler's format check.
template <typename Value>
std::string Runtime(const std::string& format, Value value) {
  int (*const print)(char*, std::size_t, const char*, ...) = &std::snprintf;
  char buffer[1024];
  print(buffer, sizeof buffer, format.c_str(), value);
  return buffer;
}

TEST(PrintfFormat, integersAgreeWithTheRuntime) {
  std::mt19937 random(4711);
  for (int i = 0; i < 4000; ++i) {
    const char kind = "dixXou"[random() % 6];
    const bool isSigned = kind == 'd' || kind == 'i';
    const char* const flags = isSigned ? "-+ 0" : kind == 'u' ? "-0" : "-#0";
    const std::string format =
        RandomFormat(random, std::string("ll") + kind, flags, Padding::Random);
    auto value =
        static_cast<long long>((std::uint64_t{random()} << 32 | random()) >> (random() % 64));
    // Some runtimes print nothing for "%#.0o" of zero.
    if (kind == 'o' && value == 0) value = 1;
    ASSERT_EQ(Both(format, value), Runtime(format, value)) << format;
  }
}

TEST(PrintfFormat, realNumbersAgreeWithTheRuntime) {
  std::mt19937 random(4712);
  for (int i = 0; i < 4000; ++i) {
    const char kind = "eEfgG"[random() % 5];
    // Some runtimes forget the padding of "%g" after they have dropped zeros.
    const Padding padding = kind == 'g' || kind == 'G' ? Padding::None : Padding::Random;
    const std::string format = RandomFormat(random, std::string(1, kind), "-+ #0", padding);
    const double digits = static_cast<double>(static_cast<int>(random() % 2000001) - 1000000);
    const double value = digits * std::pow(10.0, static_cast<int>(random() % 40) - 25);
    ASSERT_EQ(Both(format, value), Runtime(format, value)) << format << " of " << digits;
  }
}

TEST(PrintfFormat, extremeValuesAndDigitsAgreeWithTheRuntime) {
  const double values[] = {0.0,    -0.0,     0.1,     std::numeric_limits<double>::max(),
                           5e-324, 2.5e-310, 1e22,    std::numeric_limits<double>::min(),
                           9.995,  1e15,     123456., 0.00012345};
  for (const double value : values) {
    for (const char* format : {"%.400f", "%.340e", "%.17g", "%.900g", "%#.330g", "%.0e", "%g"}) {
      EXPECT_EQ(Both(format, value), Runtime(format, value)) << format;
    }
  }
}

/// Numbers that are hard to round: any bits, halves of a decimal place that a double can be,
/// decimals ending in 5 that it cannot be, and the neighbours of powers of ten and two.
double HardToRound(std::mt19937_64& random) {
  const auto below = [&random](std::uint64_t count) { return static_cast<int>(random() % count); };
  const auto neighbour = [&](double value) {
    const int step = below(3) - 1;
    return step == 0 ? value : std::nextafter(value, step * 1e308);
  };
  switch (random() % 6) {
    case 0:
      return std::fabs(std::bit_cast<double>(random()));
    case 1:
      return std::ldexp(static_cast<double>(random() >> (11 + below(52))), -below(70));
    case 2:
      return neighbour(std::pow(10.0, below(631) - 323));
    case 3:
      return neighbour(std::ldexp(1.0, below(140) - 70));
    case 4:
      return neighbour((static_cast<double>(random() % 1'000'000'000) + 0.5) /
                       std::pow(10.0, below(19)));
    default:
      return static_cast<double>(random() % 10'000) * std::pow(10.0, -below(25));
  }
}

TEST(PrintfFormat, hardRoundingsAgreeWithToChars) {
  std::mt19937_64 random(4713);
  const std::chars_format notations[] = {std::chars_format::fixed, std::chars_format::scientific,
                                         std::chars_format::general};
  for (int i = 0; i < 60000; ++i) {
    const double value = HardToRound(random);
    if (!std::isfinite(value)) continue;
    const auto kind = static_cast<std::size_t>(i % 3);
    const int precision = static_cast<int>(random() % 21);
    char expected[400];
    const auto end = std::to_chars(expected, std::end(expected), value, notations[kind], precision);
    std::wstring text;
    ASSERT_TRUE(FormatString(text,
                             kind == 0   ? L"%.*f"
                             : kind == 1 ? L"%.*e"
                                         : L"%.*g",
                             precision, value));
    ASSERT_EQ(text, WideAscii(std::string(expected, end.ptr)))
        << "conversion " << kind << " of " << std::hexfloat << value << ", precision " << precision;
  }
}

TEST(PrintfFormat, textThatCanHoldTheResultIsUsedAgain) {
  std::wstring text(100, L'x');
  const wchar_t* const place = text.data();
  ASSERT_TRUE(FormatString(text, L"%d %.6f %s", 1, 2.5, L"three"));
  EXPECT_EQ(text, L"1 2.500000 three");
  EXPECT_EQ(text.data(), place);
}

TEST(PrintfFormat, resultsOf8192UnitsFail) {
  const std::string longest(FORMAT_RESULT_LIMIT - 1, 'x');
  const std::string tooLong(FORMAT_RESULT_LIMIT, 'x');
  const struct {
    const char* name;
    std::string result;
    bool fits;
  } rows[] = {
      {"text that just fits", Both(longest), true},
      {"text of the limit", Both(tooLong), false},
      {"text of nine thousand units", Both(std::string(9000, 'y')), false},
      {"width that just fits", Both("%8191d", 1), true},
      {"width of the limit", Both("%8192d", 1), false},
      {"left width of the limit", Both("%-8192d", 1), false},
      {"zeros that just fit", Both("%08190d.", 1), true},
      {"precision of the limit", Both("%.8192d", 1), false},
      {"decimals that just fit", Both("%.8189f", 1.0), true},
      {"decimals of the limit", Both("%.8190f", 1.0), false},
      {"two halves", Both("%4096d%4096d", 1, 1), false},
      {"hexadecimal digits", Both("%.9000a", 1.0), false},
      {"percent signs", Both("%8190d%%", 1), true},
      {"huge width", Both("%99999999999999999999999d", 1), false},
      {"huge precision", Both("%.99999999999999999999999f", 1.0), false},
      {"huge width argument", Both("%*d", std::numeric_limits<int>::min(), 1), false},
      {"huge precision of few digits", Both("%.99999999999g", 0.5), true},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.result.substr(0, 8) != "failed: ", row.fits) << row.name;
  EXPECT_EQ(Both("%.99999999999g", 0.5), "0.5");
}

TEST(PrintfFormat, longTextArgumentsFail) {
  const std::wstring longest(FORMAT_RESULT_LIMIT - 1, L'x');
  const std::wstring tooLong(FORMAT_RESULT_LIMIT, L'x');
  std::wstring text = L"old";
  EXPECT_FALSE(FormatString(text, L"%s", tooLong.c_str()));
  EXPECT_FALSE(AppendFormatString(text, L"%s%c", longest.c_str(), L'y'));
  EXPECT_FALSE(FormatString(text, L"%S", std::string(100000, 'x').c_str()));
  EXPECT_EQ(text, L"old");
  EXPECT_TRUE(FormatString(text, L"%.8191s", tooLong.c_str()));
  EXPECT_EQ(text, longest);
  std::string narrow = "old";
  EXPECT_FALSE(AppendFormatString(narrow, "%ls", tooLong.c_str()));
  EXPECT_EQ(narrow, "old");
}

TEST(PrintfFormat, malformedFormatsFail) {
  for (const char* format : {"%", "abc %", "%5", "%.", "%ll", "%y", "%n", "%hn", "%k", "%'d",
                             "%1$d", "%-", "%.*", "% %"}) {
    EXPECT_EQ(Both(format, 1), "failed: old") << format;
  }
  std::wstring wide = L"old";
  EXPECT_FALSE(FormatString(wide, L"%\u0164", L"x")) << "a unit whose low byte is a conversion";
  EXPECT_EQ(wide, L"old");
}

TEST(PrintfFormat, argumentsMayPointIntoTheTarget) {
  std::wstring text = L"abc";
  EXPECT_TRUE(FormatString(text, L"<%s>", text.c_str()));
  EXPECT_TRUE(AppendFormatString(text, L"%s%s", text.c_str(), text.c_str()));
  EXPECT_EQ(text, L"<abc><abc><abc>");
}

TEST(PrintfFormat, zeroCharactersAreKept) {
  EXPECT_EQ(Wide(L"a%cb", 0), std::wstring(L"a\0b", 3));
  EXPECT_EQ(Narrow("%c%c", 0, 'x'), std::string("\0x", 2));
}

}  // namespace
}  // namespace shr
