// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <geos_c.h>

#include <memory>

#include "bench/polygons/BooleanContender.h"

namespace shr::bench {
namespace {

void Ignore(const char*, void*) {}

GEOSContextHandle_t Context() {
  static const std::unique_ptr<GEOSContextHandle_HS, decltype(&GEOS_finish_r)> CONTEXT = [] {
    const GEOSContextHandle_t context = GEOS_init_r();
    GEOSContext_setErrorMessageHandler_r(context, Ignore, nullptr);
    GEOSContext_setNoticeMessageHandler_r(context, Ignore, nullptr);
    return std::unique_ptr<GEOSContextHandle_HS, decltype(&GEOS_finish_r)>(context, GEOS_finish_r);
  }();
  return CONTEXT.get();
}

struct Destroy {
  void operator()(GEOSGeometry* geometry) const { GEOSGeom_destroy_r(Context(), geometry); }
};
using Geometry = std::unique_ptr<GEOSGeometry, Destroy>;

GEOSGeometry* MakeRing(const std::vector<Vec2d>& contour) {
  const auto count = static_cast<unsigned int>(contour.size() + 1);
  GEOSCoordSequence* points = GEOSCoordSeq_create_r(Context(), count, 2);
  for (unsigned int i = 0; i < count; ++i) {
    const Vec2d& point = contour[i % contour.size()];
    GEOSCoordSeq_setXY_r(Context(), points, i, point.x, point.y);
  }
  return GEOSGeom_createLinearRing_r(Context(), points);
}

/// Returns the polygon of an outer contour and its holes.
GEOSGeometry* MakePolygon(const Contours& contours) {
  std::vector<GEOSGeometry*> holes;
  for (std::size_t i = 1; i < contours.size(); ++i) holes.push_back(MakeRing(contours[i]));
  return GEOSGeom_createPolygon_r(Context(), MakeRing(contours.front()), holes.data(),
                                  static_cast<unsigned int>(holes.size()));
}

Geometry MakeMultiPolygon(const std::vector<Contours>& polygons) {
  std::vector<GEOSGeometry*> parts;
  for (const Contours& polygon : polygons) parts.push_back(MakePolygon(polygon));
  return Geometry(GEOSGeom_createCollection_r(Context(), GEOS_MULTIPOLYGON, parts.data(),
                                              static_cast<unsigned int>(parts.size())));
}

std::vector<Vec2d> PointsOf(const GEOSGeometry* ring) {
  const GEOSCoordSequence* sequence = GEOSGeom_getCoordSeq_r(Context(), ring);
  unsigned int count = 0;
  GEOSCoordSeq_getSize_r(Context(), sequence, &count);
  std::vector<Vec2d> points(count > 0 ? count - 1 : 0);
  for (unsigned int i = 0; i < points.size(); ++i) {
    GEOSCoordSeq_getXY_r(Context(), sequence, i, &points[i].x, &points[i].y);
  }
  return points;
}

/// Appends the polygons of a geometry of any type.
void AppendPolygons(const GEOSGeometry* geometry, std::vector<Contours>& polygons) {
  const int type = GEOSGeomTypeId_r(Context(), geometry);
  if (type == GEOS_POLYGON) {
    if (GEOSisEmpty_r(Context(), geometry) != 0) return;
    Contours contours = {PointsOf(GEOSGetExteriorRing_r(Context(), geometry))};
    for (int i = 0; i < GEOSGetNumInteriorRings_r(Context(), geometry); ++i) {
      contours.push_back(PointsOf(GEOSGetInteriorRingN_r(Context(), geometry, i)));
    }
    polygons.push_back(contours);
  } else if (type == GEOS_MULTIPOLYGON || type == GEOS_GEOMETRYCOLLECTION) {
    for (int i = 0; i < GEOSGetNumGeometries_r(Context(), geometry); ++i) {
      AppendPolygons(GEOSGetGeometryN_r(Context(), geometry, i), polygons);
    }
  }
}

Geometry Operate(Operation operation, const GEOSGeometry* a, const GEOSGeometry* b) {
  switch (operation) {
    case Operation::Difference:
      return Geometry(GEOSDifference_r(Context(), a, b));
    case Operation::Intersection:
      return Geometry(GEOSIntersection_r(Context(), a, b));
    case Operation::Xor:
      return Geometry(GEOSSymDifference_r(Context(), a, b));
    default:
      return Geometry(GEOSUnion_r(Context(), a, b));
  }
}

class GeosContender : public BooleanContender {
public:
  void Prepare(const BooleanWork& work) override {
    subject_ = MakeMultiPolygon(work.subject);
    clip_ = MakeMultiPolygon(work.clip);
  }
  bool Operate(Operation operation) override {
    result_.reset();
    result_ = bench::Operate(operation, subject_.get(), clip_.get());
    return result_ != nullptr;
  }
  bool UniteSubject() override {
    result_.reset(GEOSUnaryUnion_r(Context(), subject_.get()));
    return result_ != nullptr;
  }
  /// Eleven edges to a quarter of a circle lie 0.25 % inside of it.
  bool OffsetSubject(double distance) override {
    result_.reset(GEOSBuffer_r(Context(), subject_.get(), distance, 11));
    return result_ != nullptr;
  }
  BooleanResult Result() const override {
    std::vector<Contours> polygons;
    AppendPolygons(result_.get(), polygons);
    return Flatten(polygons);
  }

private:
  Geometry subject_, clip_, result_;
};

}  // namespace

std::unique_ptr<BooleanContender> MakeGeosContender() {
  return std::make_unique<GeosContender>();
}

}  // namespace shr::bench
