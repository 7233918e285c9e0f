// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Dashes a polyline of arbitrary numbers. The drawn length must be that which follows from the
// pattern alone, in one call and in two together, unless the library refuses the line.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/lines/GDashLineGenerator.h"

/// The drawn part of a line of the given length, entry by entry.
static double ExpectedLength(const std::vector<double>& pattern, double length) {
  double drawn = 0.0;
  for (std::size_t i = 0; length > 0.0; ++i) {
    const double entry = pattern[i % pattern.size()];
    if (i % 2 == 0) drawn += std::min(entry, length);
    length -= entry;
  }
  return drawn;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<double> numbers((size < 1024 ? size : 1024) / sizeof(double));
  if (numbers.size() < 8) return 0;
  std::memcpy(numbers.data(), data, numbers.size() * sizeof(double));
  const auto pointsBegin = numbers.begin() + 1 + data[0] % 4;
  const std::vector<double> pattern(numbers.begin(), pointsBegin);
  shr::GPolyline line;
  for (auto x = pointsBegin; numbers.end() - x > 1; x += 2) line.push_back({x[0], x[1]});
  double reach = 0.0;
  for (std::size_t i = 1; i < line.size(); ++i) {
    const shr::Vec2d step = line[i] - line[i - 1];
    const double bound = std::abs(step.x) + std::abs(step.y);
    if (std::isfinite(bound)) reach += bound;
  }
  const double sum = std::accumulate(pattern.begin(), pattern.end(), 0.0);
  const double walked = reach / sum * static_cast<double>(pattern.size());
  if (walked > 2e3 && walked < 1e9) return 0;  // slow
  double drawn = 0.0;
  const auto add = [&drawn](auto begin, auto end) { drawn += begin.Distance(end); };
  try {
    shr::GDashLineGenerator generator(pattern);
    generator.Decompose(line, add);
    generator.SetDashes(pattern);
    generator.Decompose(std::span(line).first(2), add);
    generator.Decompose(std::span(line).subspan(1), add);
  } catch (const shr::Exception&) {
    return 0;
  }
  const double length = line.GetLength();
  if (!(length < 1e100 && sum > 1e-100 && sum < 1e100)) return 0;
  const double error = std::abs(drawn - 2.0 * ExpectedLength(pattern, length));
  if (!(error <= 1e-9 * (reach + line[0].Length()))) std::abort();
  return 0;
}
