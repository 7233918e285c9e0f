// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The code that docs/fonts.md and docs/symbol-sets.md show.

#include <gtest/gtest.h>

#include <memory>

#include "shared/fonts/StrokedFace.h"
#include "shared/fonts/SystemFaceInfo.h"

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
