// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CPolyClip`: clips single contours to a rectangle, as fast as they can be read.
///
/// One contour comes back as one contour: where several parts lie in the rectangle they are joined
/// along its sides by pieces without width. That is what filling needs. For separate parts with
/// holes use `GPolygon2d::Intersection`.
///
///     CPolyClip clip(Box2d(0.0, 0.0, 10.0, 10.0));
///     CPodVector<Vec2d, 32> out;
///     std::size_t added = clip.Clip(contour, out);
///
/// Threads: an object belongs to one thread at a time.

#pragma once

#include <cstddef>
#include <span>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/polygons/PodVector.h"

namespace shr {

/// A clipper with four stages, one a side of the rectangle: right, bottom, left, top. Each passes
/// on what lies on its side, points on the boundary included, and the points where the contour
/// crosses the boundary.
///
/// Each stage holds its first point back until the contour closes. A contour inside the rectangle
/// thus comes back rotated by four positions: of p1 ... p6 come p5, p6, p1, p2, p3, p4.
///
/// Degenerate: a point with a NaN coordinate counts as outside of the sides it is compared with.
/// A box that is not in order leaves nothing; see `Box2d::Normalize`. A box with a NaN clips
/// nothing: contours with numbers come back whole. Until a rectangle is set,
/// nothing is left of any contour.
class SHARED_API CPolyClip {
public:
  using Output = CPodVector<Vec2d, 32>;

  CPolyClip();
  explicit CPolyClip(const Box2d& box);

  void SetClipRect(const Box2d& box);
  /// Takes a box whose y axis runs downward: its yMin is the upper value.
  void SetClipRectBLT(const Box2d& box);

  /// Clip one contour, repeated first point or not, append what is left to `out` and return the
  /// number of points appended. `out` does not hold `points`. Cost: O(points).
  /// Errors: a null pointer with a count above 0 raises an internal error of unit "PolyClip".
  std::size_t Clip(const Vec2d* points, std::size_t count, Output& out);
  std::size_t Clip(std::span<const Vec2d> points, Output& out);

private:
  /// The boundary of one side and how far the contour has come at it.
  struct Stage {
    double boundary = 0.0;
    Vec2d first;
    Vec2d previous;
    bool isPreviousInside = false;
    bool isFirstPending = true;
  };
  static constexpr std::size_t NUM_STAGES = 4;
  class Pipeline;

  Stage stages_[NUM_STAGES];
};

}  // namespace shr
