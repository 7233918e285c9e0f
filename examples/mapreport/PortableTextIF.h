// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A text interface of math text whose pictures are the same bytes on every machine: it asks for no
/// face, estimates how wide text is, and leaves the faces to whoever looks at the picture.

#pragma once

#include <string_view>

#include "shared/mathtext/TextIF.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

/// Writes runs as `<text>` in the style of the picture. Text is not turned.
class PortableTextIF : public shr::CMTTextIF {
public:
  /// `svg` must live as long as this.
  explicit PortableTextIF(shr::SvgWriter& svg) : svg_(svg) {}

  /// Whether text that is drawn stands out from what is below it.
  void SetHalo(bool hasHalo) { hasHalo_ = hasHalo; }

  shr::MTLineMetrics GetLineMetrics() override;
  double GetTextExtent(std::wstring_view text) override;
  shr::Box2d GetTextBounds(std::wstring_view text) override;
  double GetAverageCharWidth() override;
  void DrawString(const shr::Vec2d& baselineBegin, std::wstring_view text) override;
  void DrawLine(const shr::Vec2d& from, const shr::Vec2d& to, double thickness) override;

private:
  shr::SvgWriter& svg_;
  bool hasHalo_ = false;
};

}  // namespace mapreport
