// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A text is ordered, which gives items of one direction and one script; these are cut into parts of
// one face, which are shaped or, where nothing needs shaping, set side by side. Text of simple
// characters alone, which is nearly all that maps show, is measured by walking over its parts and
// takes no memory.

#include "shared/fonts/TextLayout.h"

#include <algorithm>

#include "shared/fonts/FaceSet.h"
#include "shared/fonts/TextCharacters.h"
#include "shared/fonts/TextOrder.h"
#include "shared/fonts/TrueTypeFaceInfo.h"
#include "shared/platform/TextShaping.h"

namespace shr {
namespace {

using platform::TextItem;

/// Longer pieces are shaped part by part.
constexpr std::size_t LONGEST_SHAPED = 4096;

/// A part of a text in one face, shaped as a whole or not at all.
struct Part {
  const std::shared_ptr<CFaceInfo>* face = nullptr;
  bool isShaped = false;
  std::size_t begin = 0, end = 0;
};

/// Cuts an item into its longest parts, in logical order.
class PartReader {
public:
  PartReader(FaceSet& faces, std::wstring_view text, const TextItem& item)
      : faces_(faces),
        text_(text),
        at_(item.begin),
        end_(item.begin + item.length),
        isRightToLeft_(item.IsRightToLeft()) {}

  bool Next(Part& part) {
    if (at_ == end_) return false;
    ReadCluster();
    part = cluster_;
    for (at_ = part.end; at_ < end_; at_ = part.end) {
      ReadCluster();
      const bool isLong = part.isShaped && cluster_.end - part.begin > LONGEST_SHAPED;
      if (isLong || cluster_.face->get() != part.face->get() ||
          cluster_.isShaped != part.isShaped) {
        break;
      }
      part.end = cluster_.end;
    }
    return true;
  }

private:
  /// Reads the cluster that begins here. Signs and blanks are shaped when what is before them is.
  void ReadCluster() {
    const std::wstring_view rest = text_.substr(at_, end_ - at_);
    const std::wstring_view cluster = rest.substr(0, ClusterLength(rest));
    const std::shared_ptr<CFaceInfo>& face = faces_.Find(cluster);
    const bool isAfterShaped = cluster_.isShaped && cluster_.face->get() == face.get();
    cluster_ = {&face, WantsShaping(cluster, isAfterShaped), at_, at_ + cluster.size()};
  }

  bool WantsShaping(std::wstring_view cluster, bool isAfterShaped) const {
    const char32_t base = NextCharacter(cluster);
    // Marks without a letter stand where they are; shaping would invent one, or fail.
    if (IsControl(base) || IsMark(base)) return false;
    return isRightToLeft_ || !cluster.empty() || !IsSimple(base) ||
           (isAfterShaped && IsShared(base));
  }

