// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Markers.h"

#include <algorithm>

#include "shared/plots/GlyphPath.h"

namespace mapreport {

using namespace shr;

namespace {

/// The point of a glyph that goes to the place, in em.
constexpr Vec2d ORIGIN(0.5, 0.3);
constexpr double GROUND_WIDTH = 2;

/// Returns the identifier of a marker in the picture: "marker-large-city-10".
std::string IdOf(const Marker& marker) {
  std::string id = "marker-" + marker.name.ToLower().ToUtf8() + "-" + std::to_string(marker.size);
  std::replace(id.begin(), id.end(), ' ', '-');
  return id;
}

std::string PathOf(const GlyphOutline& outline, double size) {
  std::string data;
  AppendGlyphPath(data, outline, -ORIGIN.x * size, ORIGIN.y * size, size);
  return data;
}

}  // namespace

MarkerSheet::MarkerSheet() : face_(CStrokedFace::FromFile(LocateSymbolSet(L"Markers.sym"))) {}

Box2d MarkerSheet::Bounds(const Marker& marker) const {
  const GlyphMetrics& ink = face_.FindGlyph(std::wstring_view(marker.name))->metrics;
  const double size = marker.size;
  return Box2d((ink.xMin - ORIGIN.x) * size, (ORIGIN.y - ink.yMax) * size,
               (ink.xMax - ORIGIN.x) * size, (ORIGIN.y - ink.yMin) * size);
}

double MarkerSheet::Radius(const Marker& marker) const {
  return Bounds(marker).xRange() / 2;
}

void MarkerSheet::Use(SvgWriter& svg, const Marker& marker, const Vec2d& at) {
  if (std::find(used_.begin(), used_.end(), marker) == used_.end()) used_.push_back(marker);
  svg.Begin("use").Attribute("xlink:href", "#" + IdOf(marker));
  svg.Attribute("x", at.x).Attribute("y", at.y).End();
}

void MarkerSheet::Define(SvgWriter& svg) const {
  if (used_.empty()) return;
  svg.Begin("defs");
  for (const Marker& marker : used_) {
    const GlyphVectors& glyph = face_.FindGlyph(std::wstring_view(marker.name))->vectors;
    const std::string fill = PathOf(glyph.fill, marker.size);
    const std::string stroke = PathOf(glyph.stroke, marker.size);
    const double pen = glyph.penWidth * marker.size;
    svg.Begin("symbol").Attribute("id", IdOf(marker)).Attribute("overflow", "visible");
    svg.Attribute("stroke-linecap", "round").Attribute("stroke-linejoin", "round");
    svg.Begin("path").Attribute("fill", "#fff").Attribute("stroke", "#fff");
    svg.Attribute("stroke-width", pen + GROUND_WIDTH).Attribute("d", stroke + fill).End();
    if (!fill.empty())
      svg.Begin("path").Attribute("fill", "currentColor").Attribute("d", fill).End();
    if (!stroke.empty()) {
      svg.Begin("path").Attribute("fill", "none").Attribute("stroke", "currentColor");
      svg.Attribute("stroke-width", pen).Attribute("d", stroke).End();
    }
    svg.End();
  }
  svg.End();
}

}  // namespace mapreport
