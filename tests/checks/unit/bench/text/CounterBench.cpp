// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Words counted by the unit and by the standard's hash table.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <unordered_map>

#include "shared/text/Counter.h"

namespace {

std::wstring Word(std::int64_t number) {
  return std::to_wstring(number % 97);
}

void CountOurs(benchmark::State& state) {
  for (auto _ : state) {
    shr::Counter counter;
    for (std::int64_t i = 0; i < state.range(0); ++i) counter.Add(Word(i));
    benchmark::DoNotOptimize(counter);
  }
}

void CountMap(benchmark::State& state) {
  for (auto _ : state) {
    std::unordered_map<std::wstring, std::size_t> times;
    for (std::int64_t i = 0; i < state.range(0); ++i) ++times[Word(i)];
    benchmark::DoNotOptimize(times);
  }
}

// [names]
BENCHMARK(CountOurs)->Name("text/count/ours")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(CountMap)->Name("text/count/unordered_map")->Arg(1000)->Arg(10000)->Arg(100000);
// [end]

}  // namespace
