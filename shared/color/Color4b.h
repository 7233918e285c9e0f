// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Color4b`, the 8-bit RGBA color that every drawing and text interface passes, its palette of
/// names, its packed forms and interpolation between two colors.
///
///     Color4b warm = Color4b::Interp(Color4b::Yellow, Color4b::Red, 0.25, Color4b::INTERP_LINEAR);
///     std::uint32_t packed = warm.GetARGB();
///
/// `COLORREF` values are taken as any unsigned 32-bit integer, so that this header needs no
/// <windows.h>. Threads: plain values.

#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iosfwd>

#include "shared/Export.h"
#include "shared/geometry/MathUtility.h"

struct tagRGBQUAD;

namespace shr {

class Color3f;
class Color4f;
class GString;

/// An unsigned 32-bit integer such as `COLORREF`. An `int` is none, so that two small numbers are
/// taken as gray and alpha.
template <class T>
concept PackedColor = std::unsigned_integral<T> && sizeof(T) == 4;

/// Red, green, blue and alpha, one byte each; alpha 255 is opaque. The default is opaque black.
class Color4b {
public:
  /// How two colors are mixed for 0 < t < 1. The values are stored by applications.
  enum InterpMethod : unsigned int {
    INTERP_LINEAR = 0,   ///< a (1 - t) + b t
    INTERP_REVERSE = 1,  ///< a t + b (1 - t)
    INTERP_COSINE = 2,   ///< linear with t' = (1 - cos(pi t)) / 2
    INTERP_START = 3,    ///< a
    INTERP_AVERAGE = 4,  ///< (a + b + 1) / 2 in integers
    INTERP_END = 5,      ///< b
    INTERP_HSL_DECREASING = 6,
    INTERP_HSL_INCREASING = 7,
    INTERP_HSL_SHORTEST = 8,
    INTERP_HSL_LONGEST = 9,
  };

  constexpr Color4b() = default;
  constexpr Color4b(unsigned char r, unsigned char g, unsigned char b, unsigned char a = ALPHA_MAX)
      : red(r), green(g), blue(b), alpha(a) {}
  constexpr Color4b(unsigned char gray, unsigned char a) : Color4b(gray, gray, gray, a) {}
  /// Takes four bytes: red, green, blue, alpha.
  explicit constexpr Color4b(const unsigned char* channels)
      : Color4b(channels[0], channels[1], channels[2], channels[3]) {}
  /// Takes a `COLORREF`, whose own top byte is ignored.
  template <PackedColor T>
  constexpr Color4b(T colorRef, unsigned char a)
      : Color4b(Byte(colorRef, 0), Byte(colorRef, 8), Byte(colorRef, 16), a) {}
  /// Takes an `RGBQUAD`, whose reserved byte is ignored.
  SHARED_API Color4b(const tagRGBQUAD& quad, unsigned char a);
  /// Take channels in 0 to 1 as `ToBYTE` does.
  template <std::same_as<Color3f> C>
  explicit constexpr Color4b(const C& color, unsigned char a = ALPHA_MAX)
      : Color4b(ToBYTE(color.red), ToBYTE(color.green), ToBYTE(color.blue), a) {}
  template <std::same_as<Color4f> C>
  explicit constexpr Color4b(const C& color)
      : Color4b(ToBYTE(color.red), ToBYTE(color.green), ToBYTE(color.blue), ToBYTE(color.alpha)) {}
  /// One number is no color: 0 would pass for a pointer to channels.
  template <std::integral T>
  explicit Color4b(T) = delete;
  explicit Color4b(std::nullptr_t) = delete;

  constexpr void Set(unsigned char r, unsigned char g, unsigned char b,
                     unsigned char a = ALPHA_MAX) {
    *this = Color4b(r, g, b, a);
  }
  constexpr void Set(unsigned char gray, unsigned char a) { *this = Color4b(gray, a); }
  constexpr void Set(const unsigned char* channels) { *this = Color4b(channels); }
  template <PackedColor T>
  constexpr void Set(T colorRef, unsigned char a) {
    *this = Color4b(colorRef, a);
  }
  void Set(const tagRGBQUAD& quad, unsigned char a) { *this = Color4b(quad, a); }
  template <std::same_as<Color3f> C>
  constexpr void Set(const C& color, unsigned char a = ALPHA_MAX) {
    *this = Color4b(color, a);
  }
  template <std::same_as<Color4f> C>
  constexpr void Set(const C& color) {
    *this = Color4b(color);
  }
  template <std::integral T>
  void Set(T) = delete;
  void Set(std::nullptr_t) = delete;

