// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The laws of ticks over all sizes and places of ranges, ends that are ticks themselves, ranges of
// every kind of time, logarithms at powers of ten.

#include "shared/plots/Ticks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "shared/plots/TimeText.h"
#include "shared/text/StringUtility.h"

using namespace shr;

namespace {

std::vector<std::wstring> Labels(const TickSet& set) {
  std::vector<std::wstring> labels;
  for (const Tick& tick : set.ticks) {
    if (!tick.label.empty()) labels.push_back(tick.label);
  }
  return labels;
}

std::wstring Joined(const TickSet& set) {
  std::wstring text;
  for (const std::wstring& label : Labels(set)) text += (text.empty() ? L"" : L" ") + label;
  if (!set.context.empty()) text += L" | " + set.context;
  return text;
}

/// The power of ten that labels share.
int SharedExponent(const GString& context) {
  if (context.empty()) return 0;
  for (int exponent = -330; exponent <= 330; ++exponent) {
    if (context == L"\xD7 " + PowerOfTenText(exponent)) return exponent;
  }
  ADD_FAILURE() << context;
  return 0;
}

/// The value of a label by the C library.
double ReadLabel(const GString& label, int exponent) {
  std::string text;
  for (const wchar_t unit : label) text += unit == L'\x2212' ? '-' : static_cast<char>(unit);
  return std::strtod((text + "e" + std::to_string(exponent)).c_str(), nullptr);
}

void CheckLaws(const TickSet& set, double lo, double hi, std::size_t most) {
  const std::vector<std::wstring> labels = Labels(set);
  EXPECT_LE(labels.size(), most);
  EXPECT_EQ(labels.size(), std::set<std::wstring>(labels.begin(), labels.end()).size());
  double last = -std::numeric_limits<double>::infinity();
  for (const Tick& tick : set.ticks) {
    EXPECT_GE(tick.value, lo);
    EXPECT_LE(tick.value, hi);
    EXPECT_GT(tick.value, last);
    last = tick.value;
  }
}

void CheckLinear(double lo, double hi, std::size_t most) {
  SCOPED_TRACE(std::to_string(most) + " ticks in " + DoubleToString(lo, 17) + " to " +
               DoubleToString(hi, 17));
  const TickSet set = LinearTicks(lo, hi, most);
  CheckLaws(set, lo, hi, most);
  EXPECT_GE(set.ticks.size(), most >= 5 ? 2u : 0u);
  const int exponent = SharedExponent(set.context);
  for (const Tick& tick : set.ticks) EXPECT_EQ(tick.value, ReadLabel(tick.label, exponent));
}

}  // namespace

TEST(Ticks, ofRangesThatPeopleKnow) {
  struct Row {
    const char* name;
    double lo, hi;
    std::size_t most;
    const wchar_t* expected;
  };
  const Row rows[] = {
      {"unit", 0, 1, 6, L"0.0 0.2 0.4 0.6 0.8 1.0"},
      {"tenths do not add up noise", 0.1, 0.7, 8, L"0.1 0.2 0.3 0.4 0.5 0.6 0.7"},
      {"across zero", -12, 31, 6,
       L"\x2212"
       L"10 0 10 20 30"},
      {"ends that are no ticks", 0.3, 2.2, 6, L"0.5 1.0 1.5 2.0"},
      {"hundreds of thousands", 0, 250000, 6, L"0 50000 100000 150000 200000 250000"},
      {"millions", 0, 2.2e7, 5, L"0 5 10 15 20 | \xD7 10\x2076"},
      {"small", 0, 4.2e-7, 5, L"0 100 200 300 400 | \xD7 10\x207B\x2079"},
      {"an offset", 1000000.25, 1000000.75, 6,
       L"1.0000003 1.0000004 1.0000005 1.0000006 1.0000007 | \xD7 10\x2076"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.expected, Joined(LinearTicks(row.lo, row.hi, row.most))) << row.name;
  }
}

