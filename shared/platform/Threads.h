// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Facts about threads that the standard library does not give.

#pragma once

#include <cstdint>

#include "shared/Export.h"

namespace shr::platform {

/// Returns the operating system's id of the calling thread.
SHARED_API std::uint32_t CurrentThreadId() noexcept;

}  // namespace shr::platform
