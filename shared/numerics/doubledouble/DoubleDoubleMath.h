// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Exponential, logarithm and circular functions of `doubledouble`. Roots, powers and `hypot` are
/// in shared/numerics/doubledouble/DoubleDouble.h.
///
///     doubledouble pi = atan2(doubledouble(0), doubledouble(-1));
///     doubledouble one = log(exp(doubledouble(1)));
///     doubledouble far = sin(doubledouble(1e300));       // as accurate as sin(1)
///
/// Error bound of all: 1e-30 relative to the result, where that and its argument have two normal
/// parts; measured in docs/double-double.md. All use + - * / alone, so that results have the same
/// bits on both targets. NaN gives NaN. Threads: no state.

#pragma once

#include "shared/Export.h"
#include "shared/numerics/doubledouble/DoubleDouble.h"

namespace shr {

/// Returns e to the power of x: infinity beyond the largest number, 0 below the smallest.
/// Source: table of exp(j / 64) after P. T. P. Tang, "Table-Driven Implementation of the
/// Exponential Function in IEEE Floating-Point Arithmetic", 1989.
SHARED_API doubledouble exp(const doubledouble& x);

/// Returns the natural logarithm: minus infinity for 0, NaN for negative numbers, infinity for
/// infinity. Near 1 the result is relative to x - 1, exact digits in the tail of x included.
/// Source: table of reciprocals after P. T. P. Tang, "Table-Driven Implementation of the Logarithm
/// Function in IEEE Floating-Point Arithmetic", 1990.
SHARED_API doubledouble log(const doubledouble& x);

/// Return sine and cosine of an angle in radians of any size; NaN for infinities. Near the
/// multiples of pi the results are relative to the distance from them. Source: M. H. Payne and R.
/// N. Hanek, "Radian Reduction for Trigonometric Functions", 1983.
SHARED_API doubledouble sin(const doubledouble& x);
SHARED_API doubledouble cos(const doubledouble& x);

/// Returns the angle of the point (x, y) in radians, from -pi to pi. Degenerate: zeros, with their
/// signs, and infinities give the angles that `std::atan2` gives for their heads.
SHARED_API doubledouble atan2(const doubledouble& y, const doubledouble& x);

}  // namespace shr