  FaceSet& faces_;
  std::wstring_view text_;
  std::size_t at_, end_;
  bool isRightToLeft_;
  Part cluster_;
};

/// Places the glyphs of the characters of a run one beside the other.
void PlaceCharacters(std::wstring_view text, TextRun& run) {
  const CFaceInfo& face = *run.face;
  const auto* const outline = dynamic_cast<const CTrueTypeFaceInfo*>(&face);
  std::wstring_view rest = text.substr(run.begin, run.length);
  run.glyphs.reserve(run.length);
  while (!rest.empty()) {
    const std::size_t begin = run.begin + run.length - rest.size();
    const char32_t character = NextCharacter(rest);
    const double advance = face.GetGlyphMetrics(character).advance;
    const bool isSeen =
        !IsControl(character) && (!IsFormatMark(character) || face.HasGlyph(character));
    if (isSeen) {
      const std::uint32_t glyph = outline != nullptr ? outline->GetGlyphOf(character) : character;
      const double right = run.isRightToLeft ? run.advance + advance : run.advance;
      run.glyphs.push_back({glyph, right, 0, begin});
    }
    run.advance += advance;
  }
  if (!run.isRightToLeft) return;
  std::reverse(run.glyphs.begin(), run.glyphs.end());
  for (PlacedGlyph& glyph : run.glyphs) glyph.x = run.advance - glyph.x;
}

/// Places the glyphs that shaping gives; false when it gives none.
bool PlaceShaped(std::wstring_view text, const TextItem& piece, TextRun& run) {
  const auto* const outline = dynamic_cast<const CTrueTypeFaceInfo*>(run.face.get());
  platform::ShapedText shaped;
  if (outline == nullptr || !outline->Shape(text, piece, shaped)) return false;
  run.glyphs.reserve(shaped.glyphs.size());
  for (const platform::ShapedGlyph& glyph : shaped.glyphs) {
    run.glyphs.push_back({glyph.glyph, glyph.x, glyph.y, glyph.begin});
  }
  run.advance = shaped.advance;
  return true;
}

/// Adds a part of an item to the right of the line.
void AddPart(std::wstring_view text, const TextItem& item, const Part& part, TextLayout& layout) {
  TextRun& run = layout.runs.emplace_back();
  run.face = *part.face;
  run.begin = part.begin;
  run.length = part.end - part.begin;
  run.isRightToLeft = item.IsRightToLeft();
  run.x = layout.advance;
  const TextItem piece = {run.begin, run.length, item.level, item.script};
  if (!part.isShaped || !PlaceShaped(text, piece, run)) PlaceCharacters(text, run);
  for (PlacedGlyph& glyph : run.glyphs) glyph.x += run.x;
  layout.advance += run.advance;
}

/// Adds the parts of an item to the right of the line.
void AddItem(std::wstring_view text, const TextItem& item, FaceSet& faces, TextLayout& layout) {
  PartReader reader(faces, text, item);
  if (!item.IsRightToLeft()) {
    for (Part part; reader.Next(part);) AddPart(text, item, part, layout);
    return;
  }
  std::vector<Part> parts;
  for (Part part; reader.Next(part);) parts.push_back(part);
  std::for_each(parts.rbegin(), parts.rend(),
                [&](const Part& part) { AddPart(text, item, part, layout); });
}

bool IsPlain(std::wstring_view text) {
  while (!text.empty()) {
    if (!IsSimple(NextCharacter(text))) return false;
  }
  return true;
}

/// Returns the only item of text from left to right.
TextItem WholeOf(std::wstring_view text) {
  return {0, text.size(), 0, 0};
}

TextLayout Lay(std::wstring_view text, FaceSet& faces, TextDirection direction) {
  TextLayout layout;
  if (direction != TextDirection::RightToLeft && IsPlain(text)) {
    AddItem(text, WholeOf(text), faces, layout);
    return layout;
  }
  for (const TextItem& item : OrderText(text, direction)) AddItem(text, item, faces, layout);
  return layout;
}

void ExtendBy(Box2d& box, const GlyphMetrics& glyph, double x, double y) {
  if (!glyph.HasInk()) return;
  box.ExtendBy(Vec2d(x + glyph.xMin, y + glyph.yMin));
  box.ExtendBy(Vec2d(x + glyph.xMax, y + glyph.yMax));
}

/// Measures a text that must be shaped, unless it is remembered.
FaceSet::Measure MeasureShaped(std::wstring_view text, FaceSet& faces) {
  FaceSet::Measure measure;
  if (faces.Recall(text, measure)) return measure;
  const TextLayout layout = Lay(text, faces, TextDirection::Auto);
  measure.advance = layout.advance;
  for (const TextRun& run : layout.runs) {
    for (const PlacedGlyph& placed : run.glyphs) {
      ExtendBy(measure.ink, GetGlyphMetrics(run, placed), placed.x, placed.y);
    }
  }
  faces.Remember(text, measure);
  return measure;
}

}  // namespace

TextLayout LayoutText(std::wstring_view text, const TextFace& face, TextDirection direction) {
  return Lay(text, *FaceSet::Get(face), direction);
}

double MeasureText(std::wstring_view text, const TextFace& face) {
  const std::shared_ptr<FaceSet> faces = FaceSet::Get(face);
  if (!IsPlain(text)) return MeasureShaped(text, *faces).advance;
  double extent = 0;
  if (faces->GetPrimary()->CalcEmExtentOfKnown(text, extent) == text.size()) return extent;
  extent = 0;
  PartReader reader(*faces, text, WholeOf(text));
  for (Part part; reader.Next(part);) {
    extent += (*part.face)->CalcEmExtent(text.substr(part.begin, part.end - part.begin));
  }
  return extent;
}

Box2d MeasureTextBounds(std::wstring_view text, const TextFace& face) {
  const std::shared_ptr<FaceSet> faces = FaceSet::Get(face);
  if (!IsPlain(text)) return MeasureShaped(text, *faces).ink;
  Box2d box;
  double x = 0;
  PartReader reader(*faces, text, WholeOf(text));
  for (Part part; reader.Next(part);) {
    const std::wstring_view piece = text.substr(part.begin, part.end - part.begin);
    const Box2d ink = (*part.face)->CalcEmBounds(piece);
    if (!ink.IsEmpty()) box.ExtendBy(Box2d(ink.xMin() + x, ink.yMin(), ink.xMax() + x, ink.yMax()));
    x += (*part.face)->CalcEmExtent(piece);
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
  PartReader reader(*faces, text, WholeOf(text));
  for (Part part; reader.Next(part);) {
    const GString& name = (*part.face)->GetFaceName();
    const bool isKnown = std::find(families.begin(), families.end(), name) != families.end();
    if (*part.face != faces->GetPrimary() && !isKnown) families.push_back(name);
  }
  return families;
}

}  // namespace shr
