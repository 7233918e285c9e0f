// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "tests/support/DatagramReceiver.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <stdexcept>

namespace shr::test {

DatagramReceiver::DatagramReceiver() : socket_(socket(AF_INET, SOCK_DGRAM, 0)) {
  const int handle = static_cast<int>(socket_);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  const timeval patience = {2, 0};
  if (bind(handle, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      getsockname(handle, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
      setsockopt(handle, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience) != 0) {
    throw std::runtime_error("no loopback socket");
  }
  port_ = ntohs(address.sin_port);
}

DatagramReceiver::~DatagramReceiver() {
  close(static_cast<int>(socket_));
}

std::optional<std::string> DatagramReceiver::Receive() {
  std::string datagram(65536, '\0');
  const ssize_t got = recv(static_cast<int>(socket_), datagram.data(), datagram.size(), 0);
  if (got < 0) return std::nullopt;
  datagram.resize(static_cast<std::size_t>(got));
  return datagram;
}

}  // namespace shr::test
