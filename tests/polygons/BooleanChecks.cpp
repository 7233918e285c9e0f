// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "tests/polygons/BooleanChecks.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "shared/geometry/Orientation.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/Gpc.h"

namespace shr::test {
namespace {

using Points = std::vector<Vec2d>;

struct Segment {
  Vec2d a, b;
};

std::vector<Segment> EdgesOf(const Contours& contours) {
  std::vector<Segment> edges;
  for (const Points& contour : contours) {
    for (std::size_t i = 0; i < contour.size(); ++i) {
      edges.push_back({contour[i], contour[(i + 1) % contour.size()]});
    }
  }
  return edges;
}

double LargestCoordinate(const std::vector<Region>& regions) {
  double largest = 0.0;
  for (const Region& region : regions) {
    for (const Contours& polygon : region.polygons) {
      for (const Points& contour : polygon) {
        for (const Vec2d& point : contour) {
          largest = std::max({largest, std::abs(point.x), std::abs(point.y)});
        }
      }
    }
  }
  return largest;
}

double Perimeter(const std::vector<Region>& regions) {
  double length = 0.0;
  for (const Region& region : regions) {
    for (const Contours& polygon : region.polygons) {
      for (const Segment& edge : EdgesOf(polygon)) {
        length += std::hypot(edge.b.x - edge.a.x, edge.b.y - edge.a.y);
      }
    }
  }
  return length;
}

double Distance(const Vec2d& point, const Segment& segment) {
  const Vec2d along = segment.b - segment.a;
  const Vec2d to = point - segment.a;
  const double square = along.x * along.x + along.y * along.y;
  const double t =
      square == 0.0 ? 0.0 : std::clamp((to.x * along.x + to.y * along.y) / square, 0.0, 1.0);
  return std::hypot(to.x - along.x * t, to.y - along.y * t);
}

Box2d BoxOf(const Segment& segment) {
  Box2d box(segment.a, segment.b);
  box.Normalize();
  return box;
}

bool Cross(const Segment& e, const Segment& f) {
  if (!BoxOf(e).Intersects(BoxOf(f))) return false;
  return OrientationSign(e.a, e.b, f.a) * OrientationSign(e.a, e.b, f.b) < 0 &&
         OrientationSign(f.a, f.b, e.a) * OrientationSign(f.a, f.b, e.b) < 0;
}

/// Returns by how much one of two crossing edges would have to be shortened to end at the other.
double Overshoot(const Segment& e, const Segment& f) {
  return std::min({Distance(e.a, f), Distance(e.b, f), Distance(f.a, e), Distance(f.b, e)});
}

double LargestOvershoot(const Contours& contours) {
  const std::vector<Segment> edges = EdgesOf(contours);
  double largest = 0.0;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    for (std::size_t j = i + 1; j < edges.size(); ++j) {
      if (Cross(edges[i], edges[j])) largest = std::max(largest, Overshoot(edges[i], edges[j]));
    }
  }
  return largest;
}

/// Returns the middle of an edge of the contour that is clear of all other contours, so that the
/// number of those around it is beyond doubt; a point that is not a number when there is none.
Vec2d ClearPoint(const Contours& contours, std::size_t contour, double distance) {
  for (const Segment& edge : EdgesOf({contours[contour]})) {
    const Vec2d middle = (edge.a + edge.b) * 0.5;
    bool isClear = true;
    for (std::size_t i = 0; i < contours.size() && isClear; ++i) {
      if (i == contour) continue;
      for (const Segment& other : EdgesOf({contours[i]})) {
        isClear = isClear && Distance(middle, other) > distance;
      }
    }
    if (isClear) return middle;
  }
  return Vec2d(std::nan(""), std::nan(""));
}

std::string NestingFault(const BooleanResult& result, double distance) {
  for (std::size_t i = 0; i < result.contours.size(); ++i) {
    const Vec2d point = ClearPoint(result.contours, i, distance);
    if (std::isnan(point.x)) continue;
    int around = 0;
    for (std::size_t j = 0; j < result.contours.size(); ++j) {
      if (j != i && PointInPolygon(point, result.contours[j])) ++around;
    }
    if ((around % 2 != 0) != (result.holeFlags[i] != 0)) {
      return "contour " + std::to_string(i) + " lies in " + std::to_string(around) +
             " others, hole flag " + std::to_string(result.holeFlags[i]);
    }
  }
  return "";
}

std::string ContourFault(const Contours& contours) {
  for (std::size_t i = 0; i < contours.size(); ++i) {
    if (contours[i].size() < 3) return "contour " + std::to_string(i) + " has too few points";
    for (const Segment& edge : EdgesOf({contours[i]})) {
      if (edge.a == edge.b) return "contour " + std::to_string(i) + " has an edge of no length";
      if (!std::isfinite(edge.a.x + edge.a.y)) return "a coordinate is not finite";
    }
  }
  return "";
}

std::string Scientific(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3g", value);
  return text;
}

}  // namespace

