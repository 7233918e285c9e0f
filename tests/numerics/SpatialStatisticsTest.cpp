// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: every neighbour and |dz| equal bit for bit to those of the sorted sweep, which is written
// out here, for random, clustered, collinear, equal, lattice and nearly equal points, squares that
// underflow or overflow, NaN and infinities; the statistics of few points; a million equal points.

#include "shared/numerics/statistics/SpatialStatistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "shared/geometry/Points.h"
#include "shared/numerics/statistics/NearestNeighbours.h"
#include "shared/platform/Simd.h"

namespace shr {
namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();
const double NO_NEIGHBOUR = std::sqrt(std::numeric_limits<double>::max());

/// The correctly rounded square root. The function of the Windows runtime, which is called where
/// the compiler does not optimise, rounds twice.
double Root(double value) {
#if SHARED_HAS_SSE2
  return _mm_cvtsd_f64(_mm_sqrt_sd(_mm_setzero_pd(), _mm_set_sd(value)));
#else
  return std::sqrt(value);
#endif
}

/// Bits of x, y, z, the distance and the difference, all NaN alike.
using Record = std::array<std::uint64_t, 5>;

Record RecordOf(const Vec3d& point, double distance, double difference) {
  Record record;
  std::size_t i = 0;
  for (const double value : {point.x, point.y, point.z, distance, difference}) {
    record[i++] = std::bit_cast<std::uint64_t>(value == value ? value : std::nan(""));
  }
  return record;
}

/// Keeps a difference that is not larger; NaN is larger than all numbers.
void Keep(double& recorded, double difference) {
  if (recorded != recorded || difference <= recorded) recorded = difference;
}

/// The sorted sweep: from each point forward, then backward, until the difference of x is too
/// large.
std::vector<Record> Sweep(std::vector<Vec3d> points) {
  const auto key = [](const Vec3d& p) {
    const auto order = [](double value) {
      return std::pair(value != value, value == value ? value : 0.0);
    };
    return std::tuple(order(p.x), order(p.y), order(p.z));
  };
  std::sort(points.begin(), points.end(),
            [&](const Vec3d& a, const Vec3d& b) { return key(a) < key(b); });
  std::vector<Record> records;
  const auto n = static_cast<std::ptrdiff_t>(points.size());
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const Vec3d& point = points[static_cast<std::size_t>(i)];
    double best = std::numeric_limits<double>::max(), difference = std::nan("");
    for (const std::ptrdiff_t step : {1, -1}) {
      for (std::ptrdiff_t j = i + step; j >= 0 && j < n; j += step) {
        const Vec3d& other = points[static_cast<std::size_t>(j)];
        const double dx = other.x - point.x, dy = other.y - point.y;
        if (dx * dx > best) break;
        const double square = dx * dx + dy * dy, dz = std::fabs(other.z - point.z);
        if (square < best) {
          best = square;
          difference = dz;
        } else if (square == best) {
          Keep(difference, dz);
        }
      }
    }
    records.push_back(RecordOf(point, Root(best), difference));
  }
  std::sort(records.begin(), records.end());
  return records;
}

std::vector<Record> Found(std::vector<Vec3d> points) {
  const NeighbourDistances nearest = FindNearestNeighbours(points);
  std::vector<Record> records;
  for (std::size_t i = 0; i < points.size(); ++i) {
    records.push_back(RecordOf(points[i], nearest.distances[i], nearest.differences[i]));
  }
  std::sort(records.begin(), records.end());
  return records;
}

/// Makes the point i of n.
using Family = std::function<Vec3d(std::mt19937&, int i, int n)>;

double Uniform(std::mt19937& random) {
  return std::ldexp(static_cast<double>(random() & 0xFFFFFFFFu), -32);
}
double Gauss(std::mt19937& random) {
  return std::normal_distribution<double>()(random);
}
double Whole(std::mt19937& random, unsigned int limit) {
  return static_cast<double>(random() % limit);
}

