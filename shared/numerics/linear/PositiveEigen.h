// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Eigenvalues of positive definite matrices to high relative accuracy, for `CyclicJacobi`.
///
///     const EigenResult result = PositiveEigen(a, w, v);
///
/// Threads: no state.

#pragma once

#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

enum class EigenResult {
  Found,
  NotConverged,   // the outputs are filled
  NotApplicable,  // the matrix is not positive definite, or out of range; outputs are anything
};

/// Makes `w` the eigenvalues of the symmetric `a`, of which the upper triangle is read, and the
/// rows of `v` its eigenvectors, in no order. At most 100 sweeps. Error bound: each eigenvalue
/// relatively by about n epsilon times the condition of D A D, whose diagonal is 1. Source: K.
/// Veselic and V. Hari, "A note on a one-sided Jacobi algorithm", 1989; Z. Drmac and K. Veselic,
/// "New fast and accurate Jacobi SVD algorithm", 2008.
EigenResult PositiveEigen(const RMatrix& a, RVector& w, RMatrix& v);

/// `CholeskyDecomposition` with another least pivot.
bool CholeskyFactor(RMatrix& a, double leastPivot);

}  // namespace shr
