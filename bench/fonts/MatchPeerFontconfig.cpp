// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Fontconfig's choice among as many patterns with the same kind of properties: family, weight,
// slant, spacing. Its answers follow other rules, so they are not compared.

#include <benchmark/benchmark.h>
#include <fontconfig/fontconfig.h>

#include <cstdint>

#include "bench/fonts/MatchBench.h"

namespace {

FcPattern* Pattern(const std::string& family, int weight, int slant, int spacing) {
  FcPattern* const pattern = FcPatternCreate();
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcPatternAddInteger(pattern, FC_WEIGHT, weight);
  FcPatternAddInteger(pattern, FC_SLANT, slant);
  FcPatternAddInteger(pattern, FC_SPACING, spacing);
  return pattern;
}

void ColdFontconfig(benchmark::State& state) {
  FcFontSet* fonts = FcFontSetCreate();
  for (std::size_t i = 0; i < static_cast<std::size_t>(state.range(0)); ++i) {
    const int weight = i % 2 == 0 ? FC_WEIGHT_REGULAR : FC_WEIGHT_BOLD;
    const int slant = i % 4 < 2 ? FC_SLANT_ROMAN : FC_SLANT_ITALIC;
    FcFontSetAdd(fonts, Pattern(bench::FamilyName(i / bench::STYLES), weight, slant,
                                i % 3 == 0 ? FC_MONO : FC_PROPORTIONAL));
  }
  FcPattern* const wanted = Pattern("No such family", FC_WEIGHT_REGULAR, FC_SLANT_ROMAN, FC_MONO);
  FcConfig* const configuration = FcConfigCreate();
  for (auto _ : state) {
    FcResult result;
    FcPattern* const match = FcFontSetMatch(configuration, &fonts, 1, wanted, &result);
    benchmark::DoNotOptimize(match);
    FcPatternDestroy(match);
  }
  FcPatternDestroy(wanted);
  FcFontSetDestroy(fonts);
  FcConfigDestroy(configuration);
}

BENCHMARK(ColdFontconfig)->Name("fonts/match_cold/fontconfig")->Arg(500)->Arg(5000)->Arg(50000);

}  // namespace
