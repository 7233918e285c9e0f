// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What is asked of vectors and matrices and how they are taken apart, put together and filled:
/// predicates, norms, rows and columns, blocks, elementwise arithmetic. Products are in
/// shared/numerics/linear/MatrixProducts.h.
///
///     RMatrix a{{2.0, 1.0}, {1.0, 3.0}};
///     RMatrix system;
///     ComposeMatrix(a, RMatrix{{1.0, 1.0}}, RMatrix{{0.0}}, system);   // 3 x 3, symmetric
///     double size = FNorm(system);
///
/// In all functions shapes that do not fit, and rows, columns or positions that are not there, are
/// the library's internal error, raised before anything is changed. A result may be the same object
/// as an argument. Memory that is not there is `std::bad_alloc`.
///
/// Threads: no state.

#pragma once

#include <cstdint>

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

// ---- Predicates. `tolerance` is absolute and inclusive; a NaN is within none. What is empty is
// zero, equal to its like, symmetric, diagonal and an identity.

/// Return true when the magnitude of every element is within `tolerance`.
SHARED_API bool IsZero(const RVector& v, double tolerance);
SHARED_API bool IsZero(const RMatrix& m, double tolerance);
/// Return true when both have the same shape and elements that differ by `tolerance` at most. Equal
/// infinities do.
SHARED_API bool IsEqual(const RVector& a, const RVector& b, double tolerance);
SHARED_API bool IsEqual(const RMatrix& a, const RMatrix& b, double tolerance);
SHARED_API bool IsSquare(const RMatrix& m);
/// Return false for what is not square. Symmetric: elements (i, j) and (j, i) differ by `tolerance`
/// at most. Diagonal and tridiagonal: all other elements are zero. Identity: diagonal, too, and the
/// diagonal differs from 1 by `tolerance` at most.
SHARED_API bool IsSymmetric(const RMatrix& m, double tolerance);
SHARED_API bool IsDiagonal(const RMatrix& m, double tolerance);
SHARED_API bool IsTriDiagonal(const RMatrix& m, double tolerance);
SHARED_API bool IsIdentity(const RMatrix& m, double tolerance);

// ---- Rows, columns, diagonals. A diagonal has as many elements as the shorter side.

/// Copy into `v`, which is resized.
SHARED_API void ExtractRow(const RMatrix& m, std::uint64_t i, RVector& v);
SHARED_API void ExtractCol(const RMatrix& m, std::uint64_t j, RVector& v);
SHARED_API void ExtractDiagonal(const RMatrix& m, RVector& v);
/// Write `v`, which is just as long, into `m`.
SHARED_API void AssignRow(const RVector& v, std::uint64_t i, RMatrix& m);
SHARED_API void AssignCol(const RVector& v, std::uint64_t j, RMatrix& m);
SHARED_API void AssignDiagonal(const RVector& v, RMatrix& m);

/// Append `b` to `a`, in place or into `r`.
SHARED_API void Concatenate(RVector& a, const RVector& b);
SHARED_API void Concatenate(const RVector& a, const RVector& b, RVector& r);
/// Append the columns of `b`, or `b` as a column, on the right: [a b]. A 0 x 0 matrix `a` takes
/// anything.
SHARED_API void ConcatenateCols(RMatrix& a, const RMatrix& b);
SHARED_API void ConcatenateCols(RMatrix& a, const RVector& b);
SHARED_API void ConcatenateCols(const RMatrix& a, const RMatrix& b, RMatrix& r);
SHARED_API void ConcatenateCols(const RMatrix& a, const RVector& b, RMatrix& r);
SHARED_API void ConcatenateCols(const RVector& a, const RVector& b, RMatrix& r);
/// Append the rows of `b`, or `b` as a row, below. A 0 x 0 matrix `a` takes anything.
SHARED_API void ConcatenateRows(RMatrix& a, const RMatrix& b);
SHARED_API void ConcatenateRows(RMatrix& a, const RVector& b);
SHARED_API void ConcatenateRows(const RMatrix& a, const RMatrix& b, RMatrix& r);
SHARED_API void ConcatenateRows(const RMatrix& a, const RVector& b, RMatrix& r);
SHARED_API void ConcatenateRows(const RVector& a, const RVector& b, RMatrix& r);

/// Makes the block matrix [a b; c d].
SHARED_API void ComposeMatrix(const RMatrix& a, const RMatrix& b, const RMatrix& c,
                              const RMatrix& d, RMatrix& r);
/// Makes the block matrix [a b^T; b c], symmetric where `a` and `c` are: the matrix of equations a
/// with constraints b, as `CPDSolve` has them.
SHARED_API void ComposeMatrix(const RMatrix& a, const RMatrix& b, const RMatrix& c, RMatrix& r);

