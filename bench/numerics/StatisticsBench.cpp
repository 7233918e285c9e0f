// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Statistics beside what others take for a part of them.
//
//   univariate-load: all values of `CUnivariateStatistics`, beside three selections by
//     std::nth_element, each of data in their first order, and beside GSL, which sorts the data and
//     has 15 of the values.
//   neighbours-...: the nearest neighbour of each point, on one thread, beside nanoflann, a plain
//     uniform grid and, where it comes to an end, the sorted sweep; points at random, in clusters,
//     on a vertical line and all at one place.
//   tied-ranks: beside sorting pairs with std::sort, without the ranks.
//
// Results are compared before anything is timed.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <map>
#include <numeric>
#include <random>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "bench/numerics/StatisticsPeers.h"
#include "shared/numerics/statistics/MultivariateStatistics.h"
#include "shared/numerics/statistics/NearestNeighbours.h"
#include "shared/numerics/statistics/SpatialStatistics.h"
#include "shared/numerics/statistics/UnivariateStatistics.h"

#if defined(_OPENMP)
#include <omp.h>
#endif

namespace {

using shr::Vec3d;
using Points = std::vector<Vec3d>;
using Numbers = std::vector<double>;

void Require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "The contenders disagree: %s\n", what.c_str());
  std::abort();
}

bool AreClose(double a, double b) {
  return std::fabs(a - b) <= 1e-9 * std::fabs(b);
}

double Uniform(std::mt19937_64& random) {
  return static_cast<double>(random() >> 11) * 0x1p-53;
}

const Numbers& Sample(std::size_t size) {
  static std::map<std::size_t, Numbers> samples;
  Numbers& sample = samples[size];
  if (!sample.empty()) return sample;
  std::mt19937_64 random(size);
  std::normal_distribution<double> normal(10.0, 2.0);
  for (std::size_t i = 0; i < size; ++i) sample.push_back(normal(random));
  return sample;
}

void ThreeSelections(Numbers& values, Numbers& copy) {
  const auto middle = static_cast<std::ptrdiff_t>(values.size() / 2);
  copy = values;
  std::nth_element(copy.begin(), copy.begin() + middle / 2, copy.end());
  copy = values;
  std::nth_element(copy.begin(), copy.begin() + middle + middle / 2, copy.end());
  std::nth_element(values.begin(), values.begin() + middle, values.end());
}

void LoadOurs(Numbers& values) {
  shr::CUnivariateStatistics statistics;
  Load(statistics, values.begin(), values.end());
  benchmark::DoNotOptimize(statistics);
}

void RequireSameStatistics(std::size_t size) {
  if (!bench::HAS_PEERS) return;
  Numbers ours = Sample(size), theirs = ours;
  shr::CUnivariateStatistics statistics;
  Load(statistics, ours.begin(), ours.end());
  const bench::PeerStatistics peer = bench::DescribeByGsl(theirs);
  Require(AreClose(peer.mean, statistics.mean), "mean");
  Require(AreClose(peer.variance, statistics.variance), "variance");
  Require(AreClose(peer.percentile75, statistics.percentile75), "percentile");
  Require(AreClose(peer.median, statistics.median), "median");
}

template <class Work>
void RunOnSample(benchmark::State& state, Work work) {
  const auto size = static_cast<std::size_t>(state.range(0));
  RequireSameStatistics(size);
  Numbers values = Sample(size);
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(Sample(size).begin(), Sample(size).end(), values.begin());
    state.ResumeTiming();
    work(values);
  }
}

Vec3d PointOf(const std::string& family, std::mt19937_64& random) {
  const double x = Uniform(random), y = Uniform(random), z = Uniform(random);
  if (family == "vertical-line") return {0.5, y, z};
  if (family == "equal") return {0.25, 0.5, z};
  if (family.starts_with("random")) return {x, y, z};
  // A hundred clusters whose spreads differ by up to a thousand.
  const auto cluster = static_cast<double>(random() % 100);
  std::normal_distribution<double> normal(0.0, 0.1 * std::pow(10.0, -0.03 * cluster));
  const double centerX = std::fmod(cluster * 0.618033988749895, 1.0), centerY = cluster / 100.0;
  return {centerX + normal(random), centerY + normal(random), z};
}

const Points& PointsOf(const std::string& family, std::size_t size) {
  static std::map<std::pair<std::string, std::size_t>, Points> all;
  Points& points = all[{family, size}];
  if (!points.empty()) return points;
  std::mt19937_64 random(size);
  for (std::size_t i = 0; i < size; ++i) points.push_back(PointOf(family, random));
  return points;
}

/// What a contender finds: the sums of the distances and of |dz|.
struct Found {
  double distances = 0.0;
  double differences = 0.0;
};

