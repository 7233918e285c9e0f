// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Chooses a method, calibrates it and measures how well it fits.
///
///     const Georeference result = Fit(points, std::nullopt, *progress);

#pragma once

#include <optional>
#include <vector>

#include "examples/common/Progress.h"
#include "examples/georeference/PointFiles.h"
#include "shared/numerics/registration/ImageRegistration.h"

namespace georeference {

/// What a method reaches on the control points; NaN for what cannot be told.
struct MethodFit {
  shr::WarpingMethod method;
  shr::WarpingMethod inForce;  ///< another one where the method fell back
  double rms;
  double leftOut;  ///< root mean square error of points that were left out
};

struct Georeference {
  shr::CImageRegistration registration;
  /// From the method that was asked for, or chosen, to the one in force.
  std::vector<shr::WarpingMethod> chain;
  bool isChosen = false;  ///< by the least error of points that were left out
  std::vector<RPoint> residuals;
  std::vector<RPoint> leftOut;
  double rms = 0.0;
  double leftOutRms = 0.0;
  std::vector<MethodFit> comparison;  ///< all methods, in their order
  double imageExtent = 0.0;           ///< larger side of the points' box
  double mapExtent = 0.0;

  shr::WarpingMethod Method() const { return chain.back(); }
};

/// `method` is nothing for the one with the least error of points that were left out; a tie goes to
/// the simpler one. Where no method has such an error, there are too few points, it is as if the
/// thin-plate spline had been asked for.
Georeference Fit(const ControlPoints& points, std::optional<shr::WarpingMethod> method,
                 examples::IProgress& progress);

/// Returns the length of an error.
double Length(const RPoint& error);

}  // namespace georeference
