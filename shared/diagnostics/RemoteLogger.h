// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CRemoteLogger` sends log lines as UDP datagrams to a collector that reads the syslog form.
///
/// Nothing here throws for a failure of the network: results say what happened.
///
///     CRemoteLogger remote(L"127.0.0.1", 514, 2000);
///     remote.Send(L"started");   // the datagram "<6> started"
///
/// Threads: one thread an object. A host name is resolved on a short-lived thread of its own, so
/// that a name service that does not answer costs no more than the time-out.

#pragma once

#include <cstdint>

#include "shared/Export.h"
#include "shared/text/GString.h"
#include "shared/text/PrintfArguments.h"

namespace shr {

/// A destination of log lines, with the socket that reaches it.
class SHARED_API CRemoteLogger {
public:
  /// Starts the socket library and, when `host` is not empty, calls `SetHost`.
  CRemoteLogger(const GString& host, int port, unsigned long timeOutMilliseconds);
  ~CRemoteLogger();
  CRemoteLogger(const CRemoteLogger&) = delete;
  CRemoteLogger& operator=(const CRemoteLogger&) = delete;

  /// Closes the socket and opens one for the new destination. `host` is a dotted IPv4 address, or
  /// a name that is looked up for at most the time-out. Returns false, leaving no socket, when the
  /// port is not in 1 to 65535, no socket can be made, or the name has no address in time.
  bool SetHost(const GString& host, int port, unsigned long timeOutMilliseconds);

  /// Sends "<6> " and the line in the active ANSI code page as one datagram. Returns true when the
  /// system took it; false when disabled, without a socket or refused.
  bool Send(const GString& line);
  /// Formats like `GString::FormatString` and sends the result; false also when formatting fails.
  bool SendVA(const wchar_t* format, ...);
  template <typename... Arguments>
  requires FormatObjects<Arguments...>
  bool SendVA(const wchar_t* format, const Arguments&... arguments) {
    return FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...}) &&
           SendVA(format, CArgument(ToFormatArgument(arguments))...);
  }
  template <typename Format, typename... Arguments>
  requires NoFormatObjects<Arguments...>
  bool SendVA(const Format& format, const Arguments&... arguments) = delete;

  void Enable(bool enable) noexcept { enabled_ = enable; }
  /// Returns true when the logger is enabled and holds a socket.
  bool IsEnabled() const noexcept;

private:
  void Close() noexcept;

  bool enabled_ = true;
  bool socketsStarted_;
  std::intptr_t socket_;
  std::uint32_t address_ = 0;
  std::uint16_t port_ = 0;
};

}  // namespace shr
