// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Labels of towns on one map, half of them in crowds, on twice the room that they take: ours by
// priority into eight positions and four, and beside it the plain way, which gives each label the
// first position alone and compares it with all that are placed. The share of labels that each
// places is the counter "placed". Before anything is timed a sweep over all boxes and markers,
// which knows nothing of the placer, finds that none overlap.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <vector>

#include "shared/plots/LabelPlacement.h"

namespace {

using namespace shr;

using Places = std::vector<std::optional<LabelPlace>>;

struct Map {
  Box2d frame;
  std::vector<PointLabel> labels;
};

Map MakeMap(std::size_t count) {
  constexpr double ROOM_A_LABEL = 2 * 55 * 12;
  constexpr std::size_t CROWDS = 20;
  std::mt19937_64 random(7);
  const auto unit = [&] { return static_cast<double>(random() >> 11) * 0x1p-53; };
  const double side = std::sqrt(static_cast<double>(count) * ROOM_A_LABEL);
  Map map{Box2d(0, 0, side, side), {}};
  std::vector<Vec2d> crowds;
  for (std::size_t i = 0; i < CROWDS; ++i) crowds.emplace_back(side * unit(), side * unit());
  for (std::size_t i = 0; i < count; ++i) {
    Vec2d point(side * unit(), side * unit());
    if (i % 2 == 0) {
      const Vec2d off(unit() + unit() - 1, unit() + unit() - 1);
      point = crowds[i / 2 % CROWDS] + off * (side / 8);
    }
    map.labels.push_back({point, 2, {20 + 70 * unit(), 9, 3, 2.5}, unit(), true});
  }
  return map;
}

Places PlaceOurs(const Map& map, std::span<const LabelPosition> positions) {
  return PlaceLabels(map.labels, map.frame, {}, {positions});
}

bool Overlap(const Box2d& a, const Box2d& b) {
  return a.xMin() < b.xMax() && b.xMin() < a.xMax() && a.yMin() < b.yMax() && b.yMin() < a.yMax();
}

Box2d MarkerOf(const PointLabel& label) {
  const Vec2d reach(label.radius, label.radius);
  return Box2d(label.point - reach, label.point + reach);
}

Places PlacePlainly(const Map& map) {
  std::vector<std::size_t> order(map.labels.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return map.labels[a].priority > map.labels[b].priority;
  });
  Places places(order.size());
  std::vector<Box2d> taken;
  const auto isFree = [&](const Box2d& box) {
    return map.frame.Contains(box) &&
           std::none_of(taken.begin(), taken.end(),
                        [&](const Box2d& other) { return Overlap(box, other); });
  };
  for (const std::size_t i : order) {
    const PointLabel& label = map.labels[i];
    const Vec2d start = label.point + Vec2d(label.radius + 2.5, label.extent.middle);
    const Box2d box(start.x, start.y - label.extent.ascent, start.x + label.extent.width,
                    start.y + label.extent.descent);
    if (!isFree(box) || !isFree(MarkerOf(label))) continue;
    taken.push_back(box);
    taken.push_back(MarkerOf(label));
    places[i] = LabelPlace{LabelPosition::Right, LabelAnchor::Start, start, box};
  }
  return places;
}

/// Ends the program when two boxes or markers of different labels overlap: a sweep from left to
/// right over the boxes that the sweep line crosses.
void CheckNoOverlap(const Map& map, const Places& places, const char* name) {
  struct Item {
    Box2d box;
    std::size_t label;
  };
  std::vector<Item> items;
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!places[i]) continue;
    items.push_back({places[i]->box, i});
    items.push_back({MarkerOf(map.labels[i]), i});
  }
  std::sort(items.begin(), items.end(),
            [](const Item& a, const Item& b) { return a.box.xMin() < b.box.xMin(); });
  std::vector<Item> active;
  for (const Item& item : items) {
    std::erase_if(active, [&](const Item& a) { return a.box.xMax() <= item.box.xMin(); });
    for (const Item& a : active) {
      if (a.label == item.label || !Overlap(a.box, item.box)) continue;
      std::fprintf(stderr, "%s: labels %zu and %zu overlap.\n", name, a.label, item.label);
      std::abort();
    }
    active.push_back(item);
  }
}

void Report(benchmark::State& state, const Map& map, const Places& places, const char* name) {
  const auto placed = std::count_if(places.begin(), places.end(),
                                    [](const auto& place) { return place.has_value(); });
  const double share = static_cast<double>(placed) / static_cast<double>(places.size());
  static std::set<std::pair<const char*, std::size_t>> checked;
  if (checked.insert({name, places.size()}).second) {
    CheckNoOverlap(map, places, name);
    std::fprintf(stderr, "%s places %.1f %% of %zu labels.\n", name, 100 * share, places.size());
  }
  state.counters["placed"] = share;
}

template <class Place>
void Run(benchmark::State& state, const char* name, const Place& place) {
  const Map map = MakeMap(static_cast<std::size_t>(state.range(0)));
  Report(state, map, place(map), name);
  for (auto _ : state) benchmark::DoNotOptimize(place(map).size());
}

void EightOurs(benchmark::State& state) {
  Run(state, "Ours in eight positions",
      [](const Map& map) { return PlaceOurs(map, EIGHT_LABEL_POSITIONS); });
}

void FourOurs(benchmark::State& state) {
  Run(state, "Ours in four positions",
      [](const Map& map) { return PlaceOurs(map, FOUR_LABEL_POSITIONS); });
}

void FirstPlain(benchmark::State& state) {
  Run(state, "The first position", PlacePlainly);
}

BENCHMARK(EightOurs)->Name("plots/label-placement/ours")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(FourOurs)->Name("plots/label-placement-four/ours")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(FirstPlain)->Name("plots/label-placement/first")->Arg(1000)->Arg(10000)->Arg(100000);

}  // namespace
