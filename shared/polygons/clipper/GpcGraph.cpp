// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Third stage: the contours become a graph. What lies between two nodes is a chain, and most chains
// of a real border hold many points, which are not looked at again before the result is written.
// Around each node its half edges are put in order by exact orientation. Chains that coincide
// become one that is a border of an operand when an odd number of them was. One that is no longer a
// border of any stays in the graph and connects its nodes.
//
// The graph is drawn without further crossings when no two neighbours around a node come within the
// tolerance of each other at their ends: edges that have no node in common were farther apart than
// the tolerance, which exceeds twice the rounding of a node, and edges that have one diverge
// from it. Where that test fails, or where something would have to be moved by more than rounding,
// the contours go to the grid; behind it nothing is left to test.

#include "shared/polygons/clipper/GpcGraph.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "shared/geometry/Orientation.h"

namespace shr::gpc {
namespace {

/// Up to so many half edges of a node are sorted by insertion.
constexpr Index FEW = 24;

// Chains.

void NumberNodes(const Input& input, const Crossings& crossings, Graph& graph) {
  const Index vertices = input.points.Size();
  const Index points = vertices + crossings.points.Size();
  graph.nodeOfPoint.Resize(points);
  graph.nodePoints.Clear();
  const auto forEachPoint = [&](const auto& handle) {
    for (const Index vertex : crossings.nodeVertices) handle(vertex, input.points[vertex]);
    for (Index i = vertices; i < points; ++i) handle(i, crossings.points[i - vertices]);
  };
  forEachPoint([&](Index point, const Vec2d& place) {
    if (crossings.parents[point] != point) return;
    graph.nodeOfPoint[point] = graph.nodePoints.Size();
    graph.nodePoints.Append(place);
  });
  if (!crossings.hasMerged) return;
  forEachPoint([&](Index point, const Vec2d&) {
    graph.nodeOfPoint[point] = graph.nodeOfPoint[crossings.parents[point]];
  });
}

/// Returns the end of the interior points that precede an occurrence.
Index EndOfInterior(const Occurrence& occurrence) {
  return occurrence.point == occurrence.edge ? occurrence.edge : occurrence.edge + 1;
}

void AppendChains(const Input& input, const Crossings& crossings, Index contourIndex, Index first,
                  Index end, Graph& graph) {
  const Contour& contour = input.contours[contourIndex];
  Index from = graph.nodeOfPoint[crossings.occurrences[first].point];
  for (Index i = first; i < (contour.IsLine() ? end - 1 : end); ++i) {
    const Occurrence& occurrence = crossings.occurrences[i];
    const bool wraps = i + 1 == end;
    const Occurrence& next = crossings.occurrences[wraps ? first : i + 1];
    const Index to = graph.nodeOfPoint[next.point];
    const Index start = occurrence.edge + 1;
    const Index interior = EndOfInterior(next) + (wraps ? contour.count : 0) - start;
    if (from != to || interior != 0) {
      graph.chains.Append({from, to, contour.VertexAt(start), interior, contourIndex});
      graph.parities.Append(contour.operand);
    }
    from = to;
  }
}

void BuildChains(const Input& input, const Crossings& crossings, Graph& graph) {
  graph.chains.Clear();
  graph.parities.Clear();
  graph.chainStarts.Resize(input.contours.Size() + 1);
  graph.hasNodes.Resize(input.contours.Size());
  Index next = 0;
  for (Index i = 0; i < input.contours.Size(); ++i) {
    graph.chainStarts[i] = graph.chains.Size();
    const Index contourEnd = input.contours[i].End() + 1;
    const Index first = next;
    while (next < crossings.occurrences.Size() && crossings.occurrences[next].edge < contourEnd)
      ++next;
    graph.hasNodes[i] = next != first;
    if (next != first) AppendChains(input, crossings, i, first, next, graph);
  }
  graph.chainStarts[input.contours.Size()] = graph.chains.Size();
}

// Nodes.

/// Returns the number of the quarter turn from the direction of x on that holds a vector.
Index GetQuadrant(const Vec2d& vector) {
  if (vector.y >= 0.0 && vector.x > 0.0) return 0;
  if (vector.x <= 0.0 && vector.y > 0.0) return 1;
  return vector.x < 0.0 ? 2 : 3;
}

class NodeBuilder {
public:
  NodeBuilder(const Input& input, Meeting meeting, Graph& graph)
      : input_(input), meeting_(meeting), graph_(graph), spokes_(graph.spokes) {}

