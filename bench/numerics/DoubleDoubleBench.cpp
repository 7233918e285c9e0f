// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Double-double arithmetic, dot products, decimal text both ways and functions, beside libqd's
// accurate forms. The rows of the operators are plain loops, those named "-span" the functions for
// spans. Numbers have random heads over forty binary orders and random tails; texts have 32
// digits. Before anything is timed, results are compared: all digits but the last few of 106 bits,
// which both may round otherwise.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iomanip>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "bench/numerics/DoubleDoublePeerQd.h"
#include "shared/numerics/doubledouble/DoubleDouble.h"
#include "shared/numerics/doubledouble/DoubleDoubleSpans.h"

namespace {

using shr::doubledouble;
using Numbers = std::vector<doubledouble>;

struct Workload {
  Numbers x, y, result;
  std::vector<std::string> texts;
};

doubledouble RandomNumber(std::mt19937_64& random) {
  const auto uniform = [&random](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  const double head = std::ldexp(uniform(1, 2), static_cast<int>(random() % 41) - 20);
  const double tail = head * std::ldexp(uniform(-1, 1), -53);
  return shr::normalize({random() % 2 == 0 ? head : -head, tail});
}

Workload& WorkloadOf(std::size_t count) {
  static std::map<std::size_t, Workload> workloads;
  Workload& work = workloads[count];
  if (!work.x.empty()) return work;
  std::mt19937_64 random(20261);
  for (std::size_t i = 0; i < count; ++i) {
    work.x.push_back(RandomNumber(random));
    work.y.push_back(RandomNumber(random));
    std::ostringstream text;
    text << std::scientific << std::setprecision(31) << work.x.back();
    work.texts.push_back(text.str());
  }
  work.result.resize(count);
  return work;
}

const double* PartsOf(const Numbers& numbers) {
  return &numbers[0].head;
}

/// One contender of a row: works on the whole workload and leaves numbers in `result`.
using Contender = void (*)(Workload&);

template <class Operation>
void ForEach(Workload& work, const Operation& operation) {
  const std::size_t count = work.x.size();
  for (std::size_t i = 0; i < count; ++i) work.result[i] = operation(work.x[i], work.y[i]);
}

void OurAdd(Workload& work) {
  ForEach(work, [](const doubledouble& x, const doubledouble& y) { return x + y; });
}
void OurMultiply(Workload& work) {
  ForEach(work, [](const doubledouble& x, const doubledouble& y) { return x * y; });
}
void OurDivide(Workload& work) {
  ForEach(work, [](const doubledouble& x, const doubledouble& y) { return x / y; });
}
void OurDotProduct(Workload& work) {
  work.result[0] = shr::DotProduct(std::span<const doubledouble>(work.x), work.y);
}
void OurAddSpan(Workload& work) {
  shr::Add(work.x, work.y, work.result);
}
void OurMultiplySpan(Workload& work) {
  shr::Multiply(work.x, work.y, work.result);
}
void OurDivideSpan(Workload& work) {
  shr::Divide(work.x, work.y, work.result);
}
void OurRead(Workload& work) {
  for (std::size_t i = 0; i < work.x.size(); ++i) {
    shr::StringToDoubleDouble(std::string_view(work.texts[i]), work.result[i]);
  }
}
/// Numbers that were written are read again where results are compared, by `ReadTexts`.
void OurWrite(Workload& work) {
  std::ostringstream stream;
  stream << std::scientific << std::setprecision(31);
  for (std::size_t i = 0; i < work.x.size(); ++i) {
    stream.seekp(0);
    stream << work.x[i];
  }
  benchmark::DoNotOptimize(stream);
}
void OurWriteShortest(Workload& work) {
  for (const doubledouble& x : work.x) benchmark::DoNotOptimize(shr::DoubleDoubleToString(x));
}

using Peer = void (*)(const double*, const double*, std::size_t, double*);
template <Peer PEER>
void Qd(Workload& work) {
  PEER(PartsOf(work.x), PartsOf(work.y), work.x.size(), &work.result[0].head);
}
void QdRead(Workload& work) {
  for (std::size_t i = 0; i < work.x.size(); ++i) {
    shr::bench::QdRead(work.texts[i].c_str(), &work.result[i].head);
  }
}
void QdWrite(Workload& work) {
  char text[64];
  for (const doubledouble& x : work.x) {
    benchmark::DoNotOptimize(shr::bench::QdWrite(&x.head, text));
  }
}

/// Demands that both leave the same numbers within `bound`, relative to the numbers or, for a dot
/// product, to what is summed.
void RequireSame(Workload& work, Contender ours, Contender peer, const char* row, bool isSum) {
  constexpr double BOUND = 1e-29;
  work.result.assign(work.x.size(), doubledouble());
  ours(work);
  const Numbers expected = work.result;
  work.result.assign(work.x.size(), doubledouble());
  peer(work);
  doubledouble scale = 0;
  for (std::size_t i = 0; isSum && i < work.x.size(); ++i) scale += fabs(work.x[i] * work.y[i]);
  for (std::size_t i = 0; i < work.x.size(); ++i) {
    // The sums of nearly equal numbers lose what the peer may lose.
    const doubledouble least = isSum ? scale : fabs(expected[i]) + fabs(work.x[i]) * 1e-3;
    if (fabs(expected[i] - work.result[i]) <= least * BOUND) continue;
    std::fprintf(stderr, "%s: the contenders disagree on number %zu\n", row, i);
    std::abort();
  }
}

void Register(const std::string& row, Contender ours, Contender peer, bool isSum = false) {
  const auto add = [&](const char* name, Contender contender) {
    benchmark::RegisterBenchmark((row + "/" + name).c_str(),
                                 [=](benchmark::State& state) {
                                   Workload& work =
                                       WorkloadOf(static_cast<std::size_t>(state.range(0)));
                                   if (shr::bench::HasQd())
                                     RequireSame(work, ours, peer, row.c_str(), isSum);
                                   for (auto _ : state) {
                                     contender(work);
                                     benchmark::DoNotOptimize(work.result.data());
                                     benchmark::ClobberMemory();
                                   }
                                   state.SetItemsProcessed(state.iterations() * state.range(0));
                                 })
        ->RangeMultiplier(10)
        ->Range(10000, 1000000)
        ->Unit(benchmark::kMillisecond);
  };
  add("ours", ours);
  if (shr::bench::HasQd()) add("libqd", peer);
}

[[maybe_unused]] const bool REGISTERED = [] {
  using namespace shr::bench;
  const std::string row = "numerics/double-double-";
  Register(row + "add", OurAdd, Qd<QdAdd>);
  Register(row + "add-span", OurAddSpan, Qd<QdAdd>);
  Register(row + "multiply", OurMultiply, Qd<QdMultiply>);
  Register(row + "multiply-span", OurMultiplySpan, Qd<QdMultiply>);
  Register(row + "divide", OurDivide, Qd<QdDivide>);
  Register(row + "divide-span", OurDivideSpan, Qd<QdDivide>);
  Register(row + "dot", OurDotProduct, Qd<QdDotProduct>, true);
  Register(row + "read", OurRead, ::QdRead);
  Register(row + "write-32", OurWrite, ::QdWrite);
  Register(row + "write-shortest", OurWriteShortest, ::QdWrite);
  return true;
}();

}  // namespace
