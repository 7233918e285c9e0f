// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/GPolygon2dModel.h"

#include <algorithm>
#include <cmath>

#include "shared/polygons/FlatOutput.h"

namespace shr {
namespace {

/// Returns four times the signed area, positive for clockwise order. Coordinates are taken relative
/// to the first point, which keeps the sign right for small rings far from the origin. The parts
/// are added up in both orders, so that rounding gives the reversed ring exactly the opposite.
double ClockwiseArea(std::span<const Vec2d> ring) {
  const Vec2d origin = ring.front();
  const auto part = [&](const Vec2d& one, const Vec2d& two) {
    const Vec2d from = one - origin;
    const Vec2d to = two - origin;
    return from.y * to.x - to.y * from.x;
  };
  double forth = 0.0;
  double back = 0.0;
  const std::size_t last = ring.size() - 1;
  for (std::size_t i = 0; i < last; ++i) {
    forth += part(ring[i], ring[i + 1]);
    back += part(ring[last - i - 1], ring[last - i]);
  }
  return forth + back;
}

/// Whether a ring ends where it begins, be it at a point that is infinite or NaN.
bool IsClosed(std::span<const Vec2d> ring) {
  const Vec2d& a = ring.front();
  const Vec2d& b = ring.back();
  const auto isSame = [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); };
  return IsNear(a, b) || (isSame(a.x, b.x) && isSame(a.y, b.y));
}

bool AreFinite(std::span<const Vec2d> points) {
  return std::all_of(points.begin(), points.end(),
                     [](const Vec2d& p) { return std::isfinite(p.x) && std::isfinite(p.y); });
}

/// Makes room for `count` more elements; repeated calls cost amortized constant time an element.
template <class T>
void ReserveMore(std::vector<T>& vector, std::size_t count) {
  const std::size_t needed = vector.size() + count;
  if (needed > vector.capacity()) vector.reserve(std::max(needed, 2 * vector.capacity()));
}

}  // namespace

void GPolygon2dModel::AddRing(std::span<const Vec2d> contour, Turn turn) {
  const std::size_t first = points.size();
  points.insert(points.end(), contour.begin(), contour.end());
  if (contour.size() > 2 && !IsClosed(contour)) points.push_back(contour.front());
  const std::span<Vec2d> ring = std::span(points).subspan(first);
  if (ring.size() >= 4) {
    const double area = ClockwiseArea(ring);
    if (turn == Turn::Clockwise ? area < 0.0 : area > 0.0) std::reverse(ring.begin(), ring.end());
  }
  ringEnds.push_back(points.size());
}

void GPolygon2dModel::AddOuterRing(std::span<const Vec2d> contour) {
  AddRing(contour, Turn::Clockwise);
  Box2d bounds;
  bounds.BoundPoints(contour);
  polygons.push_back({ringEnds.size(), bounds, AreFinite(contour)});
  box.ExtendBy(bounds);
}

void GPolygon2dModel::AddInnerRing(std::span<const Vec2d> contour) {
  AddRing(contour, Turn::CounterClockwise);
  Polygon& polygon = polygons.back();
  polygon.endRing = ringEnds.size();
  polygon.isFinite = polygon.isFinite && AreFinite(contour);
  for (const Vec2d& point : contour) polygon.box.ExtendBy(point);
  box.ExtendBy(polygon.box);
}

void GPolygon2dModel::EndOuterRing() {
  polygons.push_back({ringEnds.size(), Box2d(), true});
  EndInnerRing();
}

void GPolygon2dModel::EndInnerRing() {
  ringEnds.push_back(points.size());
  const std::span<const Vec2d> ring = Ring(ringEnds.size() - 1);
  Polygon& polygon = polygons.back();
  polygon.endRing = ringEnds.size();
  polygon.isFinite = polygon.isFinite && AreFinite(ring);
  for (const Vec2d& point : ring) polygon.box.ExtendBy(point);
  box.ExtendBy(polygon.box);
}

void GPolygon2dModel::AddPolygon(const GPolygon2dModel& other, std::size_t polygon) {
  const std::span<const Vec2d> added = other.PointsOf(polygon);
  const std::size_t shift = points.size() - other.FirstPoint(other.FirstRing(polygon));
  points.insert(points.end(), added.begin(), added.end());
  for (std::size_t ring = other.FirstRing(polygon); ring < other.polygons[polygon].endRing;
       ++ring) {
    ringEnds.push_back(other.ringEnds[ring] + shift);
  }
  polygons.push_back(
      {ringEnds.size(), other.polygons[polygon].box, other.polygons[polygon].isFinite});
  box.ExtendBy(other.polygons[polygon].box);
}

void GPolygon2dModel::Append(const GPolygon2dModel& other) {
  ReserveMore(points, other.points.size());
  ReserveMore(ringEnds, other.ringEnds.size());
  ReserveMore(polygons, other.polygons.size());
  const std::size_t count = other.polygons.size();
  for (std::size_t polygon = 0; polygon < count; ++polygon) AddPolygon(other, polygon);
}

}  // namespace shr
