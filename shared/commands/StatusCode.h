// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// How an operation of a command or a user-interface element ended.

#pragma once

namespace shr {

/// Result of doing, undoing and redoing a command and of running an element.
enum StatusCode {
  Failure = 0,    ///< the operation did not succeed
  Success = 1,    ///< the operation succeeded
  Cancelled = 2,  ///< the operation was declined or cancelled and changed nothing
};

}  // namespace shr
