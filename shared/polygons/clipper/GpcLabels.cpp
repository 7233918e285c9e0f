// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Fourth stage: which operands lie on either side of each chain? Of one connected part after the
// other the place below its lowest point is taken, where the part itself is not. What is inside
// there is told by the edges of other parts below that point; an index of upright slabs holds them.
// Parts are farther apart than the tolerance, so this count has no close decisions. From there a
// walk goes through the part, around each node it meets and on along each chain that is new, and
// keeps account of what it is inside: each half edge that it passes changes the account by what
// the chain is a border of. Each rule has an account of its own, see the classes below. A walk that
// returns to a chain finds there what it found before, or the graph is not sound.
//
// Contours are taken in the order of their lowest points, so the first of a part that comes along
// has the lowest point of the part.

#include "shared/polygons/clipper/GpcLabels.h"

#include <algorithm>

#include "shared/geometry/Orientation.h"

namespace shr::gpc {
namespace {

constexpr Sides UNKNOWN = 0xFF;

// Accounts of what a place is inside. `Pass` takes a half edge that is passed from its right to its
// left; `PassContour` takes a contour that is passed the same way, or the other way with -1 turns.

class EvenOddAccount {
public:
  EvenOddAccount(const Input&, const Graph& graph, Labels&, std::span<const double>)
      : graph_(graph) {}
  void Pass(Half half) { inside_ ^= graph_.parities[half / 2]; }
  void PassContour(const Contour& contour, int) { inside_ ^= contour.operand; }
  void NoteInside(const Contour&) {}
  Operands Inside() const { return inside_; }

private:
  const Graph& graph_;
  Operands inside_ = 0;
};

/// For each chain that others have been merged into, a list of those.
class MergedChains {
public:
  MergedChains(const Graph& graph, Labels& labels) : labels_(labels) {
    labels.mergedLists.Clear();
    labels.mergedEntries.Clear();
    if (graph.mergers.IsEmpty()) return;
    labels.mergedLists.Fill(graph.chains.Size(), NONE);
    labels.keptHalves.Fill(2 * graph.chains.Size(), NONE);
    // The last come first, as what a chain was merged into may have been merged later itself.
    for (Index i = graph.mergers.Size(); i-- > 0;) Add(graph.mergers[i]);
  }

  /// Calls `handle` with all half edges that run as the given one does.
  template <class Handle>
  void ForEach(Half half, const Handle& handle) const {
    handle(half);
    if (labels_.mergedLists.IsEmpty()) return;
    for (Index i = labels_.mergedLists[half / 2]; i != NONE; i = labels_.mergedEntries[i].next) {
      handle(labels_.mergedEntries[i].half ^ (half & 1));
    }
  }

private:
  void Add(const Merger& merger) {
    Half kept = merger.kept;
    if (labels_.keptHalves[kept] != NONE) kept = labels_.keptHalves[kept];
    labels_.keptHalves[merger.merged] = kept;
    labels_.keptHalves[merger.merged ^ 1] = kept ^ 1;
    // As it runs along the first half edge of the chain that is kept.
    labels_.mergedEntries.Append({merger.merged ^ (kept & 1), labels_.mergedLists[kept / 2]});
    labels_.mergedLists[kept / 2] = labels_.mergedEntries.Size() - 1;
  }

  Labels& labels_;
};

class WindingAccount {
public:
  WindingAccount(const Input& input, const Graph& graph, Labels& labels, std::span<const double>)
      : input_(input), graph_(graph), merged_(graph, labels) {}
  void Pass(Half half) {
    merged_.ForEach(half, [this](Half each) {
      const Chain& chain = graph_.chains[each / 2];
      PassContour(input_.contours[chain.contour], each % 2 == 0 ? 1 : -1);
    });
  }
  void PassContour(const Contour& contour, int turns) {
    if (!contour.IsLine()) windings_[contour.operand - 1] += turns;
  }
  void NoteInside(const Contour&) {}
  Operands Inside() const {
    return static_cast<Operands>((IsInside(windings_[0]) ? SUBJECT : 0) |
                                 (IsInside(windings_[1]) ? CLIP : 0));
  }

private:
  bool IsInside(int winding) const {
    if (input_.rule == Rule::NonZero) return winding != 0;
    return input_.rule == Rule::Positive ? winding > 0 : winding < 0;
  }

