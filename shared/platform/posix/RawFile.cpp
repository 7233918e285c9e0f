// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/RawFile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>

#include "shared/platform/posix/FileLock.h"
#include "shared/platform/posix/NativePath.h"
#include "shared/platform/posix/ShareLocks.h"

namespace shr::platform {
namespace {

/// The system transfers at most this much in one call.
constexpr std::size_t TRANSFER_LIMIT = 0x4000'0000;
constexpr mode_t NEW_FILE_PERMISSIONS = 0666;

/// Closes a descriptor that is not wanted after all; errno keeps telling why.
int Abandon(int descriptor) {
  const int error = errno;
  close(descriptor);
  errno = error;
  return NO_DESCRIPTOR;
}

int OpenFlags(const FileOpenOptions& options) {
  int flags = O_CLOEXEC | O_NOCTTY;
  if (options.read && options.write) {
    flags |= O_RDWR;
  } else {
    flags |= options.write ? O_WRONLY : O_RDONLY;
  }
  if (options.append) flags |= O_APPEND;
  if (options.create) flags |= O_CREAT;
  if (options.create && options.exclusive) flags |= O_EXCL;
  return flags;
}

int OpenNative(const std::string& path, int flags) {
  int descriptor = NO_DESCRIPTOR;
  do {
    descriptor = open(path.c_str(), flags, NEW_FILE_PERMISSIONS);
  } while (descriptor == NO_DESCRIPTOR && errno == EINTR);
  return descriptor;
}

/// Returns whether somebody has opened the other end of a named pipe that is open for reading, or
/// has left something in it.
bool HasWriter(int descriptor) {
  pollfd state = {descriptor, POLLIN, 0};
  if (poll(&state, 1, 0) > 0) return true;
  // Copying from an empty pipe tells apart "nothing yet" and "nobody there". Nothing is consumed.
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return true;
  const ssize_t copied = tee(descriptor, ends[1], 1, SPLICE_F_NONBLOCK);
  close(ends[0]);
  close(ends[1]);
  return copied != 0;
}

bool IsPipe(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
}

/// Opens without waiting for the other end of a named pipe for longer than a bounded time.
int OpenWithoutHanging(const std::string& path, int flags) {
  constexpr int ATTEMPTS = 600;
  constexpr timespec PAUSE = {0, 5'000'000};
  int descriptor = NO_DESCRIPTOR;
  for (int attempt = 0; attempt < ATTEMPTS; ++attempt) {
    if (attempt > 0) nanosleep(&PAUSE, nullptr);
    if (descriptor == NO_DESCRIPTOR) descriptor = OpenNative(path, flags | O_NONBLOCK);
    if (descriptor == NO_DESCRIPTOR) {
      if (errno != ENXIO || !IsPipe(path)) return NO_DESCRIPTOR;
      continue;
    }
    struct stat status = {};
    const bool waits = (flags & O_ACCMODE) == O_RDONLY && fstat(descriptor, &status) == 0 &&
                       S_ISFIFO(status.st_mode) && !HasWriter(descriptor);
    if (waits) continue;
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    return descriptor;
  }
  if (descriptor == NO_DESCRIPTOR) return NO_DESCRIPTOR;
  errno = ETIMEDOUT;
  return Abandon(descriptor);
}

/// Empties a file that is open already and whose use is registered. A read-only descriptor cannot,
/// its path can.
bool Empty(int descriptor, const std::string& path, bool writable) {
  return (writable ? ftruncate(descriptor, 0) : truncate(path.c_str(), 0)) == 0;
}

/// Letters of stream modes that change nothing here: text is never translated, descriptors are
/// never inherited, and the rest are hints.
constexpr std::wstring_view SILENT_MODE_LETTERS = L"btcnNSRT";

/// Reads a stream mode into `options`; returns false when it is not one.
bool ParseMode(const GString& mode, FileOpenOptions& options) {
  if (mode.empty()) return false;
  const wchar_t kind = mode[0];
  if (kind != L'r' && kind != L'w' && kind != L'a') return false;
  options.read = kind == L'r';
  options.write = kind != L'r';
  options.create = kind != L'r';
  options.truncate = kind == L'w';
  options.append = kind == L'a';
  for (std::size_t i = 1; i < mode.size(); ++i) {
    const wchar_t letter = mode[i];
    if (mode.String().find(letter, i + 1) != std::wstring::npos) return false;
    if (letter == L'+') {
      options.read = options.write = true;
    } else if (letter == L'x') {
      options.exclusive = true;
    } else if (SILENT_MODE_LETTERS.find(letter) == std::wstring_view::npos) {
      return false;
    }
  }
  const bool both = mode.find(L'b') != GString::npos && mode.find(L't') != GString::npos;
  return !both && (options.create || !options.exclusive);
}

const char* NativeMode(const FileOpenOptions& options) {
  if (options.append) return options.read ? "a+" : "a";
  if (options.read && options.write) return "r+";
  return options.write ? "w" : "r";
}

}  // namespace

int OpenDescriptor(const GString& path, const FileOpenOptions& options) {
  if (!IsUsablePath(path)) {
    errno = path.empty() ? ENOENT : EINVAL;
    return NO_DESCRIPTOR;
  }
  const std::string native = ToNativePath(path);
  const int descriptor = OpenWithoutHanging(native, OpenFlags(options));
  if (descriptor == NO_DESCRIPTOR) return NO_DESCRIPTOR;
  struct stat status = {};
  if (fstat(descriptor, &status) != 0) return Abandon(descriptor);
  if (S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    return Abandon(descriptor);
  }
  if (!S_ISREG(status.st_mode)) return descriptor;
  const bool readable = options.read || !options.write;
  if (!RegisterFileUse(descriptor, {readable, options.write, options.sharing})) {
    return Abandon(descriptor);
  }
  if (options.truncate && !Empty(descriptor, native, options.write)) return Abandon(descriptor);
  return descriptor;
}

bool CloseDescriptor(int descriptor) {
  // The descriptor is gone even when the call was interrupted.
  return close(descriptor) == 0 || errno == EINTR;
}

std::ptrdiff_t ReadDescriptor(int descriptor, void* buffer, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const std::size_t piece = std::min(count - done, TRANSFER_LIMIT);
    const ssize_t got = read(descriptor, static_cast<char*>(buffer) + done, piece);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return done > 0 ? static_cast<std::ptrdiff_t>(done) : -1;
    done += static_cast<std::size_t>(got);
    if (static_cast<std::size_t>(got) < piece) break;
  }
  return static_cast<std::ptrdiff_t>(done);
}

