// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Glyphs are loaded without scale and so in design units: what is measured depends on no size and
// no hinting, and an advance times a height is the advance at that height.
//
// Pitch and family are derived as GDI shows them for the same fonts: fixed where the table post or
// the PANOSE number says so; roman for the serifs of PANOSE, swiss for its sans serifs, modern for
// a fixed pitch, script and decorative for these PANOSE kinds. Sources: OpenType specification,
// tables "post", "OS/2" (PANOSE classification numbers), "name".

#include "shared/platform/posix/FreeTypeFont.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

#include "shared/platform/posix/FontLibraries.h"
#include "shared/text/Utf.h"

namespace shr::platform {
namespace {

constexpr FT_UShort NAME_FAMILY = 1;
constexpr FT_UShort NAME_STYLE = 2;
constexpr FT_UShort PLATFORM_MICROSOFT = 3;
constexpr FT_UShort LANGUAGE_US = 0x409;
constexpr FT_UShort SELECTION_ITALIC = 1;
constexpr FT_UShort SELECTION_OBLIQUE = 1 << 9;
constexpr FT_UShort NO_OS2 = 0xFFFF;
constexpr double FIXED_POINT = 65536.0;
constexpr long REGULAR = 400;
constexpr long BOLD = 700;

/// Closes a face at the end of its block.
struct FaceCloser {
  void operator()(FT_Face face) const { CloseFreeTypeFace(face); }
};
using FacePointer = std::unique_ptr<FT_FaceRec, FaceCloser>;

/// The tables of a font; null where it has none.
struct Tables {
  const TT_OS2* os2;
  const TT_Postscript* post;
  const TT_HoriHeader* hhea;
};

Tables TablesOf(FT_Face face) {
  const FreeTypeLibrary& freeType = *LoadFreeType();
  Tables tables = {};
  tables.os2 = static_cast<const TT_OS2*>(freeType.FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
  if (tables.os2 != nullptr && tables.os2->version == NO_OS2) tables.os2 = nullptr;
  tables.post = static_cast<const TT_Postscript*>(freeType.FT_Get_Sfnt_Table(face, FT_SFNT_POST));
  tables.hhea = static_cast<const TT_HoriHeader*>(freeType.FT_Get_Sfnt_Table(face, FT_SFNT_HHEA));
  return tables;
}

/// Returns the name of that number in Microsoft's encoding, in American English where there is
/// more than one; `otherwise` when there is none.
GString NameOf(FT_Face face, FT_UShort number, const char* otherwise) {
  const FreeTypeLibrary& freeType = *LoadFreeType();
  GString found;
  const FT_UInt count = freeType.FT_Get_Sfnt_Name_Count(face);
  for (FT_UInt i = 0; i < count; ++i) {
    FT_SfntName name = {};
    if (freeType.FT_Get_Sfnt_Name(face, i, &name) != 0) continue;
    if (name.platform_id != PLATFORM_MICROSOFT || name.name_id != number) continue;
    if (!found.empty() && name.language_id != LANGUAGE_US) continue;
    const std::string_view bytes(reinterpret_cast<const char*>(name.string), name.string_len);
    std::wstring wide((bytes.size() + 1) / 2, L'\0');
    wide.resize(Utf16ToWide(bytes, ByteOrder::BigEndian, wide.data()));
    found = GString(wide);
    if (name.language_id == LANGUAGE_US) break;
  }
  if (found.empty() && otherwise != nullptr) found = GString::FromUtf8(otherwise);
  return found;
}

bool IsSymbolFont(FT_Face face) {
  for (FT_Int i = 0; i < face->num_charmaps; ++i) {
    if (face->charmaps[i]->encoding == FT_ENCODING_MS_SYMBOL) return true;
  }
  return false;
}

CharsetBits CharsetsOf(FT_Face face, const TT_OS2* os2) {
  if (os2 != nullptr && os2->version > 0 && os2->version != NO_OS2) {
    const auto range1 = static_cast<std::uint32_t>(os2->ulCodePageRange1);
    const auto range2 = static_cast<std::uint32_t>(os2->ulCodePageRange2);
    if (range1 != 0) return CharsetsOfCodePages(range1, range2);
  }
  const unsigned char only = IsSymbolFont(face) ? SYMBOL_CHARACTERS : ANSI_CHARACTERS;
  return CharsetBit(only) | CharsetBit(DEFAULT_CHARACTERS);
}

unsigned char PitchAndFamilyOf(FT_Face face, const Tables& tables) {
  // PANOSE: the kind of the family, for Latin text the style of its serifs and the proportion.
  enum { TEXT = 2, HANDWRITTEN = 3, DECORATIVE = 4 };
  constexpr FT_Byte FIRST_SERIF = 2, LAST_SERIF = 10, LAST_SANS = 15, MONOSPACED = 9;
  static const FT_Byte NONE[10] = {};
  const FT_Byte* const panose = tables.os2 == nullptr ? NONE : tables.os2->panose;
  const bool isFixed = (tables.post != nullptr && tables.post->isFixedPitch != 0) ||
                       (panose[0] == TEXT && panose[3] == MONOSPACED) || FT_IS_FIXED_WIDTH(face);
  if (isFixed) return FAMILY_MODERN;
  unsigned char family = 0;
  if (panose[0] == HANDWRITTEN) family = FAMILY_SCRIPT;
  if (panose[0] == DECORATIVE) family = FAMILY_DECORATIVE;
  if (panose[0] == TEXT && panose[1] >= FIRST_SERIF && panose[1] <= LAST_SERIF) {
    family = FAMILY_ROMAN;
  }
  if (panose[0] == TEXT && panose[1] > LAST_SERIF && panose[1] <= LAST_SANS) family = FAMILY_SWISS;
  return family | PITCH_VARIABLE;
}

class FreeTypeFont final : public Font {
public:
  explicit FreeTypeFont(FacePointer face)
      : face_(std::move(face)), em_(std::max<double>(face_->units_per_EM, 1)) {
    // FreeType has chosen a map of Unicode where there is one.
    if (face_->charmap == nullptr) {
      LoadFreeType()->FT_Select_Charmap(face_.get(), FT_ENCODING_MS_SYMBOL);
    }
  }

  std::uint32_t GetGlyph(char32_t character) override {
    return LoadFreeType()->FT_Get_Char_Index(face_.get(), character);
  }

  bool GetTextMeasures(OutlineTextMetrics& metrics) override;
  bool GetGlyphMetrics(std::uint32_t glyph, GlyphMetrics& metrics) override;
  bool GetOutline(std::uint32_t glyph, GlyphOutline& outline) override;

private:
  bool LoadGlyph(std::uint32_t glyph) {
    const FT_Int32 flags = FT_LOAD_NO_SCALE | FT_LOAD_IGNORE_TRANSFORM;
    return LoadFreeType()->FT_Load_Glyph(face_.get(), glyph, flags) == 0 &&
           face_->glyph->format == FT_GLYPH_FORMAT_OUTLINE;
  }
  double Em(FT_Pos units) const { return static_cast<double>(units) / em_; }

  FacePointer face_;
  double em_;
};

bool FreeTypeFont::GetTextMeasures(OutlineTextMetrics& metrics) {
  const Tables tables = TablesOf(face_.get());
  OutlineTextMetrics m;
  m.emSquare = em_;
  m.xMin = Em(face_->bbox.xMin);
  m.yMin = Em(face_->bbox.yMin);
  m.xMax = Em(face_->bbox.xMax);
  m.yMax = Em(face_->bbox.yMax);
  m.ascent = m.typoAscent = Em(face_->ascender);
  m.descent = -Em(face_->descender);
  m.typoDescent = Em(face_->descender);
  if (tables.hhea != nullptr) m.lineGap = Em(tables.hhea->Line_Gap);
  if (tables.post != nullptr) {
    m.underlinePosition = Em(tables.post->underlinePosition);
    m.underlineThickness = Em(tables.post->underlineThickness);
    m.italicAngle = static_cast<double>(tables.post->italicAngle) / FIXED_POINT;
  }
  if (const TT_OS2* const os2 = tables.os2) {
    m.ascent = Em(os2->usWinAscent);
    m.descent = Em(os2->usWinDescent);
    m.typoAscent = Em(os2->sTypoAscender);
    m.typoDescent = Em(os2->sTypoDescender);
    m.lineGap = Em(os2->sTypoLineGap);
    if (os2->version >= 2) {
      m.capHeight = Em(os2->sCapHeight);
      m.xHeight = Em(os2->sxHeight);
    }
    m.averageWidth = Em(os2->xAvgCharWidth);
    m.strikeoutPosition = Em(os2->yStrikeoutPosition);
    m.strikeoutThickness = Em(os2->yStrikeoutSize);
    m.superscriptSize = Em(os2->ySuperscriptYSize);
    m.superscriptOffset = Em(os2->ySuperscriptYOffset);
    m.subscriptSize = Em(os2->ySubscriptYSize);
    m.subscriptOffset = Em(os2->ySubscriptYOffset);
  }
  metrics = m;
  return true;
}

/// What the steps of FreeType's outline are written to.
struct OutlineSink {
  GlyphOutline outline;
  double em;
  bool isOpen = false;

  OutlinePoint Scaled(const FT_Vector* point) const {
    return {static_cast<double>(point->x) / em, static_cast<double>(point->y) / em};
  }
  void EndContour() {
    if (isOpen) outline.Close();
  }

  static int Move(const FT_Vector* to, void* user) {
    OutlineSink& sink = *static_cast<OutlineSink*>(user);
    sink.EndContour();
    sink.isOpen = true;
    const OutlinePoint point = sink.Scaled(to);
    sink.outline.Move(point.x, point.y);
    return 0;
  }
  static int Line(const FT_Vector* to, void* user) {
    OutlineSink& sink = *static_cast<OutlineSink*>(user);
    const OutlinePoint point = sink.Scaled(to);
    sink.outline.Line(point.x, point.y);
    return 0;
  }
  static int Quadratic(const FT_Vector* control, const FT_Vector* to, void* user) {
    OutlineSink& sink = *static_cast<OutlineSink*>(user);
    sink.outline.Quadratic(sink.Scaled(control), sink.Scaled(to));
    return 0;
  }
  static int Cubic(const FT_Vector* first, const FT_Vector* second, const FT_Vector* to,
                   void* user) {
    OutlineSink& sink = *static_cast<OutlineSink*>(user);
    sink.outline.Cubic(sink.Scaled(first), sink.Scaled(second), sink.Scaled(to));
    return 0;
  }
};

bool FreeTypeFont::GetOutline(std::uint32_t glyph, GlyphOutline& outline) {
  if (!LoadGlyph(glyph)) return false;
  FT_Outline_Funcs steps = {};
  steps.move_to = OutlineSink::Move;
  steps.line_to = OutlineSink::Line;
  steps.conic_to = OutlineSink::Quadratic;
  steps.cubic_to = OutlineSink::Cubic;
  // Twice as large, so that ends half way between two control points are not rounded.
  steps.shift = 1;
  OutlineSink sink{{}, 2 * em_};
  if (LoadFreeType()->FT_Outline_Decompose(&face_->glyph->outline, &steps, &sink) != 0) {
    return false;
  }
  sink.EndContour();
  outline = std::move(sink.outline);
  return true;
}

bool FreeTypeFont::GetGlyphMetrics(std::uint32_t glyph, GlyphMetrics& metrics) {
  GlyphOutline outline;
  if (!GetOutline(glyph, outline)) return false;
  metrics = BoxOf(outline);
  metrics.advance = Em(face_->glyph->metrics.horiAdvance);
  return true;
}

}  // namespace

bool DescribeFont(const char* file, int index, FontDescription& font) {
  const FacePointer face(OpenFreeTypeFace(file, index));
  if (face == nullptr || !FT_IS_SFNT(face.get()) || !FT_IS_SCALABLE(face.get())) return false;
  const Tables tables = TablesOf(face.get());
  FontDescription result;
  result.family = NameOf(face.get(), NAME_FAMILY, face->family_name);
  result.style = NameOf(face.get(), NAME_STYLE, face->style_name);
  if (result.family.empty()) return false;
  result.weight = (face->style_flags & FT_STYLE_FLAG_BOLD) != 0 ? BOLD : REGULAR;
  result.italic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0 ? 1 : 0;
  if (tables.os2 != nullptr) {
    // Weights of old fonts run from 1 to 9.
    const long weight = tables.os2->usWeightClass;
    if (weight > 0) result.weight = std::min<long>(weight < 10 ? weight * 100 : weight, 1000);
    const int slants = SELECTION_ITALIC | SELECTION_OBLIQUE;
    if ((tables.os2->fsSelection & slants) != 0) result.italic = 1;
    result.firstChar = tables.os2->usFirstCharIndex;
  }
  result.charsets = CharsetsOf(face.get(), tables.os2);
  result.pitchAndFamily = PitchAndFamilyOf(face.get(), tables);
  result.index = index;
  font = std::move(result);
  return true;
}

std::unique_ptr<Font> OpenFreeTypeFont(const char* file, int index) {
  FacePointer face(OpenFreeTypeFace(file, index));
  if (face == nullptr || !FT_IS_SCALABLE(face.get())) return nullptr;
  return std::make_unique<FreeTypeFont>(std::move(face));
}

}  // namespace shr::platform
