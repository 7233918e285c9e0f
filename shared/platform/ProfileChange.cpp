// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/ProfileChange.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <vector>

namespace shr::platform {
namespace {

using Texts = std::vector<std::wstring_view>;
using Change = std::function<std::optional<std::string>(const ProfileText& text)>;

Texts SplitLines(const wchar_t* lines) {
  Texts list;
  while (*lines != L'\0') {
    list.emplace_back(lines);
    lines += list.back().size() + 1;
  }
  return list;
}

bool CanHold(const ProfileText& text, const Texts& written) {
  return std::all_of(written.begin(), written.end(),
                     [&text](std::wstring_view part) { return text.CanHold(part); });
}

ProfileResult Apply(const ProfileText& text, const Texts& written, const Change& change) {
  if (CanHold(text, written)) return {true, change(text)};
  std::optional<std::string> wide = text.AsUtf16();
  if (!wide) return {false};
  return {true, change(ProfileText(std::move(*wide)))};
}

}  // namespace

ProfileResult ChangeProfileValue(const ProfileText& text, const wchar_t* section,
                                 const wchar_t* key, const wchar_t* value) {
  if (value == nullptr) return {true, text.WithoutEntry(section, key)};
  return Apply(text, {section, key, value},
               [&](const ProfileText& holding) { return holding.WithValue(section, key, value); });
}

ProfileResult ChangeProfileSection(const ProfileText& text, const wchar_t* section,
                                   const wchar_t* lines) {
  if (lines == nullptr) return {true, text.WithoutSection(section)};
  const Texts list = SplitLines(lines);
  Texts written = list;
  written.emplace_back(section);
  return Apply(text, written,
               [&](const ProfileText& holding) { return holding.WithSection(section, list); });
}

bool FitsAnsi(const wchar_t* section, const wchar_t* key, const wchar_t* value) {
  return CanHold(ProfileText(std::string()), {section, key, value});
}

bool FitsAnsi(const wchar_t* section, const wchar_t* lines) {
  Texts written = SplitLines(lines);
  written.emplace_back(section);
  return CanHold(ProfileText(std::string()), written);
}

}  // namespace shr::platform
