// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The region that a polygon of either class covers, as contours that do not cross, and what is
/// measured on it. Not installed.

#pragma once

namespace shr {

class GPolygon;
class GPolygon2d;

/// Returns the points inside an odd number of the contours: outer contours clockwise in a y-up
/// frame, holes counter-clockwise, no two that cross. A polygon with an infinite or NaN coordinate
/// covers nothing.
GPolygon RegionOf(const GPolygon& polygon);
/// Returns the points inside at least one of the polygons, each taken as the contours above.
GPolygon RegionOf(const GPolygon2d& polygons);

/// Returns true when no coordinate is infinite or NaN.
bool IsFinite(const GPolygon& polygon);

}  // namespace shr
