// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Threads.h"

#include <windows.h>

namespace shr::platform {

std::uint32_t CurrentThreadId() noexcept {
  return GetCurrentThreadId();
}

}  // namespace shr::platform
