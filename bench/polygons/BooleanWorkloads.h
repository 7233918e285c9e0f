// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The inputs of the benchmark of boolean operations.

#pragma once

#include <cstddef>
#include <vector>

#include "bench/polygons/BooleanContender.h"

namespace shr::bench {

/// Two stars of n vertices around one center, every vertex at a random radius: needles that cross
/// each other along the whole ring, and about n edges at every height.
BooleanWork MakeRoughStars(std::size_t size);
/// Two coast lines of n vertices with bays and a jitter of half an edge length, one beside the
/// other, which cross in few places.
BooleanWork MakeSmoothStars(std::size_t size);
/// k x k squares against the same shifted, so that each overlaps four others.
BooleanWork MakeGrids(std::size_t size);
/// The same, one turned to the left, one to the right.
BooleanWork MakeTurnedGrids(std::size_t size);
/// n teeth against the same on their side: 4 n^2 crossings.
BooleanWork MakeCombs(std::size_t size);

/// The countries of the world at 1:50 million, each with its islands and holes, as the subject of a
/// work without a clip.
const std::vector<BooleanWork>& Countries();
/// All countries as one subject.
BooleanWork MakeWorld();
/// Every country with every cell of a grid of 10 degrees that its bounds touch.
std::vector<BooleanWork> MakeCountryCells();

}  // namespace shr::bench
