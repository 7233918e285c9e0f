// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/color/Color4b.h"

#include <ostream>
#include <string>

#include "shared/color/ColorMix.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/WindowsTypes.h"
#include "shared/text/GString.h"

namespace shr {
namespace {

unsigned char MixChannel(unsigned char a, unsigned char b, double t) {
  return static_cast<unsigned char>(MixLinear(a, b, t) + 0.5);
}

/// Returns the value of a hexadecimal digit, or -1.
int DigitOf(wchar_t ch) {
  if (ch >= L'0' && ch <= L'9') return ch - L'0';
  if (ch >= L'a' && ch <= L'f') return ch - L'a' + 10;
  if (ch >= L'A' && ch <= L'F') return ch - L'A' + 10;
  return -1;
}

struct ByteOps {
  static Color4b Linear(const Color4b& a, const Color4b& b, double t) {
    return Color4b(MixChannel(a.red, b.red, t), MixChannel(a.green, b.green, t),
                   MixChannel(a.blue, b.blue, t), MixChannel(a.alpha, b.alpha, t));
  }

  static Color4b Average(const Color4b& a, const Color4b& b) {
    const auto half = [](int x, int y) { return static_cast<unsigned char>((x + y + 1) / 2); };
    return Color4b(half(a.red, b.red), half(a.green, b.green), half(a.blue, b.blue),
                   half(a.alpha, b.alpha));
  }

  static Color4b ByHue(const Hsl& mixed, const Color4b& a, const Color4b& b, double t) {
    Color4b result;
    result.SetHSL(mixed.hue, mixed.saturation, mixed.lightness);
    result.alpha = MixChannel(a.alpha, b.alpha, t);
    return result;
  }
};

}  // namespace

Color4b::Color4b(const tagRGBQUAD& quad, unsigned char a)
    : Color4b(quad.rgbRed, quad.rgbGreen, quad.rgbBlue, a) {}

void Color4b::SetHSL(double hue, double saturation, double lightness, double opacity) {
  const Rgb rgb = RgbOf({hue, saturation, lightness});
  Set(ToBYTE(rgb.red), ToBYTE(rgb.green), ToBYTE(rgb.blue), ToBYTE(opacity));
}

void Color4b::GetHSL(double& hue, double& saturation, double& lightness) const {
  const Hsl hsl = HslOf({red / 255.0, green / 255.0, blue / 255.0});
  hue = hsl.hue;
  saturation = hsl.saturation;
  lightness = hsl.lightness;
}

GString Color4b::GetHex() const {
  constexpr const wchar_t* DIGITS = L"0123456789abcdef";
  std::wstring text(1, L'#');
  for (const unsigned char channel : {red, green, blue, alpha}) {
    text += DIGITS[channel >> 4];
    text += DIGITS[channel & 15];
  }
  if (alpha == ALPHA_MAX) text.resize(7);
  return GString(text);
}

bool Color4b::SetHex(const GString& text) {
  unsigned char channels[] = {0, 0, 0, ALPHA_MAX};
  const std::size_t size = text.size();
  bool isColor = (size == 7 || size == 9) && text.c_str()[0] == L'#';
  for (std::size_t i = 1; isColor && i < size; i += 2) {
    const int high = DigitOf(text.c_str()[i]);
    const int low = DigitOf(text.c_str()[i + 1]);
    isColor = high >= 0 && low >= 0;
    channels[i / 2] = static_cast<unsigned char>(high * 16 + low);
  }
  *this = isColor ? Color4b(channels) : Color4b(0, 0, 0, 0);
  return isColor;
}

Color4b Color4b::Interp(const Color4b& a, const Color4b& b, double t, InterpMethod method) {
  return InterpBy<ByteOps>(a, b, t, method);
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
