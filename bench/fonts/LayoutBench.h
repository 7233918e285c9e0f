// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The labels that the contenders of LayoutBench.cpp measure: names of cities as they are written
/// there, again and again.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// Which names.
enum class Script { All, Simple, Arabic, Devanagari };

/// Returns `count` labels as UTF-8.
std::vector<std::string> MakeLabels(Script script, std::size_t count);

/// Ends the program with that text on standard error.
[[noreturn]] void GiveUp(const char* why);

/// The face and the height of the em, in pixels of 96 to the inch.
constexpr const char* FAMILY = "DejaVu Sans";
constexpr double LABEL_HEIGHT = 16;

/// Texts that all contenders must find as wide, to a hundredth.
constexpr const char* SAMPLES[] = {"Amsterdam, San Francisco", "Αθήνα Москва", "القاهرة",
                                   "ירושלים"};

/// Returns the width of a sample in ours.
double WidthOfSample(const char* sample);

}  // namespace bench
