// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Facts about threads that the standard library does not give.

#pragma once

#include <cstdint>
#include <optional>

#include "shared/Export.h"

namespace shr::platform {

/// Returns the operating system's id of the calling thread.
SHARED_API std::uint32_t CurrentThreadId() noexcept;

/// Addresses of a stack, which grows from `high` down to `low`.
struct StackBounds {
  std::uintptr_t low = 0;
  std::uintptr_t high = 0;
};

/// Returns the stack that the system gave the calling thread, as far as it may grow; absent when
/// the system does not tell. Code that switches to a stack of its own, as coroutine libraries do,
/// runs outside of it unless it tells the system. Cost: some nanoseconds from the second call of a
/// thread on.
SHARED_API std::optional<StackBounds> ThreadStackBounds() noexcept;

/// Returns the address that the stack of the running code has reached.
SHARED_API std::uintptr_t StackPosition() noexcept;

/// Has three functions called around every `fork` of the process from now on: before it, and behind
/// it in the parent and in the child. Does nothing where processes are not forked.
void CallAroundFork(void (*before)(), void (*inParent)(), void (*inChild)());

}  // namespace shr::platform
