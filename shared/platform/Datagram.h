// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Sending UDP datagrams over IPv4.
///
/// Nothing here blocks but `ResolveHost`, which waits for the name service as long as that takes.
/// Threads: all functions may be called on any thread; one thread a socket.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "shared/Export.h"

namespace shr::platform {

using SocketHandle = std::intptr_t;
inline constexpr SocketHandle NO_SOCKET = -1;

/// Makes the socket library usable; calls are counted. Returns false when that fails.
SHARED_API bool StartSockets() noexcept;
/// Takes one successful `StartSockets` back.
SHARED_API void StopSockets() noexcept;

/// Returns a new IPv4 UDP socket, or `NO_SOCKET`.
SHARED_API SocketHandle OpenDatagramSocket() noexcept;
SHARED_API void CloseSocket(SocketHandle socket) noexcept;

/// An IPv4 address and a port, in the byte order of the network.
struct DatagramTarget {
  std::uint32_t address = 0;
  std::uint16_t port = 0;
};

/// Returns `port` in the byte order of the network.
SHARED_API std::uint16_t ToNetworkOrder(std::uint16_t port) noexcept;

/// Reads a dotted address such as "127.0.0.1"; returns false for any other text.
SHARED_API bool ParseDottedAddress(const std::string& text, std::uint32_t& address) noexcept;

/// Asks the name service for the IPv4 address of a host.
SHARED_API bool ResolveHost(const std::string& name, std::uint32_t& address) noexcept;

/// Sends one datagram of exactly these bytes; returns true when the system took it.
SHARED_API bool SendDatagram(SocketHandle socket, const DatagramTarget& target, const void* bytes,
                             std::size_t count) noexcept;

}  // namespace shr::platform
