// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: extents and bounds (empty, blank, missing, control and format characters, pairs of
// surrogates, symbols at U+F000), lines below and through text, metrics that cannot be had,
// caching, boxes of outlines against points on their curves, and installed fonts against figures of
// their files.

#include "shared/fonts/FaceInfo.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "shared/diagnostics/Exception.h"
#include "shared/fonts/SystemFaceInfo.h"
#include "shared/fonts/TrueTypeFaceInfo.h"
#include "tests/fonts/MadeFace.h"

namespace shr {
namespace {

using test::MadeFace;

/// The character of that number in the units of a wide text.
std::wstring Wide(char32_t character) {
  if (sizeof(wchar_t) > 2 || character < 0x10000) {
    return std::wstring(1, static_cast<wchar_t>(character));
  }
  const char32_t rest = character - 0x10000;
  return {static_cast<wchar_t>(0xD800 + (rest >> 10)),
          static_cast<wchar_t>(0xDC00 + (rest & 0x3FF))};
}

TEST(FaceInfo, extentAndBoundsAddUpTheGlyphs) {
  const MadeFace face(L"Made");
  struct Row {
    const char* name;
    std::wstring text;
    double extent;
    Box2d bounds;
  };
  const std::wstring globe = Wide(0x1F30D);
  const Row rows[] = {
      {"nothing", L"", 0, Box2d()},
      {"a blank has no ink", L" ", 0.25, Box2d()},
      {"one", L"a", 0.5, Box2d(0.0625, 0, 0.4375, 0.5)},
      {"two", L"am", 1.5, Box2d(0.0625, -0.25, 1.375, 0.5)},
      {"a blank before", L" a", 0.75, Box2d(0.3125, 0, 0.6875, 0.5)},
      {"missing", L"x", 0.625, Box2d(0, 0, 0.5, 1)},
      {"controls take no room", L"\ta\n", 0.5, Box2d(0.0625, 0, 0.4375, 0.5)},
      {"nor do marks of format",
       L"\x200F\xFE0F"
       L"a",
       0.5, Box2d(0.0625, 0, 0.4375, 0.5)},
      {"beyond U+FFFF", globe, 2, Box2d(0, 0, 2, 1)},
      {"half a pair is missing",
       L"\xD83C"
       L"a",
       1.125, Box2d(0, 0, 1.0625, 1)},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.extent, face.CalcEmExtent(row.text)) << row.name;
    EXPECT_EQ(row.bounds, face.CalcEmBounds(row.text)) << row.name;
  }
}

TEST(FaceInfo, symbolFontsHaveTheirCharactersAtF000) {
  FaceAttributes symbol;
  symbol.charsets = platform::CharsetBit(platform::SYMBOL_CHARACTERS);
  const MadeFace symbols(L"Symbols", symbol);
  const MadeFace text(L"Text");
  EXPECT_EQ(0xF041u, static_cast<unsigned>(symbols.MapCharCode(U'A')));
  EXPECT_EQ(0.75, symbols.CalcEmExtent(L"A"));
  EXPECT_EQ(U'a', symbols.MapCharCode(U'a'));
  EXPECT_EQ(U'Z', symbols.MapCharCode(U'Z'));
  EXPECT_EQ(U'A', text.MapCharCode(U'A'));
  EXPECT_TRUE(symbols.HasGlyph(U'A'));
  EXPECT_FALSE(text.HasGlyph(U'A'));
}

TEST(FaceInfo, linesAreAsLongAsTheText) {
  MadeFace face(L"Made");
  face.otm.underlinePosition = -0.25;
  face.otm.underlineThickness = 0.125;
  const EmLine below = face.CalcEmUnderscoreLine(L"am");
  EXPECT_EQ(Vec2d(0, -0.3125), below.begin);
  EXPECT_EQ(Vec2d(1.5, -0.3125), below.end);
  EXPECT_EQ(0.125, below.thickness);
  const EmLine through = face.CalcEmStrikeoutLine(L"am");  // the face does not say where
  EXPECT_EQ(Vec2d(0, 0.25), through.begin);
  EXPECT_EQ(Vec2d(1.5, 0.25), through.end);
  EXPECT_GT(through.thickness, 0);
}

TEST(FaceInfo, metricsThatCannotBeHadAreAnErrorEachTime) {
  MadeFace face(L"Made up");
  face.hasMetrics = false;
  for (int i = 0; i < 2; ++i) {
    try {
      face.GetOTM();
      FAIL() << "no error";
    } catch (const Exception& error) {
      EXPECT_EQ(L"CFaceInfo: Could not get text metrics for typeface 'Made up'",
                error.GetDescription());
    }
  }
  face.hasMetrics = true;
  EXPECT_EQ(0, face.GetOTM().ascent);
}

TEST(FaceInfo, aGlyphIsFetchedOnceUntilFree) {
  MadeFace face(L"Made");
  face.CalcEmExtent(L"aaaa");
  face.CalcEmBounds(L"aa");
  EXPECT_EQ(1, face.fetched);
  face.Free();
  face.CalcEmExtent(L"a");
  EXPECT_EQ(2, face.fetched);
}

TEST(FaceInfo, boxesOfOutlinesHoldTheirCurvesTightly) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> place(-1, 1);
  for (int trial = 0; trial < 200; ++trial) {
    OutlinePoint p[4];
    for (OutlinePoint& point : p) point = {place(random), trial % 5 == 0 ? 0 : place(random)};
    if (trial % 7 == 0) p[1] = p[2] = p[0];
    const bool isCubic = trial % 2 == 0;
    GlyphOutline outline;
    outline.Move(p[0].x, p[0].y);
    if (isCubic) outline.Cubic(p[1], p[2], p[3]);
    if (!isCubic) outline.Quadratic(p[1], p[3]);
    Box2d sampled;
    constexpr int SAMPLES = 4000;
    for (int i = 0; i <= SAMPLES; ++i) {
      const double t = i / static_cast<double>(SAMPLES), s = 1 - t;
      const auto at = [&](double a, double b, double c, double d) {
        return isCubic ? s * s * s * a + 3 * s * s * t * b + 3 * s * t * t * c + t * t * t * d
                       : s * s * a + 2 * s * t * b + t * t * d;
      };
      sampled.ExtendBy(
          Vec2d(at(p[0].x, p[1].x, p[2].x, p[3].x), at(p[0].y, p[1].y, p[2].y, p[3].y)));
    }
    const GlyphMetrics box = platform::BoxOf(outline);
    constexpr double NEAR = 1e-5;
    EXPECT_NEAR(sampled.xMin(), box.xMin, NEAR) << trial;
    EXPECT_NEAR(sampled.xMax(), box.xMax, NEAR) << trial;
    EXPECT_NEAR(sampled.yMin(), box.yMin, NEAR) << trial;
    EXPECT_NEAR(sampled.yMax(), box.yMax, NEAR) << trial;
  }
  EXPECT_FALSE(platform::BoxOf(GlyphOutline()).HasInk());
}

