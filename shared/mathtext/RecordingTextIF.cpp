// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/mathtext/RecordingTextIF.h"

#include <algorithm>
#include <utility>

namespace shr {
namespace {

/// Returns whether a unit takes a room of its own: second halves of pairs and controls do not.
bool TakesRoom(wchar_t unit) {
  const char32_t code = static_cast<char32_t>(unit);
  return code >= 0x20 && (code & 0xFFFFFC00) != 0xDC00;
}

std::ptrdiff_t CountCharacters(std::wstring_view text) {
  return std::count_if(text.begin(), text.end(), TakesRoom);
}

}  // namespace

CMTRecordingTextIF::CMTRecordingTextIF() = default;
CMTRecordingTextIF::CMTRecordingTextIF(const MTFixedMetrics& metrics) : fixed_(metrics) {}
CMTRecordingTextIF::~CMTRecordingTextIF() = default;

MTLineMetrics CMTRecordingTextIF::GetLineMetrics() {
  if (!fixed_) return CMTFaceTextIF::GetLineMetrics();
  return fixed_->line * GetAttributes().height;
}

double CMTRecordingTextIF::GetTextExtent(std::wstring_view text) {
  if (!fixed_) return CMTFaceTextIF::GetTextExtent(text);
  return static_cast<double>(CountCharacters(text)) * fixed_->advance * GetAttributes().height;
}

Box2d CMTRecordingTextIF::GetTextBounds(std::wstring_view text) {
  if (!fixed_) return CMTFaceTextIF::GetTextBounds(text);
  const auto isInk = [](wchar_t unit) { return TakesRoom(unit) && unit != L' '; };
  const auto first = std::find_if(text.begin(), text.end(), isInk);
  if (first == text.end()) return Box2d();
  const auto last = std::find_if(text.rbegin(), text.rend(), isInk).base();
  const auto at = [&](auto place) {
    return GetTextExtent(text.substr(0, static_cast<std::size_t>(place - text.begin())));
  };
  const MTLineMetrics metrics = GetLineMetrics();
  return Box2d(at(first), -metrics.descent, at(last), metrics.ascent);
}

double CMTRecordingTextIF::GetAverageCharWidth() {
  if (!fixed_) return CMTFaceTextIF::GetAverageCharWidth();
  return fixed_->advance * GetAttributes().height;
}

void CMTRecordingTextIF::DrawString(const Vec2d& baselineBegin, std::wstring_view text) {
  MTDrawCall call;
  call.text = text;
  call.from = baselineBegin;
  call.to = baselineBegin + TurnDirection(Vec2d(GetTextExtent(text), 0));
  call.rotation = GetRotation();
  call.attributes = GetAttributes();
  calls_.push_back(std::move(call));
}

void CMTRecordingTextIF::DrawLine(const Vec2d& from, const Vec2d& to, double thickness) {
  MTDrawCall call;
  call.kind = MTDrawCall::Kind::Line;
  call.from = from;
  call.to = to;
  call.thickness = thickness;
  call.attributes = GetAttributes();
  calls_.push_back(std::move(call));
}

}  // namespace shr
