// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the stages of the polygon clipper hand on to each other. For the library's own use; the
/// public face is shared/polygons/Gpc.h, the idea of the whole is at the top of Gpc.cpp.
///
/// Threads: a workspace serves one call at a time.

#pragma once

#include <cstdint>
#include <span>

#include "shared/polygons/clipper/GpcBuffer.h"
#include "shared/polygons/clipper/GpcSnap.h"

namespace shr::gpc {

/// Which operands something belongs to or lies inside: a sum of the two bits below.
using Operands = std::uint8_t;
inline constexpr Operands SUBJECT = 1;
inline constexpr Operands CLIP = 2;

/// What is inside an operand.
enum class Rule : std::uint8_t {
  EvenOdd,   ///< an odd number of contours, counting a contour once for each time around
  NonZero,   ///< a winding number other than 0
  Positive,  ///< a winding number above 0, as inside a counter-clockwise contour in a y-up frame
  Negative,
  Polygons,  ///< at least one polygon, in which the even-odd rule holds
  Nests,     ///< as `EvenOdd`; beside it the contours are found that lie around each polygon
};

/// The contours of an operand. `polygons` has the number of the polygon that each belongs to; it
/// is looked at by the rule of polygons only.
struct Operand {
  std::span<const GpcContour> contours;
  std::span<const Index> polygons;
};
/// Marks a chain that another one with the same course stands for.
inline constexpr Operands MERGED = 0x80;

/// A closed walk over `count` points, which lie in the points from `first` on. The first is
/// repeated at `first + count`, so that edge i runs from point i to point i + 1 for every i.
struct Contour {
  Index first;
  Index count;
  Index lowest;   ///< the point of least y, of several the one of least x
  Index polygon;  ///< by the rule of polygons: its number among those of both operands
  Operands operand;
};

/// A run of successive edges that turn by less than a right angle each and go one way along an
/// axis: they cross each other nowhere.
struct Section {
  Box box;
  Index firstEdge;
  Index contour;
  std::uint16_t edgeCount;
  std::uint8_t directions;     ///< the ways all edges go, as bits of `Direction`
  std::uint8_t turnsSmoothly;  ///< the next section begins with a turn of less than a right angle
};

enum Direction : std::uint8_t { TO_RIGHT = 1, TO_LEFT = 2, UPWARD = 4, DOWNWARD = 8 };

/// A section, or the part of it inside a tile, by its box.
struct Element {
  Box box;
  Index section;
  Index firstEdge;
  Index edgeCount;
};

/// What an element covers across a direction.
struct Interval {
  double low;
  double high;
  Index element;
};

/// A node that lies on an edge. `point` is the edge's own number for the node at its first point.
struct Occurrence {
  Index edge;
  Index point;
};

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

/// A node on the edge at hand, with its place along the edge.
struct PlacedPoint {
  double place;
  Index point;
};

/// Two half edges of one node whose chains coincide; the second one's chain stays for both.
struct Merger {
  Half merged;
  Half kept;
};

/// A link of a list of half edges that run as the first half edge of the chain that stays for them.
struct MergedEntry {
  Half half;
  Index next;
};

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

/// A contour of the result: points of `gathered`, of which `top` is the highest, of several the
/// leftmost.
struct ResultContour {
  Index first;
  Index count;
  Index top;
  Index side;   ///< the side of a chain on which the result is, see `SideOfLoop`
  Index owner;  ///< of a hole, the number of its outer contour; of others their own
  bool isHole;
};

/// What is nearer than this many snap distances to each other, vertices or a vertex and an edge, is
/// joined before the contours go to the grid, once, so that borders that differ by their last bits
/// only become one. The rest of what may move, up to two snap distances, belongs to the grid.
inline constexpr double JOIN_DISTANCE = 0.5;

struct Workspace {
  // The contours of both operands.
  Rule rule = Rule::EvenOdd;
  Index polygonCount = 0;                    ///< by the rule of polygons
  Buffer<Vec2d> points{L"vertex creation"};  ///< vertices of contours, then crossings
  Buffer<Contour> contours{L"contour table creation"};
  Buffer<Vec2d> nextPoints{L"vertex creation"};
  Buffer<Contour> nextContours{L"contour table creation"};
  Index vertexCount = 0;  ///< points that belong to contours
  double tolerance = 0.0;
  double largest = 0.0;  ///< largest coordinate by absolute value
  double unscale = 1.0;  ///< factor from stored coordinates to those of the operands

  // Sections and tiles.
  Buffer<Section> sections{L"section table creation"};
  Buffer<Element> elements{L"tile creation"};
  Buffer<Index> cellStarts{L"tile creation"};
  Buffer<Index> cellSections{L"tile creation"};
  Buffer<Interval> intervals{L"tile creation"};

  // Nodes.
  Buffer<std::uint8_t> isNode{L"node flag creation"};  ///< by vertex
  Buffer<Index> parents{L"node table creation"};       ///< by point: a forest of merged points
  Buffer<double> reaches{L"node table creation"};      ///< by root: the farthest merged point
  Buffer<Index> nodeVertices{L"node table creation"};  ///< vertices that are nodes
  Buffer<Occurrence> occurrences{L"crossing creation"};
  Buffer<Occurrence> unordered{L"crossing creation"};
  Buffer<PlacedPoint> placed{L"crossing creation"};
  Buffer<PlacedPoint> placedAside{L"crossing creation"};
  Buffer<Index> edgeStarts{L"edge table creation"};
  bool isMoved = false;  ///< something would have to be moved by more than rounding
  Buffer<std::uint8_t> isActive{L"edge table creation"};  ///< by edge: goes to the grid

  // The grid.
  SnapMemory snap;
  bool isExact = false;  ///< the contours meet in common vertices only

