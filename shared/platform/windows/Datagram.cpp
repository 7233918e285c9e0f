// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The calls are those of Windows Sockets 1.1, which every Windows has.

#include "shared/platform/Datagram.h"

#include <winsock2.h>

#include <cstring>

namespace shr::platform {
namespace {

constexpr WORD SOCKETS_VERSION = 0x0101;

SOCKET Native(SocketHandle socket) {
  return static_cast<SOCKET>(socket);
}

}  // namespace

bool StartSockets() noexcept {
  WSADATA data = {};
  return WSAStartup(SOCKETS_VERSION, &data) == 0;
}

void StopSockets() noexcept {
  WSACleanup();
}

SocketHandle OpenDatagramSocket() noexcept {
  return static_cast<SocketHandle>(socket(AF_INET, SOCK_DGRAM, 0));
}

void CloseSocket(SocketHandle socket) noexcept {
  closesocket(Native(socket));
}

std::uint16_t ToNetworkOrder(std::uint16_t port) noexcept {
  return htons(port);
}

bool ParseDottedAddress(const std::string& text, std::uint32_t& address) noexcept {
  // inet_addr also takes numbers with fewer parts, which are names here.
  std::size_t dots = 0;
  for (const char ch : text) {
    if (ch == '.') {
      ++dots;
    } else if (ch < '0' || ch > '9') {
      return false;
    }
  }
  if (dots != 3) return false;
  const unsigned long parsed = inet_addr(text.c_str());
  if (parsed == INADDR_NONE && text != "255.255.255.255") return false;
  address = parsed;
  return true;
}

bool ResolveHost(const std::string& name, std::uint32_t& address) noexcept {
  const hostent* host = gethostbyname(name.c_str());
  if (host == nullptr || host->h_addrtype != AF_INET || host->h_addr_list[0] == nullptr) {
    return false;
  }
  std::memcpy(&address, host->h_addr_list[0], sizeof address);
  return true;
}

bool SendDatagram(SocketHandle socket, const DatagramTarget& target, const void* bytes,
                  std::size_t count) noexcept {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = target.port;
  address.sin_addr.s_addr = target.address;
  const int sent = sendto(Native(socket), static_cast<const char*>(bytes), static_cast<int>(count),
                          0, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  return sent >= 0 && static_cast<std::size_t>(sent) == count;
}

}  // namespace shr::platform
