// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Runs a part of a test in a process of its own.

#pragma once

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace shr::test {

/// Runs `action` in a process of its own and returns that process.
template <typename Action>
pid_t Start(Action action) {
  std::fflush(stdout);  // else the child may print it again
  const pid_t child = fork();
  if (child == 0) {
    action();
    _exit(0);
  }
  return child;
}

/// Waits for the end of a process and returns its status.
inline int Wait(pid_t child) {
  int status = -1;
  waitpid(child, &status, 0);
  return status;
}

}  // namespace shr::test
