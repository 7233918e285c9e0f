// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Area and containment of polygons in flat form: an array of points and, for several contours, an
/// array of counts. For polygons with holes and for clipping see shared/polygons/GPolygon2d.h.
///
///     const Vec2d square[] = {{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}};
///     double area = PolygonArea(square, 4);                         // 1
///     bool inside = PointInPolygon(Vec2d(0.0, 0.5), square, 4);     // true
///
/// Threads: no state.

#pragma once

#include <cstddef>
#include <span>

#include "shared/Export.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// Return the signed area by the trapezoid sum, positive for counter-clockwise order in a y-up
/// frame. The contour need not be closed; the areas of several contours are added. Degenerate: 0
/// for fewer than three points. Cost: O(n). Errors: a null pointer with a count above 0 and counts
/// that exceed the points of a span raise an internal error of unit "FlatPolygon".
SHARED_API double PolygonArea(const Vec2d* points, std::size_t count);
SHARED_API double PolygonArea(std::span<const Vec2d> points);
SHARED_API double PolygonArea(const Vec2d* points, const unsigned int* counts,
                              std::size_t numContours);
SHARED_API double PolygonArea(std::span<const Vec2d> points, std::span<const unsigned int> counts);

/// Return true when the point is inside by the even-odd rule. A point on a left or bottom edge of a
/// rectangle is inside, one on a right or top edge is outside, so that of rectangles side by side
/// exactly one holds it. The test has no tolerance. The contour need not be closed; contours inside
/// contours are holes. Cost: O(n). Errors: as `PolygonArea`.
SHARED_API bool PointInPolygon(const Vec2d& point, const Vec2d* points, std::size_t count);
SHARED_API bool PointInPolygon(const Vec2d& point, std::span<const Vec2d> points);
SHARED_API bool PointInPolygon(const Vec2d& point, const Vec2d* points, const unsigned int* counts,
                               std::size_t numContours);
SHARED_API bool PointInPolygon(const Vec2d& point, std::span<const Vec2d> points,
                               std::span<const unsigned int> counts);

}  // namespace shr
