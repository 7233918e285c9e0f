// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GlyphCoverage`, which tells how much of each pixel of a rectangle outlines cover: smooth type
/// for pictures of pixels. Outlines come from `GetGlyphVectors` (shared/fonts/TextLayout.h).
///
///     GlyphCoverage coverage(0, 0, 640, 480);
///     coverage.Fill(outline);                                  // its points are pixels
///     const std::vector<unsigned char> pixels = coverage.Get();
///
/// Units: pixels, x to the right and y downwards; pixel (i, j) reaches from (i, j) to (i + 1,
/// j + 1). Threads: one thread an object.

#pragma once

#include <vector>

#include "shared/Export.h"
#include "shared/fonts/FaceInfo.h"
#include "shared/geometry/Vec2.h"

namespace shr {

class SHARED_API GlyphCoverage {
public:
  /// Errors: a rectangle without pixels is an invalid parameter.
  GlyphCoverage(int left, int top, int width, int height);
  ~GlyphCoverage();
  GlyphCoverage(const GlyphCoverage&) = delete;
  GlyphCoverage& operator=(const GlyphCoverage&) = delete;

  /// Adds what closed contours enclose. A pixel is covered by the exact area, curves taken as lines
  /// within a fiftieth of a pixel. Of contours in opposite directions only those that lie within
  /// each other are right, as those of glyphs do. Degenerate: verbs behind the last point are left
  /// out, as is an outline with a point that is not finite. Cost: O(pixels that edges pass).
  void Fill(const GlyphOutline& outline);

  /// Adds lines drawn with a round pen, `width` pixels thick.
  void Stroke(const GlyphOutline& outline, double width);

  /// Returns the pixels row by row, 0 to 255.
  [[nodiscard]] std::vector<unsigned char> Get() const;

private:
  void AddEdge(const Vec2d& from, const Vec2d& to);
  void AddRowEdge(float* row, double x0, double x1, double height);
  void AddCapsule(const Vec2d& from, const Vec2d& to, double radius);

  int left_, top_, width_, height_;
  std::vector<float> areas_;    // a row has one more than the width; sums from the left are covers
  std::vector<float> strokes_;  // empty until something is stroked
};

}  // namespace shr
