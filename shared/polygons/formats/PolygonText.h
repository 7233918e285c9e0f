// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Polygons as text that other programs exchange: well-known text (WKT) and GeoJSON.
///
///     GPolygon land;
///     ParseWkt("POLYGON ((0 0, 4 0, 4 3, 0 0))", land);
///     std::string text = ToGeoJson(land);
///     // {"type":"Polygon","coordinates":[[[0,0],[4,0],[4,3],[0,0]]]}
///
/// Text is UTF-8; no locale takes part. Threads: no state.
///
/// Writing: numbers are the shortest that read back as the same double. Rings are closed; outer
/// rings run counter-clockwise in a y-up frame and holes clockwise, as RFC 7946 asks, in WKT too.
/// Of a `GPolygon` the contours are grouped as its `GetMultiPolygon` tells; the rings of a
/// `GPolygon2d` come as they are stored. Rings of fewer than three different points, which have no
/// inside, are left out, with their holes. One polygon is written as a polygon, several as a
/// multi-polygon, none as an empty polygon.
/// Errors: "Unable to write a polygon as text.\nA coordinate is not finite."
///
/// Reading: a ring may or may not be closed and may run either way; a `MultiPolygon2d` receives it
/// as it is written, the classes as they store rings. Coordinates beyond x and y are read and
/// ignored. Source: RFC 7946, "The GeoJSON Format", 2016; ISO 19125-1, "Simple feature
/// access", 2004.
/// Errors: "Unable to read WKT|GeoJSON text at offset N.\n..." with the byte at which the text is
/// wrong; the polygon is then as before. Texts from anywhere are safe to read: memory is taken in
/// proportion to the text, and nesting takes no stack beyond a small limit.

#pragma once

#include <string>
#include <string_view>

#include "shared/Export.h"

namespace shr {

class GPolygon;
class GPolygon2d;
struct MultiPolygon2d;

/// Return `POLYGON ((x y, ...), ...)`, `MULTIPOLYGON (((x y, ...), ...), ...)` or `POLYGON EMPTY`.
SHARED_API std::string ToWkt(const GPolygon& polygon);
SHARED_API std::string ToWkt(const GPolygon2d& polygon);
SHARED_API std::string ToWkt(const MultiPolygon2d& polygon);

/// Read a polygon or multi-polygon, possibly EMPTY. Keywords are taken in any case, behind
/// "POLYGON" also "Z", "M" or "ZM", and before it "SRID=number;". Cost: O(text).
SHARED_API void ParseWkt(std::string_view text, GPolygon& polygon);
SHARED_API void ParseWkt(std::string_view text, GPolygon2d& polygon);
SHARED_API void ParseWkt(std::string_view text, MultiPolygon2d& polygon);

/// Return a geometry object of type "Polygon" or "MultiPolygon", without spaces, which may be put
/// into a Feature. No polygons give `{"type":"Polygon","coordinates":[]}`.
SHARED_API std::string ToGeoJson(const GPolygon& polygon);
SHARED_API std::string ToGeoJson(const GPolygon2d& polygon);
SHARED_API std::string ToGeoJson(const MultiPolygon2d& polygon);

/// Read a Polygon, a MultiPolygon, a GeometryCollection of these, a Feature or a FeatureCollection:
/// all polygons in order. A Feature without geometry adds nothing; other types of geometry are
/// errors, as are members that RFC 7946 reserves for another type of object. Other members are
/// checked for their syntax only. Objects may be nested 64 deep, foreign members without limit.
/// Cost: O(text).
SHARED_API void ParseGeoJson(std::string_view text, GPolygon& polygon);
SHARED_API void ParseGeoJson(std::string_view text, GPolygon2d& polygon);
SHARED_API void ParseGeoJson(std::string_view text, MultiPolygon2d& polygon);

}  // namespace shr
