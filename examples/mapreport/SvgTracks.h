// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws the visible pieces of tracks, routes and outlines, and waypoints with their names.

#pragma once

#include "examples/mapreport/MapCanvas.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

/// The marker of waypoints that ask for no other.
inline const Marker WAYPOINT_MARKER{L"pin", 22};

/// Draws lines: tracks whole, routes dashed, outlines thin, each on a white ground. A line tells in
/// a browser what it is when it is pointed at.
void DrawTracks(MapCanvas& canvas, const Model& model);

/// Draws a sample of how lines of a kind are drawn, between two points.
void DrawTrackSample(SvgWriter& svg, Track::Kind kind, const Vec2d& from, const Vec2d& to);

/// Draws the markers of the visible waypoints and keeps names off them.
void DrawWaypoints(MapCanvas& canvas, const Model& model);

/// Writes the names of waypoints that find room, in the order of their files.
void DrawWaypointNames(MapCanvas& canvas, const Model& model);

}  // namespace mapreport
