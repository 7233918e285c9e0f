// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Boolean operations on stars, grids, combs and the countries of the world beside Boost.Geometry,
// GEOS, Clipper 6 and CGAL. Before anything is timed, the areas of all results must agree.
//
// A peer runs only up to the size that it finishes within about twenty seconds and, in the case of
// CGAL, without crashing; PEERS has the limits. Boost.Geometry is left out where its area is wrong:
// symmetric differences of rough stars and of combs.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "bench/polygons/BooleanWorkloads.h"

namespace {

using namespace shr::bench;
using shr::test::NameOf;
using shr::test::OPERATIONS;

struct Workload {
  const char* name;
  BooleanWork (*make)(std::size_t size);
  std::vector<std::int64_t> sizes;
};

const Workload WORKLOADS[] = {
    {"star-smooth", MakeSmoothStars, {100, 1000, 10000, 100000}},
    {"star-rough", MakeRoughStars, {100, 1000, 10000, 100000}},
    {"grid", MakeGrids, {10, 30, 100}},
    {"grid-turned", MakeTurnedGrids, {10, 30, 100}},
    {"comb", MakeCombs, {30, 100, 300}},
};

struct Limit {
  const char* workload;
  std::int64_t size;     ///< the largest that is run
  std::int64_t xorSize;  ///< the same for the symmetric difference
};

struct Contender {
  const char* name;
  std::unique_ptr<BooleanContender> (*make)();
  double areaTolerance;  ///< relative; of integer coordinates wider
  std::vector<Limit> limits;

  std::int64_t LargestSize(const char* workload, Operation operation) const {
    for (const Limit& limit : limits) {
      if (std::string_view(limit.workload) == workload) {
        return operation == Operation::Xor ? limit.xorSize : limit.size;
      }
    }
    return 1 << 30;
  }
};

const Contender OURS = {"ours", MakeOurContender, 1e-9, {}};
const Contender PEERS[] = {
    {"boost",
     MakeBoostContender,
     1e-9,
     {{"star-rough", 10000, 0}, {"grid", 30, 30}, {"grid-turned", 30, 30}, {"comb", 100, 0}}},
    {"geos", MakeGeosContender, 1e-9, {{"star-rough", 10000, 10000}}},
    {"clipper6", MakeClipperContender, 1e-4, {{"star-rough", 10000, 10000}}},
    {"cgal",
     MakeCgalContender,
     1e-9,
     {{"grid", 100, 30}, {"comb", 300, 100}, {"map-countries-by-grid", 0, 0}}},
};

/// Prepares contenders once and checks each result once.
class Stage {
public:
  BooleanContender& Get(const Contender& contender, const Workload& workload, std::int64_t size,
                        Operation operation) {
    std::unique_ptr<BooleanContender>& made = contenders_[{workload.name, size, contender.name}];
    if (made == nullptr) {
      made = contender.make();
      made->Prepare(workload.make(static_cast<std::size_t>(size)));
    }
    if (checked_.emplace(workload.name, size, contender.name, operation).second) {
      Check(contender, *made, {workload.name, size, operation});
    }
    return *made;
  }

private:
  using Key = std::tuple<std::string, std::int64_t, Operation>;

  void Check(const Contender& contender, BooleanContender& made, const Key& key) {
    const bool works = made.Operate(std::get<Operation>(key));
    const double area = works ? AreaOf(made.Result()) : std::nan("");
    // The first contender that comes along sets the area, so the wider tolerance decides.
    const auto [place, isFirst] = areas_.try_emplace(key, area, contender.areaTolerance);
    const auto [other, otherTolerance] = place->second;
    const double tolerance = std::max(contender.areaTolerance, otherTolerance);
    if (std::abs(area - other) <= tolerance * other) return;
    std::fprintf(stderr, "%s %lld %s: the area of %s is %.17g, that of others %.17g\n",
                 std::get<0>(key).c_str(), static_cast<long long>(std::get<1>(key)),
                 NameOf(std::get<Operation>(key)), contender.name, area, other);
    std::abort();
  }

