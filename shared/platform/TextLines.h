// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The line end of the platform's text files.

#pragma once

#include "shared/Export.h"

namespace shr::platform {

/// What a newline becomes in a text file: CR LF on Windows, a line feed on Linux.
SHARED_API extern const wchar_t* const TEXT_LINE_END;

}  // namespace shr::platform
