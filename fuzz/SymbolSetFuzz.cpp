// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Symbol sets: any bytes are a set or an error with a line. Of a set, what glyphs say must be
// finite, in order of their codes, and found again by code and by name.

#include "shared/fonts/StrokedFace.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "shared/diagnostics/Exception.h"

namespace {

void Check(bool holds) {
  if (!holds) std::abort();
}

void CheckOutline(const shr::GlyphOutline& outline) {
  static const std::size_t POINTS[] = {1, 1, 2, 3, 0};
  std::size_t points = 0;
  for (const shr::OutlineVerb verb : outline.verbs) points += POINTS[static_cast<int>(verb)];
  Check(points == outline.points.size());
  for (const shr::OutlinePoint& point : outline.points) {
    Check(std::isfinite(point.x) && std::isfinite(point.y));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using shr::CStrokedFace;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const CStrokedFace face = CStrokedFace::FromText(text, L"fuzz.sym");
    const CStrokedFace::Glyph* before = nullptr;
    for (const CStrokedFace::Glyph& glyph : face.GetGlyphs()) {
      Check(before == nullptr || before->code < glyph.code);
      Check(face.FindGlyph(glyph.code) == &glyph);
      Check(glyph.name.empty() || face.FindGlyph(glyph.name)->code <= glyph.code);
      Check(std::isfinite(glyph.metrics.advance) && std::isfinite(glyph.metrics.xMax));
      CheckOutline(glyph.vectors.fill);
      CheckOutline(glyph.vectors.stroke);
      before = &glyph;
    }
    Check(!face.GetGlyphs().empty() && !face.GetFaceName().empty());
  } catch (const shr::Exception& error) {
    Check(error.GetDescription().find(L"Symbol set file: fuzz.sym\nLine ") == 0);
  }
  return 0;
}
