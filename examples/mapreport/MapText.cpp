// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/MapText.h"

#include "examples/mapreport/PortableTextIF.h"
#include "shared/mathtext/Context.h"
#include "shared/plots/SvgTextIF.h"

namespace mapreport {

using namespace shr;

namespace {

const Color4b HALO_COLOR(255, 255, 255);
constexpr double HALO_WIDTH = 1.3;

HAlignment SideOf(LabelAnchor anchor) {
  switch (anchor) {
    case LabelAnchor::Middle:
      return HAlignment::Center;
    case LabelAnchor::End:
      return HAlignment::Right;
    default:
      return HAlignment::Left;
  }
}

}  // namespace

/// One of the interfaces that write text.
class MapText::Output {
public:
  Output(SvgWriter& svg, TextMode mode) {
    if (mode == TextMode::Portable) {
      portable_ = std::make_unique<PortableTextIF>(svg);
    } else {
      const bool isText = mode == TextMode::Text;
      faces_ =
          std::make_unique<CMTSvgTextIF>(svg, isText ? SvgTextMode::Text : SvgTextMode::Outlines);
    }
  }

  CMTTextIF& Interface() {
    if (portable_ != nullptr) return *portable_;
    return *faces_;
  }

  void SetHalo(bool hasHalo) {
    if (portable_ != nullptr) {
      portable_->SetHalo(hasHalo);
    } else {
      faces_->SetHalo(HALO_COLOR, hasHalo ? HALO_WIDTH : 0);
    }
  }

private:
  std::unique_ptr<PortableTextIF> portable_;
  std::unique_ptr<CMTSvgTextIF> faces_;
};

MapText::MapText(SvgWriter& svg, const View& view)
    : output_(std::make_unique<Output>(svg, view.text)), face_(view.face) {}

MapText::~MapText() = default;

MapText::Label MapText::Make(const GString& markup, const TextStyle& style) {
  CMTTextIF& output = output_->Interface();
  MTAttributes attributes;
  attributes.face.name = face_;
  attributes.face.weight = style.weight;
  attributes.height = style.size;
  attributes.color = style.color;
  attributes.hAlignment = style.side;
  output.SetAttributes(attributes);
  CMTContext context(output, style.size);
  context.SetOptions(MT_SINGLE_LINE);
  Label label{nullptr, style};
  if (markup.empty()) {
    context.ParseMultiLine(markup, label.element);
  } else if (context.Parse(markup, label.element) != CMTContext::MT_SUCCESS) {
    context.Parse(EscapeMathText(markup), label.element);
  }
  return label;
}

double MapText::WidthOf(const Label& label) {
  return label.element->GetExtentUsingTextIF(output_->Interface());
}

LabelExtent MapText::ExtentOf(const Label& label) {
  constexpr double X_HEIGHT = 0.52;
  CMTTextIF& output = output_->Interface();
  label.element->SetAttributes(output);
  const MTLineMetrics line = output.GetLineMetrics();
  const Box2d whole = label.element->GetInternalBBox(output);
  const bool isRaised = whole.yMax() > line.ascent || whole.yMin() < -line.descent;
  Box2d ink = output.GetTextBounds(label.element->GetSimpleText());
  if (isRaised || ink.IsEmpty()) ink = whole;
  return {WidthOf(label), ink.yMax(), -ink.yMin(), X_HEIGHT * label.style.size / 2};
}

void MapText::Draw(const Label& label, const Vec2d& at) {
  output_->SetHalo(label.style.hasHalo);
  label.element->SetAlignment(label.style.side, VAlignment::Baseline);
  label.element->DrawUsingTextIF(output_->Interface(), Vec2d(at.x, -at.y));
}

void MapText::Draw(Label label, const LabelPlace& place) {
  label.style.side = SideOf(place.anchor);
  Draw(label, place.anchorPoint);
}

void MapText::Write(const Vec2d& at, const GString& markup, const TextStyle& style) {
  Draw(Make(markup, style), at);
}

}  // namespace mapreport
