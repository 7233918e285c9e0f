// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Square systems of equations: Gaussian elimination with partial pivoting, and Cramer's rule for
/// three unknowns. For symmetric matrices see shared/numerics/linear/SymmetricSolve.h.
///
///     RMatrix a{{0.0, 2.0}, {4.0, 1.0}};
///     RVector b{4.0, 6.0};
///     const bool isSolved = GaussSolve(a, b);   // b is 1, 2; a holds nothing of use any more
///
/// Threads: no state.

#pragma once

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

/// Solves A x = b; `b`, a vector or a matrix of columns, becomes the solution and A is destroyed.
/// The pivot of a column is its largest element, the upper one of equals. Returns false when its
/// magnitude is below 2.220446049250313e-16, whatever the scale of A; `b` has then gone through the
/// elimination of the columns before. Empty systems succeed. NaN passes into the result.
///
/// Error bound: (A + E) x = b with |E| <= 3 n epsilon growth max|A|, where growth is the ratio of
/// the largest element met to that of A; below 10 on all but contrived matrices, 2^(n-1) at worst
/// (N. Higham, "Accuracy and Stability of Numerical Algorithms", 2002, chapter 9). Errors: shapes
/// that do not fit are the library's internal error; after
/// `std::bad_alloc` A and `b` are of no use.
/// Cost: 2 n^3 / 3 operations, by blocks; n x 64 numbers of memory. The bits do not depend on the
/// processor.
[[nodiscard]] SHARED_API bool GaussSolve(RMatrix& a, RVector& b);
[[nodiscard]] SHARED_API bool GaussSolve(RMatrix& a, RMatrix& b);

/// Solves the 3 x 3 system A x = b by Cramer's rule; `x` is resized and may be `b`. Returns false,
/// `x` unchanged, when the determinant, with its sign, is below 1.1754943508222875e-38: a negative
/// determinant is refused. Exchange two rows to solve such a system.
[[nodiscard]] SHARED_API bool Solve3x3(const RMatrix& a, const RVector& b, RVector& x);

}  // namespace shr
