// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Eigenvalues and eigenvectors of symmetric matrices by Jacobi's method, and what is solved with
/// them when a matrix may be singular.
///
///     RMatrix a{{2.0, 1.0}, {1.0, 2.0}};
///     RVector w, x{3.0, 3.0};
///     if (CyclicJacobi(a, w)) SVDSolve(a, w, x);   // w is 3, 1; x is 1, 1
///
/// Shapes that do not fit are the library's internal error, raised before anything is changed;
/// after `std::bad_alloc` what was being worked on is of no use.
///
/// Threads: no state.

#pragma once

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

/// Finds the eigenvalues of a symmetric A, of which the upper triangle is read: `w` is resized and
/// holds them by decreasing magnitude, of equals that of the earlier row first; column i of A
/// becomes the eigenvector of unit length that belongs to w(i). Returns false when 100 sweeps did
/// not converge, which is so for matrices that are not finite; the outputs are filled all the same.
/// A diagonal matrix is only sorted. An empty one succeeds.
///
/// Up to 16 rows the method is the cyclic one of Rutishauser: it converges when the magnitudes off
/// the diagonal sum up to less than 1e-16 of what they were. Larger definite matrices go through
/// the one-sided form on their Cholesky factor, and other dense ones are first brought near to
/// diagonal form; both end with sweeps that find nothing to do.
///
/// Error bounds: |A v_i - w_i v_i| below 10 n epsilon |A|, |V^T V - I| below 10 n epsilon in the
/// Frobenius norm. Of a definite A = D S D with more than 16 rows, where S has a diagonal of 1,
/// each eigenvalue is right to about n epsilon times the condition of S, relatively, however graded
/// D is. Cost: O(n^3). The bits do not depend on the processor. Source: H. Rutishauser, "The Jacobi
/// method for real symmetric matrices", 1966; Z. Drmac and K. Veselic, "New fast and accurate
/// Jacobi SVD algorithm", 2008.
[[nodiscard]] SHARED_API bool CyclicJacobi(RMatrix& a, RVector& w);

/// x <- V diag(1 / w_i) V^T x, where eigenvalues of at most 1e-9 |w_0| count as infinite: with what
/// `CyclicJacobi` found, the pseudo-inverse times x. `x` is a vector or a matrix of columns. `v`
/// has n rows and as many columns as `w` has elements.
SHARED_API void SVDSolve(const RMatrix& v, const RVector& w, RVector& x);
SHARED_API void SVDSolve(const RMatrix& v, const RVector& w, RMatrix& x);

/// Makes `x` the pseudo-inverse of a symmetric A times `b`: the least-squares solution of the least
/// length of A x = b. Returns false, `x` unchanged, when `CyclicJacobi` does. `x` may be `b`.
[[nodiscard]] SHARED_API bool GeneralizedSolve(const RMatrix& a, const RVector& b, RVector& x);

}  // namespace shr
