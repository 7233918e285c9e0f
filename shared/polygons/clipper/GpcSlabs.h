// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Which edges lie below a point: an index of upright slabs over the sections of the contours. For
/// the library's own use.
///
///     const SlabIndex index(work);
///     index.ForEachBelow(point, [&](const Section& section, int turns) { ... });
///
/// Threads: reads and fills the workspace of its call.

#pragma once

#include <algorithm>
#include <cmath>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/clipper/GpcWorkspace.h"

namespace shr::gpc {

/// The sections that meet each of a row of upright slabs of equal width.
class SlabIndex {
public:
  explicit SlabIndex(Workspace& work);

  /// Calls `handle` with each section that has edges below a point, and with 1 when they run to the
  /// right on balance, -1 when to the left.
  template <class Handle>
  void ForEachBelow(const Vec2d& point, const Handle& handle) const {
    ForEachSection(point, [&](const Section& section) {
      if (const int turns = CountBelow(section, point); turns != 0) handle(section, turns);
    });
  }

  /// Calls `handle` with each section that may have edges below a point.
  template <class Handle>
  void ForEachSection(const Vec2d& point, const Handle& handle) const {
    const Index slab = GetSlab(point.x);
    for (Index i = work_.slabStarts[slab]; i < work_.slabStarts[slab + 1]; ++i) {
      const Section& section = work_.sections[work_.slabSections[i]];
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
  int CountBelow(const Section& section, const Vec2d& point) const;
  void Distribute();

  Workspace& work_;
  double low_;
  double scale_;
  Index slabCount_;
};

}  // namespace shr::gpc
