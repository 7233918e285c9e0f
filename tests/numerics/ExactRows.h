// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads the rows that tools/make_statistics_rows.py makes, and compares doubles.
///
///     for (const auto& row : test::ReadRows("univariate-exact.txt")) ...
///     EXPECT_LE(test::UlpsBetween(value, exact), 4.0);

#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace shr::test {

inline std::vector<std::string> SplitText(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

/// Returns the columns of the lines of a file of tests/data/numerics/ that are no comments.
inline std::vector<std::vector<std::string>> ReadRows(const std::string& file) {
  std::ifstream stream(SHARED_TEST_DATA_DIR "/numerics/" + file);
  std::vector<std::vector<std::string>> rows;
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty() && line[0] != '#') rows.push_back(SplitText(line, '\t'));
  }
  return rows;
}

/// Returns the double of 16 hexadecimal digits.
inline double FromImage(const std::string& image) {
  return std::bit_cast<double>(static_cast<std::uint64_t>(std::stoull(image, nullptr, 16)));
}

/// Returns integers below 2^20, scaled and shifted, the same as the tool.
inline std::vector<double> Generate(std::size_t count, std::uint64_t state, double offset,
                                    double scale) {
  std::vector<double> sample;
  for (std::size_t i = 0; i < count; ++i) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    sample.push_back(offset + scale * static_cast<double>(state >> 44));
  }
  return sample;
}

/// Returns how many units of the last place lie between numbers; 0 for two NaN.
inline double UlpsBetween(double a, double b) {
  if (a == b || (a != a && b != b)) return 0.0;
  if (!std::isfinite(a) || !std::isfinite(b)) return std::numeric_limits<double>::infinity();
  const double larger = std::max(std::fabs(a), std::fabs(b));
  const double ulp = larger - std::nextafter(larger, 0.0);
  return std::fabs(a / 2 - b / 2) / ulp * 2;
}

}  // namespace shr::test
