// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CMTGdiTextIF`, which draws math text on a device context of GDI: a window, a bitmap in memory,
/// a printer. Windows alone has it.
///
///     CMTGdiTextIF output(device, Vec2d(0, 600), 96 / 72.0);   // origin at pixel (0, 600); points
///     CMTContext context(output, 14);
///     std::shared_ptr<CMTMultiLineElement> label;
///     if (context.Parse(L"{\\b Oslo}\nNorway", label) == CMTContext::MT_SUCCESS) {
///       label->DrawUsingTextIF(output, Vec2d(100, 300));
///     }
///
/// Text is measured and laid out as everywhere (`CMTFaceTextIF`), so that a picture on the screen
/// and one in SVG agree.
///
/// Threads: one thread an interface and its device context.

#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <utility>

#include "shared/Export.h"
#include "shared/fonts/TextLayout.h"
#include "shared/mathtext/FaceTextIF.h"

struct HDC__;

namespace shr {

namespace platform {
class GdiPage;
}

enum class GdiTextMode {
  /// Smooth outlines, exactly where they were laid out and of any height; colors may be
  /// transparent.
  Outlines,
  /// Text of the system, as it shows or prints it: fitted to whole pixels, found and copied in what
  /// is printed to a file. Alpha 0 draws nothing, all else is opaque. What is in no font of the
  /// system (symbol sets) is drawn as outlines.
  Text
};

class SHARED_API CMTGdiTextIF : public CMTFaceTextIF {
public:
  /// Draws on `device` (an HDC), whose mapping is not heeded: `origin` is the pixel of the origin
  /// of user units, and a user unit is `pixelsPerUnit` wide and high. Lifetime: as the device
  /// context at most, whose state is as before after each call. Errors: null, an origin that is not
  /// finite, and a scale that is not a positive number are invalid parameters.
  CMTGdiTextIF(HDC__* device, const Vec2d& origin, double pixelsPerUnit,
               GdiTextMode mode = GdiTextMode::Outlines);
  ~CMTGdiTextIF() override;

  /// Text stands out from what is below it by an edge of so many user units in `color`; none for a
  /// width of 0, as at first. Lines have none. Errors: a width that is negative or not finite is an
  /// invalid parameter.
  void SetHalo(const Color4b& color, double width);

  void DrawString(const Vec2d& baselineBegin, std::wstring_view text) override;
  void DrawLine(const Vec2d& from, const Vec2d& to, double thickness) override;

  /// Returns the place of a point of user units on the device, in pixels, y downwards.
  Vec2d ToDevice(const Vec2d& point) const noexcept;

private:
  struct Shapes;

  void AddRun(const TextRun& run, const Vec2d& begin, const Vec2d& em, Shapes& shapes);
  Shapes ShapesOf(const TextLayout& layout, const Vec2d& begin, const Vec2d& em);
  void Draw(const Shapes& shapes, const Color4b& color);
  const GlyphVectors& VectorsOf(const TextRun& run, const PlacedGlyph& placed);

  std::unique_ptr<platform::GdiPage> page_;
  Vec2d origin_;
  double scale_;
  GdiTextMode mode_;
  Color4b haloColor_;
  double haloWidth_ = 0;
  std::map<std::pair<std::shared_ptr<CFaceInfo>, std::uint32_t>, GlyphVectors> glyphs_;
};

}  // namespace shr
