// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The tables of a run as CSV files.
///
///     files.Add(folder.Join(L"residuals.csv"), MakeResidualTable(points, fit));

#pragma once

#include <cstddef>
#include <string>

#include "examples/georeference/Fit.h"

namespace georeference {

/// Returns the digits behind the point that resolve this part of an extent: 3 for 1e-9 of 1e6.
std::size_t DecimalsFor(double extent, double part);

/// Returns the order of the control points, the worst one first: by residual, or by the error when
/// left out where all residuals are rounding.
std::vector<std::size_t> WorstFirst(const Georeference& fit);

/// The parameters of a warp with their names; the first column is for X, the second for Y.
struct Parameter {
  GString name;
  double x;
  double y;
};
std::vector<Parameter> ParametersOf(const shr::CImageWarp& warp);

// Coordinates are rounded to a billionth of the map's extent, far below what control points tell.
std::string MakeResidualTable(const ControlPoints& points, const Georeference& fit);
/// With the weight of each control point for splines.
std::string MakeCoefficientTable(const ControlPoints& points, const Georeference& fit);
std::string MakePointTable(const ImagePoints& points, const Georeference& fit);

}  // namespace georeference
