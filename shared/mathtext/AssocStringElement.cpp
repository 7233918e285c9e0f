// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/AssocStringElement.h"

#include <algorithm>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/mathtext/MultiLineElement.h"

namespace shr {
namespace {

const CMTStringElement& NotNull(const std::shared_ptr<CMTStringElement>& element) {
  if (element == nullptr) {
    ThrowErrorImpl(L"AssocStringElement", __LINE__, INVALID_PARAMETER_TEXT);
  }
  return *element;
}

}  // namespace

CMTAssocStringElement::CMTAssocStringElement(std::shared_ptr<CMTStringElement> element)
    : CMTElement(NotNull(element).ShareAttributes()), string_(std::move(element)) {
  Hold(string_.get());
}

CMTAssocStringElement::CMTAssocStringElement(const CMTTextIF& textIF, const GString& text)
    : CMTElement(textIF), string_(std::make_shared<CMTStringElement>(textIF, text)) {
  Hold(string_.get());
}

CMTAssocStringElement::CMTAssocStringElement(const CMTAssocStringElement& other)
    : CMTElement(other), segments_(other.segments_), innerOffset_(other.innerOffset_) {
  string_ = std::static_pointer_cast<CMTStringElement>(other.string_->Clone());
  Hold(string_.get());
  if (other.inner_ == nullptr) return;
  inner_ = std::static_pointer_cast<CMTMultiLineElement>(other.inner_->Clone());
  Hold(inner_.get());
}

CMTAssocStringElement::~CMTAssocStringElement() {
  Release(string_.get());
  Release(inner_.get());
}

std::shared_ptr<CMTElement> CMTAssocStringElement::Clone() const {
  return std::shared_ptr<CMTElement>(new CMTAssocStringElement(*this));
}

void CMTAssocStringElement::clear() {
  string_->clear();
  segments_.clear();
  Release(inner_.get());
  inner_ = nullptr;
  InvalidateTextMetrics();
}

bool CMTAssocStringElement::empty() const {
  return string_->empty() && segments_.empty() && inner_ == nullptr;
}

GString CMTAssocStringElement::GetSimpleText() const {
  GString text = string_->GetSimpleText();
  if (inner_ != nullptr) text += inner_->GetSimpleText();
  return text;
}

double CMTAssocStringElement::GetExtentUsingTextIF(CMTTextIF& textIF) {
  if (IsExtentValid()) return GetExtent();
  double extent = string_->GetExtentUsingTextIF(textIF);
  if (inner_ != nullptr) {
    extent = std::max(extent, innerOffset_.x + inner_->GetExtentUsingTextIF(textIF));
  }
  SetExtent(extent);
  return extent;
}

Box2d CMTAssocStringElement::GetGenericBBox(CMTTextIF& textIF) {
  if (IsGBBoxValid()) return GetGBBox();
  Box2d box = string_->GetGenericBBox(textIF);
  if (inner_ != nullptr) box.ExtendBy(inner_->GetGenericBBox(textIF) + innerOffset_);
  SetGBBox(box);
  return box;
}

Box2d CMTAssocStringElement::GetInternalBBox(CMTTextIF& textIF) {
  if (IsInternalBBoxValid()) return InternalBBox();
  Box2d box = string_->GetInternalBBox(textIF);
  if (inner_ != nullptr) box.ExtendBy(inner_->GetInternalBBox(textIF) + innerOffset_);
  for (const Segment& segment : segments_) {
    const Vec2d begin = BeginOf(segment, textIF);
    Box2d around(begin, begin);
    around.ExtendBy(begin + segment.vector);
    const double half = ThicknessOf(segment, textIF) / 2;
    around.Inflate(half, half);
    box.ExtendBy(around);
  }
  SetInternalBBox(box);
  return box;
}

void CMTAssocStringElement::InternalDraw(CMTTextIF& textIF, const Vec2d& origin) {
  string_->InternalDraw(textIF, origin);
  if (inner_ != nullptr) inner_->InternalDraw(textIF, origin + innerOffset_);
  const MTStateScope state(textIF);
  for (const Segment& segment : segments_) {
    const Vec2d begin = origin + BeginOf(segment, textIF);
    const double thickness = ThicknessOf(segment, textIF);
    textIF.SetAttributes(segment.style);
    textIF.DrawLine(textIF.Turn(begin), textIF.Turn(begin + segment.vector), thickness);
  }
}

void CMTAssocStringElement::AssociateLineSegment(Side side, const Vec2d& vector,
                                                 std::shared_ptr<const MTAttributes> style) {
  if (style == nullptr) style = ShareAttributes();
  segments_.push_back({side, vector, std::move(style)});
  InvalidateTextMetrics();
}

void CMTAssocStringElement::AssociateMLElement(std::shared_ptr<CMTMultiLineElement> element,
                                               const Vec2d& offset) {
  Hold(element.get());
  Release(inner_.get());
  inner_ = std::move(element);
  innerOffset_ = offset;
}

Vec2d CMTAssocStringElement::BeginOf(const Segment& segment, CMTTextIF& textIF) {
  switch (segment.side) {
    case Side::Left:
      break;
    case Side::Right:
      return Vec2d(string_->GetExtentUsingTextIF(textIF), 0);
    case Side::Top:
      return Vec2d(0, string_->GetGenericBBox(textIF).yMax());
    case Side::Bottom:
      return Vec2d(0, string_->GetGenericBBox(textIF).yMin());
  }
  return Vec2d::ZERO;
}

double CMTAssocStringElement::ThicknessOf(const Segment& segment, CMTTextIF& textIF) const {
  const MTStateScope state(textIF);
  textIF.SetAttributes(segment.style);
  return textIF.GetLineMetrics().underlineThickness;
}

}  // namespace shr
