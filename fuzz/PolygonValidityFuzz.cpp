// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Looks for faults of polygons of any points, mostly on a lattice or a last bit apart. What is made
// valid must have no fault and, where there was none, the same area. Only a coordinate that is not
// finite may raise an exception.

#include <cmath>
#include <cstdlib>

#include "fuzz/PointInput.h"
#include "shared/diagnostics/Exception.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/PolygonValidity.h"

namespace {

using namespace shr;

template <class Polygon>
void Check(const Polygon& polygon, double largest) {
  const std::optional<PolygonFault> fault = FindFault(polygon);
  if (fault.has_value() == IsValid(polygon)) std::abort();
  const bool isFinite = largest < HUGE_VAL;
  if (!isFinite && !fault) std::abort();
  try {
    const Polygon valid = MakeValid(polygon);
    if (!IsValid(valid)) std::abort();
    if (fault || largest > 1e150) return;
    const double tolerance =
        1e-12 * largest * largest * static_cast<double>(polygon.GetTotalVertexCount());
    if (!(std::abs(valid.GetArea() - polygon.GetArea()) <= tolerance)) std::abort();
  } catch (const Exception&) {
    if (isFinite) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 512) return 0;
  fuzz::PointInput input(data, size);
  GPolygon contours;
  GPolygon2d polygons;
  double largest = 0.0;
  while (!input.IsAtEnd()) {
    // One outer ring and its holes.
    std::vector<Vec2d> points;
    std::vector<unsigned int> counts;
    const unsigned int rings = 1 + input.Byte() % 3u;
    for (unsigned int i = 0; i < rings; ++i) {
      const std::vector<Vec2d> ring = input.Points(input.Byte() % 16u);
      points.insert(points.end(), ring.begin(), ring.end());
      counts.push_back(static_cast<unsigned int>(ring.size()));
    }
    for (const Vec2d& point : points) {
      // NaN counts as infinite.
      const double farthest = std::fmax(std::abs(point.x), std::abs(point.y));
      const bool isNumber = !std::isnan(point.x) && !std::isnan(point.y);
      largest = std::fmax(largest, isNumber ? farthest : HUGE_VAL);
    }
    contours.AddContours(points, counts);
    polygons.AddContours(points, counts);
  }
  Check(contours, largest);
  Check(polygons, largest);
  return 0;
}
