// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The library's own UTF-8 and UTF-16 codecs, the same on both targets.
///
/// A wide unit is a UTF-16 unit on Windows and a code point on Linux. Decoding to code points joins
/// surrogate pairs and encoding to UTF-16 makes them; an unpaired surrogate passes through UTF-16
/// in both directions unchanged and becomes U+FFFD in UTF-8. Threads: all functions may be called
/// on any thread.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "shared/Export.h"

namespace shr {

enum class ByteOrder { LittleEndian, BigEndian };

/// The most wide units that a character takes.
inline constexpr std::size_t UNITS_PER_CHARACTER = sizeof(wchar_t) == 2 ? 2 : 1;

/// Writes a character to `out` and returns the number of its units: 2 on Windows beyond U+FFFF,
/// else
/// 1. Requires: `character` is at most U+10FFFF, and `out` has room for `UNITS_PER_CHARACTER`.
inline std::size_t CharacterToWide(char32_t character, wchar_t* out) noexcept {
  if constexpr (UNITS_PER_CHARACTER == 2) {
    if (character > 0xFFFF) {
      out[0] = static_cast<wchar_t>(0xD7C0 + (character >> 10));
      out[1] = static_cast<wchar_t>(0xDC00 | (character & 0x3FF));
      return 2;
    }
  }
  out[0] = static_cast<wchar_t>(character);
  return 1;
}

/// Decodes UTF-8 and returns the number of units written to `out`.
/// Every maximal part of an ill-formed sequence becomes one U+FFFD (The Unicode Standard,
/// section 3.9, "U+FFFD Substitution of Maximal Subparts"). Requires: `out` has room for
/// `bytes.size()` units.
SHARED_API std::size_t Utf8ToWide(std::string_view bytes, wchar_t* out) noexcept;

/// Returns the length of the longest head of `bytes` that does not end inside a UTF-8 sequence that
/// could still be completed; the rest is at most three bytes.
SHARED_API std::size_t Utf8CompleteLength(std::string_view bytes) noexcept;

/// Encodes as UTF-8 and returns the number of bytes written to `out`.
/// Requires: `out` has room for `text.size() * UTF8_BYTES_PER_UNIT` bytes.
SHARED_API std::size_t WideToUtf8(std::wstring_view text, char* out) noexcept;

/// The most bytes that one wide unit takes in UTF-8.
inline constexpr std::size_t UTF8_BYTES_PER_UNIT = sizeof(wchar_t) == 2 ? 3 : 4;

/// Decodes UTF-16 and returns the number of units written to `out`. An odd last byte becomes
/// U+FFFD. Requires: `out` has room for `(bytes.size() + 1) / 2` units.
SHARED_API std::size_t Utf16ToWide(std::string_view bytes, ByteOrder order, wchar_t* out) noexcept;

/// Returns the length of the longest head of `bytes` that ends neither inside a unit nor behind the
/// first half of a surrogate pair; the rest is at most three bytes.
SHARED_API std::size_t Utf16CompleteLength(std::string_view bytes, ByteOrder order) noexcept;

/// Encodes as UTF-16 and returns the number of bytes written to `out`. Values above U+10FFFF become
/// U+FFFD. Requires: `out` has room for `text.size() * sizeof(wchar_t)` bytes.
SHARED_API std::size_t WideToUtf16(std::wstring_view text, ByteOrder order, char* out) noexcept;

}  // namespace shr
