// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/TimeText.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

namespace shr {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::int64_t SECONDS_OF_DAY = 86400;

/// Reads digits and marks from the front of a text.
class Reader {
public:
  explicit Reader(std::wstring_view text) : text_(text) {}

  bool AtEnd() const { return at_ == text_.size(); }
  bool Take(wchar_t ch) {
    if (AtEnd() || text_[at_] != ch) return false;
    ++at_;
    return true;
  }
  /// Reads exactly so many digits as a number up to `largest`; sets the failure otherwise.
  int Number(int digits, int largest) {
    int value = 0;
    for (int i = 0; i < digits; ++i) value = 10 * value + Digit();
    if (value > largest) hasFailed_ = true;
    return value;
  }
  double Fraction() {
    double value = 0;
    double unit = 1;
    constexpr double SMALLEST = 1e-9;
    if (!IsAtDigit()) hasFailed_ = true;
    while (IsAtDigit()) {
      const int digit = Digit();
      if (unit <= SMALLEST) continue;
      value = 10 * value + digit;
      unit /= 10;
    }
    // One division, so that .660 is the double nearest to it.
    return value / std::nearbyint(1 / unit);
  }
  bool IsAtDigit() const { return !AtEnd() && text_[at_] >= L'0' && text_[at_] <= L'9'; }
  void Fail() { hasFailed_ = true; }
  bool HasFailed() const { return hasFailed_; }

private:
  int Digit() {
    if (!IsAtDigit()) {
      hasFailed_ = true;
      return 0;
    }
    return text_[at_++] - L'0';
  }

  std::wstring_view text_;
  std::size_t at_ = 0;
  bool hasFailed_ = false;
};

std::int64_t ReadDay(Reader& reader) {
  const int year = reader.Number(4, 9999);
  const wchar_t mark = reader.Take(L'-') ? L'-' : L'/';
  if (mark == L'/' && !reader.Take(L'/')) reader.Fail();
  const int month = reader.Number(2, 12);
  if (!reader.Take(mark)) reader.Fail();
  const int day = reader.Number(2, 31);
  const year_month_day date{std::chrono::year(year),
                            std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) {
    reader.Fail();
    return 0;
  }
  return sys_days(date).time_since_epoch().count();
}

/// Reads hours and minutes, and seconds where there are any; 24:00 is the end of the day.
double ReadTimeOfDay(Reader& reader) {
  const int hours = reader.Number(2, 24);
  if (!reader.Take(L':')) reader.Fail();
  const int minutes = reader.Number(2, 59);
  double seconds = 0;
  if (reader.Take(L':')) {
    seconds = reader.Number(2, 59);
    if (reader.Take(L'.') || reader.Take(L',')) seconds += reader.Fraction();
  }
  if (hours == 24 && (minutes != 0 || seconds != 0)) reader.Fail();
  return hours * 3600.0 + minutes * 60.0 + seconds;
}

/// Reads how far the clock is ahead of UTC, in seconds.
double ReadZone(Reader& reader) {
  if (reader.Take(L'Z') || reader.Take(L'z')) return 0;
  const double sign = reader.Take(L'-') || reader.Take(L'\x2212') ? -1 : 1;
  if (sign > 0 && !reader.Take(L'+')) reader.Fail();
  const int hours = reader.Number(2, 23);
  const bool hasMinutes = reader.Take(L':') || reader.IsAtDigit();
  return sign * (hours * 3600.0 + (hasMinutes ? reader.Number(2, 59) * 60.0 : 0.0));
}

std::wstring_view WithoutBlanks(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(L" \t");
  if (first == std::wstring_view::npos) return std::wstring_view();
  return text.substr(first, text.find_last_not_of(L" \t") + 1 - first);
}

void AppendPadded(std::wstring& text, std::int64_t number, std::size_t width) {
  const std::wstring digits = std::to_wstring(number);
  if (digits.size() < width) text.append(width - digits.size(), L'0');
  text += digits;
}

}  // namespace

GString TimeText(double seconds, TimePrecision precision) {
  if (!(seconds >= FIRST_TIME && seconds < TIME_END)) return L"\u2013";
  const double whole = std::floor(seconds);
  const auto total = static_cast<std::int64_t>(whole);
  const std::int64_t ofDay = ((total % SECONDS_OF_DAY) + SECONDS_OF_DAY) % SECONDS_OF_DAY;
  const auto day = static_cast<int>((total - ofDay) / SECONDS_OF_DAY);
  const year_month_day date{sys_days(days(day))};
  std::wstring text;
  AppendPadded(text, static_cast<int>(date.year()), 4);
  text += L'-';
  AppendPadded(text, static_cast<unsigned>(date.month()), 2);
  text += L'-';
  AppendPadded(text, static_cast<unsigned>(date.day()), 2);
  text += L' ';
  AppendPadded(text, ofDay / 3600, 2);
  text += L':';
  AppendPadded(text, ofDay / 60 % 60, 2);
  text += L':';
  AppendPadded(text, ofDay % 60, 2);
  text += L'.';
  AppendPadded(text, static_cast<std::int64_t>((seconds - whole) * 1000), 3);
  // How much of "2018-01-31 02:00:15.660" each precision takes.
  constexpr std::array<std::size_t, 6> LENGTHS = {4, 7, 10, 16, 19, 23};
  return text.substr(0, LENGTHS[static_cast<std::size_t>(precision)]);
}

std::optional<double> ParseTime(std::wstring_view text) {
  Reader reader(WithoutBlanks(text));
  double seconds = static_cast<double>(ReadDay(reader) * SECONDS_OF_DAY);
  if (!reader.AtEnd()) {
    if (!reader.Take(L'T') && !reader.Take(L't') && !reader.Take(L' ')) reader.Fail();
    seconds += ReadTimeOfDay(reader);
    if (!reader.AtEnd()) seconds -= ReadZone(reader);
  }
  if (reader.HasFailed() || !reader.AtEnd()) return std::nullopt;
  if (seconds < FIRST_TIME || seconds >= TIME_END) return std::nullopt;
  return seconds;
}

}  // namespace shr
