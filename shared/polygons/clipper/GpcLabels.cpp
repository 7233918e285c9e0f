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

#include <algorithm>
#include <optional>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcSlabs.h"
#include "shared/polygons/clipper/GpcWorkspace.h"

namespace shr::gpc {
namespace {

constexpr Sides UNKNOWN = 0xFF;

// Accounts of what a place is inside. `Pass` takes a half edge that is passed from its right to its
// left; `PassContour` takes a contour that is passed the same way, or the other way with -1 turns.

class EvenOddAccount {
public:
  explicit EvenOddAccount(const Workspace& work) : work_(work) {}
  void Pass(Half half) { inside_ ^= work_.parities[half / 2]; }
  void PassContour(const Contour& contour, int) { inside_ ^= contour.operand; }
  void NoteInside(const Contour&) {}
  Operands Inside() const { return inside_; }

private:
  const Workspace& work_;
  Operands inside_ = 0;
};

/// For each chain that others have been merged into, a list of those.
class MergedChains {
public:
  explicit MergedChains(Workspace& work) : work_(work) {
    work.mergedLists.Clear();
    work.mergedEntries.Clear();
    if (work.mergers.IsEmpty()) return;
    work.mergedLists.Fill(work.chains.Size(), NONE);
    work.keptHalves.Fill(2 * work.chains.Size(), NONE);
    // The last come first, as what a chain was merged into may have been merged later itself.
    for (Index i = work.mergers.Size(); i-- > 0;) Add(work.mergers[i]);
  }

  /// Calls `handle` with all half edges that run as the given one does.
  template <class Handle>
  void ForEach(Half half, const Handle& handle) const {
    handle(half);
    if (work_.mergedLists.IsEmpty()) return;
    for (Index i = work_.mergedLists[half / 2]; i != NONE; i = work_.mergedEntries[i].next) {
      handle(work_.mergedEntries[i].half ^ (half & 1));
    }
  }

private:
  void Add(const Merger& merger) {
    Half kept = merger.kept;
    if (work_.keptHalves[kept] != NONE) kept = work_.keptHalves[kept];
    work_.keptHalves[merger.merged] = kept;
    work_.keptHalves[merger.merged ^ 1] = kept ^ 1;
    // As it runs along the first half edge of the chain that is kept.
    work_.mergedEntries.Append({merger.merged ^ (kept & 1), work_.mergedLists[kept / 2]});
    work_.mergedLists[kept / 2] = work_.mergedEntries.Size() - 1;
  }

  Workspace& work_;
};

class WindingAccount {
public:
  explicit WindingAccount(Workspace& work) : work_(work), merged_(work) {}
  void Pass(Half half) {
    merged_.ForEach(half, [this](Half each) {
      const Chain& chain = work_.chains[each / 2];
      PassContour(work_.contours[chain.contour], each % 2 == 0 ? 1 : -1);
    });
  }
  void PassContour(const Contour& contour, int turns) { windings_[contour.operand - 1] += turns; }
  void NoteInside(const Contour&) {}
  Operands Inside() const {
    return static_cast<Operands>((IsInside(windings_[0]) ? SUBJECT : 0) |
                                 (IsInside(windings_[1]) ? CLIP : 0));
  }

private:
  bool IsInside(int winding) const {
    if (work_.rule == Rule::NonZero) return winding != 0;
    return work_.rule == Rule::Positive ? winding > 0 : winding < 0;
  }

  const Workspace& work_;
  MergedChains merged_;
  int windings_[2] = {0, 0};
};

class PolygonAccount {
public:
  explicit PolygonAccount(Workspace& work) : work_(work), merged_(work) {
    work.isOdd.Fill(work.polygonCount, 0);
  }
  void Pass(Half half) {
    merged_.ForEach(half, [this](Half each) {
      PassContour(work_.contours[work_.chains[each / 2].contour], 1);
    });
  }
  void PassContour(const Contour& contour, int) {
    std::uint8_t& isOdd = work_.isOdd[contour.polygon];
    isOdd ^= 1;
    counts_[contour.operand - 1] += isOdd != 0 ? 1 : -1;
  }
  void NoteInside(const Contour&) {}
  Operands Inside() const {
    return static_cast<Operands>((counts_[0] != 0 ? SUBJECT : 0) | (counts_[1] != 0 ? CLIP : 0));
  }

private:
  Workspace& work_;
  MergedChains merged_;
  int counts_[2] = {0, 0};
};

/// The inside of a contour is on that side of its edges where it counts. There lie around it all
/// that count, less those whose edges are the same and that lie in it.
class NestAccount {
public:
  explicit NestAccount(Workspace& work) : work_(work), merged_(work) {
    work.isOdd.Fill(work.polygonCount, 0);
    work.nests.Fill(work.polygonCount, Nest());
  }
  void Pass(Half half) {
    const Nest right = now_;
    passed_.Clear();
    merged_.ForEach(half, [this](Half each) {
      const Contour& contour = work_.contours[work_.chains[each / 2].contour];
      passed_.Append({contour.polygon, work_.isOdd[contour.polygon]});
      PassContour(contour, 1);
    });
    if (passed_.Size() == 1) {
      const Index polygon = passed_[0].polygon;
      Note(polygon, work_.isOdd[polygon] != 0 ? now_ : right);
    } else {
      NoteInside(now_, 1);
      NoteInside(right, 0);
    }
  }
  void PassContour(const Contour& contour, int) {
    std::uint8_t& isOdd = work_.isOdd[contour.polygon];
    isOdd ^= 1;
    Toggle(now_, contour.polygon, isOdd != 0);
  }
  void NoteInside(const Contour& contour) { Note(contour.polygon, now_); }
  Operands Inside() const { return now_.depth % 2 != 0 ? SUBJECT : 0; }

private:
  struct Passed {
    Index polygon;
    std::uint8_t wasOdd;
  };

