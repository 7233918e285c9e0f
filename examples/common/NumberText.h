// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Counts and numbers of so many decimals as the pages of the examples write them: in English, the
/// same on every machine. For significant digits see shared/plots/NumberText.h.

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

}  // namespace examples