  // The graph.
  Buffer<Index> nodeOfPoint{L"node table creation"};
  Buffer<Vec2d> nodePoints{L"node creation"};
  Buffer<Chain> chains{L"edge table creation"};
  Buffer<Operands> parities{
      L"edge table creation"};  ///< by chain: of which operands it is a border
  Buffer<Index> chainStarts{L"edge table creation"};      ///< by contour: its first chain
  Buffer<std::uint8_t> hasNodes{L"edge table creation"};  ///< by contour
  Buffer<Index> nodeStarts{L"node table creation"};       ///< by node: its first slot
  Buffer<Index> nodeEnds{L"node table creation"};
  Buffer<Merger> mergers{L"edge table creation"};  ///< in the order in which they arose
  Buffer<Half> slots{L"edge table creation"};      ///< half edges, counter-clockwise a node
  Buffer<Index> slotOfHalf{L"edge table creation"};

  // Labels.
  Buffer<Sides> sides{L"label creation"};           ///< by chain
  Buffer<Operands> loopInsides{L"label creation"};  ///< by contour without nodes
  Buffer<Operands> loopOutsides{L"label creation"};
  Buffer<std::uint8_t> isVisited{L"label creation"};  ///< by node
  Buffer<Index> lowestFirst{L"label creation"};  ///< contours in the order of their lowest points
  Buffer<Index> stack{L"label creation"};
  Buffer<Visit> visits{L"label creation"};
  Buffer<Index> slabStarts{L"index creation"};
  Buffer<Index> slabSections{L"index creation"};
  Buffer<Place> parts{L"label creation"};         ///< in the order of their lowest points
  Buffer<std::uint8_t> isOdd{L"label creation"};  ///< by polygon
  Buffer<Nest> nests{L"label creation"};          ///< by polygon
  std::span<const double> nestSizes;              ///< by polygon
  Buffer<Index> mergedLists{L"label creation"};   ///< by chain, if there are mergers
  Buffer<MergedEntry> mergedEntries{L"label creation"};
  Buffer<Half> keptHalves{L"label creation"};  ///< by half edge

  // Results.
  Buffer<std::uint8_t> isBorder{L"result table creation"};  ///< by chain: not yet traced
  Buffer<Index> nodeMarks{L"result table creation"};
  Buffer<Half> path{L"result table creation"};
  Buffer<Vec2d> gathered{L"vertex list creation"};
  Buffer<ResultContour> resultContours{L"contour creation"};
  Buffer<Index> faces{L"face creation"};  ///< by side: a forest of sides of one face of the result

  /// Returns the first point of a half edge beyond its node.
  Vec2d GetFarPoint(Half half) const {
    const Chain& chain = chains[half / 2];
    if (chain.interiorCount == 0) return nodePoints[half % 2 == 0 ? chain.to : chain.from];
    if (half % 2 == 0) return points[chain.firstInterior];
    const Contour& contour = contours[chain.contour];
    Index last = chain.firstInterior + chain.interiorCount - 1;
    if (last >= contour.first + contour.count) last -= contour.count;
    return points[last];
  }

  Index Root(Index point) {
    while (parents[point] != point) {
      parents[point] = parents[parents[point]];
      point = parents[point];
    }
    return point;
  }
};

// The stages, in order.

/// Fills the workspace with the contours of both operands, without repeated points and without what
/// cannot matter to the operation; sets scale and tolerance.
void LoadPolygons(Workspace& work, gpc_op operation, Rule rule, const Operand& subject,
                  const Operand& clip);
/// Cuts the contours into sections.
void BuildSections(Workspace& work);
/// Finds where edges meet: fills the nodes and the occurrences. When something would have to be
/// moved by more than rounding, `isMoved` is set and crossings are left out.
void FindCrossings(Workspace& work);
/// Joins vertices, and vertices with edges, that nearly coincide. Follows upon `FindCrossings`.
void JoinVertices(Workspace& work);
/// Marks the edges that come within some snap distances of another one, and perhaps more.
void FindActiveEdges(Workspace& work);
/// Replaces the contours, given the active edges, by ones that meet in common vertices only and
/// fills the nodes and the occurrences.
void SnapContours(Workspace& work);
/// Makes chains and nodes with their half edges in order. Returns false when points or edges nearly
/// meet that are not joined; never so after `SnapContours`.
///
/// Promised to later stages when it returns true: drawn with straight lines between their points,
/// chains meet each other and themselves in nodes only, and nowhere else do they touch; no two
/// nodes are in one place; the half edges in the slots of a node turn counter-clockwise in exact
/// order (`OrientationSign` of their points agrees), beginning at the direction of x; no two of
/// them have the same direction, as chains that coincided have become one.
bool BuildGraph(Workspace& work);
/// Returns the chain that a vertex of a contour which is no node lies on.
Index FindChain(const Workspace& work, Index contourIndex, Index vertex);
/// Finds what lies on either side of every chain and inside every contour without nodes. Returns
/// false when the answers contradict each other.
bool FindLabels(Workspace& work);
/// Traces the contours of the result.
void TraceContours(Workspace& work, gpc_op operation);
/// Finds the outer contour of each hole of the result.
void FindOwners(Workspace& work, gpc_op operation);

/// Whether a place is in the result, by the operands it is inside.
struct Membership {
  /// Errors: `GPCException` for an unknown operation.
  explicit Membership(gpc_op operation);
  bool operator[](Operands operands) const { return isIn[operands]; }
  bool isIn[4];
};

/// The sides of chains have the numbers of the half edges that they are on the left of. Behind them
/// come those of contours without nodes.
inline Index SideOfLoop(const Workspace& work, Index contour, bool isInside) {
  return 2 * work.chains.Size() + 2 * contour + (isInside ? 1 : 0);
}

}  // namespace shr::gpc
