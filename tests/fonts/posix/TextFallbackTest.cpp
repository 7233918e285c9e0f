// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: text on a machine without fonts; fonts that come while the program runs; the order in
// which faces are fallen back on; several threads while the faces are collected anew.

#include <gtest/gtest.h>

#include <thread>

#include "shared/fonts/StrokedFace.h"
#include "shared/fonts/TextLayout.h"
#include "shared/fonts/TrueTypeFaceInfo.h"
#include "tests/fonts/posix/FontFolder.h"

namespace shr {
namespace {

const char* const DEVANAGARI = "/usr/share/fonts/truetype/lohit-devanagari/Lohit-Devanagari.ttf";
const char* const SANS_BOLD = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";

class TextFallback : public test::FontFolder {
protected:
  static TextFace Named(const wchar_t* name, long weight = 400) {
    TextFace face;
    face.name = name;
    face.weight = weight;
    return face;
  }
  static std::vector<GString> FamiliesOf(const TextLayout& layout) {
    std::vector<GString> families;
    for (const TextRun& run : layout.runs) families.push_back(run.face->GetFaceName());
    return families;
  }
};

TEST_F(TextFallback, withoutFontsTextIsStroked) {
  CSystemFaceInfo::Instance().Refresh();
  const std::wstring text = L"a\x411\x5D0\x915\x93F\x628\x628";
  const TextLayout layout = LayoutText(text, Named(L"Arial"));
  EXPECT_EQ(STROKED_TEXT_FACE, layout.runs.at(0).face->GetFaceName());
  std::size_t glyphs = 0;
  for (const TextRun& run : layout.runs) {
    for (const PlacedGlyph& glyph : run.glyphs) {
      EXPECT_EQ(static_cast<std::uint32_t>(text[glyph.begin]), glyph.glyph) << "the character";
      EXPECT_FALSE(GetGlyphVectors(run, glyph).stroke.verbs.empty()) << "or that it is missing";
      ++glyphs;
    }
  }
  EXPECT_EQ(text.size(), glyphs);
  EXPECT_EQ(layout.advance, MeasureText(text, Named(L"Arial")));
  EXPECT_GT(MeasureTextBounds(text, Named(L"Arial")).xRange(), 2);
  EXPECT_TRUE(FallbackFamilies(text, Named(L"Arial")).empty());
}

TEST_F(TextFallback, fontsThatComeAreFallenBackOn) {
  const std::wstring text = L"x\x915\x93F";
  Install(test::SANS, "a.ttf");
  CSystemFaceInfo::Instance().Refresh();
  const TextLayout before = LayoutText(text, Named(L"DejaVu Sans"));
  EXPECT_EQ(std::vector<GString>({L"DejaVu Sans", L"DejaVu Sans"}), FamiliesOf(before));
  EXPECT_EQ(platform::MISSING_GLYPH, before.runs.at(1).glyphs.at(0).glyph);
  Install(DEVANAGARI, "b.ttf");
  CSystemFaceInfo::Instance().Refresh();
  const TextLayout after = LayoutText(text, Named(L"DejaVu Sans"));
  EXPECT_EQ(std::vector<GString>({L"DejaVu Sans", L"Lohit Devanagari"}), FamiliesOf(after));
  EXPECT_NE(before.advance, after.advance);
  // What was laid out before still knows its faces.
  EXPECT_FALSE(GetGlyphVectors(before.runs[0], before.runs[0].glyphs[0]).fill.verbs.empty());
}

TEST_F(TextFallback, boldTextFallsBackOnBoldFaces) {
  Install(DEVANAGARI, "a.ttf");
  Install(test::SANS, "b.ttf");
  Install(SANS_BOLD, "c.ttf");
  Install(test::MONO, "d.ttf");
  CSystemFaceInfo::Instance().Refresh();
  for (const long weight : {400L, 700L}) {
    const TextLayout layout = LayoutText(L"\x416", Named(L"Lohit Devanagari", weight));
    EXPECT_EQ(L"DejaVu Sans", layout.runs.at(0).face->GetFaceName());
    EXPECT_EQ(weight, layout.runs[0].face->GetAttributes().weight);
  }
}

TEST_F(TextFallback, threadsShareWhatTheyLearn) {
  Install(test::SANS, "a.ttf");
  Install(DEVANAGARI, "b.ttf");
  CSystemFaceInfo::Instance().Refresh();
  const std::wstring texts[] = {L"Depth, m", L"\x915\x93F x", L"\x628\x64E\x628 12", L"\x5D0 b"};
  double expected[std::size(texts)];
  for (std::size_t i = 0; i < std::size(texts); ++i) {
    expected[i] = MeasureText(texts[i], Named(L"DejaVu Sans"));
  }
  CSystemFaceInfo::Instance().Refresh();
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (std::size_t i = 0; i < 200; ++i) {
        const std::size_t which = (i + t) % std::size(texts);
        EXPECT_EQ(expected[which], MeasureText(texts[which], Named(L"DejaVu Sans")));
        EXPECT_FALSE(MeasureTextBounds(texts[which], Named(i % 2 == 0 ? L"" : L"x")).IsEmpty());
      }
    });
  }
  for (int i = 0; i < 3; ++i) CSystemFaceInfo::Instance().Refresh();
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace shr
