// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CSpatialStatistics`: how far scattered points are from their nearest neighbours, how z changes
/// to there, and whether the points are clustered or keep apart.
///
///     const std::vector<Vec3d> samples{{0, 0, 7}, {3, 4, 8}, {3, 5, 6}};
///     CSpatialStatistics spatial;
///     Load(spatial, samples.begin(), samples.end());
///     double nearest = spatial.distances.minimum;   // 1
///     double ratio = spatial.neighbourRatio;        // below 1: clustered
///
/// Threads: plain values; a load runs on several threads by itself.

#pragma once

#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "shared/Export.h"
#include "shared/geometry/Vec3.h"
#include "shared/numerics/statistics/UnivariateStatistics.h"

namespace shr {

/// What `Load` finds out about n points.
struct SHARED_API CSpatialStatistics {
  static constexpr double NONE = std::numeric_limits<double>::quiet_NaN();

  /// Everything becomes as in a new object.
  void Clear() { *this = CSpatialStatistics(); }

  std::uint64_t count = 0;             ///< n
  CUnivariateStatistics distances;     ///< of each point to its nearest neighbour in x and y
  CUnivariateStatistics zDifferences;  ///< of each point to that neighbour, magnitudes

  // NaN unless the area of the points, (maximum x - minimum x) (maximum y - minimum y), exceeds
  // 1.1754943508222875e-38.
  double density = NONE;  ///< n / area
  /// 2 sqrt(density) mean distance: about 1 for random points, 0 for clusters of equal ones, up to
  /// 2.149 for a triangular lattice. Source: P. J. Clark and F. C. Evans, "Distance to nearest
  /// neighbor as a measure of spatial relationships in populations", 1954.
  double neighbourRatio = NONE;
  /// 2 pi density n mean square distance; for random points it follows chi-square with 2 n degrees
  /// of freedom. Source: J. G. Skellam, "Studies in statistical ecology", 1952.
  double skellam = NONE;
};

/// Computes everything from `points`: x and y are coordinates of the plane, z what was measured.
///
/// A distance is the square root of the smallest dx dx + dy dy to another point; of several
/// neighbours at that distance the one with the smallest |dz| counts. Degenerate: a point that is
/// alone or not finite has no neighbour; its distance is then that with which a search begins, the
/// square root of the largest double, and its difference NaN. z may be anything; a difference that
/// is NaN counts above all others. Laws: the result depends neither on the order of the points (but
/// for the last bit of sums) nor on the number of threads. Errors: those of `Load` of
/// `CUnivariateStatistics`; `std::bad_alloc`. Cost: O(n log n) for any points, O(n) for points
/// spread evenly; the memory of about three copies of the points.
SHARED_API void Load(CSpatialStatistics& statistics, std::vector<Vec3d> points);

/// The same for a range of what has members x, y and z: `Vec3d`, `Point3<double>`.
template <class Iterator>
void Load(CSpatialStatistics& statistics, Iterator first, Iterator last) {
  std::vector<Vec3d> points;
  for (; first != last; ++first) points.emplace_back(first->x, first->y, first->z);
  Load(statistics, std::move(points));
}

}  // namespace shr
