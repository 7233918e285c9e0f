// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/PlotPalette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace shr {

namespace {

constexpr std::array<Color4b, SERIES_COLORS> SERIES = {
    Color4b(0, 114, 178), Color4b(213, 94, 0),   Color4b(0, 158, 115),  Color4b(204, 121, 167),
    Color4b(230, 159, 0), Color4b(86, 180, 233), Color4b(240, 228, 66), Color4b(0, 0, 0),
};
constexpr std::size_t BLUE = 0;
constexpr std::size_t SKY_BLUE = 5;
constexpr std::size_t BLACK = SERIES_COLORS - 1;

constexpr Color4b VIRIDIS[] = {
    Color4b(0x44, 0x01, 0x54), Color4b(0x48, 0x28, 0x78), Color4b(0x3E, 0x49, 0x89),
    Color4b(0x31, 0x68, 0x8E), Color4b(0x26, 0x82, 0x8E), Color4b(0x1F, 0x9E, 0x89),
    Color4b(0x35, 0xB7, 0x79), Color4b(0x6E, 0xCE, 0x58), Color4b(0xB5, 0xDE, 0x2B),
    Color4b(0xFD, 0xE7, 0x25),
};

constexpr Color4b DIVERGING[] = {
    Color4b(0, 114, 178),
    Color4b(247, 247, 247),
    Color4b(213, 94, 0),
};

constexpr Color4b UNKNOWN(0x9A, 0x9A, 0x9A);

unsigned char Mix(unsigned char from, unsigned char to, double t) {
  return static_cast<unsigned char>(std::lround(from + (to - from) * t));
}

/// Returns the color at `share` of the way along `stops`.
Color4b Along(std::span<const Color4b> stops, double share) {
  if (std::isnan(share)) return UNKNOWN;
  const double place = std::clamp(share, 0.0, 1.0) * static_cast<double>(stops.size() - 1);
  const auto index = std::min(static_cast<std::size_t>(place), stops.size() - 2);
  const double t = place - static_cast<double>(index);
  const Color4b& from = stops[index];
  const Color4b& to = stops[index + 1];
  return Color4b(Mix(from.red, to.red, t), Mix(from.green, to.green, t),
                 Mix(from.blue, to.blue, t));
}

/// Returns the relative luminance, with the square for sRGB's curve.
double Luminance(const Color4b& color) {
  const auto linear = [](unsigned char channel) { return channel / 255.0 * (channel / 255.0); };
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

}  // namespace

Color4b SeriesColor(std::size_t index, bool onDark) {
  const std::size_t place = index % SERIES_COLORS;
  if (!onDark) return SERIES[place];
  if (place == BLUE) return SERIES[SKY_BLUE];
  if (place == SKY_BLUE) return SERIES[BLUE];
  return place == BLACK ? Color4b(255, 255, 255) : SERIES[place];
}

Color4b SequentialColor(double share) {
  return Along(VIRIDIS, share);
}

Color4b DivergingColor(double share) {
  return Along(DIVERGING, (share + 1) / 2);
}

bool WantsDarkText(const Color4b& ground) {
  // Contrast with black (L + 0.05) / 0.05 against that with white 1.05 / (L + 0.05).
  const double lifted = Luminance(ground) + 0.05;
  return lifted * lifted > 1.05 * 0.05;
}

}  // namespace shr
