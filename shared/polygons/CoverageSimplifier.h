// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Fewer points for a coverage: polygons side by side, as the countries of a map, whose common
/// borders stay common. Simplified one by one, neighbours would overlap here and gape there.
///
///     std::vector<GPolygon2d> countries = ReadCountries();
///     const double pixel = 360.0 / 400.0;  // degrees
///     countries = SimplifyCoverage(countries, pixel * pixel / 2.0);
///
/// Threads: no state.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "shared/Export.h"
#include "shared/polygons/GPolygon2d.h"

namespace shr {

/// Return as many objects as there are cells, in their order, with all polygons and holes of each,
/// made of some of their points.
///
/// Points go in the order of the triangle with the points beside them on the border, the smallest
/// first; when one has gone the triangles of its neighbours grow, and none counts less than what
/// has gone before it. `tolerance` is the area of the largest triangle that goes, in square units
/// of the coordinates. 0 takes away only points that lie exactly on the line through those beside
/// them. The other form stops as soon as the results hold at most `mostPoints` points, as
/// `GetTotalVertexCount` counts them, or when no more can go.
///
/// What is common stays common: a point between the same two points in all rings that hold it goes
/// from all of them or from none, so that a border of two cells keeps the same bits in both. All
/// other points that rings share are nodes and stay: where three borders meet, where a common
/// border begins or ends, where rings touch; also the tip of a spike and the points beside it.
/// Common borders must hold the same points on both sides; a point on the middle of somebody else's
/// edge is no node. The order of the cells makes no difference to what stays.
///
/// Topology: where the borders of the cells meet only in their points, so do those of the results.
/// A point goes only when the triangle that this cuts off, its border included, holds no other
/// point that is still there (decided exactly; a point between its neighbours on their line may go
/// anyway) and its neighbours have no edge already. Then no edge can cross the new one, so that
/// nothing crosses, touches or turns over, and each ring keeps three points of a true triangle.
/// Borders that crossed before may do so afterwards.
///
/// Islands: a polygon without holes that shares no point with another ring and whose area is below
/// `smallestIsland` is left out before all else, unless it is the largest of its cell; 0 keeps all.
///
/// Degenerate: points that repeat the one before are taken for one. Rings of less than three
/// different points, and those with a coordinate that is infinite or NaN, stay as they are, and
/// their points stay in other rings, too. Errors: "Invalid parameter passed to subroutine or
/// function" for a tolerance or island size that is negative or NaN; infinity is allowed. Cost:
/// O(n log n) for n points unless many of them lie in long thin triangles; a few hundred bytes a
/// point. Source: M. Visvalingam and J. D. Whyatt, "Line Generalisation by Repeated Elimination of
/// Points", 1993.
SHARED_API std::vector<GPolygon2d> SimplifyCoverage(std::span<const GPolygon2d> cells,
                                                    double tolerance, double smallestIsland = 0.0);
SHARED_API std::vector<GPolygon2d> SimplifyCoverageToCount(std::span<const GPolygon2d> cells,
                                                           std::size_t mostPoints,
                                                           double smallestIsland = 0.0);

}  // namespace shr
