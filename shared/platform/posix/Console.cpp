// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Console.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace shr::platform {

namespace {

/// Fills the places of closed standard descriptors with the null device, open the wrong way round.
void KeepStandardDescriptors() {
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(standard, F_GETFD) != -1 || errno != EBADF) continue;
    // The lowest free number is taken, which is this one.
    if (open("/dev/null", standard == STDIN_FILENO ? O_WRONLY : O_RDONLY) != standard) return;
  }
}

}  // namespace

std::vector<GString> ProgramArguments(int argc, const char* const* argv) {
  KeepStandardDescriptors();
  std::vector<GString> arguments;
  for (int i = 0; i < argc; ++i) arguments.push_back(GString::FromUtf8(argv[i]));
  return arguments;
}

bool IsTerminal(std::FILE* stream) {
  return isatty(fileno(stream)) == 1;
}

bool WriteText(std::FILE* stream, const GString& text) {
  const std::string bytes = text.ToUtf8();
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
  return std::fflush(stream) == 0 && written;
}

}  // namespace shr::platform
