// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The upper case of a unit, as the system compares the names of settings: a unit is replaced only
/// when the lower case of its upper case leads back to it.
///
/// Threads: all functions may be called on any thread.

#pragma once

namespace shr::platform {

/// Returns the upper case of a unit that is not ASCII, or the unit itself.
wchar_t UpperCaseOfWide(wchar_t unit);

/// Returns the upper case of any unit, or the unit itself.
inline wchar_t UpperCaseOfName(wchar_t unit) {
  if (static_cast<unsigned>(unit) >= 0x80) return UpperCaseOfWide(unit);
  return unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(unit - L'a' + L'A') : unit;
}

}  // namespace shr::platform
