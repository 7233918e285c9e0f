// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Console.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "shared/platform/RawFile.h"
#include "shared/text/Utf.h"

namespace shr::platform {

namespace {

GString FromUtf8(std::string_view bytes) {
  std::wstring text(bytes.size(), L'\0');
  text.resize(Utf8ToWide(bytes, text.data()));
  return GString(std::move(text));
}

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
  for (int i = 0; i < argc; ++i) arguments.push_back(FromUtf8(argv[i]));
  return arguments;
}

bool IsTerminal(std::FILE* stream) {
  return isatty(fileno(stream)) == 1;
}

bool WriteText(std::FILE* stream, const GString& text) {
  std::string bytes(text.size() * UTF8_BYTES_PER_UNIT, '\0');
  bytes.resize(WideToUtf8(text, bytes.data()));
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
  return std::fflush(stream) == 0 && written;
}

int WriteResult(const GString& program, const GString& text) {
  ClearLastError();
  if (WriteText(stdout, text)) return 0;
  const GString reason = LastErrorText();
  WriteText(stderr, program + L": Unable to write the standard output. " + reason + L"\n");
  return 1;
}

}  // namespace shr::platform
