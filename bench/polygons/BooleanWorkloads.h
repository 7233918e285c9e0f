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

/// Two polygons of n vertices at random radii around centers that lie near each other.
BooleanWork MakePolygons(std::size_t size);
/// A thousand such pairs.
std::vector<BooleanWork> MakeManyPolygons(std::size_t size);
/// n triangles around a point against the same turned by half a step: all meet in that point.
BooleanWork MakeSpokes(std::size_t size);
/// Two contours of n / 2 long edges each that cross, but for rounding, in one point.
BooleanWork MakePencils(std::size_t size);
/// n quadrilaterals in one place whose edges differ by angles of about 1e-6, and a square across.
/// They overlap.
BooleanWork MakeQuads(std::size_t size);
/// n needles side by side, 1e-12 wide, and a square that they cross. They overlap.
BooleanWork MakeNeedlesAndSquare(std::size_t size);
/// n quadrilaterals, 1 x 0.01, moved by up to 1e-6, as roads mapped many times, and a square
/// across. They overlap.
BooleanWork MakeBundles(std::size_t size);
/// n circles of 32 edges, scattered in a map so that they cover it about three times, as a subject.
BooleanWork MakeCircles(std::size_t size);
/// A coast line with bays of n vertices, as a subject.
BooleanWork MakeCoastLine(std::size_t size);

/// About n cells side by side, as counties: neighbours share a ragged border of 16 edges to the
/// bit. As a subject.
BooleanWork MakeCounties(std::size_t size);
/// Each of about n such cells with every square of a grid, about as large as they, that its bounds
/// touch.
std::vector<BooleanWork> MakeCountiesByGrid(std::size_t size);

/// The countries of the world at 1:50 million, each with its islands and holes, as the subject of a
/// work without a clip.
const std::vector<BooleanWork>& Countries();
/// All countries as one subject. There is one size.
BooleanWork MakeWorld(std::size_t size);
/// Every country with every cell of a grid of 10 degrees that its bounds touch. There is one size.
std::vector<BooleanWork> MakeCountryCells(std::size_t size);

}  // namespace shr::bench
