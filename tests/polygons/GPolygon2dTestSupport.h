// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The boolean operations of `GPolygon2d` behind the types of the oracle.
///
///     BooleanJudge judge(PolygonsOf(subject), PolygonsOf(clip));
///     judge.Judge(operation, OperateByGPolygon2d(operation, subject, clip));

#pragma once

#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/MultiPolygon.h"
#include "tests/polygons/BooleanChecks.h"

namespace shr::test {

/// Returns the region of a `GPolygon2d` that is made of the contours: each is a polygon of its own.
inline Region PolygonsOf(const Contours& contours) {
  Region region;
  for (const auto& contour : contours) region.polygons.push_back({contour});
  return region;
}

inline GPolygon2d MakeGPolygon2d(const Contours& contours) {
  GPolygon2d polygon;
  for (const auto& contour : contours) polygon.AddContours(GPolygon2d(contour));
  return polygon;
}

/// Returns the rings without their closing points.
inline BooleanResult ResultOf(const GPolygon2d& polygon) {
  MultiPolygon2d model;
  polygon.GetMultiPolygon(model);
  BooleanResult result;
  const auto add = [&result](const Ring2d& ring, int holeFlag) {
    result.contours.emplace_back(ring.begin(), ring.end() - (ring.empty() ? 0 : 1));
    result.holeFlags.push_back(holeFlag);
  };
  for (const Polygon2d& part : model) {
    add(part.outer(), 0);
    for (const Ring2d& hole : part.inners()) add(hole, 1);
  }
  return result;
}

inline BooleanResult OperateByGPolygon2d(Operation operation, const Contours& subject,
                                         const Contours& clip) {
  const GPolygon2d a = MakeGPolygon2d(subject);
  const GPolygon2d b = MakeGPolygon2d(clip);
  GPolygon2d result;
  switch (operation) {
    case Operation::Difference:
      a.Difference(b, result);
      break;
    case Operation::Intersection:
      a.Intersection(b, result);
      break;
    case Operation::Xor:
      a.XOR(b, result);
      break;
    default:
      a.Union(b, result);
  }
  return ResultOf(result);
}

}  // namespace shr::test
