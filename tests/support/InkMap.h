// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// How much of each pixel is ink, from 0 to 1: of outlines filled by the non-zero rule, or of a
/// picture, and how far two of them agree. Slow and simple: it is what drawing is compared with.
///
///     InkMap expected(400, 100);
///     expected.Fill(outline, [](const OutlinePoint& p) { return Vec2d(40 * p.x, 60 - 40 * p.y);
///     }); EXPECT_GT(expected.Overlap(drawn), 0.9);

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "shared/fonts/FaceInfo.h"
#include "shared/geometry/Vec2.h"

namespace shr::test {

class InkMap {
public:
  InkMap(int width, int height)
      : width_(width),
        height_(height),
        ink_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

  int Width() const { return width_; }
  int Height() const { return height_; }
  double& At(int x, int y) { return ink_[Index(x, y)]; }
  double At(int x, int y) const { return ink_[Index(x, y)]; }

  double Sum() const {
    double sum = 0;
    for (const double ink : ink_) sum += ink;
    return sum;
  }

  /// Adds an outline whose points `place` takes to pixels, y downwards.
  template <typename Place>
  void Fill(const GlyphOutline& outline, Place place) {
    const std::vector<Edge> edges = Flatten(outline, place);
    double top = height_, bottom = 0;
    for (const Edge& edge : edges) {
      top = std::min({top, edge.from.y, edge.to.y});
      bottom = std::max({bottom, edge.from.y, edge.to.y});
    }
    const int first = static_cast<int>(std::max(top, 0.0) * ROWS_PER_PIXEL);
    const int end = static_cast<int>(std::min<double>(bottom + 1, height_) * ROWS_PER_PIXEL);
    for (int row = first; row < end; ++row) FillRow(edges, row);
  }

  /// Returns the ink that both have as a part of the ink that one of them has, 1 where there is
  /// none. Requires: the same sizes.
  double Overlap(const InkMap& other) const {
    double both = 0, any = 0;
    for (std::size_t i = 0; i < ink_.size(); ++i) {
      both += std::min(ink_[i], other.ink_[i]);
      any += std::max(ink_[i], other.ink_[i]);
    }
    return any == 0 ? 1 : both / any;
  }

private:
  static constexpr int ROWS_PER_PIXEL = 16;
  static constexpr int PIECES_PER_CURVE = 16;

  struct Edge {
    Vec2d from, to;
  };
  struct Crossing {
    double x;
    int winding;
    bool operator<(const Crossing& other) const { return x < other.x; }
  };

  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
           static_cast<std::size_t>(x);
  }

  template <typename Place>
  static std::vector<Edge> Flatten(const GlyphOutline& outline, Place place) {
    std::vector<Edge> edges;
    Vec2d first, last;
    const auto lineTo = [&](const Vec2d& to) {
      edges.push_back({last, to});
      last = to;
    };
    const OutlinePoint* at = outline.points.data();
    for (const OutlineVerb verb : outline.verbs) {
      switch (verb) {
        case OutlineVerb::Move:
          first = last = place(*at++);
          break;
        case OutlineVerb::Line:
          lineTo(place(*at++));
          break;
        case OutlineVerb::Quadratic:
        case OutlineVerb::Cubic: {
          const bool isCubic = verb == OutlineVerb::Cubic;
          const Vec2d begin = last, control = place(at[0]);
          const Vec2d second = isCubic ? place(at[1]) : control;
          const Vec2d end = place(at[isCubic ? 2 : 1]);
          for (int i = 1; i <= PIECES_PER_CURVE; ++i) {
            const double t = static_cast<double>(i) / PIECES_PER_CURVE;
            const Vec2d a = begin.Lerp(control, t), c = second.Lerp(end, t);
            const Vec2d b = control.Lerp(second, t);
            lineTo(isCubic ? a.Lerp(b, t).Lerp(b.Lerp(c, t), t) : a.Lerp(c, t));
          }
          at += isCubic ? 3 : 2;
          break;
        }
        case OutlineVerb::Close:
          lineTo(first);
          break;
      }
    }
    return edges;
  }

  void FillRow(const std::vector<Edge>& edges, int row) {
    const double y = (row + 0.5) / ROWS_PER_PIXEL;
    std::vector<Crossing> crossings;
    for (const Edge& edge : edges) {
      if ((edge.from.y <= y) == (edge.to.y <= y)) continue;
      const double t = (y - edge.from.y) / (edge.to.y - edge.from.y);
      crossings.push_back({edge.from.Lerp(edge.to, t).x, edge.from.y <= y ? 1 : -1});
    }
    std::sort(crossings.begin(), crossings.end());
    int winding = 0;
    for (std::size_t i = 0; i + 1 < crossings.size(); ++i) {
      winding += crossings[i].winding;
      if (winding != 0) AddSpan(row / ROWS_PER_PIXEL, crossings[i].x, crossings[i + 1].x);
    }
  }

  void AddSpan(int y, double begin, double end) {
    const int first = std::max(0, static_cast<int>(std::floor(begin)));
    for (int x = first; x < std::min<double>(width_, end); ++x) {
      const double covered = std::min(end, x + 1.0) - std::max<double>(begin, x);
      double& ink = ink_[Index(x, y)];
      ink = std::min(1.0, ink + std::max(0.0, covered) / ROWS_PER_PIXEL);
    }
  }

  int width_, height_;
  std::vector<double> ink_;
};

}  // namespace shr::test
