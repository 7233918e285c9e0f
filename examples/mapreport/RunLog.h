// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The log of a run: a file, a remote collector, or nothing.

#pragma once

#include <optional>

#include "shared/diagnostics/Timer.h"
#include "shared/text/GString.h"

namespace mapreport {

using shr::GString;

/// A collector of log lines.
struct RemoteLog {
  GString host;
  int port = 0;
};

/// Reads "HOST:PORT" with a port from 1 to 65535.
std::optional<RemoteLog> ParseRemoteLog(const GString& text);

/// Sets the process's logger up; the destructor writes how long the run took.
class RunLog {
public:
  /// Begins a new log file unless `path` is empty, and sends the lines of the steps and the errors
  /// to `remote` when there is one. Without either nothing is logged.
  /// Errors: the library's exception when the file cannot be written; `ThrowInputError` when the
  /// collector's host has no address.
  RunLog(const GString& path, const std::optional<RemoteLog>& remote);
  ~RunLog();
  RunLog(const RunLog&) = delete;
  RunLog& operator=(const RunLog&) = delete;

private:
  shr::CTimer timer_;
};

/// Logs an error. Never throws: the log may be what failed.
void LogFailure(const GString& message) noexcept;

}  // namespace mapreport