  /// Returns false when half edges nearly coincide.
  bool Run() {
    CollectSlots();
    graph_.mergers.Clear();
    graph_.slotOfHalf.Resize(2 * graph_.chains.Size());
    for (Index node = 0; node < graph_.nodePoints.Size(); ++node) {
      if (!OrderNode(node)) return false;
    }
    if (hasJoined_) DropMerged();
    return true;
  }

private:
  void CollectSlots() {
    const Index nodes = graph_.nodePoints.Size();
    const Index chains = graph_.chains.Size();
    graph_.nodeStarts.Fill(nodes + 1, 0);
    graph_.nodeEnds.Resize(nodes);
    for (const Chain& chain : graph_.chains) {
      ++graph_.nodeStarts[chain.from];
      ++graph_.nodeStarts[chain.to];
    }
    Index sum = 0;
    for (Index i = 0; i < nodes; ++i) {
      const Index count = graph_.nodeStarts[i];
      graph_.nodeStarts[i] = graph_.nodeEnds[i] = sum;
      sum += count;
    }
    graph_.nodeStarts[nodes] = sum;
    graph_.slots.Resize(sum);
    for (Index i = 0; i < chains; ++i) {
      const Chain& chain = graph_.chains[i];
      graph_.slots[graph_.nodeEnds[chain.from]++] = 2 * i;
      graph_.slots[graph_.nodeEnds[chain.to]++] = 2 * i + 1;
    }
  }

  bool OrderNode(Index node) {
    const Vec2d center = graph_.nodePoints[node];
    const Index start = graph_.nodeStarts[node];
    if (graph_.nodeEnds[node] - start == 4 && OrderPlainCrossing(center, start)) return true;
    Index count = 0;
    spokes_.Resize(graph_.nodeEnds[node] - start);
    for (Index slot = start; slot < graph_.nodeEnds[node]; ++slot) {
      const Half half = graph_.slots[slot];
      if (graph_.parities[half / 2] == MERGED) continue;
      const Vec2d vector = graph_.FarPoint(input_, half) - center;
      spokes_[count++] = {vector, half, GetQuadrant(vector)};
    }
    Sort(center, count);
    if (!JoinCoincident(count)) return false;
    for (Index i = 0; i < count; ++i) SetSlot(start + i, spokes_[i].half);
    graph_.nodeEnds[node] = start + count;
    return true;
  }

  /// Orders the four half edges of two ways that cross and are far from each other, given each way
  /// after the other. Returns false, with nothing done, for any other four. Signs are looked up, as
  /// no branch upon one could be foretold.
  bool OrderPlainCrossing(const Vec2d& center, Index start) {
    const Half halves[4] = {graph_.slots[start], graph_.slots[start + 1], graph_.slots[start + 2],
                            graph_.slots[start + 3]};
    Vec2d vectors[4];
    double longest = 0.0;
    for (Index i = 0; i < 4; ++i) {
      if (hasJoined_ && graph_.parities[halves[i] / 2] == MERGED) return false;
      vectors[i] = graph_.FarPoint(input_, halves[i]) - center;
      longest = std::max(longest, Length1(vectors[i]));
    }
    const double limit = 2.0 * input_.tolerance * longest;
    const double turn = vectors[0].Cross(vectors[2]);
    const double sign = turn < 0.0 ? -1.0 : 1.0;
    const double least = std::min(
        std::min(sign * turn, sign * vectors[2].Cross(vectors[1])),
        std::min(sign * vectors[1].Cross(vectors[3]), sign * vectors[3].Cross(vectors[0])));
    if (!(least > limit)) return false;
    // Counter-clockwise, from the first one.
    static constexpr Index ORDER[2][4] = {{0, 2, 1, 3}, {0, 3, 1, 2}};
    const Index* order = ORDER[static_cast<int>(turn < 0.0)];
    Index upper = 0;
    for (Index i = 0; i < 4; ++i) upper |= IsUpper(vectors[order[i]]) << i;
    // The first of the upper ones, by which of them are upper.
    static constexpr Index FIRST[16] = {0, 0, 1, 0, 2, 0, 1, 0, 3, 3, 1, 3, 2, 2, 1, 0};
    const Index first = FIRST[upper];
    for (Index i = 0; i < 4; ++i) SetSlot(start + i, halves[order[(first + i) % 4]]);
    return true;
  }

  /// Returns 1 for a vector in the half turn that begins at the direction of x.
  static Index IsUpper(const Vec2d& vector) {
    return static_cast<Index>(vector.y > 0.0) |
           (static_cast<Index>(vector.y == 0.0) & static_cast<Index>(vector.x > 0.0));
  }

