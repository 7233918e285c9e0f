// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The nearest neighbour in the plane of each of many points. Not installed; programs take
/// shared/numerics/statistics/SpatialStatistics.h.
///
///     const NeighbourDistances nearest = FindNearestNeighbours(points);
///     double first = nearest.distances[0];   // of points[0], which may have been another before
///
/// Threads: no state; a call runs on several threads by itself.

#pragma once

#include <vector>

#include "shared/Export.h"
#include "shared/geometry/Vec3.h"

namespace shr {

struct NeighbourDistances {
  std::vector<double> distances;    ///< in the plane of x and y
  std::vector<double> differences;  ///< of z, magnitudes
};

/// Returns for each point the distance of the nearest other one, the square root of the smallest
/// dx dx + dy dy as doubles give it, and the smallest |dz| of those at that distance. The points
/// are reordered; element i belongs to `points[i]` as they are afterwards.
///
/// Degenerate: a point whose square distances all overflow or are NaN, or that is alone, has the
/// square root of the largest double as its distance and NaN as its difference. A difference that
/// is NaN counts above all others. Laws: the result does not depend on the number of threads.
/// Cost: O(n log n) at most, O(n) for points spread evenly; O(n) memory.
SHARED_API NeighbourDistances FindNearestNeighbours(std::vector<Vec3d>& points);

}  // namespace shr
