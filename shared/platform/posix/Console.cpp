// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Console.h"

#include <unistd.h>

#include <string>
#include <string_view>

#include "shared/text/Utf.h"

namespace shr::platform {

namespace {

GString FromUtf8(std::string_view bytes) {
  std::wstring text(bytes.size(), L'\0');
  text.resize(Utf8ToWide(bytes, text.data()));
  return GString(std::move(text));
}

}  // namespace

std::vector<GString> ProgramArguments(int argc, const char* const* argv) {
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

}  // namespace shr::platform
