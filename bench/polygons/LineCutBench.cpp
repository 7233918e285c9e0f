// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Rivers, cut into what lies inside and what lies outside of a coast line: n points in lines of a
// hundred points across the map, which meet each other nowhere, and a coast of n vertices. Here
// both kinds of pieces come of one run, elsewhere of one run each.

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <random>

#include "bench/polygons/LineCutContender.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/lines/PolylineCut.h"

namespace {

using namespace shr;
using namespace shr::bench;

std::vector<Points> MakeRivers(std::size_t size) {
  constexpr std::size_t LINE_SIZE = 100;
  const std::size_t count = size / LINE_SIZE;
  const double distance = 1000.0 / static_cast<double>(count);
  std::mt19937_64 random(size);
  std::uniform_real_distribution<double> jitter(-0.2 * distance, 0.2 * distance);
  std::vector<Points> lines(count);
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t j = 0; j < LINE_SIZE; ++j) {
      const double x = 1000.0 * static_cast<double>(j) / (LINE_SIZE - 1.0);
      const double bend = 30.0 * std::sin(x / 70.0);
      lines[i].emplace_back(x, (static_cast<double>(i) + 0.5) * distance + bend + jitter(random));
    }
  }
  return lines;
}

class OurLineCutter : public LineCutter {
public:
  void Prepare(const std::vector<Points>& lines, const Points& polygon) override {
    for (const Points& line : lines) lines_.emplace_back(std::span<const Vec2d>(line));
    polygon_ = GPolygon(polygon);
  }
  void Cut() override { pieces_ = CutPolylines(lines_, polygon_); }
  LineLengths Lengths() const override {
    LineLengths lengths;
    for (const PolylinePiece& piece : pieces_) {
      (piece.place == PolylinePlace::Inside ? lengths.inside : lengths.outside) +=
          piece.points.GetLength();
    }
    return lengths;
  }

private:
  std::vector<GPolyline> lines_;
  GPolygon polygon_;
  std::vector<PolylinePiece> pieces_;
};

std::unique_ptr<LineCutter> MakeOurLineCutter() {
  return std::make_unique<OurLineCutter>();
}

using Make = std::unique_ptr<LineCutter> (*)();

/// Returns a contender at work on a size, whose result is compared with ours.
template <Make MAKE>
LineCutter* Prepared(std::size_t size) {
  static std::map<std::size_t, std::unique_ptr<LineCutter>> cutters;
  const auto [entry, isNew] = cutters.try_emplace(size);
  if (!isNew) return entry->second.get();
  entry->second = MAKE();
  if (entry->second == nullptr) return nullptr;
  const std::unique_ptr<LineCutter> ours = MakeOurLineCutter();
  for (LineCutter* cutter : {entry->second.get(), ours.get()}) {
    cutter->Prepare(MakeRivers(size), MakeCoast(size));
    cutter->Cut();
  }
  // Clipper 6 rounds to integers.
  constexpr double TOLERANCE = 1e-6;
  const LineLengths a = entry->second->Lengths();
  const LineLengths b = ours->Lengths();
  const double all = a.inside + a.outside;
  if (std::abs(a.inside - b.inside) + std::abs(a.outside - b.outside) > TOLERANCE * all) {
    DemandSame(b.inside, a.inside, "the length inside");
    DemandSame(b.outside, a.outside, "the length outside");
  }
  return entry->second.get();
}

template <Make MAKE>
void Run(benchmark::State& state) {
  LineCutter* const cutter = Prepared<MAKE>(static_cast<std::size_t>(state.range(0)));
  if (cutter == nullptr) return state.SkipWithError("absent");
  for (auto _ : state) cutter->Cut();
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
}

[[maybe_unused]] const bool REGISTERED = [] {
  const char* const row = "polygons/lines-by-coast/";
  const auto add = [&](const char* name, auto run, Make make) {
    if (make() == nullptr) return;
    benchmark::RegisterBenchmark((std::string(row) + name).c_str(), run)->Apply(Sizes);
  };
  add("ours", Run<MakeOurLineCutter>, MakeOurLineCutter);
  add("clipper6", Run<MakeClipperLineCutter>, MakeClipperLineCutter);
  add("geos", Run<MakeGeosLineCutter>, MakeGeosLineCutter);
  return true;
}();

}  // namespace
