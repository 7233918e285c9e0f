// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Pango's layout of the same labels in its own markup: one layout used again, FreeType's fonts
// without hints, as the labels of a picture that may be scaled.

#include <benchmark/benchmark.h>
#include <pango/pangoft2.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "bench/mathtext/MeasureBench.h"

namespace {

class Layout {
public:
  Layout() : fonts_(pango_ft2_font_map_new()), context_(pango_font_map_create_context(fonts_)) {
    pango_ft2_font_map_set_resolution(PANGO_FT2_FONT_MAP(fonts_), 96, 96);
    pango_context_set_round_glyph_positions(context_, FALSE);
    layout_ = pango_layout_new(context_);
    PangoFontDescription* const font = pango_font_description_from_string("Arial");
    pango_font_description_set_absolute_size(font, bench::LABEL_HEIGHT * PANGO_SCALE);
    pango_layout_set_font_description(layout_, font);
    pango_font_description_free(font);
  }
  ~Layout() {
    g_object_unref(layout_);
    g_object_unref(context_);
    g_object_unref(fonts_);
  }
  Layout(const Layout&) = delete;
  Layout& operator=(const Layout&) = delete;

  double WidthOf(const std::string& markup) {
    pango_layout_set_markup(layout_, markup.data(), static_cast<int>(markup.size()));
    PangoRectangle box;
    pango_layout_get_extents(layout_, nullptr, &box);
    return static_cast<double>(box.width) / PANGO_SCALE;
  }

private:
  PangoFontMap* fonts_;
  PangoContext* context_;
  PangoLayout* layout_ = nullptr;
};

double MeasureAll(const std::vector<bench::Label>& labels, Layout& layout) {
  double sum = 0;
  for (const bench::Label& label : labels) sum += layout.WidthOf(label.pango);
  return sum;
}

void MeasurePango(benchmark::State& state) {
  Layout layout;
  const double width = layout.WidthOf(bench::SAMPLE);
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
