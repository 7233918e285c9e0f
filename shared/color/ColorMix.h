// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the interpolations of all color types share: the model of hue, saturation and lightness,
/// the ways around the circle of hues, and the choice of the method. For the sources of
/// shared/color only.
///
///     struct Ops { static C Linear(a, b, t); static C Average(a, b); static C ByHue(mixed, a, b,
///     t); }; return InterpBy<Ops>(a, b, t, method);
///
/// Threads: no state.

#pragma once

#include <cmath>

#include "shared/color/Color4b.h"
#include "shared/geometry/MathUtility.h"

namespace shr {

/// Hue, saturation and lightness, each 0 to 1.
struct Hsl {
  double hue;
  double saturation;
  double lightness;
};

struct Rgb {
  double red;
  double green;
  double blue;
};

/// The double hexcone model. `HslOf` of a gray has hue and saturation 0.
Hsl HslOf(const Rgb& color);
Rgb RgbOf(const Hsl& color);

/// Returns the mix of two colors that runs around the circle of hues as the HSL method `method`
/// says.
Hsl MixHsl(Hsl a, Hsl b, double t, Color4b::InterpMethod method);

inline double MixLinear(double a, double b, double t) {
  return a * (1.0 - t) + b * t;
}

template <class C>
Hsl HslOfColor(const C& color) {
  Hsl hsl{};
  color.GetHSL(hsl.hue, hsl.saturation, hsl.lightness);
  return hsl;
}

/// Implements `Interp` of a color type, whose channels are mixed by the static functions of `Ops`.
template <class Ops, class C>
C InterpBy(const C& a, const C& b, double t, Color4b::InterpMethod method) {
  if (a == b) return a;
  const bool reversed = method == Color4b::INTERP_REVERSE;
  if (!(t > 0.0)) return reversed ? b : a;
  if (t >= 1.0) return reversed ? a : b;
  switch (method) {
    case Color4b::INTERP_LINEAR:
      return Ops::Linear(a, b, t);
    case Color4b::INTERP_REVERSE:
      return Ops::Linear(b, a, t);
    case Color4b::INTERP_COSINE:
      return Ops::Linear(a, b, (1.0 - std::cos(PI * t)) / 2.0);
    case Color4b::INTERP_START:
      return a;
    case Color4b::INTERP_AVERAGE:
      return Ops::Average(a, b);
    case Color4b::INTERP_END:
      return b;
    case Color4b::INTERP_HSL_DECREASING:
    case Color4b::INTERP_HSL_INCREASING:
    case Color4b::INTERP_HSL_SHORTEST:
    case Color4b::INTERP_HSL_LONGEST:
      return Ops::ByHue(MixHsl(HslOfColor(a), HslOfColor(b), t, method), a, b, t);
  }
  return a;
}

}  // namespace shr
