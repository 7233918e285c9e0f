// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Containment in and flat output of `GPolygon2d`, 10 thousand to 10 million points, beside the same
// work on the model of Boost.Geometry itself. Containment is measured in one star of all the points
// and in a map of stars of a thousand points each. Before anything is timed the contenders' answers
// must be the same.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/geometry/algorithms/within.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <boost/geometry/geometries/register/point.hpp>
#include <boost/geometry/strategies/cartesian.hpp>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "shared/geometry/MathUtility.h"
#include "shared/polygons/GPolygon2d.h"

BOOST_GEOMETRY_REGISTER_POINT_2D(shr::Vec2d, double, boost::geometry::cs::cartesian, x, y)

namespace {

using shr::GPolygon2d;
using shr::Vec2d;

namespace bg = boost::geometry;
using BoostMultiPolygon = bg::model::multi_polygon<bg::model::polygon<Vec2d>>;
using Points = std::vector<Vec2d>;
using Counts = std::vector<unsigned int>;

constexpr std::size_t RING_SIZE = 1000;

/// The same polygons in the form of each contender, and points to ask about.
struct Workload {
  GPolygon2d ours;
  BoostMultiPolygon boost;
  Points queries;
};

/// Appends a clockwise star of radius 1 at most.
void AppendStar(const Vec2d& center, std::size_t size, std::mt19937_64& random, Points& points) {
  std::uniform_real_distribution<double> spread(0.5, 1.0);
  for (std::size_t i = 0; i < size; ++i) {
    const double angle = -shr::TWO_PI * static_cast<double>(i) / static_cast<double>(size);
    points.push_back(center + Vec2d(std::cos(angle), std::sin(angle)) * spread(random));
  }
}

Workload MakeWorkload(std::size_t total, std::size_t ringSize) {
  std::mt19937_64 random(total + ringSize);
  const std::size_t rings = total / ringSize;
  const auto columns = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(rings))));
  Points points;
  points.reserve(total);
  for (std::size_t ring = 0; ring < rings; ++ring) {
    AppendStar(
        Vec2d(3.0 * static_cast<double>(ring % columns), 3.0 * static_cast<double>(ring / columns)),
        ringSize, random, points);
  }
  Workload workload;
  workload.ours = GPolygon2d(points, Counts(rings, static_cast<unsigned int>(ringSize)));
  workload.boost.resize(rings);
  for (std::size_t ring = 0; ring < rings; ++ring) {
    const auto first = points.begin() + static_cast<std::ptrdiff_t>(ring * ringSize);
    auto& outer = workload.boost[ring].outer();
    outer.assign(first, first + static_cast<std::ptrdiff_t>(ringSize));
    outer.push_back(*first);
  }
  std::uniform_int_distribution<std::size_t> anyRing(0, rings - 1);
  std::uniform_real_distribution<double> offset(-1.0, 1.0);
  for (int i = 0; i < 16; ++i) {
    const std::size_t ring = anyRing(random);
    workload.queries.emplace_back(3.0 * static_cast<double>(ring % columns) + offset(random),
                                  3.0 * static_cast<double>(ring / columns) + offset(random));
  }
  return workload;
}

void Demand(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "contenders disagree: %s\n", what);
  std::abort();
}

struct Ours {
  static bool Contains(const Workload& workload, const Vec2d& point) {
    return workload.ours.PointInside(point);
  }
  static void GetFlat(const Workload& workload, Points& points, Counts& counts) {
    workload.ours.GetPolyPolygon(points, counts, true);
  }
};

struct Boost {
  static bool Contains(const Workload& workload, const Vec2d& point) {
    return bg::within(point, workload.boost);
  }
  static void GetFlat(const Workload& workload, Points& points, Counts& counts) {
    points.clear();
    counts.clear();
    for (const auto& polygon : workload.boost) {
      points.insert(points.end(), polygon.outer().begin(), polygon.outer().end());
      counts.push_back(static_cast<unsigned int>(polygon.outer().size()));
    }
  }
};

/// Returns the workload, made once and checked once.
const Workload& GetWorkload(std::size_t total, std::size_t ringSize) {
  static std::map<std::pair<std::size_t, std::size_t>, Workload> workloads;
  const auto [entry, isNew] = workloads.try_emplace({total, ringSize});
  Workload& workload = entry->second;
  if (!isNew) return workload;
  workload = MakeWorkload(total, ringSize);
  for (const Vec2d& point : workload.queries) {
    Demand(Ours::Contains(workload, point) == Boost::Contains(workload, point), "containment");
  }
  Points points[2];
  Counts counts[2];
  Ours::GetFlat(workload, points[0], counts[0]);
  Boost::GetFlat(workload, points[1], counts[1]);
  Demand(points[0] == points[1] && counts[0] == counts[1], "flat form");
  return workload;
}

template <class Contender>
void PointInside(benchmark::State& state, std::size_t ringSize) {
  const auto total = static_cast<std::size_t>(state.range(0));
  const Workload& workload = GetWorkload(total, ringSize == 0 ? total : ringSize);
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(Contender::Contains(workload, workload.queries[next]));
    next = (next + 1) % workload.queries.size();
  }
}

template <class Contender>
void PointInOneRing(benchmark::State& state) {
  PointInside<Contender>(state, 0);
}

template <class Contender>
void PointInManyRings(benchmark::State& state) {
  PointInside<Contender>(state, RING_SIZE);
}

template <class Contender>
void FlatForm(benchmark::State& state) {
  const Workload& workload = GetWorkload(static_cast<std::size_t>(state.range(0)), RING_SIZE);
  Points points;
  Counts counts;
  Contender::GetFlat(workload, points, counts);  // the buffers are reused, as callers that draw do
  for (auto _ : state) {
    Contender::GetFlat(workload, points, counts);
    benchmark::DoNotOptimize(points.data());
    benchmark::ClobberMemory();
  }
}

void CopyOnly(benchmark::State& state) {
  const Workload& workload = GetWorkload(static_cast<std::size_t>(state.range(0)), RING_SIZE);
  Points source;
  Counts counts;
  Ours::GetFlat(workload, source, counts);
  Points target(source);
  for (auto _ : state) {
    std::memcpy(static_cast<void*>(target.data()), source.data(), source.size() * sizeof(Vec2d));
    benchmark::DoNotOptimize(target.data());
    benchmark::ClobberMemory();
  }
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(10000)->Arg(100000)->Arg(1000000)->Arg(10000000);
}

BENCHMARK(PointInOneRing<Ours>)->Name("polygons/PointInside-one-ring/ours")->Apply(Sizes);
BENCHMARK(PointInOneRing<Boost>)->Name("polygons/PointInside-one-ring/boost")->Apply(Sizes);
BENCHMARK(PointInManyRings<Ours>)->Name("polygons/PointInside-many-rings/ours")->Apply(Sizes);
BENCHMARK(PointInManyRings<Boost>)->Name("polygons/PointInside-many-rings/boost")->Apply(Sizes);
BENCHMARK(FlatForm<Ours>)->Name("polygons/GetPolyPolygon/ours")->Apply(Sizes);
BENCHMARK(FlatForm<Boost>)->Name("polygons/GetPolyPolygon/boost")->Apply(Sizes);
BENCHMARK(CopyOnly)->Name("polygons/GetPolyPolygon/_memcpy")->Apply(Sizes);

}  // namespace
