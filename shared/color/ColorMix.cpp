// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Hue, saturation and lightness follow the double hexcone model (A. R. Smith, "Color Gamut
// Transform Pairs", 1978; Foley, van Dam, Feiner and Hughes, "Computer Graphics: Principles and
// Practice", 1990).

#include "shared/color/ColorMix.h"

#include <algorithm>
#include <cfloat>

namespace shr {
namespace {

/// Returns one channel of a color with the extremes p and q, at `hue` turns from its own center.
double HueToChannel(double p, double q, double hue) {
  if (hue < 0.0) hue += 1.0;
  if (hue > 1.0) hue -= 1.0;
  if (6.0 * hue < 1.0) return p + (q - p) * 6.0 * hue;
  if (2.0 * hue < 1.0) return q;
  if (3.0 * hue < 2.0) return p + (q - p) * (2.0 / 3.0 - hue) * 6.0;
  return p;
}

/// Raises one of the hues by a full turn so that the straight way from one to the other runs as
/// `method` says.
void UnrollHues(double& a, double& b, Color4b::InterpMethod method) {
  const double gap = std::abs(a - b);
  switch (method) {
    case Color4b::INTERP_HSL_DECREASING:
      if (b > a) a += 1.0;
      break;
    case Color4b::INTERP_HSL_INCREASING:
      if (a > b) b += 1.0;
      break;
    case Color4b::INTERP_HSL_SHORTEST:
      if (gap > 0.5) (a < b ? a : b) += 1.0;
      break;
    case Color4b::INTERP_HSL_LONGEST:
      if (gap < 0.5) (a < b ? a : b) += 1.0;
      break;
    default:
      break;
  }
}

}  // namespace

Hsl HslOf(const Rgb& color) {
  const auto [r, g, b] = color;
  const double high = std::max({r, g, b});
  const double low = std::min({r, g, b});
  const double range = high - low;
  if (range < FLT_EPSILON) return {0.0, 0.0, low};
  const double sum = high + low;
  const double lightness = sum / 2.0;
  const double saturation = lightness < 0.5 ? range / sum : range / (2.0 - high - low);
  double hue = 0.0;
  if (r == high) {
    hue = (g - b) / range;
  } else if (g == high) {
    hue = 2.0 + (b - r) / range;
  } else {
    hue = 4.0 + (r - g) / range;
  }
  hue /= 6.0;
  return {hue < 0.0 ? hue + 1.0 : hue, saturation, lightness};
}

Rgb RgbOf(const Hsl& color) {
  const auto [hue, saturation, lightness] = color;
  if (saturation == 0.0) return {lightness, lightness, lightness};
  const double q = lightness <= 0.5 ? lightness * (1.0 + saturation)
                                    : lightness + saturation - lightness * saturation;
  const double p = 2.0 * lightness - q;
  return {HueToChannel(p, q, hue + 1.0 / 3.0), HueToChannel(p, q, hue),
          HueToChannel(p, q, hue - 1.0 / 3.0)};
}

Hsl MixHsl(Hsl a, Hsl b, double t, Color4b::InterpMethod method) {
  UnrollHues(a.hue, b.hue, method);
  double hue = MixLinear(a.hue, b.hue, t);
  while (hue > 1.0) hue -= 1.0;
  return {hue, MixLinear(a.saturation, b.saturation, t), MixLinear(a.lightness, b.lightness, t)};
}

}  // namespace shr
