// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `MedianCut`, which reduces the colors of an image to a palette, and the `ColorCount` of which
/// its histogram is made.
///
///     std::vector<ColorCount> histogram = CountColors(image);  // each color and its pixels
///     std::vector<RGBQUAD> palette;
///     MedianCut(histogram, palette, 256);
///
/// Threads: no state; calls with different vectors may run together.

#pragma once

#include <cstdint>
#include <vector>

#include "shared/Export.h"
#include "shared/platform/WindowsTypes.h"

namespace shr {

/// A color, packed as a `COLORREF`, and the number of pixels that have it. The default is black,
/// without pixels. Counting wraps at 32 bits.
class ColorCount {
public:
  constexpr ColorCount() = default;
  constexpr ColorCount(COLORREF color, unsigned int count) : color_(color), count_(count) {}

  constexpr unsigned char GetRed() const { return Byte(RED_SHIFT); }
  constexpr unsigned char GetGreen() const { return Byte(GREEN_SHIFT); }
  constexpr unsigned char GetBlue() const { return Byte(BLUE_SHIFT); }
  constexpr void SetRed(unsigned char red) { SetByte(RED_SHIFT, red); }
  constexpr void SetGreen(unsigned char green) { SetByte(GREEN_SHIFT, green); }
  constexpr void SetBlue(unsigned char blue) { SetByte(BLUE_SHIFT, blue); }

  constexpr COLORREF GetColor() const { return color_; }
  /// Fills the three channels; the reserved byte becomes 0.
  constexpr void GetColor(RGBQUAD& quad) const { quad = {GetBlue(), GetGreen(), GetRed(), 0}; }
  constexpr void SetColor(COLORREF color) { color_ = color; }
  constexpr void SetColor(unsigned char red, unsigned char green, unsigned char blue) {
    color_ = RGB(red, green, blue);
  }
  /// The reserved byte is ignored.
  constexpr void SetColor(const RGBQUAD& quad) {
    SetColor(quad.rgbRed, quad.rgbGreen, quad.rgbBlue);
  }

  constexpr unsigned int GetCount() const { return count_; }
  constexpr void SetCount(unsigned int count) { count_ = count; }
  constexpr void IncrementCount() { ++count_; }
  constexpr void DecrementCount() { --count_; }

  friend constexpr bool operator==(const ColorCount& a, const ColorCount& b) = default;

private:
  static constexpr int RED_SHIFT = 0;
  static constexpr int GREEN_SHIFT = 8;
  static constexpr int BLUE_SHIFT = 16;

  constexpr unsigned char Byte(int shift) const {
    return static_cast<unsigned char>(color_ >> shift & 0xFFu);
  }
  constexpr void SetByte(int shift, unsigned char value) {
    color_ = (color_ & ~(COLORREF{0xFF} << shift)) | COLORREF{value} << shift;
  }

  COLORREF color_ = 0;
  unsigned int count_ = 0;
};

/// Replaces `palette` by at most `maximumColors` colors that stand for those of `colors`, in the
/// order of their boxes, reserved bytes 0: the first half of a split box keeps its place, the
/// second one is the last. `colors` is reordered so that the colors of one box stand together.
///
/// Each palette color is the mean of its box weighted by pixels and rounded to the nearest, halves
/// up; where no color of a box has pixels, all weigh alike. Channels of the same range are split in
/// the order red, green, blue; colors of one value keep their order. Degenerate: no colors or a
/// maximum of 0 give an empty palette. Requires: at most 2^24 colors, which is all there are, or
/// pixel counts whose sum is below 2^56; otherwise means are wrong. Errors: `std::bad_alloc`,
/// `colors` unchanged. Cost: O(n (d + 1) + m log m) for n colors and a palette of m, where no box
/// was split more than d times; d is about log2 m, and never above 2 log2 of all pixels plus log2
/// n. Memory: as much as `colors`. Source: P. Heckbert, "Color Image Quantization for Frame Buffer
/// Display", 1982.
SHARED_API void MedianCut(std::vector<ColorCount>& colors, std::vector<RGBQUAD>& palette,
                          unsigned int maximumColors);

}  // namespace shr
