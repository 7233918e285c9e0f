// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Boolean operations of `GPolygon2d`: Boost.Geometry's overlay under the eyes of the polygon
// clipper.
//
// The overlay expects polygons that neither overlap nor cross themselves, and even of those that
// touch or nearly coincide it makes wrong results now and then: it takes a polygon beside a copy
// that is shifted by a rounding error for another one apart, or drops a part. Its errors are
// consistent with each other, area(A) + area(B) = area(A or B) + area(A and B) included, so that
// only an independent result tells. That is the clipper's:
//
// 1. Each polygon of an operand is cleaned by the clipper under the even-odd rule, then all of them
//    together. When the second area is the sum of the first ones, no polygons overlap (the even-odd
//    rule leaves out what two of them share); otherwise they are united. The overlay gets the
//    polygons as they are when their rings have the area of what is clean, and what is clean when
//    not.
// 2. The operation is done by both. Where the area that is in one of the results only is next to
//    none, the overlay's is kept, otherwise the clipper's.

#include <cmath>
#include <utility>

#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2dModel.h"
#include "shared/polygons/MultiPolygon.h"

namespace shr {
namespace {

/// How far areas may differ, relative to those of the operands.
constexpr double AREA_TOLERANCE = 1e-10;
/// The same for areas of one operand.
constexpr double OVERLAP_TOLERANCE = 1e-13;

/// An operand in the form of both engines, its polygons apart from each other.
struct Operand {
  GPolygon contours;
  GPolygon2dModel model;
  double area = 0.0;
};

/// Returns the area of contours as the clipper leaves them: holes run against outer contours.
double AreaOf(const GPolygon& clean) {
  double area = 0.0;
  for (std::size_t i = 0; i < clean.GetNumContours(); ++i) {
    area -= PolygonArea(clean.GetContour(i));
  }
  return area;
}

double AreaOf(const GPolygon2dModel& model) {
  double area = 0.0;
  for (std::size_t ring = 0; ring < model.ringEnds.size(); ++ring) {
    area -= PolygonArea(model.Ring(ring));
  }
  return area;
}

bool IsNear(double area, double other) {
  return std::abs(area - other) <= OVERLAP_TOLERANCE * other;
}

GPolygon ContoursOf(const GPolygon2dModel& model, std::size_t firstRing, std::size_t endRing) {
  std::vector<unsigned int> counts;
  for (std::size_t ring = firstRing; ring < endRing; ++ring) {
    counts.push_back(static_cast<unsigned int>(model.Ring(ring).size()));
  }
  return GPolygon(std::span(model.points).subspan(model.FirstPoint(firstRing)), counts);
}

GPolygon Cleaned(const GPolygon& contours) {
  GPolygon clean;
  contours.Union(GPolygon(), clean);
  return clean;
}

std::vector<GPolygon> CleanPolygons(const GPolygon2dModel& model) {
  std::vector<GPolygon> parts;
  for (std::size_t polygon = 0; polygon < model.polygons.size(); ++polygon) {
    parts.push_back(
        Cleaned(ContoursOf(model, model.FirstRing(polygon), model.polygons[polygon].endRing)));
  }
  return parts;
}

/// Unites polygons two by two, then the unions two by two, so that each point is handled a
/// logarithmic number of times.
GPolygon Unite(std::vector<GPolygon> parts) {
  while (parts.size() > 1) {
    std::vector<GPolygon> unions;
    for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
      parts[i].Union(parts[i + 1]);
      unions.push_back(std::move(parts[i]));
    }
    if (parts.size() % 2 != 0) unions.push_back(std::move(parts.back()));
    parts = std::move(unions);
  }
  return parts.empty() ? GPolygon() : std::move(parts.front());
}

GPolygon2dModel ModelOf(const GPolygon& clean) {
  MultiPolygon2d polygons;
  clean.GetMultiPolygon(polygons);
  GPolygon2dModel model;
  for (const Polygon2d& polygon : polygons) {
    model.AddOuterRing(polygon.outer());
    for (const Ring2d& hole : polygon.inners()) model.AddInnerRing(hole);
  }
  return model;
}

/// Returns the polygons whose coordinates are numbers.
GPolygon2dModel FinitePolygons(const GPolygon2dModel& model) {
  GPolygon2dModel result;
  for (std::size_t polygon = 0; polygon < model.polygons.size(); ++polygon) {
    if (model.polygons[polygon].isFinite) result.AddPolygon(model, polygon);
  }
  return result;
}

Operand MakeOperand(const GPolygon2dModel& model) {
  Operand operand;
  operand.model = FinitePolygons(model);
  std::vector<GPolygon> parts = CleanPolygons(operand.model);
  double sum = 0.0;
  for (const GPolygon& part : parts) sum += AreaOf(part);
  operand.contours = Cleaned(ContoursOf(operand.model, 0, operand.model.ringEnds.size()));
  if (!IsNear(AreaOf(operand.contours), sum)) operand.contours = Unite(std::move(parts));
  operand.area = AreaOf(operand.contours);
  if (!IsNear(AreaOf(operand.model), operand.area)) operand.model = ModelOf(operand.contours);
  return operand;
}

GPolygon::SET_OPERATION CodeOf(PolygonOperation operation) {
  switch (operation) {
    case PolygonOperation::Intersection:
      return GPolygon::SET_INTERSECTION;
    case PolygonOperation::Union:
      return GPolygon::SET_UNION;
    case PolygonOperation::Difference:
      return GPolygon::SET_DIFFERENCE;
    default:
      return GPolygon::SET_XOR;
  }
}

/// Returns true when the result covers the same area as the expected contours, and its holes are
/// those that make up the difference.
bool Agrees(const GPolygon2dModel& result, const GPolygon& expected, double tolerance) {
  if (std::abs(AreaOf(result) - AreaOf(expected)) > tolerance) return false;
  GPolygon misplaced = ContoursOf(result, 0, result.ringEnds.size());
  misplaced.XOR(expected);
  return AreaOf(misplaced) <= tolerance;
}

GPolygon2dModel CombineOperands(const Operand& a, const Operand& b, PolygonOperation operation) {
  GPolygon expected;
  a.contours.Combine(b.contours, CodeOf(operation), expected);
  std::optional<GPolygon2dModel> result = OverlayModels(a.model, b.model, operation);
  const bool isRight =
      result.has_value() && Agrees(*result, expected, AREA_TOLERANCE * (a.area + b.area));
  return isRight ? std::move(*result) : ModelOf(expected);
}

}  // namespace

GPolygon2dModel Combine(const GPolygon2dModel& a, const GPolygon2dModel& b,
                        PolygonOperation operation) {
  const Operand first = MakeOperand(a);
  const Operand second = MakeOperand(b);
  if (operation != PolygonOperation::Xor) return CombineOperands(first, second, operation);
  GPolygon2dModel result = CombineOperands(first, second, PolygonOperation::Difference);
  result.Append(CombineOperands(second, first, PolygonOperation::Difference));
  return result;
}

}  // namespace shr
