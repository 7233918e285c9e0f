// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Text to double over numbers of mixed length: integers, fixed notation with three decimals, 17
// significant digits, and 16 digits in scientific notation over 200 decades, in equal parts.
// "columns" repeats the four in turn, as the columns of a table do; "shuffled" draws them at
// random, which no branch predictor can learn. The narrow peers read the same text narrowed
// beforehand. All contenders must give the same values before they are timed.

#include <benchmark/benchmark.h>
#include <fast_float/fast_float.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shared/text/StringUtility.h"

namespace {

/// Numbers one behind the other, each followed by a zero unit, in both widths.
struct Workload {
  std::string narrow;
  std::wstring wide;
  std::vector<std::string_view> narrowNumbers;
  std::vector<std::wstring_view> wideNumbers;
};

std::string MakeNumber(std::mt19937_64& random, std::uint64_t kind) {
  const auto uniform = [&random](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  char buffer[64];
  switch (kind) {
    case 0:
      std::snprintf(buffer, sizeof buffer, "%.0f", uniform(-1e6, 1e6));
      break;
    case 1:
      std::snprintf(buffer, sizeof buffer, "%.3f", uniform(-1e6, 1e6));
      break;
    case 2:
      std::snprintf(buffer, sizeof buffer, "%.17g", uniform(-1, 1));
      break;
    default:
      std::snprintf(buffer, sizeof buffer, "%.15ee%d", uniform(1, 9.9),
                    static_cast<int>(random() % 201) - 100);
      // "%.15e" of a number from one to ten ends in "e+00": the drawn exponent takes its place.
      const std::string text = buffer;
      const std::size_t mark = text.find('e');
      return text.substr(0, mark) + text.substr(text.rfind('e'));
  }
  return buffer;
}

enum class Order { Columns, Shuffled };

Workload MakeWorkload(std::size_t count, Order order) {
  std::mt19937_64 random(20260);
  Workload work;
  std::vector<std::size_t> ends;
  for (std::size_t i = 0; i < count; ++i) {
    work.narrow += MakeNumber(random, (order == Order::Columns ? i : random()) % 4);
    ends.push_back(work.narrow.size());
    work.narrow += '\0';
  }
  work.wide.assign(work.narrow.begin(), work.narrow.end());
  std::size_t first = 0;
  for (const std::size_t end : ends) {
    work.narrowNumbers.push_back(std::string_view(work.narrow).substr(first, end - first));
    work.wideNumbers.push_back(std::wstring_view(work.wide).substr(first, end - first));
    first = end + 1;
  }
  return work;
}

double Ours(const std::wstring_view& text) {
  double value = 0;
  shr::StringToDouble(text, value);
  return value;
}

double OursNarrow(const std::string_view& text) {
  double value = 0;
  shr::StringToDouble(text, value);
  return value;
}

double FastFloat(const std::string_view& text) {
  double value = 0;
  fast_float::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

double FromChars(const std::string_view& text) {
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

double WideStrtod(const std::wstring_view& text) {
  return std::wcstod(text.data(), nullptr);
}

/// Demands that a contender gives the same values as std::from_chars.
template <typename View>
void CheckContender(const Workload& work, const std::vector<View>& numbers,
                    double (*contender)(const View&)) {
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::string_view narrow = work.narrowNumbers[i];
    if (contender(numbers[i]) != FromChars(narrow)) {
      std::fprintf(stderr, "a contender has another value for %s\n", narrow.data());
      std::abort();
    }
  }
}

const Workload& WorkloadOf(std::size_t count, Order order) {
  static std::map<std::pair<std::size_t, Order>, Workload> works;
  Workload& work = works[{count, order}];
  if (work.narrow.empty()) work = MakeWorkload(count, order);
  return work;
}

template <typename View>
void Run(benchmark::State& state, const std::vector<View>& numbers, const Workload& work,
         double (*contender)(const View&)) {
  CheckContender(work, numbers, contender);
  for (auto _ : state) {
    double sum = 0;
    for (const View& number : numbers) sum += contender(number);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(numbers.size()));
}

template <double (*CONTENDER)(const std::wstring_view&), Order ORDER>
void Wide(benchmark::State& state) {
  const Workload& work = WorkloadOf(static_cast<std::size_t>(state.range(0)), ORDER);
  Run(state, work.wideNumbers, work, CONTENDER);
}

template <double (*CONTENDER)(const std::string_view&), Order ORDER>
void Narrow(benchmark::State& state) {
  const Workload& work = WorkloadOf(static_cast<std::size_t>(state.range(0)), ORDER);
  Run(state, work.narrowNumbers, work, CONTENDER);
}

/// Registers every contender over one order, sizes ten times apart.
template <Order ORDER>
void Register(const std::string& order) {
  const auto add = [](const std::string& name, void (*run)(benchmark::State&)) {
    benchmark::RegisterBenchmark(name.c_str(), run)
        ->Arg(100'000)
        ->Arg(1'000'000)
        ->Unit(benchmark::kMillisecond);
  };
  const std::string wide = "text/StringToDouble-wide-" + order + "/";
  add(wide + "ours", Wide<Ours, ORDER>);
  add(wide + "fast_float(narrow)", Narrow<FastFloat, ORDER>);
  add(wide + "from_chars(narrow)", Narrow<FromChars, ORDER>);
  add(wide + "wcstod", Wide<WideStrtod, ORDER>);
  const std::string narrow = "text/StringToDouble-narrow-" + order + "/";
  add(narrow + "ours", Narrow<OursNarrow, ORDER>);
  add(narrow + "fast_float", Narrow<FastFloat, ORDER>);
  add(narrow + "from_chars", Narrow<FromChars, ORDER>);
}

const bool REGISTERED = [] {
  Register<Order::Columns>("columns");
  Register<Order::Shuffled>("shuffled");
  return true;
}();

}  // namespace
