// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Threads.h"

#include <unistd.h>

namespace shr::platform {

std::uint32_t CurrentThreadId() noexcept {
  return static_cast<std::uint32_t>(gettid());
}

}  // namespace shr::platform
