// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reading of numbers at the head of a text, what `StringToDouble` and `CTokenizer` are made of.
///
/// These functions skip no white space and say where the number ends; whole texts are parsed by
/// shared/text/StringUtility.h. No locale takes part and nothing is allocated.
///
///     const wchar_t* const last = text + length;
///     const RealPrefix<wchar_t> number = ParseRealPrefix(text, last);
///     if (number.status == RealStatus::Ok) ...      // number.value; the rest begins at number.end
///
/// Threads: all functions may be called on any thread.

#pragma once

namespace shr {

enum class RealStatus {
  None,     ///< The text does not begin with a number.
  Ok,       ///< The value is the nearest double.
  Overflow  ///< The value is an infinity with the sign written.
};

template <typename Char>
struct RealPrefix {
  const Char* end = nullptr;  ///< Behind the number; the first unit when there is none.
  double value = 0;
  RealStatus status = RealStatus::None;
};

/// Reads the longest real number (syntax of `StringToDouble`) that begins at `first`. An "e"
/// without digits behind it does not belong to the number.
template <typename Char>
RealPrefix<Char> ParseRealPrefix(const Char* first, const Char* last) noexcept;

extern template RealPrefix<char> ParseRealPrefix(const char*, const char*) noexcept;
extern template RealPrefix<wchar_t> ParseRealPrefix(const wchar_t*, const wchar_t*) noexcept;

}  // namespace shr
