// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/fonts/TrueTypeFaceInfo.h"

#include <algorithm>

#include "shared/diagnostics/Logger.h"
#include "shared/text/StringCompare.h"

namespace shr {
namespace {

FaceAttributes AttributesOf(const platform::FontDescription& font) {
  FaceAttributes attributes;
  attributes.weight = font.weight;
  attributes.italic = font.italic;
  attributes.pitchAndFamily = font.pitchAndFamily;
  attributes.charsets = font.charsets;
  attributes.firstChar = font.firstChar;
  return attributes;
}

}  // namespace

CTrueTypeFaceInfo::CTrueTypeFaceInfo(const platform::FontDescription& description,
                                     const GString& faceName)
    : CFaceInfo(faceName, AttributesOf(description)), description_(description) {}

CTrueTypeFaceInfo::~CTrueTypeFaceInfo() = default;

bool CTrueTypeFaceInfo::IsStandIn() const {
  return !StringEquivalent()(description_.family, GetFaceName());
}

/// Returns the font, opened by the first call; null, logged once, when that fails. Under the lock.
platform::Font* CTrueTypeFaceInfo::Open() const {
  if (font_ == nullptr && !failed_) {
    font_ = platform::OpenFont(description_);
    failed_ = font_ == nullptr;
    if (failed_) {
      g_Logger.SendVA(LogWarning, L"The font '%s' (%s) cannot be opened.", description_.family,
                      description_.file);
    }
  }
  return font_.get();
}

std::uint32_t CTrueTypeFaceInfo::GetGlyphOf(char32_t character) const {
  const std::lock_guard<std::mutex> lock(fontMutex_);
  if (const auto known = numbers_.find(character); known != numbers_.end()) return known->second;
  platform::Font* const font = Open();
  if (font == nullptr) return platform::MISSING_GLYPH;
  std::uint32_t glyph = font->GetGlyph(character);
  const bool isSymbol = glyph == platform::MISSING_GLYPH && character < SYMBOL_COUNT &&
                        ServesCharset(platform::SYMBOL_CHARACTERS);
  if (isSymbol) glyph = font->GetGlyph(SYMBOL_BASE + character);
  numbers_.emplace(character, glyph);
  return glyph;
}

bool CTrueTypeFaceInfo::MayHave(char32_t character) const {
  std::call_once(coverageRead_, [this] { coverage_ = platform::ReadCoverage(description_); });
  const auto behind = std::upper_bound(
      coverage_.begin(), coverage_.end(), character,
      [](char32_t wanted, const platform::CharacterRange& range) { return wanted < range.first; });
  return behind != coverage_.begin() && character <= behind[-1].last;
}

bool CTrueTypeFaceInfo::GetMetricsOfGlyph(std::uint32_t glyph, GlyphMetrics& metrics) const {
  const std::lock_guard<std::mutex> lock(fontMutex_);
  if (const auto known = glyphs_.find(glyph); known != glyphs_.end()) {
    metrics = known->second;
    return true;
  }
  platform::Font* const font = Open();
  if (font == nullptr || !font->GetGlyphMetrics(glyph, metrics)) return false;
  glyphs_.emplace(glyph, metrics);
  return true;
}

bool CTrueTypeFaceInfo::GetVectorsOfGlyph(std::uint32_t glyph, GlyphVectors& vectors) const {
  const std::lock_guard<std::mutex> lock(fontMutex_);
  platform::Font* const font = Open();
  return font != nullptr && font->GetOutline(glyph, vectors.fill);
}

bool CTrueTypeFaceInfo::Shape(std::wstring_view line, const platform::TextItem& item,
                              platform::ShapedText& shaped) const {
  const std::lock_guard<std::mutex> lock(shaperMutex_);
  if (shaper_ == nullptr && !shaperFailed_) {
    shaper_ = platform::OpenShaper(description_);
    shaperFailed_ = shaper_ == nullptr;
  }
  return shaper_ != nullptr && shaper_->Shape(line, item, shaped);
}

bool CTrueTypeFaceInfo::FetchOTM(OutlineTextMetrics& metrics) const {
  const std::lock_guard<std::mutex> lock(fontMutex_);
  platform::Font* const font = Open();
  return font != nullptr && font->GetTextMeasures(metrics);
}

bool CTrueTypeFaceInfo::FetchGlyphMetrics(char32_t code, GlyphMetrics& metrics) const {
  const std::lock_guard<std::mutex> lock(fontMutex_);
  platform::Font* const font = Open();
  if (font == nullptr) return false;
  const std::uint32_t glyph = font->GetGlyph(code);
  return glyph != platform::MISSING_GLYPH && font->GetGlyphMetrics(glyph, metrics);
}

bool CTrueTypeFaceInfo::FetchDefaultGlyphMetrics(GlyphMetrics& metrics) const {
  return GetMetricsOfGlyph(platform::MISSING_GLYPH, metrics);
}

bool CTrueTypeFaceInfo::FetchGlyphVectors(char32_t code, GlyphVectors& vectors) const {
  const std::lock_guard<std::mutex> lock(fontMutex_);
  platform::Font* const font = Open();
  return font != nullptr && font->GetOutline(font->GetGlyph(code), vectors.fill);
}

bool CTrueTypeFaceInfo::FetchDefaultGlyphVectors(GlyphVectors& vectors) const {
  return GetVectorsOfGlyph(platform::MISSING_GLYPH, vectors);
}

void CTrueTypeFaceInfo::Release() const {
  const std::lock_guard<std::mutex> lock(fontMutex_);
  font_.reset();
  failed_ = false;
  glyphs_.clear();
  numbers_.clear();
  const std::lock_guard<std::mutex> shaperLock(shaperMutex_);
  shaper_.reset();
  shaperFailed_ = false;
}

}  // namespace shr
