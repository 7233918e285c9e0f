// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Draws the grid of the image as the registration maps it, with the control points and arrows for
/// their errors.
///
///     const GridPicture picture = DrawGrid(points, fit, options);

#pragma once

#include <string>

#include "examples/georeference/Fit.h"
#include "examples/georeference/Options.h"

namespace georeference {

struct GridPicture {
  std::string svg;
  GString caption;
};

/// Returns true when the method meets every control point, so that only the errors of points that
/// were left out tell how good it is.
bool MeetsAllPoints(const Georeference& fit);

/// Lengths of y are drawn to those of x as pixels of the image are: square. Of the choices the
/// cells of the grid, the names of the axes and how text is drawn count.
GridPicture DrawGrid(const ControlPoints& points, const Georeference& fit, const Options& choices);

}  // namespace georeference
