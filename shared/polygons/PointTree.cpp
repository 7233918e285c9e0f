// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/PointTree.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace shr {

PointTree::PointTree(std::span<const Vec2d> points)
    : points_(points), order_(points.size()), place_(points.size()), isThere_(points.size(), 1) {
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  if (!points.empty()) Build(0, 0, points.size());
  for (std::size_t i = 0; i < order_.size(); ++i) place_[order_[i]] = i;
}

void PointTree::Build(std::size_t node, std::size_t begin, std::size_t end) {
  if (nodes_.size() <= node) nodes_.resize(node + 1);
  Box2d box;
  for (std::size_t i = begin; i < end; ++i) box.ExtendBy(points_[order_[i]]);
  nodes_[node] = {box, end - begin};
  if (end - begin <= LEAF_SIZE) return;
  // Halves, because ranges far apart may differ by more than a number can hold.
  const bool isWide = box.xMax() / 2 - box.xMin() / 2 >= box.yMax() / 2 - box.yMin() / 2;
  const auto isBefore = [&](std::size_t a, std::size_t b) {
    const Vec2d& p = points_[a];
    const Vec2d& q = points_[b];
    return isWide ? std::tie(p.x, p.y, a) < std::tie(q.x, q.y, b)
                  : std::tie(p.y, p.x, a) < std::tie(q.y, q.x, b);
  };
  const std::size_t middle = Middle(begin, end);
  const auto at = [&](std::size_t i) { return order_.begin() + static_cast<std::ptrdiff_t>(i); };
  std::nth_element(at(begin), at(middle), at(end), isBefore);
  Build(2 * node + 1, begin, middle);
  Build(2 * node + 2, middle, end);
}

void PointTree::Remove(std::size_t index) {
  isThere_[index] = 0;
  std::size_t begin = 0;
  std::size_t end = order_.size();
  for (std::size_t node = 0;;) {
    --nodes_[node].left;
    if (end - begin <= LEAF_SIZE) return;
    const std::size_t middle = Middle(begin, end);
    const bool isLeft = place_[index] < middle;
    node = 2 * node + (isLeft ? 1 : 2);
    (isLeft ? end : begin) = middle;
  }
}

}  // namespace shr
