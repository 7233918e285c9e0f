// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The boolean operations of `GPolygon2d` beside the clipper alone (`_gpc`, a limit: what the
// engine takes without the class) and the peers, the union of many polygons in one run beside the
// cascaded unions of the peers, and the offset of a coast line.

#include "bench/polygons/BooleanBench.h"

namespace {

using namespace shr::bench;

const Contender OURS = {"ours", MakeGPolygon2dContender, 1e-9};
const Contender CLIPPER_ALONE = {"_gpc", MakeOurContender, 1e-9};
/// Arcs of contenders are cut in other places, within the same tolerance.
const Contender OFFSET_CONTENDERS[] = {
    {"ours", MakeGPolygonContender, 1e-4},
    {"geos", MakeGeosContender, 1e-4},
    {"clipper6", MakeClipperContender, 1e-4},
};

template <BooleanWork (*MAKE)(std::size_t size)>
Works One(std::size_t size) {
  return {MAKE(size)};
}

const std::vector<Task> TWO = {TaskOf(Operation::Intersection), TaskOf(Operation::Union)};

const Workload WORKLOADS[] = {
    {"polygon", One<MakePolygons>, {4, 6, 10, 20, 50}},
    {"star-smooth", One<MakeSmoothStars>, {100, 1000, 10000, 100000}, TWO},
    {"star-rough", One<MakeRoughStars>, {100, 1000, 10000, 100000}, TWO},
    {"grid", One<MakeGrids>, {10, 30, 100}, TWO, true},
    {"comb", One<MakeCombs>, {30, 100, 300}, TWO, true},
    {"spokes", One<MakeSpokes>, {100, 1000, 10000}, TWO},
};

/// Polygons that overlap, united by the non-zero rule.
const Workload UNITED[] = {
    {"circles", One<MakeCircles>, {100, 1000, 10000}, {UniteTask()}},
    {"quads", One<MakeQuads>, {6, 12, 24}, {UniteTask()}},
    {"bundle", One<MakeBundles>, {80, 140, 278}, {UniteTask()}},
};

const Workload WORLD = {"map-countries", One<MakeWorld>, {0}, {}, true};
const Workload COUNTIES = {"counties", One<MakeCounties>, {100, 1000, 10000}, {UniteTask()}, true};
const Workload COUNTY_CELLS = {"counties-by-grid", MakeCountiesByGrid, {100, 1000}, {}, true};
const Workload CELLS = {"map-countries-by-grid", MakeCountryCells, {0}, {}, true};
const Workload COAST = {"coast", One<MakeCoastLine>, {1000, 10000, 100000}, {OffsetTask(1.0)}};

std::vector<const Contender*> WithClipperAndPeers() {
  std::vector<const Contender*> contenders = WithPeers(OURS, {"boost", "geos", "clipper6"});
  contenders.push_back(&CLIPPER_ALONE);
  return contenders;
}

[[maybe_unused]] const bool REGISTERED = [] {
  const std::string prefix = "polygons/GPolygon2d-";
  for (const Workload& workload : WORKLOADS) RegisterRows(prefix, workload, WithClipperAndPeers());
  for (const Workload& workload : UNITED) {
    RegisterRows(prefix, workload, WithPeers(OURS, {"geos", "clipper6"}));
  }
  RegisterRow(prefix + "map-countries-united", WORLD, UniteTask(), WithClipperAndPeers());
  RegisterRow(prefix + "map-countries-by-grid", CELLS, TaskOf(Operation::Intersection),
              WithClipperAndPeers());
  RegisterRows(prefix, COUNTIES, WithPeers(OURS, {"geos", "clipper6"}));
  RegisterRow(prefix + "counties-by-grid", COUNTY_CELLS, TaskOf(Operation::Intersection),
              WithPeers(OURS, {"boost", "geos", "clipper6"}));
  std::vector<const Contender*> offset;
  for (const Contender& contender : OFFSET_CONTENDERS) offset.push_back(&contender);
  RegisterRows("polygons/", COAST, offset);
  return true;
}();

}  // namespace
