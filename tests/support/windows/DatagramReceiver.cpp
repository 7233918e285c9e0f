// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "tests/support/DatagramReceiver.h"

#include <winsock2.h>

#include <stdexcept>

namespace shr::test {

DatagramReceiver::DatagramReceiver() {
  WSADATA data = {};
  WSAStartup(0x0101, &data);
  const SOCKET handle = socket(AF_INET, SOCK_DGRAM, 0);
  socket_ = static_cast<std::intptr_t>(handle);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int size = sizeof address;
  const DWORD patience = 2000;
  if (bind(handle, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      getsockname(handle, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
      setsockopt(handle, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&patience),
                 sizeof patience) != 0) {
    throw std::runtime_error("no loopback socket");
  }
  port_ = ntohs(address.sin_port);
}

DatagramReceiver::~DatagramReceiver() {
  closesocket(static_cast<SOCKET>(socket_));
  WSACleanup();
}

std::optional<std::string> DatagramReceiver::Receive() {
  std::string datagram(65536, '\0');
  const int got =
      recv(static_cast<SOCKET>(socket_), datagram.data(), static_cast<int>(datagram.size()), 0);
  if (got < 0) return std::nullopt;
  datagram.resize(static_cast<std::size_t>(got));
  return datagram;
}

}  // namespace shr::test
