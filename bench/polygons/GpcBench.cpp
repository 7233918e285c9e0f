// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The clipper, `gpc_polygon_clip`, beside Boost.Geometry, GEOS, Clipper 6 and CGAL: polygons of a
// few vertices, stars, grids, combs, the countries of the world, and what is hard for every engine:
// many edges in one point, and edges that nearly coincide. Peers are timed as far as they come, see
// `Limit`. In grids, combs and maps each contender has a process of its own.

#include "bench/polygons/BooleanBench.h"

namespace {

using namespace shr::bench;

const Contender OURS = {"ours", MakeOurContender, 1e-9};

template <BooleanWork (*MAKE)(std::size_t size)>
Works One(std::size_t size) {
  return {MAKE(size)};
}

const std::vector<Task> TWO = {TaskOf(Operation::Intersection), TaskOf(Operation::Union)};

const Workload WORKLOADS[] = {
    {"polygon", One<MakePolygons>, {4, 6, 10, 20, 50}},
    {"star-smooth", One<MakeSmoothStars>, {100, 1000, 10000, 100000}},
    {"star-rough", One<MakeRoughStars>, {100, 1000, 10000, 100000}},
    {"grid", One<MakeGrids>, {10, 30, 100}, AllOperations(), true},
    {"grid-turned", One<MakeTurnedGrids>, {10, 30, 100}, AllOperations(), true},
    {"comb", One<MakeCombs>, {30, 100, 300}, AllOperations(), true},
    {"spokes", One<MakeSpokes>, {100, 1000, 10000}, TWO},
};

/// Thousands of different pairs, so that nothing is foretold by the call before.
const Workload MANY = {"polygon-many", MakeManyPolygons, {4, 6, 10, 20, 50}, TWO};

/// Contours of an operand cross each other, which of the peers Clipper 6 alone takes.
const Workload CROSSING_WORKLOADS[] = {
    {"pencil", One<MakePencils>, {40, 120, 400}, TWO},
    {"quads", One<MakeQuads>, {6, 12, 24}, TWO},
    {"needles", One<MakeNeedlesAndSquare>, {10, 30}, TWO},
    {"bundle", One<MakeBundles>, {80, 140, 278}, TWO},
};

const Workload WORLD = {"map-countries", One<MakeWorld>, {0}, {}, true};
const Workload COUNTIES = {"counties", One<MakeCounties>, {100, 1000, 10000}, {UniteTask()}, true};
const Workload COUNTY_CELLS = {"counties-by-grid", MakeCountiesByGrid, {100, 1000}, {}, true};
const Workload CELLS = {"map-countries-by-grid", MakeCountryCells, {0}, {}, true};

[[maybe_unused]] const bool REGISTERED = [] {
  for (const Workload& workload : WORKLOADS) {
    RegisterRows("polygons/", workload, WithPeers(OURS));
  }
  RegisterRows("polygons/", MANY, WithPeers(OURS, {"boost", "geos", "clipper6"}));
  for (const Workload& workload : CROSSING_WORKLOADS) {
    RegisterRows("polygons/", workload, WithPeers(OURS, {"clipper6"}));
  }
  RegisterRow("polygons/map-countries-united", WORLD, UniteTask(), WithPeers(OURS));
  RegisterRow("polygons/map-countries-by-grid", CELLS, TaskOf(Operation::Intersection),
              WithPeers(OURS));
  RegisterRows("polygons/", COUNTIES, WithPeers(OURS, {"geos", "clipper6"}));
  RegisterRow("polygons/counties-by-grid", COUNTY_CELLS, TaskOf(Operation::Intersection),
              WithPeers(OURS, {"boost", "geos", "clipper6"}));
  return true;
}();

}  // namespace
