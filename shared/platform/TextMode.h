// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the letters "t" and "b" of a stream mode mean on this target.
///
/// Threads: all functions may be called on any thread.

#pragma once

#include "shared/Export.h"

namespace shr::platform {

/// Returns true when files opened in text mode hold CR LF where the program sees a line feed.
SHARED_API bool TextModeTranslatesLineEnds() noexcept;

}  // namespace shr::platform