const std::map<std::string, Family> FAMILIES{
    {"random", [](std::mt19937& r, int, int) { return Vec3d(Uniform(r), Uniform(r), Uniform(r)); }},
    {"random, few z",
     [](std::mt19937& r, int, int) { return Vec3d(Uniform(r), Uniform(r), Whole(r, 3)); }},
    {"clusters",
     [](std::mt19937& r, int, int) {
       const double c = Whole(r, 5);
       const double spread = std::pow(10.0, -2 * c);
       return Vec3d(c + spread * Gauss(r), c * c + spread * Gauss(r), Uniform(r));
     }},
    {"one dense cluster and strays",
     [](std::mt19937& r, int i, int) {
       const double spread = i % 20 == 0 ? 1.0 : 1e-9;
       return Vec3d(spread * Gauss(r), spread * Gauss(r), Uniform(r));
     }},
    {"scales",
     [](std::mt19937& r, int, int) {
       const double scale = std::exp(-60 * Uniform(r));
       return Vec3d(scale * Gauss(r), scale * Gauss(r), Uniform(r));
     }},
    {"vertical line", [](std::mt19937& r, int, int) { return Vec3d(2.5, Uniform(r), Uniform(r)); }},
    {"horizontal line",
     [](std::mt19937& r, int, int) { return Vec3d(Uniform(r), -7.0, Uniform(r)); }},
    {"oblique line",
     [](std::mt19937& r, int, int) {
       const double t = Uniform(r);
       return Vec3d(t, 3 * t, Uniform(r));
     }},
    {"nearly a line",
     [](std::mt19937& r, int, int) { return Vec3d(Uniform(r), 1e-12 * Uniform(r), Uniform(r)); }},
    {"all equal", [](std::mt19937&, int, int) { return Vec3d(1, 2, 3); }},
    {"equal in the plane", [](std::mt19937& r, int, int) { return Vec3d(1, 2, Uniform(r)); }},
    {"two places", [](std::mt19937& r, int i, int) { return Vec3d(i % 2, 2, Uniform(r)); }},
    {"lattice",
     [](std::mt19937& r, int, int) { return Vec3d(Whole(r, 20), Whole(r, 20), Whole(r, 50)); }},
    {"whole lattice",
     [](std::mt19937& r, int i, int n) {
       const int side = static_cast<int>(std::sqrt(n));
       return Vec3d(0.1 * (i % side), 0.1 * (i / side), Whole(r, 50));
     }},
    {"triangles",
     [](std::mt19937& r, int i, int) {
       return Vec3d(i % 30 + (i / 30) % 2 * 0.5, i / 30 * 0.8660254037844386, Whole(r, 9));
     }},
    {"circle with its center",
     [](std::mt19937& r, int i, int n) {
       if (i == 0) return Vec3d(0, 0, Uniform(r));
       const double angle = 6.283185307179586 * i / n;
       return Vec3d(std::cos(angle), std::sin(angle), Uniform(r));
     }},
    {"neighbouring doubles",
     [](std::mt19937& r, int, int) {
       return Vec3d(1 + std::ldexp(Whole(r, 40), -52), 1e6 + std::ldexp(Whole(r, 9), -33),
                    Whole(r, 99));
     }},
    {"squares underflow",
     [](std::mt19937& r, int, int) {
       return Vec3d(1e-162 * Whole(r, 60), 1e-162 * Whole(r, 60), Uniform(r));
     }},
    {"all squares underflow",
     [](std::mt19937& r, int, int) {
       return Vec3d(1e-170 * Uniform(r), 1e-170 * Uniform(r), Uniform(r));
     }},
    {"tiny width",
     [](std::mt19937& r, int, int) { return Vec3d(1e-165 * Uniform(r), Uniform(r), Uniform(r)); }},
    {"subnormal",
     [](std::mt19937& r, int, int) { return Vec3d(5e-324 * Whole(r, 9), 0, Whole(r, 99)); }},
    {"squares overflow",
     [](std::mt19937& r, int, int) {
       return Vec3d(1e155 * Whole(r, 9), 1e150 * Uniform(r), Uniform(r));
     }},
    {"extent overflows",
     [](std::mt19937& r, int i, int) {
       return Vec3d(i % 2 == 0 ? 1.5e308 : -1.5e308, Uniform(r), Uniform(r));
     }},
    {"some not finite",
     [](std::mt19937& r, int i, int) {
       const double odd[]{std::nan(""), INFINITE, -INFINITE};
       Vec3d point(Uniform(r), Uniform(r), Whole(r, 3));
       if (i % 7 < 3) point[static_cast<int>(r() % 3)] = odd[i % 7];
       return point;
     }},
    {"z not finite at equal places",
     [](std::mt19937& r, int i, int) {
       const double odd[]{std::nan(""), INFINITE, -INFINITE, 1.0, Uniform(r)};
       return Vec3d(Whole(r, 2), 1.0, odd[i % 5]);
     }},
};

TEST(SpatialStatistics, neighboursAreThoseOfTheSortedSweep) {
  std::mt19937 random(5);
  for (const auto& [name, family] : FAMILIES) {
    for (const int size : {1, 2, 3, 5, 20, 40, 100, 1200}) {
      std::vector<Vec3d> points;
      for (int i = 0; i < size; ++i) points.push_back(family(random, i, size));
      ASSERT_EQ(Found(points), Sweep(points)) << name << ", " << size;
    }
  }
}