  // Packed forms; the first letter is the most significant byte.

  constexpr std::uint32_t GetARGB() const { return Pack(alpha, red, green, blue); }
  constexpr void SetARGB(std::uint32_t argb) {
    *this = Color4b(Byte(argb, 16), Byte(argb, 8), Byte(argb, 0), Byte(argb, 24));
  }
  constexpr std::uint32_t GetRGBA() const { return Pack(red, green, blue, alpha); }
  constexpr void SetRGBA(std::uint32_t rgba) {
    *this = Color4b(Byte(rgba, 24), Byte(rgba, 16), Byte(rgba, 8), Byte(rgba, 0));
  }
  /// Returns 0, blue, green, red; alpha is no part of it.
  constexpr std::uint32_t GetCOLORREF() const { return Pack(0, blue, green, red); }

  /// Returns "#rrggbb", or "#rrggbbaa" when the color is not opaque, in lower case.
  SHARED_API GString GetHex() const;
  /// Reads "#rrggbb", which is opaque, or "#rrggbbaa", in any letter case and without blanks.
  /// Returns false, with all four channels 0, for any other text.
  /// Law: `SetHex(GetHex())` gives the same color.
  SHARED_API bool SetHex(const GString& text);

  /// Returns the brightness weighted by alpha, 0 to 1.
  constexpr double Intensity() const {
    return (0.3 * red + 0.59 * green + 0.11 * blue) * alpha / (255.0 * 255.0);
  }

  /// Sets the color from hue, saturation, lightness and alpha, each 0 to 1. Channels are truncated.
  SHARED_API void SetHSL(double hue, double saturation, double lightness, double opacity = 1.0);
  /// Returns hue, saturation and lightness, each 0 to 1; a gray has hue and saturation 0.
  SHARED_API void GetHSL(double& hue, double& saturation, double& lightness) const;

  /// Returns the mix of `a` and `b`. Equal colors give that color. Outside 0 < t < 1 the nearer end
  /// is returned (with `INTERP_REVERSE` the other one); a NaN counts as 0, an unknown method gives
  /// `a`. The HSL methods mix hue, saturation and lightness, running around the circle of hues as
  /// their names say, and round the linear mix of the alphas.
  SHARED_API static Color4b Interp(const Color4b& a, const Color4b& b, double t,
                                   InterpMethod method);
  /// Stores what `Interp` returns.
  void Interpolate(const Color4b& a, const Color4b& b, double t, InterpMethod method) {
    *this = Interp(a, b, t, method);
  }

  /// Returns v * 255 truncated toward zero and narrowed to its low 8 bits; nothing is clamped or
  /// rounded. Degenerate: 0 when the product is no 32-bit integer.
  static constexpr unsigned char ToBYTE(double v) {
    const double scaled = v * 255.0;
    if (!(scaled > -2147483649.0 && scaled < 2147483648.0)) return 0;
    return static_cast<unsigned char>(static_cast<std::int32_t>(scaled));
  }

  /// Pointers to the four channels in order.
  operator unsigned char*() { return &red; }
  operator const unsigned char*() const { return &red; }

  /// Compare by value: red first, then green, blue and alpha.
  friend constexpr bool operator==(const Color4b& a, const Color4b& b) = default;
  friend constexpr std::strong_ordering operator<=>(const Color4b& a, const Color4b& b) = default;

