// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GPolygon`: contours in the record of the polygon clipper, and boolean operations by that
/// clipper.
///
/// It has the face of `GPolygon2d` (shared/polygons/GPolygon2d.h) with another idea of the inside:
/// the even-odd rule over all contours together, so that a contour inside another one is a hole.
///
///     GPolygon land(points, counts);
///     land.Difference(GPolygon(lakePoints));
///     double area = TriangulatedPolygonArea(land);
///     land.GetPolyPolygon(outPoints, outCounts, false);
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/polygons/Gpc.h"
#include "shared/polygons/OffsetOptions.h"

struct tagPOINT;  // POINT of shared/platform/WindowsTypes.h
struct tagRECT;

namespace shr {

class CBufferedFile;
class GPolygon2d;
struct MultiPolygon2d;

/// A polygon of any number of contours under the even-odd rule.
///
/// Contours are stored open: points at the end of a contour that equal its first exactly are left
/// out. Each has a hole flag, which operations set and which does not change
/// what is inside. Vertices are stored in the order given.
///
/// Degenerate: contours without points are kept.
/// Errors: a null pointer with a count above 0 and counts that exceed the points of a span raise an
/// internal error of unit "GPolygon"; memory that cannot be had raises "Out of global memory" of
/// that unit. The boolean operations, and what is made of them, raise the clipper's errors for
/// coordinates that are infinite or NaN. On any exception the object is as before.
class SHARED_API GPolygon {
public:
  enum SET_OPERATION : int {
    SET_INTERSECTION = 0,
    SET_UNION = 1,
    SET_DIFFERENCE = 2,
    SET_XOR = 3,
  };

  /// Contours with their hole flags, lent by the caller; null `holeFlags` means no holes.
  struct tagGCONTOURLIST {
    int contourCount;
    const int* holeFlags;
    const GpcContour* contours;
  };
  struct FloatContour {
    int vertexCount;
    const Vec2f* vertices;
  };
  /// The same with vertices of single precision.
  struct FloatContourList {
    int contourCount;
    const int* holeFlags;
    const FloatContour* contours;
  };

  /// What `Decompose` calls with a piece; false ends the walk.
  using PieceCallback = bool (*)(const Vec2d* points, std::size_t count, void* user);

  /// The empty polygon.
  GPolygon() noexcept;
  /// One contour.
  GPolygon(const Vec2d* points, std::size_t count);
  GPolygon(const tagPOINT* points, std::size_t count);
  explicit GPolygon(std::span<const Vec2d> points);
  /// `numContours` contours, the points of each following those of the one before.
  GPolygon(const Vec2d* points, const unsigned int* counts, std::size_t numContours);
  GPolygon(const tagPOINT* points, const unsigned int* counts, std::size_t numContours);
  GPolygon(std::span<const Vec2d> points, std::span<const unsigned int> counts);
  /// A rectangle, in the order of corners that `IsRectangle` knows.
  GPolygon(double xMin, double yMin, double xMax, double yMax);
  explicit GPolygon(const Box2d& box);
  explicit GPolygon(const tagRECT& rectangle);
  explicit GPolygon(const tagGCONTOURLIST& contours);
  /// Rings become contours; inner rings are flagged as holes.
  explicit GPolygon(const MultiPolygon2d& polygons);
  /// The rings of all polygons, inner rings flagged as holes. Where polygons overlap, the even-odd
  /// rule sees a hole.
  explicit GPolygon(const GPolygon2d& polygons);

  GPolygon(const GPolygon& other);
  GPolygon& operator=(const GPolygon& other);
  /// The source is empty afterwards.
  GPolygon(GPolygon&& other) noexcept;
  GPolygon& operator=(GPolygon&& other) noexcept;
  ~GPolygon();

  /// Replaces the contours.
  void ConstructFromFloats(const FloatContourList& contours);
  void MakeEmpty() noexcept;

  /// Append contours. Adding a polygon to itself doubles every contour, which leaves no inside.
  /// Cost: amortized O(points added).
  void AddContours(const Vec2d* points, const unsigned int* counts, std::size_t numContours);
  void AddContours(std::span<const Vec2d> points, std::span<const unsigned int> counts);
  void AddContours(const GPolygon& other);

