// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/diagnostics/RemoteLogger.h"

#include <chrono>
#include <condition_variable>
#include <cstdarg>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>

#include "shared/platform/Datagram.h"

namespace shr {
namespace {

constexpr std::uint32_t ANSI_CODE_PAGE = 0;
constexpr int LAST_PORT = 65535;

/// Priority of an informational message of the kernel facility, in front of every datagram.
constexpr const char* PRIORITY = "<6> ";

/// What the resolving thread and the waiting caller share; whoever leaves last frees it.
struct Resolution {
  std::mutex mutex;
  std::condition_variable answered;
  bool done = false;
  bool found = false;
  std::uint32_t address = 0;
};

void Resolve(const std::shared_ptr<Resolution>& resolution, const std::string& name) {
  std::uint32_t address = 0;
  const bool found = platform::ResolveHost(name, address);
  const std::lock_guard lock(resolution->mutex);
  resolution->done = true;
  resolution->found = found;
  resolution->address = address;
  resolution->answered.notify_one();
}

bool ResolveInTime(const std::string& name, unsigned long timeOutMilliseconds,
                   std::uint32_t& address) {
  const auto resolution = std::make_shared<Resolution>();
  try {
    std::thread(Resolve, resolution, name).detach();
  } catch (const std::system_error&) {
    return false;
  }
  std::unique_lock lock(resolution->mutex);
  const bool inTime =
      resolution->answered.wait_for(lock, std::chrono::milliseconds(timeOutMilliseconds),
                                    [&resolution] { return resolution->done; });
  if (!inTime || !resolution->found) return false;
  address = resolution->address;
  return true;
}

}  // namespace

CRemoteLogger::CRemoteLogger(const GString& host, int port, unsigned long timeOutMilliseconds)
    : socketsStarted_(platform::StartSockets()), socket_(platform::NO_SOCKET) {
  if (!host.empty()) SetHost(host, port, timeOutMilliseconds);
}

CRemoteLogger::~CRemoteLogger() {
  Close();
  if (socketsStarted_) platform::StopSockets();
}

bool CRemoteLogger::SetHost(const GString& host, int port, unsigned long timeOutMilliseconds) {
  Close();
  if (port < 1 || port > LAST_PORT || !socketsStarted_) return false;
  const std::string name = host.ToNarrow(ANSI_CODE_PAGE);
  std::uint32_t address = 0;
  if (!platform::ParseDottedAddress(name, address) &&
      !ResolveInTime(name, timeOutMilliseconds, address)) {
    return false;
  }
  address_ = address;
  port_ = platform::ToNetworkOrder(static_cast<std::uint16_t>(port));
  socket_ = platform::OpenDatagramSocket();
  return socket_ != platform::NO_SOCKET;
}

bool CRemoteLogger::Send(const GString& line) {
  if (!IsEnabled()) return false;
  const std::string datagram = PRIORITY + line.ToNarrow(ANSI_CODE_PAGE);
  return platform::SendDatagram(socket_, {address_, port_}, datagram.data(), datagram.size());
}

bool CRemoteLogger::SendVA(const wchar_t* format, ...) {
  if (!IsEnabled()) return false;
  GString line;
  va_list arguments;
  va_start(arguments, format);
  const bool formatted = line.FormatStringVA(format, arguments);
  va_end(arguments);
  return formatted && Send(line);
}

bool CRemoteLogger::IsEnabled() const noexcept {
  return enabled_ && socket_ != platform::NO_SOCKET;
}

void CRemoteLogger::Close() noexcept {
  if (socket_ == platform::NO_SOCKET) return;
  platform::CloseSocket(socket_);
  socket_ = platform::NO_SOCKET;
}

}  // namespace shr
