// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The number of rounds is found as usual: one round, then so many more that a run should last
// the least time, until it does. All repetitions take that number.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <regex>
#include <string_view>

#include "bench/driver/benchmark/benchmark.h"

namespace benchmark {
namespace {

using internal::Benchmark;

constexpr std::int64_t MAX_ROUNDS = 1'000'000'000;

/// A run lasts so many seconds at least, of which an error of a tick of the clock is little.
constexpr double LEAST_SECONDS = 0.3;

std::vector<std::unique_ptr<Benchmark>>& Registered() {
  static std::vector<std::unique_ptr<Benchmark>> benchmarks;
  return benchmarks;
}

double WallSeconds() {
  using Seconds = std::chrono::duration<double>;
  return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

struct Options {
  bool list = false;
  std::string filter = ".";
  int repetitions = 1;
  double minTime = 0.5;
  std::string out;
};

/// One benchmark at one size.
struct Instance {
  const Benchmark* benchmark;
  std::vector<std::int64_t> arguments;
  std::string name;
};

Options ParseOptions(int count, char** words) {
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::string word = words[i];
    const std::size_t equals = std::min(word.find('='), word.size());
    const std::string key = word.substr(0, equals);
    const std::string value = word.substr(std::min(equals + 1, word.size()));
    if (key == "--benchmark_list_tests") options.list = value.empty() || value == "true";
    if (key == "--benchmark_filter") options.filter = value;
    if (key == "--benchmark_repetitions")
      options.repetitions = std::max(std::atoi(value.c_str()), 1);
    if (key == "--benchmark_min_time") options.minTime = std::atof(value.c_str());
    if (key == "--benchmark_out") options.out = value;
  }
  return options;
}

std::vector<Instance> FindInstances(const std::string& filter) {
  const std::regex wanted(filter, std::regex::extended);
  std::vector<Instance> found;
  const auto add = [&](const Benchmark& benchmark, const std::vector<std::int64_t>& arguments) {
    std::string name = benchmark.GetName();
    for (const std::int64_t argument : arguments) name += '/' + std::to_string(argument);
    if (std::regex_search(name, wanted)) found.push_back({&benchmark, arguments, name});
  };
  for (const auto& benchmark : Registered()) {
    if (benchmark->GetArguments().empty()) add(*benchmark, {});
    for (const auto& arguments : benchmark->GetArguments()) add(*benchmark, arguments);
  }
  return found;
}

State RunOnce(const Instance& instance, std::int64_t rounds) {
  State state(instance.arguments, rounds);
  instance.benchmark->Run(state);
  return state;
}

/// Runs until a run lasts `minTime`; returns that run.
State FindRounds(const Instance& instance, double minTime) {
  std::int64_t rounds = 1;
  for (;;) {
    State state = RunOnce(instance, rounds);
    const double seconds = state.Seconds();
    if (seconds >= minTime || rounds >= MAX_ROUNDS || !state.Error().empty()) return state;
    // A run that is short beside a tick of the clock foretells little.
    const double factor = seconds < minTime / 10 ? 10.0 : 1.2 * minTime / seconds;
    const double wanted = std::ceil(static_cast<double>(rounds) * factor);
    rounds = std::clamp(static_cast<std::int64_t>(wanted), rounds + 1, MAX_ROUNDS);
  }
}

void WriteResult(std::FILE* out, const Instance& instance, const State& state, bool isFirst) {
  std::fprintf(out, "%s\n    {\"name\": \"%s\", \"run_name\": \"%s\", \"run_type\": \"iteration\",",
               isFirst ? "" : ",", instance.name.c_str(), instance.name.c_str());
  if (!state.Error().empty()) {
    std::fprintf(out, " \"error_occurred\": true, \"error_message\": \"%s\",",
                 state.Error().c_str());
  }
  for (const auto& [name, counter] : state.counters) {
    std::fprintf(out, " \"%s\": %.17g,", name.c_str(), counter.value);
  }
  const double nanoseconds = state.Seconds() / static_cast<double>(state.iterations()) * 1e9;
  std::fprintf(out, " \"iterations\": %lld, \"cpu_time\": %.17g, \"time_unit\": \"ns\"}",
               static_cast<long long>(state.iterations()), nanoseconds);
}

bool RunAll(const Options& options) {
  std::FILE* const out = options.out.empty() ? stdout : std::fopen(options.out.c_str(), "wb");
  if (out == nullptr) {
    std::fprintf(stderr, "cannot write %s\n", options.out.c_str());
    return false;
  }
  std::fprintf(out, "{\n  \"context\": {},\n  \"benchmarks\": [");
  bool isFirst = true;
  for (const Instance& instance : FindInstances(options.filter)) {
    const Benchmark& benchmark = *instance.benchmark;
    const double asked = benchmark.GetMinTime() > 0 ? benchmark.GetMinTime() : options.minTime;
    const double minTime = std::max(asked, LEAST_SECONDS);
    const std::int64_t fixed = benchmark.GetIterations();
    State state = fixed > 0 ? RunOnce(instance, fixed) : FindRounds(instance, minTime);
    const std::int64_t rounds = state.iterations();
    for (int repetition = 0; repetition < options.repetitions; ++repetition) {
      if (repetition > 0) state = RunOnce(instance, rounds);
      WriteResult(out, instance, state, isFirst);
      std::fflush(out);  // what is measured stays when the program is ended before its end
      isFirst = false;
    }
  }
  std::fprintf(out, "\n  ]\n}\n");
  return out == stdout || std::fclose(out) == 0;
}

}  // namespace

void State::PauseTiming() {
  pauseStart_ = WallSeconds();
}

void State::ResumeTiming() {
  paused_ += WallSeconds() - pauseStart_;
}

namespace internal {

Benchmark* Benchmark::Range(std::int64_t first, std::int64_t last) {
  Arg(first);
  std::int64_t power = 1;
  while (power <= first) power *= factor_;
  for (; power < last; power *= factor_) Arg(power);
  if (last > first) Arg(last);
  return this;
}

}  // namespace internal

Benchmark* RegisterBenchmark(const char* name, std::function<void(State&)> run) {
  Registered().push_back(std::make_unique<Benchmark>(name, std::move(run)));
  return Registered().back().get();
}

}  // namespace benchmark

int main(int count, char** words) {
  const benchmark::Options options = benchmark::ParseOptions(count, words);
  if (!options.list) return benchmark::RunAll(options) ? 0 : 1;
  for (const benchmark::Instance& instance : benchmark::FindInstances(options.filter)) {
    std::puts(instance.name.c_str());
  }
  return 0;
}
