// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GPolygon2d`: a set of polygons, each an outer ring with holes, with exact containment and
/// clipping.
///
/// It is built from the flat form that drawing code uses (one array of points, one array of counts
/// with one entry a contour) and gives it back. Functions on the bare flat form are in
/// shared/polygons/FlatPolygon.h.
///
///     GPolygon2d country(points, counts);
///     country.Intersection(Box2d(-10.0, 35.0, 30.0, 60.0));
///     bool inside = country.PointInside(Vec2d(2.35, 48.86));
///     country.GetPolyPolygon(outPoints, outCounts, false);
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "shared/Export.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/polygons/OffsetOptions.h"

struct tagPOINT;  // POINT of shared/platform/WindowsTypes.h
struct tagRECT;

namespace shr {

class CBufferedFile;
class GPolygon;
struct GPolygon2dModel;
struct MultiPolygon2d;

/// A multi-polygon. Every contour handed in becomes the outer ring of a polygon of its own, nested
/// or not; holes arise from operations, files, and the model of polygons with holes.
///
/// A ring of more than two points is stored closed: the first point is appended unless the last one
/// equals it (|a - b| <= |a| * DBL_EPSILON in both coordinates). A ring of four or more stored
/// points is stored clockwise in a y-up frame, a hole counter-clockwise.
///
/// Degenerate: contours without points are kept as empty polygons. A polygon with an infinite or
/// NaN coordinate is kept as it is, but has no inside: it contains no point and clips to nothing.
/// Errors: a null pointer with a count above 0 and counts that exceed the points of a span raise an
/// internal error of unit "GPolygon2d". On any exception the object is as before.
class SHARED_API GPolygon2d {
public:
  /// What `Decompose` calls with a piece; false ends the walk.
  using PieceCallback = bool (*)(const Vec2d* points, std::size_t count, void* user);

  /// The empty polygon.
  GPolygon2d() noexcept;
  /// One contour.
  GPolygon2d(const Vec2d* points, std::size_t count);
  GPolygon2d(const tagPOINT* points, std::size_t count);
  explicit GPolygon2d(std::span<const Vec2d> points);
  /// `numContours` contours, the points of each following those of the one before.
  GPolygon2d(const Vec2d* points, const unsigned int* counts, std::size_t numContours);
  GPolygon2d(const tagPOINT* points, const unsigned int* counts, std::size_t numContours);
  GPolygon2d(std::span<const Vec2d> points, std::span<const unsigned int> counts);
  /// A rectangle.
  GPolygon2d(double xMin, double yMin, double xMax, double yMax);
  explicit GPolygon2d(const tagRECT& rectangle);
  /// Polygons with holes (shared/polygons/MultiPolygon.h); rings are closed and oriented.
  explicit GPolygon2d(const MultiPolygon2d& polygons);
  /// Every contour becomes the outer ring of a polygon of its own, holes too.
  explicit GPolygon2d(const GPolygon& contours);

  GPolygon2d(const GPolygon2d& other);
  GPolygon2d& operator=(const GPolygon2d& other);
  /// The source is empty afterwards.
  GPolygon2d(GPolygon2d&& other) noexcept;
  GPolygon2d& operator=(GPolygon2d&& other) noexcept;
  ~GPolygon2d();

  void MakeEmpty() noexcept;

  /// Append polygons. Adding a polygon to itself doubles it.
  void AddContours(const Vec2d* points, const unsigned int* counts, std::size_t numContours);
  void AddContours(std::span<const Vec2d> points, std::span<const unsigned int> counts);
  void AddContours(const GPolygon2d& other);

  /// Returns the number of polygons.
  std::size_t GetNumContours() const noexcept;
  /// Returns the number of rings, outer and inner: the number of counts that `GetPolyPolygon`
  /// stores.
  std::size_t GetNumRings() const noexcept;
  /// Returns the number of points stored for all rings of one polygon.
  /// Errors: an internal error when there is no such polygon.
  std::size_t GetContourVertexCount(std::size_t index) const;
  /// Returns the number of points stored for all rings.
  std::size_t GetTotalVertexCount() const noexcept;
  /// Returns the bounds of all points, the empty box when there are none. Cost: O(1).
  Box2d GetBBox() const noexcept;

