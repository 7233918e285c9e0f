// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/MultiLineElement.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

[[noreturn]] void ThrowInvalid(int line) {
  ThrowErrorImpl(L"MultiLineElement", line, INVALID_PARAMETER_TEXT);
}

double ShareBefore(HAlignment alignment) {
  switch (alignment) {
    case HAlignment::Left:
      break;
    case HAlignment::Center:
      return 0.5;
    case HAlignment::Right:
      return 1;
  }
  return 0;
}

}  // namespace

CMTMultiLineElement::CMTMultiLineElement(const CMTTextIF& textIF) : CMTElement(textIF) {}

CMTMultiLineElement::CMTMultiLineElement(const CMTMultiLineElement& other)
    : CMTElement(other), fieldWidth_(other.fieldWidth_), fieldHeight_(other.fieldHeight_) {
  lines_.reserve(other.lines_.size());
  for (const auto& line : other.lines_) {
    lines_.push_back(std::static_pointer_cast<CMTLineElement>(line->Clone()));
    Hold(lines_.back().get());
  }
}

CMTMultiLineElement::~CMTMultiLineElement() {
  for (const auto& line : lines_) Release(line.get());
}

std::shared_ptr<CMTElement> CMTMultiLineElement::Clone() const {
  return std::shared_ptr<CMTElement>(new CMTMultiLineElement(*this));
}

void CMTMultiLineElement::clear() {
  for (const auto& line : lines_) Release(line.get());
  lines_.clear();
  InvalidateTextMetrics();
}

GString CMTMultiLineElement::GetSimpleText() const {
  GString text;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    if (i > 0) text += L'\n';
    text += lines_[i]->GetSimpleText();
  }
  return text;
}

/// Calls `visit(line, origin)` for each line with the place of its frame.
template <typename Visit>
void CMTMultiLineElement::VisitLines(CMTTextIF& textIF, Visit visit) {
  const double width = GetExtentUsingTextIF(textIF);
  const double before = ShareBefore(GetAttributes().hAlignment);
  Vec2d origin;
  double descent = 0;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    CMTLineElement& line = *lines_[i];
    if (lines_.size() > 1) {
      const CMTLineElement::Room room = line.GetRoom(textIF);
      if (i > 0) origin.y -= descent + room.gap + room.ascent;
      descent = room.descent;
    }
    origin.x = before * (width - line.GetExtentUsingTextIF(textIF));
    visit(line, origin);
  }
}

double CMTMultiLineElement::GetExtentUsingTextIF(CMTTextIF& textIF) {
  if (IsExtentValid()) return GetExtent();
  double extent = fieldWidth_;
  for (const auto& line : lines_) extent = std::max(extent, line->GetExtentUsingTextIF(textIF));
  SetExtent(extent);
  return extent;
}

Box2d CMTMultiLineElement::GetGenericBBox(CMTTextIF& textIF) {
  if (IsGBBoxValid()) return GetGBBox();
  Box2d box;
  VisitLines(textIF, [&](CMTLineElement& line, const Vec2d& origin) {
    box.ExtendBy(line.GetGenericBBox(textIF) + origin);
  });
  if (!empty()) {
    box.xMin() = std::min(box.xMin(), 0.0);
    box.xMax() = std::max(box.xMax(), GetExtent());
  }
  SetGBBox(box);
  return box;
}

Box2d CMTMultiLineElement::GetInternalBBox(CMTTextIF& textIF) {
  if (IsInternalBBoxValid()) return InternalBBox();
  Box2d box = GetGenericBBox(textIF);
  VisitLines(textIF, [&](CMTLineElement& line, const Vec2d& origin) {
    box.ExtendBy(line.GetInternalBBox(textIF) + origin);
  });
  SetInternalBBox(box);
  return box;
}

void CMTMultiLineElement::InternalDraw(CMTTextIF& textIF, const Vec2d& origin) {
  VisitLines(textIF, [&](CMTLineElement& line, const Vec2d& offset) {
    line.InternalDraw(textIF, origin + offset);
  });
}

void CMTMultiLineElement::AppendLine(const CMTTextIF& textIF,
                                     std::shared_ptr<CMTLineElement> line) {
  if (line == nullptr) ThrowInvalid(__LINE__);
  lines_.push_back(std::move(line));
  try {
    Hold(lines_.back().get());
  } catch (...) {
    lines_.pop_back();
    throw;
  }
  if (lines_.back()->empty()) lines_.back()->GetAttributes(textIF);
}

void CMTMultiLineElement::SetField(double width, double height) {
  const auto isLength = [](double value) { return value >= 0 && std::isfinite(value); };
  if (!isLength(width) || !isLength(height)) ThrowInvalid(__LINE__);
  fieldWidth_ = width;
  fieldHeight_ = height;
  InvalidateTextMetrics();
}

}  // namespace shr
