// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Clips the points to a box, as a polyline, which is compared with a clip segment by segment, and
// as a contour.

#include <algorithm>
#include <cstdlib>

#include "fuzz/PointInput.h"
#include "shared/polygons/lines/LineClip.h"
#include "shared/polygons/lines/PolyClip.h"

namespace {

using namespace shr;
using Points = std::vector<Vec2d>;

/// Exactly equal, a NaN to any NaN.
bool IsSame(const Vec2d& a, const Vec2d& b) {
  return (a.x == b.x || (a.x != a.x && b.x != b.x)) && (a.y == b.y || (a.y != a.y && b.y != b.y));
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
  const Vec2d corner = input.Point();
  const Box2d box(corner, input.Point());
  const Points points = input.Points(300);
  const CLineClip clip(box);
  Points pieces;
  std::vector<unsigned int> counts;
  clip.ClipPolyline(points, pieces, counts);
  if (clip.IsClipEnabled() && points.size() > 1) {
    const Points expected = ClipSegments(clip, points);
    if (!std::ranges::equal(pieces, expected, IsSame)) std::abort();
  }
  CPolyClip::Output contour;
  CPolyClip(box).Clip(points, contour);
  // The last stage keeps what is below its side or makes it there.
  const auto isBelow = [&](const Vec2d& point) { return point.y <= box.yMax(); };
  if (!std::all_of(contour.begin(), contour.end(), isBelow)) std::abort();
  return 0;
}
