// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The changes that shared/platform/Profile.h offers, as changes of a text in memory.
///
/// New text that the active ANSI page cannot hold makes the whole file UTF-16, little endian, with
/// its mark, on every target to the same bytes. Files with a mark keep their encoding.
///
///     const ProfileResult result = ChangeProfileValue(text, L"Map", L"Title", L"\u6771\u4eac");
///     if (result.bytes) Replace(path, *result.bytes);
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <optional>
#include <string>

#include "shared/platform/ProfileText.h"

namespace shr::platform {

/// What became of a text.
struct ProfileResult {
  bool possible = true;  ///< false when bytes without a meaning would be lost in UTF-16
  std::optional<std::string> bytes = std::nullopt;  ///< nothing when the text need not change
};

/// Sets the value of an entry; a null value removes it.
ProfileResult ChangeProfileValue(const ProfileText& text, const wchar_t* section,
                                 const wchar_t* key, const wchar_t* value);

/// Replaces the lines of a section, each with a zero unit behind it and one more at the end; null
/// removes the section.
ProfileResult ChangeProfileSection(const ProfileText& text, const wchar_t* section,
                                   const wchar_t* lines);

/// Returns whether an ANSI file holds all that a change would write.
bool FitsAnsi(const wchar_t* section, const wchar_t* key, const wchar_t* value);
bool FitsAnsi(const wchar_t* section, const wchar_t* lines);

}  // namespace shr::platform
