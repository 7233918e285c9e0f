// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// First stage: the contours are cut into sections, runs of edges that need no test against each
// other. Borders of maps are long and cross seldom; whatever comes later costs what the sections
// cost, not what the edges do.

#include <algorithm>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcInput.h"
#include "shared/polygons/clipper/GpcTuning.h"

namespace shr::gpc {
namespace {

std::uint8_t Directions(double dx, double dy) {
  return static_cast<std::uint8_t>((dx >= 0.0 ? TO_RIGHT : 0) | (dx <= 0.0 ? TO_LEFT : 0) |
                                   (dy >= 0.0 ? UPWARD : 0) | (dy <= 0.0 ? DOWNWARD : 0));
}

bool IsLower(const Vec2d& a, const Vec2d& b) {
  return (static_cast<int>(a.y < b.y) |
          (static_cast<int>(a.y == b.y) & static_cast<int>(a.x < b.x))) != 0;
}

void AppendSections(Input& input, Index contourIndex) {
  Contour& contour = input.contours[contourIndex];
  const Vec2d* points = input.points.Data();
  const Index end = contour.End();
  Index edge = contour.first;
  Index lowest = edge;
  Vec2d start = points[edge];
  Vec2d point = points[edge + 1];
  Vec2d way = point - start;
  std::uint8_t waysOfEdge = Directions(way.x, way.y);
  while (edge != end) {
    Section section;
    section.box = {std::min(start.x, point.x), std::min(start.y, point.y),
                   std::max(start.x, point.x), std::max(start.y, point.y)};
    section.firstEdge = edge;
    section.directions = waysOfEdge;
    for (;;) {
      ++edge;
      lowest = IsLower(point, points[lowest]) ? edge : lowest;
      // The edge behind the last is the first.
      const Vec2d next = points[(edge == end ? contour.first : edge) + 1];
      const Vec2d nextWay = next - point;
      const bool turnsSmoothly = way.x * nextWay.x + way.y * nextWay.y > 0.0;
      waysOfEdge = Directions(nextWay.x, nextWay.y);
      const auto common = static_cast<std::uint8_t>(section.directions & waysOfEdge);
      start = point;
      point = next;
      way = nextWay;
      if (edge == end || edge - section.firstEdge == Tuning::SECTION_EDGES || common == 0 ||
          !turnsSmoothly) {
        section.turnsSmoothly = turnsSmoothly && !(contour.IsLine() && edge == end);
        break;
      }
      section.directions = common;
      section.box.xMin = std::min(section.box.xMin, point.x);
      section.box.yMin = std::min(section.box.yMin, point.y);
      section.box.xMax = std::max(section.box.xMax, point.x);
      section.box.yMax = std::max(section.box.yMax, point.y);
    }
    section.contour = contourIndex;
    section.edgeCount = static_cast<std::uint16_t>(edge - section.firstEdge);
    input.sections.Append(section);
  }
  contour.lowest = contour.VertexAt(lowest);
}

}  // namespace

int Input::TurnAtLowest(const Contour& contour) const {
  return OrientationSign(points[contour.VertexBefore(contour.lowest)], points[contour.lowest],
                         points[contour.lowest + 1]);
}

void BuildSections(Input& input) {
  input.sections.Clear();
  for (Index i = 0; i < input.contours.Size(); ++i) AppendSections(input, i);
}

}  // namespace shr::gpc
