// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the benchmark of statistics asks of other libraries. StatisticsPeersLinux.cpp has them,
/// StatisticsPeersAbsent.cpp none.
///
///     if (bench::HAS_PEERS) sums = bench::NeighboursByNanoflann(points);

#pragma once

#include <utility>
#include <vector>

#include "shared/geometry/Vec3.h"

namespace bench {

extern const bool HAS_PEERS;

struct PeerStatistics {
  double mean, variance, skewness, kurtosis, deviation;
  double minimum, maximum, median;
  double percentile01, percentile05, percentile10, percentile25;
  double percentile75, percentile90, percentile95, percentile99;
};
/// Sorts the values and describes them by GSL.
PeerStatistics DescribeByGsl(std::vector<double>& values);

/// Returns the sums of the distances to the nearest neighbours and of |dz|.
std::pair<double, double> NeighboursByNanoflann(const std::vector<shr::Vec3d>& points);

}  // namespace bench
