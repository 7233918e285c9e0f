// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/windows/SelectedFont.h"

#include <algorithm>

namespace shr::platform {

LOGFONTW LogicalFont(std::wstring_view family, long height) {
  LOGFONTW font = {};
  font.lfHeight = height;
  font.lfCharSet = DEFAULT_CHARSET;
  font.lfOutPrecision = OUT_TT_ONLY_PRECIS;
  std::copy_n(family.data(), std::min<std::size_t>(family.size(), LF_FACESIZE - 1),
              font.lfFaceName);
  return font;
}

LOGFONTW LogicalFont(const FontDescription& description, long height) {
  LOGFONTW font = LogicalFont(description.family, height);
  font.lfWeight = description.weight;
  font.lfItalic = description.italic;
  if ((description.charsets & ~CharsetBit(DEFAULT_CHARACTERS)) == CharsetBit(SYMBOL_CHARACTERS)) {
    font.lfCharSet = SYMBOL_CHARSET;
  }
  return font;
}

SelectedFont::SelectedFont(const FontDescription& description) {
  constexpr long ANY_HEIGHT = -1000;
  if (device_.Get() == nullptr) return;
  const LOGFONTW font = LogicalFont(description, ANY_HEIGHT);
  if (!Select(font, ANY_HEIGHT) || !ReadMetrics()) return;
  const long em = static_cast<long>(GetMetrics().otmEMSquare);
  if (em <= 0 || !Select(font, -em) || !ReadMetrics()) return;
  em_ = static_cast<double>(em);
}

SelectedFont::~SelectedFont() {
  if (before_ != nullptr) SelectObject(device_.Get(), before_);
  if (font_ != nullptr) DeleteObject(font_);
}

/// Selects the font at that height; returns false on failure.
bool SelectedFont::Select(LOGFONTW font, long height) {
  font.lfHeight = height;
  const HFONT created = CreateFontIndirectW(&font);
  if (created == nullptr) return false;
  const HGDIOBJ before = SelectObject(device_.Get(), created);
  if (before == nullptr) {
    DeleteObject(created);
    return false;
  }
  if (before_ == nullptr) before_ = before;
  if (font_ != nullptr) DeleteObject(font_);
  font_ = created;
  return true;
}

bool SelectedFont::ReadMetrics() {
  const UINT size = GetOutlineTextMetricsW(device_.Get(), 0, nullptr);
  if (size < sizeof(OUTLINETEXTMETRICW)) return false;
  metrics_.assign(size / sizeof(std::uint64_t) + 1, 0);
  auto* const metrics = reinterpret_cast<OUTLINETEXTMETRICW*>(metrics_.data());
  return GetOutlineTextMetricsW(device_.Get(), size, metrics) != 0;
}

}  // namespace shr::platform
