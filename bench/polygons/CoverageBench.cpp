// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Simplifying the countries of the world as a coverage. GEOS 3.11 has no simplification of
// coverages; its topology-preserving one takes each ring alone, so that borders come apart, and
// measures distances (Douglas and Peucker) in place of areas: its tolerance is chosen to leave
// about as many points.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "bench/polygons/ClipPeerGeos.h"
#include "shared/polygons/CoverageSimplifier.h"
#include "tests/polygons/PolygonTestSupport.h"

namespace {

using namespace shr;
using namespace shr::bench;

/// In square degrees and degrees.
constexpr double AREA = 0.02;
constexpr double DISTANCE = 0.1;

const std::vector<test::Outline>& Outlines() {
  static const std::vector<test::Outline> OUTLINES = test::ReadOutlines("countries-50m.txt");
  return OUTLINES;
}

/// All countries, or those and as many copies beside them.
std::vector<GPolygon2d> MakeCells(std::size_t copies) {
  std::vector<GPolygon2d> cells;
  for (std::size_t copy = 0; copy < copies; ++copy) {
    for (const test::Outline& outline : Outlines()) {
      std::vector<Vec2d> points = outline.points;
      for (Vec2d& point : points) point.x += 512.0 * static_cast<double>(copy);
      cells.emplace_back(points);
    }
  }
  return cells;
}

void SimplifyOurs(benchmark::State& state) {
  const std::vector<GPolygon2d> cells = MakeCells(static_cast<std::size_t>(state.range(0)));
  std::size_t points = 0;
  for (auto _ : state) {
    points = 0;
    for (const GPolygon2d& cell : SimplifyCoverage(cells, AREA)) {
      points += cell.GetTotalVertexCount();
    }
  }
  state.counters["points"] = static_cast<double>(points);
}

void SimplifyByGeos(benchmark::State& state) {
  std::vector<std::unique_ptr<GeosShape>> shapes;
  for (const test::Outline& outline : Outlines()) {
    shapes.push_back(GeosShape::Make(outline.points, GeosShape::Kind::POLYGON));
  }
  std::size_t points = 0;
  for (auto _ : state) {
    points = 0;
    for (const auto& shape : shapes) {
      if (shape != nullptr) points += shape->Simplify(DISTANCE);
    }
  }
  state.counters["points"] = static_cast<double>(points);
}

BENCHMARK(SimplifyOurs)
    ->Name("polygons/simplify-countries/ours")
    ->Arg(1)
    ->Arg(4)
    ->Arg(16)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(SimplifyByGeos)
    ->Name("polygons/simplify-countries/geos-each-ring")
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
