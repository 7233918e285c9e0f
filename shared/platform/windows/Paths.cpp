// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Paths.h"

#include <io.h>
#include <windows.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>

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

/// Returns the full path, whatever its length; empty on failure.
std::wstring UnlimitedFullPath(const GString& path) {
  std::wstring full(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    const bool whole = length < full.size();
    full.resize(length);
    if (whole) return full;
  }
}

/// Opens a file, or makes it, and returns the path of what was opened behind all links; empty on
/// failure. Paths in the long form (`\\?\`) come in the usual one where that is possible.
std::wstring FinalPath(const std::wstring& path, DWORD disposition) {
  constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileW(path.c_str(), 0, SHARE_ALL, nullptr, disposition,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return std::wstring();
  std::wstring final(MAX_PATH, L'\0');
  DWORD length = GetFinalPathNameByHandleW(file, final.data(), MAX_PATH, FILE_NAME_NORMALIZED);
  if (length >= final.size()) {
    final.resize(length + 1);
    length = GetFinalPathNameByHandleW(file, final.data(), length + 1, FILE_NAME_NORMALIZED);
  }
  CloseHandle(file);
  final.resize(length < final.size() ? length : 0);
  constexpr std::wstring_view LONG_FORM = L"\\\\?\\";
  const bool hasDrive = final.starts_with(LONG_FORM) && final.size() > 6 &&
                        IsDriveLetter(final[4]) && final[5] == L':' && final.size() < MAX_PATH;
  return hasDrive ? final.substr(LONG_FORM.size()) : final;
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

GString AnchorPath(const GString& path) {
  if (!IsUsablePath(path) || IsAbsolutePath(path)) return path;
  const std::wstring full = UnlimitedFullPath(path);
  return full.empty() ? path : GString(full);
}

FileKind GetFileKind(const GString& path) {
  const DWORD attributes =
      IsUsablePath(path) ? GetFileAttributesW(path.c_str()) : INVALID_FILE_ATTRIBUTES;
  if (attributes == INVALID_FILE_ATTRIBUTES) return FileKind::Missing;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return FileKind::Link;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return FileKind::Folder;
  const HANDLE file =
      CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return FileKind::Regular;
  const DWORD type = GetFileType(file);
  CloseHandle(file);
  if (type != FILE_TYPE_DISK) return FileKind::Other;
  // A system that follows links by itself shows them by the name of what was opened.
  const GString final = ResolveLinks(path);
  const auto nameOf = [](const GString& whole) {
    return whole.substr(whole.String().find_last_of(L"\\/") + 1);
  };
  const bool sameName =
      CompareStringOrdinal(nameOf(final).c_str(), -1, nameOf(path).c_str(), -1, TRUE) == CSTR_EQUAL;
  return sameName ? FileKind::Regular : FileKind::Link;
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

GString GetLibraryPath() {
  HMODULE library = nullptr;
  const DWORD flags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  const auto address = reinterpret_cast<const wchar_t*>(&PATH_SEPARATOR);
  return GetModuleHandleExW(flags, address, &library) != 0 ? GetModulePath(library) : GString();
}

GString GetEnvironment(const GString& name) {
  std::wstring value(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetEnvironmentVariableW(name.c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (length < value.size()) {
      value.resize(length);
      return GString(std::move(value));
    }
    value.resize(length);
  }
}

bool TestAccess(const GString& path, PathAccess access) {
  if (!IsUsablePath(path)) return FailForPath();
  return _waccess(path.c_str(), static_cast<int>(access)) == 0;
}

bool IsDevice(const GString& path) {
  // The system spells the full names of devices and pipes like this: NUL is \\\\.\\NUL.
  return IsUsablePath(path) && UnlimitedFullPath(path).compare(0, 4, L"\\\\.\\") == 0;
}

GString ResolveLinks(const GString& path) {
  if (!IsUsablePath(path)) return path;
  const std::wstring full = UnlimitedFullPath(path);
  if (full.empty()) return path;
  // A name that only new files may not have is that of a link to what is missing. Opening it makes
  // that file, so its place can be asked; it is removed again at once.
  const bool missing = GetFileAttributesW(full.c_str()) == INVALID_FILE_ATTRIBUTES &&
                       GetLastError() == ERROR_FILE_NOT_FOUND;
  if (!missing) {
    const std::wstring final = FinalPath(full, OPEN_EXISTING);
    return GString(final.empty() ? full : final);
  }
  const std::wstring made = FinalPath(full, CREATE_NEW);
  const std::wstring final = made.empty() ? FinalPath(full, OPEN_ALWAYS) : made;
  if (final.empty()) return GString(full);
  DeleteFileW(final.c_str());
  return GString(final);
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
