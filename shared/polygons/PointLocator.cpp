// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/PointLocator.h"

#include <limits>
#include <vector>

#include "shared/polygons/ContourGrid.h"
#include "shared/polygons/FlatContours.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/PolygonMeasures.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"PointLocator";

unsigned int ToCount(std::span<const Vec2d> points) {
  if (points.size() > std::numeric_limits<unsigned int>::max()) {
    ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  }
  return static_cast<unsigned int>(points.size());
}

/// Returns the points that the counts ask for.
std::span<const Vec2d> PointsOf(const Vec2d* points, const unsigned int* counts,
                                std::size_t numContours) {
  return CheckedSpan(points, SumOfCounts(CheckedSpan(counts, numContours, UNIT)), UNIT);
}

}  // namespace

PointLocator::PointLocator() : PointLocator(std::span<const Vec2d>()) {}

PointLocator::PointLocator(std::span<const Vec2d> points, std::span<const unsigned int> counts) {
  CheckCounts(points, counts, UNIT);
  grid_ = std::make_shared<const ContourGrid>(MakeContourEdges(points, counts),
                                              ContourGrid::Lists::OF_ROWS);
}

PointLocator::PointLocator(std::span<const Vec2d> points) {
  const unsigned int count = ToCount(points);
  *this = PointLocator(points, std::span(&count, 1));
}

PointLocator::PointLocator(const Vec2d* points, std::size_t count)
    : PointLocator(CheckedSpan(points, count, UNIT)) {}

PointLocator::PointLocator(const Vec2d* points, const unsigned int* counts, std::size_t numContours)
    : PointLocator(PointsOf(points, counts, numContours), std::span(counts, numContours)) {}

PointLocator::PointLocator(const GPolygon& polygon) {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  polygon.GetPolyPolygon(points, counts, false);
  *this = PointLocator(points, counts);
}

PointLocator::PointLocator(const GPolygon2d& polygons)
    : PointLocator(polygons.GetNumContours() > 1 ? RegionOf(polygons) : GPolygon(polygons)) {}

bool PointLocator::Contains(const Vec2d& point) const {
  return grid_->IsInside(point);
}

}  // namespace shr
