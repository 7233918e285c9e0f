// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The raw curves of an offset, which wind around a place once or more exactly where the offset
/// polygon is. For the library's own use.
///
///     OffsetCurve curve(distance, options);
///     for (const auto& contour : cleanContours) curve.Add(contour);
///     // all of curve.Contours() under FillRule::Negative
///
/// Threads: values of their own.

#pragma once

#include <span>
#include <vector>

#include "shared/geometry/Vec2.h"
#include "shared/polygons/Gpc.h"
#include "shared/polygons/OffsetOptions.h"

namespace shr {

class OffsetCurve {
public:
  /// Errors: "Invalid parameter passed to subroutine or function" for a distance or a tolerance
  /// that is no finite number, and for a miter limit below 1.
  OffsetCurve(double distance, const OffsetOptions& options);

  /// Adds a contour as the clipper leaves them: outer ones clockwise, holes counter-clockwise.
  void Add(std::span<const Vec2d> contour);
  /// Returns the curves. Valid until the next change.
  std::span<const GpcContour> Contours();

private:
  void AddCorner(const Vec2d& vertex, const Vec2d& before, const Vec2d& after);
  void AddArc(const Vec2d& vertex, const Vec2d& before, const Vec2d& after);
  void AddMiter(const Vec2d& vertex, const Vec2d& before, const Vec2d& after);
  void AddSquare(const Vec2d& vertex, const Vec2d& before, const Vec2d& after);
  void AddPoint(const Vec2d& point) { points_.push_back(point); }

  double distance_;
  OffsetOptions options_;
  std::vector<Vec2d> circle_;  // directions, counter-clockwise
  std::vector<Vec2d> points_;
  std::vector<std::size_t> ends_;  // of each curve
  std::vector<GpcContour> contours_;
};

}  // namespace shr
