// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// GEOS as a contender: its geometries behind the points of this library.

#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "bench/polygons/ClipWorkloads.h"

namespace shr::bench {

/// One line or polygon, clipped to a box by `clipByRect`.
class GeosShape {
public:
  enum class Kind { LINE, POLYGON };
  /// Returns nothing where GEOS is absent.
  static std::unique_ptr<GeosShape> Make(std::span<const Vec2d> points, Kind kind);
  GeosShape(std::span<const Vec2d> points, Kind kind);
  ~GeosShape();

  /// Clips and forgets the result; returns its number of points.
  std::size_t ClipToBox(const Box2d& box) const;
  /// Returns the area, or length, of what is left.
  double MeasureInBox(const Box2d& box) const;

  /// Clips segments, each two points of the array, to the polygon. Prepares the polygon; a segment
  /// is intersected only where it meets the border. Returns the length inside and its parts.
  struct Inside {
    double length = 0.0;
    std::size_t parts = 0;
  };
  Inside ClipSegments(std::span<const Vec2d> ends) const;

  /// Simplifies the shape alone, keeping its topology, and returns the number of points left.
  std::size_t Simplify(double distance) const;

  bool IsValid() const;
  /// Returns the area of the same made valid, by lines that are built anew into polygons.
  double MakeValid() const;

  /// Returns the number of points inside, by an index that is built first.
  std::size_t CountInside(std::span<const Vec2d> points) const;

private:
  struct Geometry;
  std::unique_ptr<Geometry> geometry_;
};

}  // namespace shr::bench
