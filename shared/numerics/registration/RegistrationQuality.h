// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// How good a registration is: residuals of the control points, their root mean square, and the
/// errors of points that were left out, by which methods can be compared.
///
///     std::vector<RPoint> residuals = Residuals(registration.Warp(), from, to);
///     double rms = RootMeanSquare(residuals);
///     double honest = RootMeanSquare(LeaveOneOutErrors(WarpThinPlateSpline, from, to));
///
/// Threads: no state.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "shared/Export.h"
#include "shared/numerics/registration/ImageWarp.h"

namespace shr {

/// Most control points for which `LeaveOneOutErrors` calibrates once for each where it has no
/// closed form.
inline constexpr std::size_t MOST_REFITS = 100;

/// Returns target less transform of the source for each pair, in target units; as many as the
/// shorter list has.
[[nodiscard]] SHARED_API std::vector<RPoint> Residuals(const CImageWarp& warp, const RPoints& from,
                                                       const RPoints& to);

/// Returns the square root of the mean squared length: NaN when there are none or one is NaN.
SHARED_API double RootMeanSquare(std::span<const RPoint> errors);

/// Returns for each pair how far its target is from where the method maps its source when it is
/// calibrated on the other pairs, in target units: NaN where they are too few for the method or do
/// not determine it. All are NaN for points that calibrate nothing; the identity is itself.
///
/// What leaving out one by one gives is computed in closed form: for least squares by the leverages
/// of the points, for splines by the diagonal of the inverse (see the sources), in O(n^3) as their
/// calibration, two or three times its time. Splines that were not solved directly, and for methods
/// that depend on the scale (exponential, rational quadratic) the few points at the border of the
/// extent, are calibrated anew; where that would be for more than `MOST_REFITS` points the errors
/// are NaN.
/// Source: R. Cook and S. Weisberg, "Residuals and Influence in Regression", 1982; S. Rippa, "An
/// algorithm for selecting a good value for the parameter c in radial basis function
/// interpolation", Advances in Computational Mathematics 11 (1999).
[[nodiscard]] SHARED_API std::vector<RPoint> LeaveOneOutErrors(WarpingMethod method,
                                                               const RPoints& from,
                                                               const RPoints& to);

}  // namespace shr
