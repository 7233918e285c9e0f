// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The code pages that the library converts itself, alike on both targets. Internal to the platform
/// layer.
///
/// These are the Unicode pages (1200, 1201, 65001) and the pages that the Windows interface may
/// refuse: the national EBCDIC, ISO and telex sets, and 29593 and 29595 for the ISO pages 28593 and
/// 28595. Part of the tables is data of Unicode, Inc. (tools/codepages/README.md). Threads: all
/// functions may be called on any thread.

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "shared/platform/CodePageTable.h"

namespace shr::platform {

inline constexpr std::uint32_t UTF16_LITTLE_ENDIAN_PAGE = 1200;
inline constexpr std::uint32_t UTF16_BIG_ENDIAN_PAGE = 1201;
inline constexpr std::uint32_t UTF8_PAGE = 65001;

/// Returns true for the pages that are UTF-8 and UTF-16.
bool IsUtfPage(std::uint32_t codePage) noexcept;

/// Appends the conversion from or to a page for which `IsUtfPage` holds.
void AppendWideFromUtf(std::uint32_t utfPage, std::string_view bytes, std::wstring& wide);
void AppendNarrowToUtf(std::uint32_t utfPage, std::wstring_view text, std::string& narrow);

/// Returns true when the library has a table of its own for a page.
bool HasLibraryTable(std::uint32_t codePage) noexcept;

/// Returns the library's own table of a page, or null when it has none. The table lives for ever.
const CodePageTable* LibraryCodePageTable(std::uint32_t codePage);

/// A page of ASCII and pairs of high bytes that are those of another page.
struct EucPage {
  std::uint32_t codePage;
  std::uint32_t basePage;
  unsigned char lastLead;
};

/// Returns the row of a page, or null when it is none of this kind.
const EucPage* FindEucPage(std::uint32_t codePage) noexcept;

/// Builds the table of such a page. `decodePair` gives the unit of a pair in the base page, "?" for
/// none.
std::unique_ptr<const CodePageTable> BuildEucTable(
    const EucPage& page, const std::function<char16_t(unsigned lead, unsigned trail)>& decodePair);

}  // namespace shr::platform