  // The extended color keywords of CSS Color Module Level 3 in their "Gray" spellings, all opaque.
  static const Color4b AliceBlue, AntiqueWhite, Aqua, Aquamarine, Azure, Beige, Bisque, Black,
      BlanchedAlmond, Blue, BlueViolet, Brown, BurlyWood, CadetBlue, Chartreuse, Chocolate, Coral,
      CornflowerBlue, Cornsilk, Crimson, Cyan, DarkBlue, DarkCyan, DarkGoldenrod, DarkGray,
      DarkGreen, DarkKhaki, DarkMagenta, DarkOliveGreen, DarkOrange, DarkOrchid, DarkRed,
      DarkSalmon, DarkSeaGreen, DarkSlateBlue, DarkSlateGray, DarkTurquoise, DarkViolet, DeepPink,
      DeepSkyBlue, DimGray, DodgerBlue, Firebrick, FloralWhite, ForestGreen, Fuchsia, Gainsboro,
      GhostWhite, Gold, Goldenrod, Gray, Green, GreenYellow, Honeydew, HotPink, IndianRed, Indigo,
      Ivory, Khaki, Lavender, LavenderBlush, LawnGreen, LemonChiffon, LightBlue, LightCoral,
      LightCyan, LightGoldenrodYellow, LightGray, LightGreen, LightPink, LightSalmon, LightSeaGreen,
      LightSkyBlue, LightSlateGray, LightSteelBlue, LightYellow, Lime, LimeGreen, Linen, Magenta,
      Maroon, MediumAquamarine, MediumBlue, MediumOrchid, MediumPurple, MediumSeaGreen,
      MediumSlateBlue, MediumSpringGreen, MediumTurquoise, MediumVioletRed, MidnightBlue, MintCream,
      MistyRose, Moccasin, NavajoWhite, Navy, OldLace, Olive, OliveDrab, Orange, OrangeRed, Orchid,
      PaleGoldenrod, PaleGreen, PaleTurquoise, PaleVioletRed, PapayaWhip, PeachPuff, Peru, Pink,
      Plum, PowderBlue, Purple, Red, RosyBrown, RoyalBlue, SaddleBrown, Salmon, SandyBrown,
      SeaGreen, Seashell, Sienna, Silver, SkyBlue, SlateBlue, SlateGray, Snow, SpringGreen,
      SteelBlue, Tan, Teal, Thistle, Tomato, Turquoise, Violet, Wheat, White, WhiteSmoke, Yellow,
      YellowGreen;

  // Grays of the library's own and the transparent paper color.
  static const Color4b TransparentWhite, Dkgray, Ltgray;

