// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Takes the input as a configuration file; its first bytes choose names. What is set is read back,
// other sections keep their lines, and what is removed is gone.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "shared/platform/ProfileText.h"

namespace {

using shr::platform::ProfileText;
using Lines = std::vector<std::wstring>;

void Check(bool condition) {
  if (!condition) std::abort();
}

Lines LinesOf(const ProfileText& text, std::wstring_view section) {
  Lines lines;
  text.VisitLines(section, [&lines](std::wstring_view line) { lines.emplace_back(line); });
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::wstring_view names[] = {L"", L"a", L"B", L" a ", L"b c"};
  if (size < 2) return 0;
  const std::wstring_view section = names[data[0] % 4], key = names[data[1] % 5];
  const std::wstring_view other = L"other";
  ProfileText text(std::string(reinterpret_cast<const char*>(data) + 2, size - 2));
  const Lines kept = LinesOf(text, other);

  const std::string set = text.WithValue(section, key, L" v 1 ").value_or(text.Bytes());
  ProfileText changed(set);
  Check(changed.FindValue(section, key) == L"v 1");
  Check(!changed.WithValue(section, key, L"v 1"));
  Check(LinesOf(changed, other) == kept);

  ProfileText without(changed.WithoutEntry(section, key).value());
  Check(LinesOf(without, other) == kept);

  const ProfileText listed(changed.WithSection(section, {L"x = 1", L"dropped", L"=\"2\""}).value());
  Check(LinesOf(listed, section) == Lines{L"x=1", L"=\"2\""});
  Check(LinesOf(listed, other) == kept);

  std::string rest = set;
  while (auto removed = ProfileText(rest).WithoutSection(section)) {
    Check(removed->size() < rest.size());
    rest = *removed;
  }
  Check(LinesOf(ProfileText(rest), section).empty());
  Check(LinesOf(ProfileText(rest), other) == kept);
  return 0;
}
