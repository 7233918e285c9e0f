// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Clips a polyline to contours by the index and by the same steps over all edges, and locates its
// points by the index and without it.

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "fuzz/PointInput.h"
#include "shared/polygons/FlatPolygon.h"
#include "shared/polygons/PointLocator.h"
#include "tests/support/PlainLineClip.h"

namespace {

using namespace shr;

double LengthOf(const std::vector<GLine2>& pieces) {
  double length = 0.0;
  for (const GLine2& piece : pieces) length += piece.GetBegin().Distance(piece.GetEnd());
  return length;
}

bool IsFinite(const Vec2d& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::PointInput input(data, size);
  const std::vector<unsigned int> counts = {input.Byte() % 64u, input.Byte() % 8u};
  std::vector<Vec2d> contours = input.Points(counts[0] + counts[1]);
  contours.resize(counts[0] + counts[1]);
  const std::vector<Vec2d> line = input.Points(40);
  const test::PlainLineClip polygon(contours, counts);
  const PointLocator locator(contours, counts);
  for (const Vec2d& point : line) {
    if (locator.Contains(point) != PointInPolygon(point, contours, counts)) std::abort();
  }
  const bool isFinite = std::all_of(contours.begin(), contours.end(), IsFinite);
  for (std::size_t i = 1; i < line.size(); ++i) {
    std::vector<GLine2> pieces;
    polygon.Clip(&line[i - 1], 2, pieces);
    const double whole = line[i - 1].Distance(line[i]);
    if (!isFinite || !(whole < 1e100)) continue;
    // The points of crossings are rounded to doubles.
    const double rounding = 1e-14 * (line[i].Length() + line[i - 1].Length());
    const double expected = LengthOf(polygon.ClipPlain(line[i - 1], line[i]));
    if (!(std::abs(LengthOf(pieces) - expected) <= 1e-9 * whole + rounding)) std::abort();
  }
  return 0;
}