  unsigned char red = 0;
  unsigned char green = 0;
  unsigned char blue = 0;
  unsigned char alpha = ALPHA_MAX;

private:
  static constexpr unsigned char Byte(std::uint32_t packed, int shift) {
    return static_cast<unsigned char>(packed >> shift & 0xFFu);
  }
  static constexpr std::uint32_t Pack(std::uint32_t top, std::uint32_t second, std::uint32_t third,
                                      std::uint32_t low) {
    return top << 24 | second << 16 | third << 8 | low;
  }
};

/// Mixes red, green and blue of two `COLORREF` values by the methods 0 to 5 of `Color4b::Interp`;
/// any other method returns `a`.
SHARED_API std::uint32_t InterpColor(std::uint32_t a, std::uint32_t b, double t,
                                     unsigned int method);

/// Copy `count` colors between the two channel orders. With `reservedIsAlpha` the reserved byte and
/// alpha are copied into each other; otherwise colors become opaque and reserved bytes 0. Errors:
/// an internal error of unit "Color4b" when a pointer is null. A count below 1 copies nothing.
SHARED_API void CopyRGBQUADToColor4b(Color4b* destination, const tagRGBQUAD* source, int count,
                                     bool reservedIsAlpha);
SHARED_API void CopyColor4bToRGBQUAD(tagRGBQUAD* destination, const Color4b* source, int count,
                                     bool reservedIsAlpha);

/// Writes "(red, green, blue, alpha)" in decimal.
SHARED_API std::ostream& operator<<(std::ostream& out, const Color4b& color);

// Implementation details follow.

static_assert(sizeof(Color4b) == 4);

inline constexpr Color4b Color4b::AliceBlue{0xF0, 0xF8, 0xFF};
inline constexpr Color4b Color4b::AntiqueWhite{0xFA, 0xEB, 0xD7};
inline constexpr Color4b Color4b::Aqua{0x00, 0xFF, 0xFF};
inline constexpr Color4b Color4b::Aquamarine{0x7F, 0xFF, 0xD4};
inline constexpr Color4b Color4b::Azure{0xF0, 0xFF, 0xFF};
inline constexpr Color4b Color4b::Beige{0xF5, 0xF5, 0xDC};
inline constexpr Color4b Color4b::Bisque{0xFF, 0xE4, 0xC4};
inline constexpr Color4b Color4b::Black{0x00, 0x00, 0x00};
inline constexpr Color4b Color4b::BlanchedAlmond{0xFF, 0xEB, 0xCD};
inline constexpr Color4b Color4b::Blue{0x00, 0x00, 0xFF};
inline constexpr Color4b Color4b::BlueViolet{0x8A, 0x2B, 0xE2};
inline constexpr Color4b Color4b::Brown{0xA5, 0x2A, 0x2A};
inline constexpr Color4b Color4b::BurlyWood{0xDE, 0xB8, 0x87};
inline constexpr Color4b Color4b::CadetBlue{0x5F, 0x9E, 0xA0};
inline constexpr Color4b Color4b::Chartreuse{0x7F, 0xFF, 0x00};
inline constexpr Color4b Color4b::Chocolate{0xD2, 0x69, 0x1E};
inline constexpr Color4b Color4b::Coral{0xFF, 0x7F, 0x50};
inline constexpr Color4b Color4b::CornflowerBlue{0x64, 0x95, 0xED};
inline constexpr Color4b Color4b::Cornsilk{0xFF, 0xF8, 0xDC};
inline constexpr Color4b Color4b::Crimson{0xDC, 0x14, 0x3C};
inline constexpr Color4b Color4b::Cyan{0x00, 0xFF, 0xFF};
inline constexpr Color4b Color4b::DarkBlue{0x00, 0x00, 0x8B};
inline constexpr Color4b Color4b::DarkCyan{0x00, 0x8B, 0x8B};
inline constexpr Color4b Color4b::DarkGoldenrod{0xB8, 0x86, 0x0B};
inline constexpr Color4b Color4b::DarkGray{0xA9, 0xA9, 0xA9};
inline constexpr Color4b Color4b::DarkGreen{0x00, 0x64, 0x00};
inline constexpr Color4b Color4b::DarkKhaki{0xBD, 0xB7, 0x6B};
inline constexpr Color4b Color4b::DarkMagenta{0x8B, 0x00, 0x8B};
inline constexpr Color4b Color4b::DarkOliveGreen{0x55, 0x6B, 0x2F};
inline constexpr Color4b Color4b::DarkOrange{0xFF, 0x8C, 0x00};
inline constexpr Color4b Color4b::DarkOrchid{0x99, 0x32, 0xCC};
inline constexpr Color4b Color4b::DarkRed{0x8B, 0x00, 0x00};
inline constexpr Color4b Color4b::DarkSalmon{0xE9, 0x96, 0x7A};
inline constexpr Color4b Color4b::DarkSeaGreen{0x8F, 0xBC, 0x8F};
inline constexpr Color4b Color4b::DarkSlateBlue{0x48, 0x3D, 0x8B};
inline constexpr Color4b Color4b::DarkSlateGray{0x2F, 0x4F, 0x4F};
inline constexpr Color4b Color4b::DarkTurquoise{0x00, 0xCE, 0xD1};
inline constexpr Color4b Color4b::DarkViolet{0x94, 0x00, 0xD3};
inline constexpr Color4b Color4b::DeepPink{0xFF, 0x14, 0x93};
inline constexpr Color4b Color4b::DeepSkyBlue{0x00, 0xBF, 0xFF};
inline constexpr Color4b Color4b::DimGray{0x69, 0x69, 0x69};
inline constexpr Color4b Color4b::DodgerBlue{0x1E, 0x90, 0xFF};
inline constexpr Color4b Color4b::Firebrick{0xB2, 0x22, 0x22};
inline constexpr Color4b Color4b::FloralWhite{0xFF, 0xFA, 0xF0};
inline constexpr Color4b Color4b::ForestGreen{0x22, 0x8B, 0x22};
inline constexpr Color4b Color4b::Fuchsia{0xFF, 0x00, 0xFF};
inline constexpr Color4b Color4b::Gainsboro{0xDC, 0xDC, 0xDC};
inline constexpr Color4b Color4b::GhostWhite{0xF8, 0xF8, 0xFF};
inline constexpr Color4b Color4b::Gold{0xFF, 0xD7, 0x00};
inline constexpr Color4b Color4b::Goldenrod{0xDA, 0xA5, 0x20};
inline constexpr Color4b Color4b::Gray{0x80, 0x80, 0x80};
inline constexpr Color4b Color4b::Green{0x00, 0x80, 0x00};
inline constexpr Color4b Color4b::GreenYellow{0xAD, 0xFF, 0x2F};
inline constexpr Color4b Color4b::Honeydew{0xF0, 0xFF, 0xF0};
inline constexpr Color4b Color4b::HotPink{0xFF, 0x69, 0xB4};
inline constexpr Color4b Color4b::IndianRed{0xCD, 0x5C, 0x5C};
inline constexpr Color4b Color4b::Indigo{0x4B, 0x00, 0x82};
inline constexpr Color4b Color4b::Ivory{0xFF, 0xFF, 0xF0};
inline constexpr Color4b Color4b::Khaki{0xF0, 0xE6, 0x8C};
inline constexpr Color4b Color4b::Lavender{0xE6, 0xE6, 0xFA};
inline constexpr Color4b Color4b::LavenderBlush{0xFF, 0xF0, 0xF5};
inline constexpr Color4b Color4b::LawnGreen{0x7C, 0xFC, 0x00};
inline constexpr Color4b Color4b::LemonChiffon{0xFF, 0xFA, 0xCD};
inline constexpr Color4b Color4b::LightBlue{0xAD, 0xD8, 0xE6};
inline constexpr Color4b Color4b::LightCoral{0xF0, 0x80, 0x80};
inline constexpr Color4b Color4b::LightCyan{0xE0, 0xFF, 0xFF};
inline constexpr Color4b Color4b::LightGoldenrodYellow{0xFA, 0xFA, 0xD2};
inline constexpr Color4b Color4b::LightGray{0xD3, 0xD3, 0xD3};
inline constexpr Color4b Color4b::LightGreen{0x90, 0xEE, 0x90};
inline constexpr Color4b Color4b::LightPink{0xFF, 0xB6, 0xC1};
inline constexpr Color4b Color4b::LightSalmon{0xFF, 0xA0, 0x7A};
inline constexpr Color4b Color4b::LightSeaGreen{0x20, 0xB2, 0xAA};
inline constexpr Color4b Color4b::LightSkyBlue{0x87, 0xCE, 0xFA};
inline constexpr Color4b Color4b::LightSlateGray{0x77, 0x88, 0x99};
inline constexpr Color4b Color4b::LightSteelBlue{0xB0, 0xC4, 0xDE};
inline constexpr Color4b Color4b::LightYellow{0xFF, 0xFF, 0xE0};
inline constexpr Color4b Color4b::Lime{0x00, 0xFF, 0x00};
inline constexpr Color4b Color4b::LimeGreen{0x32, 0xCD, 0x32};
inline constexpr Color4b Color4b::Linen{0xFA, 0xF0, 0xE6};
inline constexpr Color4b Color4b::Magenta{0xFF, 0x00, 0xFF};
inline constexpr Color4b Color4b::Maroon{0x80, 0x00, 0x00};
inline constexpr Color4b Color4b::MediumAquamarine{0x66, 0xCD, 0xAA};
inline constexpr Color4b Color4b::MediumBlue{0x00, 0x00, 0xCD};
inline constexpr Color4b Color4b::MediumOrchid{0xBA, 0x55, 0xD3};
inline constexpr Color4b Color4b::MediumPurple{0x93, 0x70, 0xDB};
inline constexpr Color4b Color4b::MediumSeaGreen{0x3C, 0xB3, 0x71};
inline constexpr Color4b Color4b::MediumSlateBlue{0x7B, 0x68, 0xEE};
inline constexpr Color4b Color4b::MediumSpringGreen{0x00, 0xFA, 0x9A};
inline constexpr Color4b Color4b::MediumTurquoise{0x48, 0xD1, 0xCC};
inline constexpr Color4b Color4b::MediumVioletRed{0xC7, 0x15, 0x85};
inline constexpr Color4b Color4b::MidnightBlue{0x19, 0x19, 0x70};
inline constexpr Color4b Color4b::MintCream{0xF5, 0xFF, 0xFA};
inline constexpr Color4b Color4b::MistyRose{0xFF, 0xE4, 0xE1};
inline constexpr Color4b Color4b::Moccasin{0xFF, 0xE4, 0xB5};
inline constexpr Color4b Color4b::NavajoWhite{0xFF, 0xDE, 0xAD};
inline constexpr Color4b Color4b::Navy{0x00, 0x00, 0x80};
inline constexpr Color4b Color4b::OldLace{0xFD, 0xF5, 0xE6};
inline constexpr Color4b Color4b::Olive{0x80, 0x80, 0x00};
inline constexpr Color4b Color4b::OliveDrab{0x6B, 0x8E, 0x23};
inline constexpr Color4b Color4b::Orange{0xFF, 0xA5, 0x00};
inline constexpr Color4b Color4b::OrangeRed{0xFF, 0x45, 0x00};
inline constexpr Color4b Color4b::Orchid{0xDA, 0x70, 0xD6};
inline constexpr Color4b Color4b::PaleGoldenrod{0xEE, 0xE8, 0xAA};
inline constexpr Color4b Color4b::PaleGreen{0x98, 0xFB, 0x98};
inline constexpr Color4b Color4b::PaleTurquoise{0xAF, 0xEE, 0xEE};
inline constexpr Color4b Color4b::PaleVioletRed{0xDB, 0x70, 0x93};
inline constexpr Color4b Color4b::PapayaWhip{0xFF, 0xEF, 0xD5};
inline constexpr Color4b Color4b::PeachPuff{0xFF, 0xDA, 0xB9};
inline constexpr Color4b Color4b::Peru{0xCD, 0x85, 0x3F};
inline constexpr Color4b Color4b::Pink{0xFF, 0xC0, 0xCB};
inline constexpr Color4b Color4b::Plum{0xDD, 0xA0, 0xDD};
inline constexpr Color4b Color4b::PowderBlue{0xB0, 0xE0, 0xE6};
inline constexpr Color4b Color4b::Purple{0x80, 0x00, 0x80};
inline constexpr Color4b Color4b::Red{0xFF, 0x00, 0x00};
inline constexpr Color4b Color4b::RosyBrown{0xBC, 0x8F, 0x8F};
inline constexpr Color4b Color4b::RoyalBlue{0x41, 0x69, 0xE1};
inline constexpr Color4b Color4b::SaddleBrown{0x8B, 0x45, 0x13};
inline constexpr Color4b Color4b::Salmon{0xFA, 0x80, 0x72};
inline constexpr Color4b Color4b::SandyBrown{0xF4, 0xA4, 0x60};
inline constexpr Color4b Color4b::SeaGreen{0x2E, 0x8B, 0x57};
inline constexpr Color4b Color4b::Seashell{0xFF, 0xF5, 0xEE};
inline constexpr Color4b Color4b::Sienna{0xA0, 0x52, 0x2D};
inline constexpr Color4b Color4b::Silver{0xC0, 0xC0, 0xC0};
inline constexpr Color4b Color4b::SkyBlue{0x87, 0xCE, 0xEB};
inline constexpr Color4b Color4b::SlateBlue{0x6A, 0x5A, 0xCD};
inline constexpr Color4b Color4b::SlateGray{0x70, 0x80, 0x90};
inline constexpr Color4b Color4b::Snow{0xFF, 0xFA, 0xFA};
inline constexpr Color4b Color4b::SpringGreen{0x00, 0xFF, 0x7F};
inline constexpr Color4b Color4b::SteelBlue{0x46, 0x82, 0xB4};
inline constexpr Color4b Color4b::Tan{0xD2, 0xB4, 0x8C};
inline constexpr Color4b Color4b::Teal{0x00, 0x80, 0x80};
inline constexpr Color4b Color4b::Thistle{0xD8, 0xBF, 0xD8};
inline constexpr Color4b Color4b::Tomato{0xFF, 0x63, 0x47};
inline constexpr Color4b Color4b::Turquoise{0x40, 0xE0, 0xD0};
inline constexpr Color4b Color4b::Violet{0xEE, 0x82, 0xEE};
inline constexpr Color4b Color4b::Wheat{0xF5, 0xDE, 0xB3};
inline constexpr Color4b Color4b::White{0xFF, 0xFF, 0xFF};
inline constexpr Color4b Color4b::WhiteSmoke{0xF5, 0xF5, 0xF5};
inline constexpr Color4b Color4b::Yellow{0xFF, 0xFF, 0x00};
inline constexpr Color4b Color4b::YellowGreen{0x9A, 0xCD, 0x32};

inline constexpr Color4b Color4b::TransparentWhite{0xFF, 0xFF, 0xFF, ALPHA_MIN};
inline constexpr Color4b Color4b::Dkgray{0x40, 0x40, 0x40};
inline constexpr Color4b Color4b::Ltgray{0xBF, 0xBF, 0xBF};

}  // namespace shr
