// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// One face for the boolean operations of this library and its peers, for benchmarks and second
/// opinions.
///
///     auto contender = MakeGeosContender();
///     contender->Prepare(work);                       // conversions, not timed
///     contender->Operate(Operation::Union);           // timed; keeps the result
///     double area = AreaOf(contender->Result());

#pragma once

#include <cmath>
#include <memory>
#include <vector>

#include "shared/polygons/FlatPolygon.h"
#include "tests/polygons/BooleanChecks.h"

namespace shr::bench {

using test::BooleanResult;
using test::Contours;
using test::Operation;

/// Polygons, each an outer contour and its holes. Those of an operand neither cross nor overlap
/// each other unless a workload says so.
struct BooleanWork {
  std::vector<Contours> subject;
  std::vector<Contours> clip;
};

class BooleanContender {
public:
  BooleanContender() = default;
  BooleanContender(const BooleanContender&) = delete;
  BooleanContender& operator=(const BooleanContender&) = delete;
  virtual ~BooleanContender() = default;

  virtual void Prepare(const BooleanWork& work) = 0;
  /// Returns false when the library gives up. The result of the call before is freed.
  virtual bool Operate(Operation operation) = 0;
  /// Unites all polygons of the subject, which may overlap.
  virtual bool UniteSubject() = 0;
  /// Grows the subject with round joins, whose arcs lie at most 0.25 % of the distance inside the
  /// true ones. Returns false where the contender has no such function.
  virtual bool OffsetSubject(double) { return false; }
  virtual BooleanResult Result() const = 0;
};

/// The clipper, by the even-odd rule over all contours of an operand.
std::unique_ptr<BooleanContender> MakeOurContender();
std::unique_ptr<BooleanContender> MakeGPolygon2dContender();
/// `GPolygon`, for the offset alone.
std::unique_ptr<BooleanContender> MakeGPolygonContender();
std::unique_ptr<BooleanContender> MakeBoostContender();
std::unique_ptr<BooleanContender> MakeGeosContender();
std::unique_ptr<BooleanContender> MakeClipperContender();
std::unique_ptr<BooleanContender> MakeCgalContender();

/// Returns the region of any contours by the even-odd rule as polygons that neither cross nor
/// overlap, for peers that need such. Our clipper makes them.
std::vector<Contours> ValidPolygons(const Contours& contours);

/// Returns polygons, each an outer contour and its holes, as one list of contours with flags.
inline BooleanResult Flatten(const std::vector<Contours>& polygons) {
  BooleanResult result;
  for (const Contours& polygon : polygons) {
    for (std::size_t i = 0; i < polygon.size(); ++i) {
      result.contours.push_back(polygon[i]);
      result.holeFlags.push_back(i > 0 ? 1 : 0);
    }
  }
  return result;
}

inline double AreaOf(const BooleanResult& result) {
  double area = 0.0;
  for (std::size_t i = 0; i < result.contours.size(); ++i) {
    const double part = std::abs(PolygonArea(result.contours[i]));
    area += result.holeFlags[i] != 0 ? -part : part;
  }
  return area;
}

}  // namespace shr::bench
