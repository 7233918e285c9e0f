// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/StringCompare.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace shr {
namespace {

template <typename Char>
constexpr std::uint32_t FoldAscii(Char ch) {
  const auto unit = static_cast<std::uint32_t>(std::char_traits<Char>::to_int_type(ch));
  return unit - 'A' < 26u ? unit + ('a' - 'A') : unit;
}

template <typename Char>
int CompareFolded(std::basic_string_view<Char> a, std::basic_string_view<Char> b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const std::uint32_t left = FoldAscii(a[i]);
    const std::uint32_t right = FoldAscii(b[i]);
    if (left != right) return left < right ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

}  // namespace

int CompareNoCase(std::wstring_view a, std::wstring_view b) noexcept {
  return CompareFolded(a, b);
}

int CompareNoCase(std::string_view a, std::string_view b) noexcept {
  return CompareFolded(a, b);
}

}  // namespace shr
