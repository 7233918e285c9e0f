// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The code that docs/fonts.md and docs/symbol-sets.md show.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "shared/fonts/StrokedFace.h"
#include "shared/fonts/SystemFaceInfo.h"
#include "shared/fonts/TextLayout.h"

namespace shr {
namespace {

TEST(FontsPage, textIsMeasured) {
  // [measure]
  CSystemFaceInfo& faces = CSystemFaceInfo::Instance();
  const int index = faces.Match(L"Arial", 700, 0, 0, 0, MATCH_NAME | MATCH_WEIGHT,
                                faces.GetFontMatcherFaceTypeFlags());
  const std::shared_ptr<CFaceInfo> face = faces.GetFaceInfo(index);
  const double height = 12;  // points, say
  const double width = height * face->CalcEmExtent(L"Depth, m");
  const double above = height * face->GetOTM().ascent;
  // [end]
  EXPECT_GT(width, 3 * height);
  EXPECT_GT(above, height / 2);
}

TEST(FontsPage, linesAreSetInSeveralFaces) {
  double right = 0;
  const auto Draw = [&right](const GlyphVectors& glyph, double x, double) {
    if (!glyph.fill.verbs.empty()) right = std::max(right, x);
  };
  // [layout]
  TextFace face;
  face.name = L"DejaVu Sans";
  const TextLayout line = LayoutText(GString::FromUtf8("Cairo, القاهرة, 開羅"), face);
  for (const TextRun& run : line.runs) {
    for (const PlacedGlyph& placed : run.glyphs) {
      Draw(GetGlyphVectors(run, placed), placed.x, placed.y);
    }
  }
  // [end]
  EXPECT_GT(right, line.advance - 2);
  EXPECT_LT(right, line.advance);
}

TEST(FontsPage, markersAreFoundByName) {
  // [marker]
  const CStrokedFace markers = CStrokedFace::FromFile(LocateSymbolSet(L"Markers.sym"));
  const CStrokedFace::Glyph* const volcano = markers.FindGlyph(L"volcano");
  const GlyphVectors& curves = volcano->vectors;
  // [end]
  EXPECT_FALSE(curves.stroke.verbs.empty());
}

}  // namespace
}  // namespace shr
