// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// GDI+ lists the families and is loaded for that alone; everything else is GDI.

#include "shared/platform/Fonts.h"

#include "shared/platform/WindowsTypes.h"
// behind <windows.h>
#include <objidl.h>
// behind <objidl.h>
#include <gdiplus.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <tuple>
#include <utility>

#include "shared/platform/windows/SelectedFont.h"
#include "shared/platform/windows/WideCharacterMap.h"

namespace shr::platform {
namespace {

constexpr char32_t LAST_BMP = 0xFFFF;
constexpr WORD NO_GLYPH = 0xFFFF;

/// The part of GDI+ that lists families.
struct FamilyList {
  decltype(&Gdiplus::GdiplusStartup) start = nullptr;
  decltype(&Gdiplus::GdiplusShutdown) stop = nullptr;
  decltype(&Gdiplus::DllExports::GdipNewInstalledFontCollection) open = nullptr;
  decltype(&Gdiplus::DllExports::GdipGetFontCollectionFamilyCount) count = nullptr;
  decltype(&Gdiplus::DllExports::GdipGetFontCollectionFamilyList) list = nullptr;
  decltype(&Gdiplus::DllExports::GdipGetFamilyName) name = nullptr;
};

bool LoadFamilyList(FamilyList& list) {
  const HMODULE library = LoadLibraryW(L"gdiplus.dll");
  return library != nullptr && FindFunction(library, "GdiplusStartup", list.start) &&
         FindFunction(library, "GdiplusShutdown", list.stop) &&
         FindFunction(library, "GdipNewInstalledFontCollection", list.open) &&
         FindFunction(library, "GdipGetFontCollectionFamilyCount", list.count) &&
         FindFunction(library, "GdipGetFontCollectionFamilyList", list.list) &&
         FindFunction(library, "GdipGetFamilyName", list.name);
}

/// Returns the names of the installed families; tells in `result` how far it came.
std::vector<GString> ListFamilies(const FamilyList& api, FontList& result) {
  const auto failed = [&result](FontListStatus status, Gdiplus::GpStatus code) {
    result.status = status;
    result.code = static_cast<int>(code);
    return std::vector<GString>();
  };
  Gdiplus::GpFontCollection* collection = nullptr;
  Gdiplus::GpStatus code = api.open(&collection);
  if (code != Gdiplus::Ok) return failed(FontListStatus::NoCollection, code);
  INT count = 0;
  code = api.count(collection, &count);
  if (code != Gdiplus::Ok) return failed(FontListStatus::NoCount, code);
  std::vector<Gdiplus::GpFontFamily*> families(static_cast<std::size_t>(std::max(count, 0)));
  code = api.list(collection, count, families.data(), &count);
  if (code != Gdiplus::Ok) return failed(FontListStatus::NoFamilies, code);
  families.resize(std::min(families.size(), static_cast<std::size_t>(std::max(count, 0))));
  std::vector<GString> names;
  for (const Gdiplus::GpFontFamily* const family : families) {
    wchar_t name[LF_FACESIZE] = {};
    if (api.name(family, name, LANG_NEUTRAL) == Gdiplus::Ok) names.emplace_back(name);
  }
  return names;
}

/// What the enumeration of one family adds to.
struct Collector {
  std::vector<FontDescription>& fonts;
  std::size_t begin;  // of the fonts of this family
};

/// Takes one entry of the enumeration: a style in one character set.
void Collect(Collector& collector, const ENUMLOGFONTEXW& entry, const NEWTEXTMETRICEXW& metrics) {
  const NEWTEXTMETRICW& text = metrics.ntmTm;
  FontDescription font;
  font.family = GString(entry.elfLogFont.lfFaceName);
  font.style = GString(entry.elfStyle);
  font.weight = text.tmWeight;
  font.italic = text.tmItalic != 0 ? 1 : 0;
  font.pitchAndFamily = text.tmPitchAndFamily & (PITCH_VARIABLE | FAMILY_MASK);
  font.firstChar = text.tmFirstChar;
  font.charsets = CharsetBit(entry.elfLogFont.lfCharSet) | CharsetBit(DEFAULT_CHARACTERS);
  for (std::size_t i = collector.begin; i < collector.fonts.size(); ++i) {
    FontDescription& known = collector.fonts[i];
    if (known.style == font.style && known.weight == font.weight && known.italic == font.italic) {
      known.charsets |= font.charsets;
      return;
    }
  }
  collector.fonts.push_back(std::move(font));
}

int CALLBACK EnumTrueTypeFacesProc(const LOGFONTW* entry, const TEXTMETRICW* metrics, DWORD type,
                                   LPARAM user) {
  // Names with "@" are the same fonts turned for vertical text.
  if ((type & TRUETYPE_FONTTYPE) == 0 || entry->lfFaceName[0] == L'@') return 1;
  Collect(*reinterpret_cast<Collector*>(user), *reinterpret_cast<const ENUMLOGFONTEXW*>(entry),
          *reinterpret_cast<const NEWTEXTMETRICEXW*>(metrics));
  return 1;
}

/// A font by GDI.
class GdiFont final : public Font {
public:
  explicit GdiFont(const FontDescription& description) : font_(description) {}

