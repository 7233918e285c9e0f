// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Looking for a fault in a coast line that has none, and making a tangle of crossing edges valid,
// beside GEOS. And eight threads that each unite their own coverage, by the clock.

#include <benchmark/benchmark.h>

#include <cmath>

#include "bench/polygons/BooleanWorkloads.h"
#include "bench/polygons/ClipPeerGeos.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/PolygonValidity.h"

namespace {

using namespace shr;
using namespace shr::bench;

using Points = std::vector<Vec2d>;

Points CoastLine(benchmark::State& state) {
  return MakeCoastLine(static_cast<std::size_t>(state.range(0))).subject.front().front();
}

/// A coast line in which two neighbours of each eight points have changed places.
Points Tangle(benchmark::State& state) {
  Points points = CoastLine(state);
  for (std::size_t i = 0; i + 4 < points.size(); i += 8) std::swap(points[i + 1], points[i + 2]);
  return points;
}

void Report(benchmark::State& state, double area) {
  state.counters["area"] = std::abs(area);
  state.counters["area_tolerance"] = 1e-6;
}

void FindFaultOurs(benchmark::State& state) {
  const GPolygon2d polygon(CoastLine(state));
  bool isValid = true;
  for (auto _ : state) isValid &= IsValid(polygon);
  if (!isValid) state.SkipWithError("a fault in nothing");
}

void FindFaultByGeos(benchmark::State& state) {
  const auto shape = GeosShape::Make(CoastLine(state), GeosShape::Kind::POLYGON);
  if (shape == nullptr) return state.SkipWithError("GEOS is absent");
  bool isValid = true;
  for (auto _ : state) isValid &= shape->IsValid();
  if (!isValid) state.SkipWithError("a fault in nothing");
}

void MakeValidOurs(benchmark::State& state) {
  const GPolygon2d polygon(Tangle(state));
  for (auto _ : state) benchmark::DoNotOptimize(MakeValid(polygon).GetNumRings());
  Report(state, MakeValid(polygon).GetArea());
}

void MakeValidByGeos(benchmark::State& state) {
  const auto shape = GeosShape::Make(Tangle(state), GeosShape::Kind::POLYGON);
  if (shape == nullptr) return state.SkipWithError("GEOS is absent");
  double area = 0.0;
  for (auto _ : state) area = shape->MakeValid();
  Report(state, area);
}

void UniteInThreads(benchmark::State& state) {
  std::vector<GPolygon2d> counties;
  for (const Contours& county : MakeCounties(1000).subject) counties.emplace_back(county.front());
  for (auto _ : state) benchmark::DoNotOptimize(GPolygon2d::Unite(counties).GetNumRings());
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(FindFaultOurs)
    ->Name("polygons/find-fault/ours")
    ->RangeMultiplier(10)
    ->Range(1000, 100000);
BENCHMARK(FindFaultByGeos)
    ->Name("polygons/find-fault/geos")
    ->RangeMultiplier(10)
    ->Range(1000, 100000);
BENCHMARK(MakeValidOurs)
    ->Name("polygons/make-valid/ours")
    ->RangeMultiplier(10)
    ->Range(1000, 100000);
BENCHMARK(MakeValidByGeos)
    ->Name("polygons/make-valid/geos")
    ->RangeMultiplier(10)
    ->Range(1000, 100000);
BENCHMARK(UniteInThreads)
    ->Name("polygons/counties-in-threads/_ours")
    ->Threads(1)
    ->Threads(2)
    ->Threads(8)
    ->UseRealTime();

}  // namespace
