// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/Labels.h"

#include <algorithm>

namespace mapreport {

using namespace shr;

namespace {

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