  std::size_t GetNumContours() const noexcept;
  /// Errors of the three: an internal error when there is no such contour.
  std::size_t GetContourVertexCount(std::size_t index) const;
  std::span<const Vec2d> GetContour(std::size_t index) const;
  bool IsHole(std::size_t index) const;
  std::size_t GetTotalVertexCount() const noexcept;
  /// Returns the bounds of all vertices, the empty box when there are none. Cost: O(1).
  Box2d GetBBox() const noexcept;
  /// Returns the record the clipper takes. Valid until the next change.
  const GpcPolygon& GetRecord() const noexcept;

  /// Returns true for a single contour of four vertices p0 ... p3 with p0.y = p1.y, p1.x = p2.x,
  /// p2.y = p3.y and p3.x = p0.x. `bounds`, if not null, receives (p3.x, p3.y, p1.x, p1.y), which
  /// is not normalized for rectangles that begin at another corner than the constructor's.
  bool IsRectangle(Box2d* bounds = nullptr) const;

  /// Returns true when clipping to a rectangle with a corner at the point leaves that corner as a
  /// vertex: for points inside, and for most points of the border (a point is missed where the
  /// polygon near it lies only up to the left or down to the right). Of a rectangle the whole
  /// border is inside. Cost: two boolean operations; `PointInPolygon` of
  /// shared/polygons/FlatPolygon.h is far cheaper.
  bool PointInside(const Vec2d& point) const;

  /// Return the area that is inside an odd number of contours, the length of its border and its
  /// center of mass. The region counts, not the contours: borders inside of it count for nothing,
  /// and the order of the points does not matter. For the plain sums over contours see
  /// shared/polygons/FlatPolygon.h. Degenerate: area and perimeter are 0 for what has no inside,
  /// such as a polygon with an infinite or NaN coordinate; its centroid is that of the edges, where
  /// those have no length that of the points, and NaN where there are none. Cost: a boolean
  /// operation.
  double GetArea() const;
  double GetPerimeter() const;
  Vec2d GetCentroid() const;

  /// Store the contours as closed rings: those at an even depth of nesting as outer rings, each
  /// with the contours directly inside it as its holes. Contours without points are left out.
  /// Requires: contours do not cross each other or themselves, as in results of the operations;
  /// others are grouped somehow. Cost: O(n log n).
  void GetMultiPolygon(MultiPolygon2d& polygons) const;

  /// Store the flat form, contours in order. With `closed` the first point of every contour of more
  /// than two points is repeated at its end. Return the number of points. The array forms with null
  /// `points` return the number only; null `counts` are skipped. For integer points the coordinates
  /// are rounded, halves away from 0.
  std::size_t GetPolyPolygon(Vec2d* points, unsigned int* counts, bool closed) const;
  std::size_t GetPolyPolygon(tagPOINT* points, unsigned int* counts, bool closed) const;
  std::size_t GetPolyPolygon(std::nullptr_t, unsigned int*, bool closed) const {
    return GetPolyPolygon(static_cast<Vec2d*>(nullptr), nullptr, closed);
  }
  std::size_t GetPolyPolygon(std::vector<Vec2d>& points, std::vector<unsigned int>& counts,
                             bool closed) const;
  std::size_t GetPolyPolygon(std::vector<tagPOINT>& points, std::vector<unsigned int>& counts,
                             bool closed) const;

  /// Store all contours, closed, as one: after each further one the way returns to the very first
  /// point. Return the number of points; the array forms with null return the number only.
  std::size_t GetPolygon(Vec2d* points) const;
  std::size_t GetPolygon(tagPOINT* points) const;
  std::size_t GetPolygon(std::nullptr_t) const { return GetPolygon(static_cast<Vec2d*>(nullptr)); }
  std::size_t GetPolygon(std::vector<Vec2d>& points) const;
  std::size_t GetLegacyMultiPolygonAsSinglePolygon(Vec2d* points) const;
  std::size_t GetLegacyMultiPolygonAsSinglePolygon(tagPOINT* points) const;

