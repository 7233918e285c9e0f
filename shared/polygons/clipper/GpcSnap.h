// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The clipper's snap rounding, and what it keeps from call to call. For the library's own use. The
/// idea is at the top of GpcSnap.cpp.
///
/// Threads: a memory serves one call at a time.

#pragma once

#include "shared/polygons/clipper/GpcCrossings.h"
#include "shared/polygons/clipper/GpcPixelTree.h"
#include "shared/polygons/clipper/GpcStripSearch.h"

namespace shr::gpc {

struct RoundedEnd {
  GridPoint point;
  Index vertex;
};

struct EdgeKey {
  Index left;
  Index right;
  Index edge;
};

/// A hot pixel that an edge passes by.
struct EdgeNeighbor {
  Index edge;
  Index pixel;
};

/// A piece of an edge between two hot pixels, and one beside it.
struct Triple {
  Index from;
  Index to;
  Index pixel;
};

struct SnapMemory {
  Buffer<RoundedEnd> ends{L"vertex creation"};
  Buffer<Index> pixelOfVertex{L"vertex creation"};  ///< NONE for a vertex without active edges
  Buffer<GridPoint> pixels{L"node creation"};
  Buffer<Vec2d> places{L"node creation"};          ///< by pixel: where what passes it is led
  Buffer<std::uint8_t> isAlone{L"node creation"};  ///< by pixel: keeps the bits of its vertex
  Buffer<EdgeKey> edgeKeys{L"edge table creation"};
  Buffer<GridEdge> edges{L"edge table creation"};
  Buffer<Index> gridEdgeOf{L"edge table creation"};  ///< by edge
  Buffer<GridPoint> crossings{L"crossing creation"};
  Buffer<Index> stops{L"crossing creation"};  ///< by edge: the pixels that it passes, in order
  Buffer<Index> stopStarts{L"crossing creation"};
  Buffer<EdgeNeighbor> neighbors{L"crossing creation"};
  Buffer<Triple> triples{L"crossing creation"};
  Buffer<Index> nextPixels{L"vertex creation"};  ///< by vertex of the new contours
  Buffer<Index> visits{L"node creation"};
  Buffer<Index> firstVertices{L"node creation"};
  StripMemory strips;
  PixelTree tree;
};

/// Makes contours, given the edges to be rounded, that meet in common vertices only, and fills the
/// nodes and occurrences of these.
void SnapContours(const Input& input, const Buffer<std::uint8_t>& isActive, SnapMemory& memory,
                  ContourTable& snapped, Crossings& crossings);

}  // namespace shr::gpc
