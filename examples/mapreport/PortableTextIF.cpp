// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/PortableTextIF.h"

#include <string>

#include "shared/plots/TextWidth.h"

namespace mapreport {

using namespace shr;

namespace {

/// What letters of common sans-serif faces take, in em.
constexpr MTLineMetrics LINE_METRICS = {0.82, 0.24, 0.14, -0.1, 0.06, 0.27, 0.06};
constexpr double AVERAGE_WIDTH = 0.5;
constexpr long PLAIN_WEIGHT = 400;

}  // namespace

MTLineMetrics PortableTextIF::GetLineMetrics() {
  return LINE_METRICS * GetAttributes().height;
}

double PortableTextIF::GetTextExtent(std::wstring_view text) {
  return EstimateTextWidth(text, GetAttributes().height);
}

Box2d PortableTextIF::GetTextBounds(std::wstring_view text) {
  const MTLineMetrics line = GetLineMetrics();
  return text.empty() ? Box2d() : Box2d(0, -line.descent, GetTextExtent(text), line.ascent);
}

double PortableTextIF::GetAverageCharWidth() {
  return AVERAGE_WIDTH * GetAttributes().height;
}

void PortableTextIF::DrawString(const Vec2d& baselineBegin, std::wstring_view text) {
  const MTAttributes& attributes = GetAttributes();
  svg_.Begin("text").Attribute("x", baselineBegin.x).Attribute("y", -baselineBegin.y);
  if (hasHalo_) svg_.Attribute("class", "halo");
  if (!attributes.face.name.empty()) svg_.TextAttribute("font-family", attributes.face.name);
  svg_.Attribute("font-size", attributes.height);
  if (attributes.face.weight != PLAIN_WEIGHT) {
    svg_.Attribute("font-weight", std::to_string(attributes.face.weight));
  }
  if (attributes.face.italic != 0) svg_.Attribute("font-style", "italic");
  svg_.Attribute("fill", HexColor(attributes.color)).Text(text).End();
}

void PortableTextIF::DrawLine(const Vec2d& from, const Vec2d& to, double thickness) {
  svg_.Begin("line").Attribute("x1", from.x).Attribute("y1", -from.y);
  svg_.Attribute("x2", to.x).Attribute("y2", -to.y);
  svg_.Attribute("stroke", HexColor(GetAttributes().color));
  svg_.Attribute("stroke-width", thickness).End();
}

}  // namespace mapreport
