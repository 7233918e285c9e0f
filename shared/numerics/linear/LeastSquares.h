// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Least squares by modified Gram-Schmidt orthogonalisation.
///
///     RMatrix a{{1.0, 1.0}, {1.0, 2.0}, {1.0, 3.0}};   // a line through three points
///     RVector b{1.0, 2.0, 4.0}, x(2);
///     if (MGSLeastSquares(a, x, b)) Use(x);             // -2/3 and 3/2; b is the residual
///
/// Threads: no state.

#pragma once

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

/// Finds the x with the least |A x - b| for A of m rows and n columns, m >= n. A becomes the Q of
/// A = Q R, `b` the residual b - A x, `x` the solution. `b` is a vector of m, or a matrix of m rows
/// whose columns are right-hand sides; `x` is as the caller has sized it, n long or n x the columns
/// of `b`. Returns false when the square of the length that is left of a column is below
/// 2.220446049250313e-16, whatever the scale of A: columns before it are those of Q, their parts
/// are subtracted from the rest and from `b`, and `x` holds the products of `b` with them. No
/// columns succeed; with fewer rows than columns the result is false.
///
/// Error bound: the same as of Householder's method, as the right-hand side goes through the steps
/// of the columns; Q is orthogonal to about epsilon times the condition of A (A. Bjorck, "Solving
/// linear least squares problems by Gram-Schmidt orthogonalization", 1967). Errors: shapes that do
/// not fit are the library's internal error; `std::bad_alloc` before anything is changed. Cost: 2 m
/// n^2 operations, in n + 1 passes over A and `b`. The bits do not depend on the processor. Source:
/// G. Golub and C. Van Loan, "Matrix Computations", 1996, section 5.2.8.
[[nodiscard]] SHARED_API bool MGSLeastSquares(RMatrix& a, RVector& x, RVector& b);
[[nodiscard]] SHARED_API bool MGSLeastSquares(RMatrix& a, RMatrix& x, RMatrix& b);

}  // namespace shr
