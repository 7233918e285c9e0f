// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Boolean operations on two contours of any doubles: the first byte says how many of those behind
// it are coordinates on a small grid; the rest are doubles as they are. Only a coordinate that is
// not finite may raise an exception. Results must be finite, and their areas must fit together, up
// to a multiple of the snap distance along all edges.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/FlatPolygon.h"
#include "tests/polygons/GpcTestSupport.h"

using namespace shr::test;

static double AreaOf(Operation operation, const Contours& a, const Contours& b, double largest) {
  double area = 0.0;
  for (const auto& contour : OperateByGpc(operation, a, b).contours) {
    for (const shr::Vec2d& point : contour) {
      const bool isNear = std::max(std::abs(point.x), std::abs(point.y)) / 2.0 <= largest;
      if (!isNear || !std::isfinite(point.x) || !std::isfinite(point.y)) std::abort();
    }
    area -= shr::PolygonArea(contour);  // holes run against outer contours
  }
  return area;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0 || size > 1024) return 0;
  const size_t small = std::min<size_t>(data[0], size - 1);
  std::vector<double> values(data + 1, data + 1 + small);
  for (size_t i = 1 + small; i + sizeof(double) <= size; i += sizeof(double)) {
    std::memcpy(&values.emplace_back(), data + i, sizeof(double));
  }
  Contours a(1), b(1);
  double largest = 0.0;
  for (size_t i = 0; i + 1 < values.size(); i += 2) {
    (i < values.size() / 2 ? a : b)[0].emplace_back(values[i], values[i + 1]);
    largest = std::max({largest, std::abs(values[i]), std::abs(values[i + 1])});
  }
  const bool isFinite =
      std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
  try {
    const double united = AreaOf(Operation::Union, a, b, largest);
    const double common = AreaOf(Operation::Intersection, a, b, largest);
    const double difference = AreaOf(Operation::Difference, a, b, largest);
    const double either = AreaOf(Operation::Xor, a, b, largest);
    const double area = AreaOf(Operation::Union, a, {}, largest);
    if (!isFinite || largest > 1e150 || largest < 1e-150) return 0;  // areas are out of range
    const double tolerance =
        64.0 * shr::GPC_SNAP * largest * largest * static_cast<double>(values.size() + 1);
    if (std::abs(either - (united - common)) > tolerance) std::abort();
    if (std::abs(area - (difference + common)) > tolerance) std::abort();
  } catch (const shr::Exception&) {
    if (isFinite) std::abort();
  }
  return 0;
}
