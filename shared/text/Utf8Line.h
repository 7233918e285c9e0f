// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Finds and decodes a line of UTF-8 in one pass. Internal to the text files.

#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace shr {

/// A decoded line, its line feed included.
struct Utf8Line {
  std::size_t bytes = 0;  ///< 0: no line end was reached
  std::size_t units = 0;
};

/// Decodes the first line of `bytes` like `Utf8ToWide`. The search gives up, with nothing found,
/// where fewer than 33 bytes or units are left.
Utf8Line DecodeUtf8Line(std::string_view bytes, std::span<wchar_t> out) noexcept;

}  // namespace shr
