// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/RunLog.h"

#include "examples/common/InputError.h"
#include "shared/diagnostics/Logger.h"

namespace mapreport {

using namespace examples;
using namespace shr;

namespace {

constexpr unsigned long TIME_OUT_MILLISECONDS = 2000;
constexpr int LARGEST_PORT = 65535;

}  // namespace

std::optional<RemoteLog> ParseRemoteLog(const GString& text) {
  const std::size_t colon = text.find_last_of(L':');
  if (colon == GString::npos || colon == 0) return std::nullopt;
  RemoteLog remote{text.substr(0, colon), 0};
  if (!text.substr(colon + 1).ToInt(remote.port)) return std::nullopt;
  if (remote.port < 1 || remote.port > LARGEST_PORT) return std::nullopt;
  return remote;
}

RunLog::RunLog(const GString& path, const std::optional<RemoteLog>& remote) {
  timer_.Start();
  g_Logger.Enable(!path.empty() || remote);
  if (!path.empty()) g_Logger.SetOutputFile(path, false);
  if (remote && !g_Logger.SetRemoteLogger(L"mapreport: ", remote->host, remote->port,
                                          TIME_OUT_MILLISECONDS)) {
    ThrowInputError(remote->host, L"The log's collector has no address.");
  }
  g_Logger.Send(LogInfo | LogRemote, L"Run of mapreport " MAPREPORT_VERSION);
  if (!path.empty()) g_Logger.LogAllConfigInfo();
  g_Logger.Separator(LogInfo, L"Steps");
}

RunLog::~RunLog() {
  try {
    g_Logger.SendVA(LogInfo | LogRemote, L"The run took %.0f ms", timer_.Elapsed());
  } catch (...) {
    // There is nobody left to tell.
  }
}

void LogFailure(const GString& message) noexcept {
  try {
    g_Logger.Send(LogError | LogRemote, L"Error: " + message);
  } catch (...) {
    // The message goes to standard error too.
  }
}

}  // namespace mapreport
