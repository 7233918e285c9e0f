// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// `MedianCut` of 10 thousand to 1 million distinct colors to 256 and 4,096, beside a
// straightforward implementation of the same steps: every box searched for the next one, every
// split a stable sort by comparison. Before anything is timed both must have made the same palette
// and the same order.

#include "shared/color/MedianCut.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <random>
#include <vector>

namespace {

using shr::ColorCount;
using Colors = std::vector<ColorCount>;
using Palette = std::vector<RGBQUAD>;

/// Distinct colors in random order; few have many pixels and many have few, as in photographs.
const Colors& Workload(std::size_t size) {
  static std::map<std::size_t, Colors> workloads;
  Colors& colors = workloads[size];
  if (!colors.empty()) return colors;
  std::mt19937 random(static_cast<unsigned int>(size));
  std::vector<COLORREF> all(1u << 24);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<COLORREF>(i);
  for (std::size_t i = 0; i < size; ++i) {
    std::uniform_int_distribution<std::size_t> rest(i, all.size() - 1);
    std::swap(all[i], all[rest(random)]);
    const auto draw = static_cast<unsigned int>(random() % 1000) + 1;
    colors.emplace_back(all[i], 1000000 / (draw * draw) + 1);
  }
  return colors;
}

unsigned int Channel(const ColorCount& color, int channel) {
  return color.GetColor() >> 8 * channel & 0xFFu;
}

struct PlainBox {
  std::size_t first, last;
  std::uint64_t pixels;
  unsigned int level;
};

unsigned int Range(const Colors& colors, const PlainBox& box, int channel) {
  unsigned int low = 255, high = 0;
  for (std::size_t i = box.first; i <= box.last; ++i) {
    low = std::min(low, Channel(colors[i], channel));
    high = std::max(high, Channel(colors[i], channel));
  }
  return high - low;
}

int WidestChannel(const Colors& colors, const PlainBox& box) {
  int widest = 0;
  for (int i = 1; i < 3; ++i) {
    if (Range(colors, box, i) > Range(colors, box, widest)) widest = i;
  }
  return widest;
}

/// Cuts `box` and returns its second half.
PlainBox CutInTwo(Colors& colors, PlainBox& box) {
  const int channel = WidestChannel(colors, box);
  std::stable_sort(&colors[box.first], &colors[box.last] + 1,
                   [channel](const ColorCount& a, const ColorCount& b) {
                     return Channel(a, channel) < Channel(b, channel);
                   });
  std::uint64_t sum = 0;
  std::size_t end = box.first;
  while (2 * sum < box.pixels && end < box.last) sum += colors[end++].GetCount();
  const PlainBox second{end, box.last, box.pixels - sum, box.level + 1};
  box = {box.first, end - 1, sum, box.level + 1};
  return second;
}

RGBQUAD Mean(const Colors& colors, const PlainBox& box) {
  std::array<std::uint64_t, 3> sums{};
  for (std::size_t i = box.first; i <= box.last; ++i) {
    for (int channel = 0; channel < 3; ++channel) {
      sums[static_cast<std::size_t>(channel)] +=
          std::uint64_t{colors[i].GetCount()} * Channel(colors[i], channel);
    }
  }
  const auto mean = [&box](std::uint64_t sum) {
    return static_cast<BYTE>((2 * sum + box.pixels) / (2 * box.pixels));
  };
  return {mean(sums[2]), mean(sums[1]), mean(sums[0]), 0};
}

void PlainMedianCut(Colors& colors, Palette& palette, unsigned int maximumColors) {
  palette.clear();
  PlainBox whole{0, colors.size() - 1, 0, 0};
  for (const ColorCount& color : colors) whole.pixels += color.GetCount();
  std::vector<PlainBox> boxes{whole};
  while (boxes.size() < maximumColors) {
    PlainBox* next = nullptr;
    for (PlainBox& box : boxes) {
      if (box.first != box.last && (next == nullptr || box.level < next->level)) next = &box;
    }
    if (next == nullptr) break;
    const PlainBox second = CutInTwo(colors, *next);
    boxes.push_back(second);
  }
  for (const PlainBox& box : boxes) palette.push_back(Mean(colors, box));
}

using Contender = std::function<void(Colors&, Palette&, unsigned int)>;

void RequireSameResult(std::size_t size, unsigned int maximumColors) {
  Colors ours = Workload(size), plain = ours;
  Palette ourPalette, plainPalette;
  shr::MedianCut(ours, ourPalette, maximumColors);
  PlainMedianCut(plain, plainPalette, maximumColors);
  const bool same =
      ours == plain && ourPalette.size() == plainPalette.size() &&
      std::memcmp(ourPalette.data(), plainPalette.data(), ourPalette.size() * sizeof(RGBQUAD)) == 0;
  if (same) return;
  std::fprintf(stderr, "The contenders disagree on %zu colors\n", size);
  std::abort();
}

void Run(benchmark::State& state, const Contender& contender, unsigned int maximumColors) {
  const auto size = static_cast<std::size_t>(state.range(0));
  RequireSameResult(size, maximumColors);
  Colors colors;
  Palette palette;
  for (auto _ : state) {
    state.PauseTiming();
    colors = Workload(size);
    state.ResumeTiming();
    contender(colors, palette, maximumColors);
    benchmark::DoNotOptimize(palette.data());
  }
}

[[maybe_unused]] const bool REGISTERED = [] {
  for (const unsigned int maximum : {256u, 4096u}) {
    const std::string row = "color/median-cut-" + std::to_string(maximum);
    const auto add = [&](const char* name, const Contender& contender) {
      benchmark::RegisterBenchmark(
          (row + "/" + name).c_str(),
          [contender, maximum](benchmark::State& state) { Run(state, contender, maximum); })
          ->RangeMultiplier(10)
          ->Range(10000, 1000000)
          ->Unit(benchmark::kMillisecond);
    };
    add("ours", shr::MedianCut);
    add("plain", PlainMedianCut);
  }
  return true;
}();

}  // namespace
