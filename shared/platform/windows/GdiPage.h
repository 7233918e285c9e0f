// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GdiPage`, what text is made of on a device context: runs of glyphs, straight lines, and pixels
/// that are covered more or less. Math text is drawn there by shared/mathtext/GdiTextIF.h.
///
///     GdiPage page(device);
///     page.DrawGlyphs(font, glyphs, {{100, 200}, {40, 0}}, 0x0000FF);   // 40 pixels an em
///
/// Units: pixels of the device, y downwards, whatever its mapping. Colors are those of GDI: red in
/// the lowest byte. The state of the device context is as before after each call. Threads: one
/// thread a page.

#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "shared/platform/Fonts.h"

struct HDC__;

namespace shr::platform {

/// A rectangle of pixels.
struct GdiRectangle {
  int left = 0, top = 0, width = 0, height = 0;
};

/// Where a line of text begins on its baseline, and which way and how far an em goes along it.
struct GdiBaseline {
  OutlinePoint begin;
  OutlinePoint em;
};

/// A glyph of a font by its number, and its origin in em, y upwards.
struct GdiGlyph {
  std::uint32_t glyph = 0;
  OutlinePoint origin;
};

class GdiPage {
public:
  /// Lifetime: as the device context at most.
  explicit GdiPage(HDC__* device);
  ~GdiPage();
  GdiPage(const GdiPage&) = delete;
  GdiPage& operator=(const GdiPage&) = delete;

  /// Draws glyphs of one font as the system draws text. Returns false, having drawn nothing, when
  /// the system does not give the font.
  bool DrawGlyphs(const FontDescription& font, std::span<const GdiGlyph> glyphs,
                  const GdiBaseline& baseline, std::uint32_t color);

  /// Draws a line with flat ends, `width` pixels thick, 1 at least.
  void DrawLine(const OutlinePoint& from, const OutlinePoint& to, double width,
                std::uint32_t color);

  /// Returns the rectangle in which anything is seen at all; none when there is no such pixel.
  GdiRectangle GetClip() const;

  /// Blends a color into a rectangle, as much as each pixel is covered: row by row, 0 to 255. Alpha
  /// is 0 to 255, too. Returns false when the device does not blend.
  bool Blend(const GdiRectangle& rectangle, std::span<const unsigned char> coverage,
             std::uint32_t color, unsigned char alpha);

private:
  class KnownFont;

  const KnownFont* Find(const FontDescription& description);

  HDC__* device_;
  std::vector<std::unique_ptr<KnownFont>> fonts_;
};

}  // namespace shr::platform
