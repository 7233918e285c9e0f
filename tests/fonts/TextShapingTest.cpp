// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: visual order of mixed directions, joined Arabic, marks over their letters, reordered
// Devanagari, mirrored brackets; what is common to all systems, so that both targets run them.
// Hostile texts: half pairs, thousands of marks and of directional controls.

#include <gtest/gtest.h>

#include <set>

#include "shared/fonts/SystemFaceInfo.h"
#include "shared/fonts/TextLayout.h"
#include "shared/fonts/TrueTypeFaceInfo.h"

namespace shr {
namespace {

const TextFace& Sans() {
  static const TextFace face = [] {
    TextFace sans;
    sans.name = L"DejaVu Sans";
    return sans;
  }();
  return face;
}

/// Turns the capitals A to V into Hebrew letters, so that rows can be read from left to right.
std::wstring Coded(std::string_view code) {
  std::wstring text;
  for (const char c : code) {
    text +=
        c >= 'A' && c <= 'V' ? static_cast<wchar_t>(0x5D0 + (c - 'A')) : static_cast<wchar_t>(c);
  }
  return text;
}

/// Returns what is seen from left to right, a character a glyph.
std::string Seen(std::string_view code, const TextLayout& layout) {
  std::string seen;
  for (const TextRun& run : layout.runs) {
    for (const PlacedGlyph& glyph : run.glyphs) seen += code[glyph.begin];
  }
  return seen;
}

// Rows follow the examples of Unicode Standard Annex 9 and its rules; capitals are Hebrew letters.
TEST(TextShaping, mixedDirectionsStandInVisualOrder) {
  struct Row {
    const char* name;
    TextDirection direction;
    const char* text;
    const char* seen;
  };
  constexpr auto LTR = TextDirection::LeftToRight, RTL = TextDirection::RightToLeft,
                 AUTO = TextDirection::Auto;
  const Row rows[] = {
      {"one direction", AUTO, "abc", "abc"},
      {"the other", AUTO, "ABC", "CBA"},
      {"a foreign word", LTR, "car means CAR.", "car means RAC."},
      {"the first letter decides", AUTO, "car means CAR.", "car means RAC."},
      {"from right to left", RTL, "car MEANS CAR.", ".RAC SNAEM car"},
      {"the first letter, a blank before", AUTO, " CAR means car.", ".means car RAC "},
      {"words in between keep together", LTR, "a BC DE f", "a ED CB f"},
      {"signs take the paragraph's", LTR, "ABC! def", "CBA! def"},
      {"signs between", LTR, "AB, CD", "DC ,BA"},
      {"numbers from left to right", LTR, "ABC 123 DEF", "FED 123 CBA"},
      {"a number at the end", AUTO, "ABC 123", "123 CBA"},
      {"a number first", AUTO, "123 ABC", "CBA 123"},
      {"a number first, left to right", LTR, "123 ABC", "123 CBA"},
      {"decimals", AUTO, "ABC 12.50", "12.50 CBA"},
      {"a price", AUTO, "ABC 12%", "12% CBA"},
      {"no letter", AUTO, "12 + 3", "12 + 3"},
      {"no letter, from right to left", RTL, "1, 2", "2 ,1"},
      {"plain text in the other direction", RTL, "abc.", ".abc"},
      {"plain words in the other direction", RTL, "abc def!", "!abc def"},
      {"brackets, the closing one on the left", AUTO, "ABC (def)", ")def( CBA"},
      {"brackets around the others", LTR, "abc (DEF) ghi", "abc (FED) ghi"},
      {"a blank at the end", LTR, "abc DEF ", "abc FED "},
      {"a blank at the end, from right to left", RTL, "ABC def ", " def CBA"},
  };
  for (const Row& row : rows) {
    const std::wstring text = Coded(row.text);
    const TextLayout layout = LayoutText(text, Sans(), row.direction);
    EXPECT_EQ(row.seen, Seen(row.text, layout)) << row.name;
  }
}

std::shared_ptr<const CTrueTypeFaceInfo> FaceOf(const TextRun& run) {
  return std::dynamic_pointer_cast<const CTrueTypeFaceInfo>(run.face);
}

TEST(TextShaping, bracketsAreMirroredFromRightToLeft) {
  const TextLayout layout = LayoutText(L"(\x5D0)", Sans(), TextDirection::RightToLeft);
  const TextRun& left = layout.runs.front();
  const TextRun& right = layout.runs.back();
  EXPECT_TRUE(left.isRightToLeft);
  EXPECT_EQ(FaceOf(left)->GetGlyphOf(U'('), left.glyphs.front().glyph);
  EXPECT_EQ(2u, left.glyphs.front().begin) << "it is the closing one";
  EXPECT_EQ(FaceOf(right)->GetGlyphOf(U')'), right.glyphs.back().glyph);
}

TEST(TextShaping, arabicLettersJoin) {
  const TextLayout alone = LayoutText(L"\x628", Sans());
  const TextLayout joined = LayoutText(L"\x628\x628\x628", Sans());
  ASSERT_EQ(1u, joined.runs.size());
  ASSERT_EQ(3u, joined.runs[0].glyphs.size());
  std::set<std::uint32_t> forms = {alone.runs.at(0).glyphs.at(0).glyph};
  for (const PlacedGlyph& glyph : joined.runs[0].glyphs) forms.insert(glyph.glyph);
  EXPECT_EQ(4u, forms.size()) << "isolated, initial, medial and final form";
  EXPECT_EQ(2u, joined.runs[0].glyphs[0].begin) << "the last letter is the left one";
  EXPECT_LT(joined.advance, 3 * alone.advance);
  // Joined letters touch.
  const TextRun& run = joined.runs[0];
  const GlyphMetrics left = GetGlyphMetrics(run, run.glyphs[0]);
  const GlyphMetrics middle = GetGlyphMetrics(run, run.glyphs[1]);
  EXPECT_GE(run.glyphs[0].x + left.xMax, run.glyphs[1].x + middle.xMin);
  // Lam and alef are one glyph.
  EXPECT_EQ(1u, LayoutText(L"\x644\x627", Sans()).runs.at(0).glyphs.size());
  // A joiner of no width between two letters keeps them apart.
  const TextLayout apart = LayoutText(L"\x628\x200C\x628", Sans());
  std::size_t isolated = 0;
  for (const PlacedGlyph& glyph : apart.runs.at(0).glyphs) {
    isolated += glyph.glyph == *forms.find(alone.runs[0].glyphs[0].glyph);
  }
  EXPECT_EQ(2u, isolated);
}

TEST(TextShaping, marksStandOverTheirLetters) {
  struct Row {
    const char* name;
    const wchar_t* text;
    bool isAbove;
  };
  const Row rows[] = {
      {"acute", L"e\x301", true},
      {"Cyrillic acute", L"\x43E\x301", true},
      {"Hebrew qamats", L"\x5D1\x5B8", false},
      {"Arabic fatha", L"\x633\x64E", true},
      {"Arabic kasra", L"\x633\x650", false},
  };
  for (const Row& row : rows) {
    const TextLayout layout = LayoutText(row.text, Sans());
    const TextLayout base = LayoutText(std::wstring_view(row.text, 1), Sans());
    EXPECT_NEAR(base.advance, layout.advance, 1e-9) << row.name << ": marks take no room";
    const Box2d box = MeasureTextBounds(row.text, Sans());
    const Box2d letter = MeasureTextBounds(std::wstring_view(row.text, 1), Sans());
    EXPECT_EQ(row.isAbove, box.yMax() > letter.yMax() + 0.05) << row.name;
    EXPECT_EQ(!row.isAbove, box.yMin() < letter.yMin() - 0.05) << row.name;
    EXPECT_LT(box.xRange(), letter.xRange() + 0.1) << row.name;
  }
}

TEST(TextShaping, devanagariReorders) {
  const TextLayout ki = LayoutText(L"\x915\x93F", Sans());   // the sign of i stands on the left
  const TextLayout kii = LayoutText(L"\x915\x940", Sans());  // that of ii on the right
  ASSERT_EQ(1u, ki.runs.size());
  ASSERT_EQ(2u, ki.runs[0].glyphs.size());
  ASSERT_EQ(2u, kii.runs.at(0).glyphs.size());
  const std::uint32_t ka = FaceOf(ki.runs[0])->GetGlyphOf(0x915);
  EXPECT_EQ(ka, ki.runs[0].glyphs[1].glyph);
  EXPECT_EQ(ka, kii.runs[0].glyphs[0].glyph);
  EXPECT_LT(ki.runs[0].glyphs[0].x, ki.runs[0].glyphs[1].x);
  EXPECT_FALSE(ki.runs[0].isRightToLeft);
  // A conjunct is not its letters side by side.
  const TextLayout ksha = LayoutText(L"\x915\x94D\x937", Sans());
  EXPECT_LT(ksha.advance, LayoutText(L"\x915\x937", Sans()).advance);
}

TEST(TextShaping, simpleLettersAreNeitherKernedNorJoined) {
  for (const wchar_t* const text : {L"AVATAR", L"fi ffl office", L"To\x301 AV fi"}) {
    const TextLayout layout = LayoutText(text, Sans());
    double sum = 0;
    for (const wchar_t* c = text; *c != 0; ++c) {
      if (*c != 0x301) sum += MeasureText(std::wstring_view(c, 1), Sans());
    }
    EXPECT_NEAR(sum, layout.advance, 1e-9);
  }
}

TEST(TextShaping, whatIsDrawnIsWhereItWasMeasured) {
  for (const wchar_t* const text :
       {L"abc \x5D0\x5D1 (12)", L"\x628\x64E\x628 de", L"\x915\x93F\x6771 x"}) {
    const TextLayout layout = LayoutText(text, Sans());
    Box2d drawn;
    for (const TextRun& run : layout.runs) {
      for (const PlacedGlyph& glyph : run.glyphs) {
        const GlyphMetrics box = platform::BoxOf(GetGlyphVectors(run, glyph).fill);
        if (!box.HasInk()) continue;
        drawn.ExtendBy(Vec2d(glyph.x + box.xMin, glyph.y + box.yMin));
        drawn.ExtendBy(Vec2d(glyph.x + box.xMax, glyph.y + box.yMax));
      }
    }
    EXPECT_EQ(drawn, MeasureTextBounds(text, Sans()));
  }
}

TEST(TextShaping, hostileTextIsLaidOut) {
  struct Row {
    const char* name;
    std::wstring part;
    std::size_t times;
  };
  const Row rows[] = {
      {"marks alone", L"\x301", 20000},
      {"marks on a letter", L"e\x301\x302\x303\x304\x305\x306\x307\x308\x309\x30A", 2000},
      {"embeddings", L"\x202B", 20000},
      {"isolates", L"\x2067", 20000},
      {"isolates in turn", L"\x2067\x5D0\x2066x", 5000},
      {"ends without beginnings", L"\x2069\x202C", 10000},
      {"half pairs", L"\xD800", 20000},
      {"half pairs turned", L"\xDC00\xD800", 10000},
      {"directions in turn", L"a\x5D0", 10000},
      {"brackets", L"(\x5D0[", 7000},
      {"joiners", L"\x200D", 20000},
      {"viramas", L"\x915\x94D", 10000},
      {"Arabic without a blank", L"\x628", 20000},
      {"plain", L"x", 200000},
  };
  for (const Row& row : rows) {
    std::wstring text;
    for (std::size_t i = 0; i < row.times; ++i) text += row.part;
    const TextLayout layout = LayoutText(text, Sans());
    std::size_t covered = 0;
    for (const TextRun& run : layout.runs) covered += run.length;
    EXPECT_EQ(text.size(), covered) << row.name;
    EXPECT_TRUE(layout.advance >= 0) << row.name;
  }
}

}  // namespace
}  // namespace shr
