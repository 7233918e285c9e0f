// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Clipping of polygons and polylines to rectangles and polygons, as drawing code calls it.
///
/// Polygons come in as `GPolygon`, `GPolygon2d` or in flat form and go out the same way; the class
/// decides which algorithm runs. A `GPolygon` is clipped to a rectangle contour by contour in one
/// pass, which is fast and fit for filling, but leaves parts of no width along the rectangle; a
/// `GPolygon2d` is taken apart into separate polygons.
///
///     std::vector<Vec2d> outPoints;
///     std::vector<unsigned int> outCounts;
///     GClipPolyPolygonToRect(points, counts, numContours, view, outPoints, outCounts, true);
///
/// Threads: no state.

#pragma once

#include <cstddef>
#include <vector>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"

namespace shr {

class GDashLineGenerator;
class GLineClipPolygon;
class GPolygon;
class GPolygon2d;

/// Clip a polygon to a box, whose corners may be in any order, and replace `result`, which may be
/// the polygon itself. A `GPolygon` is clipped contour by contour by `CPolyClip`
/// (shared/polygons/lines/PolyClip.h): contours keep their place in the order, lose their hole
/// flags, and are dropped when fewer than two points are left. A `GPolygon2d` is clipped by its own
/// `Intersection`. Cost: O(n); for `GPolygon2d` as told there.
SHARED_API void GClipGPolygonToRect(const GPolygon& polygon, const Box2d& box, GPolygon& result);
SHARED_API void GClipGPolygonToRect(const GPolygon2d& polygon, const Box2d& box,
                                    GPolygon2d& result);
/// The same, and store the flat form; with `closed` each ring of more than two points repeats its
/// first point at its end.
SHARED_API void GClipGPolygonToRect(const GPolygon& polygon, const Box2d& box,
                                    std::vector<Vec2d>& points, std::vector<unsigned int>& counts,
                                    bool closed);
SHARED_API void GClipGPolygonToRect(const GPolygon2d& polygon, const Box2d& box,
                                    std::vector<Vec2d>& points, std::vector<unsigned int>& counts,
                                    bool closed);

/// Clip contours in flat form to a box, as a `GPolygon` or as a `GPolygon2d`. Errors: a null
/// pointer with a count above 0 raises an internal error of unit "ClipUtil". The output may not be
/// where the input is.
SHARED_API void GClipPolyPolygonToRect(const Vec2d* points, const unsigned int* counts,
                                       std::size_t numContours, const Box2d& box,
                                       std::vector<Vec2d>& outPoints,
                                       std::vector<unsigned int>& outCounts, bool closed);
SHARED_API void GClipPolyPolygonToRectUsingGPolygon2d(
    const Vec2d* points, const unsigned int* counts, std::size_t numContours, const Box2d& box,
    std::vector<Vec2d>& outPoints, std::vector<unsigned int>& outCounts, bool closed);

/// Clip a polygon to another one and replace `result`, which may be either. When `clip` is a
/// rectangle (its `IsRectangle` tells), this is `GClipGPolygonToRect`; else the intersection.
SHARED_API void GClipGPolygonToGPolygon(const GPolygon& subject, const GPolygon& clip,
                                        GPolygon& result);
SHARED_API void GClipGPolygonToGPolygon(const GPolygon2d& subject, const GPolygon2d& clip,
                                        GPolygon2d& result);
/// The same, and store the flat form.
SHARED_API void GClipGPolygonToGPolygon(const GPolygon& subject, const GPolygon& clip,
                                        std::vector<Vec2d>& points,
                                        std::vector<unsigned int>& counts, bool closed);
SHARED_API void GClipGPolygonToGPolygon(const GPolygon2d& subject, const GPolygon2d& clip,
                                        std::vector<Vec2d>& points,
                                        std::vector<unsigned int>& counts, bool closed);

/// Clip contours in flat form, taken as a polygon of the clip polygon's class. Errors: as
/// `GClipPolyPolygonToRect`.
SHARED_API void GClipPolyPolygonToGPolygon(const Vec2d* points, const unsigned int* counts,
                                           std::size_t numContours, const GPolygon& clip,
                                           std::vector<Vec2d>& outPoints,
                                           std::vector<unsigned int>& outCounts, bool closed);
SHARED_API void GClipPolyPolygonToGPolygon(const Vec2d* points, const unsigned int* counts,
                                           std::size_t numContours, const GPolygon2d& clip,
                                           std::vector<Vec2d>& outPoints,
                                           std::vector<unsigned int>& outCounts, bool closed);

/// Clip open polylines to a box, whose corners may be in any order, and append the visible pieces,
/// the boundary included, in order. A box without an area clips nothing; see `CLineClip` in
/// shared/polygons/lines/LineClip.h. Errors of this and what follows: null `points` or `counts` and
/// no polylines at all raise an internal error of unit "ClipUtil". The output may not be where the
/// input is. Cost: O(points).
SHARED_API void GClipPolylinesToRect(const Vec2d* points, const unsigned int* counts,
                                     std::size_t numPolylines, const Box2d& box,
                                     std::vector<Vec2d>& outPoints,
                                     std::vector<unsigned int>& outCounts);

/// Clip open polylines to a polygon and append the pieces inside: to the rectangle when `clip` is
/// one (its `IsRectangle` tells), else by `GLineClipPolygon`
/// (shared/polygons/lines/LineClipPolygon.h), which a `GPolygon` is first made into. Whoever clips
/// to the same polygon again keeps that.
SHARED_API void GClipPolylinesToPolygon(const Vec2d* points, const unsigned int* counts,
                                        std::size_t numPolylines, const GLineClipPolygon& clip,
                                        std::vector<Vec2d>& outPoints,
                                        std::vector<unsigned int>& outCounts);
SHARED_API void GClipPolylinesToPolygon(const Vec2d* points, const unsigned int* counts,
                                        std::size_t numPolylines, const GPolygon& clip,
                                        std::vector<Vec2d>& outPoints,
                                        std::vector<unsigned int>& outCounts);

/// The same for the dashes of the polylines: the generator cuts each into straight parts, of which
/// each is clipped on its own and is two points in the output. The generator's phase goes on from
/// polyline to polyline where those meet.
SHARED_API void GClipDashedPolylinesToPolygon(const Vec2d* points, const unsigned int* counts,
                                              std::size_t numPolylines, GDashLineGenerator& dashes,
                                              const GLineClipPolygon& clip,
                                              std::vector<Vec2d>& outPoints,
                                              std::vector<unsigned int>& outCounts);
SHARED_API void GClipDashedPolylinesToPolygon(const Vec2d* points, const unsigned int* counts,
                                              std::size_t numPolylines, GDashLineGenerator& dashes,
                                              const GPolygon& clip, std::vector<Vec2d>& outPoints,
                                              std::vector<unsigned int>& outCounts);

}  // namespace shr
