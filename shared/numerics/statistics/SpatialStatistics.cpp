// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/statistics/SpatialStatistics.h"

#include <cmath>

#include "shared/numerics/statistics/ErrorFree.h"
#include "shared/numerics/statistics/NearestNeighbours.h"

namespace shr {
namespace {

constexpr double PI = 3.141592653589793;

/// NaN where a coordinate is.
class Extent {
public:
  void Add(double value) {
    if (!(value >= low_)) low_ = value;
    if (!(value <= high_)) high_ = value;
    sum_ += value - value;
  }
  double Size() const { return high_ - low_ + sum_; }

private:
  double low_ = std::numeric_limits<double>::infinity();
  double high_ = -std::numeric_limits<double>::infinity();
  double sum_ = 0.0;
};

}  // namespace

void Load(CSpatialStatistics& statistics, std::vector<Vec3d> points) {
  statistics.Clear();
  if (points.empty()) return;
  statistics.count = points.size();
  Extent x, y;
  for (const Vec3d& point : points) {
    x.Add(point.x);
    y.Add(point.y);
  }
  NeighbourDistances nearest = FindNearestNeighbours(points);
  Load(statistics.distances, nearest.distances);
  Load(statistics.zDifferences, nearest.differences);
  const double area = y.Size() * x.Size();
  if (!(area > TINY)) return;
  const auto n = static_cast<double>(statistics.count);
  statistics.density = n / area;
  statistics.neighbourRatio = 2.0 * std::sqrt(statistics.density) * statistics.distances.mean;
  statistics.skellam = 2.0 * PI * statistics.density * n * statistics.distances.meanSquare;
}

}  // namespace shr