bool WriteDescriptor(int descriptor, const void* buffer, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const std::size_t piece = std::min(count - done, TRANSFER_LIMIT);
    const ssize_t put = write(descriptor, static_cast<const char*>(buffer) + done, piece);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return false;
    done += static_cast<std::size_t>(put);
  }
  return true;
}

std::int64_t SeekDescriptor(int descriptor, std::int64_t offset, FileOrigin origin) {
  return lseek(descriptor, offset, static_cast<int>(origin));
}

std::int64_t GetDescriptorLength(int descriptor) {
  struct stat status = {};
  return fstat(descriptor, &status) == 0 ? status.st_size : -1;
}

bool SetDescriptorLength(int descriptor, std::int64_t length) {
  int result = 0;
  do {
    result = ftruncate(descriptor, length);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

bool FlushDescriptor(int descriptor) {
  int result = 0;
  do {
    result = fsync(descriptor);
  } while (result != 0 && errno == EINTR);
  return result == 0 || errno == EINVAL || errno == EROFS;
}

std::FILE* OpenStream(const GString& path, const GString& mode, FileSharing sharing) {
  FileOpenOptions options;
  if (!ParseMode(mode, options)) {
    errno = EINVAL;
    return nullptr;
  }
  options.sharing = sharing;
  const int descriptor = OpenDescriptor(path, options);
  if (descriptor == NO_DESCRIPTOR) return nullptr;
  std::FILE* stream = fdopen(descriptor, NativeMode(options));
  if (stream == nullptr) Abandon(descriptor);
  return stream;
}

bool SeekStream(std::FILE* stream, std::int64_t offset, FileOrigin origin) {
  return fseeko(stream, offset, static_cast<int>(origin)) == 0;
}

std::int64_t TellStream(std::FILE* stream) {
  return ftello(stream);
}

GString LastErrorText() {
  return FormatSystemErrorMsg(static_cast<std::uint32_t>(errno));
}

void SetAccessError() {
  errno = EBADF;
}

void ClearLastError() {
  errno = 0;
}

GString FormatSystemErrorMsg(std::uint32_t code) {
  if (code == static_cast<std::uint32_t>(LOCK_TIMED_OUT)) {
    return L"Another writer keeps the lock; it was waited for.";
  }
  return FromNativePath(std::system_category().message(static_cast<int>(code)));
}

}  // namespace shr::platform
