// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws what explains the map: classes of color, circles of magnitude, cities, scale bar, sources.

#pragma once

#include "examples/mapreport/Model.h"
#include "examples/mapreport/Projection.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

using shr::SvgWriter;

inline constexpr double LEGEND_HEIGHT = 150;
inline constexpr double LEGEND_WIDTH = 800;

/// Draws the legend with its upper left corner at `corner`, `width` wide.
void DrawLegend(SvgWriter& svg, const Model& model, const Projection& projection,
                const Vec2d& corner, double width);

}  // namespace mapreport
