// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <span>

#include "shared/polygons/ClipUtil.h"
#include "shared/polygons/FlatContours.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/lines/GDashLineGenerator.h"
#include "shared/polygons/lines/LineClip.h"
#include "shared/polygons/lines/LineClipPolygon.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"ClipUtil";

/// Calls the function with the points of every polyline in turn; there must be one at least.
template <class Function>
void ForEachPolyline(const Vec2d* points, const unsigned int* counts, std::size_t numPolylines,
                     Function function) {
  if (points == nullptr || counts == nullptr || numPolylines == 0) {
    ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  }
  ForEachContour(points, counts, numPolylines, UNIT, function);
}

CLineClip MakeLineClip(Box2d box) {
  box.Normalize();
  return CLineClip(box);
}

/// Cuts every polyline into dashes and calls the function with the two points of each that may
/// touch the box.
template <class Function>
void ForEachDash(const Vec2d* points, const unsigned int* counts, std::size_t numPolylines,
                 GDashLineGenerator& dashes, const Box2d& view, Function function) {
  ForEachPolyline(points, counts, numPolylines, [&](std::span<const Vec2d> polyline) {
    dashes.Decompose(polyline, view, [&](const Vec2d& begin, const Vec2d& end) {
      const Vec2d dash[] = {begin, end};
      function(std::span<const Vec2d>(dash));
    });
  });
}

}  // namespace

void GClipPolylinesToRect(const Vec2d* points, const unsigned int* counts, std::size_t numPolylines,
                          const Box2d& box, std::vector<Vec2d>& outPoints,
                          std::vector<unsigned int>& outCounts) {
  const CLineClip clip = MakeLineClip(box);
  ForEachPolyline(points, counts, numPolylines, [&](std::span<const Vec2d> polyline) {
    clip.ClipPolyline(polyline, outPoints, outCounts);
  });
}

void GClipPolylinesToPolygon(const Vec2d* points, const unsigned int* counts,
                             std::size_t numPolylines, const GLineClipPolygon& clip,
                             std::vector<Vec2d>& outPoints, std::vector<unsigned int>& outCounts) {
  Box2d box;
  if (clip.IsRectangle(&box)) {
    return GClipPolylinesToRect(points, counts, numPolylines, box, outPoints, outCounts);
  }
  ForEachPolyline(points, counts, numPolylines, [&](std::span<const Vec2d> polyline) {
    clip.Clip(polyline, outPoints, outCounts);
  });
}

void GClipPolylinesToPolygon(const Vec2d* points, const unsigned int* counts,
                             std::size_t numPolylines, const GPolygon& clip,
                             std::vector<Vec2d>& outPoints, std::vector<unsigned int>& outCounts) {
  GClipPolylinesToPolygon(points, counts, numPolylines, GLineClipPolygon(clip), outPoints,
                          outCounts);
}

void GClipDashedPolylinesToPolygon(const Vec2d* points, const unsigned int* counts,
                                   std::size_t numPolylines, GDashLineGenerator& dashes,
                                   const GLineClipPolygon& clip, std::vector<Vec2d>& outPoints,
                                   std::vector<unsigned int>& outCounts) {
  Box2d box;
  if (clip.IsRectangle(&box)) {
    const CLineClip lineClip = MakeLineClip(box);
    const Box2d view = lineClip.IsClipEnabled() ? lineClip.GetClipRect() : Box2d::UNIVERSE;
    ForEachDash(points, counts, numPolylines, dashes, view, [&](std::span<const Vec2d> dash) {
      lineClip.ClipPolyline(dash, outPoints, outCounts);
    });
  } else {
    ForEachDash(points, counts, numPolylines, dashes, clip.GetBBox(),
                [&](std::span<const Vec2d> dash) { clip.Clip(dash, outPoints, outCounts); });
  }
}

void GClipDashedPolylinesToPolygon(const Vec2d* points, const unsigned int* counts,
                                   std::size_t numPolylines, GDashLineGenerator& dashes,
                                   const GPolygon& clip, std::vector<Vec2d>& outPoints,
                                   std::vector<unsigned int>& outCounts) {
  GClipDashedPolylinesToPolygon(points, counts, numPolylines, dashes, GLineClipPolygon(clip),
                                outPoints, outCounts);
}

}  // namespace shr
