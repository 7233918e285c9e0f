// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The labels that MeasureBench.cpp and its peers measure: the cities of the examples' data in
/// their own scripts, most of them plain, the others with styles, second lines and raised numbers.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// One label in the markup of each contender, as UTF-8.
struct Label {
  std::string name;
  std::string mathText;
  std::string pango;
};

/// Returns `count` labels; the cities again and again.
std::vector<Label> MakeLabels(std::size_t count);

/// Height of the em of all labels, in pixels of 96 to the inch.
constexpr double LABEL_HEIGHT = 16;

/// Text that both contenders must find as wide, to a hundredth.
constexpr const char* SAMPLE = "Amsterdam, San Francisco and Wellington";

/// Returns the width of the sample in ours, at the height of labels.
double SampleWidth();

}  // namespace bench
