// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The clipper behind the types of the oracle.
///
///     BooleanResult result = OperateByGpc(Operation::Union, subject, clip);

#pragma once

#include <cmath>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/Gpc.h"
#include "tests/polygons/BooleanChecks.h"

namespace shr::test {

/// A polygon record over points of its own; nothing in it came from the clipper's allocation.
class GpcOperand {
public:
  explicit GpcOperand(Contours contours)
      : points_(std::move(contours)), holeFlags_(points_.size(), 0) {
    for (auto& contour : points_) {
      contours_.push_back({static_cast<int>(contour.size()), contour.data()});
    }
    record_ = {static_cast<int>(points_.size()), holeFlags_.data(), contours_.data()};
  }
  GpcOperand(const GpcOperand&) = delete;
  GpcOperand& operator=(const GpcOperand&) = delete;

  const GpcPolygon& Record() const { return record_; }

private:
  Contours points_;
  std::vector<int> holeFlags_;
  std::vector<GpcContour> contours_;
  GpcPolygon record_{};
};

/// A record that the clipper fills and that is freed with this.
struct GpcResult {
  GpcResult() = default;
  GpcResult(const GpcResult&) = delete;
  GpcResult& operator=(const GpcResult&) = delete;
  ~GpcResult() { gpc_free_polygon(record); }

  BooleanResult Copy() const {
    BooleanResult copy;
    for (int i = 0; i < record.contourCount; ++i) {
      const GpcContour& contour = record.contours[i];
      copy.contours.emplace_back(contour.vertices, contour.vertices + contour.vertexCount);
      copy.holeFlags.push_back(record.holeFlags[i]);
    }
    return copy;
  }

  GpcPolygon record{};
};

/// Returns the sum of the areas of all triangles. Triangles that overlapped would have a larger one
/// than their area, gaps a smaller one.
inline double AreaOfStrips(const GpcTristrip& strips) {
  double area = 0.0;
  for (int i = 0; i < strips.stripCount; ++i) {
    const Vec2d* points = strips.strips[i].vertices;
    for (int j = 2; j < strips.strips[i].vertexCount; ++j) {
      area += std::abs(PolygonArea(points + j - 2, 3));
    }
  }
  return area;
}

inline BooleanResult OperateByGpc(Operation operation, const Contours& subject,
                                  const Contours& clip) {
  GpcResult result;
  gpc_polygon_clip(static_cast<gpc_op>(operation), GpcOperand(subject).Record(),
                   GpcOperand(clip).Record(), result.record);
  return result.Copy();
}

}  // namespace shr::test
