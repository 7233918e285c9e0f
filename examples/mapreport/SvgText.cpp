// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/SvgText.h"

#include "shared/plots/TextWidth.h"

namespace mapreport {

using namespace shr;

namespace {

const char* AnchorText(LabelAnchor anchor) {
  switch (anchor) {
    case LabelAnchor::Middle:
      return "middle";
    case LabelAnchor::End:
      return "end";
    default:
      return "start";
  }
}

}  // namespace

LabelExtent ExtentOf(const GString& text, double size) {
  constexpr double ASCENT = 0.82;
  constexpr double DESCENT = 0.24;
  constexpr double X_HEIGHT = 0.52;
  return {EstimateTextWidth(text, size), ASCENT * size, DESCENT * size, X_HEIGHT * size / 2};
}

void DrawLabel(SvgWriter& svg, const LabelPlace& place, const GString& text) {
  svg.Begin("text").Attribute("x", place.anchorPoint.x).Attribute("y", place.anchorPoint.y);
  if (place.anchor != LabelAnchor::Start) {
    svg.Attribute("text-anchor", AnchorText(place.anchor));
  }
  svg.Text(text).End();
}

}  // namespace mapreport
