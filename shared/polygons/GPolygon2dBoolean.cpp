// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Boolean operations of `GPolygon2d`: one run of the polygon clipper (shared/polygons/clipper),
// whose rule of polygons counts a point as inside an operand when it is inside at least one of its
// polygons. The clipper tells which holes belong to which outer contour.
//
// Clipping to a box goes polygon by polygon, so that polygons that overlap stay apart.

#include <algorithm>

#include "shared/geometry/Box2.h"
#include "shared/polygons/GPolygon2dModel.h"
#include "shared/polygons/clipper/GpcRun.h"
#include "shared/polygons/clipper/OffsetCurve.h"

namespace shr {
namespace {

/// The rings of models as an operand of the clipper.
class RingOperand {
public:
  RingOperand() = default;
  explicit RingOperand(const GPolygon2dModel& model) { Add(model); }

  void Add(const GPolygon2dModel& model) {
    for (std::size_t i = 0; i < model.polygons.size(); ++i) {
      if (model.polygons[i].isFinite) AddPolygon(model, i);
    }
  }
  gpc::Operand Get() const { return {contours_, polygons_}; }

private:
  void AddPolygon(const GPolygon2dModel& model, std::size_t polygon) {
    for (std::size_t i = model.FirstRing(polygon); i < model.polygons[polygon].endRing; ++i) {
      const std::span<const Vec2d> ring = model.Ring(i);
      // The clipper reads operands only.
      contours_.push_back({static_cast<int>(ring.size()), const_cast<Vec2d*>(ring.data())});
      polygons_.push_back(polygonCount_);
    }
    ++polygonCount_;
  }

  std::vector<GpcContour> contours_;
  std::vector<gpc::Index> polygons_;
  gpc::Index polygonCount_ = 0;
};

/// Appends the polygons of a result, each an outer ring before its holes.
void AppendResult(const gpc::Run& run, GPolygon2dModel& model) {
  const std::span<const gpc::ResultContour> contours = run.Contours();
  std::vector<gpc::Index> order;
  order.reserve(contours.size());
  std::size_t size = 0;
  for (const gpc::ResultContour& contour : contours) {
    order.push_back(static_cast<gpc::Index>(order.size()));
    size += contour.count + 1;
  }
  std::stable_sort(order.begin(), order.end(), [&](gpc::Index a, gpc::Index b) {
    if (contours[a].owner != contours[b].owner) return contours[a].owner < contours[b].owner;
    return !contours[a].isHole && contours[b].isHole;
  });
  model.points.reserve(model.points.size() + size);
  for (const gpc::Index i : order) {
    const std::size_t first = model.points.size();
    model.points.resize(first + contours[i].count);
    run.Copy(contours[i], model.points.data() + first);
    model.points.push_back(model.points[first]);
    if (contours[i].isHole) {
      model.EndInnerRing();
    } else {
      model.EndOuterRing();
    }
  }
}

GPolygon2dModel ResultOf(gpc_op operation, const RingOperand& subject, const RingOperand& clip) {
  const gpc::Run run(operation, gpc::Rule::Polygons, subject.Get(), clip.Get(), gpc::Want::Owners);
  GPolygon2dModel result;
  AppendResult(run, result);
  return result;
}

bool IsStrictlyInside(const Box2d& inner, const Box2d& outer) {
  return outer.xMin() < inner.xMin() && inner.xMax() < outer.xMax() &&
         outer.yMin() < inner.yMin() && inner.yMax() < outer.yMax();
}

/// A side of a box: the coordinate that is bounded, the bound, and the direction that is kept.
struct Side {
  double Vec2d::*bounded;
  double Vec2d::*other;
  double bound;
  bool keepsAbove;

  bool Keeps(const Vec2d& point) const {
    return keepsAbove ? point.*bounded >= bound : point.*bounded <= bound;
  }

  /// Returns where the segment meets the bound; weights instead of a difference keep huge numbers
  /// finite.
  Vec2d Crossing(const Vec2d& a, const Vec2d& b) const {
    const double range = b.*bounded / 2.0 - a.*bounded / 2.0;
    const double t = std::clamp((bound / 2.0 - a.*bounded / 2.0) / range, 0.0, 1.0);
    Vec2d point;
    point.*bounded = bound;
    const auto [low, high] = std::minmax(a.*other, b.*other);
    point.*other = std::clamp(a.*other * (1.0 - t) + b.*other * t, low, high);
    return point;
  }

