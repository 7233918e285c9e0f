// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Symmetric tridiagonal equations, Householder vectors and the reduction of a symmetric matrix to
/// tridiagonal form. For eigenvalues see shared/numerics/linear/CyclicJacobi.h.
///
///     RVector d{2.0, 2.0}, e{1.0}, b{4.0, 5.0};
///     const bool isSolved = TridiagonalSolve(d, e, b);   // b is 1, 2
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

/// Solves with the symmetric matrix of diagonal `d`, n long, and off-diagonal `e`, n - 1 long (0
/// for n = 0), without pivoting: `d` and `e` become the factors, `b`, a vector or a matrix of
/// columns, the solution. Returns false at the first pivot whose magnitude is
/// below 2.220446049250313e-16: the factors before it are made, its own place holds it, `b` is
/// unchanged. Cost: O(n).
[[nodiscard]] SHARED_API bool TridiagonalSolve(RVector& d, RVector& e, RVector& b);
[[nodiscard]] SHARED_API bool TridiagonalSolve(RVector& d, RVector& e, RMatrix& b);

/// Turns `v` into a Householder vector: with u = (1, v_1, v_2, ...) and beta = v_0 the reflection
/// I - beta u u^T maps a multiple of the old v to a positive multiple of the first axis. Where all
/// elements behind the first vanish beside it, or everywhere, beta is 0. Source: G. Golub and C.
/// Van Loan, "Matrix Computations", 1996, algorithm 5.1.1. Empty vectors stay.
SHARED_API void Householder(RVector& v);

/// A = Q T Q^T for a symmetric A, of which the lower triangle is read: `d` becomes the diagonal of
/// T and `e`, one shorter, what stands beside it; A becomes the orthogonal Q, whose first row and
/// column are those of the identity. A column whose part below the diagonal has a norm below
/// 2.220446049250313e-16 is left out, its element of `e` is 0; the last two rows are taken as they
/// stand. Returns false when an element of T is not finite. An empty matrix succeeds.
///
/// Error bounds: |A - Q T Q^T| <= 8 n epsilon |A| and |Q^T Q - I| <= 8 n epsilon in the Frobenius
/// norm; neither overflow nor underflow between 1e-290 and 1e290. Source: J. Dongarra, S.
/// Hammarling and D. Sorensen, "Block reduction of matrices to condensed forms for eigenvalue
/// computations", 1989. Cost: 8 n^3 / 3 operations, n x n numbers of memory. The bits do not depend
/// on the processor.
[[nodiscard]] SHARED_API bool TridiagonalDecomposition(RMatrix& a, RVector& d, RVector& e);

/// Solves A x = b with what `TridiagonalDecomposition` made of A; `d` and `e` become the factors.
/// Returns false when the tridiagonal solve does; `b` is then Q^T b.
[[nodiscard]] SHARED_API bool TridiagonalSolve(const RMatrix& q, RVector& d, RVector& e,
                                               RVector& b);

}  // namespace shr
