// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Dashes a polyline of arbitrary numbers. A line whose length is known must be drawn for the length
// that follows from the pattern alone, in one call and in two; any other line must come back with
// something or an error of the library.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <span>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/polygons/GDashLineGenerator.h"

/// The drawn part of a line of the given length, entry by entry.
static double ExpectedLength(const std::vector<double>& pattern, double length) {
  double position = 0.0, drawn = 0.0;
  bool down = true;
  for (std::size_t i = 0; position < length; i = (i + 1) % pattern.size(), down = !down) {
    if (down) drawn += std::min(pattern[i], length - position);
    position += pattern[i];
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
  const double length = line.GetLength();
  const double sum = std::accumulate(pattern.begin(), pattern.end(), 0.0);
  const double walked = length / sum * static_cast<double>(pattern.size());
  if (walked > 2e3 && walked < 1e8) return 0;  // slow, and nothing new
  double whole = 0.0, parts = 0.0;
  const auto addTo = [](double& drawn) {
    return [&drawn](const shr::Vec2d& a, const shr::Vec2d& b) { drawn += a.Distance(b); };
  };
  try {
    shr::GDashLineGenerator generator(pattern);
    generator.Decompose(line, addTo(whole));
    const std::size_t middle = line.size() / 2;
    generator.SetDashes(pattern);
    generator.Decompose(std::span(line).first(middle + 1), addTo(parts));
    generator.Decompose(std::span(line).subspan(middle), addTo(parts));
  } catch (const shr::Exception&) {
    return 0;
  }
  if (!(length < 1e100 && sum > 1e-100 && sum < 1e100)) return 0;
  const double expected = ExpectedLength(pattern, length);
  const double worst = std::max(std::abs(whole - expected), std::abs(parts - expected));
  if (!(worst <= 1e-9 * (length + line[0].Length()))) std::abort();
  return 0;
}
