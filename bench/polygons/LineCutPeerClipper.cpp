// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Clipper 6 works on integers: coordinates are scaled to stay below 2^30.

#include <cmath>
#include <polyclipping/clipper.hpp>

#include "bench/polygons/LineCutContender.h"

namespace shr::bench {
namespace {

constexpr double SCALE = 0x1p20 - 1.0;  // the map is 1000 wide

ClipperLib::Path ToPath(const Points& points) {
  ClipperLib::Path path;
  for (const Vec2d& point : points) {
    path.emplace_back(std::llround(point.x * SCALE), std::llround(point.y * SCALE));
  }
  return path;
}

double LengthOf(const ClipperLib::Paths& paths) {
  double length = 0.0;
  for (const ClipperLib::Path& path : paths) {
    for (std::size_t i = 1; i < path.size(); ++i) {
      length += std::hypot(static_cast<double>(path[i].X - path[i - 1].X),
                           static_cast<double>(path[i].Y - path[i - 1].Y));
    }
  }
  return length / SCALE;
}

class ClipperLineCutter : public LineCutter {
public:
  void Prepare(const std::vector<Points>& lines, const Points& polygon) override {
    for (const Points& line : lines) lines_.push_back(ToPath(line));
    polygon_ = ToPath(polygon);
  }
  void Cut() override {
    Cut(ClipperLib::ctIntersection, inside_);
    Cut(ClipperLib::ctDifference, outside_);
  }
  LineLengths Lengths() const override { return {LengthOf(inside_), LengthOf(outside_)}; }

private:
  void Cut(ClipperLib::ClipType code, ClipperLib::Paths& pieces) const {
    ClipperLib::Clipper clipper;
    clipper.AddPaths(lines_, ClipperLib::ptSubject, false);
    clipper.AddPath(polygon_, ClipperLib::ptClip, true);
    ClipperLib::PolyTree tree;
    clipper.Execute(code, tree, ClipperLib::pftEvenOdd, ClipperLib::pftEvenOdd);
    ClipperLib::OpenPathsFromPolyTree(tree, pieces);
  }

  ClipperLib::Paths lines_;
  ClipperLib::Path polygon_;
  ClipperLib::Paths inside_, outside_;
};

}  // namespace

std::unique_ptr<LineCutter> MakeClipperLineCutter() {
  return std::make_unique<ClipperLineCutter>();
}

}  // namespace shr::bench
