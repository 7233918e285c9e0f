// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The fonts that Windows links with others stand in the registry, each as "FILE,Family" with more
// behind it.

#include "shared/platform/FontFallback.h"

#include <algorithm>
#include <string>

#include "shared/platform/windows/SelectedFont.h"
#include "shared/platform/windows/WideCharacterMap.h"
#include "shared/text/StringCompare.h"

namespace shr::platform {
namespace {

constexpr wchar_t LINK_KEY[] =
    L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\FontLink\\SystemLink";

/// Returns the lines of the value that holds the links of a family; none when it has none.
std::wstring ReadLinks(const wchar_t* family) {
  DWORD size = 0;
  if (RegGetValueW(HKEY_LOCAL_MACHINE, LINK_KEY, family, RRF_RT_REG_MULTI_SZ, nullptr, nullptr,
                   &size) != ERROR_SUCCESS) {
    return std::wstring();
  }
  std::wstring lines(size / sizeof(wchar_t) + 1, L'\0');
  if (RegGetValueW(HKEY_LOCAL_MACHINE, LINK_KEY, family, RRF_RT_REG_MULTI_SZ, nullptr, lines.data(),
                   &size) != ERROR_SUCCESS) {
    return std::wstring();
  }
  return lines;
}

/// Appends the families that a family is linked with.
void AddLinks(const wchar_t* family, std::vector<std::wstring>& links) {
  const std::wstring lines = ReadLinks(family);
  for (std::size_t at = 0; at < lines.size() && lines[at] != L'\0';) {
    const std::size_t end = lines.find(L'\0', at);
    const std::wstring line = lines.substr(at, end - at);
    const std::size_t comma = line.find(L',');
    if (comma != std::wstring::npos) {
      links.push_back(line.substr(comma + 1, line.find(L',', comma + 1) - comma - 1));
    }
    at = end == std::wstring::npos ? lines.size() : end + 1;
  }
}

}  // namespace

std::vector<CharacterRange> ReadCoverage(const FontDescription& description) {
  std::vector<CharacterRange> ranges;
  const SelectedFont font(description);
  if (!font.IsOpen()) return ranges;
  const DWORD size = GetFontUnicodeRanges(font.GetDevice(), nullptr);
  std::vector<DWORD> buffer(size / sizeof(DWORD) + 1);  // aligned for GLYPHSET
  auto* const set = reinterpret_cast<GLYPHSET*>(buffer.data());
  if (size >= sizeof(GLYPHSET) && GetFontUnicodeRanges(font.GetDevice(), set) != 0) {
    const std::size_t room = (size - sizeof(GLYPHSET)) / sizeof(WCRANGE) + 1;
    const std::size_t count = std::min<std::size_t>(set->cRanges, room);
    for (std::size_t i = 0; i < count; ++i) {
      const char32_t first = set->ranges[i].wcLow;
      // Wine goes on beyond U+FFFF with the lower half of the number.
      if (!ranges.empty() && first <= ranges.back().last) break;
      if (set->ranges[i].cGlyphs > 0) ranges.push_back({first, first + set->ranges[i].cGlyphs - 1});
    }
  }
  WideCharacterMap(font.GetDevice()).AddRangesTo(ranges);
  return ranges;
}

std::vector<std::size_t> RankFonts(const FontDescription& missing,
                                   const std::vector<const FontDescription*>& fonts) {
  std::vector<std::wstring> links;
  for (const wchar_t* const family : {missing.family.c_str(), L"Segoe UI", L"Tahoma"}) {
    AddLinks(family, links);
  }
  const auto placeOf = [&](std::size_t font) {
    return std::find_if(links.begin(), links.end(), [&](const std::wstring& link) {
      return StringEquivalent()(link, fonts[font]->family);
    });
  };
  std::vector<std::size_t> order(fonts.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return placeOf(a) < placeOf(b); });
  return order;
}

}  // namespace shr::platform