/// Makes `t` the transpose of `a`, or returns it.
SHARED_API void Transpose(const RMatrix& a, RMatrix& t);
SHARED_API RMatrix Transpose(const RMatrix& a);

// ---- Norms; 0 for what is empty, NaN where an element is NaN. Those that take squares do neither
// overflow nor underflow where the result does not.

/// Sum of the magnitudes; Euclidean norm; largest magnitude.
SHARED_API double L1Norm(const RVector& v);
SHARED_API double L2Norm(const RVector& v);
SHARED_API double LInfNorm(const RVector& v);
/// Largest sum of magnitudes of a column; of a row; Frobenius norm.
SHARED_API double L1Norm(const RMatrix& m);
SHARED_API double LInfNorm(const RMatrix& m);
SHARED_API double FNorm(const RMatrix& m);
/// Sum of the diagonal.
SHARED_API double Trace(const RMatrix& m);
/// Sum of the magnitudes of all off-diagonal elements.
SHARED_API double Off(const RMatrix& m);
/// Twice the sum of the magnitudes of the elements strictly above the diagonal.
SHARED_API double SymOff(const RMatrix& m);
/// Sums of the rows; of the columns.
SHARED_API void HSum(const RMatrix& m, RVector& v);
SHARED_API void VSum(const RMatrix& m, RVector& v);

// ---- Filling.

/// Give every element one value.
SHARED_API void Fill(RVector& v, double value);
SHARED_API void Fill(RMatrix& m, double value);
/// Fill with 1 or 0; with a shape, after taking it.
SHARED_API void Ones(RVector& v);
SHARED_API void Ones(RMatrix& m);
SHARED_API void Ones(RVector& v, std::uint64_t n);
SHARED_API void Ones(RMatrix& m, std::uint64_t rows, std::uint64_t columns);
SHARED_API void Zeros(RVector& v);
SHARED_API void Zeros(RMatrix& m);
SHARED_API void Zeros(RVector& v, std::uint64_t n);
SHARED_API void Zeros(RMatrix& m, std::uint64_t rows, std::uint64_t columns);
/// Makes `v` the unit vector of length `n` along axis `k` < n.
SHARED_API void Unit(RVector& v, std::uint64_t n, std::uint64_t k);
/// Makes `m` a matrix with 1 on the diagonal and 0 elsewhere.
SHARED_API void Eye(RMatrix& m, std::uint64_t rows, std::uint64_t columns);
/// Copy from an array, which holds that many numbers, row by row.
SHARED_API void Initialize(RVector& v, std::uint64_t n, const double* elements);
SHARED_API void Initialize(RMatrix& m, std::uint64_t rows, std::uint64_t columns,
                           const double* elements);

// ---- Arithmetic, element by element. With two arguments the first one is changed: a <- a + b.

SHARED_API void Negate(RVector& v);
SHARED_API void Negate(RMatrix& m);
SHARED_API void Add(RVector& a, const RVector& b);
SHARED_API void Add(RMatrix& a, const RMatrix& b);
SHARED_API void Add(RVector& a, double b);
SHARED_API void Add(RMatrix& a, double b);
SHARED_API void Add(const RVector& a, const RVector& b, RVector& r);
SHARED_API void Add(const RMatrix& a, const RMatrix& b, RMatrix& r);
SHARED_API void Subtract(RVector& a, const RVector& b);
SHARED_API void Subtract(RMatrix& a, const RMatrix& b);
SHARED_API void Subtract(RVector& a, double b);
SHARED_API void Subtract(RMatrix& a, double b);
SHARED_API void Subtract(const RVector& a, const RVector& b, RVector& r);
SHARED_API void Subtract(const RMatrix& a, const RMatrix& b, RMatrix& r);
/// Division by zero follows IEEE 754.
SHARED_API void Divide(RVector& a, double b);
SHARED_API void Divide(RMatrix& a, double b);
SHARED_API void Divide(RVector& a, const RVector& b);
SHARED_API void Divide(RMatrix& a, const RMatrix& b);
/// y <- alpha y + x: what is scaled is the vector that is updated.
SHARED_API void Update_axpy(double alpha, RVector& y, const RVector& x);
SHARED_API void Update_axpy(double alpha, RMatrix& y, const RMatrix& x);
/// y <- y + alpha x.
SHARED_API void Update_xpay(RVector& y, double alpha, const RVector& x);
SHARED_API void Update_xpay(RMatrix& y, double alpha, const RMatrix& x);

}  // namespace shr
