// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Short segments all over the map, clipped to a coast line of 100 to 10 thousand vertices; the
// index of each contender is built inside the timed part. The argument is the number of segments.
//
// A dashed line through a view of 1000 x 800, of which the argument is the length; beside it, every
// dash of the line made and clipped, as a program does that has but a generator of dashes.

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <random>
#include <utility>

#include "bench/polygons/ClipPeerGeos.h"
#include "shared/polygons/ClipUtil.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/lines/GDashLineGenerator.h"
#include "shared/polygons/lines/LineClip.h"
#include "shared/polygons/lines/LineClipPolygon.h"

namespace {

using namespace shr;
using namespace shr::bench;

/// Segments of length 2 to 18, as pairs of points.
Points MakeSegments(std::size_t count) {
  std::mt19937_64 random(count);
  std::uniform_real_distribution<double> angle(0.0, TWO_PI);
  std::uniform_real_distribution<double> length(2.0, 18.0);
  Points ends;
  for (const Vec2d& point : MakeCloud(count)) {
    const double direction = angle(random);
    ends.push_back(point);
    ends.push_back(point + Vec2d(std::cos(direction), std::sin(direction)) * length(random));
  }
  return ends;
}

struct Workload {
  Points coast;
  Points ends;
  std::unique_ptr<GeosShape> geos;
};

void ClipOurs(const Workload& workload, std::vector<GLine2>& pieces) {
  const unsigned int count = static_cast<unsigned int>(workload.coast.size());
  const GLineClipPolygon polygon(workload.coast, std::span(&count, 1));
  pieces.clear();
  for (std::size_t i = 0; i < workload.ends.size(); i += 2) {
    polygon.Clip(&workload.ends[i], 2, pieces);
  }
}

template <std::size_t VERTICES>
const Workload& GetWorkload(std::size_t segments) {
  static std::map<std::size_t, Workload> workloads;
  const auto [entry, isNew] = workloads.try_emplace(segments);
  Workload& workload = entry->second;
  if (!isNew) return workload;
  workload.coast = MakeCoast(VERTICES);
  workload.ends = MakeSegments(segments);
  workload.geos = GeosShape::Make(workload.coast, GeosShape::Kind::POLYGON);
  if (workload.geos == nullptr) return workload;
  std::vector<GLine2> pieces;
  ClipOurs(workload, pieces);
  double length = 0.0;
  for (const GLine2& piece : pieces) length += piece.GetBegin().Distance(piece.GetEnd());
  const GeosShape::Inside inside = workload.geos->ClipSegments(workload.ends);
  DemandSame(length, inside.length, "the length inside");
  DemandSame(static_cast<double>(pieces.size()), static_cast<double>(inside.parts), "the pieces");
  return workload;
}

template <std::size_t VERTICES>
void RunOurs(benchmark::State& state) {
  const Workload& workload = GetWorkload<VERTICES>(static_cast<std::size_t>(state.range(0)));
  std::vector<GLine2> pieces;
  for (auto _ : state) {
    ClipOurs(workload, pieces);
    benchmark::DoNotOptimize(pieces.data());
  }
}

template <std::size_t VERTICES>
void RunGeos(benchmark::State& state) {
  const Workload& workload = GetWorkload<VERTICES>(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(workload.geos->ClipSegments(workload.ends).length);
  }
}

struct DashedLine {
  explicit DashedLine(double length)
      : points{{500.0 - length / 2.0, 400.0}, {500.0 + length / 2.0, 400.0}} {}

  void ClipInView() {
    pieces.points.clear();
    pieces.counts.clear();
    const unsigned int count = 2;
    GClipDashedPolylinesToPolygon(points, &count, 1, dashes, view, pieces.points, pieces.counts);
  }
  void ClipEvery() {
    pieces.points.clear();
    pieces.counts.clear();
    const CLineClip clip(Box2d(0.0, 0.0, 1000.0, 800.0));
    dashes.Decompose(std::span<const Vec2d>(points), [&](const Vec2d& begin, const Vec2d& end) {
      const Vec2d dash[] = {begin, end};
      clip.ClipPolyline(dash, pieces.points, pieces.counts);
    });
  }

  const double pattern[2] = {6.0, 3.0};
  Vec2d points[2];
  GLineClipPolygon view{GPolygon(0.0, 0.0, 1000.0, 800.0)};
  GDashLineGenerator dashes{pattern};
  struct {
    Points points;
    std::vector<unsigned int> counts;
  } pieces;
};

template <void (DashedLine::*CLIP)()>
void RunDashes(benchmark::State& state) {
  DashedLine line(static_cast<double>(state.range(0)));
  line.ClipInView();
  const std::size_t inView = line.pieces.counts.size();
  (line.*CLIP)();
  DemandSame(static_cast<double>(line.pieces.counts.size()), static_cast<double>(inView),
             "the dashes");
  for (auto _ : state) {
    (line.*CLIP)();
    benchmark::DoNotOptimize(line.pieces.points.data());
  }
}

void Lengths(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(10000)->Arg(1000000)->Arg(100000000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(RunDashes<&DashedLine::ClipInView>)->Name("polygons/dashes-in-view/ours")->Apply(Lengths);
BENCHMARK(RunDashes<&DashedLine::ClipEvery>)->Name("polygons/dashes-in-view/every")->Apply(Lengths);

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(RunOurs<100>)->Name("polygons/segments-in-coast-of-100/ours")->Apply(Sizes);
BENCHMARK(RunGeos<100>)->Name("polygons/segments-in-coast-of-100/geos")->Apply(Sizes);
BENCHMARK(RunOurs<1000>)->Name("polygons/segments-in-coast-of-1000/ours")->Apply(Sizes);
BENCHMARK(RunGeos<1000>)->Name("polygons/segments-in-coast-of-1000/geos")->Apply(Sizes);
BENCHMARK(RunOurs<10000>)->Name("polygons/segments-in-coast-of-10000/ours")->Apply(Sizes);
BENCHMARK(RunGeos<10000>)->Name("polygons/segments-in-coast-of-10000/geos")->Apply(Sizes);

}  // namespace
