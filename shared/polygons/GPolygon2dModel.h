// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The storage behind `GPolygon2d`: all points in one array, rings and polygons as ranges. Not
/// installed.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/polygons/Gpc.h"
#include "shared/polygons/OffsetOptions.h"

namespace shr {

/// Polygons in order, their rings in order (outer first), the rings' points in order. Rings are
/// closed and oriented as `GPolygon2d` promises.
struct GPolygon2dModel {
  struct Polygon {
    std::size_t endRing;  ///< one past its last ring; the first is the end of the polygon before
    Box2d box;
    bool isFinite;  ///< no coordinate is infinite or NaN
  };

  std::size_t FirstRing(std::size_t polygon) const {
    return polygon == 0 ? 0 : polygons[polygon - 1].endRing;
  }
  std::size_t FirstPoint(std::size_t ring) const { return ring == 0 ? 0 : ringEnds[ring - 1]; }
  std::span<const Vec2d> Ring(std::size_t ring) const {
    return std::span(points).subspan(FirstPoint(ring), ringEnds[ring] - FirstPoint(ring));
  }
  std::span<const Vec2d> PointsOf(std::size_t polygon) const {
    const std::size_t first = FirstPoint(FirstRing(polygon));
    return std::span(points).subspan(first, FirstPoint(polygons[polygon].endRing) - first);
  }

  /// Appends a polygon that is the given outer ring alone, closed and turned clockwise.
  void AddOuterRing(std::span<const Vec2d> contour);
  /// Appends a hole to the last polygon, closed and turned counter-clockwise.
  void AddInnerRing(std::span<const Vec2d> contour);
  /// Make a ring of the points that have been appended behind the last one, as they are: the outer
  /// ring of a further polygon, or a hole of the last one.
  void EndOuterRing();
  void EndInnerRing();
  /// Appends a polygon of another model as it is.
  void AddPolygon(const GPolygon2dModel& other, std::size_t polygon);
  /// Appends all polygons of another model, which may be this one; on an exception nothing has
  /// changed.
  void Append(const GPolygon2dModel& other);

  std::vector<Vec2d> points;
  std::vector<std::size_t> ringEnds;  ///< of each ring, the index one past its last point
  std::vector<Polygon> polygons;
  Box2d box;

private:
  enum class Turn { Clockwise, CounterClockwise };
  void AddRing(std::span<const Vec2d> contour, Turn turn);
};

/// Returns the part of a model inside a box that has an area.
GPolygon2dModel ClipToBox(const GPolygon2dModel& model, const Box2d& box);

/// Returns the union of the polygons of models, see `Unite`.
GPolygon2dModel UniteModels(std::span<const GPolygon2dModel* const> models);

/// Returns a model grown by a distance, see `GPolygon2d::Offset`.
GPolygon2dModel OffsetModel(const GPolygon2dModel& model, double distance,
                            const OffsetOptions& options);

/// Returns the outcome of an operation, see `GPolygon2d::Union`.
GPolygon2dModel Combine(const GPolygon2dModel& a, const GPolygon2dModel& b, gpc_op operation);

}  // namespace shr
