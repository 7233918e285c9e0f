// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Segments with a direction: `GLine2` in the plane and `GLine3` in space. An infinite line is a
/// `Line3d`.
///
///     GLine2 edge(Vec2d(0.0, 0.0), Vec2d(3.0, 4.0));
///     double length = edge.GetBegin().Distance(edge.GetEnd());  // 5
///
/// Threads: plain values.

#pragma once

#include "shared/geometry/Vec3.h"

namespace shr {

/// Two points, initially 0. Programs may derive from it.
template <class Point>
class GLine {
public:
  constexpr GLine() = default;
  constexpr GLine(const Point& begin, const Point& end) : begin_(begin), end_(end) {}
  constexpr GLine(const GLine&) = default;
  constexpr GLine& operator=(const GLine&) = default;
  constexpr virtual ~GLine() = default;

  constexpr const Point& GetBegin() const { return begin_; }
  constexpr const Point& GetEnd() const { return end_; }
  constexpr void Set(const Point& begin, const Point& end) {
    begin_ = begin;
    end_ = end;
  }

  /// Exact; a segment differs from its reverse.
  friend constexpr bool operator==(const GLine& a, const GLine& b) {
    return a.begin_ == b.begin_ && a.end_ == b.end_;
  }

  /// Writes "(x, y) - (x, y)"; needs `<ostream>` where it is used.
  template <class Char, class Traits>
  friend std::basic_ostream<Char, Traits>& operator<<(std::basic_ostream<Char, Traits>& out,
                                                      const GLine& line) {
    return out << line.begin_ << " - " << line.end_;
  }

private:
  Point begin_;
  Point end_;
};

using GLine2 = GLine<Vec2d>;
using GLine3 = GLine<Vec3d>;

}  // namespace shr
