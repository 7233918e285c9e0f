// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Points against a coast line and a star of needles of 10 to 10 thousand vertices: 10 thousand
// points one by one with `PointInPolygon` and a plain loop over the edges, and 1 million with the
// indices of `PointLocator` and GEOS, which are built inside the timed part.

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <utility>

#include "bench/polygons/ClipPeerGeos.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/PointLocator.h"

namespace {

using namespace shr;
using namespace shr::bench;

constexpr std::size_t FEW = 10000;
constexpr std::size_t MANY = 1000000;

/// The even-odd rule without divisions, one edge after another.
bool IsInsidePlain(const Vec2d& p, const Points& contour) {
  bool isInside = false;
  Vec2d from = contour.back();
  for (const Vec2d& to : contour) {
    if ((to.y <= p.y) != (from.y <= p.y)) {
      const double upward = (from.x - to.x) * (p.y - to.y);
      const double sideward = (from.y - to.y) * (p.x - to.x);
      isInside ^= to.y <= p.y ? upward > sideward : sideward > upward;
    }
    from = to;
  }
  return isInside;
}

struct Plain {
  static std::size_t Count(const Points& contour, std::span<const Vec2d> points) {
    std::size_t count = 0;
    for (const Vec2d& point : points) count += IsInsidePlain(point, contour);
    return count;
  }
};

struct Ours {
  static std::size_t Count(const Points& contour, std::span<const Vec2d> points) {
    std::size_t count = 0;
    for (const Vec2d& point : points) count += PointInPolygon(point, contour);
    return count;
  }
};

struct OursIndexed {
  static std::size_t Count(const Points& contour, std::span<const Vec2d> points) {
    const PointLocator locator(contour);
    std::size_t count = 0;
    for (const Vec2d& point : points) count += locator.Contains(point);
    return count;
  }
};

using MakePoints = Points (*)(std::size_t);

struct Workload {
  Points contour;
  std::unique_ptr<GeosShape> geos;
};

const Points& Cloud() {
  static const Points CLOUD = MakeCloud(MANY);
  return CLOUD;
}

template <MakePoints MAKE>
const Workload& GetWorkload(std::size_t size) {
  static std::map<std::size_t, Workload> workloads;
  const auto [entry, isNew] = workloads.try_emplace(size);
  Workload& workload = entry->second;
  if (!isNew) return workload;
  workload.contour = MAKE(size);
  workload.geos = GeosShape::Make(workload.contour, GeosShape::Kind::POLYGON);
  const std::span few = std::span(Cloud()).first(FEW);
  const auto expected = static_cast<double>(Plain::Count(workload.contour, few));
  DemandSame(static_cast<double>(Ours::Count(workload.contour, few)), expected, "PointInPolygon");
  DemandSame(static_cast<double>(OursIndexed::Count(workload.contour, few)), expected, "the index");
  if (workload.geos == nullptr) return workload;
  DemandSame(static_cast<double>(workload.geos->CountInside(few)), expected, "the points inside");
  return workload;
}

template <MakePoints MAKE, class Contender, std::size_t COUNT>
void RunOn(benchmark::State& state) {
  const Workload& workload = GetWorkload<MAKE>(static_cast<std::size_t>(state.range(0)));
  const std::span points = std::span(Cloud()).first(COUNT);
  for (auto _ : state) benchmark::DoNotOptimize(Contender::Count(workload.contour, points));
}

template <MakePoints MAKE>
void RunGeos(benchmark::State& state) {
  const Workload& workload = GetWorkload<MAKE>(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(workload.geos->CountInside(Cloud()));
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(10)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(RunOn<MakeCoast, Ours, FEW>)->Name("polygons/10k-points-in-coast/ours")->Apply(Sizes);
BENCHMARK(RunOn<MakeCoast, Plain, FEW>)->Name("polygons/10k-points-in-coast/plain")->Apply(Sizes);
BENCHMARK(RunOn<MakeNeedles, Ours, FEW>)->Name("polygons/10k-points-in-needles/ours")->Apply(Sizes);
BENCHMARK(RunOn<MakeNeedles, Plain, FEW>)
    ->Name("polygons/10k-points-in-needles/plain")
    ->Apply(Sizes);
BENCHMARK(RunOn<MakeCoast, OursIndexed, MANY>)
    ->Name("polygons/1M-points-in-coast-by-index/ours")
    ->Apply(Sizes);
BENCHMARK(RunGeos<MakeCoast>)->Name("polygons/1M-points-in-coast-by-index/geos")->Apply(Sizes);
BENCHMARK(RunOn<MakeNeedles, OursIndexed, MANY>)
    ->Name("polygons/1M-points-in-needles-by-index/ours")
    ->Apply(Sizes);
BENCHMARK(RunGeos<MakeNeedles>)->Name("polygons/1M-points-in-needles-by-index/geos")->Apply(Sizes);

}  // namespace
