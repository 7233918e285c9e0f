// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: one face, several, none; clusters that must not be torn; the law that MeasureText is the
// advance of LayoutText, over random texts of many scripts; runs that cover the text side by side.

#include "shared/fonts/TextLayout.h"

#include <gtest/gtest.h>

#include <random>

#include "shared/fonts/SystemFaceInfo.h"
#include "shared/text/Utf.h"

namespace shr {
namespace {

TextFace Named(const wchar_t* name, long weight = 400) {
  TextFace face;
  face.name = name;
  face.weight = weight;
  return face;
}

const TextFace& Sans() {
  static const TextFace face = Named(L"DejaVu Sans");
  return face;
}

GString Text(const char* utf8) {
  return GString::FromUtf8(utf8);
}

/// What the runs of a layout promise of themselves.
void ExpectSound(const TextLayout& layout, std::wstring_view text, const char* name) {
  double x = 0;
  std::vector<int> covered(text.size());
  for (const TextRun& run : layout.runs) {
    EXPECT_EQ(x, run.x) << name;
    ASSERT_LE(run.begin + run.length, text.size()) << name;
    for (std::size_t i = 0; i < run.length; ++i) ++covered[run.begin + i];
    for (const PlacedGlyph& glyph : run.glyphs) {
      EXPECT_GE(glyph.begin, run.begin) << name;
      EXPECT_LT(glyph.begin, run.begin + run.length) << name;
    }
    x += run.advance;
  }
  EXPECT_EQ(x, layout.advance) << name;
  EXPECT_EQ(std::vector<int>(text.size(), 1), covered) << name;
}

TEST(TextLayout, textInOneFaceIsOneRunAsLongAsItsCharacters) {
  CSystemFaceInfo& registry = CSystemFaceInfo::Instance();
  const std::shared_ptr<CFaceInfo> sans =
      registry.MatchFace(L"DejaVu Sans", 400, 0, 0, 0, MATCH_NAME | MATCH_WEIGHT, FACE_TRUE_TYPE);
  const GString text = L"Depth, m (AVAVA)";
  const TextLayout layout = LayoutText(text, Sans());
  ExpectSound(layout, text, "plain");
  ASSERT_EQ(1u, layout.runs.size());
  EXPECT_EQ(sans, layout.runs[0].face);
  EXPECT_EQ(sans->CalcEmExtent(text), layout.advance);
  EXPECT_EQ(text.size(), layout.runs[0].glyphs.size());
  EXPECT_EQ(sans->CalcEmBounds(text), MeasureTextBounds(text, Sans()));
  EXPECT_TRUE(FallbackFamilies(text, Sans()).empty());
}

TEST(TextLayout, nothingIsNothing) {
  EXPECT_TRUE(LayoutText(L"", Sans()).runs.empty());
  EXPECT_EQ(0, MeasureText(L"", Sans()));
  EXPECT_EQ(Box2d(), MeasureTextBounds(L"", Sans()));
  EXPECT_EQ(0, MeasureText(L"\t\n\r", Sans()));
}

TEST(TextLayout, charactersThatTheFaceLacksFallBack) {
  struct Row {
    const char* name;
    const char* text;
    std::size_t fallbacks;  // how many families besides DejaVu Sans
  };
  const Row rows[] = {
      {"Latin, Greek, Cyrillic", "Zürich Αθήνα Москва", 0},
      {"Chinese", "Tokyo 東京", 1},
      {"Korean", "서울", 1},
      {"Devanagari", "दिल्ली", 1},
      {"Arabic, Hebrew", "القاهرة ירושלים", 0},
      {"emoji", "🌋 volcano", 1},
      {"all", "東京 दिल्ली 🌋", 3},
  };
  for (const Row& row : rows) {
    const GString text = Text(row.text);
    const TextLayout layout = LayoutText(text, Sans());
    ExpectSound(layout, text, row.name);
    EXPECT_EQ(row.fallbacks, FallbackFamilies(text, Sans()).size()) << row.name;
    for (const TextRun& run : layout.runs) {
      for (const PlacedGlyph& glyph : run.glyphs) {
        EXPECT_NE(platform::MISSING_GLYPH, glyph.glyph) << row.name;
      }
    }
  }
}

TEST(TextLayout, clustersStayTogether) {
  const char* const clusters[] = {"e\u0301", "🌋\uFE0F", "👩\u200D🚀", "漢\uFE00", "क\u094D\u200Dष"};
  for (const char* const cluster : clusters) {
    const GString text = Text(cluster);
    EXPECT_EQ(1u, LayoutText(text, Sans()).runs.size()) << cluster;
  }
}

TEST(TextLayout, whatNoFaceHasShowsTheMissingGlyphOfTheFaceItself) {
  const GString nowhere = Text("a\U000E1234\U0010FFF0z");
  const TextLayout layout = LayoutText(L"a\xD800z", Sans());
  ASSERT_EQ(1u, layout.runs.size());
  ASSERT_EQ(3u, layout.runs[0].glyphs.size());
  EXPECT_EQ(platform::MISSING_GLYPH, layout.runs[0].glyphs[1].glyph);
  EXPECT_FALSE(GetGlyphVectors(layout.runs[0], layout.runs[0].glyphs[1]).fill.verbs.empty());
  for (const TextRun& run : LayoutText(nowhere, Sans()).runs) {
    EXPECT_EQ(layout.runs[0].face, run.face);
  }
}

TEST(TextLayout, measuringIsTheAdvanceOfTheLayout) {
  const struct {
    char32_t first, last;
  } blocks[] = {
      {0x20, 0x7E},     {0x20, 0x7E},       {0xA0, 0x24F},    {0x300, 0x36F},   {0x370, 0x52F},
      {0x590, 0x5FF},   {0x600, 0x6FF},     {0x900, 0x97F},   {0xE00, 0xE7F},   {0x1100, 0x11FF},
      {0x2000, 0x206F}, {0x3040, 0x30FF},   {0x4E00, 0x4FFF}, {0xAC00, 0xAFFF}, {0xD800, 0xDFFF},
      {0xFE00, 0xFEFF}, {0x1F300, 0x1F64F}, {0, 0x10FFFF},
  };
  std::mt19937 random(1204);
  const TextFace faces[] = {Sans(), Named(L"DejaVu Sans Mono"), Named(L"", 700)};
  for (int trial = 0; trial < 600; ++trial) {
    std::wstring text;
    const auto& first = blocks[random() % std::size(blocks)];
    for (std::size_t left = random() % 24; left > 0; --left) {
      const auto& block = random() % 3 == 0 ? blocks[random() % std::size(blocks)] : first;
      const char32_t span = block.last - block.first + 1;
      const char32_t c = block.first + static_cast<char32_t>(random()) % span;
      if (sizeof(wchar_t) == 2 && c > 0xFFFF) {
        text += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
        text += static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
      } else {
        text += static_cast<wchar_t>(c);
      }
    }
    const TextFace& face = faces[random() % std::size(faces)];
    const TextLayout layout = LayoutText(text, face);
    ASSERT_EQ(layout.advance, MeasureText(text, face)) << trial;
    ExpectSound(layout, text, "random");
  }
}

}  // namespace
}  // namespace shr
