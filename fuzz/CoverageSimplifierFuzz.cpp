// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Simplifies cells of any points, mostly on a lattice, so that they share points and edges. Each
// cell must keep only points of its own, and no more may stay by a greater tolerance.

#include <cstdlib>
#include <set>
#include <utility>

#include "fuzz/PointInput.h"
#include "shared/polygons/CoverageSimplifier.h"

namespace {

using namespace shr;

using Cells = std::vector<GPolygon2d>;

std::vector<Vec2d> PointsOf(const GPolygon2d& cell) {
  std::vector<Vec2d> points;
  std::vector<unsigned int> counts;
  cell.GetPolyPolygon(points, counts, true);
  return points;
}

std::size_t CountPoints(const Cells& cells) {
  std::size_t count = 0;
  for (const GPolygon2d& cell : cells) count += cell.GetTotalVertexCount();
  return count;
}

void CheckPoints(const Cells& before, const Cells& after) {
  if (before.size() != after.size()) std::abort();
  for (std::size_t i = 0; i < before.size(); ++i) {
    std::set<std::pair<double, double>> known;
    for (const Vec2d& point : PointsOf(before[i])) {
      if (point.x == point.x && point.y == point.y) known.emplace(point.x, point.y);
    }
    for (const Vec2d& point : PointsOf(after[i])) {
      const bool isNumber = point.x == point.x && point.y == point.y;
      if (isNumber && known.count({point.x, point.y}) == 0) std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 512) return 0;
  fuzz::PointInput input(data, size);
  const double tolerance = input.Byte() / 16.0;
  const std::size_t most = input.Byte();
  Cells cells(1 + input.Byte() % 4u);
  for (std::size_t i = 0; !input.IsAtEnd(); ++i) {
    const std::vector<Vec2d> ring = input.Points(1 + input.Byte() % 16u);
    const auto count = static_cast<unsigned int>(ring.size());
    cells[i % cells.size()].AddContours(ring, {&count, 1});
  }
  const Cells straight = SimplifyCoverage(cells, 0.0);
  const Cells simple = SimplifyCoverage(cells, tolerance);
  const Cells few = SimplifyCoverageToCount(cells, most);
  CheckPoints(cells, straight);
  CheckPoints(cells, simple);
  CheckPoints(cells, few);
  // A ring whose ends differ by rounding is closed anew.
  std::size_t rings = 0;
  for (const GPolygon2d& cell : cells) rings += cell.GetNumRings();
  if (CountPoints(straight) > CountPoints(cells) + rings) std::abort();
  if (CountPoints(simple) > CountPoints(straight)) std::abort();
  return 0;
}
