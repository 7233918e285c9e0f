// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <geos/geom/Coordinate.h>
#include <geos/geom/CoordinateArraySequence.h>
#include <geos/geom/Geometry.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LineString.h>
#include <geos/geom/LinearRing.h>
#include <geos/geom/MultiLineString.h>
#include <geos/geom/Polygon.h>

#include <utility>

#include "bench/polygons/LineCutContender.h"

namespace shr::bench {
namespace {

namespace gg = geos::geom;

std::unique_ptr<gg::CoordinateSequence> ToSequence(const Points& points, bool isClosed) {
  std::vector<gg::Coordinate> coordinates;
  for (const Vec2d& point : points) coordinates.emplace_back(point.x, point.y);
  if (isClosed) coordinates.push_back(coordinates.front());
  return gg::CoordinateArraySequence(std::move(coordinates), 2).clone();
}

class GeosLineCutter : public LineCutter {
public:
  void Prepare(const std::vector<Points>& lines, const Points& polygon) override {
    const auto& factory = *gg::GeometryFactory::getDefaultInstance();
    std::vector<std::unique_ptr<gg::LineString>> strings;
    for (const Points& line : lines) {
      strings.push_back(factory.createLineString(ToSequence(line, false)));
    }
    lines_ = factory.createMultiLineString(std::move(strings));
    polygon_ = factory.createPolygon(factory.createLinearRing(ToSequence(polygon, true)));
  }
  void Cut() override {
    inside_ = lines_->intersection(polygon_.get());
    outside_ = lines_->difference(polygon_.get());
  }
  LineLengths Lengths() const override { return {inside_->getLength(), outside_->getLength()}; }

private:
  std::unique_ptr<gg::Geometry> lines_, polygon_, inside_, outside_;
};

}  // namespace

std::unique_ptr<LineCutter> MakeGeosLineCutter() {
  return std::make_unique<GeosLineCutter>();
}

}  // namespace shr::bench
