// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/color/Color3f.h"
#include "shared/color/Color4f.h"
#include "shared/color/ColorMix.h"

namespace shr {
namespace {

struct FloatOps {
  template <class C>
  static C Linear(const C& a, const C& b, double t) {
    C result = a;
    C::ForEach([t](float& x, float y) { x = static_cast<float>(MixLinear(x, y, t)); }, result, b);
    return result;
  }

  template <class C>
  static C Average(const C& a, const C& b) {
    return Linear(a, b, 0.5);
  }

  static Color3f ByHue(const Hsl& mixed, const Color3f&, const Color3f&, double) {
    Color3f result;
    result.SetHSL(mixed.hue, mixed.saturation, mixed.lightness);
    return result;
  }

  static Color4f ByHue(const Hsl& mixed, const Color4f& a, const Color4f& b, double t) {
    Color4f result;
    result.SetHSL(mixed.hue, mixed.saturation, mixed.lightness, MixLinear(a.alpha, b.alpha, t));
    return result;
  }
};

}  // namespace

void Color3f::SetHSL(double hue, double saturation, double lightness) {
  const Rgb rgb = RgbOf({hue, saturation, lightness});
  Set(static_cast<float>(rgb.red), static_cast<float>(rgb.green), static_cast<float>(rgb.blue));
}

void Color3f::GetHSL(double& hue, double& saturation, double& lightness) const {
  const Hsl hsl = HslOf({red, green, blue});
  hue = hsl.hue;
  saturation = hsl.saturation;
  lightness = hsl.lightness;
}

Color3f Color3f::Interp(const Color3f& a, const Color3f& b, double t, InterpMethod method) {
  return InterpBy<FloatOps>(a, b, t, method);
}

void Color4f::SetHSL(double hue, double saturation, double lightness, double opacity) {
  Color3f color;
  color.SetHSL(hue, saturation, lightness);
  Set(color, static_cast<float>(opacity));
}

void Color4f::GetHSL(double& hue, double& saturation, double& lightness) const {
  Color3f(*this).GetHSL(hue, saturation, lightness);
}

Color4f Color4f::Interp(const Color4f& a, const Color4f& b, double t, InterpMethod method) {
  return InterpBy<FloatOps>(a, b, t, method);
}

}  // namespace shr
