// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <string>

#include "shared/plots/Ticks.h"
#include "shared/plots/TimeText.h"

namespace shr {

// A step is so many equal parts of time (up to two weeks), so many months, or so many years. All
// are counted in integers from a fixed origin, so that a tick stays where it is when the axis is
// moved or grows.

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::int64_t MINUTE = 60;
constexpr std::int64_t HOUR = 3600;
constexpr std::int64_t DAY = 86400;
constexpr std::int64_t WEEK = 7 * DAY;
/// The first Monday since 1970; weeks begin there.
constexpr std::int64_t FIRST_MONDAY = 4 * DAY;

struct EqualStep {
  std::int64_t seconds;
  TimePrecision precision;
};

constexpr EqualStep EQUAL_STEPS[] = {
    {1, TimePrecision::Second},           {2, TimePrecision::Second},
    {5, TimePrecision::Second},           {10, TimePrecision::Second},
    {15, TimePrecision::Second},          {30, TimePrecision::Second},
    {MINUTE, TimePrecision::Minute},      {2 * MINUTE, TimePrecision::Minute},
    {5 * MINUTE, TimePrecision::Minute},  {10 * MINUTE, TimePrecision::Minute},
    {15 * MINUTE, TimePrecision::Minute}, {30 * MINUTE, TimePrecision::Minute},
    {HOUR, TimePrecision::Minute},        {2 * HOUR, TimePrecision::Minute},
    {3 * HOUR, TimePrecision::Minute},    {6 * HOUR, TimePrecision::Minute},
    {12 * HOUR, TimePrecision::Minute},   {DAY, TimePrecision::Day},
    {2 * DAY, TimePrecision::Day},        {WEEK, TimePrecision::Day},
    {2 * WEEK, TimePrecision::Day},
};
constexpr std::int64_t MONTH_STEPS[] = {1, 2, 3, 6};

/// Returns the first moment of a month, which are counted from the year 0.
double MonthStart(std::int64_t month) {
  const year_month_day date{std::chrono::year(static_cast<int>(month / 12)),
                            std::chrono::month(static_cast<unsigned>(month % 12 + 1)),
                            std::chrono::day(1)};
  return static_cast<double>(sys_days(date).time_since_epoch().count()) * static_cast<double>(DAY);
}

/// Returns the month in which a time lies.
std::int64_t MonthOf(double seconds) {
  const year_month_day date{
      sys_days(days(static_cast<int>(std::floor(seconds / static_cast<double>(DAY)))))};
  return static_cast<int>(date.year()) * std::int64_t{12} + static_cast<unsigned>(date.month()) - 1;
}

TickSet Equal(double lo, double hi, const EqualStep& step) {
  const double origin = step.seconds % WEEK == 0 ? static_cast<double>(FIRST_MONDAY) : 0.0;
  const auto size = static_cast<double>(step.seconds);
  TickSet set;
  for (double k = std::ceil((lo - origin) / size); origin + k * size <= hi; k += 1) {
    const double value = origin + k * size;
    set.ticks.push_back({value, TimeText(value, step.precision)});
  }
  return set;
}

/// Stops when there are more than `most`.
TickSet Months(double lo, double hi, std::int64_t step, std::size_t most, TimePrecision precision) {
  TickSet set;
  for (std::int64_t month = (MonthOf(lo) + step - 1) / step * step; month < 10000 * 12;
       month += step) {
    const double value = MonthStart(month);
    if (value > hi || set.ticks.size() > most) break;
    if (value >= lo) set.ticks.push_back({value, TimeText(value, precision)});
  }
  return set;
}

/// Ticks at parts of a second, counted from the whole second before the first.
TickSet Parts(double lo, double hi, std::size_t most) {
  constexpr double FINEST = 1e6;
  const double second = std::floor(lo);
  constexpr int MULTIPLES[] = {5, 2, 1};
  TickSet best;
  for (double parts = 10; parts <= FINEST; parts *= 10) {
    for (const int multiple : MULTIPLES) {
      TickSet set;
      const double first = std::floor((lo - second) * parts / multiple) * multiple;
      for (double k = first; second + k / parts <= hi; k += multiple) {
        if (second + k / parts < lo) continue;
        if (set.ticks.size() > most) return best;
        const auto digits = static_cast<std::int64_t>(k) % static_cast<std::int64_t>(parts);
        const std::wstring text =
            std::to_wstring(static_cast<std::int64_t>(parts) + digits).substr(1);
        set.ticks.push_back(
            {second + k / parts, TimeText(second + std::floor(k / parts), TimePrecision::Second) +
                                     L"." + GString(text)});
      }
      if (set.ticks.size() > most) return best;
      best = std::move(set);
    }
  }
  return best;
}

/// Moves the day, or else the year, that all labels share to the context.
void ShareDay(TickSet& set) {
  constexpr std::size_t DAY_LENGTH = 10;
  constexpr std::size_t YEAR_LENGTH = 4;
  if (set.ticks.empty()) return;
  const GString first = set.ticks.front().label;
  for (const std::size_t length : {DAY_LENGTH, YEAR_LENGTH}) {
    const bool isShared = std::all_of(set.ticks.begin(), set.ticks.end(), [&](const Tick& tick) {
      return tick.label.substr(0, length) == first.substr(0, length);
    });
    if (!isShared) continue;
    set.context = first.substr(0, length);
    for (Tick& tick : set.ticks) tick.label.erase(0, length + 1);
    return;
  }
}

}  // namespace

TickSet TimeTicks(double lo, double hi, std::size_t most) {
  if (!(lo < hi)) return TickSet();
  if (lo < FIRST_TIME || hi >= TIME_END) return LinearTicks(lo, hi, most);
  const double wanted = (hi - lo) / static_cast<double>(most);
  if (wanted < 0.5) {
    TickSet set = Parts(lo, hi, most);
    ShareDay(set);
    if (!set.ticks.empty()) return set;
  }
  for (const EqualStep& step : EQUAL_STEPS) {
    if (static_cast<double>(step.seconds) < wanted) continue;
    TickSet set = Equal(lo, hi, step);
    if (set.ticks.size() > most) continue;
    if (step.seconds < DAY) ShareDay(set);
    return set;
  }
  for (const std::int64_t step : MONTH_STEPS) {
    TickSet set = Months(lo, hi, step, most, TimePrecision::Month);
    if (set.ticks.size() <= most) return set;
  }
  for (std::int64_t years = 1;; years *= 10) {
    for (const std::int64_t multiple : {1, 2, 5}) {
      TickSet set = Months(lo, hi, 12 * years * multiple, most, TimePrecision::Year);
      if (set.ticks.size() <= most) return set;
    }
  }
}

}  // namespace shr
