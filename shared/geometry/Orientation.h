// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The exact answer to the question on which side of a line a point lies.
///
///     int turn = OrientationSign(a, b, c);  // 1: left, -1: right, 0: exactly on one line
///
/// Threads: no state.

#pragma once

#include "shared/Export.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// Returns the sign of the signed area of the triangle a, b, c: 1 when it runs counter-clockwise in
/// a y-up frame, -1 when clockwise, 0 when the points lie on one line. Laws: cyclic exchange of the
/// points keeps the sign, exchanging two of them reverses it. Degenerate: 0 when a coordinate is
/// infinite or NaN. Error bound: none, as long as the coordinates along one axis that are not 0
/// differ in size by less than a factor of 2^400. Cost: a few operations, about 200 when the points
/// are nearly on one line. Source: J. R. Shewchuk, "Adaptive Precision Floating-Point Arithmetic
/// and Fast Robust Geometric Predicates", 1997.
SHARED_API int OrientationSign(const Vec2d& a, const Vec2d& b, const Vec2d& c);

}  // namespace shr
