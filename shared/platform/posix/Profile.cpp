// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Profile.h"

#include <algorithm>
#include <string_view>

#include "shared/platform/NameCase.h"
#include "shared/platform/ProfileChange.h"
#include "shared/platform/posix/NameFold.h"
#include "shared/platform/posix/ProfileFile.h"

namespace shr::platform {

std::size_t ReadProfileValue(const GString& path, const GString& section, const GString& key,
                             std::span<wchar_t> buffer) {
  std::size_t length = 0;
  ReadProfile(path, [&](ProfileText& text) {
    const std::wstring_view value = text.FindValue(section.c_str(), key.c_str());
    length = value.copy(buffer.data(), buffer.size() - 1);
  });
  buffer[length] = L'\0';
  return length;
}

std::size_t ReadProfileSection(const GString& path, const GString& section,
                               std::span<wchar_t> buffer) {
  const std::size_t limit = buffer.size() - 2;
  std::size_t length = 0;
  bool cut = false;
  ReadProfile(path, [&](ProfileText& text) {
    text.VisitLines(section.c_str(), [&](std::wstring_view line) {
      if (cut) return;
      const std::size_t copied = line.copy(buffer.data() + length, limit - length);
      length += copied;
      cut = copied < line.size() || length == limit;
      if (!cut) buffer[length++] = L'\0';
    });
  });
  if (cut) length = limit;
  std::fill_n(buffer.begin() + static_cast<std::ptrdiff_t>(length), cut ? 2 : 1, L'\0');
  return length;
}

bool SetProfileValue(const GString& path, const GString& section, const GString& key,
                     const wchar_t* value) {
  return ChangeProfile(path, [&](const ProfileText& text) {
    return ChangeProfileValue(text, section.c_str(), key.c_str(), value);
  });
}

bool SetProfileSection(const GString& path, const GString& section, const wchar_t* lines) {
  return ChangeProfile(path, [&](const ProfileText& text) {
    return ChangeProfileSection(text, section.c_str(), lines);
  });
}

wchar_t UpperCaseOfWide(wchar_t unit) {
  return FoldNameUnit(unit);
}

}  // namespace shr::platform
