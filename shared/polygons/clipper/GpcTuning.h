// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The numbers that the polygon clipper's search for crossings was tuned by. For the library's own
/// use. None of them changes what is found, only how fast; two say what is left to the grid.

#pragma once

#include "shared/polygons/clipper/GpcBuffer.h"

namespace shr::gpc {

struct Tuning {
  /// A section has at most so many edges.
  static constexpr Index SECTION_EDGES = 16;

  /// A raster comes first for so many sections, if they meet no more cells than `MAX_COPIES` on
  /// average.
  static constexpr Index MANY_SECTIONS = 256;
  static constexpr double MAX_COPIES = 2.0;
  static constexpr double SECTIONS_PER_CELL = 6.0;

  /// All sections of a tile with no more than this are compared, edge by edge where there are few.
  static constexpr Index SMALL_TILE = 20;
  static constexpr Index FEW_EDGES = 24;
  static constexpr int MAX_DEPTH = 120;
  /// In tolerances; smaller crowded tiles belong to the grid.
  static constexpr double SMALLEST_TILE = 64.0;

  /// A crowd is judged by about so many of its elements, or twice as many pairs.
  static constexpr Index SAMPLES = 16;
  /// So many crossing pairs of those make it best to compare all; so many that meet in one point,
  /// to leave them to the grid.
  static constexpr Index MANY_MEET = 6;
  /// A tile that was halved so many times more than the logarithm of the number of sections to
  /// base 2, and whose elements are so many times as long as it, belongs to the grid.
  static constexpr int MORE_HALVINGS = 6;
  static constexpr double FAR_AWAY = 256.0;
  /// All edges go to the grid when a larger share of the sections is left to it.
  static constexpr Index MOST_LEFT = 4;

  /// A bundle is compared by intervals when an element overlaps no more others than this on
  /// average, else it is cut.
  static constexpr double MAX_OVERLAPS = 3.0;
  /// A bundle is left to the grid when there are so many more comparisons than elements and
  /// crossings. Of the crowds that the benchmarks know, those that cross need up to 6, those that
  /// meet in a point hundreds.
  static constexpr Index MOST_IN_VAIN = 8;
};

}  // namespace shr::gpc
