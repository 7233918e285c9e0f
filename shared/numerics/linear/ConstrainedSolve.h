// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Equations with linear constraints: A x + B^T y = c, B x = 0, with a symmetric n x n matrix A and
/// m rows of B. Interpolation by radial basis functions has this form.
///
///     RMatrix a{{2.0, 0.0}, {0.0, 2.0}}, constraint{{1.0, 1.0}};
///     RVector c{4.0, 0.0}, x, y;
///     if (CPDSolve(a, constraint, c, x, y)) Use(x, y);   // x is 1, -1 and y is 2
///
/// Shapes that do not fit are the library's internal error. Memory that is not there is
/// `std::bad_alloc`.
///
/// Threads: no state.

#pragma once

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

/// Solves for an A that is conditionally positive definite: x^T A x > 0 wherever B x = 0 but x does
/// not vanish. `x` and `y` are resized to n and m. The method is that of conjugate gradients on
/// what is projected to B x = 0: at most n - m steps, after which, or when p^T A p falls below
/// 1.1920928955078125e-7 r^T r for a direction p, it starts again from the x that it has, 9 times
/// at most. Returns true when the square of the length of the projected residual is below the
/// larger one of 1e-18 |c|^2 and 2.220446049250313e-16, an absolute limit: where |c| is 1e-8, x = 0
/// will do. Returns false when it is not, with the best that was found in `x` and `y`; and, both 0,
/// when B B^T has no Cholesky factor. Source: G. Golub and C. Van Loan, "Matrix Computations",
/// 1996, section 10.2, with the projection of N. Gould, M. Hribar and J. Nocedal, "On the solution
/// of equality constrained quadratic programming problems arising in optimization", 2001. Cost:
/// O(n^2) a step.
[[nodiscard]] SHARED_API bool CPDSolve(const RMatrix& a, const RMatrix& b, const RVector& c,
                                       RVector& x, RVector& y);

/// Projects `x` to B x = 0, with the lower triangle `l` of the Cholesky factor of B B^T: `y`
/// becomes (B B^T)^-1 B x, and B^T y is subtracted from `x`.
SHARED_API void CPDProject(const RMatrix& b, const RMatrix& l, RVector& x, RVector& y);

/// Solves the same equations for any symmetric A by way of its eigenvalues, and of those of
/// B A^+ B^T; small ones are dropped as in `SVDSolve`. `x` and `y` are resized. Returns false when
/// `CyclicJacobi` does, or when there is one constraint and the magnitude of b A^+ b^T is below
/// 2.220446049250313e-16; `x` and `y` are then unchanged. In the second form the columns of `c`,
/// `x` and `y` belong together. Where A is singular and c reaches into what it maps to zero, the
/// result is that of the least squares of A, not of the whole. Cost: O(n^3).
[[nodiscard]] SHARED_API bool AlternateSolve(const RMatrix& a, const RMatrix& b, const RVector& c,
                                             RVector& x, RVector& y);
[[nodiscard]] SHARED_API bool AlternateSolve(const RMatrix& a, const RMatrix& b, const RMatrix& c,
                                             RMatrix& x, RMatrix& y);

}  // namespace shr
