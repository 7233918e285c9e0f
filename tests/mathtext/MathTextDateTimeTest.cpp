// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every part of a picture at values with one and two digits; literals; what the C library
// makes of the formats that it knows; times outside their ranges.

#include "shared/mathtext/MathTextDateTime.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

namespace shr {
namespace {

std::tm TimeOf(int year, int month, int day, int weekday, int hour, int minute, int second) {
  std::tm time{};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_wday = weekday;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  return time;
}

const std::tm EARLY = TimeOf(2005, 3, 4, 5, 0, 6, 7);
const std::tm LATE = TimeOf(1999, 12, 31, 5, 23, 59, 58);

TEST(MathTextDateTime, writesEachPartOfAPicture) {
  const struct {
    const wchar_t* picture;
    const wchar_t* format;
    const wchar_t* early;
    const wchar_t* late;
  } rows[] = {
      {L"", L"", L"", L""},
      {L"d/dd", L"%#d/%d", L"4/04", L"31/31"},
      {L"ddd, dddd", L"%a, %A", L"Fri, Friday", L"Fri, Friday"},
      {L"M.MM.MMM.MMMM", L"%#m.%m.%b.%B", L"3.03.Mar.March", L"12.12.Dec.December"},
      {L"yy yyyy", L"%y %Y", L"05 2005", L"99 1999"},
      {L"h hh tt", L"%#I %I %p", L"12 12 AM", L"11 11 PM"},
      {L"H HH t", L"%#H %H %#p", L"0 00 A", L"23 23 P"},
      {L"m:mm s:ss", L"%#M:%M %#S:%S", L"6:06 7:07", L"59:59 58:58"},
      {MATH_TEXT_DATE, L"%Y-%m-%d", L"2005-03-04", L"1999-12-31"},
      {MATH_TEXT_TIME, L"%H:%M", L"00:06", L"23:59"},
      {L"ddddd", L"%A%#d", L"Friday4", L"Friday31"},
      {L"'day' d", L"day %#d", L"day 4", L"day 31"},
      {L"H 'o''clock'", L"%#H o'clock", L"0 o'clock", L"23 o'clock"},
      {L"'' ''''", L" '", L" '", L" '"},
      {L"d 'open d", L"%#d open d", L"4 open d", L"31 open d"},
      {L"100% '%d' d%", L"100%% %%d %#d%%", L"100% %d 4%", L"100% %d 31%"},
      {L"#p \u5e74", L"#p \u5e74", L"#p \u5e74", L"#p \u5e74"},
  };
  for (const auto& row : rows) {
    const std::string name = GString(row.picture).ToUtf8();
    EXPECT_EQ(MathTextDTToPrintfFormat(row.picture), row.format) << name;
    EXPECT_EQ(FormatMathTextDateTime(row.picture, EARLY), row.early) << name;
    EXPECT_EQ(FormatMathTextDateTime(row.picture, LATE), row.late) << name;
  }
}

TEST(MathTextDateTime, agreesWithTheCLibraryWhereThatKnowsTheFormat) {
  const GString picture = L"dd ddd dddd MM MMM MMMM yy yyyy hh HH mm ss tt 100%";
  const GString format = MathTextDTToPrintfFormat(picture);
  for (int hour = 0; hour < 24; ++hour) {
    const std::tm time = TimeOf(2000 + hour, hour % 12 + 1, hour + 1, hour % 7, hour, hour, hour);
    wchar_t text[200] = {};
    ASSERT_GT(std::wcsftime(text, std::size(text), format.c_str(), &time), 0u);
    EXPECT_EQ(FormatMathTextDateTime(picture, time), text);
  }
}

TEST(MathTextDateTime, writesTimesOutsideTheirRanges) {
  std::tm time = TimeOf(-44, 15, 40, 9, 99, -5, 100);
  EXPECT_EQ(FormatMathTextDateTime(L"dddd ddd MMMM d.M.yyyy yy HH:mm:ss", time),
            L"? ? ? 40.15.-0044 56 99:-05:100");
  time.tm_year = 2147483647;
  EXPECT_EQ(FormatMathTextDateTime(L"yyyy", time), L"2147485547");
}

}  // namespace
}  // namespace shr
