// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Labels.h"

#include <algorithm>
#include <cstdint>

namespace mapreport {

using namespace shr;

namespace {

/// Characters from `first` to `last` are `width` of the type size wide. Later rows win.
struct WidthRange {
  std::uint32_t first;
  std::uint32_t last;
  double width;
};

constexpr double DEFAULT_WIDTH = 0.58;

constexpr WidthRange WIDTHS[] = {
    {0x0020, 0x002F, 0.30},  // blank and punctuation
    {0x0041, 0x005A, 0.66},  // capitals
    {0x0066, 0x0066, 0.36},  // f
    {0x0069, 0x0069, 0.27},  // i
    {0x006A, 0x006A, 0.27},  // j
    {0x006C, 0x006C, 0.27},  // l
    {0x006D, 0x006D, 0.90},  // m
    {0x0072, 0x0072, 0.42},  // r
    {0x0074, 0x0074, 0.38},  // t
    {0x0077, 0x0077, 0.78},  // w
    {0x0300, 0x036F, 0.00},  // combining marks
    {0x0400, 0x042F, 0.70},  // Cyrillic capitals
    {0x0591, 0x05C7, 0.00},  // Hebrew points
    {0x0600, 0x06FF, 0.52},  // Arabic
    {0x064B, 0x065F, 0.00},  // Arabic marks
    {0x0900, 0x0DFF, 0.62},  // Indic scripts
    {0x0E31, 0x0E31, 0.00},  // Thai marks
    {0x0E34, 0x0E3A, 0.00}, {0x0E47, 0x0E4E, 0.00}, {0x1000, 0x109F, 0.75},  // Myanmar
    {0x1100, 0x11FF, 1.00},                                                  // Hangul letters
    {0x2E80, 0xD7FF, 1.00},                                                  // East Asian scripts
    {0xD800, 0xDBFF, 1.00},  // first halves of pairs
    {0xDC00, 0xDFFF, 0.00},  // second halves
    {0xF900, 0xFAFF, 1.00}, {0xFF00, 0xFF60, 1.00},
};

double CharacterWidth(std::uint32_t code) {
  // Characters above 16 bits, where a unit holds them; most are ideographs.
  if (code > 0xFFFF) return 1.0;
  double width = DEFAULT_WIDTH;
  for (const WidthRange& range : WIDTHS) {
    if (code >= range.first && code <= range.last) width = range.width;
  }
  return width;
}

// Shares of the type size above and below the base line that letters really use.
constexpr double ASCENT = 0.82;
constexpr double DESCENT = 0.24;
/// Height of a small letter: names beside a marker are centred on it.
constexpr double X_HEIGHT = 0.52;
constexpr double GAP = 2.5;

using Anchor = LabelPlace::Anchor;

LabelPlace MakePlace(const Vec2d& position, Anchor anchor, double width, double size) {
  double left = position.x;
  if (anchor == Anchor::Middle) left -= width / 2;
  if (anchor == Anchor::End) left -= width;
  return {position, anchor,
          Box2d(left, position.y - ASCENT * size, left + width, position.y + DESCENT * size)};
}

/// The eight places, best first.
std::vector<LabelPlace> Candidates(const Vec2d& p, double radius, double width, double size) {
  const double away = radius + GAP;
  const double diagonal = 0.7 * radius + GAP / 2;
  const double middle = p.y + X_HEIGHT * size / 2;
  const double above = p.y - diagonal;
  const double below = p.y + diagonal + X_HEIGHT * size;
  return {MakePlace(Vec2d(p.x + away, middle), Anchor::Start, width, size),
          MakePlace(Vec2d(p.x + diagonal, above), Anchor::Start, width, size),
          MakePlace(Vec2d(p.x + diagonal, below), Anchor::Start, width, size),
          MakePlace(Vec2d(p.x - away, middle), Anchor::End, width, size),
          MakePlace(Vec2d(p.x - diagonal, above), Anchor::End, width, size),
          MakePlace(Vec2d(p.x - diagonal, below), Anchor::End, width, size),
          MakePlace(Vec2d(p.x, p.y - away - DESCENT * size / 2), Anchor::Middle, width, size),
          MakePlace(Vec2d(p.x, p.y + away + ASCENT * size), Anchor::Middle, width, size)};
}

bool Overlap(const Box2d& a, const Box2d& b) {
  return a.xMin() < b.xMax() && b.xMin() < a.xMax() && a.yMin() < b.yMax() && b.yMin() < a.yMax();
}

}  // namespace

double EstimateTextWidth(const GString& text, double size) {
  double width = 0;
  for (const wchar_t unit : text) width += CharacterWidth(static_cast<std::uint32_t>(unit));
  return width * size;
}

std::optional<LabelPlace> LabelPlacer::Place(const Vec2d& point, double radius, double width,
                                             double size) {
  const Box2d marker(point.x - radius, point.y - radius, point.x + radius, point.y + radius);
  if (!frame_.Contains(marker) || !IsFree(marker)) return std::nullopt;
  const std::optional<LabelPlace> place = PlaceName(point, radius, width, size);
  if (place) Block(marker);
  return place;
}

std::optional<LabelPlace> LabelPlacer::PlaceName(const Vec2d& point, double radius, double width,
                                                 double size) {
  for (const LabelPlace& place : Candidates(point, radius, width, size)) {
    if (!frame_.Contains(place.box) || !IsFree(place.box)) continue;
    Block(place.box);
    return place;
  }
  return std::nullopt;
}

bool LabelPlacer::IsFree(const Box2d& box) const {
  return std::none_of(taken_.begin(), taken_.end(),
                      [&](const Box2d& other) { return Overlap(box, other); });
}

}  // namespace mapreport
