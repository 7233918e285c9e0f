// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Points of time as text, for axes and tables: ISO 8601 in UTC.
///
///     std::optional<double> seconds = ParseTime(L"2018-01-31T02:00:15.660Z");
///     GString text = TimeText(*seconds, TimePrecision::Minute);   // "2018-01-31 02:00"
///
/// Units: seconds since 1970-01-01T00:00Z, without leap seconds. Threads: any.

#pragma once

#include <optional>
#include <string_view>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// The last part of a time that is written.
enum class TimePrecision { Year, Month, Day, Minute, Second, Millisecond };

/// The years that `TimeText` and `ParseTime` know: 0000-01-01T00:00Z, and 10000-01-01T00:00Z, which
/// is the first moment behind them.
inline constexpr double FIRST_TIME = -62167219200.0;
inline constexpr double TIME_END = 253402300800.0;

/// Returns "2018-01-31 02:00", cut behind `precision`, not rounded. Degenerate: a dash outside the
/// years 0 to 9999 and for what is no number.
SHARED_API GString TimeText(double seconds, TimePrecision precision);

/// Reads "2018-01-31", "2018-01-31T02:00", with seconds, with a fraction of them, with a blank for
/// the T, and with "Z", "+01:00", "+0100" or "+01" behind; without one of these it is UTC. Also
/// "2018/01/31". Blanks around it are passed over. Returns nothing for any other text and for days
/// that are not.
SHARED_API std::optional<double> ParseTime(std::wstring_view text);

}  // namespace shr
