// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Matches the text behind the first line feed with the pattern before it and compares with a naive
// matcher.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "shared/text/StringUtility.h"

namespace {

/// Fills the table of which heads of the text match each head of the pattern.
bool TableMatch(const std::string& pattern, const std::string& text) {
  std::vector<char> row(text.size() + 1, 0);
  row[0] = 1;
  for (const char ch : pattern) {
    std::vector<char> next(text.size() + 1, 0);
    next[0] = ch == '*' ? row[0] : char{0};
    for (std::size_t i = 1; i <= text.size(); ++i) {
      const bool unit = row[i - 1] != 0 && (ch == '?' || ch == text[i - 1]);
      const bool star = ch == '*' && (row[i] != 0 || next[i - 1] != 0);
      next[i] = unit && ch != '*' ? char{1} : static_cast<char>(star);
    }
    row.swap(next);
  }
  return row[text.size()] != 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string all(reinterpret_cast<const char*>(data), std::min<std::size_t>(size, 400));
  const std::size_t mark = std::min(all.find('\n'), all.size());
  const std::string pattern = all.substr(0, mark);
  const std::string text = all.substr(std::min(mark + 1, all.size()));
  const bool expected = TableMatch(pattern, text);
  if (shr::WildCmp(pattern, text, true) != expected) std::abort();
  const std::wstring widePattern(pattern.begin(), pattern.end());
  const std::wstring wideText(text.begin(), text.end());
  if (shr::WildCmp(widePattern, wideText, true) != expected) std::abort();
  const bool folded = TableMatch(shr::ToLower(pattern), shr::ToLower(text));
  if (shr::WildCmp(pattern, text, false) != folded) std::abort();
  return 0;
}
