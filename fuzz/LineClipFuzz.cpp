// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Clips the points to a box, once as a polyline and once as a contour, and compares with a clip
// segment by segment and with clips to one side after another.

#include <cstdlib>

#include "fuzz/PointInput.h"
#include "shared/polygons/LineClip.h"
#include "shared/polygons/PolyClip.h"

namespace {

using namespace shr;
using Points = std::vector<Vec2d>;

void Demand(bool condition) {
  if (!condition) std::abort();
}

bool IsSame(double a, double b) {
  return a == b || (a != a && b != b);
}

Points ClipSegments(const CLineClip& clip, const Points& line) {
  Points out;
  bool isOpen = false;
  for (std::size_t i = 1; i < line.size(); ++i) {
    Vec2d a = line[i - 1];
    Vec2d b = line[i];
    const bool isVisible = clip.ClipLine(a, b);
    if (isVisible && !(isOpen && out.back() == a)) out.push_back(a);
    if (isVisible) out.push_back(b);
    isOpen = isVisible;
  }
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::PointInput input(data, size);
  const Box2d box(input.Point(), input.Point());
  const Points points = input.Points(300);
  const CLineClip clip(box);
  Points pieces;
  std::vector<unsigned int> counts;
  clip.ClipPolyline(points, pieces, counts);
  if (clip.IsClipEnabled() && points.size() > 1) {
    const Points expected = ClipSegments(clip, points);
    Demand(pieces.size() == expected.size());
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      Demand(IsSame(pieces[i].x, expected[i].x) && IsSame(pieces[i].y, expected[i].y));
    }
  }
  CPolyClip::Output contour;
  CPolyClip(box).Clip(points, contour);
  // A point either was there or was made on a side; without NaN the last stage keeps none above.
  for (const Vec2d& point : contour) Demand(point.y <= box.yMax());
  CPolyClip::Output again;
  CPolyClip(box).Clip(std::span<const Vec2d>(contour), again);
  bool isInside = true;
  for (const Vec2d& point : contour) isInside = isInside && box.Contains(point);
  Demand(!isInside || again.size() == contour.size());
  return 0;
}
