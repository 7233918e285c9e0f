// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// All crossings of edges on the grid, in a time that no arrangement of them can spoil. For the
/// library's own use.
///
/// The plane is cut into strips by a line through every point, tilted by next to nothing so that it
/// meets one point only; the strips are joined in pairs again and again. The edges that enter a
/// strip come in order. Those that pass all of it without crossing each other are its stairs; each
/// other edge finds its place among the stairs and the stairs that it crosses beside that place,
/// and goes on into the two halves of the strip. An edge that is no stair crosses one or ends in
/// the strip, so the work is O(n log^2 n + k) for n edges and k pairs that cross. Bundles of nearly
/// parallel edges, edges through one point and points on edges are no special cases.
///
/// Source: I. J. Balaban, "An Optimal Algorithm for Finding Segments Intersections", 1995.

#pragma once

#include <algorithm>

#include "shared/polygons/clipper/GpcGrid.h"

namespace shr::gpc {

/// What the search needs to keep, so that its memory can serve again.
struct StripMemory {
  Buffer<Index> list{L"crossing creation"};
  Buffer<Index> aside{L"crossing creation"};
  Buffer<Index> places{L"crossing creation"};
  Buffer<Index> starts{L"crossing creation"};
};

/// Calls `report(a, b)` once for each two edges that cross inside both, with their indices. Edges
/// that only touch, share an end or overlap are no crossing. Requires: edges in order of their left
/// ends, no two equal; points in order, no two equal.
template <class Report>
class StripSearch {
public:
  StripSearch(const Buffer<GridPoint>& points, const Buffer<GridEdge>& edges, StripMemory& memory,
              const Report& report)
      : points_(points),
        edges_(edges),
        list_(memory.list),
        aside_(memory.aside),
        places_(memory.places),
        starts_(memory.starts),
        report_(report) {}

  void Run() {
    if (points_.Size() < 2) return;
    starts_.Fill(points_.Size() + 1, 0);
    for (const GridEdge& edge : edges_) ++starts_[edge.left + 1];
    for (Index i = 0; i < points_.Size(); ++i) starts_[i + 1] += starts_[i];
    list_.Clear();
    PassPoint(0, 0);
    Search(0, points_.Size() - 1, 0);
  }

private:
  /// Which side of a line through a point its edges are asked about.
  enum class Side { Before, Behind };

  /// Turns the edges of the list from `first` on, ordered where they enter the strip between two
  /// points, into those that leave it, in order.
  void Search(Index begin, Index end, Index first) {
    if (end == begin + 1) return SortLeaf(end, first);
    const Index inside = starts_[end] - starts_[begin + 1];
    if (list_.Size() == first && inside == 0) return;
    const Index stairs = SplitOffStairs(end, first);
    const Index middle = begin + (end - begin) / 2;
    Search(begin, middle, first + stairs);
    PassPoint(middle, first + stairs);
    Search(middle, end, first + stairs);
    if (stairs == 0) return;
    for (Index edge = starts_[begin + 1]; edge < starts_[end]; ++edge) {
      CompareWithStairs(edge, FindPlace(edge, first, stairs), end, first, stairs);
    }
    MergeStairs(end, first, stairs);
  }

  /// Sorts the edges that pass a strip without points by where they leave it.
  void SortLeaf(Index end, Index first) {
    Index* list = list_.Data() + first;
    const Index count = list_.Size() - first;
    for (Index i = 1; i < count; ++i) {
      const Index edge = list[i];
      Index j = i;
      for (; j > 0 && Compare(list[j - 1], edge, end, Side::Before) > 0; --j) {
        report_(list[j - 1], edge);
        list[j] = list[j - 1];
      }
      list[j] = edge;
    }
  }

  /// Puts stairs first, in order, and the other edges behind them; compares these with the stairs.
  /// Returns the number of stairs.
  Index SplitOffStairs(Index end, Index first) {
    aside_.Clear();
    places_.Clear();
    Index stairs = 0;
    Index* list = list_.Data() + first;
    const Index count = list_.Size() - first;
    for (Index i = 0; i < count; ++i) {
      const Index edge = list[i];
      if (edges_[edge].right >= end &&
          (stairs == 0 || Compare(list[stairs - 1], edge, end, Side::Before) < 0)) {
        list[stairs++] = edge;
      } else {
        aside_.Append(edge);
        places_.Append(stairs);
      }
    }
    std::copy(aside_.begin(), aside_.end(), list + stairs);
    if (stairs == 0) return 0;
    for (Index i = 0; i < aside_.Size(); ++i) {
      CompareWithStairs(aside_[i], places_[i], end, first, stairs);
    }
    return stairs;
  }

