// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Which edges lie below a point: an index of upright slabs over the sections of the contours. For
/// the library's own use.
///
///     SlabIndex index;
///     index.Build(input);
///     index.ForEachBelow(input, point, [&](const Section& section, int turns) { ... });
///
/// Threads: const calls may run together.

#pragma once

#include <algorithm>
#include <cmath>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcInput.h"

namespace shr::gpc {

/// The sections that meet each of a row of upright slabs of equal width.
class SlabIndex {
public:
  /// Replaces the index by one of the present sections of the input, which has to be the same in
  /// the calls below.
  void Build(const Input& input);

  /// Calls `handle` with each section that has edges below a point, and with 1 when they run to the
  /// right on balance, -1 when to the left.
  template <class Handle>
  void ForEachBelow(const Input& input, const Vec2d& point, const Handle& handle) const {
    ForEachSection(input, point, [&](const Section& section) {
      if (const int turns = CountBelow(input, section, point); turns != 0) handle(section, turns);
    });
  }

  /// Calls `handle` with each section that may have edges below a point.
  template <class Handle>
  void ForEachSection(const Input& input, const Vec2d& point, const Handle& handle) const {
    const Index slab = GetSlab(point.x);
    for (Index i = starts_[slab]; i < starts_[slab + 1]; ++i) {
      const Section& section = input.sections[sections_[i]];
      const Box& box = section.box;
      if (box.xMin <= point.x && box.xMax > point.x && box.yMin < point.y) handle(section);
    }
  }

  /// Returns true when the edge from a to b is strictly below a point and spans its x. An edge
  /// spans the x of its left end, not that of its right one.
  static bool IsBelow(const Vec2d& a, const Vec2d& b, const Vec2d& point) {
    if ((a.x <= point.x) == (b.x <= point.x)) return false;
    const int side = OrientationSign(a, b, point);
    return a.x < b.x ? side > 0 : side < 0;
  }

private:
  Index GetSlab(double x) const {
    const double slab = (x - low_) * scale_;
    return slab < slabCount_ ? static_cast<Index>(slab) : slabCount_ - 1;
  }
  static int CountBelow(const Input& input, const Section& section, const Vec2d& point);
  void Distribute(const Input& input);

  Buffer<Index> starts_{L"index creation"};
  Buffer<Index> sections_{L"index creation"};
  double low_ = 0.0;
  double scale_ = 0.0;
  Index slabCount_ = 0;
};

}  // namespace shr::gpc
