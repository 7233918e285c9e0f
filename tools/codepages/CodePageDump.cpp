// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Prints what this target makes of a code page: every single byte, every byte pair whose conversion
// is not that of its two bytes, and the bytes of every UTF-16 unit. tools/codepages/compare.py
// reads two dumps.
//
//     codepage_dump 437 932 >dump.txt
//
// One line an item: "page N served|refused", "default BYTES", "b BYTE UNITS", "p BYTES UNITS",
// "w UNIT BYTES" (left out where the bytes are the default character).

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "shared/platform/CodePages.h"
#include "shared/text/Utf.h"

namespace {

using shr::platform::AppendNarrow;
using shr::platform::AppendWide;

std::string Hex(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned char>(byte));
    text += digits;
  }
  return text.empty() ? "-" : text;
}

/// The UTF-16 units of what `bytes` decode to, in hexadecimal.
std::string Units(std::uint32_t page, std::string_view bytes) {
  std::wstring wide;
  AppendWide(page, bytes, wide);
  std::string utf16(wide.size() * sizeof(wchar_t), '\0');
  utf16.resize(shr::WideToUtf16(wide, shr::ByteOrder::BigEndian, utf16.data()));
  return Hex(utf16);
}

std::string Bytes(std::uint32_t page, std::uint32_t unit) {
  std::string narrow;
  AppendNarrow(page, std::wstring(1, static_cast<wchar_t>(unit)), narrow);
  return Hex(narrow);
}

void DumpBytes(std::uint32_t page) {
  std::string single[256];
  for (unsigned first = 0; first < 256; ++first) {
    const char byte = static_cast<char>(first);
    single[first] = Units(page, std::string_view(&byte, 1));
    std::printf("b %02X %s\n", first, single[first].c_str());
  }
  for (unsigned pair = 0; pair < 0x10000; ++pair) {
    const char bytes[] = {static_cast<char>(pair >> 8), static_cast<char>(pair & 0xFF)};
    const std::string units = Units(page, std::string_view(bytes, 2));
    if (units != single[pair >> 8] + single[pair & 0xFF]) {
      std::printf("p %04X %s\n", pair, units.c_str());
    }
  }
}

void DumpUnits(std::uint32_t page) {
  const std::string standIn = Bytes(page, 0xD800);
  std::printf("default %s\n", standIn.c_str());
  for (std::uint32_t unit = 0; unit < 0x10000; ++unit) {
    const std::string bytes = Bytes(page, unit);
    if (bytes != standIn) std::printf("w %04X %s\n", unit, bytes.c_str());
  }
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view number = argv[i];
    std::uint32_t page = 0;
    const auto parsed = std::from_chars(number.data(), number.data() + number.size(), page);
    if (parsed.ec != std::errc() || parsed.ptr != number.data() + number.size()) {
      std::fprintf(stderr, "codepage_dump: '%s' is no code page number\n", argv[i]);
      return 2;
    }
    const bool served = shr::platform::IsCodePageServed(page);
    std::printf("page %u %s\n", static_cast<unsigned>(page), served ? "served" : "refused");
    if (!served) continue;
    DumpBytes(page);
    DumpUnits(page);
  }
  return 0;
}
