// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <cstdlib>

#include "bench/numerics/StatisticsPeers.h"

namespace bench {

const bool HAS_PEERS = false;

PeerStatistics DescribeByGsl(std::vector<double>& /*values*/) {
  std::abort();
}

std::pair<double, double> NeighboursByNanoflann(const std::vector<shr::Vec3d>& /*points*/) {
  std::abort();
}

}  // namespace bench
