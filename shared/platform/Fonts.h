// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The outline fonts of the system: what is installed, and the metrics and outlines of one font.
///
/// Programs ask shared/fonts/SystemFaceInfo.h; this is what it stands on. Windows answers by GDI
/// and GDI+, Linux by Fontconfig and FreeType, which are loaded by the first call of `ListFonts`,
/// `OpenFont` or `FindStandIn` and not before. Where they are missing there are no fonts.
///
///     for (const FontDescription& font : ListFonts().fonts) {
///       GlyphMetrics metrics;
///       const std::unique_ptr<Font> opened = OpenFont(font);
///       if (opened != nullptr) opened->GetGlyphMetrics(opened->GetGlyph(U'A'), metrics);
///     }
///
/// Units: lengths are fractions of the em, x to the right and y upwards from the baseline; nothing
/// is hinted. Threads: the functions may be called on any thread; one thread a `Font`.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr::platform {

/// Bits of the character sets that a font serves; `CharsetBit` makes one from the number by which
/// the system calls the set.
using CharsetBits = std::uint32_t;

/// Numbers of character sets, as GDI has them.
inline constexpr unsigned char ANSI_CHARACTERS = 0;
inline constexpr unsigned char DEFAULT_CHARACTERS = 1;  ///< whichever: every font serves it
inline constexpr unsigned char SYMBOL_CHARACTERS = 2;
inline constexpr unsigned char OEM_CHARACTERS = 255;

/// Returns the bit of a character set, 0 for a number that names none.
SHARED_API CharsetBits CharsetBit(unsigned char charset) noexcept;

/// Returns the character sets of the two words ulCodePageRange1 and 2 of a font's table OS/2.
SHARED_API CharsetBits CharsetsOfCodePages(std::uint32_t range1, std::uint32_t range2) noexcept;

/// Pitch and family in one byte, as text metrics have them. Mind that `VARIABLE` is what logical
/// fonts of GDI call FIXED_PITCH.
inline constexpr unsigned char PITCH_VARIABLE = 0x01;
inline constexpr unsigned char FAMILY_ROMAN = 0x10;
inline constexpr unsigned char FAMILY_SWISS = 0x20;
inline constexpr unsigned char FAMILY_MODERN = 0x30;
inline constexpr unsigned char FAMILY_SCRIPT = 0x40;
inline constexpr unsigned char FAMILY_DECORATIVE = 0x50;
inline constexpr unsigned char FAMILY_MASK = 0xF0;

/// One installed font: a family in one weight and slant.
struct FontDescription {
  GString family;            ///< name 1 of the font: "DejaVu Sans Condensed"
  GString style;             ///< name 2: "Bold Oblique"
  long weight = 400;         ///< 100 to 1000, usWeightClass of OS/2
  unsigned char italic = 0;  ///< 1 for italic and oblique
  CharsetBits charsets = 0;
  unsigned char pitchAndFamily = 0;
  char32_t firstChar = 0;  ///< usFirstCharIndex of OS/2
  GString file;            ///< Linux: the file; empty on Windows
  int index = 0;           ///< Linux: the place of the font in a collection
};

/// How far listing the fonts came. All but `Complete` carry the system's code and happen on Windows
/// alone.
enum class FontListStatus { Complete, NoDevice, NoCollection, NoCount, NoFamilies };

struct FontList {
  std::vector<FontDescription> fonts;  ///< in no order
  std::vector<GString> unreadable;     ///< files of fonts that cannot be read, left out of `fonts`
  FontListStatus status = FontListStatus::Complete;
  int code = 0;
};

/// Returns the fonts that are installed now. Fonts without outlines are left out. Linux: what the
/// files say is kept in "shared/faces-1" of the user's cache folder (XDG_CACHE_HOME or ~/.cache) by
/// path, time and size, so that only new files are opened; a cache that cannot be read or written
/// costs time and nothing else. `unreadable` then has those files that were found broken now.
SHARED_API FontList ListFonts();

/// Returns the installed family that the system takes for `family`, which need not be installed;
/// empty when there is none. On Linux that is Fontconfig's choice among the fonts of the last
/// `ListFonts`, so its aliases of equal metrics come first; on Windows the font mapper's.
SHARED_API GString FindStandIn(const GString& family, unsigned char pitchAndFamily);