  /// The boolean operations, in place and, const, into `result`, which may be an operand. With the
  /// object itself as the other one, intersection and union leave it unchanged and the other two
  /// empty it; the clipper is not called then. A box without area holds nothing.
  void Combine(const GPolygon& other, SET_OPERATION operation);
  void Combine(const GPolygon& other, SET_OPERATION operation, GPolygon& result) const;
  /// The same with what is inside of both operands decided by a fill rule. Union with an empty
  /// polygon gives the contours that border what is inside by that rule.
  void Combine(const GPolygon& other, SET_OPERATION operation, FillRule rule,
               GPolygon& result) const;
  void Intersection(const GPolygon& other);
  void Intersection(const GPolygon& other, GPolygon& result) const;
  void Intersection(const Box2d& box);
  void Intersection(const Box2d& box, GPolygon& result) const;
  void Union(const GPolygon& other);
  void Union(const GPolygon& other, GPolygon& result) const;
  void Difference(const GPolygon& other);
  void Difference(const GPolygon& other, GPolygon& result) const;
  void XOR(const GPolygon& other);
  void XOR(const GPolygon& other, GPolygon& result) const;

  /// Returns the union of all polygons in one run: what is inside at least one of them, each under
  /// the even-odd rule. Errors and cost: as `gpc_polygon_clip`, in the number of all points.
  static GPolygon Unite(std::span<const GPolygon> polygons);

  /// Offset: grow the polygon by a distance in units of the coordinates, or shrink it by a negative
  /// one. With round joins the result is what lies within the distance of the polygon, or more than
  /// the distance inside of it, but for arcs that lie inside the true ones by the tolerance at
  /// most. Parts that grow together are united, parts that shrink away are gone. A distance of 0
  /// cleans. Errors: "Invalid parameter passed to subroutine or function" for a distance or
  /// tolerance that is no finite number or a miter limit below 1; those of the operations. Cost: as
  /// a union of a few times the points. Source: X. Chen and S. McMains, "Polygon Offsetting by
  /// Computing Winding Numbers", 2005.
  void Offset(double distance, const OffsetOptions& options = {});
  void Offset(double distance, const OffsetOptions& options, GPolygon& result) const;

  /// Removes spikes, edges that go out and come back along the same line: intersects the polygon
  /// with its bounding box.
  void RemoveZeroWidthReturnPaths();

  /// Cuts the polygon into pieces without holes that do not overlap and calls `callback` with each,
  /// open. Returns false when the callback has ended the walk. The pieces are monotone in y: a
  /// horizontal line meets each in one stretch.
  bool Decompose(PieceCallback callback, void* user) const;

  /// Read and write the file forms of the contours with hole flags, see docs/polygon-files.md. The
  /// file must be open for it; memory files will do. After a load the position is behind what was
  /// read. Errors: "Unable to read|write '%s'.\n%s" with the path and the name of the function; a
  /// polygon that is being loaded is then as before.
  void LoadFromTextFile(CBufferedFile& file);
  void LoadFromBinaryFile(CBufferedFile& file);
  void DumpToTextFile(CBufferedFile& file) const;
  void DumpToBinaryFile(CBufferedFile& file) const;

private:
  void Reserve(std::size_t contours);
  void Append(std::span<const Vec2d> contour, int holeFlag);
  void TruncateTo(int contours) noexcept;
  void Take(GpcPolygon& record) noexcept;
  void TakeOpened(GpcPolygon& record) noexcept;
  template <class List>
  void AppendList(const List& list);
  template <class Function>
  void AppendAll(std::size_t contours, Function append);

  GpcPolygon record_;
  int capacity_ = 0;  // contours for which the arrays of the record have room
  Box2d box_;
};

/// Returns the area inside, as the function of that name in shared/polygons/FlatPolygon.h.
SHARED_API double TriangulatedPolygonArea(const GPolygon& polygon);

/// Return true when `a` contains `b`, borders included: when what of b lies outside of a
/// is nothing but slivers as rounding leaves them: none wider, on average, than 4 `GPC_MOST_DRIFT`
/// times the snap distance of the clipper (`GPC_SNAP` times the largest coordinate). Contours
/// without area count for nothing; nothing is contained in everything. Cost: one boolean operation.
SHARED_API bool GPolygonContains(const GPolygon& a, const GPolygon& b);
SHARED_API bool GPolygonContains(const GPolygon& a, const Vec2d* points, const unsigned int* counts,
                                 std::size_t numContours);
SHARED_API bool GPolygonContains(const GPolygon& a, std::span<const Vec2d> points,
                                 std::span<const unsigned int> counts);

}  // namespace shr
