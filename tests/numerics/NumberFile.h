// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Lines of a file of tests/data/numerics, without those that begin with '#'.
///
/// Threads: no state.

#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace shr {

inline std::vector<std::string> LinesOf(const std::string& name) {
  std::ifstream file(std::string(SHARED_TEST_DATA_DIR) + "/numerics/" + name);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line[0] != '#') lines.push_back(line);
  }
  return lines;
}

inline std::vector<double> NumbersOf(const std::string& line) {
  std::istringstream stream(line);
  std::vector<double> numbers;
  for (double number = 0.0; stream >> number;) numbers.push_back(number);
  return numbers;
}

}  // namespace shr