const char* NameOf(Operation operation) {
  constexpr const char* NAMES[] = {"difference", "intersection", "xor", "union"};
  return NAMES[static_cast<std::size_t>(operation)];
}

BooleanJudge::BooleanJudge(Region subject, Region clip)
    : operands_{std::move(subject), std::move(clip)} {
  const auto areas = CombinedAreas<DoubleDouble>(operands_);
  inputArea_ = static_cast<double>(areas[1] + areas[2] + areas[3] + areas[3]);
  snapDistance_ = GPC_SNAP * LargestCoordinate(operands_);
  largestMisplaced_ = MISPLACED_SNAPS * snapDistance_ * Perimeter(operands_);
}

ResultReport BooleanJudge::Judge(Operation operation, const BooleanResult& result,
                                 Form form) const {
  ResultReport report;
  if (form == Form::Clean) report.fault = FormFault(result);
  if (!report.fault.empty()) return report;
  JudgeAreas(operation, result, report);
  // What is not a number is wrong.
  const bool isRight =
      report.misplacedArea <= largestMisplaced_ ||
      (form == Form::Any && std::max(report.misplaced, report.areaError) <= AREA_TOLERANCE);
  if (!isRight) {
    report.fault = "area off by " + Scientific(report.areaError) + ", misplaced " +
                   Scientific(report.misplaced);
  }
  return report;
}

std::string BooleanJudge::FormFault(const BooleanResult& result) const {
  if (result.holeFlags.size() != result.contours.size()) return "hole flags are missing";
  std::string fault = ContourFault(result.contours);
  if (!fault.empty()) return fault;
  const double overshoot = LargestOvershoot(result.contours);
  if (overshoot > 0.0) return "edges cross by " + Scientific(overshoot);
  return NestingFault(result, 4.0 * snapDistance_);
}

void BooleanJudge::JudgeAreas(Operation operation, const BooleanResult& result,
                              ResultReport& report) const {
  std::vector<Region> regions = operands_;
  regions.push_back(EvenOdd(result.contours));
  const auto areas = CombinedAreas<DoubleDouble>(regions);
  std::vector<DoubleDouble> outside(areas.begin(), areas.begin() + 4);
  std::vector<DoubleDouble> inside(areas.begin() + 4, areas.end());
  // The area of the result that lies in neither operand is at place 0, which no operation has.
  const DoubleDouble missing = AreaOf(operation, outside);
  const DoubleDouble common = AreaOf(operation, inside);
  const DoubleDouble excess = inside[0] + inside[1] + inside[2] + inside[3] - common;
  const auto relative = [this](const DoubleDouble& area) {
    const double value = std::abs(static_cast<double>(area));
    return value == 0.0 ? 0.0 : value / inputArea_;
  };
  report.area = static_cast<double>(common + excess);
  report.areaError = relative(excess - missing);
  report.misplaced = relative(excess + missing);
  report.misplacedArea = std::abs(static_cast<double>(excess + missing));
}

}  // namespace shr::test
