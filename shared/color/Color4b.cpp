// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Hue, saturation and lightness follow the double hexcone model (A. R. Smith, "Color Gamut
// Transform Pairs", 1978; Foley, van Dam, Feiner and Hughes, "Computer Graphics: Principles and
// Practice", 1990).

#include "shared/color/Color4b.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <ostream>

#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/WindowsTypes.h"

namespace shr {
namespace {

struct Hsl {
  double hue;
  double saturation;
  double lightness;
};

Hsl ToHsl(const Color4b& color) {
  Hsl hsl{};
  color.GetHSL(hsl.hue, hsl.saturation, hsl.lightness);
  return hsl;
}

/// Returns one channel of a color with the extremes p and q, at `hue` turns from its own center.
double HueToChannel(double p, double q, double hue) {
  if (hue < 0.0) hue += 1.0;
  if (hue > 1.0) hue -= 1.0;
  if (6.0 * hue < 1.0) return p + (q - p) * 6.0 * hue;
  if (2.0 * hue < 1.0) return q;
  if (3.0 * hue < 2.0) return p + (q - p) * (2.0 / 3.0 - hue) * 6.0;
  return p;
}

unsigned char MixChannel(unsigned char a, unsigned char b, double t) {
  return static_cast<unsigned char>(a * (1.0 - t) + b * t + 0.5);
}

Color4b MixLinear(const Color4b& a, const Color4b& b, double t) {
  return Color4b(MixChannel(a.red, b.red, t), MixChannel(a.green, b.green, t),
                 MixChannel(a.blue, b.blue, t), MixChannel(a.alpha, b.alpha, t));
}

Color4b Average(const Color4b& a, const Color4b& b) {
  const auto half = [](int x, int y) { return static_cast<unsigned char>((x + y + 1) / 2); };
  return Color4b(half(a.red, b.red), half(a.green, b.green), half(a.blue, b.blue),
                 half(a.alpha, b.alpha));
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

Color4b MixHsl(const Color4b& a, const Color4b& b, double t, Color4b::InterpMethod method) {
  Hsl from = ToHsl(a);
  Hsl to = ToHsl(b);
  UnrollHues(from.hue, to.hue, method);
  const auto mix = [t](double x, double y) { return x * (1.0 - t) + y * t; };
  double hue = mix(from.hue, to.hue);
  while (hue > 1.0) hue -= 1.0;
  Color4b result;
  result.SetHSL(hue, mix(from.saturation, to.saturation), mix(from.lightness, to.lightness));
  result.alpha = MixChannel(a.alpha, b.alpha, t);
  return result;
}

}  // namespace

Color4b::Color4b(const tagRGBQUAD& quad, unsigned char a)
    : Color4b(quad.rgbRed, quad.rgbGreen, quad.rgbBlue, a) {}

void Color4b::SetHSL(double hue, double saturation, double lightness, double opacity) {
  alpha = ToBYTE(opacity);
  if (saturation == 0.0) {
    red = green = blue = ToBYTE(lightness);
    return;
  }
  const double q = lightness <= 0.5 ? lightness * (1.0 + saturation)
                                    : lightness + saturation - lightness * saturation;
  const double p = 2.0 * lightness - q;
  red = ToBYTE(HueToChannel(p, q, hue + 1.0 / 3.0));
  green = ToBYTE(HueToChannel(p, q, hue));
  blue = ToBYTE(HueToChannel(p, q, hue - 1.0 / 3.0));
}

void Color4b::GetHSL(double& hue, double& saturation, double& lightness) const {
  const double r = red / 255.0;
  const double g = green / 255.0;
  const double b = blue / 255.0;
  const double high = std::max({r, g, b});
  const double low = std::min({r, g, b});
  const double range = high - low;
  if (range < FLT_EPSILON) {
    hue = saturation = 0.0;
    lightness = low;
    return;
  }
  lightness = (high + low) / 2.0;
  saturation = lightness < 0.5 ? range / (high + low) : range / (2.0 - high - low);
  if (r == high) {
    hue = (g - b) / range;
  } else if (g == high) {
    hue = 2.0 + (b - r) / range;
  } else {
    hue = 4.0 + (r - g) / range;
  }
  hue /= 6.0;
  if (hue < 0.0) hue += 1.0;
}

Color4b Color4b::Interp(const Color4b& a, const Color4b& b, double t, InterpMethod method) {
  if (a == b) return a;
  const bool reversed = method == INTERP_REVERSE;
  if (!(t > 0.0)) return reversed ? b : a;
  if (t >= 1.0) return reversed ? a : b;
  switch (method) {
    case INTERP_LINEAR:
      return MixLinear(a, b, t);
    case INTERP_REVERSE:
      return MixLinear(b, a, t);
    case INTERP_COSINE:
      return MixLinear(a, b, (1.0 - std::cos(PI * t)) / 2.0);
    case INTERP_START:
      return a;
    case INTERP_AVERAGE:
      return Average(a, b);
    case INTERP_END:
      return b;
    case INTERP_HSL_DECREASING:
    case INTERP_HSL_INCREASING:
    case INTERP_HSL_SHORTEST:
    case INTERP_HSL_LONGEST:
      return MixHsl(a, b, t, method);
  }
  return a;
}

std::uint32_t InterpColor(std::uint32_t a, std::uint32_t b, double t, unsigned int method) {
  if (method > Color4b::INTERP_END) return a;
  const auto interpMethod = static_cast<Color4b::InterpMethod>(method);
  return Color4b::Interp(Color4b(a, ALPHA_MAX), Color4b(b, ALPHA_MAX), t, interpMethod)
      .GetCOLORREF();
}

void CopyRGBQUADToColor4b(Color4b* destination, const tagRGBQUAD* source, int count,
                          bool reservedIsAlpha) {
  if (destination == nullptr || source == nullptr) {
    ThrowInternalError(SHARED_MODULE, L"Color4b", __LINE__);
  }
  for (int i = 0; i < count; ++i) {
    destination[i] = Color4b(source[i], reservedIsAlpha ? source[i].rgbReserved : ALPHA_MAX);
  }
}

void CopyColor4bToRGBQUAD(tagRGBQUAD* destination, const Color4b* source, int count,
                          bool reservedIsAlpha) {
  if (destination == nullptr || source == nullptr) {
    ThrowInternalError(SHARED_MODULE, L"Color4b", __LINE__);
  }
  for (int i = 0; i < count; ++i) {
    const Color4b color = source[i];
    destination[i] = {color.blue, color.green, color.red,
                      reservedIsAlpha ? color.alpha : ALPHA_MIN};
  }
}

std::ostream& operator<<(std::ostream& out, const Color4b& color) {
  return out << '(' << int{color.red} << ", " << int{color.green} << ", " << int{color.blue} << ", "
             << int{color.alpha} << ')';
}

}  // namespace shr
