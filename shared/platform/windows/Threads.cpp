// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Threads.h"

#include <windows.h>

namespace shr::platform {

std::uint32_t CurrentThreadId() noexcept {
  return GetCurrentThreadId();
}

std::optional<StackBounds> ThreadStackBounds() noexcept {
  // The system keeps these up to date for fibers, too.
  ULONG_PTR low = 0;
  ULONG_PTR high = 0;
  GetCurrentThreadStackLimits(&low, &high);
  if (high <= low) return std::nullopt;
  return StackBounds{low, high};
}

std::uintptr_t StackPosition() noexcept {
  const volatile char here = 0;
  return reinterpret_cast<std::uintptr_t>(&here);
}

void CallAroundFork(void (*)(), void (*)(), void (*)()) {}

}  // namespace shr::platform
