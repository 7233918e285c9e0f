// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The operations on configuration files as the platform has them: its private-profile functions on
/// Windows, the same operations on the same syntax elsewhere.
///
/// For reading and writing settings use shared/files/ConfigFile.h. What a line means, which
/// encodings are kept and how files are replaced outside Windows is described in
/// docs/configuration-files.md.
///
///     wchar_t value[1024];
///     const std::size_t length = platform::ReadProfileValue(path, L"Map", L"Title", value);
///
/// Paths are full paths. Names and values end at their first zero unit. Failures are told by false;
/// `LastErrorText` (shared/platform/RawFile.h) then has the system's words for them.
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstddef>
#include <span>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr::platform {

/// Copies the value of an entry with a terminating zero and returns its length; a missing entry,
/// and one in a file that cannot be read, has the empty value. A value that does not fit is cut and
/// fills the buffer. Requires: a buffer of at least two units.
SHARED_API std::size_t ReadProfileValue(const GString& path, const GString& section,
                                        const GString& key, std::span<wchar_t> buffer);

/// Copies the lines of a section, a zero unit behind each and one more at the end, and returns
/// their length without that last one. Lines that do not fit are cut, and the result is then the
/// size of the buffer less 2. Requires: a buffer of at least two units.
SHARED_API std::size_t ReadProfileSection(const GString& path, const GString& section,
                                          std::span<wchar_t> buffer);

/// Stores the value of an entry; a null value removes the entry. Returns true also when there was
/// nothing to remove.
SHARED_API bool SetProfileValue(const GString& path, const GString& section, const GString& key,
                                const wchar_t* value);

/// Replaces the lines of a section by `lines`, each with a zero unit behind it and one more at the
/// end; null removes the section. Returns true also when there was nothing to remove.
SHARED_API bool SetProfileSection(const GString& path, const GString& section,
                                  const wchar_t* lines);

}  // namespace shr::platform
