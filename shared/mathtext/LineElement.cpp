// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/LineElement.h"

#include <algorithm>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/mathtext/MultiLineElement.h"

namespace shr {
namespace {

[[noreturn]] void ThrowInvalid(int line) {
  ThrowErrorImpl(L"LineElement", line, INVALID_PARAMETER_TEXT);
}

/// Returns how much higher than the pen the frame of an element lies.
double RiseOf(CMTMultiLineElement& element, CMTTextIF& textIF) {
  switch (element.GetAttributes().vAlignment) {
    case VAlignment::Top:
      return element.GetFieldHeight() - element.GetInternalBBox(textIF).yMax();
    case VAlignment::Baseline:
      break;
    case VAlignment::Bottom:
      return -element.GetInternalBBox(textIF).yMin();
  }
  return 0;
}

}  // namespace

CMTLineElement::CMTLineElement(const CMTTextIF& textIF) : CMTElement(textIF) {}

CMTLineElement::CMTLineElement(const CMTLineElement& other) : CMTElement(other) {
  items_.reserve(other.items_.size());
  for (const Item& item : other.items_) {
    items_.push_back(
        {std::static_pointer_cast<CMTAssocStringElement>(item.element->Clone()), item.offset});
    Hold(items_.back().element.get());
  }
}

CMTLineElement::~CMTLineElement() {
  for (const Item& item : items_) Release(item.element.get());
}

std::shared_ptr<CMTElement> CMTLineElement::Clone() const {
  return std::shared_ptr<CMTElement>(new CMTLineElement(*this));
}

void CMTLineElement::clear() {
  for (const Item& item : items_) Release(item.element.get());
  items_.clear();
  InvalidateTextMetrics();
}

GString CMTLineElement::GetSimpleText() const {
  GString text;
  for (const Item& item : items_) text += item.element->GetSimpleText();
  return text;
}

double CMTLineElement::GetExtentUsingTextIF(CMTTextIF& textIF) {
  if (IsExtentValid()) return GetExtent();
  double extent = 0;
  for (const Item& item : items_) {
    extent = std::max(extent, item.offset.x + item.element->GetExtentUsingTextIF(textIF));
  }
  SetExtent(extent);
  return extent;
}

Box2d CMTLineElement::GetGenericBBox(CMTTextIF& textIF) {
  if (IsGBBoxValid()) return GetGBBox();
  Box2d box;
  for (const Item& item : items_) box.ExtendBy(item.element->GetGenericBBox(textIF) + item.offset);
  if (empty()) box = CalcEmptyLineInternalBBox(textIF);
  SetGBBox(box);
  return box;
}

Box2d CMTLineElement::GetInternalBBox(CMTTextIF& textIF) {
  if (IsInternalBBoxValid()) return InternalBBox();
  Box2d box;
  for (const Item& item : items_) {
    box.ExtendBy(item.element->GetInternalBBox(textIF) + item.offset);
  }
  if (empty()) box = CalcEmptyLineInternalBBox(textIF);
  SetInternalBBox(box);
  return box;
}

void CMTLineElement::InternalDraw(CMTTextIF& textIF, const Vec2d& origin) {
  for (const Item& item : items_) item.element->InternalDraw(textIF, origin + item.offset);
}

void CMTLineElement::AddAssocStringElement(std::shared_ptr<CMTAssocStringElement> element,
                                           const Vec2d& offset) {
  items_.push_back({std::move(element), offset});
  try {
    Hold(items_.back().element.get());
  } catch (...) {
    items_.pop_back();
    throw;
  }
}

void CMTLineElement::AssociateLineSegment(Side side, const Vec2d& vector,
                                          std::shared_ptr<const MTAttributes> style) {
  if (items_.empty()) ThrowInvalid(__LINE__);
  items_.back().element->AssociateLineSegment(side, vector, std::move(style));
}

double CMTLineElement::AssociateMLElement(CMTTextIF& textIF,
                                          std::shared_ptr<CMTMultiLineElement> element,
                                          const Vec2d& pen) {
  if (element == nullptr) ThrowInvalid(__LINE__);
  const double advance = element->GetExtentUsingTextIF(textIF);
  const Vec2d offset(0, RiseOf(*element, textIF));
  auto run = std::make_shared<CMTAssocStringElement>(textIF);
  run->AssociateMLElement(std::move(element), offset);
  AddAssocStringElement(std::move(run), pen);
  return advance;
}

Box2d CMTLineElement::CalcEmptyLineInternalBBox(CMTTextIF& textIF) const {
  const MTStateScope state(textIF);
  SetAttributes(textIF);
  const MTLineMetrics metrics = textIF.GetLineMetrics();
  return Box2d(0, -metrics.descent, 0, metrics.ascent);
}

CMTLineElement::Room CMTLineElement::GetRoom(CMTTextIF& textIF) {
  Room room;
  if (empty()) {
    const MTStateScope state(textIF);
    SetAttributes(textIF);
    const MTLineMetrics metrics = textIF.GetLineMetrics();
    return {metrics.ascent, metrics.descent, metrics.lineGap};
  }
  for (const Item& item : items_) {
    const Box2d box = item.element->GetGenericBBox(textIF);
    room.ascent = std::max(room.ascent, box.yMax() + std::max(0.0, item.offset.y));
    room.descent = std::max(room.descent, -box.yMin() - std::min(0.0, item.offset.y));
    room.gap = std::max(room.gap, item.element->GetStringElement()->GetLineMetrics(textIF).lineGap);
  }
  return room;
}

}  // namespace shr
