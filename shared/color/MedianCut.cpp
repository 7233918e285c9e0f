// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Median cut (P. Heckbert, "Color Image Quantization for Frame Buffer Display", 1982). A box is a
// run of the vector of colors. The first one holds them all; then, until there are enough, the box
// that has been split least, the earliest of several, is sorted by its widest channel and cut where
// half of its pixels lie on each side.
//
// Sorting by comparisons in every split is what makes the obvious form slow, and looking through
// all boxes for the next one makes it quadratic in their number. Here
//   1. a box is sorted by counting, in time proportional to its size, because a channel has 256
//      values at most; the sort is stable, so it gives the very order of a stable comparison sort;
//   2. the boxes wait in a heap, ordered by level and index.
//
// A half holds at most half of the pixels, or it is the one that ends with the color in which the
// median lies. Without that color it holds fewer than half, so two splits at the latest halve the
// pixels. With 64-bit sums a color is therefore moved a bounded number of times, whatever the
// counts, and about log2 of the number of boxes times when they are even. Colors without pixels,
// where half of the sum is no measure, are halved by their number.

#include "shared/color/MedianCut.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <functional>
#include <numeric>
#include <queue>
#include <span>

namespace shr {
namespace {

constexpr std::size_t CHANNEL_COUNT = 3;
constexpr std::size_t VALUE_COUNT = 256;

/// Returns a channel of a color, in the order of a `COLORREF`: red, green, blue.
std::size_t Channel(const ColorCount& color, std::size_t channel) {
  return color.GetColor() >> 8 * channel & 0xFFu;
}

using Bytes = std::array<unsigned char, 2 * sizeof(ColorCount)>;
static_assert(sizeof(ColorCount) == 8 && std::endian::native == std::endian::little);

/// The smallest and largest value of each channel.
struct Bounds {
  std::array<unsigned char, CHANNEL_COUNT> low;
  std::array<unsigned char, CHANNEL_COUNT> high;
};

/// Two colors are bounded at a time, byte by byte, in a loop of the width of a vector register; the
/// channels are the first bytes of each color.
Bounds BoundsOf(std::span<const ColorCount> colors) {
  Bytes low, high, pair;
  std::memcpy(&low[0], &colors[0], sizeof(ColorCount));
  std::memcpy(&low[sizeof(ColorCount)], &colors[colors.size() - 1], sizeof(ColorCount));
  high = low;
  for (std::size_t i = 0; i + 2 <= colors.size(); i += 2) {
    std::memcpy(pair.data(), &colors[i], sizeof(pair));
    for (std::size_t k = 0; k < pair.size(); ++k) low[k] = std::min(low[k], pair[k]);
    for (std::size_t k = 0; k < pair.size(); ++k) high[k] = std::max(high[k], pair[k]);
  }
  Bounds bounds;
  for (std::size_t i = 0; i < CHANNEL_COUNT; ++i) {
    bounds.low[i] = std::min(low[i], low[i + sizeof(ColorCount)]);
    bounds.high[i] = std::max(high[i], high[i + sizeof(ColorCount)]);
  }
  return bounds;
}

/// The colors [first, end) of the vector.
struct Box {
  std::size_t first;
  std::size_t end;
  std::uint64_t pixels;
  unsigned int level;
  Bounds bounds;
};

std::size_t WidestChannel(const Bounds& bounds) {
  const auto range = [&bounds](std::size_t i) { return bounds.high[i] - bounds.low[i]; };
  std::size_t widest = 0;
  for (std::size_t i = 1; i < CHANNEL_COUNT; ++i) {
    if (range(i) > range(widest)) widest = i;
  }
  return widest;
}

/// Where a sorted box is cut: behind `size` colors that have `pixels` pixels.
struct Cut {
  std::size_t size;
  std::uint64_t pixels;
};

class Cutter {
public:
  Cutter(std::vector<ColorCount>& colors, std::size_t boxCount)
      : colors_(colors), buffer_(colors.size()), waiting_(std::greater<>(), Reserved(boxCount)) {
    boxes_.reserve(boxCount);
    std::uint64_t pixels = 0;
    for (const ColorCount& color : colors) pixels += color.GetCount();
    AddBox({0, colors.size(), pixels, 0, BoundsOf(colors)});
  }

  /// Splits boxes until there are `boxCount` or each holds one color.
  void SplitInto(std::size_t boxCount) {
    while (boxes_.size() < boxCount && !waiting_.empty()) {
      const std::size_t index = waiting_.top().second;
      waiting_.pop();
      Split(index);
    }
  }

