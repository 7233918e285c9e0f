// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Configuration files on the disk: reading them through a cache, and replacing them under a lock.
///
/// A change reads the file, makes the new bytes, writes them to a file beside it, hands that to the
/// disk and renames it over the old one. Writers of this library, in any process, take turns by a
/// lock on the folder. Readers need no lock, since they see the old file or the whole new one.
///
///     ReadProfile(path, [&](ProfileText& text) { title = text.FindValue(L"Map", L"Title"); });
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <functional>
#include <optional>
#include <string>

#include "shared/platform/posix/ProfileText.h"
#include "shared/text/GString.h"

namespace shr::platform {

/// Hands the text of a file to `read`, which is not called for a missing file. Returns false, with
/// `errno` telling why, when the file cannot be read.
bool ReadProfile(const GString& path, const std::function<void(ProfileText&)>& read);

/// Hands the text, the empty one of a missing file, to `change`, which returns the new bytes, or
/// nothing to leave the file alone. Returns false, with `errno` telling why and the file as it was,
/// when that failed.
bool ChangeProfile(const GString& path,
                   const std::function<std::optional<std::string>(const ProfileText&)>& change);

}  // namespace shr::platform
