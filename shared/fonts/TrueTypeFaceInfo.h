// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CTrueTypeFaceInfo`, an installed outline font as a face.
///
///     const CTrueTypeFaceInfo face(description, L"Arial");   // opened when first measured
///     const GString file = face.GetDescription().file;       // Linux: for a shaping library
///
/// Threads: as shared/fonts/FaceInfo.h.

#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "shared/Export.h"
#include "shared/fonts/FaceInfo.h"
#include "shared/platform/FontFallback.h"
#include "shared/platform/TextShaping.h"

namespace shr {

/// A face whose metrics and outlines come from the system. The face name may differ from the family
/// of the font: then that font stands in for a face that is not installed.
class SHARED_API CTrueTypeFaceInfo : public CFaceInfo {
public:
  CTrueTypeFaceInfo(const platform::FontDescription& description, const GString& faceName);
  ~CTrueTypeFaceInfo() override;

  unsigned int GetFaceType() const override { return FACE_TRUE_TYPE; }

  /// Returns what the font says of itself, its own family included.
  const platform::FontDescription& GetDescription() const noexcept { return description_; }

  /// Returns true when the font stands in for a face of another name.
  bool IsStandIn() const;

  /// Returns the number in the font of the glyph of a character, the one for missing characters
  /// (platform::MISSING_GLYPH) when the face has none.
  std::uint32_t GetGlyphOf(char32_t character) const;

  /// Returns whether the system says that the font has the character, without opening it to
  /// measure; `HasGlyph` is what the font says itself. Cost: O(log n), the first call reads more.
  bool MayHave(char32_t character) const;

  /// Return metrics and curves of a glyph by its number in the font, as shaping libraries give
  /// them: false, with the result unchanged, when there is none.
  bool GetMetricsOfGlyph(std::uint32_t glyph, GlyphMetrics& metrics) const;
  bool GetVectorsOfGlyph(std::uint32_t glyph, GlyphVectors& vectors) const;

  /// Shapes an item of a line (shared/platform/TextShaping.h) in the font. Returns false, with
  /// `shaped` in no particular state, where the system cannot.
  bool Shape(std::wstring_view line, const platform::TextItem& item,
             platform::ShapedText& shaped) const;

protected:
  bool FetchOTM(OutlineTextMetrics& metrics) const override;
  bool FetchGlyphMetrics(char32_t code, GlyphMetrics& metrics) const override;
  bool FetchDefaultGlyphMetrics(GlyphMetrics& metrics) const override;
  bool FetchGlyphVectors(char32_t code, GlyphVectors& vectors) const override;
  bool FetchDefaultGlyphVectors(GlyphVectors& vectors) const override;
  void Release() const override;

private:
  platform::Font* Open() const;

  platform::FontDescription description_;
  mutable std::once_flag coverageRead_;
  mutable std::vector<platform::CharacterRange> coverage_;
  mutable std::mutex shaperMutex_;
  mutable std::unique_ptr<platform::Shaper> shaper_;
  mutable bool shaperFailed_ = false;
  mutable std::mutex fontMutex_;
  mutable std::unique_ptr<platform::Font> font_;
  mutable bool failed_ = false;
  mutable std::unordered_map<std::uint32_t, GlyphMetrics> glyphs_;  // that were asked for by number
  mutable std::unordered_map<char32_t, std::uint32_t> numbers_;     // of glyphs, by character
};

}  // namespace shr
