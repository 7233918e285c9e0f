// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The model of polygons with holes as plain values, to hand them in and out of `GPolygon2d`, and
/// the checks of its validity.
///
/// The types are built like the polygon models of Boost.Geometry, closed and clockwise as those
/// are by default; this header does not need Boost. With shared/polygons/BoostGeometry.h its
/// algorithms take them as they are, and `CopyMultiPolygon` copies from and to its own models.
///
///     MultiPolygon2d model;
///     country.GetMultiPolygon(model);
///     model.erase(model.begin());
///     country = GPolygon2d(model);
///
/// Threads: plain values.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "shared/Export.h"
#include "shared/geometry/Vec2.h"

struct tagPOINT;  // POINT of shared/platform/WindowsTypes.h

namespace shr {

/// A ring: its points in order, the first one repeated at the end, clockwise in a y-up frame.
struct Ring2d : std::vector<Vec2d> {
  using std::vector<Vec2d>::vector;
};

/// An outer ring and the rings of its holes, which run counter-clockwise.
struct Polygon2d {
  Ring2d& outer() { return outerRing; }
  const Ring2d& outer() const { return outerRing; }
  std::vector<Ring2d>& inners() { return innerRings; }
  const std::vector<Ring2d>& inners() const { return innerRings; }

  Ring2d outerRing;
  std::vector<Ring2d> innerRings;
};

/// Polygons side by side.
struct MultiPolygon2d : std::vector<Polygon2d> {
  using std::vector<Polygon2d>::vector;
};

/// Replaces `target` by a copy of `source`, point by point. Either may be one of the types above, a
/// model of Boost.Geometry, or anything else that is a vector of polygons with the members `outer`
/// and `inners`, whose rings are vectors of points that convert to each other.
template <class Source, class Target>
void CopyMultiPolygon(const Source& source, Target& target) {
  target.clear();
  target.resize(source.size());
  for (std::size_t i = 0; i < source.size(); ++i) {
    target[i].outer().assign(source[i].outer().begin(), source[i].outer().end());
    target[i].inners().resize(source[i].inners().size());
    for (std::size_t j = 0; j < source[i].inners().size(); ++j) {
      const auto& inner = source[i].inners()[j];
      target[i].inners()[j].assign(inner.begin(), inner.end());
    }
  }
}

/// Returns true for a ring of at least two points whose first and last are exactly equal and whose
/// `PolygonArea` is negative, as it is when the ring runs clockwise.
SHARED_API bool IsValidRing(std::span<const Vec2d> ring);
/// Returns true when the outer ring and every inner ring are valid. Inner rings are held to the
/// same orientation as the outer one, although polygons are stored with holes that run the other
/// way: a polygon with holes as `GPolygon2d` stores it is not valid by this check.
SHARED_API bool IsValidPolygon(const Polygon2d& polygon);
/// Returns true when every polygon is valid; no polygons are valid.
SHARED_API bool IsValidMultiPolygon(const MultiPolygon2d& polygons);

/// Copies a ring to `points`, without its last point when `closed` is false and it has more than
/// two, and returns the number of points; a null `points` only counts.
SHARED_API std::size_t GetLegacyRingPoints(std::span<const Vec2d> ring, Vec2d* points, bool closed);
/// The same with coordinates rounded to the nearest integer that `LONG` holds, halves away from 0;
/// NaN becomes 0.
SHARED_API std::size_t GetLegacyRingPoints(std::span<const Vec2d> ring, tagPOINT* points,
                                           bool closed);

/// Store the points of all rings, polygon by polygon, the outer ring before its holes, and return
/// their number; as `GetLegacyRingPoints`.
SHARED_API std::size_t GetLegacyMultiPolygonPoints(const MultiPolygon2d& polygons, Vec2d* points,
                                                   bool closed);
SHARED_API std::size_t GetLegacyMultiPolygonPoints(const MultiPolygon2d& polygons, tagPOINT* points,
                                                   bool closed);

/// Store the number of points that `GetLegacyMultiPolygonPoints` stores for each ring, and return
/// the number of rings; a null `counts` only counts.
SHARED_API std::size_t GetLegacyMultiPolygonCounts(const MultiPolygon2d& polygons, int* counts,
                                                   bool closed);
SHARED_API std::size_t GetLegacyMultiPolygonUINTCounts(const MultiPolygon2d& polygons,
                                                       unsigned int* counts, bool closed);

/// Store all rings as one closed contour: after each further ring the contour returns to the very
/// first point, so that its signed area is the sum of the rings' areas and the bridges between
/// rings have no width. Return the number of points; a null `points` only counts.
SHARED_API std::size_t GetLegacyMultiPolygonAsSinglePolygon(const MultiPolygon2d& polygons,
                                                            Vec2d* points);
SHARED_API std::size_t GetLegacyMultiPolygonAsSinglePolygon(const MultiPolygon2d& polygons,
                                                            tagPOINT* points);

}  // namespace shr
