// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws the lines of equal longitude and latitude, and the frame with their labels.

#pragma once

#include <vector>

#include "examples/mapreport/MapCanvas.h"
#include "examples/mapreport/Model.h"
#include "examples/mapreport/Projection.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

using shr::SvgWriter;

struct Graticule {
  double step;
  std::vector<double> meridians;
  std::vector<double> parallels;
};

/// Chooses the lines for a window.
Graticule MakeGraticule(const Box2d& window);

void DrawGraticule(SvgWriter& svg, const Projection& projection, const Graticule& graticule);

/// Draws the frame of the map and the degrees on all four sides of it.
void DrawFrame(MapCanvas& canvas, const Graticule& graticule);

}  // namespace mapreport
