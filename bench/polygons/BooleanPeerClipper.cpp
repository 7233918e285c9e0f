// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Clipper 6 works on integers: coordinates are scaled so that the largest just stays below 2^30,
// up to which it multiplies in 64 bits.

#include <algorithm>
#include <polyclipping/clipper.hpp>

#include "bench/polygons/BooleanContender.h"

namespace shr::bench {
namespace {

using ClipperLib::Paths;

double LargestCoordinate(const std::vector<Contours>& polygons) {
  double largest = 0.0;
  for (const Contours& polygon : polygons) {
    for (const auto& contour : polygon) {
      for (const Vec2d& point : contour) {
        largest = std::max({largest, std::abs(point.x), std::abs(point.y)});
      }
    }
  }
  return largest;
}

Paths ToPaths(const std::vector<Contours>& polygons, double scale) {
  Paths paths;
  for (const Contours& polygon : polygons) {
    for (const auto& contour : polygon) {
      ClipperLib::Path& path = paths.emplace_back();
      for (const Vec2d& point : contour) {
        path.emplace_back(std::llround(point.x * scale), std::llround(point.y * scale));
      }
    }
  }
  return paths;
}

ClipperLib::ClipType CodeOf(Operation operation) {
  switch (operation) {
    case Operation::Difference:
      return ClipperLib::ctDifference;
    case Operation::Intersection:
      return ClipperLib::ctIntersection;
    case Operation::Xor:
      return ClipperLib::ctXor;
    default:
      return ClipperLib::ctUnion;
  }
}

class ClipperContender : public BooleanContender {
public:
  void Prepare(const BooleanWork& work) override {
    const double largest = std::max(LargestCoordinate(work.subject), LargestCoordinate(work.clip));
    while (largest * scale_ * 2.0 < 0x1p30) scale_ *= 2.0;
    subject_ = ToPaths(work.subject, scale_);
    clip_ = ToPaths(work.clip, scale_);
  }
  bool Operate(Operation operation) override {
    return Execute(CodeOf(operation), clip_, ClipperLib::pftEvenOdd);
  }
  bool UniteSubject() override { return Execute(ClipperLib::ctUnion, {}, ClipperLib::pftNonZero); }
  bool OffsetSubject(double distance) override {
    result_.clear();
    ClipperLib::ClipperOffset offset(2.0, 0.0025 * distance * scale_);
    offset.AddPaths(subject_, ClipperLib::jtRound, ClipperLib::etClosedPolygon);
    offset.Execute(result_, distance * scale_);
    return true;
  }
  BooleanResult Result() const override {
    BooleanResult result;
    for (const ClipperLib::Path& path : result_) {
      auto& contour = result.contours.emplace_back();
      for (const ClipperLib::IntPoint& point : path) {
        contour.push_back(Vec2d(static_cast<double>(point.X), static_cast<double>(point.Y)) /
                          scale_);
      }
      result.holeFlags.push_back(ClipperLib::Orientation(path) ? 0 : 1);
    }
    return result;
  }

private:
  bool Execute(ClipperLib::ClipType code, const Paths& clip, ClipperLib::PolyFillType rule) {
    result_.clear();
    ClipperLib::Clipper clipper;
    clipper.AddPaths(subject_, ClipperLib::ptSubject, true);
    clipper.AddPaths(clip, ClipperLib::ptClip, true);
    return clipper.Execute(code, result_, rule, rule);
  }

  double scale_ = 1.0;
  Paths subject_, clip_, result_;
};

}  // namespace

std::unique_ptr<BooleanContender> MakeClipperContender() {
  return std::make_unique<ClipperContender>();
}

}  // namespace shr::bench
