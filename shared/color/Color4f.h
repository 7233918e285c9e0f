// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Color4f`, a color of three floating-point channels and alpha.
///
/// Channels are nominally 0 to 1 and never clamped unless `Clamp` is called. The conversion from
/// bytes does not scale, the conversion to bytes does:
///
///     Color4f paper(Color4b(200, 100, 0));     // 200.0, 100.0, 0.0, 255.0
///     Color4f unit = paper / 255.0f;           // 0.784..., 0.392..., 0.0, 1.0
///     std::uint32_t packed = unit.GetARGB();   // channels times 255, truncated
///
/// For `COLORREF` and `RGBQUAD` values go through shared/color/Color4b.h. Threads: plain values.

#pragma once

#include <cstdint>

#include "shared/Export.h"
#include "shared/color/Color3f.h"
#include "shared/color/Color4b.h"
#include "shared/color/FloatColorOperators.h"

namespace shr {

/// Red, green, blue and alpha; alpha 1 is opaque. The default is opaque black.
class Color4f : public FloatColorOperators<Color4f> {
public:
  constexpr Color4f() = default;
  constexpr Color4f(float r, float g, float b, float a = 1.0f)
      : red(r), green(g), blue(b), alpha(a) {}
  /// Copies the bytes as they are, alpha too: red 200 becomes 200.0. Divide by 255 for the unit
  /// range.
  explicit constexpr Color4f(const Color4b& color)
      : Color4f(Color3f(color), static_cast<float>(color.alpha)) {}
  explicit constexpr Color4f(const Color3f& color, float a = 1.0f)
      : Color4f(color.red, color.green, color.blue, a) {}

  constexpr void Set(float r, float g, float b, float a = 1.0f) { *this = Color4f(r, g, b, a); }
  constexpr void Set(const Color4b& color) { *this = Color4f(color); }
  constexpr void Set(const Color3f& color, float a = 1.0f) { *this = Color4f(color, a); }

  // Packed forms; the first letter is the most significant byte. Each byte is what
  // `Color4b::ToBYTE` makes of a channel, so channels outside 0 to 1 wrap: call `Clamp` first.

  constexpr std::uint32_t GetARGB() const { return Color4b(*this).GetARGB(); }
  constexpr std::uint32_t GetRGBA() const { return Color4b(*this).GetRGBA(); }
  constexpr std::uint32_t GetABGR() const {
    const Color4b bytes(*this);
    return Color4b(bytes.blue, bytes.green, bytes.red, bytes.alpha).GetARGB();
  }
  /// Returns 0, blue, green, red; alpha is no part of it.
  constexpr std::uint32_t GetCOLORREF() const { return Color4b(*this).GetCOLORREF(); }

  /// Returns the brightness weighted by alpha, 0 to 1 for channels in that range.
  constexpr double Intensity() const { return Color3f(*this).Intensity() * alpha; }

  /// Sets the color from hue, saturation, lightness and alpha, each 0 to 1.
  SHARED_API void SetHSL(double hue, double saturation, double lightness, double opacity = 1.0);
  /// As `Color3f::GetHSL`.
  SHARED_API void GetHSL(double& hue, double& saturation, double& lightness) const;

  /// Mixes as `Color4b::Interp` does, without rounding: the average is the exact half.
  SHARED_API static Color4f Interp(const Color4f& a, const Color4f& b, double t,
                                   InterpMethod method);

  /// Calls `function` with the red of every color, then with green, blue and alpha.
  template <class Function, class... Colors>
  static constexpr void ForEach(Function function, Colors&... colors) {
    function(colors.red...);
    function(colors.green...);
    function(colors.blue...);
    function(colors.alpha...);
  }

  // All opaque.
  static const Color4f Black, Blue, Cyan, Dkgray, Gray, Green, Ltgray, Magenta, Orange, Red, White,
      Yellow;

  float red = 0.0f;
  float green = 0.0f;
  float blue = 0.0f;
  float alpha = 1.0f;
};

// Implementation details follow.

constexpr Color3f::Color3f(const Color4f& color) : Color3f(color.red, color.green, color.blue) {}
constexpr void Color3f::Set(const Color4f& color) {
  *this = Color3f(color);
}

inline constexpr Color4f Color4f::Black{Color3f::Black};
inline constexpr Color4f Color4f::Blue{Color3f::Blue};
inline constexpr Color4f Color4f::Cyan{Color3f::Cyan};
inline constexpr Color4f Color4f::Dkgray{Color3f::Dkgray};
inline constexpr Color4f Color4f::Gray{Color3f::Gray};
inline constexpr Color4f Color4f::Green{Color3f::Green};
inline constexpr Color4f Color4f::Ltgray{Color3f::Ltgray};
inline constexpr Color4f Color4f::Magenta{Color3f::Magenta};
inline constexpr Color4f Color4f::Orange{Color3f::Orange};
inline constexpr Color4f Color4f::Red{Color3f::Red};
inline constexpr Color4f Color4f::White{Color3f::White};
inline constexpr Color4f Color4f::Yellow{Color3f::Yellow};

}  // namespace shr
