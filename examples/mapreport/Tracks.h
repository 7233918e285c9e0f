// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads tracks, routes and waypoints from GPX (1.0 and 1.1) and KML (2.x) files.
///
/// Of GPX: waypoints, routes, and tracks with their segments; of points longitude, latitude,
/// elevation, time and name. Of KML: the placemarks at any depth of documents and folders, with
/// their points, lines, rings, outlines of polygons, `gx:Track` and collections of these. Elements
/// are known by their local names, whatever prefix their name space has. Everything else, such as
/// metadata, extensions, styles and links, is passed over.
///
///     TrackContent content = ReadTracks(L"hike.gpx", std::nullopt);
///     double kilometres = TrackLength(content.tracks[0].lines);

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "examples/common/TextFormat.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

struct TrackContent {
  std::vector<Track> tracks;
  std::vector<Waypoint> waypoints;
  TextFormat format;
  std::size_t points = 0;  ///< of all tracks
};

/// Returns what a file holds. Segments of one point stay, such of none are left out. Errors: those
/// of `XmlDocument`, and `ThrowInputError` with the line for a file of another kind or one that
/// holds nothing to draw, for coordinates that are missing, no numbers, or not on the globe
/// (latitudes beyond 90, longitudes beyond 180 degrees), and for elevations that are no numbers.
TrackContent ReadTracks(const GString& path, std::optional<std::uint32_t> codePage);
/// The same from bytes in memory; errors name them `name`.
TrackContent ReadTracks(std::string bytes, const GString& name,
                        std::optional<std::uint32_t> codePage);

inline constexpr Track::Kind TRACK_KINDS[] = {Track::Kind::Track, Track::Kind::Route,
                                              Track::Kind::Outline};

/// Returns "Track", "Route" or "Outline".
const wchar_t* TrackKindName(Track::Kind kind);

/// Returns the length of lines in degrees along great circles, in kilometres, on a sphere of the
/// earth's mean radius (6371.0088 km). The pieces are not joined.
double TrackLength(const Contours& lines);

/// Returns the lines cut where they cross the antimeridian, which a step of more than 180 degrees
/// of longitude does: each piece ends and the next begins at 180 degrees of its side.
Contours SplitAtAntimeridian(const Contours& lines);

}  // namespace mapreport
