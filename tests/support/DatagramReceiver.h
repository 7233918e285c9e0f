// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A collector of UDP datagrams on the loopback address, for tests of what is sent.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace shr::test {

class DatagramReceiver {
public:
  /// Binds a free port of 127.0.0.1; throws `std::runtime_error` when that fails.
  DatagramReceiver();
  ~DatagramReceiver();
  DatagramReceiver(const DatagramReceiver&) = delete;
  DatagramReceiver& operator=(const DatagramReceiver&) = delete;

  int Port() const { return port_; }

  /// Waits at most two seconds for the next datagram.
  std::optional<std::string> Receive();

private:
  std::intptr_t socket_;
  int port_ = 0;
};

}  // namespace shr::test
