// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Labels of a map measured and laid out, the second time and later: names of cities in all scripts,
// those that need no shaping, Arabic and Devanagari ones. `measure` is MeasureText, which remembers
// shaped names, `layout` all that LayoutText tells, shaped each time. Before anything is timed
// every label must be as wide by one as by the other.

#include "bench/fonts/LayoutBench.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "shared/fonts/TextLayout.h"

namespace bench {
namespace {

using namespace shr;

/// Returns the first character from the plane that the scripts of interest are in.
bool IsOf(Script script, const GString& name) {
  const auto isIn = [&name](unsigned first, unsigned last) {
    return std::any_of(name.begin(), name.end(), [first, last](wchar_t unit) {
      return static_cast<unsigned>(unit) >= first && static_cast<unsigned>(unit) <= last;
    });
  };
  if (script == Script::Arabic) return isIn(0x600, 0x6FF);
  if (script == Script::Devanagari) return isIn(0x900, 0x97F);
  if (script == Script::Simple) return !isIn(0x300, 0x36F) && !isIn(0x590, 0x109F);
  return true;
}

const std::vector<std::string>& Names() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> read;
    std::ifstream file(SHARED_EXAMPLE_DATA_DIR "/cities-utf8.csv");
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line)) read.push_back(line.substr(0, line.find(',')));
    if (read.size() < 1000) GiveUp("The cities cannot be read.");
    return read;
  }();
  return names;
}

const TextFace& Face() {
  static const TextFace face = [] {
    TextFace made;
    made.name = GString::FromUtf8(FAMILY);
    return made;
  }();
  return face;
}

std::vector<GString> MakeTexts(Script script, std::size_t count) {
  std::vector<GString> texts;
  for (const std::string& label : MakeLabels(script, count)) {
    texts.push_back(GString::FromUtf8(label));
    const TextLayout layout = LayoutText(texts.back(), Face());
    const bool isEqual = layout.advance == MeasureText(texts.back(), Face());
    if (!isEqual || !(layout.advance > 0)) GiveUp("A label is measured and laid out differently.");
  }
  return texts;
}

void Measure(benchmark::State& state, Script script) {
  const auto texts = MakeTexts(script, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    double sum = 0;
    for (const GString& text : texts) sum += MeasureText(text, Face());
    benchmark::DoNotOptimize(sum);
  }
}

void Layout(benchmark::State& state, Script script) {
  const auto texts = MakeTexts(script, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    double sum = 0;
    for (const GString& text : texts) sum += LayoutText(text, Face()).advance;
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

void LayoutAll(benchmark::State& state) {
  Layout(state, Script::All);
}
void LayoutArabic(benchmark::State& state) {
  Layout(state, Script::Arabic);
}
void LayoutDevanagari(benchmark::State& state) {
  Layout(state, Script::Devanagari);
}

BENCHMARK(MeasureAll)->Name("fonts/measure/ours")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(MeasureSimple)->Name("fonts/measure_simple/ours")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(MeasureArabic)->Name("fonts/measure_arabic/ours")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(MeasureDevanagari)
    ->Name("fonts/measure_devanagari/ours")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000);
BENCHMARK(LayoutAll)->Name("fonts/layout/ours")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(LayoutArabic)->Name("fonts/layout_arabic/ours")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(LayoutDevanagari)
    ->Name("fonts/layout_devanagari/ours")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000);

}  // namespace

std::vector<std::string> MakeLabels(Script script, std::size_t count) {
  std::vector<std::string> chosen;
  for (const std::string& name : Names()) {
    if (IsOf(script, GString::FromUtf8(name))) chosen.push_back(name);
  }
  std::vector<std::string> labels;
  for (std::size_t i = 0; i < count; ++i) labels.push_back(chosen[i % chosen.size()]);
  return labels;
}

void GiveUp(const char* why) {
  std::fprintf(stderr, "%s\n", why);
  std::abort();
}

double WidthOfSample(const char* sample) {
  return MeasureText(GString::FromUtf8(sample), Face()) * LABEL_HEIGHT;
}

}  // namespace bench
