// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <optional>

#include "bench/polygons/BooleanContender.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "tests/polygons/GPolygon2dTestSupport.h"
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

GPolygon2d ToGPolygon2d(const std::vector<Contours>& polygons) {
  MultiPolygon2d model;
  for (const Contours& polygon : polygons) {
    Polygon2d& part = model.emplace_back();
    part.outer().assign(polygon.front().begin(), polygon.front().end());
    for (std::size_t i = 1; i < polygon.size(); ++i) {
      part.inners().emplace_back().assign(polygon[i].begin(), polygon[i].end());
    }
  }
  return GPolygon2d(model);
}

class GPolygon2dContender : public BooleanContender {
public:
  void Prepare(const BooleanWork& work) override {
    subject_ = ToGPolygon2d(work.subject);
    clip_ = ToGPolygon2d(work.clip);
    polygons_.clear();
    for (const Contours& polygon : work.subject) polygons_.push_back(ToGPolygon2d({polygon}));
  }
  bool Operate(Operation operation) override {
    switch (operation) {
      case Operation::Difference:
        subject_.Difference(clip_, result_);
        break;
      case Operation::Intersection:
        subject_.Intersection(clip_, result_);
        break;
      case Operation::Xor:
        subject_.XOR(clip_, result_);
        break;
      default:
        subject_.Union(clip_, result_);
    }
    return true;
  }
  bool UniteSubject() override {
    result_ = GPolygon2d::Unite(polygons_);
    return true;
  }
  BooleanResult Result() const override { return test::ResultOf(result_); }

private:
  GPolygon2d subject_, clip_, result_;
  std::vector<GPolygon2d> polygons_;
};

class GPolygonContender : public BooleanContender {
public:
  void Prepare(const BooleanWork& work) override {
    for (const Contours& polygon : work.subject) {
      for (const auto& contour : polygon) subject_.AddContours(GPolygon(contour));
    }
  }
  bool Operate(Operation) override { return false; }
  bool UniteSubject() override { return false; }
  bool OffsetSubject(double distance) override {
    subject_.Offset(distance, {}, result_);
    return true;
  }
  BooleanResult Result() const override { return test::ResultOf(GPolygon2dOf(result_)); }

private:
  static GPolygon2d GPolygon2dOf(const GPolygon& polygon) {
    MultiPolygon2d model;
    polygon.GetMultiPolygon(model);
    return GPolygon2d(model);
  }

  GPolygon subject_, result_;
};

}  // namespace

std::unique_ptr<BooleanContender> MakeOurContender() {
  return std::make_unique<OurContender>();
}

std::unique_ptr<BooleanContender> MakeGPolygon2dContender() {
  return std::make_unique<GPolygon2dContender>();
}

std::unique_ptr<BooleanContender> MakeGPolygonContender() {
  return std::make_unique<GPolygonContender>();
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
