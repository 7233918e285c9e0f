// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Factors of symmetric matrices, and equations solved with them: Cholesky for positive definite
/// matrices, L D L^T without pivoting for those whose leading minors are not small, Aasen's L T L^T
/// for any.
///
///     RMatrix a{{4.0, 2.0}, {2.0, 5.0}};
///     RVector b{8.0, 12.0};
///     if (CholeskyDecomposition(a)) CholeskySolve(a, b);   // b is 1, 2
///
/// Factors take the place of the lower triangle; the upper one is neither read nor written. The
/// right-hand side, a vector or a matrix of columns, becomes the solution. A matrix that is not
/// square, or a right-hand side of another length, is the library's internal error. After
/// `std::bad_alloc` what was being worked on is of no use. The bits do not depend on the processor.
///
/// Threads: no state.

#pragma once

#include <cstdint>
#include <vector>

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

/// A = L D L^T: the unit lower triangle L below the diagonal, D on it. Returns false at the first
/// pivot whose magnitude is below 2.220446049250313e-16: that pivot is on the diagonal, the columns
/// before it are those of the factor, all else is as it was. Empty matrices succeed.
/// Cost: n^3 / 3 operations, n x 64 numbers of memory. Without pivoting the factor may be much
/// larger than A and the solution as bad; use `AasenDecomposition` for what is indefinite.
[[nodiscard]] SHARED_API bool SymmetricDecomposition(RMatrix& a);

/// Solves with a factor from `SymmetricDecomposition`. Never reports a failure: the divisions by D
/// stop at the first pivot whose magnitude is below 2.220446049250313e-16, the rest stay undivided.
SHARED_API void SymmetricSolve(const RMatrix& factor, RVector& b);
SHARED_API void SymmetricSolve(const RMatrix& factor, RMatrix& b);

/// A = L L^T. Returns false at the first pivot, square of a diagonal element, that is below
/// 2.220446049250313e-16, also when it is negative: columns before it are those of the factor, in
/// its own column the products of those are subtracted, later ones are as they were. Empty matrices
/// succeed. A NaN passes.
/// Error bound: |A - L L^T| <= (n + 3) epsilon |L| |L|^T, element by element (N. Higham, "Accuracy
/// and Stability of Numerical Algorithms", 2002, theorem 10.3). Cost: n^3 / 3 operations, n x 64
/// numbers of memory.
[[nodiscard]] SHARED_API bool CholeskyDecomposition(RMatrix& a);

/// Runs `ForwardElimination` and `BackSubstitution`; what they return is ignored.
SHARED_API void CholeskySolve(const RMatrix& l, RVector& b);
SHARED_API void CholeskySolve(const RMatrix& l, RMatrix& b);

/// A = L T L^T with unit lower triangle L, whose first column is that of the identity, and a
/// tridiagonal T, without pivoting. T takes the diagonal and the one below; column j + 1 of L below
/// its diagonal takes column j below those. Where an element below T's diagonal has a magnitude
/// below 2.220446049250313e-16 the column of L that it would divide is 0: A is then the product
/// only if what was to be divided is as small. The other form pivots and takes any symmetric
/// matrix. Source: J. O. Aasen, "On the reduction of a symmetric matrix to tridiagonal form", 1971.
/// Cost: n^3 / 3 operations.
SHARED_API void AasenDecomposition(RMatrix& a);

/// The same for P A P^T, with the largest element of each column brought up. `order` is resized to
/// n: row i of P A P^T is row order[i] of A. Elements of L are at most 1 in magnitude.
SHARED_API void AasenDecomposition(RMatrix& a, std::vector<std::uint64_t>& order);

/// Solves with factors from `AasenDecomposition`; of T by elimination with row exchanges. Returns
/// false, `b` partly solved, when a pivot of T has a magnitude below 2.220446049250313e-16.
[[nodiscard]] SHARED_API bool AasenSolve(const RMatrix& factor, RVector& b);
[[nodiscard]] SHARED_API bool AasenSolve(const RMatrix& factor,
                                         const std::vector<std::uint64_t>& order, RVector& b);

}  // namespace shr
