// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/Element.h"

#include <utility>

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

/// Gives an interface its anchor back.
class AnchorScope {
public:
  explicit AnchorScope(CMTTextIF& textIF) : textIF_(textIF), anchor_(textIF.GetAnchor()) {}
  ~AnchorScope() { textIF_.SetAnchor(anchor_); }
  AnchorScope(const AnchorScope&) = delete;
  AnchorScope& operator=(const AnchorScope&) = delete;

private:
  CMTTextIF& textIF_;
  Vec2d anchor_;
};

/// Returns the place of the origin of a frame whose box lies about `anchor`.
Vec2d PlaceAbout(const Vec2d& anchor, const Box2d& box, const MTAttributes& attributes) {
  Vec2d origin = anchor;
  switch (attributes.hAlignment) {
    case HAlignment::Left:
      origin.x -= box.xMin();
      break;
    case HAlignment::Center:
      origin.x -= box.xMid();
      break;
    case HAlignment::Right:
      origin.x -= box.xMax();
      break;
  }
  switch (attributes.vAlignment) {
    case VAlignment::Top:
      origin.y -= box.yMax();
      break;
    case VAlignment::Baseline:
      break;
    case VAlignment::Bottom:
      origin.y -= box.yMin();
      break;
  }
  return origin;
}

/// Returns the box of a level line of that thickness from x = 0.
Box2d LevelLineBox(double length, double y, double thickness) {
  return Box2d(0, y - thickness / 2, length, y + thickness / 2);
}

void DrawLevelLine(CMTTextIF& textIF, const Vec2d& from, double length, double thickness) {
  textIF.DrawLine(textIF.Turn(from), textIF.Turn(from + Vec2d(length, 0)), thickness);
}

}  // namespace

CMTElement::CMTElement(const CMTTextIF& textIF) : attributes_(textIF.ShareAttributes()) {}

CMTElement::CMTElement(std::shared_ptr<const MTAttributes> attributes)
    : attributes_(std::move(attributes)) {}

CMTElement::CMTElement(const CMTElement& other)
    : attributes_(other.attributes_),
      extent_(other.extent_),
      gbBox_(other.gbBox_),
      internalBBox_(other.internalBBox_),
      isExtentValid_(other.isExtentValid_),
      isGBBoxValid_(other.isGBBoxValid_),
      isInternalBBoxValid_(other.isInternalBBoxValid_) {}

CMTElement::~CMTElement() = default;

void CMTElement::DrawUsingTextIF(CMTTextIF& textIF, const Vec2d& anchor) {
  const Box2d box = GetInternalBBox(textIF);
  if (box.IsDegenerate()) return;
  const MTStateScope state(textIF);
  const AnchorScope anchorScope(textIF);
  textIF.SetAnchor(anchor);
  InternalDraw(textIF, PlaceAbout(anchor, box, GetAttributes()));
}

void CMTElement::GetAttributes(const CMTTextIF& textIF) {
  attributes_ = textIF.ShareAttributes();
  InvalidateTextMetrics();
}

void CMTElement::SetAttributes(CMTTextIF& textIF) const {
  textIF.SetAttributes(attributes_);
}

void CMTElement::SetAlignment(HAlignment horizontal, VAlignment vertical) {
  MTAttributes attributes = *attributes_;
  attributes.hAlignment = horizontal;
  attributes.vAlignment = vertical;
  attributes_ = std::make_shared<const MTAttributes>(std::move(attributes));
  InvalidateTextMetrics();
}

void CMTElement::SetExtent(double extent) noexcept {
  extent_ = extent;
  isExtentValid_ = true;
}

void CMTElement::SetGBBox(const Box2d& box) noexcept {
  gbBox_ = box;
  isGBBoxValid_ = true;
}

void CMTElement::SetInternalBBox(const Box2d& box) noexcept {
  internalBBox_ = box;
  isInternalBBoxValid_ = true;
}

