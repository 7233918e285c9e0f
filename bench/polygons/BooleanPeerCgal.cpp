// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// CGAL computes with exact numbers. Its polygon sets are built outside the timed part. Its headers
// are not installed but unpacked by tools/bench.sh; without them there is no such contender.

#include "bench/polygons/BooleanContender.h"

#if __has_include(<CGAL/Polygon_set_2.h>)

#include <CGAL/Exact_predicates_exact_constructions_kernel.h>
#include <CGAL/Polygon_set_2.h>

#include <iterator>
#include <list>

namespace shr::bench {
namespace {

using Kernel = CGAL::Exact_predicates_exact_constructions_kernel;
using Ring = CGAL::Polygon_2<Kernel>;
using Polygon = CGAL::Polygon_with_holes_2<Kernel>;
using PolygonSet = CGAL::Polygon_set_2<Kernel>;

Ring ToRing(const std::vector<Vec2d>& contour, CGAL::Orientation orientation) {
  Ring ring;
  for (const Vec2d& point : contour) ring.push_back(Kernel::Point_2(point.x, point.y));
  if (ring.orientation() != orientation) ring.reverse_orientation();
  return ring;
}

std::vector<Polygon> ToPolygons(const std::vector<Contours>& polygons) {
  std::vector<Polygon> result;
  for (const Contours& contours : polygons) {
    Polygon polygon(ToRing(contours.front(), CGAL::COUNTERCLOCKWISE));
    for (std::size_t i = 1; i < contours.size(); ++i) {
      polygon.add_hole(ToRing(contours[i], CGAL::CLOCKWISE));
    }
    result.push_back(std::move(polygon));
  }
  return result;
}

std::vector<Vec2d> ToContour(const Ring& ring) {
  std::vector<Vec2d> contour;
  for (const auto& point : ring.vertices()) {
    contour.emplace_back(CGAL::to_double(point.x()), CGAL::to_double(point.y()));
  }
  return contour;
}

class CgalContender : public BooleanContender {
public:
  void Prepare(const BooleanWork& work) override {
    polygons_ = ToPolygons(work.subject);
    subject_.join(polygons_.begin(), polygons_.end());
    const std::vector<Polygon> clip = ToPolygons(work.clip);
    clip_.join(clip.begin(), clip.end());
  }
  bool Operate(Operation operation) override {
    result_.clear();
    switch (operation) {
      case Operation::Difference:
        result_.difference(subject_, clip_);
        break;
      case Operation::Intersection:
        result_.intersection(subject_, clip_);
        break;
      case Operation::Xor:
        result_.symmetric_difference(subject_, clip_);
        break;
      default:
        result_.join(subject_, clip_);
    }
    return true;
  }
  bool UniteSubject() override {
    result_.clear();
    result_.join(polygons_.begin(), polygons_.end());
    return true;
  }
  BooleanResult Result() const override {
    std::list<Polygon> polygons;
    result_.polygons_with_holes(std::back_inserter(polygons));
    std::vector<Contours> contours;
    for (const Polygon& polygon : polygons) {
      Contours& added = contours.emplace_back();
      added.push_back(ToContour(polygon.outer_boundary()));
      for (const Ring& hole : polygon.holes()) added.push_back(ToContour(hole));
    }
    return Flatten(contours);
  }

private:
  std::vector<Polygon> polygons_;
  PolygonSet subject_, clip_, result_;
};

}  // namespace

std::unique_ptr<BooleanContender> MakeCgalContender() {
  return std::make_unique<CgalContender>();
}

}  // namespace shr::bench

#else

std::unique_ptr<shr::bench::BooleanContender> shr::bench::MakeCgalContender() {
  return nullptr;
}

#endif
