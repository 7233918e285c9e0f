// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Where the mappings of the code pages come from: ICU, iconv and the Windows differences compiled
/// in. Internal to the platform layer.
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "shared/platform/CodePageTable.h"

namespace shr::platform {

enum class CodePageSource {
  None,
  /// An ICU converter of single bytes and pairs, read into a table once.
  IcuTable,
  /// The same by iconv.
  IconvTable,
  /// An ICU converter with longer sequences or shift states, asked at each conversion.
  IcuStream
};

struct CodePageConverter {
  std::uint32_t codePage = 0;
  CodePageSource source = CodePageSource::None;
  const char* name = nullptr;
};

/// Returns the converter of a page; its source is `None` where there is none.
CodePageConverter FindConverter(std::uint32_t codePage) noexcept;

/// Reads the table of a page and applies what Windows has otherwise. Returns null when the
/// converter is not installed. Requires: the source is a table.
std::unique_ptr<const CodePageTable> ReadCodePageTable(const CodePageConverter& converter);

/// Append the conversion by an ICU converter. A bad sequence becomes "?", a character that the page
/// lacks one "?" for each of its UTF-16 units. Return false when the converter is not installed.
bool AppendWideByStream(const char* icuName, std::string_view bytes, std::wstring& wide);
bool AppendNarrowByStream(const char* icuName, std::wstring_view text, std::string& narrow);

}  // namespace shr::platform
