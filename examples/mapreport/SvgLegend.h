// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws what explains the map: classes of color, circles of magnitude, cities, tracks, scale
/// bar, sources.

#pragma once

#include "examples/mapreport/MapCanvas.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

inline constexpr double LEGEND_WIDTH = 800;

/// Returns the height of the legend of a map.
double LegendHeight(const Model& model);

/// Draws the legend with its upper left corner at `corner`, `width` wide.
void DrawLegend(MapCanvas& canvas, const Model& model, const Vec2d& corner, double width);

}  // namespace mapreport