/// The outline text metrics of a font.
struct OutlineTextMetrics {
  double emSquare = 0;                            ///< design units of an em
  double ascent = 0;                              ///< above the baseline; usWinAscent
  double descent = 0;                             ///< below it, positive; usWinDescent
  double lineGap = 0;                             ///< sTypoLineGap
  double typoAscent = 0;                          ///< sTypoAscender
  double typoDescent = 0;                         ///< sTypoDescender, negative
  double capHeight = 0;                           ///< sCapHeight, 0 where the font has none
  double xHeight = 0;                             ///< sxHeight, 0 where the font has none
  double averageWidth = 0;                        ///< xAvgCharWidth
  double underlinePosition = 0;                   ///< of the upper edge, negative below; post
  double underlineThickness = 0;                  ///< post
  double strikeoutPosition = 0;                   ///< of the upper edge; yStrikeoutPosition
  double strikeoutThickness = 0;                  ///< yStrikeoutSize
  double superscriptSize = 0;                     ///< ySuperscriptYSize
  double superscriptOffset = 0;                   ///< ySuperscriptYOffset
  double subscriptSize = 0;                       ///< ySubscriptYSize
  double subscriptOffset = 0;                     ///< ySubscriptYOffset, positive below
  double italicAngle = 0;                         ///< degrees counter-clockwise from upright; post
  double xMin = 0, yMin = 0, xMax = 0, yMax = 0;  ///< the box of all glyphs; head
};

/// Advance and box of a glyph. A glyph without ink has xMin > xMax.
struct GlyphMetrics {
  double advance = 0;
  double xMin = 1, yMin = 1, xMax = -1, yMax = -1;

  bool HasInk() const noexcept { return xMin <= xMax; }
};

struct OutlinePoint {
  double x = 0, y = 0;

  friend bool operator==(const OutlinePoint& a, const OutlinePoint& b) = default;
};

/// A step of an outline, and how many points it takes.
enum class OutlineVerb : unsigned char {
  Move,       ///< 1: begins a contour
  Line,       ///< 1
  Quadratic,  ///< 2: control point and end
  Cubic,      ///< 3: two control points and end
  Close,      ///< 0: a line back to the beginning of the contour
};

/// Contours of lines and Béziers. The points of all verbs stand in one row.
struct GlyphOutline {
  std::vector<OutlineVerb> verbs;
  std::vector<OutlinePoint> points;

  void Move(double x, double y) {
    start_ = points.size();
    Add(OutlineVerb::Move, {x, y});
  }
  void Line(double x, double y) { Add(OutlineVerb::Line, {x, y}); }
  void Quadratic(OutlinePoint control, OutlinePoint end) {
    points.push_back(control);
    Add(OutlineVerb::Quadratic, end);
  }
  void Cubic(OutlinePoint first, OutlinePoint second, OutlinePoint end) {
    points.push_back(first);
    points.push_back(second);
    Add(OutlineVerb::Cubic, end);
  }
  /// Closes the contour, which leads back to its begin; lines that end there already go.
  void Close() {
    while (!verbs.empty() && verbs.back() == OutlineVerb::Line && points.back() == points[start_]) {
      verbs.pop_back();
      points.pop_back();
    }
    verbs.push_back(OutlineVerb::Close);
  }

private:
  void Add(OutlineVerb verb, OutlinePoint end) {
    verbs.push_back(verb);
    points.push_back(end);
  }

  std::size_t start_ = 0;  // of the contour, among the points
};

/// Returns the box of the curves themselves, not of their control points; no ink and no advance for
/// an outline without points.
SHARED_API GlyphMetrics BoxOf(const GlyphOutline& outline);

/// Number of the glyph that stands for characters which a font lacks.
inline constexpr std::uint32_t MISSING_GLYPH = 0;

/// An open font. Glyphs are told by their number in the font.
class SHARED_API Font {
public:
  virtual ~Font();
  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;

  /// Returns the glyph of a character, `MISSING_GLYPH` when the font has none.
  virtual std::uint32_t GetGlyph(char32_t character) = 0;

  // Each returns false, with the result unchanged, when the font does not give it.
  virtual bool GetTextMeasures(OutlineTextMetrics& metrics) = 0;
  virtual bool GetGlyphMetrics(std::uint32_t glyph, GlyphMetrics& metrics) = 0;
  /// The contours are closed; the even winding of overlapping ones is ink, too (fill by non-zero).
  virtual bool GetOutline(std::uint32_t glyph, GlyphOutline& outline) = 0;

protected:
  Font();
};

/// Opens a font of `ListFonts`; null when that fails.
SHARED_API std::unique_ptr<Font> OpenFont(const FontDescription& description);

}  // namespace shr::platform
