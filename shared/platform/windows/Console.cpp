// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Console.h"

#include <windows.h>
// Needs the types of the header above.
#include <shellapi.h>

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <memory>
#include <string>

namespace shr::platform {

namespace {

HANDLE StreamHandle(std::FILE* stream) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

bool IsConsole(HANDLE handle) {
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) != 0;
}

bool WriteConsoleText(HANDLE console, const GString& text) {
  // The console takes bounded pieces only.
  constexpr std::size_t PIECE = 8192;
  for (std::size_t pos = 0; pos < text.size();) {
    const DWORD count = static_cast<DWORD>(std::min(PIECE, text.size() - pos));
    DWORD written = 0;
    if (WriteConsoleW(console, text.data() + pos, count, &written, nullptr) == 0) return false;
    if (written == 0) return false;
    pos += written;
  }
  return true;
}

/// The runtime's text mode would turn line feeds into pairs.
bool WriteBytes(std::FILE* stream, const std::string& bytes) {
  if (std::fflush(stream) != 0) return false;
  const int oldMode = _setmode(_fileno(stream), _O_BINARY);
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
  const bool flushed = std::fflush(stream) == 0;
  if (oldMode != -1) _setmode(_fileno(stream), oldMode);
  return written && flushed;
}

}  // namespace

std::vector<GString> ProgramArguments(int, const char* const*) {
  int count = 0;
  const std::unique_ptr<wchar_t*, HLOCAL (*)(HLOCAL)> list(
      CommandLineToArgvW(GetCommandLineW(), &count),
      [](HLOCAL memory) { return LocalFree(memory); });
  std::vector<GString> arguments;
  for (int i = 0; list != nullptr && i < count; ++i) arguments.emplace_back(list.get()[i]);
  return arguments;
}

bool IsTerminal(std::FILE* stream) {
  return IsConsole(StreamHandle(stream));
}

bool WriteText(std::FILE* stream, const GString& text) {
  const HANDLE handle = StreamHandle(stream);
  if (IsConsole(handle)) return std::fflush(stream) == 0 && WriteConsoleText(handle, text);
  return WriteBytes(stream, text.ToUtf8());
}

}  // namespace shr::platform
