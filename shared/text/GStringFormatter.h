// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GString` in `std::format`, where the standard library has it; elsewhere this header is empty.
///
/// The format specification is that of strings. It stands apart from shared/text/GString.h because
/// `<format>` is a large header.
///
///     std::wstring line = std::format(L"{:>12}|{}", name, 12);

#pragma once

#include <version>

#ifdef __cpp_lib_format

#include <format>
#include <string_view>

#include "shared/text/GString.h"

/// Formats the text as a `std::wstring_view` is formatted.
template <>
struct std::formatter<shr::GString, wchar_t> : std::formatter<std::wstring_view, wchar_t> {
  template <typename Context>
  auto format(const shr::GString& text, Context& context) const {
    return std::formatter<std::wstring_view, wchar_t>::format(text, context);
  }
};

#endif
