// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Where the edges of the polygon clipper's contours meet. For the library's own use.
///
/// Points of contours that others meet, and crossings, are nodes. Each is known by a number: a
/// vertex by its own, a crossing by its place among the crossings plus the number of points of the
/// contours. Nodes that are one point have one root.
///
/// Threads: an object serves one call at a time.

#pragma once

#include "shared/polygons/clipper/GpcInput.h"
#include "shared/polygons/clipper/GpcTiles.h"

namespace shr::gpc {

/// A node that lies on an edge. `point` is the edge's own number for the node at its first point.
struct Occurrence {
  Index edge;
  Index point;
};

/// A node on the edge at hand, with its place along the edge.
struct PlacedPoint {
  double place;
  Index point;
};

struct Crossings {
  Buffer<std::uint8_t> isNode{L"node flag creation"};  ///< by vertex
  Buffer<Index> nodeVertices{L"node table creation"};  ///< vertices that are nodes
  Buffer<Vec2d> points{L"crossing creation"};
  Buffer<Index> parents{L"node table creation"};  ///< by node: its root, when all is in order
  Buffer<Occurrence> occurrences{L"crossing creation"};  ///< in the order of edges, along each
  bool hasMerged = false;                                ///< there are nodes that are one point
  bool isMoved = false;      ///< something would have to be moved by more than rounding
  bool isAbandoned = false;  ///< the search was broken off, as crowds belong to the grid

  Index Root(Index point) {
    while (parents[point] != point) {
      parents[point] = parents[parents[point]];
      point = parents[point];
    }
    return point;
  }
  /// Returns the place of a node.
  const Vec2d& PointOf(const Input& input, Index point) const {
    const Index vertices = input.points.Size();
    return point < vertices ? input.points[point] : points[point - vertices];
  }

  // What the stage works with.
  TileMemory tiles;
  Buffer<double> reaches{L"node table creation"};  ///< by root: the farthest merged point
  Buffer<Occurrence> unordered{L"crossing creation"};
  Buffer<PlacedPoint> placed{L"crossing creation"};
  Buffer<PlacedPoint> placedAside{L"crossing creation"};
  Buffer<Index> starts{L"edge table creation"};
};

/// What is nearer than this many snap distances to each other, vertices or a vertex and an edge, is
/// joined before the contours go to the grid, once, so that borders that differ by their last bits
/// only become one. The rest of what may move, up to two snap distances, belongs to the grid.
inline constexpr double JOIN_DISTANCE = 0.5;

/// Finds where edges meet. When something would have to be moved by more than rounding, `isMoved`
/// is set, crossings are left out and the occurrences are in no order.
void FindCrossings(const Input& input, Crossings& crossings);
/// Puts the nodes of each edge in order and merges neighbours that nearly coincide.
void OrderNodes(const Input& input, Crossings& crossings);
/// Makes contours in which vertices, and vertices and edges, that nearly coincide are joined.
/// Follows upon `FindCrossings`, whose occurrences it uses up.
void JoinVertices(const Input& input, Crossings& crossings, ContourTable& joined);
/// Marks the edges that come within some snap distances of another one, and perhaps more.
void FindActiveEdges(const Input& input, Crossings& crossings, Buffer<std::uint8_t>& isActive);

}  // namespace shr::gpc
