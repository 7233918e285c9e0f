// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `PortableLog` and `PortableExp`: the natural logarithm and the exponential function with the
/// same bits on every target and every processor, for one value or for arrays of them.
///
/// The functions of the C library differ in the last bit from one to the next, which is enough to
/// make two machines write different files. These use additions, multiplications and one division
/// only, and are at least as fast for arrays.
///
///     const double logarithm = PortableLog(2.0);
///     std::vector<double> logarithms(values.size());
///     PortableLog(values, logarithms);
///
/// Threads: no state.

#pragma once

#include <span>

#include "shared/Export.h"

namespace shr {

/// Largest error of `PortableLog` and `PortableExp`, in units in the last place of the result.
inline constexpr double PORTABLE_LOG_ULPS = 1.0;
inline constexpr double PORTABLE_EXP_ULPS = 1.0;

/// Returns the natural logarithm. Laws: 0 at 1, exactly. Degenerate: -infinity at 0, NaN below, and
/// what it gets for infinity and NaN. Error bound: `PORTABLE_LOG_ULPS`. Source: reduction to
/// [sqrt(1/2), sqrt(2)) and the series of 2 artanh(f / (2 + f)), as in P. Tang, "Table-driven
/// implementation of the logarithm function in IEEE floating-point arithmetic", ACM Transactions on
/// Mathematical Software 16 (1990), with a minimax polynomial made for this library.
[[nodiscard]] SHARED_API double PortableLog(double x);

/// Returns e^x. Laws: 1 at 0, exactly. Degenerate: infinity above 709.78, NaN for NaN; results
/// below the smallest normal number, where x < -708.396, are 0. Error bound: `PORTABLE_EXP_ULPS`.
/// Source: W. Cody and W. Waite, "Software Manual for the Elementary Functions", 1980, chapter 6,
/// with a minimax polynomial made for this library.
[[nodiscard]] SHARED_API double PortableExp(double x);

/// The same for each of `x`, into `results` of the same length, which may be the same memory.
/// Requires: equal lengths; what is behind the shorter one is left alone.
SHARED_API void PortableLog(std::span<const double> x, std::span<double> results);
SHARED_API void PortableExp(std::span<const double> x, std::span<double> results);

}  // namespace shr
