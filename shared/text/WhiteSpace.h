// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The white space of the token parsers, fixed and independent of locale and target.
///
/// The set is that of the Windows runtime's `iswspace` in its start-up locale. The trim functions
/// do not use it (they follow the global C++ locale), nor do the number parsers (ASCII only).
///
///     while (IsWhiteSpace(*next)) ++next;
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstdint>

namespace shr {

/// Returns true for tab, line feed, vertical tab, form feed, carriage return and space.
constexpr bool IsAsciiSpace(std::uint32_t unit) noexcept {
  return unit == 0x20 || unit - 0x09 < 5u;
}

/// Returns true for the ASCII spaces and for the space characters beyond ASCII, the no-break space
/// included.
constexpr bool IsWhiteSpace(wchar_t ch) noexcept {
  const auto unit = static_cast<std::uint32_t>(ch);
  if (unit < 0x80) return IsAsciiSpace(unit);
  if (unit - 0x2000 < 0x0B) return true;
  switch (unit) {
    case 0x00A0:  // no-break space
    case 0x1680:  // ogham space mark
    case 0x2028:  // line separator
    case 0x2029:  // paragraph separator
    case 0x202F:  // narrow no-break space
    case 0x205F:  // medium mathematical space
    case 0x3000:  // ideographic space
      return true;
    default:
      return false;
  }
}

/// The same for narrow text, whose bytes beyond ASCII are never white space: without a code page
/// they have no meaning of their own.
constexpr bool IsWhiteSpace(char ch) noexcept {
  return IsAsciiSpace(static_cast<unsigned char>(ch));
}

}  // namespace shr
