// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Pango's layout of the same labels in its own markup.

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "bench/driver/PangoLabels.h"
#include "bench/mathtext/MeasureBench.h"

namespace {

double MeasureAll(const std::vector<bench::Label>& labels, bench::PangoLabels& layout) {
  double sum = 0;
  for (const bench::Label& label : labels) sum += layout.WidthOfMarkup(label.pango);
  return sum;
}

void MeasurePango(benchmark::State& state) {
  bench::PangoLabels layout("Arial", bench::LABEL_HEIGHT);
  const double width = layout.WidthOfMarkup(bench::SAMPLE);
  if (std::abs(width / bench::SampleWidth() - 1) > 0.01) {
    std::fprintf(stderr, "Pango finds the sample %g wide, we find %g\n", width,
                 bench::SampleWidth());
    std::abort();
  }
  const std::vector<bench::Label> labels =
      bench::MakeLabels(static_cast<std::size_t>(state.range(0)));
  MeasureAll(labels, layout);
  for (auto _ : state) benchmark::DoNotOptimize(MeasureAll(labels, layout));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(MeasurePango)
    ->Name("mathtext/measure/pango")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
}  // namespace
