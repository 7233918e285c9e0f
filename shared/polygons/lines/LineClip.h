// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CLineClip`: clips segments and polylines to a rectangle. For contours see
/// shared/polygons/lines/PolyClip.h, for lines against any polygon
/// shared/polygons/lines/LineClipPolygon.h.
///
///     const CLineClip clip(Box2d(0.0, 0.0, 10.0, 10.0));
///     Vec2d a(-5.0, 5.0), b(5.0, 5.0);
///     bool isVisible = clip.ClipLine(a, b);                    // true, a is (0, 5)
///     clip.ClipPolyline(river, pieces, counts);                // appends the visible pieces
///     clip.ClipPolyline(river, [&](const Vec2d* points, std::size_t count) { ... });
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>
#include <span>
#include <type_traits>
#include <vector>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// A rectangle, its boundary included, and whether clipping is on. While it is off, everything
/// passes unchanged; intersecting with a disjoint rectangle turns it off as well, so that a caller
/// who then wants nothing drawn asks `IsClipEnabled`.
///
/// Degenerate: a NaN coordinate is outside of no side, so that a segment with one passes unless its
/// other end must be cut.
class SHARED_API CLineClip {
public:
  /// Off, with the empty box.
  CLineClip() = default;
  explicit CLineClip(const Box2d& box) { SetClipRect(box); }

  void Clear() { *this = CLineClip(); }
  /// Clipping is on afterwards exactly if the box has an area; a box with a NaN has none.
  void SetClipRect(const Box2d& box);
  /// While clipping is off, as `SetClipRect`; otherwise keeps the common part of both boxes, with
  /// clipping on exactly if that has an area. A NaN side of the box is no limit then.
  void IntersectClipRect(const Box2d& box);
  const Box2d& GetClipRect() const { return box_; }

  bool IsClipEnabled() const { return isEnabled_; }
  void SetClipEnabled(bool isEnabled) { isEnabled_ = isEnabled; }

  /// Moves the ends of the segment into the rectangle and returns true when any of it is visible;
  /// otherwise the ends are left anywhere. Of what is visible no end lies outside, not even by a
  /// rounding error.
  bool ClipLine(Vec2d& a, Vec2d& b) const;

  /// Call `callback(const Vec2d* points, std::size_t count)` with each visible piece in turn. The
  /// points are valid during the call only. A polyline inside is one piece with its own points; a
  /// polyline of one point is a piece of one point when that is inside; of none there is no piece.
  /// Cost: O(points), stretches inside and beyond one side at the speed of reading.
  /// Errors: a null pointer with a count above 0 raises an internal error of unit "LineClip".
  template <class Callback>
  requires std::is_invocable_v<Callback&, const Vec2d*, std::size_t>
  void ClipPolyline(const Vec2d* points, std::size_t count, Callback&& callback) const {
    using Target = std::remove_reference_t<Callback>;
    ClipTo(points, count,
           {[](const void* target, const Vec2d* piece, std::size_t size) {
              (*static_cast<Target*>(const_cast<void*>(target)))(piece, size);
            },
            &callback});
  }
  template <class Callback>
  requires std::is_invocable_v<Callback&, const Vec2d*, std::size_t>
  void ClipPolyline(std::span<const Vec2d> points, Callback&& callback) const {
    ClipPolyline(points.data(), points.size(), callback);
  }

  /// Append the points of each visible piece and their number.
  void ClipPolyline(const Vec2d* points, std::size_t count, std::vector<Vec2d>& pointsOut,
                    std::vector<unsigned int>& countsOut) const;
  void ClipPolyline(std::span<const Vec2d> points, std::vector<Vec2d>& pointsOut,
                    std::vector<unsigned int>& countsOut) const;

private:
  struct Receiver {
    void (*receive)(const void* target, const Vec2d* points, std::size_t count);
    const void* target;
  };
  void ClipTo(const Vec2d* points, std::size_t count, const Receiver& receiver) const;
  template <class Sink>
  void ClipInto(std::span<const Vec2d> points, Sink& sink) const;

  Box2d box_;
  bool isEnabled_ = false;
};

}  // namespace shr
