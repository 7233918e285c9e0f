// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `PointLocator`: many points against the same contours. It answers as `PointInPolygon` of
/// shared/polygons/FlatPolygon.h does, to the bit, from an index that is built once. For a handful
/// of points the function alone is faster.
///
///     const PointLocator country(points, counts);
///     for (const Vec2d& city : cities) total += country.Contains(city);
///
/// Threads: const calls may run together.

#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"

namespace shr {

class ContourGrid;
class GPolygon;
class GPolygon2d;

/// An index over contours in flat form, of which it keeps a copy; copies of it share that. Contours
/// inside contours are holes.
///
/// Degenerate: contours with a coordinate that is no number, or without an extent, are searched
/// edge by edge. Errors: a null pointer with a count above 0 and counts that exceed the points of
/// a span raise an internal error of unit "PointLocator". Cost: O(n) to build for edges that are
/// short beside the whole, with a few dozen bytes an edge and some kilobytes at least.
class SHARED_API PointLocator {
public:
  /// Contains nothing.
  PointLocator();
  PointLocator(const Vec2d* points, std::size_t count);
  explicit PointLocator(std::span<const Vec2d> points);
  PointLocator(const Vec2d* points, const unsigned int* counts, std::size_t numContours);
  PointLocator(std::span<const Vec2d> points, std::span<const unsigned int> counts);
  /// The contours of the polygon.
  explicit PointLocator(const GPolygon& polygon);
  /// What is inside at least one of the polygons, as told at `GPolygon2d::Union`: several polygons
  /// are first united, so that those that overlap count once and a border between two of them is
  /// none. Where rings cross, the even-odd rule differs from the winding numbers of
  /// `GPolygon2d::PointInside`; and that leaves out every point on a ring.
  explicit PointLocator(const GPolygon2d& polygons);

  /// Returns what `PointInPolygon` returns for the contours. Cost: a few lookups for most points,
  /// for one near an edge a test of the edges near it and beside it at its height.
  bool Contains(const Vec2d& point) const;

private:
  std::shared_ptr<const ContourGrid> grid_;
};

}  // namespace shr
