// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The test of a point against one contour for processors with AVX2. Not installed.

#pragma once

#include <cstddef>

namespace shr {

enum class ContourAnswer { OUTSIDE, INSIDE, UNSURE };

/// Tells what `PointInPolygon` returns for one contour of `count` points, which are pairs of x and
/// y in `xy`; unsure when the point is all but on an edge. Runs only where `HasAvx2()` is true.
ContourAnswer IsInContourAvx2(double x, double y, const double* xy, std::size_t count);

}  // namespace shr
