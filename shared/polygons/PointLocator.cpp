// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/PointLocator.h"

#include <limits>

#include "shared/polygons/ContourGrid.h"
#include "shared/polygons/FlatContours.h"

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

bool PointLocator::Contains(const Vec2d& point) const {
  return grid_->IsInside(point);
}

}  // namespace shr
