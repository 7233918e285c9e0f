// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The comparison of names in any letter case, as the registry and configuration files need it.
///
/// Names are compared in a folded form, as Windows compares names of the registry (observed there):
/// a unit is replaced by its simple upper case when that letter's simple lower case leads back to
/// it. So "a" and "A" are one, and "ı", "ſ", "ς" and title-case digraphs stay letters of their own.
/// Threads: all functions may be called on any thread.

#pragma once

#include <unicode/uchar.h>

namespace shr::platform {

/// Folds a UTF-16 unit or a code point; surrogates and code points beyond 16 bits stay.
template <typename Unit>
Unit FoldNameUnit(Unit unit) {
  const auto code = static_cast<UChar32>(unit);
  if (code < 0x80) {
    return code >= 'a' && code <= 'z' ? static_cast<Unit>(code - 'a' + 'A') : unit;
  }
  if (code > 0xFFFF) return unit;
  const UChar32 upper = u_toupper(code);
  return upper <= 0xFFFF && u_tolower(upper) == code ? static_cast<Unit>(upper) : unit;
}

}  // namespace shr::platform