TEST(SpatialStatistics, threadsChangeNothing) {
  std::mt19937 random(6);
  for (const char* name : {"random", "one dense cluster and strays", "lattice"}) {
    std::vector<Vec3d> points;  // enough for several threads
    for (int i = 0; i < 21000; ++i) points.push_back(FAMILIES.at(name)(random, i, 21000));
    const std::vector<Record> first = Found(points);
    EXPECT_EQ(first, Found(points)) << name;
    if (std::string(name) == "random") {
      EXPECT_EQ(first, Sweep(points));
    }
  }
}

TEST(SpatialStatistics, fewPointsByHand) {
  CSpatialStatistics spatial;
  const std::vector<Point3<double>> points{{0, 0, 7}, {3, 4, 8}, {3, 5, 6}, {3, 3, 8.5}};
  Load(spatial, points.begin(), points.end());
  EXPECT_EQ(spatial.count, 4u);
  EXPECT_EQ(spatial.distances.count, 4u);
  EXPECT_EQ(spatial.distances.minimum, 1.0);
  EXPECT_EQ(spatial.distances.maximum, std::sqrt(18.0));
  // The point in the middle has two neighbours at the same distance: the smaller |dz| counts.
  EXPECT_EQ(spatial.zDifferences.sum, 1.5 + 0.5 + 2.0 + 0.5);
  EXPECT_EQ(spatial.density, 4.0 / 15.0);
  EXPECT_DOUBLE_EQ(spatial.neighbourRatio, 2 * std::sqrt(4.0 / 15.0) * (3 + std::sqrt(18.0)) / 4);
  EXPECT_DOUBLE_EQ(spatial.skellam, 2 * 3.141592653589793 * 4.0 / 15.0 * 21.0);
  spatial.Clear();
  EXPECT_EQ(spatial.count, 0u);
  EXPECT_TRUE(std::isnan(spatial.density));
  EXPECT_TRUE(std::isnan(spatial.distances.mean));
}

TEST(SpatialStatistics, withoutAnAreaOnlyDistancesAreKnown) {
  const struct {
    const char* name;
    std::vector<Vec3d> points;
    double meanDistance;
  } rows[] = {
      {"vertical line", {{1, 0, 0}, {1, 2, 5}, {1, 3, 1}}, 4.0 / 3.0},
      {"equal points", {{1, 1, 0}, {1, 1, 5}}, 0.0},
      {"one point", {{1, 1, 0}}, NO_NEIGHBOUR},
      {"a coordinate that is no number",
       {{0, 0, 0}, {0, 2, 0}, {std::nan(""), 1, 0}},
       (4 + NO_NEIGHBOUR) / 3},
  };
  for (const auto& row : rows) {
    CSpatialStatistics spatial;
    Load(spatial, row.points);
    EXPECT_DOUBLE_EQ(spatial.distances.mean, row.meanDistance) << row.name;
    EXPECT_TRUE(std::isnan(spatial.density)) << row.name;
    EXPECT_TRUE(std::isnan(spatial.neighbourRatio)) << row.name;
    EXPECT_TRUE(std::isnan(spatial.skellam)) << row.name;
  }
  CSpatialStatistics spatial;
  Load(spatial, std::vector<Vec3d>());
  EXPECT_EQ(spatial.count, 0u);
  EXPECT_TRUE(std::isnan(spatial.distances.mean));
}

TEST(SpatialStatistics, equalPointsCostNoMoreThanOthers) {
  std::vector<Vec3d> points;
  for (int i = 0; i < 100000; ++i) points.emplace_back(1.0, 2.0, i % 50000);
  CSpatialStatistics spatial;
  Load(spatial, points);  // a quadratic search takes minutes
  EXPECT_EQ(spatial.distances.maximum, 0.0);
  EXPECT_EQ(spatial.zDifferences.maximum, 0.0);
  for (std::size_t i = 0; i < points.size(); ++i) points[i].z = 3.0 * static_cast<double>(i);
  Load(spatial, points);
  EXPECT_EQ(spatial.zDifferences.minimum, 3.0);
  EXPECT_EQ(spatial.zDifferences.maximum, 3.0);
}

TEST(SpatialStatistics, randomPointsHaveTheirTheoreticalRatios) {
  std::mt19937 random(8);
  std::vector<Vec3d> points;
  for (int i = 0; i < 40000; ++i) points.push_back(FAMILIES.at("random")(random, i, 40000));
  CSpatialStatistics spatial;
  Load(spatial, points);
  EXPECT_NEAR(spatial.neighbourRatio, 1.0, 0.01);
  EXPECT_NEAR(spatial.skellam / 80000.0, 1.0, 0.03);
}

}  // namespace
}  // namespace shr