void CMTElement::InvalidateTextMetrics() noexcept {
  for (CMTElement* element = this; element != nullptr; element = element->holder_) {
    element->isExtentValid_ = element->isGBBoxValid_ = element->isInternalBBoxValid_ = false;
  }
}

void CMTElement::Hold(CMTElement* part) {
  const auto isFree = [this](const CMTElement* candidate) {
    if (candidate == nullptr || candidate->holder_ != nullptr) return false;
    for (const CMTElement* element = this; element != nullptr; element = element->holder_) {
      if (element == candidate) return false;
    }
    return true;
  };
  if (!isFree(part)) ThrowErrorImpl(L"Element", __LINE__, INVALID_PARAMETER_TEXT);
  part->holder_ = this;
  InvalidateTextMetrics();
}

void CMTElement::Release(CMTElement* part) noexcept {
  if (part != nullptr) part->holder_ = nullptr;
}

CMTStringElement::CMTStringElement(const CMTTextIF& textIF, GString text)
    : CMTElement(textIF), text_(std::move(text)) {}
CMTStringElement::CMTStringElement(const CMTStringElement& other) = default;
CMTStringElement::~CMTStringElement() = default;

std::shared_ptr<CMTElement> CMTStringElement::Clone() const {
  return std::shared_ptr<CMTElement>(new CMTStringElement(*this));
}

void CMTStringElement::clear() {
  SetText(GString());
}

void CMTStringElement::SetText(const GString& text) {
  text_ = text;
  InvalidateTextMetrics();
}

void CMTStringElement::Measure(CMTTextIF& textIF) {
  if (ShareAttributes() != textIF.ShareAttributes()) {
    const MTStateScope state(textIF);
    SetAttributes(textIF);
    return Measure(textIF);
  }
  metrics_ = textIF.GetLineMetrics();
  if (!IsExtentValid()) SetExtent(text_.empty() ? 0 : textIF.GetTextExtent(text_));
  if (!IsGBBoxValid()) SetGBBox(Box2d(0, -metrics_.descent, GetExtent(), metrics_.ascent));
  Box2d box = GetGBBox();
  if (GetAttributes().underline) {
    box.ExtendBy(
        LevelLineBox(GetExtent(), metrics_.underlinePosition, metrics_.underlineThickness));
  }
  if (GetAttributes().strikeThrough) {
    box.ExtendBy(
        LevelLineBox(GetExtent(), metrics_.strikeoutPosition, metrics_.strikeoutThickness));
  }
  SetInternalBBox(box);
}

double CMTStringElement::GetExtentUsingTextIF(CMTTextIF& textIF) {
  if (!IsExtentValid()) Measure(textIF);
  return GetExtent();
}

Box2d CMTStringElement::GetGenericBBox(CMTTextIF& textIF) {
  if (!IsGBBoxValid()) Measure(textIF);
  return GetGBBox();
}

Box2d CMTStringElement::GetInternalBBox(CMTTextIF& textIF) {
  if (!IsInternalBBoxValid()) Measure(textIF);
  return InternalBBox();
}

const MTLineMetrics& CMTStringElement::GetLineMetrics(CMTTextIF& textIF) {
  if (!IsInternalBBoxValid()) Measure(textIF);
  return metrics_;
}

void CMTStringElement::InternalDraw(CMTTextIF& textIF, const Vec2d& origin) {
  if (text_.find_first_not_of(L'\t') == GString::npos) return;
  const MTLineMetrics& metrics = GetLineMetrics(textIF);
  const MTStateScope state(textIF);
  SetAttributes(textIF);
  textIF.DrawString(textIF.Turn(origin), text_);
  if (GetAttributes().underline) {
    DrawLevelLine(textIF, origin + Vec2d(0, metrics.underlinePosition), GetExtent(),
                  metrics.underlineThickness);
  }
  if (GetAttributes().strikeThrough) {
    DrawLevelLine(textIF, origin + Vec2d(0, metrics.strikeoutPosition), GetExtent(),
                  metrics.strikeoutThickness);
  }
}

}  // namespace shr
