// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Is a polygon with holes well-formed, where is it not, and the same area as a polygon that is.
///
///     const std::optional<PolygonFault> fault = FindFault(parcel);
///     if (fault) message = PolygonFaultText(fault->kind);
///     if (fault) parcel = MakeValid(parcel);
///
/// Areas of any polygon, valid or not, are combined by shared/polygons/GPolygon2d.h; nothing there
/// asks for validity. Other software often does.
///
/// Threads: no state.

#pragma once

#include <cstddef>
#include <optional>

#include "shared/Export.h"
#include "shared/geometry/Vec2.h"

namespace shr {

class GPolygon;
class GPolygon2d;
struct MultiPolygon2d;

/// What is wrong with a polygon.
struct PolygonFault {
  enum class Kind {
    NotFinite,             ///< a coordinate is infinite or NaN
    NotClosed,             ///< the last point of a ring of a model does not equal the first
    TooFewPoints,          ///< a ring has fewer than three points that differ from the one before
    Spike,                 ///< a ring turns back on its own line
    SelfCrossing,          ///< a ring crosses itself
    SelfOverlap,           ///< a ring runs twice along the same line
    SelfTouch,             ///< a ring comes back to a point of itself
    RingsCross,            ///< two rings cross
    RingsOverlap,          ///< two rings have more than single points in common
    HoleOutside,           ///< a hole does not lie inside the outer ring
    HolesNested,           ///< a hole lies inside another one of its polygon
    PolygonsOverlap,       ///< a polygon lies inside another one
    InteriorDisconnected,  ///< holes that touch cut the inside in two
    WrongTurn,             ///< an outer ring of a model is not clockwise, or a hole is
  };

  Kind kind;
  /// A point of the fault, one of the vertices but for edges that cross between their ends, whose
  /// crossing is rounded.
  Vec2d place;
  /// The ring at fault, of two the later one. `ring` is 0 for the outer ring and i + 1 for hole i.
  /// Of a `GPolygon`, `polygon` is 0 and `ring` the number of the contour.
  std::size_t polygon;
  std::size_t ring;

  friend bool operator==(const PolygonFault&, const PolygonFault&) = default;
};

/// Returns a few words about a kind, such as L"Ring crosses itself".
SHARED_API const wchar_t* PolygonFaultText(PolygonFault::Kind kind);

/// Return a fault, or nothing for valid polygons. Valid is what the simple features of the Open
/// Geospatial Consortium call so: rings are closed curves that meet themselves and each other in
/// single points only, no ring meets itself, holes lie inside the outer ring and beside each other,
/// the inside of each polygon is in one piece, and the insides of polygons have no point in common.
/// Points repeated in succession are no fault, nor are rings without points. A model's rings must
/// also be closed and turn as its header says; `GPolygon2d` keeps its rings so by itself. The
/// contours of a `GPolygon` are taken as its even-odd rule does, those at an even depth of nesting
/// as outer rings, the others as holes in them, whatever their order, turn and flags.
///
/// Of several faults, one of the kind that stands first in this order is returned: those of single
/// rings (`NotFinite` to `TooFewPoints`, in the order of rings); those of meeting edges (`Spike` to
/// `RingsOverlap`, one near the left); those of nesting; `InteriorDisconnected`; `WrongTurn`.
///
/// The answer is exact within the range of `OrientationSign`: no tolerance, no rounding.
/// Cost: O(n log n) time and O(n) memory for n points, whatever they are, as the first fault ends
/// the search. Source: M. I. Shamos and D. Hoey, "Geometric Intersection Problems", 1976.
SHARED_API std::optional<PolygonFault> FindFault(const MultiPolygon2d& polygons);
SHARED_API std::optional<PolygonFault> FindFault(const GPolygon2d& polygons);
SHARED_API std::optional<PolygonFault> FindFault(const GPolygon& polygon);

/// Return true when there is no fault. (`IsValidMultiPolygon` of shared/polygons/MultiPolygon.h
/// only looks at the turn of rings.)
SHARED_API bool IsValid(const MultiPolygon2d& polygons);
SHARED_API bool IsValid(const GPolygon2d& polygons);
SHARED_API bool IsValid(const GPolygon& polygon);

/// Return the area that is inside as polygons without fault. What is inside is told at the boolean
/// operations of the class, a model's being those of `GPolygon2d`: a point in at least one polygon,
/// within a polygon in an odd number of its rings; of a `GPolygon`, in an odd number of contours.
/// Thus
/// - spikes, repeated stretches, and rings without area vanish, unclosed rings are closed;
/// - a ring that crosses or touches itself becomes several rings, of which one inside another is a
///   hole: of a figure of eight both halves are kept;
/// - polygons that overlap or share an edge become one; contours of a `GPolygon` that overlap leave
///   a hole where they do;
/// - a hole, or the part of it, that lies outside of its outer ring becomes area of its own, and
///   one inside another hole becomes an island in it;
/// - a polygon whose inside is cut in two becomes two;
/// - of `GPolygon2d` and models, polygons with a coordinate that is infinite or NaN are left out;
///   of a `GPolygon` they raise the error of the boolean operations.
///
/// Error bound, errors and cost: as `gpc_polygon_clip` (shared/polygons/Gpc.h), in one run or,
/// where rounding a crossing has pushed an edge over a vertex nearby, in some more; the edges of
/// what is valid stay what they are, but vertices on a straight way are left out.
SHARED_API MultiPolygon2d MakeValid(const MultiPolygon2d& polygons);
SHARED_API GPolygon2d MakeValid(const GPolygon2d& polygons);
SHARED_API GPolygon MakeValid(const GPolygon& polygon);

}  // namespace shr
