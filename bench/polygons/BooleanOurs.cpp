// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <optional>

#include "bench/polygons/BooleanContender.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/MultiPolygon.h"
#include "tests/polygons/GpcTestSupport.h"

namespace shr::bench {
namespace {

Contours Join(const std::vector<Contours>& polygons) {
  Contours contours;
  for (const Contours& polygon : polygons) {
    contours.insert(contours.end(), polygon.begin(), polygon.end());
  }
  return contours;
}

class OurContender : public BooleanContender {
public:
  void Prepare(const BooleanWork& work) override {
    subject_.emplace(Join(work.subject));
    clip_.emplace(Join(work.clip));
  }
  bool Operate(Operation operation) override {
    gpc_free_polygon(result_.record);
    gpc_polygon_clip(static_cast<gpc_op>(operation), subject_->Record(), clip_->Record(),
                     result_.record);
    return true;
  }
  /// By the even-odd rule; the polygons of the workloads share edges, but do not overlap.
  bool UniteSubject() override {
    gpc_free_polygon(result_.record);
    gpc_polygon_clip(GPC_UNION, subject_->Record(), GpcPolygon{}, result_.record);
    return true;
  }
  BooleanResult Result() const override { return result_.Copy(); }

private:
  std::optional<test::GpcOperand> subject_, clip_;
  test::GpcResult result_;
};

}  // namespace

std::unique_ptr<BooleanContender> MakeOurContender() {
  return std::make_unique<OurContender>();
}

std::vector<Contours> ValidPolygons(const Contours& contours) {
  GPolygon polygon;
  for (const auto& contour : contours) polygon.AddContours(GPolygon(contour));
  polygon.Union(GPolygon());
  MultiPolygon2d model;
  polygon.GetMultiPolygon(model);
  const auto open = [](const Ring2d& ring) {
    return std::vector<Vec2d>(ring.begin(), ring.end() - 1);
  };
  std::vector<Contours> polygons;
  for (const Polygon2d& part : model) {
    Contours& rings = polygons.emplace_back();
    rings.push_back(open(part.outer()));
    for (const Ring2d& hole : part.inners()) rings.push_back(open(hole));
  }
  return polygons;
}

}  // namespace shr::bench
