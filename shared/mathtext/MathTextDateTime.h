// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Dates and times by pictures such as "d MMMM yyyy", as the commands `\date`, `\time` and `\dt` of
/// math text write them. Points of time of plots are in shared/plots/TimeText.h.
///
/// | part | gives | part | gives |
/// | --- | --- | --- | --- |
/// | `d`, `dd` | day, without and with a zero before it | `h`, `hh` | hour 1 to 12 |
/// | `ddd`, `dddd` | "Mon", "Monday" | `H`, `HH` | hour 0 to 23 |
/// | `M`, `MM` | month 1 to 12 | `m`, `mm` | minute |
/// | `MMM`, `MMMM` | "Jan", "January" | `s`, `ss` | second |
/// | `yy`, `yyyy` | year of the century, year | `t`, `tt` | "A" or "P", "AM" or "PM" |
///
/// Text between apostrophes stands for itself, two of them inside it for one; what is left open
/// ends with the picture. Of a longer run the longest part is taken first ("ddddd" is `dddd` and
/// `d`). All other characters stand for themselves.
///
///     GString text = FormatMathTextDateTime(L"d MMMM yyyy", moment);   // "5 March 2026"
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <ctime>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// Pictures of `\date` and `\time`.
inline constexpr const wchar_t* MATH_TEXT_DATE = L"yyyy-MM-dd";
inline constexpr const wchar_t* MATH_TEXT_TIME = L"HH:mm";

/// Returns the picture as a format of `strftime`, of which it uses %a %A %b %B %d %H %I %m %M %p %S
/// %y %Y; a "%" of the picture is doubled. The parts without a zero before them, and `t`, carry the
/// flag "#" ("%#d"). `strftime` of Windows knows it for numbers; elsewhere the zero would stay, so
/// `FormatMathTextDateTime` is the way to write the same text everywhere.
SHARED_API GString MathTextDTToPrintfFormat(const GString& picture);

/// Returns `time` by `picture`. Names are English, whatever the locale. Degenerate: a weekday or
/// month outside its range is written as "?", numbers are written as they are.
SHARED_API GString FormatMathTextDateTime(const GString& picture, const std::tm& time);

}  // namespace shr
