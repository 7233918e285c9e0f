// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The code pages in which escape sequences change between character sets, alike on both targets:
/// 50220, 50221 and 50222 (ISO-2022-JP), 50225 (ISO-2022-KR) and 52936 (HZ). Internal to the
/// platform layer.
///
/// A conversion keeps no state: it begins in ASCII and leaves what it writes closed, in ASCII, so
/// that texts may be joined and cut at line ends. A line feed ends every shift. The systems' own
/// converters do not agree about that, which is why none of them is asked.
///
/// Written: 50220 turns half-width katakana into full-width ones, 50221 shifts to them by ESC ( I,
/// 50222 by SO and SI. Read: all of these forms and 8-bit katakana on each of the three pages.
/// Sources: RFC 1468, 1554 and 2237 (Japanese), RFC 1557 (Korean), RFC 1843 (HZ).
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace shr::platform {

/// Converts in the double-byte pages that the sets are taken from.
struct PairConverter {
  /// Gives the unit of a pair, "?" for none.
  char16_t (*decode)(std::uint32_t codePage, unsigned lead, unsigned trail);
  /// Gives the byte or pair of a unit, best-fit ones included.
  std::uint16_t (*encode)(std::uint32_t codePage, char16_t unit);
};

bool IsShiftedPage(std::uint32_t codePage) noexcept;

/// Append the conversion from or to a page for which `IsShiftedPage` holds. A half or unknown pair
/// and an unknown escape sequence become one "?", a tilde of HZ that begins nothing itself; a
/// character that the page lacks becomes one "?" for each of its UTF-16 units.
void AppendWideFromShifted(std::uint32_t codePage, std::string_view bytes, std::wstring& wide,
                           const PairConverter& converter);
void AppendNarrowToShifted(std::uint32_t codePage, std::wstring_view text, std::string& narrow,
                           const PairConverter& converter);

}  // namespace shr::platform
