// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Bytes as text, failures with their lines, and archives in memory for the tests of this folder.

#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "shared/archive/Archive.h"
#include "shared/diagnostics/Exception.h"
#include "shared/text/GString.h"

namespace shr::test {

/// Returns the bytes of pairs of hexadecimal digits; anything else between them is skipped.
inline std::string FromHex(std::string_view text) {
  std::string bytes;
  int high = -1;
  for (const char ch : text) {
    const std::size_t digit = std::string_view("0123456789ABCDEF").find(ch);
    if (digit == std::string_view::npos) continue;
    if (high >= 0) bytes += static_cast<char>(high * 16 + static_cast<int>(digit));
    high = high >= 0 ? -1 : static_cast<int>(digit);
  }
  return bytes;
}

inline std::string ToHex(std::string_view bytes) {
  std::string text;
  for (const char ch : bytes) {
    const auto byte = static_cast<unsigned char>(ch);
    if (!text.empty()) text += ' ';
    text += "0123456789ABCDEF"[byte >> 4];
    text += "0123456789ABCDEF"[byte & 15];
  }
  return text;
}

inline const unsigned char* Bytes(std::string_view bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.data());
}

using Action = std::function<void(Archive&)>;

/// Returns the bytes that `action` stores.
inline std::string Stored(const Action& action) {
  Archive archive;
  archive.OpenMem();
  action(archive);
  const auto size = static_cast<std::size_t>(archive.GetSize());
  return {reinterpret_cast<const char*>(archive.GetBuffer()), size};
}

/// Runs `action` on an archive that loads `bytes`.
inline void LoadFrom(std::string_view bytes, const Action& action) {
  Archive archive;
  archive.OpenMem(Bytes(bytes), bytes.size());
  action(archive);
}

/// Returns "text @line" of what `action` throws, "internal @line" for internal errors.
inline GString FailureAt(const std::function<void()>& action) {
  GString text(L"(nothing)");
  try {
    action();
  } catch (const InternalErrorException& error) {
    text.FormatString(L"internal @%d", error.GetSrcLine());
  } catch (const Exception& error) {
    text.FormatString(L"%s @%d", error.GetDescription().c_str(), error.GetSrcLine());
  }
  return text;
}

inline constexpr const wchar_t* SHORT_READ =
    L"Unable to read 'memory file'.\nUnexpected end of file @245";

}  // namespace shr::test
