// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/RawFile.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string_view>

namespace shr::platform {
namespace {

/// The runtime transfers at most a signed 32-bit count in one call.
constexpr std::size_t TRANSFER_LIMIT = 0x4000'0000;

void SetError(int error, DWORD systemError) {
  errno = error;
  _doserrno = systemError;
}

/// Returns true when `path` can be handed to the runtime as it stands; sets the error otherwise.
bool CheckPath(const GString& path) {
  if (path.empty()) {
    SetError(ENOENT, ERROR_PATH_NOT_FOUND);
    return false;
  }
  if (path.find(L'\0') != GString::npos) {
    SetError(EINVAL, ERROR_INVALID_NAME);
    return false;
  }
  return true;
}

int ShareFlag(FileSharing sharing) {
  switch (sharing) {
    case FileSharing::None:
      return _SH_DENYRW;
    case FileSharing::Read:
      return _SH_DENYWR;
    case FileSharing::Write:
      return _SH_DENYRD;
    case FileSharing::All:
      break;
  }
  return _SH_DENYNO;
}

int OpenFlags(const FileOpenOptions& options) {
  int flags = _O_BINARY | _O_NOINHERIT;
  if (options.read && options.write) {
    flags |= _O_RDWR;
  } else {
    flags |= options.write ? _O_WRONLY : _O_RDONLY;
  }
  if (options.append) flags |= _O_APPEND;
  if (options.create) flags |= _O_CREAT;
  if (options.create && options.exclusive) flags |= _O_EXCL;
  if (options.truncate) flags |= _O_TRUNC;
  return flags;
}

constexpr std::wstring_view MODE_LETTERS = L"+btcnNSRTDx";

bool IsKnownEncoding(std::wstring_view name) {
  GString lower{name};
  for (wchar_t& ch : lower.String()) {
    if (ch >= L'A' && ch <= L'Z') ch = static_cast<wchar_t>(ch - L'A' + L'a');
  }
  return lower == L"utf-8" || lower == L"utf-16le" || lower == L"unicode";
}

/// Returns true for mode text that the runtime knows. The runtime itself opens on some faults and
/// ends the process on others.
bool IsModeValid(std::wstring_view mode) {
  if (mode.empty() || (mode[0] != L'r' && mode[0] != L'w' && mode[0] != L'a')) return false;
  const std::size_t comma = mode.find(L',');
  const std::wstring_view letters =
      mode.substr(1, comma == std::wstring_view::npos ? comma : comma - 1);
  for (std::size_t i = 0; i < letters.size(); ++i) {
    if (letters[i] == L' ') continue;
    if (MODE_LETTERS.find(letters[i]) == std::wstring_view::npos) return false;
    if (letters.find(letters[i], i + 1) != std::wstring_view::npos) return false;
  }
  const auto has = [letters](wchar_t letter) {
    return letters.find(letter) != std::wstring_view::npos;
  };
  if ((has(L'b') && has(L't')) || (has(L'x') && mode[0] == L'r')) return false;
  if (comma == std::wstring_view::npos) return true;
  constexpr std::wstring_view KEY = L"ccs=";
  const std::size_t key = mode.find_first_not_of(L' ', comma + 1);
  if (key == std::wstring_view::npos || mode.substr(key, KEY.size()) != KEY) return false;
  return IsKnownEncoding(mode.substr(key + KEY.size()));
}

/// Opens exclusively: not every runtime knows the letter, so the file is created first.
std::FILE* OpenNewStream(const GString& path, GString mode, FileSharing sharing) {
  FileOpenOptions options;
  options.write = true;
  options.read = mode.find(L'+') != GString::npos;
  options.append = mode[0] == L'a';
  options.create = options.exclusive = true;
  options.sharing = sharing;
  const int descriptor = OpenDescriptor(path, options);
  if (descriptor == NO_DESCRIPTOR) return nullptr;
  mode.erase(mode.find(L'x'), 1);
  std::FILE* const stream = _wfdopen(descriptor, mode.c_str());
  if (stream == nullptr) _close(descriptor);
  return stream;
}

GString MessageOf(DWORD code) {
  wchar_t text[512] = {};
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                code, 0, text, static_cast<DWORD>(std::size(text)), nullptr);
  while (length > 0 && text[length - 1] <= L' ') --length;
  return GString(text, length);
}

}  // namespace