  void GetPalette(std::vector<RGBQUAD>& palette) const {
    for (const Box& box : boxes_) palette.push_back(MeanColor(box));
  }

private:
  using LevelAndIndex = std::pair<unsigned int, std::size_t>;

  static std::vector<LevelAndIndex> Reserved(std::size_t size) {
    std::vector<LevelAndIndex> container;
    container.reserve(size);
    return container;
  }

  std::span<ColorCount> Colors(const Box& box) const {
    return std::span(colors_).subspan(box.first, box.end - box.first);
  }

  void AddBox(const Box& box) {
    boxes_.push_back(box);
    Await(boxes_.size() - 1);
  }

  void Await(std::size_t index) {
    const Box& box = boxes_[index];
    if (box.end - box.first > 1) waiting_.emplace(box.level, index);
  }

  void Split(std::size_t index) {
    const Box box = boxes_[index];
    Sort(box);
    const Cut cut = FindCut(box);
    const std::size_t middle = box.first + cut.size;
    Box first{box.first, middle, cut.pixels, box.level + 1, {}};
    Box second{middle, box.end, box.pixels - cut.pixels, box.level + 1, {}};
    first.bounds = BoundsOf(Colors(first));
    second.bounds = BoundsOf(Colors(second));
    boxes_[index] = first;
    Await(index);
    AddBox(second);
  }

  /// Sorts the colors of a box by its widest channel, equal ones in the order in which they are.
  void Sort(const Box& box) {
    const std::size_t channel = WidestChannel(box.bounds);
    const std::size_t low = box.bounds.low[channel];
    const std::size_t high = box.bounds.high[channel];
    const std::span<ColorCount> colors = Colors(box);
    std::array<std::size_t, VALUE_COUNT> next;  // of each value: its colors, then their next place
    std::fill(&next[low], &next[high] + 1, std::size_t{0});
    for (const ColorCount& color : colors) ++next[Channel(color, channel)];
    std::exclusive_scan(&next[low], &next[high] + 1, &next[low], std::size_t{0});
    for (const ColorCount& color : colors) buffer_[next[Channel(color, channel)]++] = color;
    std::copy_n(buffer_.begin(), colors.size(), colors.begin());
  }

  /// Takes colors while the sum of their pixels is below half of all, one at least and not the
  /// last. Colors without pixels are halved by their number.
  Cut FindCut(const Box& box) const {
    const std::span<const ColorCount> colors = Colors(box);
    if (box.pixels == 0) return {colors.size() / 2, 0};
    const std::uint64_t half = box.pixels / 2 + box.pixels % 2;
    Cut cut{0, 0};
    while (cut.size + 1 < colors.size() && cut.pixels < half) {
      cut.pixels += colors[cut.size].GetCount();
      ++cut.size;
    }
    return cut;
  }

  RGBQUAD MeanColor(const Box& box) const {
    std::array<std::uint64_t, CHANNEL_COUNT> sums{};
    const std::uint64_t weights = box.pixels != 0 ? box.pixels : box.end - box.first;
    for (const ColorCount& color : Colors(box)) {
      const std::uint64_t weight = box.pixels != 0 ? color.GetCount() : 1;
      for (std::size_t i = 0; i < CHANNEL_COUNT; ++i) sums[i] += weight * Channel(color, i);
    }
    const auto mean = [weights](std::uint64_t sum) {
      const std::uint64_t rest = sum % weights;
      return static_cast<BYTE>(sum / weights + (rest >= weights - rest ? 1 : 0));
    };
    return {mean(sums[2]), mean(sums[1]), mean(sums[0]), 0};
  }

  std::vector<ColorCount>& colors_;
  std::vector<ColorCount> buffer_;
  std::vector<Box> boxes_;
  std::priority_queue<LevelAndIndex, std::vector<LevelAndIndex>, std::greater<>> waiting_;
};

}  // namespace

void MedianCut(std::vector<ColorCount>& colors, std::vector<RGBQUAD>& palette,
               unsigned int maximumColors) {
  palette.clear();
  const std::size_t boxCount = std::min<std::size_t>(maximumColors, colors.size());
  if (boxCount == 0) return;
  palette.reserve(boxCount);
  Cutter cutter(colors, boxCount);
  cutter.SplitInto(boxCount);
  cutter.GetPalette(palette);
}

}  // namespace shr
