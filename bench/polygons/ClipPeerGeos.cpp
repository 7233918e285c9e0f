// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "bench/polygons/ClipPeerGeos.h"

#include <geos/algorithm/locate/IndexedPointInAreaLocator.h>
#include <geos/geom/Coordinate.h>
#include <geos/geom/CoordinateArraySequence.h>
#include <geos/geom/Geometry.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LineString.h>
#include <geos/geom/LinearRing.h>
#include <geos/geom/Location.h>
#include <geos/geom/Polygon.h>
#include <geos/geom/prep/PreparedGeometry.h>
#include <geos/geom/prep/PreparedGeometryFactory.h>
#include <geos/operation/intersection/Rectangle.h>
#include <geos/operation/intersection/RectangleIntersection.h>
#include <geos/operation/valid/MakeValid.h>
#include <geos/simplify/TopologyPreservingSimplifier.h>

#include <utility>

namespace shr::bench {
namespace {

namespace gg = geos::geom;

gg::CoordinateArraySequence MakeSequence(std::span<const Vec2d> points, bool isClosed) {
  std::vector<gg::Coordinate> coordinates;
  coordinates.reserve(points.size() + 1);
  for (const Vec2d& point : points) coordinates.emplace_back(point.x, point.y);
  if (isClosed) coordinates.push_back(coordinates.front());
  return gg::CoordinateArraySequence(std::move(coordinates), 2);
}

std::unique_ptr<gg::Geometry> MakeGeometry(std::span<const Vec2d> points, GeosShape::Kind kind) {
  const auto& factory = *gg::GeometryFactory::getDefaultInstance();
  if (kind == GeosShape::Kind::LINE) {
    return factory.createLineString(MakeSequence(points, false).clone());
  }
  return factory.createPolygon(factory.createLinearRing(MakeSequence(points, true).clone()));
}

std::unique_ptr<gg::Geometry> Clip(const gg::Geometry& geometry, const Box2d& box) {
  const geos::operation::intersection::Rectangle rectangle(box.xMin(), box.yMin(), box.xMax(),
                                                           box.yMax());
  return geos::operation::intersection::RectangleIntersection::clip(geometry, rectangle);
}

}  // namespace

struct GeosShape::Geometry {
  std::unique_ptr<gg::Geometry> shape;
};

std::unique_ptr<GeosShape> GeosShape::Make(std::span<const Vec2d> points, Kind kind) {
  return std::make_unique<GeosShape>(points, kind);
}

GeosShape::GeosShape(std::span<const Vec2d> points, Kind kind)
    : geometry_(std::make_unique<Geometry>()) {
  geometry_->shape = MakeGeometry(points, kind);
}

GeosShape::~GeosShape() = default;

std::size_t GeosShape::ClipToBox(const Box2d& box) const {
  return Clip(*geometry_->shape, box)->getNumPoints();
}

double GeosShape::MeasureInBox(const Box2d& box) const {
  const auto clipped = Clip(*geometry_->shape, box);
  return geometry_->shape->getDimension() == 1 ? clipped->getLength() : clipped->getArea();
}

GeosShape::Inside GeosShape::ClipSegments(std::span<const Vec2d> ends) const {
  const auto prepared = gg::prep::PreparedGeometryFactory::prepare(geometry_->shape.get());
  Inside inside;
  for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
    const auto segment = MakeGeometry(ends.subspan(i, 2), Kind::LINE);
    if (!prepared->intersects(segment.get())) continue;
    if (prepared->containsProperly(segment.get())) {
      inside.length += segment->getLength();
      ++inside.parts;
      continue;
    }
    const auto common = geometry_->shape->intersection(segment.get());
    inside.length += common->getLength();
    inside.parts += common->getNumGeometries();
  }
  return inside;
}

std::size_t GeosShape::Simplify(double distance) const {
  return geos::simplify::TopologyPreservingSimplifier::simplify(geometry_->shape.get(), distance)
      ->getNumPoints();
}

bool GeosShape::IsValid() const {
  return geometry_->shape->isValid();
}

double GeosShape::MakeValid() const {
  return geos::operation::valid::MakeValid().build(geometry_->shape.get())->getArea();
}

std::size_t GeosShape::CountInside(std::span<const Vec2d> points) const {
  geos::algorithm::locate::IndexedPointInAreaLocator locator(*geometry_->shape);
  std::size_t count = 0;
  for (const Vec2d& point : points) {
    const gg::Coordinate coordinate(point.x, point.y);
    count += locator.locate(&coordinate) == gg::Location::INTERIOR;
  }
  return count;
}

}  // namespace shr::bench
