// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A text is cut into parts, each of one face. Text of simple characters alone, which is nearly all
// that maps show, is measured by walking over its parts and takes no memory.

#include "shared/fonts/TextLayout.h"

#include <algorithm>
#include <utility>

#include "shared/fonts/FaceSet.h"
#include "shared/fonts/TextCharacters.h"
#include "shared/fonts/TrueTypeFaceInfo.h"

namespace shr {
namespace {

/// A part of a text in one face.
struct Part {
  const std::shared_ptr<CFaceInfo>* face = nullptr;
  std::size_t begin = 0, end = 0;
};

/// Cuts a piece of a text into its longest parts, in logical order.
class PartReader {
public:
  PartReader(FaceSet& faces, std::wstring_view text, std::size_t begin, std::size_t end)
      : faces_(faces), text_(text), at_(begin), end_(end) {}

  bool Next(Part& part) {
    if (at_ == end_) return false;
    part = {&FindFace(), at_, at_ + length_};
    for (at_ = part.end; at_ < end_ && FindFace() == *part.face; at_ += length_) {
      part.end = at_ + length_;
    }
    return true;
  }

private:
  /// Returns the face of the cluster that begins here, and sets its length.
  const std::shared_ptr<CFaceInfo>& FindFace() {
    const std::wstring_view rest = text_.substr(at_, end_ - at_);
    length_ = ClusterLength(rest);
    return faces_.Find(rest.substr(0, length_));
  }

  FaceSet& faces_;
  std::wstring_view text_;
  std::size_t at_, end_;
  std::size_t length_ = 0;
};

/// Places the glyphs of the characters of a run one beside the other.
void PlaceCharacters(std::wstring_view text, TextRun& run) {
  const CFaceInfo& face = *run.face;
  const auto* const outline = dynamic_cast<const CTrueTypeFaceInfo*>(&face);
  std::wstring_view rest = text.substr(run.begin, run.length);
  while (!rest.empty()) {
    const std::size_t begin = run.begin + run.length - rest.size();
    const char32_t character = NextCharacter(rest);
    const bool isSeen =
        !IsControl(character) && (!IsFormatMark(character) || face.HasGlyph(character));
    if (isSeen) {
      const std::uint32_t glyph = outline != nullptr ? outline->GetGlyphOf(character) : character;
      run.glyphs.push_back({glyph, run.x + run.advance, 0, begin});
    }
    run.advance += face.GetGlyphMetrics(character).advance;
  }
}

bool IsPlain(std::wstring_view text) {
  while (!text.empty()) {
    if (!IsSimple(NextCharacter(text))) return false;
  }
  return true;
}

void ExtendBy(Box2d& box, const GlyphMetrics& glyph, double x, double y) {
  if (!glyph.HasInk()) return;
  box.ExtendBy(Vec2d(x + glyph.xMin, y + glyph.yMin));
  box.ExtendBy(Vec2d(x + glyph.xMax, y + glyph.yMax));
}

}  // namespace

TextLayout LayoutText(std::wstring_view text, const TextFace& face, TextDirection) {
  const std::shared_ptr<FaceSet> faces = FaceSet::Get(face);
  TextLayout layout;
  PartReader reader(*faces, text, 0, text.size());
  for (Part part; reader.Next(part);) {
    TextRun run;
    run.face = *part.face;
    run.begin = part.begin;
    run.length = part.end - part.begin;
    run.x = layout.advance;
    PlaceCharacters(text, run);
    layout.advance += run.advance;
    layout.runs.push_back(std::move(run));
  }
  return layout;
}

double MeasureText(std::wstring_view text, const TextFace& face) {
  if (!IsPlain(text)) return LayoutText(text, face).advance;
  const std::shared_ptr<FaceSet> faces = FaceSet::Get(face);
  double extent = 0;
  if (faces->GetPrimary()->CalcEmExtentOfKnown(text, extent) == text.size()) return extent;
  extent = 0;
  PartReader reader(*faces, text, 0, text.size());
  for (Part part; reader.Next(part);) {
    extent += (*part.face)->CalcEmExtent(text.substr(part.begin, part.end - part.begin));
  }
  return extent;
}

Box2d MeasureTextBounds(std::wstring_view text, const TextFace& face) {
  Box2d box;
  for (const TextRun& run : LayoutText(text, face).runs) {
    for (const PlacedGlyph& placed : run.glyphs) {
      ExtendBy(box, GetGlyphMetrics(run, placed), placed.x, placed.y);
    }
  }
  return box;
}

GlyphVectors GetGlyphVectors(const TextRun& run, const PlacedGlyph& glyph) {
  const auto* const outline = dynamic_cast<const CTrueTypeFaceInfo*>(run.face.get());
  if (outline == nullptr) return run.face->GetGlyphVectors(glyph.glyph);
  GlyphVectors vectors;
  outline->GetVectorsOfGlyph(glyph.glyph, vectors);
  return vectors;
}

GlyphMetrics GetGlyphMetrics(const TextRun& run, const PlacedGlyph& glyph) {
  const auto* const outline = dynamic_cast<const CTrueTypeFaceInfo*>(run.face.get());
  if (outline == nullptr) return run.face->GetGlyphMetrics(glyph.glyph);
  GlyphMetrics metrics;
  outline->GetMetricsOfGlyph(glyph.glyph, metrics);
  return metrics;
}

std::vector<GString> FallbackFamilies(std::wstring_view text, const TextFace& face) {
  const std::shared_ptr<FaceSet> faces = FaceSet::Get(face);
  std::vector<GString> families;
  PartReader reader(*faces, text, 0, text.size());
  for (Part part; reader.Next(part);) {
    const GString& name = (*part.face)->GetFaceName();
    const bool isKnown = std::find(families.begin(), families.end(), name) != families.end();
    if (*part.face != faces->GetPrimary() && !isKnown) families.push_back(name);
  }
  return families;
}

}  // namespace shr
