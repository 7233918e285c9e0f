// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Fourth stage: which operands lie on the left of each chain? Around a node the answer changes by
// the parity of each half edge that is passed, and along a chain it stays. So one answer spreads
// from any place to all that is connected with it. For each connected part one answer has to be
// found otherwise: below its lowest point, where the part itself is not. The edges of other parts
// below that point are counted; an index of upright slabs holds them. Parts are farther apart than
// the tolerance, so this count has no close decisions.

#include <algorithm>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcWorkspace.h"

namespace shr::gpc {
namespace {

constexpr Operands UNKNOWN = 0xFF;

bool IsLower(const Vec2d& a, const Vec2d& b) {
  return a.y < b.y || (a.y == b.y && a.x < b.x);
}

/// Returns what is on the left of a half edge; `lefts` holds it for the first half of every chain.
Operands GetLeft(const Workspace& work, Half half) {
  const Operands left = work.lefts[half / 2];
  return half % 2 == 0 ? left : left ^ work.parities[half / 2];
}

// Labels relative to an arbitrary one.

/// Labels the half edges of a node from one that has its label. Returns false at a contradiction.
bool SpreadAround(Workspace& work, Index node, Index knownSlot) {
  const Index start = work.nodeStarts[node];
  const Index end = work.nodeEnds[node];
  Operands label = GetLeft(work, work.slots[knownSlot]);
  for (Index slot = knownSlot + 1;; ++slot) {
    if (slot == end) slot = start;
    if (slot == knownSlot) return true;
    const Half half = work.slots[slot];
    const Operands before = label;
    label = label ^ work.parities[half / 2];
    const Operands left = half % 2 == 0 ? label : before;
    Operands& stored = work.lefts[half / 2];
    if (stored == UNKNOWN) {
      stored = left;
      work.stack.Append(half ^ 1);
    } else if (stored != left) {
      return false;
    }
  }
}

void JoinComponent(Workspace& work, Index contour, Index component) {
  if (work.components[contour] != NONE) return;
  work.components[contour] = component;
  Index& lowest = work.componentLowest[component];
  if (lowest == NONE || IsLower(work.points[work.contours[contour].lowest],
                                work.points[work.contours[lowest].lowest])) {
    lowest = contour;
  }
}

/// Labels everything connected with a chain.
bool Spread(Workspace& work, Index firstChain, Index component) {
  work.lefts[firstChain] = 0;
  work.stack.Clear();
  work.stack.Append(2 * firstChain);
  work.stack.Append(2 * firstChain + 1);
  while (!work.stack.IsEmpty()) {
    const Half half = work.stack.Back();
    work.stack.Truncate(work.stack.Size() - 1);
    const Chain& chain = work.chains[half / 2];
    JoinComponent(work, chain.contour, component);
    const Index node = half % 2 == 0 ? chain.from : chain.to;
    if (work.isVisited[node]) continue;
    work.isVisited[node] = 1;
    if (!SpreadAround(work, node, work.slotOfHalf[half])) return false;
  }
  return true;
}

/// Returns the first chain of a contour that is in the graph, or NONE.
Index GetFirstChain(const Workspace& work, Index contour) {
  for (Index i = work.chainStarts[contour]; i < work.chainStarts[contour + 1]; ++i) {
    if (work.parities[i] != MERGED) return i;
  }
  return NONE;
}

bool FindComponents(Workspace& work) {
  for (Index contour = 0; contour < work.contours.Size(); ++contour) {
    if (work.components[contour] != NONE) continue;
    const Index component = work.componentLowest.Size();
    const Index chain = GetFirstChain(work, contour);
    if (chain != NONE) {
      work.componentLowest.Append(NONE);
      if (!Spread(work, chain, component)) return false;
    } else if (!work.hasNodes[contour]) {
      work.componentLowest.Append(NONE);
      JoinComponent(work, contour, component);
    }
  }
  return true;
}

// Where the parts lie.

/// The sections that meet each of a row of upright slabs of equal width.
class SlabIndex {
public:
  explicit SlabIndex(Workspace& work) : work_(work) {
    double sum = 0.0;
    double high = -HUGE_VAL;
    low_ = HUGE_VAL;
    for (const Section& section : work.sections) {
      sum += section.box.xMax - section.box.xMin;
      low_ = std::min(low_, section.box.xMin);
      high = std::max(high, section.box.xMax);
    }
    // So many slabs that a section meets few on average.
    const double width = high - low_;
    const double sections = work.sections.Size();
    const double slabs = std::min(sections / 2.0, sum > 0.0 ? 3.0 * sections * width / sum : 1.0);
    slabCount_ = std::max(1u, static_cast<Index>(slabs));
    scale_ = width > 0.0 ? slabCount_ / width : 0.0;
    Distribute();
  }

