// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Pango's layout of the same labels: one layout used again, FreeType's fonts without hints, places
// not rounded. Asked for its logical extents alone, it still shapes the line each time.

#include <benchmark/benchmark.h>
#include <pango/pangoft2.h>

#include <cmath>

#include "bench/fonts/LayoutBench.h"

namespace {

using bench::Script;

class Layout {
public:
  Layout() : fonts_(pango_ft2_font_map_new()), context_(pango_font_map_create_context(fonts_)) {
    pango_ft2_font_map_set_resolution(PANGO_FT2_FONT_MAP(fonts_), 96, 96);
    pango_context_set_round_glyph_positions(context_, FALSE);
    layout_ = pango_layout_new(context_);
    PangoFontDescription* const font = pango_font_description_from_string(bench::FAMILY);
    pango_font_description_set_absolute_size(font, bench::LABEL_HEIGHT * PANGO_SCALE);
    pango_layout_set_font_description(layout_, font);
    pango_font_description_free(font);
    // As ours: letters that stand side by side are not kerned.
    PangoAttrList* const attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_font_features_new("kern=0"));
    pango_layout_set_attributes(layout_, attributes);
    pango_attr_list_unref(attributes);
  }
  ~Layout() {
    g_object_unref(layout_);
    g_object_unref(context_);
    g_object_unref(fonts_);
  }
  Layout(const Layout&) = delete;
  Layout& operator=(const Layout&) = delete;

  double WidthOf(const std::string& text) {
    pango_layout_set_text(layout_, text.data(), static_cast<int>(text.size()));
    PangoRectangle box;
    pango_layout_get_extents(layout_, nullptr, &box);
    return static_cast<double>(box.width) / PANGO_SCALE;
  }

private:
  PangoFontMap* fonts_;
  PangoContext* context_;
  PangoLayout* layout_ = nullptr;
};

void CheckSamples(Layout& layout) {
  for (const char* const sample : bench::SAMPLES) {
    if (std::abs(layout.WidthOf(sample) / bench::WidthOfSample(sample) - 1) > 0.01) {
      bench::GiveUp(sample);
    }
  }
}

void Measure(benchmark::State& state, Script script) {
  Layout layout;
  CheckSamples(layout);
  const auto labels = bench::MakeLabels(script, static_cast<std::size_t>(state.range(0)));
  for (const std::string& label : labels) layout.WidthOf(label);
  for (auto _ : state) {
    double sum = 0;
    for (const std::string& label : labels) sum += layout.WidthOf(label);
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
