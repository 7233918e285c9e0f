// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The code that docs/math-text.md shows.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "shared/mathtext/Context.h"
#include "shared/plots/SvgTextIF.h"

namespace shr {
namespace {

TEST(MathTextPage, aLabelIsMeasuredAndDrawn) {
  const double room = 100;
  // [draw]
  SvgWriter svg;
  svg.Begin("svg").Attribute("xmlns", "http://www.w3.org/2000/svg");
  CMTSvgTextIF output(svg, SvgTextMode::Outlines);
  output.SetHalo(Color4b::White, 1.5);

  CMTContext context(output, 14);  // user units high
  std::shared_ptr<CMTMultiLineElement> label;
  if (context.Parse(L"{\\b Oslo}\n\\fs80 59.9\\a176 N", label) == CMTContext::MT_SUCCESS) {
    label->SetAlignment(HAlignment::Center, VAlignment::Bottom);
    if (label->GetInternalBBox(output).xRange() <= room) {
      output.DrawLabel(*label, CMTSvgTextIF::FromPicture(100, 80));
    }
  }
  svg.End();
  // [end]
  EXPECT_NE(svg.Take().find("aria-label=\"Oslo 59.9\xC2\xB0N\""), std::string::npos);
}

TEST(MathTextPage, namesAreNoMarkup) {
  // [escape]
  const GString name = L"C:\\data {1}";
  const GString label = L"{\\i " + EscapeMathText(name) + L"}";
  // [end]
  EXPECT_EQ(MathTextToSimpleText(label), name);
}

}  // namespace
}  // namespace shr
