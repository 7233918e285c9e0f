// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Share modes of open files by record locks on reserved offsets far behind any data.

#pragma once

#include "shared/platform/RawFile.h"

namespace shr::platform {

/// What one opener does with a file and allows others to do meanwhile.
struct FileUse {
  bool reads = false;
  bool writes = false;
  FileSharing sharing = FileSharing::All;
};

/// Registers the use of a freshly opened regular file for as long as its open file description
/// lives. Returns false, with errno set, when another opener's use conflicts; the caller then
/// closes the file.
bool RegisterFileUse(int descriptor, const FileUse& use);

/// Returns whether the share modes of other openers allow the use at this moment, without
/// registering it; otherwise false with errno set. For uses that end at once.
bool IsFileUseAllowed(int descriptor, const FileUse& use);

}  // namespace shr::platform
