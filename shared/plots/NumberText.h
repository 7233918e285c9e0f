// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Numbers of any size as people read them in plots and tables.
///
///     GString text = SignificantText(-0.0015, 3);   // "−0.0015"
///
/// Threads: any.

#pragma once

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// Returns `value` with so many significant digits (1 to 17), rounded once, halves of the exact
/// value to even, without zeros at the end of a fraction: "1.25", "−0.0015", and with a power of
/// ten, "3.2 × 10¹²", where it is not read at a glance. The whole part of a number below 1e9 keeps
/// all of its digits. Degenerate: a dash for what is no finite number; "0" for both zeros.
/// Bytes: the same on both targets.
SHARED_API GString SignificantText(double value, int digits);

}  // namespace shr
