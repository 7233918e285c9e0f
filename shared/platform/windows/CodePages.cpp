// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/CodePages.h"

#include <windows.h>

#include <algorithm>

#include "shared/diagnostics/ThrowError.h"
#include "shared/text/Utf.h"

namespace shr::platform {
namespace {

constexpr std::uint32_t UTF16_LITTLE_ENDIAN = 1200;
constexpr std::uint32_t UTF16_BIG_ENDIAN = 1201;

/// Name of the unit that conversion faults are reported under.
constexpr const wchar_t* UNIT = L"StringUtility";

bool IsUtf16(std::uint32_t codePage) {
  return codePage == UTF16_LITTLE_ENDIAN || codePage == UTF16_BIG_ENDIAN;
}

ByteOrder OrderOf(std::uint32_t codePage) {
  return codePage == UTF16_BIG_ENDIAN ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
}

bool PlatformServes(std::uint32_t codePage) {
  return MultiByteToWideChar(codePage, 0, "A", 1, nullptr, 0) > 0;
}

void AppendWideByPlatform(std::uint32_t codePage, std::string_view bytes, std::wstring& wide) {
  const int size = static_cast<int>(bytes.size());
  const int needed = MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0);
  const std::size_t before = wide.size();
  wide.resize(before + static_cast<std::size_t>(needed));
  const int written =
      MultiByteToWideChar(codePage, 0, bytes.data(), size, wide.data() + before, needed);
  if (written != needed) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
}

void AppendNarrowByPlatform(std::uint32_t codePage, std::wstring_view text, std::string& narrow) {
  const int size = static_cast<int>(text.size());
  const int needed =
      WideCharToMultiByte(codePage, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
  const std::size_t before = narrow.size();
  narrow.resize(before + static_cast<std::size_t>(needed));
  const int written = WideCharToMultiByte(codePage, 0, text.data(), size, narrow.data() + before,
                                          needed, nullptr, nullptr);
  if (written != needed) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
}

}  // namespace

bool IsCodePageServed(std::uint32_t codePage) {
  return codePage == CP_UTF8 || IsUtf16(codePage) || PlatformServes(codePage);
}

bool AppendWide(std::uint32_t codePage, std::string_view bytes, std::wstring& wide) {
  const std::size_t before = wide.size();
  if (codePage == CP_UTF8) {
    wide.resize(before + bytes.size());
    wide.resize(before + Utf8ToWide(bytes, wide.data() + before));
    return true;
  }
  if (IsUtf16(codePage)) {
    wide.resize(before + (bytes.size() + 1) / 2);
    wide.resize(before + Utf16ToWide(bytes, OrderOf(codePage), wide.data() + before));
    return true;
  }
  if (!PlatformServes(codePage)) return false;
  if (!bytes.empty()) AppendWideByPlatform(codePage, bytes, wide);
  return true;
}

bool AppendNarrow(std::uint32_t codePage, std::wstring_view text, std::string& narrow) {
  const std::size_t before = narrow.size();
  if (codePage == CP_UTF8) {
    narrow.resize(before + text.size() * UTF8_BYTES_PER_UNIT);
    narrow.resize(before + WideToUtf8(text, narrow.data() + before));
    return true;
  }
  if (IsUtf16(codePage)) {
    narrow.resize(before + text.size() * sizeof(wchar_t));
    narrow.resize(before + WideToUtf16(text, OrderOf(codePage), narrow.data() + before));
    return true;
  }
  if (!PlatformServes(codePage)) return false;
  if (!text.empty()) AppendNarrowByPlatform(codePage, text, narrow);
  return true;
}

}  // namespace shr::platform
