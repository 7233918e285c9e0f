// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/GdiTextIF.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "shared/diagnostics/ThrowError.h"
#include "shared/fonts/TrueTypeFaceInfo.h"
#include "shared/mathtext/GlyphCoverage.h"
#include "shared/platform/windows/GdiPage.h"

namespace shr {
namespace {

using platform::GdiGlyph;
using platform::GdiPage;
using platform::GdiRectangle;

/// Beyond them what is remembered of glyphs is forgotten and learnt again.
constexpr std::size_t MOST_GLYPHS = 4096;
/// Larger rectangles are drawn in bands.
constexpr int MOST_PIXELS = 1 << 22;

bool IsFinite(const Vec2d& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

/// Draws a run as the system draws text; false where that does not have its font.
bool DrawAsText(GdiPage& page, const TextRun& run, const Vec2d& begin, const Vec2d& em,
                std::uint32_t color) {
  const auto* const face = dynamic_cast<const CTrueTypeFaceInfo*>(run.face.get());
  if (face == nullptr) return false;
  std::vector<GdiGlyph> glyphs;
  glyphs.reserve(run.glyphs.size());
  for (const PlacedGlyph& placed : run.glyphs) {
    glyphs.push_back({placed.glyph, {placed.x, placed.y}});
  }
  return page.DrawGlyphs(face->GetDescription(), glyphs, {{begin.x, begin.y}, {em.x, em.y}}, color);
}

/// Returns an outline in pixels: `em` goes along the baseline from `begin`.
GlyphOutline Placed(GlyphOutline outline, const Vec2d& begin, const Vec2d& em) {
  for (OutlinePoint& point : outline.points) {
    point = {begin.x + em.x * point.x + em.y * point.y, begin.y + em.y * point.x - em.x * point.y};
  }
  return outline;
}

void ExtendBy(Box2d& box, const GlyphOutline& outline, double margin) {
  for (const OutlinePoint& point : outline.points) {
    box.ExtendBy(Box2d(point.x - margin, point.y - margin, point.x + margin, point.y + margin));
  }
}

/// Returns the pixels that a box touches within a rectangle; none when there are none.
GdiRectangle PixelsOf(const Box2d& box, const GdiRectangle& clip) {
  const auto bound = [](double value, int low, int size) {
    return static_cast<int>(
        std::clamp(value, static_cast<double>(low), static_cast<double>(low) + size));
  };
  const int left = bound(std::floor(box.xMin()), clip.left, clip.width);
  const int right = bound(std::ceil(box.xMax()), clip.left, clip.width);
  const int top = bound(std::floor(box.yMin()), clip.top, clip.height);
  const int bottom = bound(std::ceil(box.yMax()), clip.top, clip.height);
  return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

}  // namespace

/// Outlines in pixels that are drawn at once.
struct CMTGdiTextIF::Shapes {
  struct Stroke {
    GlyphOutline outline;
    double width;
  };
  std::vector<GlyphOutline> fills;
  std::vector<Stroke> strokes;

  /// Returns the shapes with an edge so wide around them.
  Shapes Widened(double edge) && {
    for (Stroke& stroke : strokes) stroke.width += 2 * edge;
    for (const GlyphOutline& fill : fills) strokes.push_back({fill, 2 * edge});
    return std::move(*this);
  }
};

CMTGdiTextIF::CMTGdiTextIF(HDC__* device, const Vec2d& origin, double pixelsPerUnit,
                           GdiTextMode mode)
    : page_(std::make_unique<GdiPage>(device)),
      origin_(origin),
      scale_(pixelsPerUnit),
      mode_(mode) {
  const bool isScale = pixelsPerUnit > 0 && std::isfinite(pixelsPerUnit);
  if (device == nullptr || !IsFinite(origin) || !isScale) {
    ThrowErrorImpl(L"GdiTextIF", __LINE__, INVALID_PARAMETER_TEXT);
  }
}

CMTGdiTextIF::~CMTGdiTextIF() = default;

Vec2d CMTGdiTextIF::ToDevice(const Vec2d& point) const noexcept {
  return Vec2d(origin_.x + scale_ * point.x, origin_.y - scale_ * point.y);
}

void CMTGdiTextIF::SetHalo(const Color4b& color, double width) {
  if (!(width >= 0) || !std::isfinite(width)) {
    ThrowErrorImpl(L"GdiTextIF", __LINE__, INVALID_PARAMETER_TEXT);
  }
  haloColor_ = color;
  haloWidth_ = width;
}

void CMTGdiTextIF::DrawString(const Vec2d& baselineBegin, std::wstring_view text) {
  const MTAttributes& attributes = GetAttributes();
  if (attributes.color.alpha == 0) return;
  const Vec2d along = TurnDirection(Vec2d(attributes.height * scale_, 0));
  const Vec2d em(along.x, -along.y);
  const Vec2d begin = ToDevice(baselineBegin);
  const TextLayout layout = LayoutText(text, attributes.face);
  if (haloWidth_ > 0) {
    Draw(ShapesOf(layout, begin, em).Widened(haloWidth_ * scale_), haloColor_);
  }
  Shapes shapes;
  for (const TextRun& run : layout.runs) {
    const bool isDrawn = mode_ == GdiTextMode::Text &&
                         DrawAsText(*page_, run, begin, em, attributes.color.GetCOLORREF());
    if (!isDrawn) AddRun(run, begin, em, shapes);
  }
  Draw(shapes, attributes.color);
}

CMTGdiTextIF::Shapes CMTGdiTextIF::ShapesOf(const TextLayout& layout, const Vec2d& begin,
                                            const Vec2d& em) {
  Shapes shapes;
  for (const TextRun& run : layout.runs) AddRun(run, begin, em, shapes);
  return shapes;
}

void CMTGdiTextIF::DrawLine(const Vec2d& from, const Vec2d& to, double thickness) {
  const Color4b& color = GetAttributes().color;
  if (color.alpha == 0) return;
  const Vec2d begin = ToDevice(from), end = ToDevice(to);
  if (mode_ == GdiTextMode::Text) {
    page_->DrawLine({begin.x, begin.y}, {end.x, end.y}, thickness * scale_, color.GetCOLORREF());
    return;
  }
  Vec2d along = end - begin;
  along.Normalize();
  const Vec2d half = Vec2d(-along.y, along.x) * (thickness * scale_ / 2);
  GlyphOutline outline;
  outline.Move(begin.x + half.x, begin.y + half.y);
  for (const Vec2d& corner : {end + half, end - half, begin - half}) {
    outline.Line(corner.x, corner.y);
  }
  outline.Close();
  Shapes shapes;
  shapes.fills.push_back(std::move(outline));
  Draw(shapes, color);
}

void CMTGdiTextIF::AddRun(const TextRun& run, const Vec2d& begin, const Vec2d& em, Shapes& shapes) {
  for (const PlacedGlyph& placed : run.glyphs) {
    const GlyphVectors& vectors = VectorsOf(run, placed);
    const Vec2d at(begin.x + em.x * placed.x + em.y * placed.y,
                   begin.y + em.y * placed.x - em.x * placed.y);
    if (!vectors.fill.verbs.empty()) shapes.fills.push_back(Placed(vectors.fill, at, em));
    if (!vectors.stroke.verbs.empty()) {
      shapes.strokes.push_back({Placed(vectors.stroke, at, em), vectors.penWidth * em.Length()});
    }
  }
}

void CMTGdiTextIF::Draw(const Shapes& shapes, const Color4b& color) {
  Box2d box;
  for (const GlyphOutline& fill : shapes.fills) ExtendBy(box, fill, 0);
  for (const Shapes::Stroke& stroke : shapes.strokes) {
    ExtendBy(box, stroke.outline, stroke.width / 2 + 1);
  }
  if (box.IsDegenerate()) return;
  const GdiRectangle all = PixelsOf(box, page_->GetClip());
  if (all.width == 0) return;
  const int rows = std::max(1, MOST_PIXELS / all.width);
  for (int row = 0; row < all.height; row += rows) {
    const GdiRectangle band = {all.left, all.top + row, all.width,
                               std::min(rows, all.height - row)};
    GlyphCoverage coverage(band.left, band.top, band.width, band.height);
    for (const GlyphOutline& fill : shapes.fills) coverage.Fill(fill);
    for (const Shapes::Stroke& stroke : shapes.strokes) {
      coverage.Stroke(stroke.outline, stroke.width);
    }
    page_->Blend(band, coverage.Get(), color.GetCOLORREF(), color.alpha);
  }
}

const GlyphVectors& CMTGdiTextIF::VectorsOf(const TextRun& run, const PlacedGlyph& placed) {
  const auto key = std::make_pair(run.face, placed.glyph);
  const auto found = glyphs_.find(key);
  if (found != glyphs_.end()) return found->second;
  if (glyphs_.size() >= MOST_GLYPHS) glyphs_.clear();
  return glyphs_.emplace(key, GetGlyphVectors(run, placed)).first->second;
}

}  // namespace shr