  const Input& input_;
  const Graph& graph_;
  MergedChains merged_;
  int windings_[2] = {0, 0};
};

class PolygonAccount {
public:
  PolygonAccount(const Input& input, const Graph& graph, Labels& labels, std::span<const double>)
      : input_(input), graph_(graph), labels_(labels), merged_(graph, labels) {
    labels.isOdd.Fill(input.polygonCount, 0);
  }
  void Pass(Half half) {
    merged_.ForEach(half, [this](Half each) {
      PassContour(input_.contours[graph_.chains[each / 2].contour], 1);
    });
  }
  void PassContour(const Contour& contour, int) {
    if (contour.IsLine()) return;
    std::uint8_t& isOdd = labels_.isOdd[contour.polygon];
    isOdd ^= 1;
    counts_[contour.operand - 1] += isOdd != 0 ? 1 : -1;
  }
  void NoteInside(const Contour&) {}
  Operands Inside() const {
    return static_cast<Operands>((counts_[0] != 0 ? SUBJECT : 0) | (counts_[1] != 0 ? CLIP : 0));
  }

private:
  const Input& input_;
  const Graph& graph_;
  Labels& labels_;
  MergedChains merged_;
  int counts_[2] = {0, 0};
};

/// The inside of a contour is on that side of its edges where it counts. There lie around it all
/// that count, less those whose edges are the same and that lie in it.
class NestAccount {
public:
  NestAccount(const Input& input, const Graph& graph, Labels& labels, std::span<const double> sizes)
      : input_(input),
        graph_(graph),
        labels_(labels),
        sizes_(sizes),
        passed_(labels.passedPolygons),
        merged_(graph, labels) {
    labels.isOdd.Fill(input.polygonCount, 0);
    labels.nests.Fill(input.polygonCount, Nest());
  }
  void Pass(Half half) {
    const Nest right = now_;
    passed_.Clear();
    merged_.ForEach(half, [this](Half each) {
      const Contour& contour = input_.contours[graph_.chains[each / 2].contour];
      passed_.Append({contour.polygon, labels_.isOdd[contour.polygon]});
      PassContour(contour, 1);
    });
    if (passed_.Size() == 1) {
      const Index polygon = passed_[0].polygon;
      Note(polygon, labels_.isOdd[polygon] != 0 ? now_ : right);
    } else {
      NoteInside(now_, 1);
      NoteInside(right, 0);
    }
  }
  void PassContour(const Contour& contour, int) {
    std::uint8_t& isOdd = labels_.isOdd[contour.polygon];
    isOdd ^= 1;
    Toggle(now_, contour.polygon, isOdd != 0);
  }
  void NoteInside(const Contour& contour) { Note(contour.polygon, now_); }
  Operands Inside() const { return now_.depth % 2 != 0 ? SUBJECT : 0; }

private:
  static void Toggle(Nest& nest, Index polygon, bool isAdded) {
    nest.set ^= BitsOf(polygon);
    nest.depth += isAdded ? 1 : NONE;  // less one
  }

  void Note(Index polygon, const Nest& nest) {
    if (labels_.nests[polygon].depth == 0) labels_.nests[polygon] = nest;
  }

  /// Notes the contours just passed that have their inside on the left (1) or right (0) side, given
  /// what counts there. One that came by twice has its inside on neither.
  void NoteInside(Nest nest, std::uint8_t isLeft) {
    Buffer<Index>& inside = labels_.insidePolygons;
    inside.Clear();
    for (const PassedPolygon& passed : passed_) {
      const std::uint8_t isOdd = labels_.isOdd[passed.polygon];
      if (isOdd != isLeft || isOdd == passed.wasOdd) continue;
      inside.Append(passed.polygon);
      Toggle(nest, passed.polygon, false);
    }
    std::sort(inside.begin(), inside.end(), [this](Index a, Index b) {
      const double one = sizes_[a];
      const double two = sizes_[b];
      return one != two ? one > two : a < b;
    });
    for (const Index polygon : inside) {
      Toggle(nest, polygon, true);
      Note(polygon, nest);
    }
  }

  const Input& input_;
  const Graph& graph_;
  Labels& labels_;
  const std::span<const double> sizes_;
  Buffer<PassedPolygon>& passed_;
  MergedChains merged_;
  Nest now_;
};

/// Walks through the connected parts.
template <class Account>
class Labeller {
public:
  Labeller(const Input& input, const Crossings& crossings, const Graph& graph,
           std::span<const double> nestSizes, Labels& labels)
      : input_(input),
        crossings_(crossings),
        graph_(graph),
        labels_(labels),
        passed_(labels.passedContours),
        account_(input, graph, labels, nestSizes) {}

  /// Returns false at a contradiction.
  bool Run() {
    OrderContours();
    for (const Index contour : labels_.lowestFirst) {
      if (!(graph_.hasNodes[contour] ? LabelPart(contour) : LabelLoop(contour))) return false;
    }
    return true;
  }

private:
  void OrderContours() {
    labels_.lowestFirst.Resize(input_.contours.Size());
    for (Index i = 0; i < input_.contours.Size(); ++i) labels_.lowestFirst[i] = i;
    std::sort(labels_.lowestFirst.begin(), labels_.lowestFirst.end(), [this](Index a, Index b) {
      const Vec2d& one = input_.points[input_.contours[a].lowest];
      const Vec2d& two = input_.points[input_.contours[b].lowest];
      if (one.y != two.y) return one.y < two.y;
      return one.x != two.x ? one.x < two.x : a < b;
    });
  }

