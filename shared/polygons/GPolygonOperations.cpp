// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The operations of `GPolygon`, and what other units get from the clipper.

#include <algorithm>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/polygons/FlatContours.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/MultiPolygon.h"
#include "shared/polygons/PolygonMeasures.h"
#include "shared/polygons/clipper/GpcHolder.h"
#include "shared/polygons/clipper/GpcRun.h"
#include "shared/polygons/clipper/OffsetCurve.h"

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

}  // namespace

void GPolygon::Combine(const GPolygon& other, SET_OPERATION operation) {
  Combine(other, operation, *this);
}

void GPolygon::Combine(const GPolygon& other, SET_OPERATION operation, GPolygon& result) const {
  if (&other != this) {
    Combine(other, operation, FillRule::EvenOdd, result);
    return;
  }
  static_cast<void>(ClipperOperation(operation));
  result = KeepsItself(operation) ? *this : GPolygon();
}

void GPolygon::Combine(const GPolygon& other, SET_OPERATION operation, FillRule rule,
                       GPolygon& result) const {
  GpcPolygonHolder combined;
  gpc_polygon_clip(ClipperOperation(operation), record_, other.record_, combined.record, rule);
  result.Take(combined.record);
}

GPolygon GPolygon::Unite(std::span<const GPolygon> polygons) {
  std::vector<GpcContour> contours;
  std::vector<gpc::Index> numbers;
  for (std::size_t i = 0; i < polygons.size(); ++i) {
    for (const GpcContour& contour : ContoursOf(polygons[i].GetRecord())) {
      contours.push_back(contour);
      numbers.push_back(static_cast<gpc::Index>(i));
    }
  }
  GpcPolygonHolder united;
  gpc::Run(GPC_UNION, gpc::Rule::Polygons, {contours, numbers}, {}, gpc::Want::Contours)
      .MakeRecord(united.record);
  GPolygon result;
  result.Take(united.record);
  return result;
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

void GPolygon::Offset(double distance, const OffsetOptions& options) {
  Offset(distance, options, *this);
}

void GPolygon::Offset(double distance, const OffsetOptions& options, GPolygon& result) const {
  OffsetCurve curve(distance, options);
  GPolygon clean;
  Combine(GPolygon(), SET_UNION, clean);
  for (const GpcContour& contour : ContoursOf(clean.record_)) curve.Add(VerticesOf(contour));
  GpcPolygonHolder grown;
  gpc::Run(GPC_UNION, gpc::Rule::Negative, {curve.Contours(), {}}, {}, gpc::Want::Contours)
      .MakeRecord(grown.record);
  result.Take(grown.record);
}

void GPolygon::RemoveZeroWidthReturnPaths() {
  Intersection(GetBBox());
}

bool GPolygon::PointInside(const Vec2d& point) const {
  if (!box_.Contains(point) || !IsFinite(*this)) return false;
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
  MultiPolygon2d polygons;
  outside.GetMultiPolygon(polygons);
  return HasOnlySlivers(polygons, a.GetBBox(), b.GetBBox());
}

bool GPolygonContains(const GPolygon& a, const Vec2d* points, const unsigned int* counts,
                      std::size_t numContours) {
  return GPolygonContains(a, GPolygon(points, counts, numContours));
}

bool GPolygonContains(const GPolygon& a, std::span<const Vec2d> points,
                      std::span<const unsigned int> counts) {
  return GPolygonContains(a, GPolygon(points, counts));
}

}  // namespace shr