  void Sort(const Vec2d& center, Index count) {
    const auto isBefore = [&](const Spoke& a, const Spoke& b) {
      if (a.quadrant != b.quadrant) return a.quadrant < b.quadrant;
      if (IsSame(a.vector, b.vector) && Coincide(a.half, b.half)) return a.half < b.half;
      const int turn = Turn(center, a, b);
      return turn != 0 ? turn > 0 : a.half < b.half;
    };
    if (count > FEW) {
      std::sort(spokes_.begin(), spokes_.begin() + count, isBefore);
      return;
    }
    for (Index i = 1; i < count; ++i) {
      const Spoke spoke = spokes_[i];
      Index j = i;
      for (; j > 0 && isBefore(spoke, spokes_[j - 1]); --j) spokes_[j] = spokes_[j - 1];
      spokes_[j] = spoke;
    }
  }

  int Turn(const Vec2d& center, const Spoke& a, const Spoke& b) const {
    const double left = a.vector.x * b.vector.y;
    const double right = a.vector.y * b.vector.x;
    const double limit = 4.0 * DBL_EPSILON * (std::abs(left) + std::abs(right));
    if (left - right > limit) return 1;
    if (right - left > limit) return -1;
    return OrientationSign(center, graph_.FarPoint(input_, a.half),
                           graph_.FarPoint(input_, b.half));
  }

  /// Makes one of half edges that coincide. Returns false when neighbours nearly do.
  bool JoinCoincident(Index& count) {
    bool joined = false;
    for (Index i = 0; i < count; ++i) {
      const Index next = i + 1 == count ? 0 : i + 1;
      if (next == i) break;
      Spoke& a = spokes_[i];
      Spoke& b = spokes_[next];
      if (!(a.vector.Dot(b.vector) > 0.0)) continue;
      const double limit = input_.tolerance * std::max(Length1(a.vector), Length1(b.vector));
      if (std::abs(a.vector.Cross(b.vector)) > limit) continue;
      if (!Coincide(a.half, b.half)) {
        if (meeting_ == Meeting::Exact) continue;
        return false;
      }
      if (next < i) continue;
      // The parity wanders to the last of the group.
      graph_.mergers.Append({a.half, b.half});
      graph_.parities[b.half / 2] ^= graph_.parities[a.half / 2];
      graph_.parities[a.half / 2] = MERGED;
      joined = true;
    }
    if (!joined) return true;
    hasJoined_ = true;
    Index kept = 0;
    for (Index i = 0; i < count; ++i) {
      if (graph_.parities[spokes_[i].half / 2] != MERGED) spokes_[kept++] = spokes_[i];
    }
    count = kept;
    return true;
  }

  bool Coincide(Half a, Half b) const {
    return graph_.chains[a / 2].interiorCount == 0 && graph_.chains[b / 2].interiorCount == 0 &&
           graph_.NodeOf(a ^ 1) == graph_.NodeOf(b ^ 1);
  }

  void SetSlot(Index slot, Half half) {
    graph_.slots[slot] = half;
    graph_.slotOfHalf[half] = slot;
  }

  /// Leaves out chains that were merged after their other end was done.
  void DropMerged() {
    for (Index node = 0; node < graph_.nodePoints.Size(); ++node) {
      Index end = graph_.nodeStarts[node];
      for (Index slot = end; slot < graph_.nodeEnds[node]; ++slot) {
        const Half half = graph_.slots[slot];
        if (graph_.parities[half / 2] == MERGED) continue;
        SetSlot(end++, half);
      }
      graph_.nodeEnds[node] = end;
    }
  }

  const Input& input_;
  const Meeting meeting_;
  Graph& graph_;
  Buffer<Spoke>& spokes_;
  bool hasJoined_ = false;
};

}  // namespace

bool BuildGraph(const Input& input, const Crossings& crossings, Meeting meeting, Graph& graph) {
  NumberNodes(input, crossings, graph);
  BuildChains(input, crossings, graph);
  return NodeBuilder(input, meeting, graph).Run();
}

Index FindChain(const Input& input, const Graph& graph, Index contourIndex, Index vertex) {
  const Contour& contour = input.contours[contourIndex];
  const Chain* first = graph.chains.Data() + graph.chainStarts[contourIndex];
  const Chain* last = graph.chains.Data() + graph.chainStarts[contourIndex + 1] - 1;
  // The interior of a chain that begins on the last edge begins with the contour's first point.
  const auto isBehind = [&contour](Index v, const Chain& chain) {
    return chain.firstInterior == contour.first || v < chain.firstInterior;
  };
  const Chain* behind = std::upper_bound(first, last, vertex, isBehind);
  const bool isOnOne =
      behind != first && vertex < behind[-1].firstInterior + behind[-1].interiorCount;
  return static_cast<Index>((isOnOne ? behind - 1 : last) - graph.chains.Data());
}

}  // namespace shr::gpc