  bool IsOpen() const { return font_.IsOpen(); }

  std::uint32_t GetGlyph(char32_t character) override;
  bool GetTextMeasures(OutlineTextMetrics& metrics) override;
  bool GetGlyphMetrics(std::uint32_t glyph, GlyphMetrics& metrics) override {
    GlyphOutline outline;
    return Measure(glyph, metrics, outline);
  }
  bool GetOutline(std::uint32_t glyph, GlyphOutline& outline) override {
    GlyphMetrics metrics;
    return Measure(glyph, metrics, outline);
  }

private:
  bool Measure(std::uint32_t glyph, GlyphMetrics& metrics, GlyphOutline& outline);
  double Em(long units) const { return static_cast<double>(units) / font_.GetEm(); }

  SelectedFont font_;
  std::unique_ptr<WideCharacterMap> wideCharacters_;
};

std::uint32_t GdiFont::GetGlyph(char32_t character) {
  if (character > LAST_BMP) {
    if (wideCharacters_ == nullptr) {
      wideCharacters_ = std::make_unique<WideCharacterMap>(font_.GetDevice());
    }
    return wideCharacters_->GetGlyph(character);
  }
  const auto unit = static_cast<wchar_t>(character);
  WORD glyph = NO_GLYPH;
  if (GetGlyphIndicesW(font_.GetDevice(), &unit, 1, &glyph, GGI_MARK_NONEXISTING_GLYPHS) ==
      GDI_ERROR) {
    return MISSING_GLYPH;
  }
  return glyph == NO_GLYPH ? MISSING_GLYPH : glyph;
}

bool GdiFont::GetTextMeasures(OutlineTextMetrics& metrics) {
  const OUTLINETEXTMETRICW& otm = font_.GetMetrics();
  constexpr double ANGLE_UNITS = 10;  // of a degree
  OutlineTextMetrics m;
  m.emSquare = font_.GetEm();
  m.ascent = Em(otm.otmTextMetrics.tmAscent);
  m.descent = Em(otm.otmTextMetrics.tmDescent);
  m.lineGap = Em(static_cast<long>(otm.otmLineGap));
  m.typoAscent = Em(otm.otmAscent);
  m.typoDescent = Em(otm.otmDescent);
  m.capHeight = Em(static_cast<long>(otm.otmsCapEmHeight));
  m.xHeight = Em(static_cast<long>(otm.otmsXHeight));
  m.averageWidth = Em(otm.otmTextMetrics.tmAveCharWidth);
  m.underlinePosition = Em(otm.otmsUnderscorePosition);
  m.underlineThickness = Em(otm.otmsUnderscoreSize);
  m.strikeoutPosition = Em(otm.otmsStrikeoutPosition);
  m.strikeoutThickness = Em(static_cast<long>(otm.otmsStrikeoutSize));
  m.superscriptSize = Em(otm.otmptSuperscriptSize.y);
  m.superscriptOffset = Em(otm.otmptSuperscriptOffset.y);
  m.subscriptSize = Em(otm.otmptSubscriptSize.y);
  m.subscriptOffset = Em(otm.otmptSubscriptOffset.y);
  m.italicAngle = otm.otmItalicAngle / ANGLE_UNITS;
  m.xMin = Em(otm.otmrcFontBox.left);
  m.yMin = Em(otm.otmrcFontBox.bottom);
  m.xMax = Em(otm.otmrcFontBox.right);
  m.yMax = Em(otm.otmrcFontBox.top);
  metrics = m;
  return true;
}

/// Turns the buffer of GetGlyphOutline into an outline. Sizes are checked against the buffer.
class NativeOutlineReader {
public:
  NativeOutlineReader(const std::vector<unsigned char>& bytes, double em)
      : bytes_(bytes), em_(em) {}

  GlyphOutline Read() {
    std::size_t at = 0;
    TTPOLYGONHEADER header;
    while (Copy(at, bytes_.size(), header)) {
      const std::size_t end = std::min<std::size_t>(at + header.cb, bytes_.size());
      if (header.cb < sizeof header) break;
      const OutlinePoint start = Scaled(header.pfxStart);
      outline_.Move(start.x, start.y);
      ReadContour(at + sizeof header, end);
      outline_.Close();
      at = end;
    }
    return std::move(outline_);
  }

private:
  template <typename Record>
  bool Copy(std::size_t at, std::size_t end, Record& record) const {
    if (at > end || end - at < sizeof record) return false;
    std::memcpy(&record, bytes_.data() + at, sizeof record);
    return true;
  }
  double Scaled(FIXED value) const {
    constexpr double PARTS = 65536;
    return (value.value + value.fract / PARTS) / em_;
  }
  OutlinePoint Scaled(const POINTFX& point) const { return {Scaled(point.x), Scaled(point.y)}; }

