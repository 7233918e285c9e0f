// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The least-squares problems of the warps: design matrices and targets. Internal.
///
///     RMatrix design = LinearDesign(ControlU(), ControlV()), targets = TargetColumns(to);
///
/// Threads: no state.

#pragma once

#include "shared/geometry/Points.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

/// n x 6: 1, u, v, u v, u^2, v^2.
RMatrix QuadraticDesign(const RVector& u, const RVector& v);
/// n x 3: 1, u, v.
RMatrix LinearDesign(const RVector& u, const RVector& v);
/// 2 n x 4, for a, b, c and d; two rows a point, for X and for Y.
RMatrix ConformalDesign(const RVector& u, const RVector& v);
/// n x 2: 1 and a coordinate.
RMatrix AxisDesign(const RVector& coordinate);
/// 2 n x 3, for a, b and s; two rows a point, for X and for Y.
RMatrix UniformDesign(const RVector& u, const RVector& v);

/// n x 2.
RMatrix TargetColumns(const RPoints& to);
/// 2 n: X and Y of each point.
RVector TargetRows(const RPoints& to);
/// One coordinate of each point.
RVector TargetColumn(const RPoints& to, double RPoint::*coordinate);

/// Solves by `MGSLeastSquares` into `x`, n columns of the design long, or n x 2. Returns false,
/// with `x` empty, where the design is dependent or the result is not finite. `design` becomes Q,
/// `targets` the residuals.
bool FitLeastSquares(RMatrix& design, RMatrix& x, RMatrix& targets);
bool FitLeastSquares(RMatrix& design, RVector& x, RVector& targets);

}  // namespace shr
