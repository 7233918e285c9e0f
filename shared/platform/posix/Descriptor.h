// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A file descriptor that is closed in the end, and how the library's own files are opened. For the
/// POSIX side only.

#pragma once

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

namespace shr::platform {

/// Owns a descriptor, or none when it is negative.
class Descriptor {
public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool IsOpen() const { return descriptor_ >= 0; }
  void Swap(Descriptor& other) noexcept { std::swap(descriptor_, other.descriptor_); }
  int Get() const { return descriptor_; }
  /// Returns whether the system took everything; `errno` is kept when it did.
  bool Close() {
    const int error = errno;
    const int descriptor = std::exchange(descriptor_, -1);
    if (descriptor >= 0 && close(descriptor) != 0 && errno != EINTR) return false;
    errno = error;
    return true;
  }

private:
  int descriptor_;
};

/// Opens a file that no child process inherits, or makes it with the permissions. Returns a
/// negative number and sets `errno` on failure.
inline int OpenFile(const std::string& path, int flags, mode_t permissions = 0) {
  int descriptor = -1;
  do {
    descriptor = open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, permissions);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

}  // namespace shr::platform
