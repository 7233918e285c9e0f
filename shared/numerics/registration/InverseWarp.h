// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The way back: which source point a warp maps to a target, and the derivatives of warps that it
/// is found by.
///
///     InverseResult result = InverseTransform(registration.Warp(), onMap);
///     if (result.converged) RPoint inImage = result.point;
///
/// Threads: no state.

#pragma once

#include <optional>

#include "shared/Export.h"
#include "shared/numerics/registration/ImageWarp.h"

namespace shr {

/// Partial derivatives of the result (X, Y) by the source (x, y).
struct WarpDerivative {
  double xByX;
  double xByY;
  double yByX;
  double yByY;

  /// Returns how much the warp enlarges areas; negative where it turns them over.
  double Determinant() const { return xByX * yByY - xByY * yByX; }
};

/// Returns the derivative at a point, for the thirteen methods of the library; nothing for classes
/// derived outside of it, and for a warp that is not calibrated. Where a Marcov or exponential
/// spline has a tip, at a control point, its term counts 0. Cost: O(n) for splines and inverse
/// distance.
SHARED_API std::optional<WarpDerivative> DerivativeOf(const CImageWarp& warp, const RPoint& point);

/// What the search for a source point found.
struct InverseResult {
  RPoint point;            ///< the best source point found; NaN when there is none
  bool converged = false;  ///< the warp maps `point` to the target to rounding
  int steps = 0;           ///< how many points were taken after the first
  double distance = 0.0;   ///< from the target to where the warp maps `point`
};

/// Most steps of `InverseTransform`.
inline constexpr int MOST_INVERSE_STEPS = 50;
/// `InverseTransform` has converged when the distance is at most this part of the target's largest
/// coordinate and the extent of the mapped control points; as a rule it gets to rounding.
inline constexpr double INVERSE_TOLERANCE = 1e-12;

/// Searches the point that `warp` maps to `target` by Newton's method with analytic derivatives,
/// halving steps that lead away. Without `start` the search begins where the linear part of the
/// warp has the target. A warp that folds the plane may map several points there, of which one is
/// found, or none: the result tells. Cost: about 5 transforms and derivatives as a rule. Source: J.
/// Dennis and R. Schnabel, "Numerical Methods for Unconstrained Optimization and Nonlinear
/// Equations", 1983, section 6.3.
SHARED_API InverseResult InverseTransform(const CImageWarp& warp, const RPoint& target);
SHARED_API InverseResult InverseTransform(const CImageWarp& warp, const RPoint& target,
                                          const RPoint& start);

}  // namespace shr
