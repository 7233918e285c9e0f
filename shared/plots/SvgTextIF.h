// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws math text into SVG pictures: as text, which is small, can be searched and takes the faces
/// of whoever looks at it, or as outlines, which look the same everywhere, also on a machine
/// without any font. Both are laid out by the faces of this machine.
///
///     CMTSvgTextIF output(svg, SvgTextMode::Outlines);
///     std::shared_ptr<CMTMultiLineElement> label;
///     CMTContext context(output, 14);
///     if (context.Parse(L"{\\b Oslo}\n59.9\\a176 N", label) == CMTContext::MT_SUCCESS) {
///       output.DrawLabel(*label, CMTSvgTextIF::FromPicture(120, 80));
///     }
///
/// Units: user units of the picture; since y of math text goes upwards, the place (x, y) of the
/// picture is (x, -y) here. Places are rounded to hundredths, glyphs to a ten thousandth of the em.
/// Bytes: the same on both targets where the faces, also those fallen back on, are the same files
/// and the text needs no shaping; places turned by other than quarter turns may differ by one in
/// the last digit. Threads: one thread an object.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shared/Export.h"
#include "shared/color/Color4b.h"
#include "shared/fonts/TextLayout.h"
#include "shared/geometry/Vec2.h"
#include "shared/mathtext/Element.h"
#include "shared/mathtext/FaceTextIF.h"
#include "shared/plots/SvgTextMode.h"
#include "shared/plots/SvgWriter.h"

namespace shr {

class SHARED_API CMTSvgTextIF : public CMTFaceTextIF {
public:
  /// Draws into `svg`, which must live as long as this and has an element open whenever something
  /// is drawn. Ids of glyphs begin with `idPrefix`, a name; it must differ between interfaces whose
  /// pictures end up in one document.
  explicit CMTSvgTextIF(SvgWriter& svg, SvgTextMode mode = SvgTextMode::Text,
                        std::string idPrefix = "glyph");
  ~CMTSvgTextIF() override;

  /// Returns the point of math text that lies at (x, y) of the picture.
  static Vec2d FromPicture(double x, double y) { return Vec2d(x, -y); }

  /// Text stands out from what is below it by an edge of so many user units in `color`; none for a
  /// width of 0, as at first. A run of text has one edge; lines have none. Errors: a width that is
  /// negative or not finite is an invalid parameter.
  void SetHalo(const Color4b& color, double width);

  /// Leaves to the style around it what the text does not say itself: a color that is the one of
  /// new attributes, opaque black, and a family without a name. Lines and pens then take
  /// `currentColor`. For pictures whose colors follow the reader's choice of light or dark.
  void SetInheritsStyle(bool inherits) { inheritsStyle_ = inherits; }

  /// Draws `element` about `anchor` as `DrawUsingTextIF` does, in a group of its own. In outlines
  /// the group tells its text to those who do not see it.
  void DrawLabel(CMTElement& element, const Vec2d& anchor);

  void DrawString(const Vec2d& baselineBegin, std::wstring_view text) override;
  void DrawLine(const Vec2d& from, const Vec2d& to, double thickness) override;

private:
  using GlyphKey = std::pair<std::shared_ptr<CFaceInfo>, std::uint32_t>;
  /// By address, then by number. The order of `std::shared_ptr` itself does not compile with clang
  /// 14 beside the deleted operators of shared/geometry/VectorOperators.h.
  struct GlyphKeyLess {
    bool operator()(const GlyphKey& a, const GlyphKey& b) const {
      const CFaceInfo* const faces[] = {a.first.get(), b.first.get()};
      if (faces[0] != faces[1]) return std::less<const CFaceInfo*>()(faces[0], faces[1]);
      return a.second < b.second;
    }
  };
  struct Glyph {
    std::size_t id = 0;   ///< its number; 0 without curves
    double penWidth = 0;  ///< of those that are drawn with a pen
  };
  /// Runs side by side that become one element.
  using Piece = std::span<const TextRun>;

  void WriteText(const Vec2d& begin, std::wstring_view text, const Piece& piece);
  void WriteOutlines(const Vec2d& begin, std::wstring_view text, const Piece& piece);
  void WriteUses(const TextRun& run);
  void WritePenHalos(const TextRun& run);
  void BeginUse(const PlacedGlyph& placed, std::size_t id);
  void WriteColor(std::string_view attribute);
  void WriteHalo(double scale);
  void WriteSummary(std::wstring_view text);
  bool DefineGlyphs(const Piece& piece);
  void DefineGlyph(const GlyphVectors& vectors, std::size_t id);
  std::string TransformOf(const Vec2d& begin) const;

  SvgWriter& svg_;
  SvgTextMode mode_;
  std::string idPrefix_;
  bool isInLabel_ = false;
  bool inheritsStyle_ = false;
  Color4b haloColor_;
  double haloWidth_ = 0;
  std::map<GlyphKey, Glyph, GlyphKeyLess> glyphs_;
  std::size_t glyphCount_ = 0;
};

}  // namespace shr
