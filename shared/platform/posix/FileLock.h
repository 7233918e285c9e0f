// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The lock by which writers of settings take turns, waited for no longer than a bounded time: a
/// process that is stopped while it holds the lock must not stop all others.

#pragma once

#include <sys/file.h>
#include <time.h>

#include <algorithm>
#include <cerrno>

namespace shr::platform {

enum class LockResult { Held, Unsupported, TimedOut };

/// Value of `errno` behind `TimedOut`. It is none of the system's; `LastErrorText` knows it.
inline constexpr int LOCK_TIMED_OUT = 0x5348'5201;

/// How long others are waited for.
inline constexpr int LOCK_PATIENCE_SECONDS = 3;

/// Takes the exclusive lock (flock) of an open file or folder, which lasts until it is closed.
/// `Unsupported` means that the file system has no such locks.
inline LockResult TakeLock(int descriptor) {
  timespec begin = {};
  clock_gettime(CLOCK_MONOTONIC, &begin);
  constexpr long LONGEST_PAUSE = 5'000'000;
  for (long pause = 50'000;; pause = std::min(2 * pause, LONGEST_PAUSE)) {
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return LockResult::Held;
    if (errno != EWOULDBLOCK && errno != EINTR) return LockResult::Unsupported;
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    if (now.tv_sec - begin.tv_sec > LOCK_PATIENCE_SECONDS) break;
    const timespec rest = {0, pause};
    nanosleep(&rest, nullptr);
  }
  errno = LOCK_TIMED_OUT;
  return LockResult::TimedOut;
}

}  // namespace shr::platform
