// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CFaceInfo`, a typeface that text can be measured in and drawn with: its metrics, the metrics
/// and outlines of its glyphs, and the extent of text in it.
///
/// Faces come from shared/fonts/SystemFaceInfo.h; the two kinds are `CTrueTypeFaceInfo`
/// (shared/fonts/TrueTypeFaceInfo.h) and `CSYMFaceInfo` (shared/fonts/SymbolFaceInfo.h).
///
///     const CSystemFaceInfo& faces = CSystemFaceInfo::Instance();
///     const std::shared_ptr<CFaceInfo> face = faces.GetFaceInfo(faces.GetDefaultTextFace());
///     const double width = 12 * face->CalcEmExtent(L"Depth, m");   // 12 points high
///     const GlyphVectors glyph = face->GetGlyphVectors(U'A');   // curves to draw
///
/// Units: lengths are fractions of the em, x to the right from the pen and y upwards from the
/// baseline; times the height of the text they are lengths of the picture. No kerning is applied:
/// the extent of a text is the sum of the advances of its characters, as where the system draws
/// plain text.
///
/// Threads: all const calls may run together. What was measured is kept until `Free`.

#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string_view>
#include <unordered_map>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/platform/Fonts.h"
#include "shared/text/GString.h"

namespace shr {

using platform::GlyphMetrics;
using platform::GlyphOutline;
using platform::OutlinePoint;
using platform::OutlineTextMetrics;
using platform::OutlineVerb;

/// Kinds of faces, bits of the type masks of `CSystemFaceInfo`.
inline constexpr unsigned int FACE_TRUE_TYPE = 1;
inline constexpr unsigned int FACE_SYMBOL = 2;
inline constexpr unsigned int FACE_ALL_TYPES = FACE_TRUE_TYPE | FACE_SYMBOL;

/// What of a face requests are compared with.
struct FaceAttributes {
  long weight = 400;
  unsigned char italic = 0;            ///< 0 or 1
  unsigned char pitchAndFamily = 0;    ///< bits of shared/platform/Fonts.h
  platform::CharsetBits charsets = 0;  ///< all that the face serves
  char32_t firstChar = 0;              ///< the lowest that it has
};

/// The curves of one glyph, its origin at the pen. Glyphs of TrueType faces are all `fill`.
struct GlyphVectors {
  GlyphOutline fill;    ///< closed contours, filled by the non-zero rule
  GlyphOutline stroke;  ///< lines to be drawn with a round pen
  double penWidth = 0;  ///< of the pen
};

/// Two ends of the middle of a line below or through a text, and how thick it is.
struct EmLine {
  Vec2d begin;
  Vec2d end;
  double thickness = 0;
};

/// A face. Derived classes say where the metrics come from.
class SHARED_API CFaceInfo {
public:
  CFaceInfo(const GString& faceName, const FaceAttributes& attributes);
  virtual ~CFaceInfo();
  CFaceInfo(const CFaceInfo&) = delete;
  CFaceInfo& operator=(const CFaceInfo&) = delete;

  /// Returns the kind of the face, one of the bits above.
  virtual unsigned int GetFaceType() const = 0;

  const GString& GetFaceName() const noexcept { return faceName_; }
  const FaceAttributes& GetAttributes() const noexcept { return attributes_; }
  char32_t GetFirstChar() const noexcept { return attributes_.firstChar; }
  /// Returns true when the face serves that character set; all serve DEFAULT_CHARACTERS.
  bool ServesCharset(unsigned char charset) const noexcept {
    return (attributes_.charsets & platform::CharsetBit(charset)) != 0;
  }

  /// Returns the metrics of the face. Errors: "CFaceInfo: Could not get text metrics for typeface
  /// '%s'" when they cannot be obtained, each time. Lifetime: as the face.
  const OutlineTextMetrics& GetOTM() const;

