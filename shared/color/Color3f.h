// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Color3f`, a color of three floating-point channels for arithmetic with light.
///
/// Channels are nominally 0 to 1 and never clamped unless `Clamp` is called. For a color with alpha
/// see shared/color/Color4f.h, for the bytes that drawing interfaces pass shared/color/Color4b.h.
///
///     Color3f dusk = Color3f::Interp(Color3f::Orange, Color3f::Blue, 0.25,
///                                    Color3f::INTERP_COSINE);
///     Color4b drawn(dusk);
///
/// Threads: plain values.

#pragma once

#include <cstdint>

#include "shared/Export.h"
#include "shared/color/Color4b.h"
#include "shared/color/FloatColorOperators.h"

namespace shr {

class Color4f;

/// Red, green and blue; the default is black.
class Color3f : public FloatColorOperators<Color3f> {
public:
  constexpr Color3f() = default;
  constexpr Color3f(float r, float g, float b) : red(r), green(g), blue(b) {}
  /// Copies the bytes as they are: red 200 becomes 200.0. Divide by 255 for the unit range. Alpha
  /// is dropped.
  explicit constexpr Color3f(const Color4b& color)
      : Color3f(static_cast<float>(color.red), static_cast<float>(color.green),
                static_cast<float>(color.blue)) {}
  /// Drops alpha. Defined in shared/color/Color4f.h.
  explicit constexpr Color3f(const Color4f& color);

  constexpr void Set(float r, float g, float b) { *this = Color3f(r, g, b); }
  constexpr void Set(const Color4b& color) { *this = Color3f(color); }
  constexpr void Set(const Color4f& color);

  /// Returns 0, blue, green, red, each as `Color4b::ToBYTE` makes it of a channel.
  constexpr std::uint32_t GetCOLORREF() const { return Color4b(*this).GetCOLORREF(); }

  /// Returns the brightness, 0 to 1 for channels in that range.
  constexpr double Intensity() const { return 0.3 * red + 0.59 * green + 0.11 * blue; }

  /// Sets the color from hue, saturation and lightness, each 0 to 1.
  SHARED_API void SetHSL(double hue, double saturation, double lightness);
  /// Returns hue, saturation and lightness, each 0 to 1 for channels in that range; a gray has hue
  /// and saturation 0.
  SHARED_API void GetHSL(double& hue, double& saturation, double& lightness) const;

  /// Mixes as `Color4b::Interp` does, without rounding: the average is the exact half.
  SHARED_API static Color3f Interp(const Color3f& a, const Color3f& b, double t,
                                   InterpMethod method);

  /// Calls `function` with the red of every color, then with green, then with blue.
  template <class Function, class... Colors>
  static constexpr void ForEach(Function function, Colors&... colors) {
    function(colors.red...);
    function(colors.green...);
    function(colors.blue...);
  }

  static const Color3f Black, Blue, Cyan, Dkgray, Gray, Green, Ltgray, Magenta, Orange, Red, White,
      Yellow;

  float red = 0.0f;
  float green = 0.0f;
  float blue = 0.0f;
};

// Implementation details follow.

inline constexpr Color3f Color3f::Black{0.0f, 0.0f, 0.0f};
inline constexpr Color3f Color3f::Blue{0.0f, 0.0f, 1.0f};
inline constexpr Color3f Color3f::Cyan{0.0f, 1.0f, 1.0f};
inline constexpr Color3f Color3f::Dkgray{0.25f, 0.25f, 0.25f};
inline constexpr Color3f Color3f::Gray{0.5f, 0.5f, 0.5f};
inline constexpr Color3f Color3f::Green{0.0f, 1.0f, 0.0f};
inline constexpr Color3f Color3f::Ltgray{0.75f, 0.75f, 0.75f};
inline constexpr Color3f Color3f::Magenta{1.0f, 0.0f, 1.0f};
inline constexpr Color3f Color3f::Orange{1.0f, 0.65f, 0.0f};
inline constexpr Color3f Color3f::Red{1.0f, 0.0f, 0.0f};
inline constexpr Color3f Color3f::White{1.0f, 1.0f, 1.0f};
inline constexpr Color3f Color3f::Yellow{1.0f, 1.0f, 0.0f};

}  // namespace shr