/// The sorted sweep as it is told.
Found Sweep(Points points) {
  std::sort(points.begin(), points.end(), [](const Vec3d& a, const Vec3d& b) {
    return std::tie(a.x, a.y, a.z) < std::tie(b.x, b.y, b.z);
  });
  Found found;
  const auto n = static_cast<std::ptrdiff_t>(points.size());
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const Vec3d& point = points[static_cast<std::size_t>(i)];
    double best = std::numeric_limits<double>::max(), difference = 0.0;
    for (const std::ptrdiff_t step : {1, -1}) {
      for (std::ptrdiff_t j = i + step; j >= 0 && j < n; j += step) {
        const Vec3d& other = points[static_cast<std::size_t>(j)];
        const double dx = other.x - point.x, dy = other.y - point.y;
        if (dx * dx > best) break;
        const double square = dx * dx + dy * dy, dz = std::fabs(other.z - point.z);
        if (square < best || (square == best && dz <= difference)) {
          best = square;
          difference = dz;
        }
      }
    }
    found.distances += std::sqrt(best);
    found.differences += difference;
  }
  return found;
}

/// A uniform grid of two points a cell on average, searched cell by cell in growing squares.
class PlainGrid {
public:
  explicit PlainGrid(const Points& points)
      : side_(std::max<std::size_t>(
            1, static_cast<std::size_t>(std::sqrt(static_cast<double>(points.size()) / 2.0)))),
        starts_(side_ * side_ + 1) {
    lowX_ = lowY_ = std::numeric_limits<double>::max();
    double highX = -lowX_, highY = -lowY_;
    for (const Vec3d& point : points) {
      lowX_ = std::min(lowX_, point.x);
      lowY_ = std::min(lowY_, point.y);
      highX = std::max(highX, point.x);
      highY = std::max(highY, point.y);
    }
    size_ = std::max(highX - lowX_, highY - lowY_) / static_cast<double>(side_);
    Sort(points);
  }

  Found Search() const {
    Found found;
    for (std::size_t row = 0; row < side_; ++row) {
      for (std::size_t column = 0; column < side_; ++column) {
        const std::size_t cell = row * side_ + column;
        for (std::size_t i = starts_[cell]; i < starts_[cell + 1]; ++i) {
          SearchFrom(i, column, row, found);
        }
      }
    }
    return found;
  }

private:
  std::size_t Index(double coordinate, double low) const {
    return std::min(static_cast<std::size_t>((coordinate - low) / size_), side_ - 1);
  }
  void Sort(const Points& points) {
    std::vector<std::uint32_t> cells(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
      const std::size_t cell = Index(points[i].y, lowY_) * side_ + Index(points[i].x, lowX_);
      cells[i] = static_cast<std::uint32_t>(cell);
      ++starts_[cell + 1];
    }
    for (std::size_t i = 1; i < starts_.size(); ++i) starts_[i] += starts_[i - 1];
    std::vector<std::uint32_t> next(starts_.begin(), starts_.end() - 1);
    points_.resize(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) points_[next[cells[i]]++] = points[i];
  }
  void SearchFrom(std::size_t self, std::size_t column, std::size_t row, Found& found) const {
    const Vec3d& point = points_[self];
    double best = std::numeric_limits<double>::max(), difference = 0.0;
    for (std::size_t reach = 1;; ++reach) {
      const std::size_t left = column - std::min(column, reach), low = row - std::min(row, reach);
      const std::size_t right = std::min(column + reach, side_ - 1);
      const std::size_t high = std::min(row + reach, side_ - 1);
      for (std::size_t y = low; y <= high; ++y) {
        for (std::size_t i = starts_[y * side_ + left]; i < starts_[y * side_ + right + 1]; ++i) {
          const double dx = points_[i].x - point.x, dy = points_[i].y - point.y;
          const double square = dx * dx + dy * dy;
          if (i != self && square < best) {
            best = square;
            difference = std::fabs(points_[i].z - point.z);
          }
        }
      }
      const double safe = static_cast<double>(reach) * size_ * (1 - 1e-12);
      if (best <= safe * safe || reach > side_) break;
    }
    found.distances += std::sqrt(best);
    found.differences += difference;
  }

  std::size_t side_;
  std::vector<std::uint32_t> starts_;
  Points points_;
  double lowX_ = 0.0, lowY_ = 0.0, size_ = 1.0;
};

Found SearchOurs(Points points) {
  const shr::NeighbourDistances nearest = shr::FindNearestNeighbours(points);
  return {std::accumulate(nearest.distances.begin(), nearest.distances.end(), 0.0),
          std::accumulate(nearest.differences.begin(), nearest.differences.end(), 0.0)};
}

