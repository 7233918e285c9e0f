// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// In place of the last stage, for lines: their chains are borders of nothing, but the labels tell
// what lies on both sides of each. Chains in a row with the same answer become one part. A chain
// that coincides with others has their label. A node is left out of a part where it is neither a
// vertex of the line nor an end of the part.

#include <algorithm>

#include "shared/polygons/clipper/GpcResult.h"

namespace shr::gpc {
namespace {

class LineCutter {
public:
  LineCutter(const Input& input, const Crossings& crossings, const Graph& graph,
             const Labels& labels, Result& result)
      : input_(input), crossings_(crossings), graph_(graph), labels_(labels), result_(result) {}

  void Run() {
    result_.points.Clear();
    result_.lineParts.Clear();
    FindKeptChains();
    for (Index i = 0; i < input_.contours.Size(); ++i) {
      if (input_.contours[i].IsLine()) CutLine(i);
    }
  }

private:
  /// Finds, for each chain that was merged, the one that is left of those it coincides with.
  void FindKeptChains() {
    Buffer<Index>& kept = result_.keptChains;
    kept.Clear();
    if (graph_.mergers.IsEmpty()) return;
    kept.Resize(graph_.chains.Size());
    for (Index i = 0; i < kept.Size(); ++i) kept[i] = i;
    // The last come first, as what a chain was merged into may have been merged later itself.
    for (Index i = graph_.mergers.Size(); i-- > 0;) {
      const Merger& merger = graph_.mergers[i];
      kept[merger.merged / 2] = kept[merger.kept / 2];
    }
  }

  LinePlace PlaceOf(Index chain) const {
    if (!result_.keptChains.IsEmpty()) chain = result_.keptChains[chain];
    const Sides sides = labels_.sides[chain];
    const bool isLeft = (LeftOf(sides) & SUBJECT) != 0;
    const bool isRight = (RightOf(sides) & SUBJECT) != 0;
    if (isLeft != isRight) return LinePlace::Border;
    return isLeft ? LinePlace::Inside : LinePlace::Outside;
  }

  void CutLine(Index contour) {
    const Index first = graph_.chainStarts[contour];
    const Index end = graph_.chainStarts[contour + 1];
    for (Index chain = first; chain < end; ++chain) {
      const LinePlace place = PlaceOf(chain);
      if (chain == first || result_.lineParts.Back().place != place) {
        if (chain != first) EndPart();
        result_.lineParts.Append(
            {input_.contours[contour].polygon, place, result_.points.Size(), 0});
        result_.points.Append(graph_.nodePoints[graph_.chains[chain].from]);
      } else if (BeginsAtVertex(chain)) {
        result_.points.Append(graph_.nodePoints[graph_.chains[chain].from]);
      }
      const Vec2d* interior = input_.points.Data() + graph_.chains[chain].firstInterior;
      const Index count = graph_.chains[chain].interiorCount;
      std::copy(interior, interior + count, result_.points.Extend(count));
      end_ = graph_.nodePoints[graph_.chains[chain].to];
    }
    if (end != first) EndPart();
  }

  void EndPart() {
    LinePart& part = result_.lineParts.Back();
    result_.points.Append(end_);
    part.count = result_.points.Size() - part.first;
  }

  /// Returns true when a vertex of the line is the first node of a chain.
  bool BeginsAtVertex(Index chain) const {
    const Index vertex = graph_.chains[chain].firstInterior - 1;
    return crossings_.isNode[vertex] && graph_.nodeOfPoint[vertex] == graph_.chains[chain].from;
  }

  const Input& input_;
  const Crossings& crossings_;
  const Graph& graph_;
  const Labels& labels_;
  Result& result_;
  Vec2d end_;  ///< of the chain at hand
};

}  // namespace

void CutLines(const Input& input, const Crossings& crossings, const Graph& graph,
              const Labels& labels, Result& result) {
  LineCutter(input, crossings, graph, labels, result).Run();
}

}  // namespace shr::gpc
