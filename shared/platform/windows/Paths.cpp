// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Paths.h"

#include <io.h>
#include <windows.h>

#include <cerrno>
#include <cstdlib>
#include <string>

namespace shr::platform {
namespace {

bool IsUsablePath(const GString& path) {
  return !path.empty() && path.find(L'\0') == GString::npos;
}

void SetError(int error, DWORD systemError) {
  errno = error;
  _doserrno = systemError;
}

bool FailForPath() {
  SetError(ENOENT, ERROR_PATH_NOT_FOUND);
  return false;
}

std::size_t SkipSeparators(const GString& path, std::size_t pos) {
  while (pos < path.size() && IsPathSeparator(path[pos])) ++pos;
  return pos;
}

std::size_t SkipPart(const GString& path, std::size_t pos) {
  while (pos < path.size() && !IsPathSeparator(path[pos])) ++pos;
  return pos;
}

bool IsDriveLetter(wchar_t ch) {
  return (ch >= L'a' && ch <= L'z') || (ch >= L'A' && ch <= L'Z');
}

}  // namespace

const wchar_t PATH_SEPARATOR = L'\\';

bool IsPathSeparator(wchar_t ch) {
  return ch == L'\\' || ch == L'/';
}

std::size_t RootLength(const GString& path) {
  if (path.size() >= 2 && path[1] == L':' && IsDriveLetter(path[0])) return SkipSeparators(path, 2);
  if (path.size() < 2 || !IsPathSeparator(path[0]) || !IsPathSeparator(path[1])) {
    return SkipSeparators(path, 0);
  }
  const std::size_t server = SkipPart(path, 2);
  const std::size_t share = SkipPart(path, SkipSeparators(path, server));
  return SkipSeparators(path, share);
}

bool IsAbsolutePath(const GString& path) {
  if (path.size() < 2) return false;
  if (IsPathSeparator(path[0])) return IsPathSeparator(path[1]);
  return IsDriveLetter(path[0]) && path[1] == L':' && RootLength(path) > 2;
}

GString GetFullPath(const GString& path) {
  if (path.find(L'\0') != GString::npos) return GString();
  wchar_t full[FULL_PATH_UNITS] = {};
  return _wfullpath(full, path.c_str(), FULL_PATH_UNITS) == nullptr ? GString() : GString(full);
}

GString FindInSearchOrder(const GString& name) {
  if (!IsUsablePath(name)) return GString();
  wchar_t found[FOUND_PATH_UNITS] = {};
  const DWORD length = SearchPathW(nullptr, name.c_str(), nullptr,
                                   static_cast<DWORD>(FOUND_PATH_UNITS), found, nullptr);
  return length == 0 || length >= FOUND_PATH_UNITS ? GString() : GString(found);
}

GString GetModulePath(const void* module) {
  // The module is only named, never changed: the system's handle type just is not const.
  const HMODULE handle = static_cast<HMODULE>(const_cast<void*>(module));
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(handle, name.data(), static_cast<DWORD>(name.size()));
    if (length == 0) return GString();
    if (length < name.size()) {
      name.resize(length);
      return GString(std::move(name));
    }
    name.resize(name.size() * 2);
  }
}

bool TestAccess(const GString& path, PathAccess access) {
  if (!IsUsablePath(path)) return FailForPath();
  return _waccess(path.c_str(), static_cast<int>(access)) == 0;
}

GString ResolveLinks(const GString& path) {
  return path;
}

bool ReplaceExistingFile(const GString& from, const GString& to) {
  if (!IsUsablePath(from) || !IsUsablePath(to)) return FailForPath();
  constexpr DWORD FLAGS = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  if (MoveFileExW(from.c_str(), to.c_str(), FLAGS)) return true;
  SetError(EACCES, GetLastError());
  return false;
}

bool RemoveFile(const GString& path) {
  if (!IsUsablePath(path)) return FailForPath();
  return _wremove(path.c_str()) == 0;
}

}  // namespace shr::platform
