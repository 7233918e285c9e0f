// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Equations with a diagonal or triangular matrix. The lower triangle is all that is read of a
/// factor: the upper one is its transpose. Factors come from
/// shared/numerics/linear/SymmetricSolve.h.
///
///     RMatrix l{{2.0, 0.0}, {1.0, 4.0}};
///     RVector b{2.0, 9.0};
///     const bool isSolved = ForwardElimination(l, b);   // b is 1, 2
///
/// The right-hand side, a vector or a matrix of columns, becomes the solution. A pivot is refused
/// when its magnitude is below 2.220446049250313e-16, whatever the scale of the matrix; the
/// elements that were found before stay, that of the pivot and those after it are as they were
/// given. Empty equations succeed. A matrix that is not square, or a right-hand side of another
/// length, is the library's internal error. Cost: n^2 multiplications for a vector; no memory is
/// taken.
///
/// Threads: no state.

#pragma once

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

/// b <- D^-1 b, of `d` the diagonal is read. Returns false at the first pivot that is refused.
[[nodiscard]] SHARED_API bool DiagonalSolve(const RMatrix& d, RVector& b);
[[nodiscard]] SHARED_API bool DiagonalSolve(const RMatrix& d, RMatrix& b);

/// b <- L^-1 b, from the first row on. Returns false at the first pivot that is refused.
/// Error bound: n epsilon times |L| |b|, element by element.
[[nodiscard]] SHARED_API bool ForwardElimination(const RMatrix& l, RVector& b);
[[nodiscard]] SHARED_API bool ForwardElimination(const RMatrix& l, RMatrix& b);

/// b <- L^-T b, from the last row up. Returns false at the last pivot that is refused.
[[nodiscard]] SHARED_API bool BackSubstitution(const RMatrix& l, RVector& b);
[[nodiscard]] SHARED_API bool BackSubstitution(const RMatrix& l, RMatrix& b);

/// The same for a diagonal of 1, which is not read.
SHARED_API void UnitForwardElimination(const RMatrix& l, RVector& b);
SHARED_API void UnitForwardElimination(const RMatrix& l, RMatrix& b);
SHARED_API void UnitBackSubstitution(const RMatrix& l, RVector& b);
SHARED_API void UnitBackSubstitution(const RMatrix& l, RMatrix& b);

}  // namespace shr