/// The regular face of that family, null where it is not installed.
std::shared_ptr<CFaceInfo> Installed(const wchar_t* family) {
  CSystemFaceInfo& faces = CSystemFaceInfo::Instance();
  const int index = faces.CheckForPerfectMatch(
      family, 400, 0, 0, 0, MATCH_NAME | MATCH_WEIGHT | MATCH_ITALIC, FACE_TRUE_TYPE);
  return index < 0 ? nullptr : faces.GetFaceInfo(index);
}

// Figures in design units of the fonts of Debian's fonts-dejavu-core 2.37, read from their tables
// "OS/2", "post", "hmtx" and "glyf"; an em has 2048. Both targets must give them.
TEST(FaceInfo, installedFontsSayWhatTheirFilesSay) {
  constexpr double EM = 2048;
  struct Row {
    const wchar_t* family;
    unsigned char pitchAndFamily;
    double ascent, descent, underline, thickness, advance, xMin, yMax;  // of 'A' the last three
  };
  const Row rows[] = {
      {L"DejaVu Sans", platform::PITCH_VARIABLE | platform::FAMILY_SWISS, 1901, 483, -40, 90, 1401,
       16, 1493},
      {L"DejaVu Sans Mono", platform::FAMILY_MODERN, 1901, 483, -40, 90, 1233, 37, 1493},
  };
  for (const Row& row : rows) {
    const std::shared_ptr<CFaceInfo> face = Installed(row.family);
    ASSERT_NE(nullptr, face) << "install fonts-dejavu-core (tools/setup.sh test)";
    const OutlineTextMetrics& otm = face->GetOTM();
    const GlyphMetrics a = face->GetGlyphMetrics(U'A');
    EXPECT_EQ(row.pitchAndFamily, face->GetAttributes().pitchAndFamily);
    EXPECT_EQ(row.ascent, otm.ascent * EM);
    EXPECT_EQ(row.descent, otm.descent * EM);
    EXPECT_EQ(row.underline, otm.underlinePosition * EM);
    EXPECT_EQ(row.thickness, otm.underlineThickness * EM);
    EXPECT_EQ(row.advance, a.advance * EM);
    EXPECT_EQ(row.xMin, a.xMin * EM);
    EXPECT_EQ(row.yMax, a.yMax * EM);
    EXPECT_TRUE(face->ServesCharset(204)) << "Cyrillic";
    EXPECT_FALSE(face->ServesCharset(128)) << "Japanese";
    EXPECT_FALSE(face->HasGlyph(0x4E2D));
    EXPECT_FALSE(face->GetGlyphMetrics(U' ').HasInk());
    EXPECT_TRUE(face->HasGlyph(0x1D538) || row.advance == 1233) << "beyond U+FFFF";
  }
}

TEST(FaceInfo, outlinesAreClosedAndLieInTheBoxOfTheGlyph) {
  const std::shared_ptr<CFaceInfo> face = Installed(L"DejaVu Sans");
  ASSERT_NE(nullptr, face);
  for (const char32_t character : {U'A', U'g', U'%', char32_t{0x416}, char32_t{0x4E2D}}) {
    const GlyphVectors glyph = face->GetGlyphVectors(character);
    EXPECT_FALSE(glyph.fill.verbs.empty());
    EXPECT_TRUE(glyph.stroke.verbs.empty());
    const auto count = [&glyph](OutlineVerb verb) {
      return std::count(glyph.fill.verbs.begin(), glyph.fill.verbs.end(), verb);
    };
    EXPECT_EQ(count(OutlineVerb::Move), count(OutlineVerb::Close));
    const GlyphMetrics box = platform::BoxOf(glyph.fill);
    const GlyphMetrics metrics = face->GetGlyphMetrics(character);
    EXPECT_EQ(metrics.xMin, box.xMin);
    EXPECT_EQ(metrics.yMax, box.yMax);
  }
  const auto* const font = dynamic_cast<const CTrueTypeFaceInfo*>(face.get());
  ASSERT_NE(nullptr, font);
  GlyphMetrics metrics;
  EXPECT_FALSE(font->GetMetricsOfGlyph(65000, metrics)) << "no such glyph";
}

}  // namespace
}  // namespace shr
