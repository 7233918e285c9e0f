// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Clipping one contour or polyline of 10 thousand to 1 million points to a rectangle: `CPolyClip`
// and `CLineClip` beside GEOS and plain loops over all points. A coast line crosses the rectangle
// in a few places, a star of needles in most of its edges, a walk now and then. Buffers are reused.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

#include "bench/polygons/ClipPeerGeos.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/lines/LineClip.h"
#include "shared/polygons/lines/PolyClip.h"

namespace {

using namespace shr;
using namespace shr::bench;

/// What a contender leaves: one contour, or the pieces of a line.
struct Result {
  CPolyClip::Output contour;
  Points points;
  Counts counts;
  Points scratch;
};

struct OursContour {
  static void Clip(const Points& points, Result& result) {
    CPolyClip clip(CLIP_BOX);
    result.contour.clear();
    clip.Clip(points, result.contour);
    benchmark::DoNotOptimize(result.contour.data());
  }
  static double Measure(const Result& result) {
    return PolygonArea(std::span<const Vec2d>(result.contour));
  }
};

/// Sutherland and Hodgman's clipper, one whole pass over the contour a side.
struct PlainContour {
  template <class Keeps, class Cross>
  static void Pass(const Points& in, Points& out, Keeps keeps, Cross cross) {
    out.clear();
    if (in.empty()) return;
    Vec2d from = in.back();
    bool isFromInside = keeps(from);
    for (const Vec2d& to : in) {
      const bool isInside = keeps(to);
      if (isInside != isFromInside) out.push_back(cross(from, to));
      if (isInside) out.push_back(to);
      from = to;
      isFromInside = isInside;
    }
  }
  static void Clip(const Points& points, Result& result) {
    const auto [xMin, yMin, xMax, yMax] = CLIP_BOX;
    const auto atX = [](double x) {
      return [x](const Vec2d& a, const Vec2d& b) {
        return Vec2d(x, a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x));
      };
    };
    const auto atY = [](double y) {
      return [y](const Vec2d& a, const Vec2d& b) {
        return Vec2d(a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y), y);
      };
    };
    Points& a = result.points;
    Points& b = result.scratch;
    Pass(
        points, b, [x = xMax](const Vec2d& p) { return p.x <= x; }, atX(xMax));
    Pass(
        b, a, [y = yMin](const Vec2d& p) { return p.y >= y; }, atY(yMin));
    Pass(
        a, b, [x = xMin](const Vec2d& p) { return p.x >= x; }, atX(xMin));
    Pass(
        b, a, [y = yMax](const Vec2d& p) { return p.y <= y; }, atY(yMax));
    benchmark::DoNotOptimize(a.data());
  }
  static double Measure(const Result& result) { return PolygonArea(result.points); }
};

struct OursLine {
  static void Clip(const Points& points, Result& result) {
    result.points.clear();
    result.counts.clear();
    CLineClip(CLIP_BOX).ClipPolyline(points, result.points, result.counts);
    benchmark::DoNotOptimize(result.points.data());
  }
  static double Measure(const Result& result) { return LengthOf(result.points, result.counts); }
};

/// Every segment on its own, by the parameters at which it enters and leaves.
struct PlainLine {
  static void Clip(const Points& points, Result& result) {
    result.points.clear();
    result.counts.clear();
    for (std::size_t i = 1; i < points.size(); ++i) {
      Vec2d a = points[i - 1];
      Vec2d b = points[i];
      if (!ClipSegment(a, b)) continue;
      if (!result.points.empty() && result.points.back() == a) {
        result.points.push_back(b);
        ++result.counts.back();
      } else {
        result.points.push_back(a);
        result.points.push_back(b);
        result.counts.push_back(2);
      }
    }
    benchmark::DoNotOptimize(result.points.data());
  }
  static double Measure(const Result& result) { return OursLine::Measure(result); }

private:
  static bool ClipSegment(Vec2d& a, Vec2d& b) {
    const Vec2d from = a;
    const Vec2d d = b - a;
    double enter = 0.0;
    double leave = 1.0;
    const auto cut = [&](double denominator, double numerator) {
      if (denominator == 0.0) return numerator <= 0.0;
      const double t = numerator / denominator;
      if (denominator > 0.0) {
        enter = std::max(enter, t);
      } else {
        leave = std::min(leave, t);
      }
      return enter <= leave;
    };
    if (!cut(d.x, CLIP_BOX.xMin() - from.x) || !cut(-d.x, from.x - CLIP_BOX.xMax()) ||
        !cut(d.y, CLIP_BOX.yMin() - from.y) || !cut(-d.y, from.y - CLIP_BOX.yMax())) {
      return false;
    }
    if (leave < 1.0) b = from + d * leave;
    if (enter > 0.0) a = from + d * enter;
    return true;
  }
};

using MakePoints = Points (*)(std::size_t);

struct Workload {
  Points points;
  std::unique_ptr<GeosShape> geos;
};

