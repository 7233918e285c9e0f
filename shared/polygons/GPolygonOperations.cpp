// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The operations of `GPolygon`, and what other units get from the clipper.

#include <algorithm>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/polygons/FlatContours.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/clipper/GpcHolder.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"GPolygon";

gpc_op ClipperOperation(GPolygon::SET_OPERATION operation) {
  switch (operation) {
    case GPolygon::SET_INTERSECTION:
      return GPC_INTERSECTION;
    case GPolygon::SET_UNION:
      return GPC_UNION;
    case GPolygon::SET_DIFFERENCE:
      return GPC_DIFFERENCE;
    case GPolygon::SET_XOR:
      return GPC_XOR;
  }
  ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
}

bool KeepsItself(GPolygon::SET_OPERATION operation) {
  return operation == GPolygon::SET_INTERSECTION || operation == GPolygon::SET_UNION;
}

bool HasVertex(const GPolygon& polygon, const Vec2d& point) {
  const std::span<const GpcContour> contours = ContoursOf(polygon.GetRecord());
  return std::any_of(contours.begin(), contours.end(), [&](const GpcContour& contour) {
    const std::span<const Vec2d> vertices = VerticesOf(contour);
    return std::find(vertices.begin(), vertices.end(), point) != vertices.end();
  });
}

/// Returns the polygons from `first` to `last` as one area. Halving keeps the operands small.
GPolygon UnionOf(const MultiPolygon2d& polygons, std::size_t first, std::size_t last) {
  if (last - first <= 1) {
    MultiPolygon2d single(polygons.begin() + static_cast<std::ptrdiff_t>(first),
                          polygons.begin() + static_cast<std::ptrdiff_t>(last));
    return GPolygon(single);
  }
  const std::size_t middle = first + (last - first) / 2;
  GPolygon result = UnionOf(polygons, first, middle);
  result.Union(UnionOf(polygons, middle, last));
  return result;
}

GPolygon UnionOf(const GPolygon2d& polygons) {
  MultiPolygon2d model;
  polygons.GetMultiPolygon(model);
  return UnionOf(model, 0, model.size());
}

}  // namespace

void GPolygon::Combine(const GPolygon& other, SET_OPERATION operation) {
  Combine(other, operation, *this);
}

void GPolygon::Combine(const GPolygon& other, SET_OPERATION operation, GPolygon& result) const {
  const gpc_op clipperOperation = ClipperOperation(operation);
  if (&other == this) {
    result = KeepsItself(operation) ? *this : GPolygon();
    return;
  }
  GpcPolygonHolder combined;
  gpc_polygon_clip(clipperOperation, record_, other.record_, combined.record);
  result.Take(combined.record);
}

void GPolygon::Intersection(const GPolygon& other) {
  Combine(other, SET_INTERSECTION);
}

void GPolygon::Intersection(const GPolygon& other, GPolygon& result) const {
  Combine(other, SET_INTERSECTION, result);
}

void GPolygon::Intersection(const Box2d& box) {
  Intersection(box, *this);
}

void GPolygon::Intersection(const Box2d& box, GPolygon& result) const {
  if (box.IsEmpty()) {
    result.MakeEmpty();
  } else {
    Combine(GPolygon(box), SET_INTERSECTION, result);
  }
}

void GPolygon::Union(const GPolygon& other) {
  Combine(other, SET_UNION);
}

void GPolygon::Union(const GPolygon& other, GPolygon& result) const {
  Combine(other, SET_UNION, result);
}

void GPolygon::Difference(const GPolygon& other) {
  Combine(other, SET_DIFFERENCE);
}

void GPolygon::Difference(const GPolygon& other, GPolygon& result) const {
  Combine(other, SET_DIFFERENCE, result);
}

void GPolygon::XOR(const GPolygon& other) {
  Combine(other, SET_XOR);
}

void GPolygon::XOR(const GPolygon& other, GPolygon& result) const {
  Combine(other, SET_XOR, result);
}

void GPolygon::RemoveZeroWidthReturnPaths() {
  Intersection(GetBBox());
}

bool GPolygon::PointInside(const Vec2d& point) const {
  if (!box_.Contains(point)) return false;
  Box2d rectangle;
  if (IsRectangle(&rectangle)) {
    rectangle.Normalize();
    return rectangle.Contains(point);
  }
  GPolygon quadrant;
  Intersection(Box2d(point, box_.Max() + 1.0), quadrant);
  if (HasVertex(quadrant, point)) return true;
  Intersection(Box2d(box_.Min() - 1.0, point), quadrant);
  return HasVertex(quadrant, point);
}

bool GPolygonContains(const GPolygon& a, const GPolygon& b) {
  GPolygon outside;
  b.Difference(a, outside);
  return outside.GetNumContours() == 0;
}

bool GPolygonContains(const GPolygon& a, const Vec2d* points, const unsigned int* counts,
                      std::size_t numContours) {
  return GPolygonContains(a, GPolygon(points, counts, numContours));
}

bool GPolygonContains(const GPolygon& a, std::span<const Vec2d> points,
                      std::span<const unsigned int> counts) {
  return GPolygonContains(a, GPolygon(points, counts));
}

bool GPolygonContains(const GPolygon2d& a, const GPolygon2d& b) {
  return GPolygonContains(UnionOf(a), UnionOf(b));
}

bool GPolygonContains(const GPolygon2d& a, const Vec2d* points, const unsigned int* counts,
                      std::size_t numContours) {
  return GPolygonContains(a, GPolygon2d(points, counts, numContours));
}

bool GPolygonContains(const GPolygon2d& a, std::span<const Vec2d> points,
                      std::span<const unsigned int> counts) {
  return GPolygonContains(a, GPolygon2d(points, counts));
}

}  // namespace shr