  /// Returns the operands that have an odd number of edges below a point.
  Operands CountBelow(const Vec2d& point) const {
    Operands parity = 0;
    const Index slab = GetSlab(point.x);
    for (Index i = work_.slabStarts[slab]; i < work_.slabStarts[slab + 1]; ++i) {
      const Section& section = work_.sections[work_.slabSections[i]];
      const Box& box = section.box;
      if (box.xMin > point.x || box.xMax <= point.x || box.yMin >= point.y) continue;
      if (IsOddBelow(section, point)) parity ^= work_.contours[section.contour].operand;
    }
    return parity;
  }

private:
  Index GetSlab(double x) const {
    const double slab = (x - low_) * scale_;
    return slab < slabCount_ ? static_cast<Index>(slab) : slabCount_ - 1;
  }

  void Distribute() {
    work_.slabStarts.Fill(slabCount_ + 1, 0);
    for (const Section& section : work_.sections) {
      const Index last = GetSlab(section.box.xMax);
      for (Index i = GetSlab(section.box.xMin); i <= last; ++i) ++work_.slabStarts[i];
    }
    Index sum = 0;
    for (Index& start : work_.slabStarts) {
      sum += start;
      start = sum;
    }
    work_.slabSections.Resize(sum);
    for (Index i = work_.sections.Size(); i-- > 0;) {
      const Box& box = work_.sections[i].box;
      const Index last = GetSlab(box.xMax);
      for (Index j = GetSlab(box.xMin); j <= last; ++j) {
        work_.slabSections[--work_.slabStarts[j]] = i;
      }
    }
  }

  bool IsOddBelow(const Section& section, const Vec2d& point) const {
    const Vec2d* points = work_.points.Data() + section.firstEdge;
    if (section.box.yMax < point.y) {
      return (points[0].x <= point.x) != (points[section.edgeCount].x <= point.x);
    }
    bool isOdd = false;
    for (Index i = 0; i < section.edgeCount; ++i) {
      const Vec2d& a = points[i];
      const Vec2d& b = points[i + 1];
      if ((a.x <= point.x) == (b.x <= point.x)) continue;
      const int side = OrientationSign(a, b, point);
      isOdd ^= a.x < b.x ? side > 0 : side < 0;
    }
    return isOdd;
  }

  Workspace& work_;
  double low_;
  double scale_;
  Index slabCount_;
};

/// Returns the chain that a vertex which is no node lies on.
Index FindChain(const Workspace& work, Index contour, Index vertex) {
  const Index first = work.chainStarts[contour];
  for (Index i = work.chainStarts[contour + 1]; i-- > first;) {
    const Chain& chain = work.chains[i];
    if (chain.firstInterior <= vertex && vertex < chain.firstInterior + chain.interiorCount) {
      return i;
    }
  }
  return work.chainStarts[contour + 1] - 1;  // the part behind the contour's last point
}

/// Returns the relative label below the lowest point of a part with nodes.
Operands GetLabelBelow(Workspace& work, Index contourIndex) {
  const Contour& contour = work.contours[contourIndex];
  const Index vertex = contour.lowest;
  if (work.isNode[vertex]) {
    // All half edges go upward, so the last is followed by what is below.
    const Index node = work.nodeOfPoint[work.Root(vertex)];
    return GetLeft(work, work.slots[work.nodeEnds[node] - 1]);
  }
  const Index chain = FindChain(work, contourIndex, vertex);
  const Index before = vertex == contour.first ? contour.first + contour.count - 1 : vertex - 1;
  const int turn =
      OrientationSign(work.points[before], work.points[vertex], work.points[vertex + 1]);
  const Operands left = work.lefts[chain];
  return turn > 0 ? left ^ work.parities[chain] : left;
}

/// Makes the relative labels absolute.
void PlaceComponents(Workspace& work) {
  const Index count = work.componentLowest.Size();
  work.componentLabels.Resize(count);
  const auto place = [&](Index component, Operands outside) {
    const Index contour = work.componentLowest[component];
    if (!work.hasNodes[contour]) {
      work.loopInsides[contour] = outside ^ work.contours[contour].operand;
      outside = 0;
    } else {
      outside ^= GetLabelBelow(work, contour);
    }
    work.componentLabels[component] = outside;
    return outside;
  };
  Operands any = 0;
  if (count == 1) {
    any = place(0, 0);
  } else if (count > 1) {
    const SlabIndex index(work);
    for (Index i = 0; i < count; ++i) {
      const Index contour = work.componentLowest[i];
      any |= place(i, index.CountBelow(work.points[work.contours[contour].lowest]));
    }
  }
  if (any == 0) return;
  for (Index i = 0; i < work.chains.Size(); ++i) {
    if (work.parities[i] == MERGED) continue;
    work.lefts[i] ^= work.componentLabels[work.components[work.chains[i].contour]];
  }
}

}  // namespace

bool FindLabels(Workspace& work) {
  work.lefts.Fill(work.chains.Size(), UNKNOWN);
  work.components.Fill(work.contours.Size(), NONE);
  work.loopInsides.Fill(work.contours.Size(), 0);
  work.isVisited.Fill(work.nodePoints.Size(), 0);
  work.componentLowest.Clear();
  if (!FindComponents(work)) return false;
  PlaceComponents(work);
  return true;
}

}  // namespace shr::gpc
