// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The polygon clipper: boolean operations on polygons of any number of contours, with plain
/// records and free functions. For a class that owns its points see shared/polygons/GPolygon.h.
///
///     GpcPolygon result;
///     gpc_polygon_clip(GPC_UNION, subject, clip, result);
///     for (int i = 0; i < result.contourCount; ++i) Draw(result.contours[i], result.holeFlags[i]);
///     gpc_free_polygon(result);
///
/// A record is a plain value that owns nothing by itself: whoever calls a function that fills one
/// frees it. Threads: calls may run together on different records; an operand may be shared.

#pragma once

#include <cstddef>
#include <cstdio>

#include "shared/Export.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// The boolean operations. The values are fixed.
enum gpc_op : int {
  GPC_DIFFERENCE = 0,    ///< in the subject and not in the clip polygon
  GPC_INTERSECTION = 1,  ///< in both
  GPC_XOR = 2,           ///< in exactly one
  GPC_UNION = 3          ///< in either
};

/// A contour or a triangle strip: its vertices in order. A contour is open: its first vertex is not
/// repeated at the end. `vertices` is null when there are none.
struct GpcContour {
  int vertexCount = 0;
  Vec2d* vertices = nullptr;
};

/// The contours of a polygon with one flag each, 0 for an outer contour and 1 for a hole. Both
/// arrays are null when there is no contour. A null `holeFlags` is taken for no holes in an
/// operand.
struct GpcPolygon {
  int contourCount = 0;
  int* holeFlags = nullptr;
  GpcContour* contours = nullptr;
};

/// Triangle strips: the triangles of a strip are its vertices i, i + 1, i + 2 for every i.
struct GpcTristrip {
  int stripCount = 0;
  GpcContour* strips = nullptr;
};

/// What is inside a polygon: a point that an odd number of contours wind around, or one whose
/// winding number (times around counter-clockwise less times around clockwise, in a y-up frame) is
/// other than 0, above 0 or below 0.
enum class FillRule { EvenOdd, NonZero, Positive, Negative };

/// Writes the outcome of a boolean operation to `result`, whose former content is ignored, not
/// freed; `result` must not be one of the operands.
///
/// A point belongs to an operand when it is inside by the fill rule, as a rule when it is inside an
/// odd number of its contours, so self-crossing, nested and overlapping contours are legal, and the
/// operands' hole flags do not matter. The union of a polygon with an empty one is the same area
/// with clean contours.
///
/// Result: no contour crosses itself or another one, exactly; no two vertices in succession are
/// equal, no contour has fewer than three. Outer contours run clockwise in a y-up frame, holes
/// counter-clockwise; each begins at its highest vertex, of several the leftmost. Contours may
/// touch in single points. Vertices of the operands keep their coordinates to the bit unless
/// something else comes within a few snap distances of them; the same operands give the same bits
/// on every target, in any thread, at any time.
///
/// Error bound: along each axis, the result's edges lie within `GPC_MOST_DRIFT` times the snap
/// distance, which is `GPC_SNAP` times the largest coordinate, of edges of the operands, whatever
/// the operands are like; so at most 2 `GPC_MOST_DRIFT` times the snap distance times the length of
/// all edges of the operands is misplaced area. Mostly it is far less: where the edges of operands
/// are well apart, only crossings are rounded, by a unit in the last place.
/// Degenerate: contours of fewer than three vertices, spikes and repeated points enclose nothing.
/// Errors: an `Exception` for a coordinate that is infinite or NaN and for more than 2^29 vertices;
/// as `GpcAlloc`; `GPCException` for an unknown operation. `result` is then unchanged.
/// Cost: O((n + k) log (n + k)) for n vertices and k crossings of well-spread edges. Working memory
/// is kept by each thread for its next call.
SHARED_API void gpc_polygon_clip(gpc_op operation, const GpcPolygon& subject,
                                 const GpcPolygon& clip, GpcPolygon& result,
                                 FillRule rule = FillRule::EvenOdd);

/// As `gpc_polygon_clip`, with the area of the result cut into triangle strips. The strips overlap
/// nowhere; their triangles' areas sum to the area of the polygon result.
SHARED_API void gpc_tristrip_clip(gpc_op operation, const GpcPolygon& subject,
                                  const GpcPolygon& clip, GpcTristrip& result);

/// Cuts the area of a polygon (even-odd rule) into triangle strips.
SHARED_API void gpc_polygon_to_tristrip(const GpcPolygon& polygon, GpcTristrip& result);

/// Appends a copy of a contour to a polygon. Errors: as `GpcAlloc`; the polygon is then unchanged.
SHARED_API void gpc_add_contour(GpcPolygon& polygon, const GpcContour& contour, int holeFlag);

/// Free what a record holds and leave it empty.
SHARED_API void gpc_free_polygon(GpcPolygon& polygon);
SHARED_API void gpc_free_tristrip(GpcTristrip& tristrip);

/// Read and write a polygon as text: the number of contours, then per contour the number of its
/// vertices, its hole flag if `holeFlags` says so, and its vertices as pairs of numbers. Return
/// false when reading or writing fails; a polygon that could not be read is left unchanged. The
/// former content of `polygon` is ignored, not freed.
SHARED_API bool gpc_read_polygon(std::FILE* file, bool holeFlags, GpcPolygon& polygon);
SHARED_API bool gpc_write_polygon(std::FILE* file, bool holeFlags, const GpcPolygon& polygon);

/// The same with the fields as plain binary values: 32-bit integers and doubles.
SHARED_API bool gpc_read_polygon_binary(std::FILE* file, bool holeFlags, GpcPolygon& polygon);
SHARED_API bool gpc_write_polygon_binary(std::FILE* file, bool holeFlags,
                                         const GpcPolygon& polygon);

/// The snap distance relative to the largest coordinate of the operands by absolute value: points
/// and edges closer than this are taken to coincide. It is about 2^2 units in the last place.
inline constexpr double GPC_SNAP = 0x1p-50;

/// How far an operation may move an edge, along each axis, in snap distances.
inline constexpr double GPC_MOST_DRIFT = 2.0;

/// Returns `size` bytes for the clipper and its records; every allocation of theirs goes through
/// here. A size of 0 gives null. `label` names what is being created, such as "contour creation".
/// Errors: when there is no memory, an `Exception` of module "GPC Library" and the given unit and
/// line whose description is "GPCAlloc failure: " and the label.
SHARED_API void* GpcAlloc(std::size_t size, const wchar_t* unit, int line, const wchar_t* label);

/// Gives back what `GpcAlloc` returned; null is ignored.
SHARED_API void GpcFree(void* memory);

/// Where `GpcAlloc` takes its memory from: returns null when there is none. `std::free` must be
/// able to release it.
using GpcMemorySource = void* (*)(std::size_t size);

/// Sets the source for all threads and returns the former one; null stands for `std::malloc`, the
/// initial one. For tests of failing memory.
SHARED_API GpcMemorySource GpcSetMemorySource(GpcMemorySource source);

}  // namespace shr