  std::map<std::tuple<std::string, std::int64_t, std::string>, std::unique_ptr<BooleanContender>>
      contenders_;
  std::set<std::tuple<std::string, std::int64_t, std::string, Operation>> checked_;
  std::map<Key, std::pair<double, double>> areas_;
};

Stage& TheStage() {
  static Stage stage;
  return stage;
}

void Register(const Contender& contender, const Workload& workload, Operation operation) {
  const std::string name =
      std::string("polygons/") + workload.name + "-" + NameOf(operation) + "/" + contender.name;
  const auto run = [&contender, &workload, operation](benchmark::State& state) {
    BooleanContender& made = TheStage().Get(contender, workload, state.range(0), operation);
    for (auto _ : state) benchmark::DoNotOptimize(made.Operate(operation));
  };
  for (const std::int64_t size : workload.sizes) {
    if (size <= contender.LargestSize(workload.name, operation)) {
      benchmark::RegisterBenchmark(name.c_str(), run)->Arg(size)->Unit(benchmark::kMicrosecond);
    }
  }
}

/// The countries of the world, united or cut by a grid, in one contender.
class World {
public:
  explicit World(const Contender& contender) : contender_(contender) {}

  void Unite() {
    if (world_ == nullptr) {
      world_ = contender_.make();
      world_->Prepare(MakeWorld());
    }
    Demand(world_->UniteSubject());
  }
  double UnitedArea() const { return AreaOf(world_->Result()); }

  void CutByGrid() {
    if (cells_.empty()) {
      for (const BooleanWork& work : MakeCountryCells()) {
        cells_.push_back(contender_.make());
        cells_.back()->Prepare(work);
      }
    }
    for (const auto& cell : cells_) Demand(cell->Operate(Operation::Intersection));
  }
  double CutArea() const {
    double area = 0.0;
    for (const auto& cell : cells_) area += AreaOf(cell->Result());
    return area;
  }

private:
  void Demand(bool works) const {
    if (works) return;
    std::fprintf(stderr, "%s raises an error on the map\n", contender_.name);
    std::abort();
  }

  const Contender& contender_;
  std::unique_ptr<BooleanContender> world_;
  std::vector<std::unique_ptr<BooleanContender>> cells_;
};

void CheckMapArea(const char* work, const char* contender, double area) {
  static std::map<std::string, double> areas;
  const double other = areas.try_emplace(work, area).first->second;
  if (std::abs(area - other) <= 1e-6 * other) return;
  std::fprintf(stderr, "%s: the area of %s is %.17g, that of others %.17g\n", work, contender, area,
               other);
  std::abort();
}

void RegisterMap(const Contender& contender) {
  const auto world = std::make_shared<World>(contender);
  const std::string name = contender.name;
  benchmark::RegisterBenchmark(("polygons/map-countries-united/" + name).c_str(),
                               [world, name](benchmark::State& state) {
                                 world->Unite();
                                 CheckMapArea("united", name.c_str(), world->UnitedArea());
                                 for (auto _ : state) world->Unite();
                               })
      ->Unit(benchmark::kMillisecond);
  if (contender.LargestSize("map-countries-by-grid", Operation::Intersection) == 0) return;
  benchmark::RegisterBenchmark(("polygons/map-countries-by-grid/" + name).c_str(),
                               [world, name](benchmark::State& state) {
                                 world->CutByGrid();
                                 CheckMapArea("cut", name.c_str(), world->CutArea());
                                 for (auto _ : state) world->CutByGrid();
                               })
      ->Unit(benchmark::kMillisecond);
}

[[maybe_unused]] const bool REGISTERED = [] {
  for (const Workload& workload : WORKLOADS) {
    for (const Operation operation : OPERATIONS) {
      Register(OURS, workload, operation);
      for (const Contender& peer : PEERS) Register(peer, workload, operation);
    }
  }
  RegisterMap(OURS);
  for (const Contender& peer : PEERS) RegisterMap(peer);
  return true;
}();

}  // namespace
