// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <gsl/gsl_sort.h>
#include <gsl/gsl_statistics.h>

#include <cmath>
#include <nanoflann.hpp>

#include "bench/numerics/StatisticsPeers.h"

namespace bench {
namespace {

/// The points as nanoflann reads them.
struct Cloud {
  const std::vector<shr::Vec3d>& points;

  std::size_t kdtree_get_point_count() const { return points.size(); }
  double kdtree_get_pt(std::size_t index, std::size_t dimension) const {
    return dimension == 0 ? points[index].x : points[index].y;
  }
  template <class Box>
  bool kdtree_get_bbox(Box& /*box*/) const {
    return false;
  }
};

using Tree = nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, Cloud>, Cloud,
                                                 2, std::size_t>;

}  // namespace

const bool HAS_PEERS = true;

PeerStatistics DescribeByGsl(std::vector<double>& values) {
  const double* const data = values.data();
  const std::size_t n = values.size();
  PeerStatistics result;
  result.mean = gsl_stats_mean(data, 1, n);
  result.variance = gsl_stats_variance_m(data, 1, n, result.mean);
  const double deviation = std::sqrt(result.variance);
  result.skewness = gsl_stats_skew_m_sd(data, 1, n, result.mean, deviation);
  result.kurtosis = gsl_stats_kurtosis_m_sd(data, 1, n, result.mean, deviation);
  gsl_stats_minmax(&result.minimum, &result.maximum, data, 1, n);
  gsl_sort(values.data(), 1, n);
  result.median = gsl_stats_median_from_sorted_data(data, 1, n);
  result.deviation = gsl_stats_absdev_m(data, 1, n, result.median);
  const auto at = [&](std::size_t percent) { return data[(n - 1) * percent / 100]; };
  result.percentile01 = at(1);
  result.percentile05 = at(5);
  result.percentile10 = at(10);
  result.percentile25 = at(25);
  result.percentile75 = at(75);
  result.percentile90 = at(90);
  result.percentile95 = at(95);
  result.percentile99 = at(99);
  return result;
}

std::pair<double, double> NeighboursByNanoflann(const std::vector<shr::Vec3d>& points) {
  const Cloud cloud{points};
  const Tree tree(2, cloud, nanoflann::KDTreeSingleIndexAdaptorParams(10));
  double distances = 0.0, differences = 0.0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double query[2]{points[i].x, points[i].y};
    std::size_t found[2];
    double squares[2];
    tree.knnSearch(query, 2, found, squares);
    const std::size_t other = found[0] == i ? 1 : 0;
    distances += std::sqrt(squares[other]);
    differences += std::fabs(points[found[other]].z - points[i].z);
  }
  return {distances, differences};
}

}  // namespace bench