  /// Returns the number of stairs below the left end of an edge that begins in the strip.
  Index FindPlace(Index edge, Index first, Index stairs) const {
    const Index* list = list_.Data() + first;
    const Index* place = std::partition_point(list, list + stairs, [&](Index stair) {
      return Compare(stair, edge, edges_[edge].left, Side::Behind) < 0;
    });
    return static_cast<Index>(place - list);
  }

  /// Reports the stairs that an edge crosses, given its place among them on its left.
  void CompareWithStairs(Index edge, Index place, Index end, Index first, Index stairs) const {
    const Index* list = list_.Data() + first;
    for (Index i = place; i < stairs && CompareAtEnd(edge, list[i], end) > 0; ++i) {
      report_(list[i], edge);
    }
    for (Index i = place; i > 0 && CompareAtEnd(edge, list[i - 1], end) < 0; --i) {
      report_(list[i - 1], edge);
    }
  }

  /// Returns 1 when an edge is above a stair where it ends or leaves the strip.
  int CompareAtEnd(Index edge, Index stair, Index end) const {
    const Index right = edges_[edge].right;
    return right < end ? SideOf(edges_[stair], points_[right])
                       : Compare(edge, stair, end, Side::Before);
  }

  void MergeStairs(Index end, Index first, Index stairs) {
    Index* list = list_.Data() + first;
    aside_.Resize(list_.Size() - first);
    std::merge(list, list + stairs, list + stairs, list_.Data() + list_.Size(), aside_.Data(),
               [&](Index a, Index b) { return Compare(a, b, end, Side::Before) < 0; });
    std::copy(aside_.begin(), aside_.end(), list);
  }

  /// Takes the list across a point: edges that end there go, edges that pass through it change
  /// their order, edges that begin there come.
  void PassPoint(Index point, Index first) {
    const GridPoint& place = points_[point];
    Index* list = list_.Data() + first;
    Index* listEnd = list_.Data() + list_.Size();
    Index* low = std::partition_point(list, listEnd,
                                      [&](Index edge) { return SideOf(edges_[edge], place) > 0; });
    Index* high = std::partition_point(
        low, listEnd, [&](Index edge) { return SideOf(edges_[edge], place) == 0; });
    aside_.Clear();
    for (const Index* edge = low; edge != high; ++edge) {
      if (edges_[*edge].right != point) aside_.Append(*edge);
    }
    for (Index edge = starts_[point]; edge < starts_[point + 1]; ++edge) aside_.Append(edge);
    std::sort(aside_.begin(), aside_.end(), [this](Index a, Index b) {
      const int steepness = CompareSlopes(edges_[a], edges_[b]);
      return steepness != 0 ? steepness < 0 : a < b;
    });
    const auto lowPlace = static_cast<Index>(low - list_.Data());
    const auto tail = static_cast<Index>(listEnd - high);
    const Index size = lowPlace + aside_.Size() + tail;
    const auto highPlace = static_cast<Index>(high - list_.Data());
    list_.Reserve(size);
    std::memmove(list_.Data() + lowPlace + aside_.Size(), list_.Data() + highPlace,
                 tail * sizeof(Index));
    std::copy(aside_.begin(), aside_.end(), list_.Data() + lowPlace);
    list_.Resize(size);
  }

  /// Returns 1 when `a` is above `b` at the tilted line through a point, on one side of it.
  int Compare(Index aIndex, Index bIndex, Index point, Side side) const {
    const GridEdge& a = edges_[aIndex];
    const GridEdge& b = edges_[bIndex];
    const GridPoint& place = points_[point];
    int order = 0;
    if (!a.IsUpright() && !b.IsUpright()) {
      order = CompareAtColumn(a, b, place.x);
      // Above the point the line runs before the column, below it behind.
      if (order == 0) {
        const int level = SideOf(a, place);
        if (level != 0) side = level < 0 ? Side::Before : Side::Behind;
      }
    } else if (!b.IsUpright()) {
      order = SideOf(b, place);
    } else if (!a.IsUpright()) {
      order = -SideOf(a, place);
    }
    if (order != 0) return order;
    const int steepness = CompareSlopes(a, b);
    if (steepness != 0) return side == Side::Behind ? steepness : -steepness;
    return aIndex < bIndex ? -1 : aIndex > bIndex;
  }

  const Buffer<GridPoint>& points_;
  const Buffer<GridEdge>& edges_;
  Buffer<Index>& list_;
  Buffer<Index>& aside_;
  Buffer<Index>& places_;
  Buffer<Index>& starts_;
  const Report& report_;
};

}  // namespace shr::gpc
