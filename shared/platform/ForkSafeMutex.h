// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A mutex of the whole process that a child of `fork` can take, and that outlives static
/// destructors.
///
/// While another thread holds a mutex a child would wait for it for ever, and what it guards may be
/// half changed. So the thread that forks takes it before, and the child begins with a free one.
///
///     struct ListTag;  // in an anonymous namespace: it tells this mutex from others
///     std::mutex& ListMutex() {
///       static ForkSafeMutex<std::mutex, ListTag> mutex;
///       return mutex.Get();
///     }
///
/// Threads: any.

#pragma once

#include <new>

#include "shared/platform/Threads.h"

namespace shr::platform {

/// Owns the mutex of one place of the program, told apart by `Tag`.
template <typename Mutex, typename Tag>
class ForkSafeMutex {
public:
  ForkSafeMutex() {
    if (mutex_ != nullptr) return;
    mutex_ = new Mutex;
    CallAroundFork([] { mutex_->lock(); }, [] { mutex_->unlock(); },
                   [] { ::new (static_cast<void*>(mutex_)) Mutex; });
  }
  ForkSafeMutex(const ForkSafeMutex&) = delete;
  ForkSafeMutex& operator=(const ForkSafeMutex&) = delete;

  Mutex& Get() { return *mutex_; }

private:
  inline static Mutex* mutex_ = nullptr;
};

}  // namespace shr::platform
