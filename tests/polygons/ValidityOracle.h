// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Validity by comparing all with all, for polygons whose coordinates are small integers: every
/// number below is then exact in plain double arithmetic. Whether the inside is in one piece is
/// told by Euler's formula.
///
///     EXPECT_EQ(!FindFault(model), IsValidByBruteForce(model));

#pragma once

#include "shared/polygons/MultiPolygon.h"

namespace shr::test {

bool IsValidByBruteForce(const MultiPolygon2d& polygons);

/// The same for the rings as contours under the even-odd rule.
bool AreContoursValidByBruteForce(const MultiPolygon2d& polygons);

/// Returns the distance of a point from the nearest edge.
double DistanceToRing(const Ring2d& ring, const Vec2d& point);

}  // namespace shr::test