  void ReadContour(std::size_t at, std::size_t end) {
    constexpr std::size_t HEAD = 2 * sizeof(WORD);
    struct {
      WORD type, count;
    } curve;
    while (Copy(at, end, curve)) {
      at += HEAD;
      std::vector<OutlinePoint> points;
      POINTFX point;
      for (WORD i = 0; i < curve.count && Copy(at, end, point); ++i, at += sizeof point) {
        points.push_back(Scaled(point));
      }
      AddCurve(curve.type, points);
    }
  }

  void AddCurve(WORD type, const std::vector<OutlinePoint>& points) {
    if (type == TT_PRIM_LINE) {
      for (const OutlinePoint& point : points) outline_.Line(point.x, point.y);
    } else if (type == TT_PRIM_CSPLINE) {
      for (std::size_t i = 0; i + 3 <= points.size(); i += 3) {
        outline_.Cubic(points[i], points[i + 1], points[i + 2]);
      }
    } else {
      // Between two control points of a row of quadratic curves lies an end half way.
      for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const bool isLast = i + 2 == points.size();
        const OutlinePoint half = {(points[i].x + points[i + 1].x) / 2,
                                   (points[i].y + points[i + 1].y) / 2};
        outline_.Quadratic(points[i], isLast ? points[i + 1] : half);
      }
    }
  }

  const std::vector<unsigned char>& bytes_;
  double em_;
  GlyphOutline outline_;
};

bool GdiFont::Measure(std::uint32_t glyph, GlyphMetrics& metrics, GlyphOutline& outline) {
  const MAT2 identity = {{0, 1}, {0, 0}, {0, 0}, {0, 1}};
  GLYPHMETRICS native = {};
  const UINT what = GGO_NATIVE | GGO_GLYPH_INDEX | GGO_UNHINTED;
  const DWORD size =
      GetGlyphOutlineW(font_.GetDevice(), glyph, what, &native, 0, nullptr, &identity);
  if (size == GDI_ERROR) return false;
  std::vector<unsigned char> bytes(size);
  if (size > 0 && GetGlyphOutlineW(font_.GetDevice(), glyph, what, &native, size, bytes.data(),
                                   &identity) == GDI_ERROR) {
    return false;
  }
  outline = NativeOutlineReader(bytes, font_.GetEm()).Read();
  metrics = BoxOf(outline);
  metrics.advance = Em(native.gmCellIncX);
  return true;
}

}  // namespace

FontList ListFonts() {
  FontList list;
  const ReferenceDevice device;
  if (device.Get() == nullptr) {
    list.status = FontListStatus::NoDevice;
    return list;
  }
  static FamilyList api;
  static const bool loaded = LoadFamilyList(api);
  ULONG_PTR token = 0;
  const Gdiplus::GdiplusStartupInput input;
  const Gdiplus::GpStatus started =
      loaded ? api.start(&token, &input, nullptr) : Gdiplus::GdiplusNotInitialized;
  if (started != Gdiplus::Ok) {
    list.status = FontListStatus::NoCollection;
    list.code = static_cast<int>(started);
    return list;
  }
  for (const GString& family : ListFamilies(api, list)) {
    LOGFONTW font = LogicalFont(family, 0);
    Collector collector = {list.fonts, list.fonts.size()};
    EnumFontFamiliesExW(device.Get(), &font, EnumTrueTypeFacesProc,
                        reinterpret_cast<LPARAM>(&collector), 0);
  }
  api.stop(token);
  return list;
}

GString FindStandIn(const GString& family, unsigned char pitchAndFamily) {
  constexpr long ANY_HEIGHT = -1000;
  const ReferenceDevice device;
  if (device.Get() == nullptr) return GString();
  LOGFONTW font = LogicalFont(family, ANY_HEIGHT);
  const bool isVariable = (pitchAndFamily & PITCH_VARIABLE) != 0;
  font.lfPitchAndFamily = static_cast<BYTE>((pitchAndFamily & FAMILY_MASK) |
                                            (isVariable ? VARIABLE_PITCH : FIXED_PITCH));
  const HFONT created = CreateFontIndirectW(&font);
  if (created == nullptr) return GString();
  wchar_t name[LF_FACESIZE] = {};
  const HGDIOBJ before = SelectObject(device.Get(), created);
  if (before != nullptr) {
    GetTextFaceW(device.Get(), LF_FACESIZE, name);
    SelectObject(device.Get(), before);
  }
  DeleteObject(created);
  return GString(name);
}

std::unique_ptr<Font> OpenFont(const FontDescription& description) {
  auto font = std::make_unique<GdiFont>(description);
  if (!font->IsOpen()) return nullptr;
  return font;
}

}  // namespace shr::platform
