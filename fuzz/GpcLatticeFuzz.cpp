// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Boolean operations on contours of a lattice of 4 to 16 points a side, where coincidences are the
// rule: the first byte says how many points a side has and the fill rule, the second how many
// contours each operand has; each other byte is a point. Results must be right at points that no
// line of the lattice comes near, their edges must not cross, and their areas must fit together.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "shared/geometry/Orientation.h"
#include "tests/polygons/GpcTestSupport.h"

using namespace shr::test;
using shr::Vec2d;

namespace {

using Points = std::vector<Vec2d>;

/// Returns how often contours wind around a point.
int WindingOf(const Contours& contours, const Vec2d& point) {
  int winding = 0;
  for (const Points& contour : contours) {
    for (std::size_t i = 0; i < contour.size(); ++i) {
      const Vec2d& a = contour[i];
      const Vec2d& b = contour[i + 1 == contour.size() ? 0 : i + 1];
      if ((a.y <= point.y) == (b.y <= point.y)) continue;
      const int side = shr::OrientationSign(a, b, point);
      if (side == (a.y <= point.y ? 1 : -1)) winding += side;
    }
  }
  return winding;
}

bool IsInside(shr::FillRule rule, int winding) {
  switch (rule) {
    case shr::FillRule::NonZero:
      return winding != 0;
    case shr::FillRule::Positive:
      return winding > 0;
    case shr::FillRule::Negative:
      return winding < 0;
    default:
      return winding % 2 != 0;
  }
}

bool Cross(const Vec2d& a, const Vec2d& b, const Vec2d& c, const Vec2d& d) {
  if (std::max(a.x, b.x) < std::min(c.x, d.x) || std::max(c.x, d.x) < std::min(a.x, b.x) ||
      std::max(a.y, b.y) < std::min(c.y, d.y) || std::max(c.y, d.y) < std::min(a.y, b.y)) {
    return false;
  }
  return shr::OrientationSign(a, b, c) * shr::OrientationSign(a, b, d) < 0 &&
         shr::OrientationSign(c, d, a) * shr::OrientationSign(c, d, b) < 0;
}

/// Aborts unless no edges cross and no contour is degenerate; returns the area.
double CheckForm(const BooleanResult& result) {
  double area = 0.0;
  std::vector<std::array<Vec2d, 2>> edges;
  for (const Points& contour : result.contours) {
    if (contour.size() < 3) std::abort();
    area -= shr::PolygonArea(contour);  // holes run against outer contours
    for (std::size_t i = 0; i < contour.size(); ++i) {
      edges.push_back({contour[i], contour[i + 1 == contour.size() ? 0 : i + 1]});
      if (edges.back()[0] == edges.back()[1]) std::abort();
      for (const auto& [start, end] : edges) {
        if (Cross(start, end, edges.back()[0], edges.back()[1])) std::abort();
      }
    }
  }
  return area;
}

struct Operands {
  Contours subject;
  Contours clip;
  shr::FillRule rule;
  int side;
};

Operands Read(const uint8_t* data, size_t size) {
  Operands operands{{}, {}, static_cast<shr::FillRule>(data[0] / 13 % 4), 4 + data[0] % 13};
  operands.subject.resize(1 + data[1] % 4u);
  operands.clip.resize(1 + data[1] / 4u % 4u);
  const std::size_t count = operands.subject.size() + operands.clip.size();
  for (std::size_t i = 2; i < size; ++i) {
    const std::size_t contour = (i - 2) * count / (size - 2);
    const std::size_t clip = contour - std::min(contour, operands.subject.size());
    Points& points = contour < operands.subject.size() ? operands.subject[contour]  //
                                                       : operands.clip[clip];
    points.emplace_back((data[i] >> 4) % operands.side, (data[i] & 15) % operands.side);
  }
  return operands;
}

/// Returns the area of a result after all checks but that of areas.
double Check(const Operands& operands, Operation operation, bool isAlone) {
  const Contours& clip = isAlone ? Contours() : operands.clip;
  GpcResult record;
  gpc_polygon_clip(static_cast<shr::gpc_op>(operation), GpcOperand(operands.subject).Record(),
                   GpcOperand(clip).Record(), record.record, operands.rule);
  const BooleanResult result = record.Copy();
  // Every third cell of the lattice, at shares that no line through two points comes near.
  for (int i = 0; i < operands.side * operands.side; i += 3) {
    const Vec2d point(i % operands.side + (std::sqrt(2.0) - 1.0),
                      i / operands.side + (std::sqrt(3.0) - 1.0));
    const int a = IsInside(operands.rule, WindingOf(operands.subject, point)) ? 1 : 0;
    const int b = IsInside(operands.rule, WindingOf(clip, point)) ? 2 : 0;
    constexpr bool WANTED[4][4] = {{false, true, false, false},  // difference
                                   {false, false, false, true},  // intersection
                                   {false, true, true, false},   // symmetric difference
                                   {false, true, true, true}};   // union
    const bool isIn = WindingOf(result.contours, point) % 2 != 0;
    if (isIn != WANTED[static_cast<int>(operation)][a + b]) std::abort();
  }
  return CheckForm(result);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 5 || size > 66) return 0;
  const Operands operands = Read(data, size);
  const double united = Check(operands, Operation::Union, false);
  const double common = Check(operands, Operation::Intersection, false);
  const double difference = Check(operands, Operation::Difference, false);
  const double either = Check(operands, Operation::Xor, false);
  const double alone = Check(operands, Operation::Union, true);
  constexpr double TOLERANCE = 1e-9;
  if (std::abs(either - (united - common)) > TOLERANCE) std::abort();
  if (std::abs(alone - (difference + common)) > TOLERANCE) std::abort();
  return 0;
}
