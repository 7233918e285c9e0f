// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/diagnostics/SystemInfo.h"

#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/platform/Paths.h"

namespace shr {
namespace {

void ThrowCopy(const InternalErrorException& error) {
  throw InternalErrorException(error);
}

struct Settings {
  CSystemInfo::InternalErrorHandlerType handler = ThrowCopy;
  std::vector<GString> searchFolders;
};

Settings& GetSettings() {
  static Settings settings;
  return settings;
}

}  // namespace

const CSystemInfo::InternalErrorHandlerType& CSystemInfo::InternalErrorHandler() {
  return GetSettings().handler;
}

void CSystemInfo::InternalErrorHandler(InternalErrorHandlerType handler) {
  GetSettings().handler = handler ? std::move(handler) : InternalErrorHandlerType(ThrowCopy);
}

const std::vector<GString>& CSystemInfo::GetSearchFolders() {
  return GetSettings().searchFolders;
}

void CSystemInfo::SetSearchFolders(const std::vector<GString>& folders) {
  std::vector<GString> terminated;
  terminated.reserve(folders.size());
  for (const GString& folder : folders) {
    if (folder.empty()) continue;
    terminated.push_back(folder);
    if (!platform::IsPathSeparator(folder[folder.size() - 1])) {
      terminated.back() += platform::PATH_SEPARATOR;
    }
  }
  GetSettings().searchFolders = std::move(terminated);
}

void CSystemInfo::ResetToDefaults() {
  GetSettings() = Settings();
}

}  // namespace shr