int OpenDescriptor(const GString& path, const FileOpenOptions& options) {
  if (!CheckPath(path)) return NO_DESCRIPTOR;
  int descriptor = NO_DESCRIPTOR;
  const errno_t error = _wsopen_s(&descriptor, path.c_str(), OpenFlags(options),
                                  ShareFlag(options.sharing), _S_IREAD | _S_IWRITE);
  return error == 0 ? descriptor : NO_DESCRIPTOR;
}

bool CloseDescriptor(int descriptor) {
  return _close(descriptor) == 0;
}

std::ptrdiff_t ReadDescriptor(int descriptor, void* buffer, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const std::size_t piece = std::min(count - done, TRANSFER_LIMIT);
    const int got =
        _read(descriptor, static_cast<char*>(buffer) + done, static_cast<unsigned>(piece));
    if (got < 0) return done > 0 ? static_cast<std::ptrdiff_t>(done) : -1;
    done += static_cast<std::size_t>(got);
    if (static_cast<std::size_t>(got) < piece) {
      // A runtime may remember the end; positioning makes it look again when the file has grown.
      _lseeki64(descriptor, 0, SEEK_CUR);
      break;
    }
  }
  return static_cast<std::ptrdiff_t>(done);
}

bool WriteDescriptor(int descriptor, const void* buffer, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const std::size_t piece = std::min(count - done, TRANSFER_LIMIT);
    const int put =
        _write(descriptor, static_cast<const char*>(buffer) + done, static_cast<unsigned>(piece));
    if (put < 0) return false;
    done += static_cast<std::size_t>(put);
    if (static_cast<std::size_t>(put) < piece) {
      SetError(ENOSPC, ERROR_DISK_FULL);
      return false;
    }
  }
  return true;
}

std::int64_t SeekDescriptor(int descriptor, std::int64_t offset, FileOrigin origin) {
  _doserrno = 0;
  return _lseeki64(descriptor, offset, static_cast<int>(origin));
}

std::int64_t GetDescriptorLength(int descriptor) {
  return _filelengthi64(descriptor);
}

bool SetDescriptorLength(int descriptor, std::int64_t length) {
  return _chsize_s(descriptor, length) == 0;
}

bool FlushDescriptor(int descriptor) {
  SetLastError(ERROR_SUCCESS);
  if (_commit(descriptor) == 0) return true;
  // Refused for what was opened for reading, and unknown to consoles and the null device.
  const DWORD error = GetLastError();
  return error == ERROR_ACCESS_DENIED || error == ERROR_INVALID_FUNCTION;
}

std::FILE* OpenStream(const GString& path, const GString& mode, FileSharing sharing) {
  if (!IsModeValid(mode)) {
    SetError(EINVAL, ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  if (!CheckPath(path)) return nullptr;
  const std::wstring_view letters = std::wstring_view(mode).substr(0, mode.find(L','));
  if (letters.find(L'x') != std::wstring_view::npos) return OpenNewStream(path, mode, sharing);
  return _wfsopen(path.c_str(), mode.c_str(), ShareFlag(sharing));
}

bool SeekStream(std::FILE* stream, std::int64_t offset, FileOrigin origin) {
  return _fseeki64(stream, offset, static_cast<int>(origin)) == 0;
}

std::int64_t TellStream(std::FILE* stream) {
  return _ftelli64(stream);
}

GString LastErrorText() {
  const int error = errno;
  const DWORD systemError = _doserrno;
  if (systemError != 0) return FormatSystemErrorMsg(systemError);
  wchar_t text[256] = {};
  if (_wcserror_s(text, std::size(text), error) == 0 && text[0] != L'\0') return GString(text);
  return FormatSystemErrorMsg(static_cast<std::uint32_t>(error));
}

void SetAccessError() {
  SetError(EBADF, ERROR_ACCESS_DENIED);
}

void ClearLastError() {
  SetError(0, 0);
}

GString FormatSystemErrorMsg(std::uint32_t code) {
  GString text = MessageOf(code);
  if (text.empty()) text = GString(L"Unknown error " + std::to_wstring(code));
  return text;
}

}  // namespace shr::platform
