// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A tree over fixed points of which some are taken out again, to find those in a box. Not
/// installed.
///
///     PointTree tree(points);
///     tree.Remove(3);
///     std::size_t found = tree.FindIn(box, [](std::size_t index) { return index != 7; });
///
/// Threads: const calls may run together.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"

namespace shr {

/// A k-d tree whose nodes halve their points along the longer side of their bounds and know how
/// many are left. Cost: O(n log n) to build, O(log n) to remove; a search visits the leaves that
/// the box meets and that hold a point, so clusters do not slow it.
/// Source: J. L. Bentley, "Multidimensional Binary Search Trees Used for Associative Searching",
/// 1975.
class PointTree {
public:
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

  /// Requires: the points outlive the tree and are finite.
  explicit PointTree(std::span<const Vec2d> points);

  /// Takes a point out that is still there.
  void Remove(std::size_t index);

  bool Contains(std::size_t index) const { return isThere_[index] != 0; }

  /// Returns the index of a point in the box, sides included, that is there and for which `accept`
  /// returns true; NONE when there is no such point.
  template <class Accept>
  std::size_t FindIn(const Box2d& box, Accept accept) const {
    return order_.empty() ? NONE : FindBelow(0, 0, order_.size(), box, accept);
  }

private:
  struct Node {
    Box2d box;
    std::size_t left = 0;  ///< points that are still there
  };
  /// Points of a node that is not split any more.
  static constexpr std::size_t LEAF_SIZE = 8;

  static bool Meet(const Box2d& a, const Box2d& b) {
    return a.xMin() <= b.xMax() && b.xMin() <= a.xMax() && a.yMin() <= b.yMax() &&
           b.yMin() <= a.yMax();
  }
  static std::size_t Middle(std::size_t begin, std::size_t end) {
    return begin + (end - begin) / 2;
  }

  void Build(std::size_t node, std::size_t begin, std::size_t end);

  template <class Accept>
  std::size_t FindBelow(std::size_t node, std::size_t begin, std::size_t end, const Box2d& box,
                        Accept& accept) const {
    if (nodes_[node].left == 0 || !Meet(nodes_[node].box, box)) return NONE;
    if (end - begin <= LEAF_SIZE) return FindInLeaf(begin, end, box, accept);
    const std::size_t middle = Middle(begin, end);
    const std::size_t found = FindBelow(2 * node + 1, begin, middle, box, accept);
    return found != NONE ? found : FindBelow(2 * node + 2, middle, end, box, accept);
  }

  template <class Accept>
  std::size_t FindInLeaf(std::size_t begin, std::size_t end, const Box2d& box,
                         Accept& accept) const {
    for (std::size_t i = begin; i < end; ++i) {
      const std::size_t index = order_[i];
      const Vec2d& at = points_[index];
      const bool isInBox =
          box.xMin() <= at.x && at.x <= box.xMax() && box.yMin() <= at.y && at.y <= box.yMax();
      if (isInBox && Contains(index) && accept(index)) return index;
    }
    return NONE;
  }

  std::span<const Vec2d> points_;
  std::vector<std::size_t> order_;  ///< indices of points, those of a node side by side
  std::vector<std::size_t> place_;  ///< of each point, its place in `order_`
  std::vector<std::uint8_t> isThere_;
  std::vector<Node> nodes_;  ///< the children of node n are 2n + 1 and 2n + 2
};

}  // namespace shr
