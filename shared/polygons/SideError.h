// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// When rounded products decide on which side of an edge a point lies, for the tests of one edge
/// and of four. Not installed.

#pragma once

namespace shr {

/// A difference of two products of differences has the right sign if it is larger than the sum of
/// the products times the first of these plus the second, which covers products that underflow.
/// The first is (3 + 16 u) u with u = 2^-53. (The bound is one of the sum of the magnitudes; where
/// the signs of the products are not the same, nothing cancels and the sign is right anyway.)
/// Source: J. R. Shewchuk, see shared/geometry/Orientation.cpp.
inline constexpr double SIDE_ERROR_FACTOR = 3.3306690738754716e-16;
inline constexpr double SIDE_ERROR_OF_UNDERFLOW = 1e-300;

}  // namespace shr
