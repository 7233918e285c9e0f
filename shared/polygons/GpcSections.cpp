// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// First stage: the operands' contours become one array of points and are cut into sections, runs of
// edges that need no test against each other. Borders of maps are long and cross seldom; whatever
// comes later costs what the sections cost, not what the edges do.

#include <algorithm>
#include <cmath>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/polygons/GpcWorkspace.h"

namespace shr::gpc {
namespace {

constexpr Index MAX_SECTION_EDGES = 16;
constexpr Index MAX_VERTICES = 1u << 29;
/// Coordinates between these have products that neither overflow nor lose bits.
constexpr int MAX_EXPONENT = 400;

std::uint8_t Directions(double dx, double dy) {
  return static_cast<std::uint8_t>((dx >= 0.0 ? TO_RIGHT : 0) | (dx <= 0.0 ? TO_LEFT : 0) |
                                   (dy >= 0.0 ? UPWARD : 0) | (dy <= 0.0 ? DOWNWARD : 0));
}

bool IsLower(const Vec2d& a, const Vec2d& b) {
  return a.y < b.y || (a.y == b.y && a.x < b.x);
}

/// Copies points that differ from the one before and returns their number.
Index CopyDistinct(const GpcContour& from, Vec2d* to) {
  const auto size = static_cast<Index>(from.vertexCount);
  Index count = 0;
  Vec2d last = from.vertices[size - 1];
  for (Index i = 0; i < size; ++i) {
    const Vec2d point = from.vertices[i];
    to[count] = point;
    count += !IsSame(point, last);
    last = point;
  }
  return count;
}

void AppendSections(Workspace& work, Index contourIndex) {
  Contour& contour = work.contours[contourIndex];
  const Vec2d* points = work.points.Data();
  const Index end = contour.first + contour.count;
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
      if (edge == end || edge - section.firstEdge == MAX_SECTION_EDGES || common == 0 ||
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
    section.turnsSmoothly = turnsSmoothly;
    work.sections.Append(section);
  }
  contour.lowest = lowest == end ? contour.first : lowest;
}

}  // namespace

void Reset(Workspace& work) {
  work.points.Clear();
  work.contours.Clear();
  work.vertexCount = 0;
  work.largest = 0.0;
  work.unscale = 1.0;
}

void LoadPolygon(Workspace& work, const GpcPolygon& polygon, Operands operand) {
  for (int i = 0; i < polygon.contourCount; ++i) {
    const GpcContour& contour = polygon.contours[i];
    if (contour.vertexCount < 3) continue;
    const auto size = static_cast<Index>(contour.vertexCount);
    const Index first = work.points.Size();
    if (size > MAX_VERTICES || first > MAX_VERTICES) {
      ThrowErrorImpl(UNIT, __LINE__, L"The polygons have too many vertices to be clipped.");
    }
    Vec2d* to = work.points.Extend(size + 1);
    const Index count = CopyDistinct(contour, to);
    work.points.Truncate(first + (count < 3 ? 0 : count + 1));
    if (count < 3) continue;
    to[count] = to[0];
    work.contours.Append({first, count, first, operand});
  }
}

void FinishLoading(Workspace& work) {
  double largest = 0.0;
  double sum = 0.0;  // becomes NaN by anything that is not finite
  for (const Vec2d& point : work.points) {
    largest = std::max({largest, std::abs(point.x), std::abs(point.y)});
    sum += point.x * 0.0 + point.y * 0.0;
  }
  if (!(sum == 0.0)) {
    ThrowErrorImpl(UNIT, __LINE__,
                   L"A polygon with infinite or undefined coordinates cannot be clipped.");
  }
  const int exponent = largest > 0.0 ? std::ilogb(largest) : 0;
  if (exponent > MAX_EXPONENT || exponent < -MAX_EXPONENT) {
    for (Vec2d& point : work.points) {
      point.x = std::ldexp(point.x, -exponent);
      point.y = std::ldexp(point.y, -exponent);
    }
    largest = std::ldexp(largest, -exponent);
    work.unscale = std::ldexp(1.0, exponent);
    work.occurrences.Clear();
    RefineContours(work);  // tiny differences may have vanished
  }
  work.largest = largest;
  work.tolerance = GPC_SNAP * largest;
}

void BuildSections(Workspace& work) {
  work.vertexCount = work.points.Size();
  work.sections.Clear();
  for (Index i = 0; i < work.contours.Size(); ++i) AppendSections(work, i);
}

}  // namespace shr::gpc
