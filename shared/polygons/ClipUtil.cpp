// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/polygons/ClipUtil.h"

#include <span>
#include <utility>

#include "shared/polygons/FlatContours.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/clipper/GpcHolder.h"
#include "shared/polygons/lines/PolyClip.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"ClipUtil";
constexpr std::size_t MIN_CONTOUR_SIZE = 2;

Box2d Normalized(Box2d box) {
  box.Normalize();
  return box;
}

template <class Polygon>
Polygon MakePolygon(const Vec2d* points, const unsigned int* counts, std::size_t numContours) {
  const std::span<const unsigned int> sizes = CheckedSpan(counts, numContours, UNIT);
  return Polygon(CheckedSpan(points, SumOfCounts(sizes), UNIT), sizes);
}

}  // namespace

void GClipGPolygonToRect(const GPolygon& polygon, const Box2d& box, GPolygon& result) {
  CPolyClip clip(Normalized(box));
  CPolyClip::Output clipped;
  GPolygon kept;
  for (const GpcContour& contour : ContoursOf(polygon.GetRecord())) {
    clipped.clear();
    clip.Clip(VerticesOf(contour), clipped);
    if (clipped.size() < MIN_CONTOUR_SIZE) continue;
    const auto count = static_cast<unsigned int>(clipped.size());
    kept.AddContours(clipped.data(), &count, 1);
  }
  result = std::move(kept);
}

void GClipGPolygonToRect(const GPolygon2d& polygon, const Box2d& box, GPolygon2d& result) {
  polygon.Intersection(Normalized(box), result);
}

void GClipGPolygonToRect(const GPolygon& polygon, const Box2d& box, std::vector<Vec2d>& points,
                         std::vector<unsigned int>& counts, bool closed) {
  GPolygon result;
  GClipGPolygonToRect(polygon, box, result);
  result.GetPolyPolygon(points, counts, closed);
}

void GClipGPolygonToRect(const GPolygon2d& polygon, const Box2d& box, std::vector<Vec2d>& points,
                         std::vector<unsigned int>& counts, bool closed) {
  GPolygon2d result;
  GClipGPolygonToRect(polygon, box, result);
  result.GetPolyPolygon(points, counts, closed);
}

void GClipPolyPolygonToRect(const Vec2d* points, const unsigned int* counts,
                            std::size_t numContours, const Box2d& box,
                            std::vector<Vec2d>& outPoints, std::vector<unsigned int>& outCounts,
                            bool closed) {
  GClipGPolygonToRect(MakePolygon<GPolygon>(points, counts, numContours), box, outPoints, outCounts,
                      closed);
}

void GClipPolyPolygonToRectUsingGPolygon2d(const Vec2d* points, const unsigned int* counts,
                                           std::size_t numContours, const Box2d& box,
                                           std::vector<Vec2d>& outPoints,
                                           std::vector<unsigned int>& outCounts, bool closed) {
  GClipGPolygonToRect(MakePolygon<GPolygon2d>(points, counts, numContours), box, outPoints,
                      outCounts, closed);
}

void GClipGPolygonToGPolygon(const GPolygon& subject, const GPolygon& clip, GPolygon& result) {
  Box2d box;
  if (clip.IsRectangle(&box)) {
    GClipGPolygonToRect(subject, box, result);
  } else {
    subject.Intersection(clip, result);
  }
}

void GClipGPolygonToGPolygon(const GPolygon& subject, const GPolygon& clip,
                             std::vector<Vec2d>& points, std::vector<unsigned int>& counts,
                             bool closed) {
  GPolygon result;
  GClipGPolygonToGPolygon(subject, clip, result);
  result.GetPolyPolygon(points, counts, closed);
}

void GClipPolyPolygonToGPolygon(const Vec2d* points, const unsigned int* counts,
                                std::size_t numContours, const GPolygon& clip,
                                std::vector<Vec2d>& outPoints, std::vector<unsigned int>& outCounts,
                                bool closed) {
  GClipGPolygonToGPolygon(MakePolygon<GPolygon>(points, counts, numContours), clip, outPoints,
                          outCounts, closed);
}

void GClipGPolygonToGPolygon(const GPolygon2d& subject, const GPolygon2d& clip,
                             GPolygon2d& result) {
  Box2d box;
  if (clip.IsRectangle(&box)) {
    GClipGPolygonToRect(subject, box, result);
  } else {
    subject.Intersection(clip, result);
  }
}

void GClipGPolygonToGPolygon(const GPolygon2d& subject, const GPolygon2d& clip,
                             std::vector<Vec2d>& points, std::vector<unsigned int>& counts,
                             bool closed) {
  GPolygon2d result;
  GClipGPolygonToGPolygon(subject, clip, result);
  result.GetPolyPolygon(points, counts, closed);
}

void GClipPolyPolygonToGPolygon(const Vec2d* points, const unsigned int* counts,
                                std::size_t numContours, const GPolygon2d& clip,
                                std::vector<Vec2d>& outPoints, std::vector<unsigned int>& outCounts,
                                bool closed) {
  GClipGPolygonToGPolygon(MakePolygon<GPolygon2d>(points, counts, numContours), clip, outPoints,
                          outCounts, closed);
}

}  // namespace shr
