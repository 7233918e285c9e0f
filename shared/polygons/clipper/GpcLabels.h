// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What lies on either side of each chain of the polygon clipper's graph. For the library's own
/// use.
///
/// Threads: an object serves one call at a time.

#pragma once

#include "shared/polygons/clipper/GpcGraph.h"
#include "shared/polygons/clipper/GpcSlabs.h"

namespace shr::gpc {

/// What lies around a polygon, itself included: how many, and a number that stands for the set.
struct Nest {
  std::uint64_t set = 0;
  Index depth = 0;
};

/// Returns what the polygon of a number adds to the number of a set by exclusive or (the finisher
/// of G. L. Steele, D. Lea and C. H. Flood, "Fast Splittable Pseudorandom Number Generators",
/// 2014).
inline std::uint64_t BitsOf(Index polygon) {
  std::uint64_t bits = (polygon + std::uint64_t{1}) * 0x9E3779B97F4A7C15u;
  bits = (bits ^ bits >> 30) * 0xBF58476D1CE4E5B9u;
  bits = (bits ^ bits >> 27) * 0x94D049BB133111EBu;
  return bits ^ bits >> 31;
}

/// What lies on the two sides of a chain: twice two bits of `Operands`.
using Sides = std::uint8_t;
inline Sides MakeSides(Operands left, Operands right) {
  return static_cast<Sides>(left | right << 2);
}
inline Operands LeftOf(Sides sides) {
  return sides & 3;
}
inline Operands RightOf(Sides sides) {
  return sides >> 2;
}

/// The sides of chains have the numbers of the half edges that they are on the left of. Behind them
/// come those of contours without nodes.
inline Index SideOfLoop(const Graph& graph, Index contour, bool isInside) {
  return 2 * graph.chains.Size() + 2 * contour + (isInside ? 1 : 0);
}

/// A node on the way through a connected part: the half edges that are still to be passed.
struct Visit {
  Index node;
  Index slot;
  Index remaining;
};

/// A connected part: the contour with its lowest point, and a side of it that looks outward.
struct Place {
  Index contour;
  Index side;
};

/// A link of a list of half edges that run as the first half edge of the chain that stays for them.
struct MergedEntry {
  Half half;
  Index next;
};

/// A contour that lies below the place at hand, and the turns it has been counted with.
struct PassedContour {
  Index contour;
  int turns;
};

/// A polygon whose edge was passed, and whether the place before was inside of it.
struct PassedPolygon {
  Index polygon;
  std::uint8_t wasOdd;
};

struct Labels {
  Buffer<Sides> sides{L"label creation"};           ///< by chain
  Buffer<Operands> loopInsides{L"label creation"};  ///< by contour without nodes
  Buffer<Operands> loopOutsides{L"label creation"};
  Buffer<Place> parts{L"label creation"};  ///< in the order of their lowest points
  Buffer<Nest> nests{L"label creation"};   ///< by polygon
  SlabIndex slabs;                         ///< built where there is more than one part

  // What the stage works with.
  Buffer<std::uint8_t> isVisited{L"label creation"};  ///< by node
  Buffer<Index> lowestFirst{L"label creation"};  ///< contours in the order of their lowest points
  Buffer<Visit> visits{L"label creation"};
  Buffer<PassedContour> passedContours{L"label creation"};
  Buffer<PassedPolygon> passedPolygons{L"label creation"};
  Buffer<Index> insidePolygons{L"label creation"};
  Buffer<std::uint8_t> isOdd{L"label creation"};  ///< by polygon
  Buffer<Index> mergedLists{L"label creation"};   ///< by chain, if there are mergers
  Buffer<MergedEntry> mergedEntries{L"label creation"};
  Buffer<Half> keptHalves{L"label creation"};  ///< by half edge
};

/// Finds what lies on either side of every chain and inside every contour without nodes. Returns
/// false when the answers contradict each other. `nestSizes` has the size of each polygon for the
/// rule of nests, see `FindNests`.
bool FindLabels(const Input& input, const Crossings& crossings, const Graph& graph,
                std::span<const double> nestSizes, Labels& labels);

}  // namespace shr::gpc
