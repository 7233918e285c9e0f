// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "bench/polygons/BooleanBench.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <tuple>

namespace shr::bench {
namespace {

/// The works of a workload at one size, prepared for one contender.
class PreparedWorks {
public:
  PreparedWorks(const Contender& contender, const Works& works) {
    for (const BooleanWork& work : works) {
      contenders_.push_back(contender.make());
      contenders_.back()->Prepare(work);
    }
  }

  bool Run(const Task& task) {
    return std::all_of(contenders_.begin(), contenders_.end(),
                       [&](const auto& contender) { return task.run(*contender); });
  }
  double Area() const {
    double area = 0.0;
    for (const auto& contender : contenders_) area += AreaOf(contender->Result());
    return area;
  }

private:
  std::vector<std::unique_ptr<BooleanContender>> contenders_;
};

/// Returns the works of a contender, which are prepared once for all tasks.
PreparedWorks& Prepared(const Contender& contender, const Workload& workload, std::int64_t size) {
  static std::map<std::tuple<const Contender*, std::string, std::int64_t>, PreparedWorks> prepared;
  const auto key = std::tuple(&contender, workload.name, size);
  const auto found = prepared.find(key);
  if (found != prepared.end()) return found->second;
  const Works works = workload.make(static_cast<std::size_t>(size));
  return prepared.try_emplace(key, contender, works).first->second;
}

void Run(benchmark::State& state, const Contender& contender, const Workload& workload,
         const Task& task) {
  PreparedWorks& works = Prepared(contender, workload, state.range(0));
  bool isRight = works.Run(task);
  state.counters["area"] = isRight ? works.Area() : 0.0;
  state.counters["area_tolerance"] = contender.areaTolerance;
  for (auto _ : state) isRight = works.Run(task) && isRight;
  if (!isRight) state.SkipWithError("the library gives up");
}

bool IsPresent(const Contender& contender) {
  return contender.make() != nullptr;
}

}  // namespace

Task TaskOf(Operation operation) {
  return {test::NameOf(operation),
          [operation](BooleanContender& contender) { return contender.Operate(operation); }};
}

std::vector<Task> AllOperations() {
  std::vector<Task> tasks;
  for (const Operation operation : test::OPERATIONS) tasks.push_back(TaskOf(operation));
  return tasks;
}

Task UniteTask() {
  return {"unite", [](BooleanContender& contender) { return contender.UniteSubject(); }};
}

Task OffsetTask(double distance) {
  return {"offset",
          [distance](BooleanContender& contender) { return contender.OffsetSubject(distance); }};
}

bool Contender::Finishes(const std::string& workload, const Task& task, std::int64_t size) const {
  const bool isXor = task.name == test::NameOf(Operation::Xor);
  return std::none_of(limits.begin(), limits.end(), [&](const Limit& limit) {
    return limit.workload == workload && size > (isXor ? limit.xorSize : limit.size);
  });
}

const std::vector<Contender>& Peers() {
  // Boost.Geometry, GEOS and CGAL take valid polygons, so they have no rows where contours of an
  // operand cross each other. Boost.Geometry is left out where its area is wrong: symmetric
  // differences of rough stars and of combs.
  static const std::vector<Contender> PEERS = {
      {"boost",
       MakeBoostContender,
       1e-9,
       {{"star-rough", 10000, 0}, {"grid", 30, 30}, {"grid-turned", 30, 30}, {"comb", 100, 0}}},
      {"geos", MakeGeosContender, 1e-9, {{"star-rough", 10000, 10000}}},
      {"clipper6", MakeClipperContender, 1e-4, {{"star-rough", 10000, 10000}}},
      {"cgal",
       MakeCgalContender,
       1e-9,
       {{"polygon", -1, -1},
        {"grid", 100, 30},
        {"comb", 300, 100},
        {"map-countries-by-grid", -1, -1}}},
  };
  return PEERS;
}

void RegisterRow(const std::string& row, const Workload& workload, const Task& task,
                 const std::vector<const Contender*>& contenders) {
  for (const Contender* contender : contenders) {
    if (!IsPresent(*contender)) continue;
    const std::string name = row + "/" + contender->name + (workload.isAlone ? "@alone" : "");
    for (const std::int64_t size : workload.sizes) {
      if (!contender->Finishes(workload.name, task, size)) continue;
      const auto run = [contender, &workload, task](benchmark::State& state) {
        Run(state, *contender, workload, task);
      };
      benchmark::RegisterBenchmark(name.c_str(), run)->Arg(size)->Unit(benchmark::kMicrosecond);
    }
  }
}

void RegisterRows(const std::string& prefix, const Workload& workload,
                  const std::vector<const Contender*>& contenders) {
  for (const Task& task : workload.tasks) {
    RegisterRow(prefix + workload.name + "-" + task.name, workload, task, contenders);
  }
}

std::vector<const Contender*> WithPeers(const Contender& ours,
                                        const std::vector<std::string>& names) {
  std::vector<const Contender*> contenders = {&ours};
  for (const Contender& peer : Peers()) {
    if (names.empty() || std::find(names.begin(), names.end(), peer.name) != names.end()) {
      contenders.push_back(&peer);
    }
  }
  return contenders;
}

}  // namespace shr::bench