  /// Returns the metrics of a character; those of the glyph for missing characters where the face
  /// has none. Control characters take no room, nor do marks of format that the face lacks.
  GlyphMetrics GetGlyphMetrics(char32_t character) const;

  /// Returns true when the face itself has a glyph for the character.
  bool HasGlyph(char32_t character) const;

  /// Returns the code under which the face has the character: its own, or the one in the private
  /// range from U+F000 where fonts of symbols keep their 256.
  char32_t MapCharCode(char32_t character) const;

  /// Returns the curves of a character, of the glyph for missing ones where the face has none; none
  /// when that fails, too.
  GlyphVectors GetGlyphVectors(char32_t character) const;

  // Measurement. Units: em. Cost: O(length), one look-up a character once it was met.

  /// Returns the advance width of the text; pairs of surrogates are one character.
  double CalcEmExtent(std::wstring_view text) const;

  /// Returns how many code units at the head of the text the face can show: up to the first
  /// character that it lacks (controls and marks of format need no glyph, nor does another face
  /// have halves of pairs); `extent` is their advance.
  std::size_t CalcEmExtentOfKnown(std::wstring_view text, double& extent) const;

  /// Returns the box of what is drawn of the text, its pen starting at the origin; the empty box
  /// when nothing is.
  Box2d CalcEmBounds(std::wstring_view text) const;

  /// Return the line below or through the text, as long as its extent. Where the face does not say,
  /// it is a twentieth of an em thick, a tenth below the baseline or a quarter above. Errors: as
  /// `GetOTM`.
  EmLine CalcEmUnderscoreLine(std::wstring_view text) const;
  EmLine CalcEmStrikeoutLine(std::wstring_view text) const;

  /// Gives back what was measured and opened; it is fetched again when needed. Requires: no other
  /// thread uses what `GetOTM` returned.
  void Free();

protected:
  /// Where fonts of symbols have the characters U+0000 to U+00FF.
  static constexpr char32_t SYMBOL_BASE = 0xF000;
  static constexpr char32_t SYMBOL_COUNT = 0x100;

  // Called under the lock of the face, so one at a time. All but the first return false when the
  // face does not give what is asked.

  /// Obtains the metrics of the face.
  virtual bool FetchOTM(OutlineTextMetrics& metrics) const = 0;
  /// Obtains the metrics of a character that the face has; false when it has none.
  virtual bool FetchGlyphMetrics(char32_t code, GlyphMetrics& metrics) const = 0;
  /// Obtains the metrics of the glyph for missing characters.
  virtual bool FetchDefaultGlyphMetrics(GlyphMetrics& metrics) const = 0;
  virtual bool FetchGlyphVectors(char32_t code, GlyphVectors& vectors) const = 0;
  virtual bool FetchDefaultGlyphVectors(GlyphVectors& vectors) const = 0;
  /// Gives back what was opened.
  virtual void Release() const = 0;

private:
  struct Page;
  /// The page used last, so that runs of one script look pages up once.
  struct PageCursor {
    char32_t number = static_cast<char32_t>(-1);
    const Page* page = nullptr;
  };

  const GlyphMetrics& Lookup(char32_t character, PageCursor& cursor, bool& has) const;
  char32_t MapLocked(char32_t character, GlyphMetrics& metrics, bool& has) const;
  template <typename Visit>
  void VisitGlyphs(std::wstring_view text, Visit visit) const;
  EmLine LineOf(std::wstring_view text, double upperEdge, double thickness, double otherwise) const;

  GString faceName_;
  FaceAttributes attributes_;
  mutable std::mutex mutex_;
  mutable std::unique_ptr<OutlineTextMetrics> otm_;
  mutable std::unordered_map<char32_t, std::unique_ptr<Page>> pages_;
};

/// Order of faces: by name, ignoring case.
SHARED_API bool FaceNameLess(const CFaceInfo& a, const CFaceInfo& b);

}  // namespace shr