  static void Toggle(Nest& nest, Index polygon, bool isAdded) {
    nest.set ^= BitsOf(polygon);
    nest.depth += isAdded ? 1 : NONE;  // less one
  }

  void Note(Index polygon, const Nest& nest) {
    if (work_.nests[polygon].depth == 0) work_.nests[polygon] = nest;
  }

  /// Notes the contours just passed that have their inside on the left (1) or right (0) side, given
  /// what counts there. One that came by twice has its inside on neither.
  void NoteInside(Nest nest, std::uint8_t isLeft) {
    Buffer<Index>& inside = work_.stack;
    inside.Clear();
    for (const Passed& passed : passed_) {
      const std::uint8_t isOdd = work_.isOdd[passed.polygon];
      if (isOdd != isLeft || isOdd == passed.wasOdd) continue;
      inside.Append(passed.polygon);
      Toggle(nest, passed.polygon, false);
    }
    std::sort(inside.begin(), inside.end(), [this](Index a, Index b) {
      const double one = work_.nestSizes[a];
      const double two = work_.nestSizes[b];
      return one != two ? one > two : a < b;
    });
    for (const Index polygon : inside) {
      Toggle(nest, polygon, true);
      Note(polygon, nest);
    }
  }

  Workspace& work_;
  MergedChains merged_;
  Buffer<Passed> passed_{L"label creation"};
  Nest now_;
};

/// Walks through the connected parts.
template <class Account>
class Labeller {
public:
  explicit Labeller(Workspace& work) : work_(work), account_(work) {}

  /// Returns false at a contradiction.
  bool Run() {
    OrderContours();
    for (const Index contour : work_.lowestFirst) {
      if (!(work_.hasNodes[contour] ? LabelPart(contour) : LabelLoop(contour))) return false;
    }
    return true;
  }

private:
  void OrderContours() {
    work_.lowestFirst.Resize(work_.contours.Size());
    for (Index i = 0; i < work_.contours.Size(); ++i) work_.lowestFirst[i] = i;
    std::sort(work_.lowestFirst.begin(), work_.lowestFirst.end(), [this](Index a, Index b) {
      const Vec2d& one = work_.points[work_.contours[a].lowest];
      const Vec2d& two = work_.points[work_.contours[b].lowest];
      if (one.y != two.y) return one.y < two.y;
      return one.x != two.x ? one.x < two.x : a < b;
    });
  }

  bool LabelLoop(Index contourIndex) {
    const Contour& contour = work_.contours[contourIndex];
    const int turns = TurnAt(contour, contour.lowest);
    Enter(contour.lowest);
    account_.PassContour(contour, turns);
    account_.NoteInside(contour);
    work_.loopInsides[contourIndex] = account_.Inside();
    account_.PassContour(contour, -turns);
    work_.loopOutsides[contourIndex] = account_.Inside();
    work_.parts.Append({contourIndex, SideOfLoop(work_, contourIndex, false)});
    Leave();
    return true;
  }