  bool LabelLoop(Index contourIndex) {
    const Contour& contour = input_.contours[contourIndex];
    const int turns = input_.TurnAtLowest(contour) > 0 ? 1 : -1;
    Enter(contour.lowest);
    account_.PassContour(contour, turns);
    account_.NoteInside(contour);
    labels_.loopInsides[contourIndex] = account_.Inside();
    account_.PassContour(contour, -turns);
    labels_.loopOutsides[contourIndex] = account_.Inside();
    labels_.parts.Append({contourIndex, SideOfLoop(graph_, contourIndex, false)});
    Leave();
    return true;
  }

  bool LabelPart(Index contourIndex) {
    const Contour& contour = input_.contours[contourIndex];
    // A half edge on whose right is what lies below the part.
    Half first;
    Index node;
    if (crossings_.isNode[contour.lowest]) {
      // All half edges go upward, so the first comes after what is below.
      node = graph_.nodeOfPoint[contour.lowest];
      if (graph_.nodeStarts[node] == graph_.nodeEnds[node]) return true;
      first = graph_.slots[graph_.nodeStarts[node]];
    } else {
      const Index chain = FindChain(input_, graph_, contourIndex, contour.lowest);
      first = 2 * chain + (input_.TurnAtLowest(contour) > 0 ? 0 : 1);
      node = graph_.NodeOf(first);
    }
    if (labels_.sides[first / 2] != UNKNOWN) return true;
    Enter(contour.lowest);
    const bool isSound = Walk(node, first);
    labels_.parts.Append({contourIndex, first ^ 1});
    Leave();
    return isSound;
  }

  /// Brings the account to the place below a point; nothing lies below the first part.
  void Enter(Index vertex) {
    passed_.Clear();
    if (labels_.parts.IsEmpty()) return;
    if (!hasSlabs_) labels_.slabs.Build(input_);
    hasSlabs_ = true;
    labels_.slabs.ForEachBelow(input_, input_.points[vertex],
                               [this](const Section& section, int turns) {
                                 account_.PassContour(input_.contours[section.contour], turns);
                                 passed_.Append({section.contour, turns});
                               });
  }
  void Leave() {
    for (const PassedContour& passed : passed_) {
      account_.PassContour(input_.contours[passed.contour], -passed.turns);
    }
  }

  /// Walks through a part from the right of a half edge of a node.
  bool Walk(Index firstNode, Half first) {
    Buffer<Visit>& visits = labels_.visits;
    visits.Clear();
    Begin(firstNode, first);
    while (!visits.IsEmpty()) {
      Visit& visit = visits.Back();
      if (visit.remaining == 0) {
        visits.Truncate(visits.Size() - 1);
        continue;
      }
      --visit.remaining;
      const Half half = graph_.slots[visit.slot];
      if (++visit.slot == graph_.nodeEnds[visit.node]) visit.slot = graph_.nodeStarts[visit.node];
      const Operands right = account_.Inside();
      account_.Pass(half);
      const Operands left = account_.Inside();
      const Sides sides = half % 2 == 0 ? MakeSides(left, right) : MakeSides(right, left);
      Sides& stored = labels_.sides[half / 2];
      if (stored == UNKNOWN) {
        stored = sides;
        Begin(graph_.NodeOf(half ^ 1), half ^ 1);
      } else if (stored != sides) {
        return false;
      }
    }
    return true;
  }

  void Begin(Index node, Half half) {
    if (labels_.isVisited[node]) return;
    labels_.isVisited[node] = 1;
    labels_.visits.Append(
        {node, graph_.slotOfHalf[half], graph_.nodeEnds[node] - graph_.nodeStarts[node]});
  }

  const Input& input_;
  const Crossings& crossings_;
  const Graph& graph_;
  Labels& labels_;
  Buffer<PassedContour>& passed_;
  Account account_;
  bool hasSlabs_ = false;
};

}  // namespace

bool FindLabels(const Input& input, const Crossings& crossings, const Graph& graph,
                std::span<const double> nestSizes, Labels& labels) {
  labels.sides.Fill(graph.chains.Size(), UNKNOWN);
  labels.loopInsides.Fill(input.contours.Size(), 0);
  labels.loopOutsides.Fill(input.contours.Size(), 0);
  labels.isVisited.Fill(graph.nodePoints.Size(), 0);
  labels.parts.Clear();
  switch (input.rule) {
    case Rule::EvenOdd:
      return Labeller<EvenOddAccount>(input, crossings, graph, nestSizes, labels).Run();
    case Rule::Polygons:
      return Labeller<PolygonAccount>(input, crossings, graph, nestSizes, labels).Run();
    case Rule::Nests:
      return Labeller<NestAccount>(input, crossings, graph, nestSizes, labels).Run();
    default:
      return Labeller<WindingAccount>(input, crossings, graph, nestSizes, labels).Run();
  }
}

}  // namespace shr::gpc
