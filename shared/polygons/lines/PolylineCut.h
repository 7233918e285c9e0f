// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Open lines cut by polygons: which parts of roads, rivers or flight paths lie inside, outside or
/// along the border. One run of the polygon clipper takes any number of lines.
///
///     for (const PolylinePiece& piece : CutPolylines(rivers, country)) {
///       if (piece.place == PolylinePlace::Inside) Draw(piece.points);
///     }
///
/// For a view that stays the same while many lines come and go, with an index that is built once,
/// see shared/polygons/lines/LineClipPolygon.h; for rectangles shared/polygons/lines/LineClip.h.
///
/// Threads: calls may run together.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "shared/Export.h"
#include "shared/polygons/GPolyline.h"
#include "shared/polygons/Gpc.h"

namespace shr {

class GPolygon;
class GPolygon2d;

/// Where a piece of a line lies.
enum class PolylinePlace : std::uint8_t {
  Inside,   ///< the polygon is on both sides of it
  Outside,  ///< the polygon is on neither side
  Border,   ///< the polygon is on one side: the piece runs along an edge that borders it
};

/// A piece of the line of that index, in the direction of the line. It has two points or more.
struct PolylinePiece {
  std::size_t line;
  PolylinePlace place;
  GPolyline points;
};

/// Returns the pieces of lines that a polygon leaves inside, outside and along its border, in the
/// order of the lines, along each line. Each piece ends where the next one of its line begins, with
/// the same bits, and is of another place; together they are the line.
///
/// What is inside is decided by the fill rule; of a `GPolygon2d`, what is inside at least one of
/// its polygons. Only edges with inside on one side and outside on the other cut: not edges where
/// two polygons of a `GPolygon2d` meet, nor contours inside of another one under the non-zero rule.
/// A line that touches the border in a point from inside, or from outside, passes in one piece, and
/// a line along the border is a piece of its own; who wants what is inside with the border, as the
/// intersection of closed sets has it, joins both. Lines may cross each other and themselves
/// without being cut there.
///
/// The clipper's promises hold (shared/polygons/Gpc.h): lines and polygon are one arrangement, in
/// which nothing moves by more than `GPC_MOST_DRIFT` snap distances of the largest coordinate, and
/// what is nearer than that may be taken to coincide, so a line next to the border by some units in
/// the last place may be a piece along it. Vertices of lines that nothing came near keep their
/// bits; points are added where pieces end and where rounding bends a line.
///
/// Degenerate: lines without length (or shorter than the snap distance) have no pieces; repeated
/// points are left out. Without an area all is outside.
/// Errors: an `Exception` for a coordinate that is infinite or NaN and for more than 2^29 vertices;
/// as `GpcAlloc`. Cost: O((n + k) log (n + k)) for n vertices of lines and polygon and k crossings.
SHARED_API std::vector<PolylinePiece> CutPolylines(std::span<const GPolyline> lines,
                                                   const GPolygon& polygon,
                                                   FillRule rule = FillRule::EvenOdd);
SHARED_API std::vector<PolylinePiece> CutPolylines(std::span<const GPolyline> lines,
                                                   const GPolygon2d& polygon);

}  // namespace shr