TEST(Ticks, keepTheirLawsFromTheSmallestToTheLargestNumbers) {
  std::mt19937_64 random(20261122);
  std::uniform_real_distribution<double> unit(0, 1);
  for (int exponent = -300; exponent <= 300; exponent += 4) {
    const double size = std::pow(10.0, exponent);
    for (int i = 0; i < 3; ++i) {
      const double lo = (unit(random) - 0.5) * size;
      const double width = size * std::pow(10.0, -11 * unit(random));
      if (width > 1e-299) CheckLinear(lo, lo + width, 2 + random() % 12);
    }
    CheckLinear(-size, size, 5);
    CheckLinear(0, size, 10);
    CheckLinear(size, 10 * size, 7);
  }
  const double largest = std::numeric_limits<double>::max();
  CheckLinear(-largest, largest, 7);
}

TEST(Ticks, ofRangesThatAreNoneAreNone) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const auto& [lo, hi] : {std::pair(1.0, 1.0), std::pair(2.0, 1.0), std::pair(0.0, infinity),
                               std::pair(-infinity, 0.0), std::pair(nan, 1.0), std::pair(0.0, nan)})
    EXPECT_TRUE(LinearTicks(lo, hi, 5).ticks.empty());
  // Neighbouring doubles: nothing to mark, and no endless loop.
  const double next = std::nextafter(1e300, infinity);
  EXPECT_LE(LinearTicks(1e300, next, 5).ticks.size(), 5u);
  EXPECT_LE(LinearTicks(0, std::numeric_limits<double>::denorm_min(), 5).ticks.size(), 5u);
}

TEST(Ticks, ofLogarithmicAxes) {
  struct Row {
    const char* name;
    double lo, hi;
    std::size_t most;
    const wchar_t* expected;
  };
  const Row rows[] = {
      {"three decades", 0.5, 3.5, 6, L"10 100 1000"},
      {"ends at powers", 0, 3, 6, L"1 10 100 1000"},
      {"small ones", -3, -1, 6, L"0.001 0.01 0.1"},
      {"many", -20, 20, 5,
       L"10\x207B\xB2\x2070 10\x207B\xB9\x2070 10\x2070 10\xB9\x2070 "
       L"10\xB2\x2070"},
      {"digits", 0.1, 1.1, 6, L"2 5 10"},
      {"within a digit", 0.31, 0.59, 5, L"2.5 3.0 3.5"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.expected, Joined(LogTicks(row.lo, row.hi, row.most))) << row.name;
  }
  for (double lo = -300; lo < 300; lo += 7.3) {
    for (double width = 0.001; lo + width < 307; width *= 2.7) {
      const TickSet set = LogTicks(lo, lo + width, 6);
      const double slack = 1e-10;
      CheckLaws(set, std::pow(10.0, lo) * (1 - slack), std::pow(10.0, lo + width) * (1 + slack), 6);
      EXPECT_FALSE(set.ticks.empty()) << lo << " " << width;
    }
  }
}

TEST(Ticks, logarithmsAreExactAtPowersOfTenAndRightElsewhere) {
  for (int exponent = -300; exponent <= 300; ++exponent) {
    double power = 0;
    StringToDouble("1e" + std::to_string(exponent), power);
    EXPECT_EQ(exponent, Log10Of(power));
  }
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> exponent(-300, 300);
  for (int i = 0; i < 2000; ++i) {
    const double value = std::exp2(exponent(random));
    const double expected = std::log10(value);
    EXPECT_NEAR(expected, Log10Of(value), 1e-15 * std::max(1.0, std::abs(expected)));
  }
}

