// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Reads arbitrary lines of a color table. A line is refused exactly when nothing stands behind a
// first "="; otherwise the name must be what stands before it, trimmed, and the color what the
// runtime's own number reader makes of numbers that it can hold.

#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <string>

#include "shared/color/ColorTable.h"
#include "shared/text/GString.h"

/// Reads three numbers in sequence; false when one is too long to be sure of.
static bool ReadNumbers(const std::wstring& text, std::uint32_t& color) {
  const wchar_t* next = text.c_str();
  color = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    wchar_t* end = nullptr;
    const long long value = std::wcstoll(next, &end, 10);
    if (end - next > 15) return false;
    if (end == next) return true;
    color |= static_cast<std::uint32_t>(value & 0xFF) << shift;
    next = end;
  }
  return true;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::wstring line;
  // Beyond ASCII, what is white space depends on the runtime.
  for (size_t i = 0; i < size; ++i) line += static_cast<wchar_t>(data[i] & 0x7F);
  const std::size_t equals = line.find(L'=');
  const bool isColor = equals != std::wstring::npos && equals + 1 < line.size();
  const shr::CColorTableEntry before(0x12345678, L"before");
  shr::CColorTableEntry entry = before;
  if (shr::ParseColorLine(shr::GString(line), entry) != isColor) std::abort();
  if (!isColor) {
    if (entry != before) std::abort();
    return 0;
  }
  if (entry.Name() != shr::GString(line.substr(0, equals)).Trim()) std::abort();
  if (entry.Color() > 0xFFFFFFu) std::abort();
  std::uint32_t expected = 0;
  if (ReadNumbers(line.substr(equals + 1), expected) && entry.Color() != expected) std::abort();
  return 0;
}
