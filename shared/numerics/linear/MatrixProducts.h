// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Products of vectors and matrices. For norms and elementwise arithmetic see
/// shared/numerics/linear/MatrixUtility.h.
///
///     RMatrix a{{1.0, 2.0}, {3.0, 4.0}}, m;
///     Product(a, a, m);                    // m = a a
///     InnerProduct(a, a, m);               // m = a^T a
///     OuterProduct(a, a, m);               // m = a a^T
///
/// Results are resized and may be the same object as an argument. Shapes that do not fit are the
/// library's internal error, raised before anything is changed; a sum of no terms is 0. The bits do
/// not depend on the processor: each element is a sum in the order of its terms, formed in blocks
/// of 256. Cost: O(rows x columns x depth), cache-blocked; one workspace per call.
///
/// Threads: no state.

#pragma once

#include "shared/Export.h"
#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"

namespace shr {

/// Return a^T b, by the second form through `result`. Error bound: (n / 16 + 20) epsilon times the
/// sum of |a_i b_i|, as 16 sums run side by side.
SHARED_API double DotProduct(const RVector& a, const RVector& b);
SHARED_API void InnerProduct(const RVector& a, const RVector& b, double& result);

/// r = A v.
SHARED_API void Product(const RMatrix& a, const RVector& v, RVector& r);
/// r = A^T v.
SHARED_API void InnerProduct(const RMatrix& a, const RVector& v, RVector& r);

/// m = A B; A <- A B.
SHARED_API void Product(const RMatrix& a, const RMatrix& b, RMatrix& m);
SHARED_API void Product(RMatrix& a, const RMatrix& b);
/// m = A^T B; A <- A^T B.
SHARED_API void InnerProduct(const RMatrix& a, const RMatrix& b, RMatrix& m);
SHARED_API void InnerProduct(RMatrix& a, const RMatrix& b);
/// m = A B^T; A <- A B^T.
SHARED_API void OuterProduct(const RMatrix& a, const RMatrix& b, RMatrix& m);
SHARED_API void OuterProduct(RMatrix& a, const RMatrix& b);
/// m = a b^T.
SHARED_API void OuterProduct(const RVector& a, const RVector& b, RMatrix& m);

/// Return a^T M b, by the second form through `result`.
SHARED_API double QuadraticProduct(const RVector& a, const RMatrix& m, const RVector& b);
SHARED_API void QuadraticProduct(const RVector& a, const RMatrix& m, const RVector& b,
                                 double& result);

}  // namespace shr