  /// Returns true for a single polygon without holes whose ring runs once around its bounding box
  /// with a stored point at each corner only. `bounds`, if not null, then receives the box.
  bool IsRectangle(Box2d* bounds = nullptr) const;

  /// Returns true when `point` lies strictly inside a polygon: not on an edge of its outer ring or
  /// its holes. Points inside a ring are those with a winding number other than 0; a ring of fewer
  /// than four stored points contains nothing. The first polygon that does not leave the point
  /// outside decides. The test is exact: no tolerance, no rounding. Cost: O(polygons + points of
  /// those whose bounds hold the point).
  bool PointInside(const Vec2d& point) const;

  /// Return the area that is inside, the length of its border and its center of mass. What is
  /// inside is told at `Union`: polygons that overlap count once, and a border between two of them
  /// for nothing. For the plain sums over rings see shared/polygons/FlatPolygon.h. Degenerate: area
  /// and perimeter are 0 for what has no inside; its centroid is that of the edges, where those
  /// have no length that of the points, and NaN where there are none. Cost: boolean operations.
  double GetArea() const;
  double GetPerimeter() const;
  Vec2d GetCentroid() const;

  /// Stores the polygons as plain values (shared/polygons/MultiPolygon.h), exactly as they are.
  void GetMultiPolygon(MultiPolygon2d& polygons) const;

  /// Store the flat form: rings polygon by polygon, the outer ring before its holes. With `closed`
  /// false the closing point of every ring of more than two points is left out. Return the number
  /// of points. The array forms with a null `points` return the number only; null `counts` are
  /// skipped. For integer points the coordinates are rounded, halves away from 0.
  std::size_t GetPolyPolygon(Vec2d* points, unsigned int* counts, bool closed) const;
  std::size_t GetPolyPolygon(tagPOINT* points, unsigned int* counts, bool closed) const;
  std::size_t GetPolyPolygon(std::nullptr_t, unsigned int*, bool closed) const {
    return GetPolyPolygon(static_cast<Vec2d*>(nullptr), nullptr, closed);
  }
  std::size_t GetPolyPolygon(std::vector<Vec2d>& points, std::vector<unsigned int>& counts,
                             bool closed) const;
  std::size_t GetPolyPolygon(std::vector<tagPOINT>& points, std::vector<unsigned int>& counts,
                             bool closed) const;

  /// Store all rings as one closed contour: after each further ring the contour returns to the very
  /// first point, so that its signed area is the sum of the rings' areas. Return the number of
  /// points; the array forms with null return the number only.
  std::size_t GetPolygon(Vec2d* points) const;
  std::size_t GetPolygon(tagPOINT* points) const;
  std::size_t GetPolygon(std::nullptr_t) const { return GetPolygon(static_cast<Vec2d*>(nullptr)); }
  std::size_t GetPolygon(std::vector<Vec2d>& points) const;
  std::size_t GetLegacyMultiPolygonAsSinglePolygon(Vec2d* points) const;
  std::size_t GetLegacyMultiPolygonAsSinglePolygon(tagPOINT* points) const;

  /// Clips to the box. Each polygon is clipped on its own, so that nested ones stay apart; the
  /// parts of one polygon keep the place of that polygon in the order. A box without area leaves
  /// nothing. Cost: O(n log n) for polygons that reach across the border, O(n) for the others.
  void Intersection(const Box2d& box);
  /// Stores the clipped polygon in `result`, which may be this object.
  void Intersection(const Box2d& box, GPolygon2d& result) const;

