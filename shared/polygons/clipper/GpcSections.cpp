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
  return a.y < b.y || (a.y == b.y && a.x < b.x);
}

void AppendSections(Input& input, Index contourIndex) {
  Contour& contour = input.contours[contourIndex];
  const Vec2d* points = input.points.Data();
  const Index end = contour.End();
  Index edge = contour.first;
  Index lowest = edge;
  while (edge != end) {
    Section section;
    const Vec2d start = points[edge];
    Vec2d point = points[edge + 1];
    double dx = point.x - start.x;
    double dy = point.y - start.y;
    std::uint8_t directions = Directions(dx, dy);
    Box box{std::min(start.x, point.x), std::min(start.y, point.y), std::max(start.x, point.x),
            std::max(start.y, point.y)};
    section.firstEdge = edge++;
    bool turnsSmoothly = false;
    for (;; ++edge) {
      if (IsLower(points[edge], points[lowest])) lowest = edge;
      // The edge behind the last is the first.
      const Vec2d next = points[(edge == end ? contour.first : edge) + 1];
      const double nextDx = next.x - point.x;
      const double nextDy = next.y - point.y;
      turnsSmoothly = dx * nextDx + dy * nextDy > 0.0;
      const auto common = static_cast<std::uint8_t>(directions & Directions(nextDx, nextDy));
      if (edge == end || edge - section.firstEdge == Tuning::SECTION_EDGES || common == 0 ||
          !turnsSmoothly) {
        break;
      }
      directions = common;
      dx = nextDx;
      dy = nextDy;
      point = next;
      box.xMin = std::min(box.xMin, point.x);
      box.yMin = std::min(box.yMin, point.y);
      box.xMax = std::max(box.xMax, point.x);
      box.yMax = std::max(box.yMax, point.y);
    }
    section.box = box;
    section.contour = contourIndex;
    section.edgeCount = static_cast<std::uint16_t>(edge - section.firstEdge);
    section.directions = directions;
    section.turnsSmoothly = turnsSmoothly && !(contour.IsLine() && edge == end);
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