TEST(Ticks, ofTimes) {
  struct Row {
    const char* name;
    const wchar_t* lo;
    const wchar_t* hi;
    std::size_t most;
    const wchar_t* expected;
  };
  const Row rows[] = {
      {"centuries", L"0100-01-01", L"2018-01-01", 5, L"0500 1000 1500 2000"},
      {"years", L"2015-03-01", L"2018-06-01", 5, L"2016 2017 2018"},
      {"months", L"2017-11-15", L"2018-03-15", 5, L"2017-12 2018-01 2018-02 2018-03"},
      {"quarters", L"2017-01-01", L"2018-01-01", 5, L"2017-01 2017-04 2017-07 2017-10 2018-01"},
      {"Mondays", L"2018-01-31", L"2018-02-28", 5, L"2018-02-05 2018-02-12 2018-02-19 2018-02-26"},
      {"days", L"2018-02-27", L"2018-03-02", 5, L"2018-02-27 2018-02-28 2018-03-01 2018-03-02"},
      {"hours of two days", L"2018-02-28T12:00", L"2018-03-01T13:00", 5,
       L"02-28 12:00 02-28 18:00 03-01 00:00 03-01 06:00 03-01 12:00 | 2018"},
      {"minutes", L"2018-02-28T12:01", L"2018-02-28T12:17", 5, L"12:05 12:10 12:15 | 2018-02-28"},
      {"seconds", L"2018-02-28T12:00:58", L"2018-02-28T12:01:02", 5,
       L"12:00:58 12:00:59 12:01:00 12:01:01 12:01:02 | 2018-02-28"},
      {"parts of a second", L"2018-02-28T12:00:59.4", L"2018-02-28T12:01:00.1", 5,
       L"12:00:59.4 12:00:59.6 12:00:59.8 12:01:00.0 | 2018-02-28"},
  };
  for (const Row& row : rows) {
    const TickSet set = TimeTicks(*ParseTime(row.lo), *ParseTime(row.hi), row.most);
    EXPECT_EQ(row.expected, Joined(set)) << row.name;
  }
  for (double width = 1e-4; width < 3e11; width *= 1.37) {
    for (const double lo : {FIRST_TIME, -1.0, 0.0, 1517363999.66}) {
      if (lo + width >= TIME_END) continue;
      SCOPED_TRACE(width);
      const TickSet set = TimeTicks(lo, lo + width, 6);
      CheckLaws(set, lo, lo + width, 6);
      EXPECT_FALSE(set.ticks.empty());
    }
  }
  EXPECT_EQ(L"100 200 300 400 500 | \xD7 10\x2079", Joined(TimeTicks(1e10, 5e11, 5)));
}

TEST(TimeText, isReadInItsForms) {
  const std::pair<const wchar_t*, double> rows[] = {
      {L"1970-01-01", 0},
      {L" 2018-01-31 ", 1517356800},
      {L"2018/01/31", 1517356800},
      {L"2018-01-31T02:00", 1517364000},
      {L"2018-01-31 02:00:15.660Z", 1517364015.66},
      {L"2018-01-31T02:00:15,5+01:30", 1517358615.5},
      {L"2018-01-31T02:00:15-0230", 1517373015},
      {L"2016-02-29", 1456704000},
      {L"1969-12-31T23:59:59", -1},
      {L"2017-12-31T24:00", 1514764800},
      {L"0000-01-01", FIRST_TIME},
  };
  for (const auto& [text, expected] : rows) EXPECT_EQ(expected, ParseTime(text)) << text;
  for (const wchar_t* const text :
       {L"", L"2018", L"2018-1-31", L"2018-02-29", L"2018-13-01", L"2018-01/31", L"2018-01-31T",
        L"2018-01-31T25:00", L"2018-01-31T24:01", L"2018-01-31T02:60", L"2018-01-31T02:00:",
        L"2018-01-31T02:00:15.", L"2018-01-31T02:00+", L"2018-01-31x", L"12345", L"-2018-01-31",
        L"2018-01-31T02:00Z1", L"0000-01-01T00:00+01:00"}) {
    EXPECT_EQ(std::nullopt, ParseTime(text)) << text;
  }
}

TEST(TimeText, roundTripsAndCuts) {
  EXPECT_EQ(L"2018-01-31 02:00", TimeText(1517364015.66, TimePrecision::Minute));
  EXPECT_EQ(L"1969-12-31 23:59:59.500", TimeText(-0.5, TimePrecision::Millisecond));
  EXPECT_EQ(L"\x2013", TimeText(TIME_END, TimePrecision::Year));
  EXPECT_EQ(L"\x2013", TimeText(std::nan(""), TimePrecision::Year));
  for (double seconds = FIRST_TIME; seconds < TIME_END; seconds += 86400.0 * 1234 + 4567) {
    EXPECT_EQ(seconds, ParseTime(TimeText(seconds, TimePrecision::Second)));
  }
}