  /// The boolean operations, in place and, const, into `result`, which may be an operand.
  ///
  /// What is inside an operand: every point that is inside at least one of its polygons, so
  /// overlapping polygons count as one; of a polygon whose rings cross, the points inside an odd
  /// number of them (`PointInside` goes by winding numbers and differs there). A polygon with an
  /// infinite or NaN coordinate has no inside. The polygons of a result overlap nowhere; each has
  /// one outer ring and its holes, and begins at its highest point.
  ///
  /// Error bound, errors and cost: as `gpc_polygon_clip` (shared/polygons/Gpc.h), whose engine does
  /// the work.
  void Intersection(const GPolygon2d& other);
  void Intersection(const GPolygon2d& other, GPolygon2d& result) const;
  void Union(const GPolygon2d& other);
  void Union(const GPolygon2d& other, GPolygon2d& result) const;
  void Difference(const GPolygon2d& other);
  void Difference(const GPolygon2d& other, GPolygon2d& result) const;
  void XOR(const GPolygon2d& other);
  void XOR(const GPolygon2d& other, GPolygon2d& result) const;

  /// Returns the union of all polygons of all objects in one run: what is inside at least one
  /// polygon. Errors and cost: as `GPolygon2d::Union`, in the number of all points.
  static GPolygon2d Unite(std::span<const GPolygon2d> polygons);

  /// Offset: grow the polygon by a distance in units of the coordinates, or shrink it by a negative
  /// one. With round joins the result is what lies within the distance of the polygon, or more than
  /// the distance inside of it, but for arcs that lie inside the true ones by the tolerance at
  /// most. Parts that grow together are united, parts that shrink away are gone. A distance of 0
  /// cleans. Errors: "Invalid parameter passed to subroutine or function" for a distance or
  /// tolerance that is no finite number or a miter limit below 1; those of the operations. Cost: as
  /// a union of a few times the points. Source: X. Chen and S. McMains, "Polygon Offsetting by
  /// Computing Winding Numbers", 2005.
  void Offset(double distance, const OffsetOptions& options = {});
  void Offset(double distance, const OffsetOptions& options, GPolygon2d& result) const;

  /// Removes spikes: edges that go out and come back along the same line. Clips to the bounds, so
  /// each polygon is taken under the even-odd rule.
  void RemoveZeroWidthReturnPaths();

  /// Takes all rings under the even-odd rule (as a `GPolygon`), cuts them into pieces without holes
  /// that do not overlap and calls `callback` with each, open. Returns false when the callback has
  /// ended the walk.
  bool Decompose(PieceCallback callback, void* user) const;

  /// Read and write the file forms, see docs/polygon-files.md. The file must be open for it; memory
  /// files will do. Rings are loaded as they are, neither closed nor turned. After a load the
  /// position is behind what was read. Errors: "Unable to read '%s'.\n%s" with the path and the
  /// name of the function, and the file's own errors; a polygon that is being loaded is then as
  /// before.
  void LoadFromTextFile(CBufferedFile& file);
  void LoadFromBinaryFile(CBufferedFile& file);
  void DumpToTextFile(CBufferedFile& file) const;
  void DumpToBinaryFile(CBufferedFile& file) const;

private:
  explicit GPolygon2d(GPolygon2dModel&& model);
  const GPolygon2dModel& Model() const noexcept;

  // Owned, null when empty. A bare pointer, because <memory> would double the cost of including
  // this header.
  GPolygon2dModel* model_ = nullptr;
};

/// Return true when `a` contains `b`, borders included: when what of b lies outside of a
/// is nothing but slivers as rounding leaves them: none wider, on average, than 4 `GPC_MOST_DRIFT`
/// times the snap distance of the clipper (`GPC_SNAP` times the largest coordinate). The polygons
/// of one object count together; the rings of one polygon count under the even-odd rule. Rings
/// without area count for nothing; nothing is contained in everything. Cost: boolean operations.
SHARED_API bool GPolygonContains(const GPolygon2d& a, const GPolygon2d& b);
SHARED_API bool GPolygonContains(const GPolygon2d& a, const Vec2d* points,
                                 const unsigned int* counts, std::size_t numContours);
SHARED_API bool GPolygonContains(const GPolygon2d& a, std::span<const Vec2d> points,
                                 std::span<const unsigned int> counts);

}  // namespace shr
