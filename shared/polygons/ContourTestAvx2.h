// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The test of a point against one contour for processors with AVX2. Not installed.

#pragma once

#include <cstddef>

namespace shr {

/// Returns what `PointInPolygon` returns for one contour of `count` points, which are pairs of x
/// and y in `xy`. Runs only where `HasAvx2()` is true.
bool IsInContourAvx2(double x, double y, const double* xy, std::size_t count);

}  // namespace shr
