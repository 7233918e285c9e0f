// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GLineClipPolygon`: clips segments and polylines to the inside of any contours. For rectangles
/// see shared/polygons/lines/LineClip.h, for whole arrays of polylines shared/polygons/ClipUtil.h.
///
///     const GLineClipPolygon country(points, counts);
///     std::vector<GLine2> inside;
///     country.Clip(GLine2(Vec2d(0.0, 1.0), Vec2d(9.0, 1.0)), inside);   // appends the pieces
///     country.Clip(river, riverPoints, riverCounts);                    // appends polylines
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/GLine.h"
#include "shared/geometry/Vec2.h"
#include "shared/polygons/GPolyline.h"
#include "shared/polygons/PodVector.h"

namespace shr {

class ContourGrid;
class GPolygon;

/// Contours whose inside is found by the even-odd rule, so that contours inside contours are holes,
/// with an index over their edges that is built once.
///
/// What lies on an edge is not inside: a segment along an edge leaves nothing, and one that touches
/// a vertex from inside passes in one piece. A segment is cut where it crosses an edge or meets a
/// vertex, and each part belongs to the result if its midpoint is inside; parts that meet are
/// joined. The points of crossings are rounded to doubles.
///
/// Degenerate: contours of any number of points are taken; a last point equal to the first is left
/// out. A segment of no length is kept if its point is inside. A segment with a coordinate that is
/// infinite or NaN leaves nothing. Contours with such coordinates, or without an extent, are
/// searched edge by edge.
/// Errors: a null pointer with a count above 0 and counts that exceed the points of a span raise
/// an internal error of unit "LineClipPolygon".
/// Cost: O(n) to build where the edges are short beside the whole; then what a segment touches.
class SHARED_API GLineClipPolygon {
public:
  /// A vertex and the index of the next one in its contour; that of the last is 0.
  struct VERTEX {
    double x;
    double y;
    std::size_t next;
  };
  /// A circular list of vertices.
  struct CONTOUR {
    std::vector<VERTEX> vertices;
  };
  /// The segment that is clipped.
  struct SEGMENT {
    SEGMENT(const Vec2d& from, const Vec2d& to) : begin(from), end(to), box(from, to) {
      box.Normalize();
    }
    Vec2d begin;
    Vec2d end;
    Box2d box;
  };
  enum class KIND { CROSSING, TOUCH };
  /// Where a segment crosses an edge, or touches a vertex.
  struct CLIST {
    double parameter;  ///< 0 at the begin of the segment, 1 at its end
    Vec2d point;
    KIND kind;
  };

  GLineClipPolygon();
  GLineClipPolygon(const Vec2d* points, const unsigned int* counts, std::size_t numContours);
  GLineClipPolygon(std::span<const Vec2d> points, std::span<const unsigned int> counts);
  explicit GLineClipPolygon(const GPolygon& polygon);
  GLineClipPolygon(const GLineClipPolygon& other);
  GLineClipPolygon& operator=(const GLineClipPolygon& other);
  virtual ~GLineClipPolygon();

  std::size_t GetNumContours() const { return contours_.size(); }
  /// Errors: an internal error when there is no such contour.
  std::size_t GetContourVertexCount(std::size_t index) const;
  std::size_t GetTotalVertexCount() const;
  /// Stores the vertices of all contours, one after another.
  void GetPolygon(std::vector<Vec2d>& points) const;
  const Box2d& GetBBox() const { return bbox_; }
  /// Returns true for a single contour of four vertices that begins along a horizontal side of a
  /// rectangle with sides along the axes. `box`, if not null, then receives the bounds.
  bool IsRectangle(Box2d* box = nullptr) const;

  /// Returns true when the part of the horizontal line through the point that ends at the point
  /// and lies inside is not empty, or such a part begins there: for a point inside, and for one on
  /// an edge to the left of which is the inside. Cost: that of clipping the line.
  bool PointInside(const Vec2d& point) const;

  /// Append the pieces inside, in order along the line, and return their number. Those of a
  /// polyline are not joined.
  std::size_t Clip(const GLine2& line, std::vector<GLine2>& pieces) const;
  std::size_t Clip(const GPolyline& polyline, std::vector<GLine2>& pieces) const;
  std::size_t Clip(const Vec2d* points, std::size_t count, std::vector<GLine2>& pieces) const;
  /// Appends the pieces inside as polylines, a piece of one segment joined with that of the next
  /// where they meet, and their numbers of points; returns the number of pieces. A polyline of one
  /// point is a piece if that is inside.
  std::size_t Clip(const Vec2d* points, std::size_t count, std::vector<Vec2d>& pointsOut,
                   std::vector<unsigned int>& countsOut) const;
  std::size_t Clip(std::span<const Vec2d> points, std::vector<Vec2d>& pointsOut,
                   std::vector<unsigned int>& countsOut) const;

protected:
  using CROSSINGS = CPodVector<CLIST, 16>;
  /// Receives a piece: its begin, its end and what was handed to `clip_to_contours`.
  using PIECE_CALLBACK = void (*)(const Vec2d& begin, const Vec2d& end, void* user);

  /// Adds a contour; `contours_bbox` must follow the last.
  void def_contour(std::span<const Vec2d> points);
  void del_contours();
  /// Finds the bounds of all contours and builds the index.
  void contours_bbox();

  /// Returns true when the boxes have no point in common.
  static bool disjunct(const Box2d& a, const Box2d& b) { return !a.Intersects(b); }
  /// Returns 1 when the point is to the left of the segment's line, -1 to the right, 0 on it.
  static int p_where(const SEGMENT& segment, const Vec2d& point);
  /// Adds the point where the segment crosses an edge, or touches the second end of it.
  static void cross_calc(const SEGMENT& segment, const Vec2d& from, const Vec2d& to,
                         CROSSINGS& crossings);
  /// Returns true when the point lies on an edge: in its box, with a cross product of exactly 0.
  bool on_contour(const Vec2d& point) const;
  /// Returns true when the point is inside by the even-odd rule and not on a contour.
  bool p_inside(const Vec2d& point) const;
  /// Calls the callback with every piece of the segment that is inside, in order.
  void clip_to_contours(const SEGMENT& segment, PIECE_CALLBACK callback, void* user) const;

  const std::vector<CONTOUR>& contours() const { return contours_; }

private:
  enum class Surroundings { OUTSIDE, INSIDE, WITH_EDGES };
  Surroundings FindCrossings(const SEGMENT& segment, CROSSINGS& crossings) const;
  void CutAt(const CROSSINGS& crossings, const SEGMENT& segment, PIECE_CALLBACK callback,
             void* user) const;
  template <class Function>
  void ClipSegments(std::span<const Vec2d> points, Function function) const;

  std::vector<CONTOUR> contours_;
  Box2d bbox_;
  std::shared_ptr<const ContourGrid> grid_;
};

}  // namespace shr