  bool LabelPart(Index contourIndex) {
    const Contour& contour = work_.contours[contourIndex];
    // A half edge on whose right is what lies below the part.
    Half first;
    Index node;
    if (work_.isNode[contour.lowest]) {
      // All half edges go upward, so the first comes after what is below.
      node = work_.nodeOfPoint[work_.Root(contour.lowest)];
      if (work_.nodeStarts[node] == work_.nodeEnds[node]) return true;
      first = work_.slots[work_.nodeStarts[node]];
    } else {
      const Index chain = FindChain(work_, contourIndex, contour.lowest);
      first = 2 * chain + (TurnAt(contour, contour.lowest) > 0 ? 0 : 1);
      node = first % 2 == 0 ? work_.chains[chain].from : work_.chains[chain].to;
    }
    if (work_.sides[first / 2] != UNKNOWN) return true;
    Enter(contour.lowest);
    const bool isSound = Walk(node, first);
    work_.parts.Append({contourIndex, first ^ 1});
    Leave();
    return isSound;
  }

  /// Returns 1 where a contour turns to the left, else -1.
  int TurnAt(const Contour& contour, Index vertex) const {
    const Index before = vertex == contour.first ? contour.first + contour.count - 1 : vertex - 1;
    const int turn =
        OrientationSign(work_.points[before], work_.points[vertex], work_.points[vertex + 1]);
    return turn > 0 ? 1 : -1;
  }

  /// Brings the account to the place below a point; nothing lies below the first part.
  void Enter(Index vertex) {
    passed_.Clear();
    if (work_.parts.IsEmpty()) return;
    if (!index_.has_value()) index_.emplace(work_);
    index_->ForEachBelow(work_.points[vertex], [this](const Section& section, int turns) {
      account_.PassContour(work_.contours[section.contour], turns);
      passed_.Append({section.contour, turns});
    });
  }
  void Leave() {
    for (const Passed& passed : passed_) {
      account_.PassContour(work_.contours[passed.contour], -passed.turns);
    }
  }

  /// Walks through a part from the right of a half edge of a node.
  bool Walk(Index firstNode, Half first) {
    Buffer<Visit>& visits = work_.visits;
    visits.Clear();
    Begin(firstNode, first);
    while (!visits.IsEmpty()) {
      Visit& visit = visits.Back();
      if (visit.remaining == 0) {
        visits.Truncate(visits.Size() - 1);
        continue;
      }
      --visit.remaining;
      const Half half = work_.slots[visit.slot];
      if (++visit.slot == work_.nodeEnds[visit.node]) visit.slot = work_.nodeStarts[visit.node];
      const Operands right = account_.Inside();
      account_.Pass(half);
      const Operands left = account_.Inside();
      const Sides sides = half % 2 == 0 ? MakeSides(left, right) : MakeSides(right, left);
      Sides& stored = work_.sides[half / 2];
      if (stored == UNKNOWN) {
        stored = sides;
        const Chain& chain = work_.chains[half / 2];
        Begin(half % 2 == 0 ? chain.to : chain.from, half ^ 1);
      } else if (stored != sides) {
        return false;
      }
    }
    return true;
  }

  void Begin(Index node, Half half) {
    if (work_.isVisited[node]) return;
    work_.isVisited[node] = 1;
    work_.visits.Append(
        {node, work_.slotOfHalf[half], work_.nodeEnds[node] - work_.nodeStarts[node]});
  }

  struct Passed {
    Index contour;
    int turns;
  };

  Workspace& work_;
  Account account_;
  std::optional<SlabIndex> index_;
  Buffer<Passed> passed_{L"label creation"};
};

}  // namespace

Index FindChain(const Workspace& work, Index contourIndex, Index vertex) {
  const Contour& contour = work.contours[contourIndex];
  const Chain* first = work.chains.Data() + work.chainStarts[contourIndex];
  const Chain* last = work.chains.Data() + work.chainStarts[contourIndex + 1] - 1;
  // The interior of a chain that begins on the last edge begins with the contour's first point.
  const auto isBehind = [&contour](Index v, const Chain& chain) {
    return chain.firstInterior == contour.first || v < chain.firstInterior;
  };
  const Chain* behind = std::upper_bound(first, last, vertex, isBehind);
  const bool isOnOne =
      behind != first && vertex < behind[-1].firstInterior + behind[-1].interiorCount;
  return static_cast<Index>((isOnOne ? behind - 1 : last) - work.chains.Data());
}

bool FindLabels(Workspace& work) {
  work.sides.Fill(work.chains.Size(), UNKNOWN);
  work.loopInsides.Fill(work.contours.Size(), 0);
  work.loopOutsides.Fill(work.contours.Size(), 0);
  work.isVisited.Fill(work.nodePoints.Size(), 0);
  work.parts.Clear();
  switch (work.rule) {
    case Rule::EvenOdd:
      return Labeller<EvenOddAccount>(work).Run();
    case Rule::Polygons:
      return Labeller<PolygonAccount>(work).Run();
    case Rule::Nests:
      return Labeller<NestAccount>(work).Run();
    default:
      return Labeller<WindingAccount>(work).Run();
  }
}

}  // namespace shr::gpc
