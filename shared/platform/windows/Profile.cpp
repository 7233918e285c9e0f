// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Profile.h"

#include <windows.h>

#include <cerrno>
#include <cstdlib>

namespace shr::platform {
namespace {

/// Keeps the system's error for `LastErrorText`.
bool Report(BOOL succeeded) {
  if (succeeded) return true;
  const DWORD error = GetLastError();
  errno = EACCES;
  _doserrno = error;
  return false;
}

}  // namespace

std::size_t ReadProfileValue(const GString& path, const GString& section, const GString& key,
                             std::span<wchar_t> buffer) {
  return GetPrivateProfileStringW(section.c_str(), key.c_str(), L"", buffer.data(),
                                  static_cast<DWORD>(buffer.size()), path.c_str());
}

std::size_t ReadProfileSection(const GString& path, const GString& section,
                               std::span<wchar_t> buffer) {
  return GetPrivateProfileSectionW(section.c_str(), buffer.data(),
                                   static_cast<DWORD>(buffer.size()), path.c_str());
}

bool SetProfileValue(const GString& path, const GString& section, const GString& key,
                     const wchar_t* value) {
  return Report(WritePrivateProfileStringW(section.c_str(), key.c_str(), value, path.c_str()));
}

bool SetProfileSection(const GString& path, const GString& section, const wchar_t* lines) {
  // The system has its own call for a section that goes with its title.
  if (lines == nullptr) {
    return Report(WritePrivateProfileStringW(section.c_str(), nullptr, nullptr, path.c_str()));
  }
  return Report(WritePrivateProfileSectionW(section.c_str(), lines, path.c_str()));
}

}  // namespace shr::platform
