// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws the visible parts of the countries in their colors, with borders, and areas around them.

#pragma once

#include "examples/mapreport/Model.h"
#include "examples/mapreport/Projection.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

using shr::SvgWriter;

/// Draws the land outside of the area that the map is clipped to; nothing of a whole map.
void DrawGround(SvgWriter& svg, const Model& model, const Projection& projection);

/// Draws one group a country that shows, with its name and count as the title.
void DrawCountries(SvgWriter& svg, const Model& model, const Projection& projection);

/// Draws the outline of the area that the map is clipped to, and of the united continent. Their
/// edges along the sides of the window are left out, as those of countries are.
void DrawAreas(SvgWriter& svg, const Model& model, const Projection& projection);

}  // namespace mapreport
