// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Setting and getting N doubles by name in random order. The peer is Boost.PropertyTree with wide
// text, which also keeps values as text. Both must give back the doubles that were set before they
// are timed.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/property_tree/ptree.hpp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "shared/commands/ParamList.h"

namespace {

using shr::GString;

struct Workload {
  std::vector<GString> names;
  std::vector<double> values;
};

Workload MakeWorkload(std::size_t count) {
  constexpr unsigned SEED = 4;
  std::mt19937_64 random(SEED);
  Workload work;
  for (std::size_t i = 0; i < count; ++i) {
    work.names.push_back(GString(L"Parameter" + std::to_wstring(i)));
  }
  std::shuffle(work.names.begin(), work.names.end(), random);
  std::uniform_real_distribution<double> uniform(-1000, 1000);
  for (std::size_t i = 0; i < count; ++i) work.values.push_back(uniform(random));
  return work;
}

const Workload& WorkloadOf(std::size_t count) {
  static std::map<std::size_t, Workload> works;
  Workload& work = works[count];
  if (work.names.empty()) work = MakeWorkload(count);
  return work;
}

class Ours {
public:
  void Set(const GString& name, double value) { list_.Set(name, value); }
  double Get(const GString& name) const {
    double value = 0;
    list_.Get(name, value);
    return value;
  }

private:
  shr::CParamList list_;
};

class PropertyTree {
public:
  void Set(const GString& name, double value) { tree_.put(name.String(), value); }
  double Get(const GString& name) const { return tree_.get<double>(name.String(), 0.0); }

private:
  boost::property_tree::wptree tree_;
};

template <typename List>
List Filled(const Workload& work) {
  List list;
  for (std::size_t i = 0; i < work.names.size(); ++i) list.Set(work.names[i], work.values[i]);
  return list;
}

template <typename List>
void Check(const Workload& work, const List& list) {
  for (std::size_t i = 0; i < work.names.size(); ++i) {
    if (list.Get(work.names[i]) == work.values[i]) continue;
    std::fprintf(stderr, "a contender gives another value than was set\n");
    std::abort();
  }
}

template <typename List>
void Set(benchmark::State& state) {
  const Workload& work = WorkloadOf(static_cast<std::size_t>(state.range(0)));
  Check(work, Filled<List>(work));
  for (auto _ : state) benchmark::DoNotOptimize(Filled<List>(work));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename List>
void Get(benchmark::State& state) {
  const Workload& work = WorkloadOf(static_cast<std::size_t>(state.range(0)));
  const List list = Filled<List>(work);
  Check(work, list);
  for (auto _ : state) {
    double sum = 0;
    for (const GString& name : work.names) sum += list.Get(name);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(Set<Ours>)->Name("commands/params-set/ours")->Apply(Sizes);
BENCHMARK(Set<PropertyTree>)->Name("commands/params-set/ptree")->Apply(Sizes);
BENCHMARK(Get<Ours>)->Name("commands/params-get/ours")->Apply(Sizes);
BENCHMARK(Get<PropertyTree>)->Name("commands/params-get/ptree")->Apply(Sizes);

}  // namespace
