// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Datagram.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

namespace shr::platform {

bool StartSockets() noexcept {
  return true;
}

void StopSockets() noexcept {}

SocketHandle OpenDatagramSocket() noexcept {
  return socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

void CloseSocket(SocketHandle socket) noexcept {
  close(static_cast<int>(socket));
}

std::uint16_t ToNetworkOrder(std::uint16_t port) noexcept {
  return htons(port);
}

bool ParseDottedAddress(const std::string& text, std::uint32_t& address) noexcept {
  in_addr parsed = {};
  if (inet_pton(AF_INET, text.c_str(), &parsed) != 1) return false;
  address = parsed.s_addr;
  return true;
}

bool ResolveHost(const std::string& name, std::uint32_t& address) noexcept {
  addrinfo hints = {};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_DGRAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(name.c_str(), nullptr, &hints, &found) != 0) return false;
  sockaddr_in target = {};
  std::memcpy(&target, found->ai_addr, sizeof target);
  freeaddrinfo(found);
  address = target.sin_addr.s_addr;
  return true;
}

bool SendDatagram(SocketHandle socket, const DatagramTarget& target, const void* bytes,
                  std::size_t count) noexcept {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = target.port;
  address.sin_addr.s_addr = target.address;
  const ssize_t sent = sendto(static_cast<int>(socket), bytes, count, MSG_NOSIGNAL,
                              reinterpret_cast<const sockaddr*>(&address), sizeof address);
  return sent == static_cast<ssize_t>(count);
}

}  // namespace shr::platform
