// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/FlatPolygon.h"

#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/CpuFeatures.h"
#include "shared/polygons/ContourEdge.h"
#include "shared/polygons/ContourTestAvx2.h"
#include "shared/polygons/FlatContours.h"
#include "shared/polygons/FlatOutput.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"FlatPolygon";

/// Counts crossings of the ray toward +x, of which the oddness decides.
bool IsInContourBaseline(const Vec2d& point, std::span<const Vec2d> contour) {
  if (contour.empty()) return false;
  bool inside = false;
  Vec2d from = contour.back();
  for (const Vec2d& to : contour) {
    inside ^= IsToggledBy(from, to, point);
    from = to;
  }
  return inside;
}

/// Asked once; a call from the start of another unit may come earlier and takes the baseline.
const bool USES_AVX2 = HasAvx2();

bool IsInContour(const Vec2d& point, std::span<const Vec2d> contour) {
  if (USES_AVX2) {
    const double* const first = contour.empty() ? nullptr : &contour.front().x;
    const ContourAnswer answer = IsInContourAvx2(point.x, point.y, first, contour.size());
    if (answer != ContourAnswer::UNSURE) return answer == ContourAnswer::INSIDE;
  }
  return IsInContourBaseline(point, contour);
}

}  // namespace

double PolygonArea(std::span<const Vec2d> points) {
  if (points.size() < 3) return 0.0;
  const double base = points.back().y;
  double sum = 0.0;
  Vec2d from = points.back();
  for (const Vec2d& to : points) {
    sum += (from.x - to.x) * ((from.y - base) + (to.y - base));
    from = to;
  }
  return sum / 2.0;
}

double PolygonArea(const Vec2d* points, std::size_t count) {
  return PolygonArea(CheckedSpan(points, count, UNIT));
}

double PolygonArea(const Vec2d* points, const unsigned int* counts, std::size_t numContours) {
  double sum = 0.0;
  ForEachContour(points, counts, numContours, UNIT,
                 [&](std::span<const Vec2d> contour) { sum += PolygonArea(contour); });
  return sum;
}

double PolygonArea(std::span<const Vec2d> points, std::span<const unsigned int> counts) {
  CheckCounts(points, counts, UNIT);
  return PolygonArea(points.data(), counts.data(), counts.size());
}

double PolygonPerimeter(std::span<const Vec2d> points) {
  if (points.empty()) return 0.0;
  double sum = 0.0;
  Vec2d from = points.back();
  for (const Vec2d& to : points) {
    sum += (to - from).Length();
    from = to;
  }
  return sum;
}

double PolygonPerimeter(const Vec2d* points, std::size_t count) {
  return PolygonPerimeter(CheckedSpan(points, count, UNIT));
}

double PolygonPerimeter(const Vec2d* points, const unsigned int* counts, std::size_t numContours) {
  double sum = 0.0;
  ForEachContour(points, counts, numContours, UNIT,
                 [&](std::span<const Vec2d> contour) { sum += PolygonPerimeter(contour); });
  return sum;
}

double PolygonPerimeter(std::span<const Vec2d> points, std::span<const unsigned int> counts) {
  CheckCounts(points, counts, UNIT);
  return PolygonPerimeter(points.data(), counts.data(), counts.size());
}

bool PointInPolygon(const Vec2d& point, std::span<const Vec2d> points) {
  return IsInContour(point, points);
}

bool PointInPolygon(const Vec2d& point, const Vec2d* points, std::size_t count) {
  return IsInContour(point, CheckedSpan(points, count, UNIT));
}

bool PointInPolygon(const Vec2d& point, const Vec2d* points, const unsigned int* counts,
                    std::size_t numContours) {
  bool inside = false;
  ForEachContour(points, counts, numContours, UNIT,
                 [&](std::span<const Vec2d> contour) { inside ^= IsInContour(point, contour); });
  return inside;
}

bool PointInPolygon(const Vec2d& point, std::span<const Vec2d> points,
                    std::span<const unsigned int> counts) {
  CheckCounts(points, counts, UNIT);
  return PointInPolygon(point, points.data(), counts.data(), counts.size());
}

bool PointInPolygon(const POINT& point, const POINT* points, std::size_t count) {
  return IsInContour(ToVec2d(point), ToVec2d(CheckedSpan(points, count, UNIT)));
}

bool PointInPolygon(const POINT& point, const POINT* points, const long* counts,
                    std::size_t numContours) {
  bool inside = false;
  for (const long count : CheckedSpan(counts, numContours, UNIT)) {
    if (count < 0) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
    const auto size = static_cast<std::size_t>(count);
    inside ^= PointInPolygon(point, points, size);
    if (size > 0) points += size;
  }
  return inside;
}

}  // namespace shr
