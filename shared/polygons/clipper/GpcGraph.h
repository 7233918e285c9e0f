// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The graph of the polygon clipper: nodes where contours meet and chains between them. For the
/// library's own use.
///
/// Threads: an object serves one call at a time.

#pragma once

#include "shared/polygons/clipper/GpcCrossings.h"

namespace shr::gpc {

/// The part of a contour between two nodes: `interiorCount` points from `firstInterior` on, which
/// run on at the first point of the contour behind its last.
struct Chain {
  Index from;
  Index to;
  Index firstInterior;
  Index interiorCount;
  Index contour;
};

/// Half edges: twice the chain's number for the one that leaves its `from`, one more for the one
/// that leaves its `to`.
using Half = std::uint32_t;

/// Two half edges of one node whose chains coincide; the second one's chain stays for both.
struct Merger {
  Half merged;
  Half kept;
};

/// Marks a chain that another one with the same course stands for.
inline constexpr Operands MERGED = 0x80;

/// A half edge at the node at hand: the vector to its first point beyond.
struct Spoke {
  Vec2d vector;
  Half half;
  Index quadrant;
};

struct Graph {
  Buffer<Index> nodeOfPoint{L"node table creation"};  ///< by the numbers of nodes in `Crossings`
  Buffer<Vec2d> nodePoints{L"node creation"};
  Buffer<Chain> chains{L"edge table creation"};
  Buffer<Operands> parities{
      L"edge table creation"};  ///< by chain: of which operands it is a border
  Buffer<Index> chainStarts{L"edge table creation"};      ///< by contour: its first chain
  Buffer<std::uint8_t> hasNodes{L"edge table creation"};  ///< by contour
  Buffer<Index> nodeStarts{L"node table creation"};       ///< by node: its first slot
  Buffer<Index> nodeEnds{L"node table creation"};
  Buffer<Half> slots{L"edge table creation"};  ///< half edges, counter-clockwise a node
  Buffer<Index> slotOfHalf{L"edge table creation"};
  Buffer<Merger> mergers{L"edge table creation"};  ///< in the order in which they arose

  // What the stage works with.
  Buffer<Spoke> spokes{L"node creation"};

  /// Returns the node that a half edge leaves.
  Index NodeOf(Half half) const {
    const Chain& chain = chains[half / 2];
    return half % 2 == 0 ? chain.from : chain.to;
  }
  /// Returns the first point of a half edge beyond its node.
  Vec2d FarPoint(const Input& input, Half half) const {
    const Chain& chain = chains[half / 2];
    if (chain.interiorCount == 0) return nodePoints[half % 2 == 0 ? chain.to : chain.from];
    if (half % 2 == 0) return input.points[chain.firstInterior];
    const Contour& contour = input.contours[chain.contour];
    Index last = chain.firstInterior + chain.interiorCount - 1;
    if (last >= contour.End()) last -= contour.count;
    return input.points[last];
  }
};

/// How edges may lie that meet in a node: `Rounded` ones only as far apart as rounding needs,
/// `Exact` ones anyhow, since they meet nowhere else.
enum class Meeting { Rounded, Exact };

/// Makes chains and nodes with their half edges in order. Returns false when edges nearly meet that
/// are not joined; never so for exact meetings.
///
/// Promised to later stages when it returns true: drawn with straight lines between their points,
/// chains meet each other and themselves in nodes only, and nowhere else do they touch; no two
/// nodes are in one place; the half edges in the slots of a node turn counter-clockwise in exact
/// order (`OrientationSign` of their points agrees), beginning at the direction of x; no two of
/// them have the same direction, as chains that coincided have become one.
bool BuildGraph(const Input& input, const Crossings& crossings, Meeting meeting, Graph& graph);
/// Returns the chain that a vertex of a contour which is no node lies on.
Index FindChain(const Input& input, const Graph& graph, Index contourIndex, Index vertex);

}  // namespace shr::gpc
