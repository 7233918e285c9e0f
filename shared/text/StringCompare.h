// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Case-insensitive comparison of text, the key order of the library's registries.
///
/// Only the ASCII letters fold; all other code units compare by value. The process locale plays no
/// part, so the order is the same on every machine. Threads: all functions may be called on any
/// thread.

#pragma once

#include <string_view>

#include "shared/Export.h"

namespace shr {

/// Returns a negative value, zero or a positive value as `a` is ordered before, equal to or after
/// `b` when the ASCII letters of both are taken as lower case. Embedded zero units take part like
/// any other.
SHARED_API int CompareNoCase(std::wstring_view a, std::wstring_view b) noexcept;
SHARED_API int CompareNoCase(std::string_view a, std::string_view b) noexcept;

/// Order of keys that ignores ASCII case.
struct StringLess {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept {
    return CompareNoCase(a, b) < 0;
  }
  bool operator()(std::wstring_view a, std::wstring_view b) const noexcept {
    return CompareNoCase(a, b) < 0;
  }
};

/// Equality of keys that ignores ASCII case.
struct StringEquivalent {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept {
    return a.size() == b.size() && CompareNoCase(a, b) == 0;
  }
  bool operator()(std::wstring_view a, std::wstring_view b) const noexcept {
    return a.size() == b.size() && CompareNoCase(a, b) == 0;
  }
};

}  // namespace shr