/// Returns the points, made once; with them a GEOS shape for sizes that GEOS can take.
template <MakePoints MAKE, GeosShape::Kind KIND>
const Workload& GetWorkload(std::size_t size) {
  static std::map<std::size_t, Workload> workloads;
  const auto [entry, isNew] = workloads.try_emplace(size);
  Workload& workload = entry->second;
  if (!isNew) return workload;
  workload.points = MAKE(size);
  workload.geos = GeosShape::Make(workload.points, KIND);
  using Ours = std::conditional_t<KIND == GeosShape::Kind::LINE, OursLine, OursContour>;
  using Plain = std::conditional_t<KIND == GeosShape::Kind::LINE, PlainLine, PlainContour>;
  Result ours, plain;
  Ours::Clip(workload.points, ours);
  Plain::Clip(workload.points, plain);
  DemandSame(Ours::Measure(ours), Plain::Measure(plain), "the plain clip to a box");
  const bool isSlowForGeos = MAKE == MakeNeedles && size > 10000;
  if (workload.geos != nullptr && !isSlowForGeos) {
    DemandSame(Ours::Measure(ours), workload.geos->MeasureInBox(CLIP_BOX), "the clip to a box");
  }
  return workload;
}

template <MakePoints MAKE, GeosShape::Kind KIND, class Contender>
void RunOn(benchmark::State& state) {
  const Workload& workload = GetWorkload<MAKE, KIND>(static_cast<std::size_t>(state.range(0)));
  Result result;
  for (auto _ : state) Contender::Clip(workload.points, result);
}

template <MakePoints MAKE, GeosShape::Kind KIND>
void RunGeos(benchmark::State& state) {
  const Workload& workload = GetWorkload<MAKE, KIND>(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(workload.geos->ClipToBox(CLIP_BOX));
}

template <MakePoints MAKE, GeosShape::Kind KIND>
void CopyOnly(benchmark::State& state) {
  const Workload& workload = GetWorkload<MAKE, KIND>(static_cast<std::size_t>(state.range(0)));
  Points target(workload.points);
  for (auto _ : state) {
    std::memcpy(static_cast<void*>(target.data()), workload.points.data(),
                target.size() * sizeof(Vec2d));
    benchmark::DoNotOptimize(target.data());
    benchmark::ClobberMemory();
  }
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);
}

constexpr auto CONTOUR = GeosShape::Kind::POLYGON;
constexpr auto LINE = GeosShape::Kind::LINE;

BENCHMARK(RunOn<MakeCoast, CONTOUR, OursContour>)
    ->Name("polygons/rect-clip-coast/ours")
    ->Apply(Sizes);
BENCHMARK(RunOn<MakeCoast, CONTOUR, PlainContour>)
    ->Name("polygons/rect-clip-coast/plain")
    ->Apply(Sizes);
BENCHMARK(RunGeos<MakeCoast, CONTOUR>)->Name("polygons/rect-clip-coast/geos")->Apply(Sizes);
BENCHMARK(CopyOnly<MakeCoast, CONTOUR>)->Name("polygons/rect-clip-coast/_memcpy")->Apply(Sizes);

BENCHMARK(RunOn<MakeNeedles, CONTOUR, OursContour>)
    ->Name("polygons/rect-clip-needles/ours")
    ->Apply(Sizes);
BENCHMARK(RunOn<MakeNeedles, CONTOUR, PlainContour>)
    ->Name("polygons/rect-clip-needles/plain")
    ->Apply(Sizes);
BENCHMARK(RunGeos<MakeNeedles, CONTOUR>)
    ->Name("polygons/rect-clip-needles/geos")
    ->Arg(10000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(CopyOnly<MakeNeedles, CONTOUR>)->Name("polygons/rect-clip-needles/_memcpy")->Apply(Sizes);

BENCHMARK(RunOn<MakeCoast, LINE, OursLine>)
    ->Name("polygons/rect-clip-coast-line/ours")
    ->Apply(Sizes);
BENCHMARK(RunOn<MakeCoast, LINE, PlainLine>)
    ->Name("polygons/rect-clip-coast-line/plain")
    ->Apply(Sizes);
BENCHMARK(RunGeos<MakeCoast, LINE>)->Name("polygons/rect-clip-coast-line/geos")->Apply(Sizes);
BENCHMARK(CopyOnly<MakeCoast, LINE>)->Name("polygons/rect-clip-coast-line/_memcpy")->Apply(Sizes);

BENCHMARK(RunOn<MakeWalk, LINE, OursLine>)->Name("polygons/rect-clip-walk/ours")->Apply(Sizes);
BENCHMARK(RunOn<MakeWalk, LINE, PlainLine>)->Name("polygons/rect-clip-walk/plain")->Apply(Sizes);
BENCHMARK(RunGeos<MakeWalk, LINE>)->Name("polygons/rect-clip-walk/geos")->Apply(Sizes);
BENCHMARK(CopyOnly<MakeWalk, LINE>)->Name("polygons/rect-clip-walk/_memcpy")->Apply(Sizes);

}  // namespace
