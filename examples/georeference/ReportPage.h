// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The HTML page of a run.
///
///     files.Add(path, MakePage(points, fit, picture, {.title = title}));

#pragma once

#include <cstddef>
#include <string>

#include "examples/georeference/Fit.h"
#include "examples/georeference/GridPlot.h"

namespace georeference {

/// Names of files beside the page.
inline constexpr const wchar_t* GRID_NAME = L"grid.svg";
inline constexpr const wchar_t* RESIDUALS_NAME = L"residuals.csv";
inline constexpr const wchar_t* COEFFICIENTS_NAME = L"coefficients.csv";
inline constexpr const wchar_t* POINTS_NAME = L"points.csv";

struct PageFacts {
  GString title;                ///< math text
  GString source;               ///< name of the file of control points
  std::size_t transformed = 0;  ///< points in the table of transformed points
};

std::string MakePage(const ControlPoints& points, const Georeference& fit,
                     const GridPicture& picture, const PageFacts& facts);

}  // namespace georeference
