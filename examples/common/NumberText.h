// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Numbers as the pages of the examples write them: in English, the same on every machine.

#pragma once

#include <cstddef>

#include "shared/text/GString.h"

namespace examples {

using shr::GString;

/// Returns "1,679".
GString FormatCount(std::size_t count);

/// Returns "1 country" or "12 countries".
GString FormatCount(std::size_t count, const wchar_t* one, const wchar_t* many);

/// Returns `value` with `decimals` digits behind the point and a true minus sign, never "-0".
GString FormatNumber(double value, std::size_t decimals);

/// The same, without zeros at the end of the fraction: "2.5", "30".
GString FormatShort(double value, std::size_t decimals);

/// Returns `value` with so many significant digits, correctly rounded, without zeros at the end:
/// "1.25", "−0.0015", "3.2 × 10¹²" above and below what is read at a glance; a dash for what is no
/// finite number.
GString FormatSignificant(double value, int digits);

}  // namespace examples
