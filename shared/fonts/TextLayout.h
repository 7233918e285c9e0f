// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Lays one line of text out: falls back face by face for characters that the face lacks, orders
/// and shapes what needs it (Arabic joins, Devanagari reorders), and says where each glyph goes.
/// For one face alone, without any of this, take shared/fonts/FaceInfo.h; docs/fonts.md tells how
/// faces are fallen back on.
///
///     TextFace face;
///     face.name = L"Arial";
///     const double width = 12 * MeasureText(L"Depth, m", face);   // 12 points high
///     const TextLayout line = LayoutText(L"Cairo (القاهرة)", face);
///     for (const TextRun& run : line.runs) {
///       for (const PlacedGlyph& placed : run.glyphs) {
///         const GlyphVectors curves = GetGlyphVectors(run, placed);   // at placed.x, placed.y
///       }
///     }
///
/// Units: fractions of the em, x to the right from the pen at the left end of the line and y
/// upwards from the baseline; times the height of the text they are lengths of the picture. Places
/// in a text are code units: UTF-16 units on Windows, code points on Linux.
///
/// Threads: all functions may be called on any thread. What is learnt about faces is shared by all
/// and forgotten by `CSystemFaceInfo::Refresh`.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/fonts/FaceInfo.h"
#include "shared/geometry/Box2.h"
#include "shared/text/GString.h"

namespace shr {

/// What a text is set in. The face is the one that `CSystemFaceInfo::Match` finds: name, weight and
/// slant always count, the character set when it is not `DEFAULT_CHARACTERS`, the pitch and the
/// family when `pitchAndFamily` names a family, the pitch alone when it is `PITCH_VARIABLE`.
struct TextFace {
  GString name;              ///< empty: the default text face
  long weight = 400;         ///< 100 to 1000
  unsigned char italic = 0;  ///< 0 or not
  unsigned char charset = platform::DEFAULT_CHARACTERS;
  unsigned char pitchAndFamily = 0;  ///< bits of shared/platform/Fonts.h
};

/// A glyph and where its origin goes.
struct PlacedGlyph {
  std::uint32_t glyph = 0;  ///< number in the font (outline faces) or character (symbol faces)
  double x = 0, y = 0;
  std::size_t begin = 0;  ///< first code unit of the text that the glyph stands for
};

/// A part of a text in one face and one direction. Several characters may share a glyph, and one
/// may have several.
struct TextRun {
  std::shared_ptr<CFaceInfo> face;
  std::size_t begin = 0, length = 0;  ///< code units of the text
  bool isRightToLeft = false;
  double x = 0;                     ///< of the left end
  double advance = 0;               ///< width, what x of the next run is further on
  std::vector<PlacedGlyph> glyphs;  ///< in visual order
};

/// A line of text. The runs cover the text and stand in visual order, from left to right.
struct TextLayout {
  std::vector<TextRun> runs;
  double advance = 0;
};

/// Direction of the paragraph: where a line begins whose directions are mixed.
enum class TextDirection {
  Auto,         ///< as the first letter that has a direction; left to right when none has
  LeftToRight,  ///< always
  RightToLeft,
};

/// Lays a text out. Line breaks and other controls take no room.
///
/// Characters that need no shaping (letters of Latin, Greek, Cyrillic and the like, Chinese,
/// Japanese, Korean, digits, signs) stand side by side at their own advances, without kerning or
/// ligatures, as everywhere in the library. All others are shaped by the rules of their script,
/// and the whole is ordered by the Unicode bidirectional algorithm (Unicode Standard Annex 9).
///
/// Degenerate: the empty text has no runs. Unpaired surrogates and characters that no face has show
/// the glyph for missing characters of the face itself. Text of any length is laid out: beyond
/// 8,192 characters it is ordered in blocks of about that many, one beside the other.
/// Cost: O(length); a character met for the first time in a face asks the other faces for it.
[[nodiscard]] SHARED_API TextLayout LayoutText(std::wstring_view text, const TextFace& face,
                                               TextDirection direction = TextDirection::Auto);

/// Returns the advance of the text, always that of `LayoutText`. Cost: O(length); no memory is
/// taken for text that needs no shaping once its characters were met, nor for other text of up to
/// 64 code units once it was met itself (the last 16,384 in a face are remembered, or fewer).
[[nodiscard]] SHARED_API double MeasureText(std::wstring_view text, const TextFace& face);

/// Returns the box of what is drawn of the text, its pen starting at the origin; the empty box when
/// nothing is. Cost: as `MeasureText`.
[[nodiscard]] SHARED_API Box2d MeasureTextBounds(std::wstring_view text, const TextFace& face);

/// Returns the curves of a glyph of the run, their origin at the origin of the glyph; none when the
/// face does not give them.
[[nodiscard]] SHARED_API GlyphVectors GetGlyphVectors(const TextRun& run, const PlacedGlyph& glyph);

/// Returns the metrics of a glyph of the run: its box around its origin.
[[nodiscard]] SHARED_API GlyphMetrics GetGlyphMetrics(const TextRun& run, const PlacedGlyph& glyph);

/// Returns the families that the text falls back on, each once, in the order of the text: what a
/// list of families (`font-family` of SVG) needs behind the requested one. Empty when the face has
/// all.
[[nodiscard]] SHARED_API std::vector<GString> FallbackFamilies(std::wstring_view text,
                                                               const TextFace& face);

}  // namespace shr
