// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// What is made of the clipper's triangle strips: pieces without holes, and an area that is right
// for any contours.

#include <cmath>

#include "shared/diagnostics/ThrowError.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/clipper/GpcHolder.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"GPolygon";

/// Returns the outline of a strip, its even vertices forward and its odd ones back, without
/// repeated points.
std::vector<Vec2d> OutlineOf(std::span<const Vec2d> strip) {
  std::vector<Vec2d> outline;
  outline.reserve(strip.size());
  const auto add = [&outline](const Vec2d& point) {
    if (outline.empty() || outline.back() != point) outline.push_back(point);
  };
  for (std::size_t i = 0; i < strip.size(); i += 2) add(strip[i]);
  for (std::size_t i = strip.size() / 2; i > 0; --i) add(strip[2 * i - 1]);
  while (outline.size() > 1 && outline.back() == outline.front()) outline.pop_back();
  return outline;
}

double StripArea(std::span<const Vec2d> strip) {
  double doubled = 0.0;
  for (std::size_t i = 2; i < strip.size(); ++i) {
    const Vec2d a = strip[i - 1] - strip[i - 2];
    const Vec2d b = strip[i] - strip[i - 2];
    doubled += std::abs(a.Cross(b));
  }
  return doubled / 2.0;
}

}  // namespace

bool GPolygon::Decompose(PieceCallback callback, void* user) const {
  if (callback == nullptr) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  GpcTristripHolder strips;
  gpc_polygon_to_tristrip(record_, strips.record);
  for (const GpcContour& strip : StripsOf(strips.record)) {
    const std::vector<Vec2d> piece = OutlineOf(VerticesOf(strip));
    if (piece.size() >= 3 && !callback(piece.data(), piece.size(), user)) return false;
  }
  return true;
}

bool GPolygon2d::Decompose(PieceCallback callback, void* user) const {
  return GPolygon(*this).Decompose(callback, user);
}

double TriangulatedPolygonArea(const GPolygon& polygon) {
  GpcTristripHolder strips;
  gpc_polygon_to_tristrip(polygon.GetRecord(), strips.record);
  double sum = 0.0;
  for (const GpcContour& strip : StripsOf(strips.record)) sum += StripArea(VerticesOf(strip));
  return sum;
}

double TriangulatedPolygonArea(std::span<const Vec2d> points) {
  return TriangulatedPolygonArea(GPolygon(points));
}

double TriangulatedPolygonArea(const Vec2d* points, std::size_t count) {
  return TriangulatedPolygonArea(GPolygon(points, count));
}

double TriangulatedPolygonArea(std::span<const Vec2d> points,
                               std::span<const unsigned int> counts) {
  return TriangulatedPolygonArea(GPolygon(points, counts));
}

double TriangulatedPolygonArea(const Vec2d* points, const unsigned int* counts,
                               std::size_t numContours) {
  return TriangulatedPolygonArea(GPolygon(points, counts, numContours));
}

}  // namespace shr
