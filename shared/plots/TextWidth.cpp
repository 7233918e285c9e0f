// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/TextWidth.h"

#include <cstdint>

namespace shr {

namespace {

/// Characters from `first` to `last` are `width` of the type size wide. Later rows win.
struct WidthRange {
  std::uint32_t first;
  std::uint32_t last;
  double width;
};

constexpr double DEFAULT_WIDTH = 0.58;

constexpr WidthRange WIDTHS[] = {
    {0x0020, 0x002F, 0.30},  // blank and punctuation
    {0x0041, 0x005A, 0.66},  // capitals
    {0x0066, 0x0066, 0.36},  // f
    {0x0069, 0x0069, 0.27},  // i
    {0x006A, 0x006A, 0.27},  // j
    {0x006C, 0x006C, 0.27},  // l
    {0x006D, 0x006D, 0.90},  // m
    {0x0072, 0x0072, 0.42},  // r
    {0x0074, 0x0074, 0.38},  // t
    {0x0077, 0x0077, 0.78},  // w
    {0x0300, 0x036F, 0.00},  // combining marks
    {0x0400, 0x042F, 0.70},  // Cyrillic capitals
    {0x0591, 0x05C7, 0.00},  // Hebrew points
    {0x0600, 0x06FF, 0.52},  // Arabic
    {0x064B, 0x065F, 0.00},  // Arabic marks
    {0x0900, 0x0DFF, 0.62},  // Indic scripts
    {0x0E31, 0x0E31, 0.00},  // Thai marks
    {0x0E34, 0x0E3A, 0.00}, {0x0E47, 0x0E4E, 0.00}, {0x1000, 0x109F, 0.75},  // Myanmar
    {0x1100, 0x11FF, 1.00},                                                  // Hangul letters
    {0x2E80, 0xD7FF, 1.00},                                                  // East Asian scripts
    {0xD800, 0xDBFF, 1.00},  // first halves of pairs
    {0xDC00, 0xDFFF, 0.00},  // second halves
    {0xF900, 0xFAFF, 1.00}, {0xFF00, 0xFF60, 1.00},
};

double CharacterWidth(std::uint32_t code) {
  // Characters above 16 bits, where a unit holds them; most are ideographs.
  if (code > 0xFFFF) return 1.0;
  double width = DEFAULT_WIDTH;
  for (const WidthRange& range : WIDTHS) {
    if (code >= range.first && code <= range.last) width = range.width;
  }
  return width;
}

}  // namespace

double EstimateTextWidth(std::wstring_view text, double size) {
  double width = 0;
  for (const wchar_t unit : text) width += CharacterWidth(static_cast<std::uint32_t>(unit));
  return width * size;
}

}  // namespace shr