  /// Stores the part of a contour that is kept, with edges along the bound in place of what is not.
  void Clip(std::span<const Vec2d> contour, std::vector<Vec2d>& kept) const {
    kept.clear();
    if (contour.empty()) return;
    Vec2d from = contour.back();
    bool fromIsKept = Keeps(from);
    for (const Vec2d& to : contour) {
      const bool toIsKept = Keeps(to);
      if (toIsKept != fromIsKept) kept.push_back(Crossing(from, to));
      if (toIsKept) kept.push_back(to);
      from = to;
      fromIsKept = toIsKept;
    }
  }
};

/// Appends the part of a polygon inside a box. Its rings are cut by one side after the other (I. E.
/// Sutherland and G. W. Hodgman, "Reentrant Polygon Clipping", 1974), so that what is cut lies on
/// the border to the bit and the clipper sees no coordinate outside, however large; the clipper
/// then takes away edges of no width along the border and finds the parts.
void ClipPolygon(const GPolygon2dModel& model, std::size_t polygon, const Box2d& box,
                 GPolygon2dModel& result) {
  const Side sides[] = {{&Vec2d::x, &Vec2d::y, box.xMin(), true},
                        {&Vec2d::y, &Vec2d::x, box.yMin(), true},
                        {&Vec2d::x, &Vec2d::y, box.xMax(), false},
                        {&Vec2d::y, &Vec2d::x, box.yMax(), false}};
  GPolygon2dModel inside;
  std::vector<Vec2d> contour;
  std::vector<Vec2d> next;
  for (std::size_t i = model.FirstRing(polygon); i < model.polygons[polygon].endRing; ++i) {
    contour.assign(model.Ring(i).begin(), model.Ring(i).end());
    for (const Side& side : sides) {
      side.Clip(contour, next);
      contour.swap(next);
    }
    inside.points.insert(inside.points.end(), contour.begin(), contour.end());
    if (i == model.FirstRing(polygon)) {
      inside.EndOuterRing();
    } else {
      inside.EndInnerRing();
    }
  }
  result.Append(Combine(inside, GPolygon2dModel(), GPC_UNION));
}

}  // namespace

GPolygon2dModel ClipToBox(const GPolygon2dModel& model, const Box2d& box) {
  GPolygon2dModel result;
  for (std::size_t polygon = 0; polygon < model.polygons.size(); ++polygon) {
    const GPolygon2dModel::Polygon& source = model.polygons[polygon];
    Box2d common = source.box;
    common.Intersect(box);
    if (!source.isFinite || common.IsEmpty()) continue;
    if (IsStrictlyInside(source.box, box)) {
      result.AddPolygon(model, polygon);
    } else {
      ClipPolygon(model, polygon, common, result);
    }
  }
  return result;
}

GPolygon2dModel Combine(const GPolygon2dModel& a, const GPolygon2dModel& b, gpc_op operation) {
  return ResultOf(operation, RingOperand(a), RingOperand(b));
}

GPolygon2dModel OffsetModel(const GPolygon2dModel& model, double distance,
                            const OffsetOptions& options) {
  OffsetCurve curve(distance, options);
  const GPolygon2dModel clean = ResultOf(GPC_UNION, RingOperand(model), RingOperand());
  for (std::size_t ring = 0; ring < clean.ringEnds.size(); ++ring) {
    const std::span<const Vec2d> points = clean.Ring(ring);
    curve.Add(points.first(points.size() - 1));
  }
  const gpc::Run run(GPC_UNION, gpc::Rule::Negative, {curve.Contours(), {}}, {}, gpc::Want::Owners);
  GPolygon2dModel result;
  AppendResult(run, result);
  return result;
}

GPolygon2dModel UniteModels(std::span<const GPolygon2dModel* const> models) {
  RingOperand all;
  for (const GPolygon2dModel* model : models) all.Add(*model);
  return ResultOf(GPC_UNION, all, RingOperand());
}

}  // namespace shr
