// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Threads.h"

#include <pthread.h>
#include <unistd.h>

#include <cstddef>

namespace shr::platform {
namespace {

StackBounds QueryStackBounds() noexcept {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return {};
  void* lowest = nullptr;
  std::size_t size = 0;
  std::size_t guard = 0;
  const bool isKnown = pthread_attr_getstack(&attributes, &lowest, &size) == 0 &&
                       pthread_attr_getguardsize(&attributes, &guard) == 0;
  pthread_attr_destroy(&attributes);
  if (!isKnown || size <= guard) return {};
  // Some versions count the guard as part of the stack.
  const auto low = reinterpret_cast<std::uintptr_t>(lowest);
  return {low + guard, low + size};
}

}  // namespace

std::uint32_t CurrentThreadId() noexcept {
  return static_cast<std::uint32_t>(gettid());
}

std::optional<StackBounds> ThreadStackBounds() noexcept {
  // For the first thread the system reads a file to find out.
  thread_local const StackBounds bounds = QueryStackBounds();
  if (bounds.high == 0) return std::nullopt;
  return bounds;
}

std::uintptr_t StackPosition() noexcept {
  // The address of a variable would not do: sanitizers keep variables elsewhere.
  return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}

void CallAroundFork(void (*before)(), void (*inParent)(), void (*inChild)()) {
  pthread_atfork(before, inParent, inChild);
}

}  // namespace shr::platform
