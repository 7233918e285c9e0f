// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Registers boolean operations on workloads for contenders. Each contender tells the area of its
/// result beside its time (counters `area` and `area_tolerance`, the second one relative), and
/// tools/bench_run.py demands that the areas of a row agree.
///
///     const Workload STARS = {"star", [](std::size_t n) { return Works{MakeRoughStars(n)}; },
///                             {100, 1000}};
///     RegisterRows("polygons/", STARS, {&OURS, &GEOS});

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/polygons/BooleanWorkloads.h"

namespace shr::bench {

using Works = std::vector<BooleanWork>;

/// What is timed: one call for each work of a workload. Returns false when the library gives up.
struct Task {
  std::string name;
  std::function<bool(BooleanContender&)> run;
};

Task TaskOf(Operation operation);
std::vector<Task> AllOperations();
/// The union of all polygons of the subject.
Task UniteTask();
/// The subject grown by a distance with round joins.
Task OffsetTask(double distance);

struct Workload {
  std::string name;
  Works (*make)(std::size_t size);
  std::vector<std::int64_t> sizes;
  std::vector<Task> tasks = AllOperations();
  /// Each contender runs in a process of its own.
  bool isAlone = false;
};

/// The largest size of a workload that a contender finishes within about twenty seconds, without
/// crashing and with the right area; 0 for none.
struct Limit {
  std::string workload;
  std::int64_t size;
  std::int64_t xorSize;  ///< the same for the symmetric difference
};

struct Contender {
  const char* name;
  std::unique_ptr<BooleanContender> (*make)();
  double areaTolerance;  ///< relative; of integer coordinates wider
  std::vector<Limit> limits = {};

  bool Finishes(const std::string& workload, const Task& task, std::int64_t size) const;
};

/// The peers; those whose libraries are absent on this target are left out by `RegisterRows`.
const std::vector<Contender>& Peers();

/// Registers "<prefix><workload>-<task>/<contender>/<size>" for all sizes and tasks of a workload.
void RegisterRows(const std::string& prefix, const Workload& workload,
                  const std::vector<const Contender*>& contenders);
/// The same under a name for the row, with one task.
void RegisterRow(const std::string& row, const Workload& workload, const Task& task,
                 const std::vector<const Contender*>& contenders);

/// Returns `ours` and then the peers of the names given, all of them without names.
std::vector<const Contender*> WithPeers(const Contender& ours,
                                        const std::vector<std::string>& names = {});

}  // namespace shr::bench
