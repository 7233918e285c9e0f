// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Configuration files on the disk: reading them through a cache, and replacing them under a lock.
///
/// A change reads the file, makes the new bytes and replaces the file by them
/// (shared/platform/FileReplacement.h). Writers of this library, in any process, take turns by a
/// lock on the folder, for which they wait a few seconds and then give up. Readers need no lock,
/// since they see the old file or the whole new one.
///
///     ReadProfile(path, [&](ProfileText& text) { title = text.FindValue(L"Map", L"Title"); });
///
/// Threads: all functions may be called on any thread.

#pragma once

#include <functional>

#include "shared/platform/ProfileChange.h"
#include "shared/text/GString.h"

namespace shr::platform {

/// Hands the text of a file to `read`, which is not called for a missing file. Returns false, with
/// `errno` telling why, when the file cannot be read.
bool ReadProfile(const GString& path, const std::function<void(ProfileText&)>& read);

/// Hands the text, the empty one of a missing file, to `change`, which returns the new bytes, or
/// none to leave the file alone. Returns false, with `errno` telling why and the file as it was,
/// when that failed.
bool ChangeProfile(const GString& path,
                   const std::function<ProfileResult(const ProfileText&)>& change);

}  // namespace shr::platform
