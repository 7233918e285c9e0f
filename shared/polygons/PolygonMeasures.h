// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The region that a polygon of either class covers, as contours that do not cross, and what is
/// measured on it. Not installed.

#pragma once

#include "shared/geometry/Box2.h"

namespace shr {

class GPolygon;
class GPolygon2d;
struct MultiPolygon2d;

/// Returns the points inside an odd number of the contours: outer contours clockwise in a y-up
/// frame, holes counter-clockwise, no two that cross. A polygon with an infinite or NaN coordinate
/// covers nothing.
GPolygon RegionOf(const GPolygon& polygon);
/// Returns the points inside at least one of the polygons, each taken as the contours above.
GPolygon RegionOf(const GPolygon2d& polygons);

/// Returns true when a difference of polygons within two boxes is nothing or slivers that rounding
/// leaves behind: each polygon of it is, on average, no wider than operations of the clipper may
/// have moved edges apart (4 `GPC_MOST_DRIFT` times the snap distance, see shared/polygons/Gpc.h).
bool HasOnlySlivers(const MultiPolygon2d& difference, const Box2d& a, const Box2d& b);

/// Returns true when no coordinate is infinite or NaN.
bool IsFinite(const GPolygon& polygon);

}  // namespace shr
