// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A fast orthogonal matrix that nearly diagonalises a symmetric one, from which Jacobi's method
/// starts when there is much to do.
///
///     RMatrix z;
///     const bool isFound = NearEigenvectors(a, z);   // rows of z
///
/// Threads: no state.

#pragma once

#include "shared/numerics/linear/RMatrix.h"

namespace shr {

/// Makes the rows of `z` orthonormal vectors that are eigenvectors of the symmetric `a`, but for
/// errors of n epsilon |a|, by tridiagonal reduction and implicit QL steps. The upper triangle of
/// `a` is read, and `a` destroyed. Returns false when an eigenvalue takes more than 60 steps or
/// something is not finite. Source: A. Dubrulle, R. Martin and J. Wilkinson, "The implicit QL
/// algorithm", 1968. Cost: O(n^3).
bool NearEigenvectors(RMatrix& a, RMatrix& z);

}  // namespace shr
