// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mathtext/LabelPicture.h"

#include <memory>

#include "shared/diagnostics/ThrowError.h"
#include "shared/geometry/Box2.h"
#include "shared/mathtext/Context.h"

namespace mathtext {

namespace {

constexpr double MARGIN = 0.3;  // in heights of the text

std::shared_ptr<CMTMultiLineElement> Parse(CMTTextIF& output, const GString& markup,
                                           const LabelStyle& style) {
  MTAttributes attributes = output.GetAttributes();
  attributes.face.name = style.face;
  attributes.height = style.height;
  attributes.color = style.color;
  attributes.hAlignment = style.alignment;
  output.SetAttributes(attributes);
  CMTContext context(output, style.height);
  context.SetClock(style.clock);
  std::shared_ptr<CMTMultiLineElement> label;
  if (context.Parse(markup, label) != CMTContext::MT_SUCCESS) {
    ThrowErrorImpl(L"LabelPicture", __LINE__, L"%s",
                   markup.empty() ? GString(L"The label is empty.") : context.GetError());
  }
  return label;
}

/// Returns the box of the label when it is drawn about the origin, y upwards.
Box2d BoxOf(CMTElement& label, CMTTextIF& output, HAlignment alignment) {
  Box2d box = label.GetInternalBBox(output);
  const double part = alignment == HAlignment::Left ? 0 : alignment == HAlignment::Center ? 0.5 : 1;
  const double shift = box.xMin() + part * box.xRange();
  box.xMin() -= shift;
  box.xMax() -= shift;
  Vec2d corners[4];
  box.GetCorners(corners);
  Box2d turned;
  for (const Vec2d& corner : corners) turned.ExtendBy(output.Turn(corner));
  return turned;
}

}  // namespace

std::string DrawLabelPicture(const GString& markup, const LabelStyle& style) {
  SvgWriter svg;
  CMTSvgTextIF output(svg, style.mode);
  const std::shared_ptr<CMTMultiLineElement> label = Parse(output, markup, style);
  output.SetRotation(style.rotation);
  const Box2d box = BoxOf(*label, output, style.alignment);
  const double margin = MARGIN * style.height;
  const double width = box.xRange() + 2 * margin, height = box.yRange() + 2 * margin;

  svg.Begin("svg").Attribute("xmlns", "http://www.w3.org/2000/svg");
  svg.Attribute("width", width).Attribute("height", height);
  svg.Begin("title").Text(label->GetSimpleText()).End();
  if (style.background.alpha != ALPHA_MIN) {
    svg.BeginRectangle(Box2d(0, 0, width, height));
    svg.Attribute("fill", HexColor(style.background)).End();
  }
  output.DrawLabel(*label, CMTSvgTextIF::FromPicture(margin - box.xMin(), margin + box.yMax()));
  svg.End();
  return svg.Take();
}

}  // namespace mathtext
