// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Pango's layout of the same labels.

#include <benchmark/benchmark.h>
#include <cmath>

#include "bench/driver/PangoLabels.h"
#include "bench/fonts/LayoutBench.h"

namespace {

using bench::Script;

void CheckSamples(bench::PangoLabels& layout) {
  for (const char* const sample : bench::SAMPLES) {
    if (std::abs(layout.WidthOfText(sample) / bench::WidthOfSample(sample) - 1) > 0.01) {
      bench::GiveUp(sample);
    }
  }
}

void Measure(benchmark::State& state, Script script) {
  bench::PangoLabels layout(bench::FAMILY, bench::LABEL_HEIGHT);
  // As ours.
  layout.LeaveOutKerning();
  CheckSamples(layout);
  const auto labels = bench::MakeLabels(script, static_cast<std::size_t>(state.range(0)));
  for (const std::string& label : labels) layout.WidthOfText(label);
  for (auto _ : state) {
    double sum = 0;
    for (const std::string& label : labels) sum += layout.WidthOfText(label);
    benchmark::DoNotOptimize(sum);
  }
}

void MeasureAll(benchmark::State& state) {
  Measure(state, Script::All);
}
void MeasureSimple(benchmark::State& state) {
  Measure(state, Script::Simple);
}
void MeasureArabic(benchmark::State& state) {
  Measure(state, Script::Arabic);
}
void MeasureDevanagari(benchmark::State& state) {
  Measure(state, Script::Devanagari);
}

BENCHMARK(MeasureAll)->Name("fonts/measure/pango")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(MeasureSimple)->Name("fonts/measure_simple/pango")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(MeasureArabic)->Name("fonts/measure_arabic/pango")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(MeasureDevanagari)
    ->Name("fonts/measure_devanagari/pango")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000);
BENCHMARK(MeasureAll)->Name("fonts/layout/pango")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(MeasureArabic)->Name("fonts/layout_arabic/pango")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(MeasureDevanagari)
    ->Name("fonts/layout_devanagari/pango")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000);

}  // namespace
