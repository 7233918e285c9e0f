// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the channels of a color count; palettes worked out by hand that show where boxes are cut,
// which is split next and how means are rounded; colors without pixels and extreme counts; laws of
// palettes of random colors below and above 256 boxes.

#include "shared/color/MedianCut.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

namespace shr {
namespace {

static_assert(ColorCount().GetColor() == 0 && ColorCount().GetCount() == 0);

std::vector<COLORREF> Palette(std::vector<ColorCount>& colors, unsigned int maximum) {
  std::vector<RGBQUAD> quads(3);
  MedianCut(colors, quads, maximum);
  std::vector<COLORREF> palette;
  for (const RGBQUAD& quad : quads) {
    EXPECT_EQ(quad.rgbReserved, 0);
    palette.push_back(RGB(quad.rgbRed, quad.rgbGreen, quad.rgbBlue));
  }
  return palette;
}

std::vector<ColorCount> Sorted(std::vector<ColorCount> colors) {
  std::sort(colors.begin(), colors.end(),
            [](const ColorCount& a, const ColorCount& b) { return a.GetColor() < b.GetColor(); });
  return colors;
}

TEST(ColorCount, channelsAreSetOneByOneAndTogether) {
  ColorCount color(0x00030201, 7);
  EXPECT_EQ(color.GetRed(), 1);
  EXPECT_EQ(color.GetBlue(), 3);
  color.SetRed(10);
  color.SetGreen(20);
  color.SetBlue(30);
  EXPECT_EQ(color.GetColor(), RGB(10, 20, 30));
  RGBQUAD quad{};
  color.GetColor(quad);
  EXPECT_EQ(quad.rgbBlue, 30);
  ColorCount other;
  other.SetColor(quad);
  other.SetCount(6);
  other.IncrementCount();
  EXPECT_EQ(other, color);
  other.DecrementCount();
  other.SetColor(1, 2, 3);
  EXPECT_EQ(other, ColorCount(0x00030201, 6));
}

TEST(MedianCut, boxesAreCutAtTheMedianPixel) {
  const auto gray = [](BYTE level) { return RGB(level, level, level); };
  const struct {
    const char* name;
    std::vector<ColorCount> colors;
    unsigned int maximum;
    std::vector<COLORREF> palette;
  } rows[] = {
      {"no colors", {}, 4, {}},
      {"no boxes", {{gray(1), 1}}, 0, {}},
      {"one color", {{RGB(1, 2, 3), 9}}, 256, {RGB(1, 2, 3)}},
      {"weighted mean", {{RGB(0, 0, 200), 1}, {RGB(100, 4, 0), 3}}, 1, {RGB(75, 3, 50)}},
      {"halves are rounded up", {{RGB(0, 1, 254), 1}, {RGB(1, 0, 255), 1}}, 1, {RGB(1, 1, 255)}},
      {"below half stays low", {{gray(0), 2}, {gray(1), 1}}, 1, {gray(0)}},
      {"even pixels",
       {{gray(40), 1}, {gray(0), 1}, {gray(60), 1}, {gray(20), 1}},
       2,
       {gray(10), gray(50)}},
      {"an odd pixel goes to the first half",
       {{gray(0), 1}, {gray(20), 1}, {gray(60), 1}},
       2,
       {gray(10), gray(60)}},
      {"the second half is never empty",
       {{gray(0), 1}, {gray(10), 1}, {gray(90), 98}},
       2,
       {gray(5), gray(90)}},
      {"the first half is never empty",
       {{gray(0), 98}, {gray(10), 1}, {gray(90), 1}},
       2,
       {gray(0), gray(50)}},
      {"the widest channel is cut",
       {{RGB(0, 50, 0), 1}, {RGB(9, 0, 0), 1}, {RGB(0, 40, 9), 1}, {RGB(9, 10, 9), 1}},
       2,
       {RGB(9, 5, 5), RGB(0, 45, 5)}},
      {"red before green before blue",
       {{RGB(9, 0, 0), 1}, {RGB(0, 9, 9), 1}},
       2,
       {RGB(0, 9, 9), RGB(9, 0, 0)}},
      {"the least split box is next, and its second half the last",
       {{gray(0), 4},
        {gray(10), 4},
        {gray(100), 1},
        {gray(110), 3},
        {gray(250), 1},
        {gray(255), 3}},
       4,
       {gray(0), gray(108), gray(10), gray(254)}},
      {"single colors are passed over",
       {{gray(0), 9}, {gray(10), 1}, {gray(20), 1}},
       9,
       {gray(0), gray(10), gray(20)}},
      {"colors without pixels weigh alike",
       {{gray(0), 0}, {gray(10), 0}, {gray(50), 0}},
       1,
       {gray(20)}},
      {"colors without pixels are halved",
       {{gray(0), 0}, {gray(10), 0}, {gray(50), 0}},
       2,
       {gray(0), gray(30)}},
      {"counts beyond 32 bits together",
       {{gray(0), ~0u}, {gray(90), ~0u}, {gray(240), ~0u}},
       1,
       {gray(110)}},
  };
  for (const auto& row : rows) {
    std::vector<ColorCount> colors = row.colors;
    EXPECT_EQ(Palette(colors, row.maximum), row.palette) << row.name;
    EXPECT_EQ(Sorted(colors), Sorted(row.colors)) << row.name;
  }
}

TEST(MedianCut, palettesOfRandomColorsKeepTheLaws) {
  std::mt19937 random(4);
  std::set<COLORREF> distinct;
  while (distinct.size() < 3000) {
    distinct.insert(static_cast<COLORREF>(random() & 0xFFFFFFu));
  }
  std::vector<ColorCount> all;
  for (const COLORREF color : distinct) {
    all.emplace_back(color, static_cast<unsigned int>(random() % 50));
  }
  for (const unsigned int maximum : {2u, 255u, 256u, 257u, 1000u, 2999u, 3000u, ~0u}) {
    std::vector<ColorCount> colors = all;
    const std::vector<COLORREF> palette = Palette(colors, maximum);
    ASSERT_EQ(palette.size(), std::min<std::size_t>(maximum, all.size()));
    ASSERT_EQ(Sorted(colors), all) << maximum;
    if (palette.size() == all.size()) {
      ASSERT_EQ(std::set<COLORREF>(palette.begin(), palette.end()), distinct);
    }
  }
}

}  // namespace
}  // namespace shr
