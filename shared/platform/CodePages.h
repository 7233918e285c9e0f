// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Conversion between wide text and narrow text in a numbered code page, one implementation a
/// target.
///
/// Page 0 is the active ANSI page, 1 the OEM page, 65001 UTF-8. All functions take counted text:
/// zero bytes and zero units are characters like any other. Bad input never fails: a bad sequence
/// becomes the page's replacement, an unpaired surrogate the default character. Threads: all
/// functions may be called on any thread.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "shared/Export.h"

namespace shr::platform {

/// Returns the page that the numbers of the active pages (0 to 3) stand for at this time, a number
/// of that range where there is none. Other numbers come back as they are.
SHARED_API std::uint32_t ActualCodePage(std::uint32_t codePage);

/// Returns true when text in `codePage` can be converted on this target.
SHARED_API bool IsCodePageServed(std::uint32_t codePage);

/// Sets the page behind the number 0 for the program and returns true. Returns false, changing
/// nothing, for a page that is not served, UTF-16 and UTF-7, and where the system sets it, unless
/// it is that page.
SHARED_API bool SetActiveCodePage(std::uint32_t codePage);

/// Appends the conversion of `bytes` to `wide`. Returns false, leaving `wide` unchanged, when the
/// page is not served.
SHARED_API bool AppendWide(std::uint32_t codePage, std::string_view bytes, std::wstring& wide);

/// Appends the conversion of `text` to `narrow`. Characters that the page lacks become its best-fit
/// letter or its default character. Returns false, leaving `narrow` unchanged, when the page is not
/// served.
SHARED_API bool AppendNarrow(std::uint32_t codePage, std::wstring_view text, std::string& narrow);

}  // namespace shr::platform
