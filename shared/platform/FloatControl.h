// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The control word of the x87 floating-point unit, which the registers of SSE2 do not heed.
///
///     if (!IsX87PrecisionDouble()) ...      // long double sums keep more than 53 bits
///
/// Threads: each thread has a control word of its own.

#pragma once

namespace shr {

/// Returns true when the unit rounds results to 53 bits: bits 8 and 9 of the word are binary 10,
/// which the C runtimes call 0x10000 under the mask 0x30000.
bool IsX87PrecisionDouble() noexcept;

}  // namespace shr
