// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A plain timing driver for targets for which Google Benchmark is not packaged (MinGW-w64): that
/// part of its interface which our benchmarks use, so that the same sources build for both.
///
/// It measures the CPU time of the benchmark's thread and writes results in Google
/// Benchmark's JSON form with the same names, for tools/bench_table.py. What it leaves out on
/// purpose: threads, fixtures, statistics, random interleaving and console tables. Options that it
/// does not know are ignored.
///
///     program --benchmark_list_tests
///     program --benchmark_filter=REGEX --benchmark_repetitions=5 --benchmark_min_time=0.1
///             --benchmark_out=FILE
///
/// Threads: benchmarks are registered and run on one thread.

#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace benchmark {

/// Accepted for the sake of the sources; results are always written in nanoseconds.
enum TimeUnit { kNanosecond, kMicrosecond, kMillisecond, kSecond };

/// CPU seconds of the thread so far. Waits for the next tick of the system's account, which may be
/// 16 ms long, so that differences are finer than a tick.
double CpuSeconds();

/// A number that a benchmark reports beside its time.
struct Counter {
  double value = 0;
  Counter(double number = 0) : value(number) {}
};

/// One run of a benchmark: its argument, and the loop that is timed.
class State {
public:
  State(std::vector<std::int64_t> arguments, std::int64_t iterations)
      : arguments_(std::move(arguments)), iterations_(iterations) {}

  /// What the loop variable of `for (auto _ : state)` is.
  struct [[maybe_unused]] Round {};

  class Iterator {
  public:
    Iterator() = default;
    explicit Iterator(State* state) : state_(state), left_(state->iterations_) {}
    Round operator*() const { return {}; }
    Iterator& operator++() {
      --left_;
      return *this;
    }
    /// Stops the clock when the rounds are over.
    bool operator!=(const Iterator&) {
      if (left_ > 0) return true;
      state_->Stop();
      return false;
    }

  private:
    State* state_ = nullptr;
    std::int64_t left_ = 0;
  };

  Iterator begin() {
    start_ = CpuSeconds();
    return Iterator(this);
  }
  Iterator end() { return {}; }

  std::int64_t range(std::size_t index = 0) const { return arguments_.at(index); }
  std::int64_t iterations() const { return iterations_; }
  void SetItemsProcessed(std::int64_t) {}
  void SetBytesProcessed(std::int64_t) {}

  /// What lies between the two is not timed. It is measured by the wall clock, which is finer.
  void PauseTiming();
  void ResumeTiming();

  /// The loop still runs; the result tells that the benchmark failed.
  void SkipWithError(const char* message) { error_ = message; }

  double Seconds() const { return seconds_; }
  const std::string& Error() const { return error_; }

  std::map<std::string, Counter> counters;

private:
  void Stop() { seconds_ = CpuSeconds() - start_ - paused_; }

  std::vector<std::int64_t> arguments_;
  std::int64_t iterations_;
  double start_ = 0;
  double seconds_ = 0;
  double paused_ = 0;
  double pauseStart_ = 0;
  std::string error_;
};

namespace internal {

/// A registered benchmark; the calls set it up and return it.
class Benchmark {
public:
  Benchmark(std::string name, std::function<void(State&)> run)
      : name_(std::move(name)), run_(std::move(run)) {}

  Benchmark* Name(const std::string& name) {
    name_ = name;
    return this;
  }
  Benchmark* Arg(std::int64_t value) { return Args({value}); }
  Benchmark* Args(const std::vector<std::int64_t>& values) {
    arguments_.push_back(values);
    return this;
  }
  Benchmark* RangeMultiplier(int factor) {
    factor_ = factor;
    return this;
  }
  /// From `first` by the powers of the multiplier in between to `last`, both included.
  Benchmark* Range(std::int64_t first, std::int64_t last);
  Benchmark* Apply(void (*setUp)(Benchmark*)) {
    setUp(this);
    return this;
  }
  Benchmark* Unit(TimeUnit) { return this; }
  Benchmark* MinTime(double seconds) {
    minTime_ = seconds;
    return this;
  }
  Benchmark* Iterations(std::int64_t count) {
    iterations_ = count;
    return this;
  }
  Benchmark* UseRealTime() { return this; }
  /// Rows of several threads run as one of a single thread.
  Benchmark* Threads(int) { return this; }

  const std::string& GetName() const { return name_; }
  const std::vector<std::vector<std::int64_t>>& GetArguments() const { return arguments_; }
  double GetMinTime() const { return minTime_; }
  std::int64_t GetIterations() const { return iterations_; }
  void Run(State& state) const { run_(state); }

private:
  std::string name_;
  std::function<void(State&)> run_;
  std::vector<std::vector<std::int64_t>> arguments_;
  int factor_ = 8;
  double minTime_ = 0;
  std::int64_t iterations_ = 0;
};

}  // namespace internal

/// The registered benchmark lives to the end of the program.
internal::Benchmark* RegisterBenchmark(const char* name, std::function<void(State&)> run);

/// The same for a function that takes more than the state.
template <typename Function, typename... Arguments>
internal::Benchmark* RegisterBenchmark(const char* name, Function function,
                                       Arguments... arguments) {
  return RegisterBenchmark(
      name, std::function<void(State&)>([=](State& state) { function(state, arguments...); }));
}

/// Makes the compiler believe that all memory is read and written here.
inline void ClobberMemory() {
  std::atomic_signal_fence(std::memory_order_acq_rel);
}

namespace internal {
inline const volatile void* volatile sink = nullptr;
}  // namespace internal

/// Makes the compiler believe that `value` is needed.
template <typename Value>
inline void DoNotOptimize(const Value& value) {
  internal::sink = &value;
  ClobberMemory();
}

}  // namespace benchmark

#define SHARED_BENCH_JOIN_(a, b) a##b
#define SHARED_BENCH_JOIN(a, b) SHARED_BENCH_JOIN_(a, b)
#define SHARED_BENCH_VARIABLE SHARED_BENCH_JOIN(sharedBenchmark, __COUNTER__)

#define BENCHMARK(...)                                                                  \
  [[maybe_unused]] static benchmark::internal::Benchmark* const SHARED_BENCH_VARIABLE = \
      benchmark::RegisterBenchmark(#__VA_ARGS__, __VA_ARGS__)

#define BENCHMARK_CAPTURE(function, caseName, ...)                                      \
  [[maybe_unused]] static benchmark::internal::Benchmark* const SHARED_BENCH_VARIABLE = \
      benchmark::RegisterBenchmark(#function "/" #caseName,                             \
                                   [](benchmark::State& state) { function(state, __VA_ARGS__); })
