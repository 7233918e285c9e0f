// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Area, perimeter and containment of polygons in flat form: an array of points and, for several
/// contours, an array of counts. For polygons with holes and for clipping see
/// shared/polygons/GPolygon2d.h.
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

struct tagPOINT;  // POINT of shared/platform/WindowsTypes.h

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

/// Return the length of the contour, the way from its last point to its first included; the lengths
/// of several contours are added. Degenerate: 0 for fewer than two points. Cost, errors: as
/// `PolygonArea`.
SHARED_API double PolygonPerimeter(const Vec2d* points, std::size_t count);
SHARED_API double PolygonPerimeter(std::span<const Vec2d> points);
SHARED_API double PolygonPerimeter(const Vec2d* points, const unsigned int* counts,
                                   std::size_t numContours);
SHARED_API double PolygonPerimeter(std::span<const Vec2d> points,
                                   std::span<const unsigned int> counts);

/// Return the area inside by the even-odd rule, cut into triangles that do not overlap: the sum of
/// their areas. Other than `PolygonArea` it is never negative, and right for contours that cross
/// themselves or each other and for holes that run either way. Cost: a boolean operation of
/// shared/polygons/Gpc.h. Errors: an internal error of unit "GPolygon" where `PolygonArea` raises
/// one of "FlatPolygon", and those of that operation.
SHARED_API double TriangulatedPolygonArea(const Vec2d* points, std::size_t count);
SHARED_API double TriangulatedPolygonArea(std::span<const Vec2d> points);
SHARED_API double TriangulatedPolygonArea(const Vec2d* points, const unsigned int* counts,
                                          std::size_t numContours);
SHARED_API double TriangulatedPolygonArea(std::span<const Vec2d> points,
                                          std::span<const unsigned int> counts);

/// Return true when the point is inside by the even-odd rule. A point on a left or bottom edge of a
/// rectangle is inside, one on a right or top edge is outside. The test is exact, without tolerance
/// or rounding: of two polygons on both sides of a common edge, which may run either way, exactly
/// one holds a point on the edge or beside it. The contour need not be closed; contours inside
/// contours are holes. An edge with an infinite or NaN coordinate is no border. Cost: O(n).
/// Errors: as `PolygonArea`.
SHARED_API bool PointInPolygon(const Vec2d& point, const Vec2d* points, std::size_t count);
SHARED_API bool PointInPolygon(const Vec2d& point, std::span<const Vec2d> points);
SHARED_API bool PointInPolygon(const Vec2d& point, const Vec2d* points, const unsigned int* counts,
                               std::size_t numContours);
SHARED_API bool PointInPolygon(const Vec2d& point, std::span<const Vec2d> points,
                               std::span<const unsigned int> counts);
/// The same for points of the operating system, whose counts are signed. Negative counts raise the
/// internal error too.
SHARED_API bool PointInPolygon(const tagPOINT& point, const tagPOINT* points, std::size_t count);
SHARED_API bool PointInPolygon(const tagPOINT& point, const tagPOINT* points, const long* counts,
                               std::size_t numContours);

}  // namespace shr