/// With both samples described.
Found LoadSpatial(const Points& points) {
  shr::CSpatialStatistics statistics;
  Load(statistics, points);
  return {statistics.distances.sum, statistics.zDifferences.sum};
}

using Contender = std::function<Found(const Points&)>;

void RunOnPoints(benchmark::State& state, const std::string& family, const Contender& contender) {
#if defined(_OPENMP)
  omp_set_num_threads(1);
#endif
  const Points& points = PointsOf(family, static_cast<std::size_t>(state.range(0)));
  const Found ours = SearchOurs(points), found = contender(points);
  Require(AreClose(ours.distances, found.distances) || ours.distances == found.distances, family);
  for (auto _ : state) benchmark::DoNotOptimize(contender(points));
}

void AddNeighbours(const std::string& family, const std::string& name, const Contender& contender,
                   int largest = 1000000) {
  benchmark::RegisterBenchmark(
      ("numerics/neighbours-" + family + "/" + name).c_str(),
      [family, contender](benchmark::State& state) { RunOnPoints(state, family, contender); })
      ->RangeMultiplier(10)
      ->Range(10000, largest)
      ->Unit(benchmark::kMillisecond);
}

void RankOurs(const shr::RVector& values) {
  benchmark::DoNotOptimize(shr::ComputeTiedRank(values).data());
}

void SortPairs(const shr::RVector& values) {
  std::vector<std::pair<double, std::size_t>> pairs(values.size());
  for (std::size_t i = 0; i < pairs.size(); ++i) pairs[i] = {values(i), i};
  std::sort(pairs.begin(), pairs.end());
  benchmark::DoNotOptimize(pairs.data());
}

void RunRanks(benchmark::State& state, void (*work)(const shr::RVector&)) {
  const auto size = static_cast<std::size_t>(state.range(0));
  shr::RVector values{std::span<const double>(Sample(size))};
  for (double& value : values) value = std::round(value * 1000.0) / 1000.0;  // with ties
  const shr::RVector ranks = shr::ComputeTiedRank(values);
  std::vector<double> sorted(values.begin(), values.end());
  std::sort(sorted.begin(), sorted.end());
  for (std::size_t i = 0; i < size; ++i) {
    const auto range = std::equal_range(sorted.begin(), sorted.end(), values(i));
    const auto first = static_cast<double>(range.first - sorted.begin());
    const auto last = static_cast<double>(range.second - sorted.begin());
    Require(ranks(i) == (first + last + 1.0) / 2.0, "ranks");
  }
  for (auto _ : state) work(values);
}

[[maybe_unused]] const bool REGISTERED = [] {
  const auto addLoad = [](const char* name, const std::function<void(Numbers&)>& work) {
    benchmark::RegisterBenchmark((std::string("numerics/univariate-load/") + name).c_str(),
                                 [work](benchmark::State& state) { RunOnSample(state, work); })
        ->RangeMultiplier(10)
        ->Range(100000, 10000000)
        ->Unit(benchmark::kMillisecond);
  };
  addLoad("ours", LoadOurs);
  addLoad("three_nth_element",
          [copy = Numbers()](Numbers& values) mutable { ThreeSelections(values, copy); });
  if (bench::HAS_PEERS) {
    addLoad("gsl", [](Numbers& values) { benchmark::DoNotOptimize(bench::DescribeByGsl(values)); });
  }
  const Contender grid = [](const Points& points) { return PlainGrid(points).Search(); };
  const Contender nanoflann = [](const Points& points) {
    const auto sums = bench::NeighboursByNanoflann(points);
    return Found{sums.first, sums.second};
  };
  for (const char* family : {"random", "clusters", "vertical-line", "equal"}) {
    AddNeighbours(family, "ours", SearchOurs);
    // A tree that halves boxes does not come to an end with a million equal points.
    const int largest = std::string(family) == "equal" ? 10000 : 1000000;
    if (bench::HAS_PEERS) AddNeighbours(family, "nanoflann", nanoflann, largest);
  }
  AddNeighbours("random-with-statistics", "ours", LoadSpatial);
  AddNeighbours("random", "grid", grid);
  AddNeighbours("clusters", "grid", grid, 100000);
  AddNeighbours("random", "sweep", Sweep, 100000);
  AddNeighbours("vertical-line", "sweep", Sweep, 10000);
  const auto addRanks = [](const char* name, void (*work)(const shr::RVector&)) {
    benchmark::RegisterBenchmark((std::string("numerics/tied-ranks/") + name).c_str(),
                                 [work](benchmark::State& state) { RunRanks(state, work); })
        ->RangeMultiplier(10)
        ->Range(10000, 1000000)
        ->Unit(benchmark::kMillisecond);
  };
  addRanks("ours", RankOurs);
  addRanks("sort_pairs", SortPairs);
  return true;
}();

}  // namespace
