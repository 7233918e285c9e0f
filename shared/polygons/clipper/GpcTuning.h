// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The numbers that the polygon clipper's search for crossings was tuned by. For the library's own
/// use. None of them changes what is found, only how fast; some say what is left to the grid.
///
/// Beside each stands what another value costs, in instructions (or time, where it says so) of the
/// whole operation against those of this value, by the workloads of bench/polygons: unions of rough
/// stars of 1,000 vertices, smooth stars of 10,000, 30 x 30 grids and combs.

#pragma once

#include "shared/polygons/clipper/GpcBuffer.h"

namespace shr::gpc {

struct Tuning {
  /// A section has at most so many edges. Smooth stars: 1 costs 5.4 times as much, 4 1.59 times, 8
  /// 1.18 times, 32 1.01 times.
  static constexpr Index SECTION_EDGES = 16;

  /// A raster comes first for so many sections, if they meet no more cells than `MAX_COPIES` on
  /// average. Without a raster grids cost 1.15 times as much, rough stars 0.99 times; from 64 or
  /// 1,024 sections on there is no difference on these sizes. 1.3 or 4 copies: 1.00 and 1.01 times.
  /// 3 sections a cell: grids 1.17 times, smooth stars 0.97 times; 12: 1.02 and 1.03 times.
  static constexpr Index MANY_SECTIONS = 256;
  static constexpr double MAX_COPIES = 2.0;
  static constexpr double SECTIONS_PER_CELL = 6.0;

  /// All sections of a tile with no more than this are compared. 8: combs 1.14 times, grids 1.10,
  /// rough stars 0.97; 12: 1.06, 1.02, 0.97; 32: 0.96, 1.00, 1.31.
  static constexpr Index SMALL_TILE = 20;
  /// Of so few edges in a tile, pairs whose boxes overlap are listed without a branch. Without that
  /// a union of polygons of 10 vertices takes 1.47 times as long, of 50 vertices 1.19 times; with
  /// 16, 10 vertices cost 1.11 times the cycles, with 32, 50 vertices 1.05 times (estimated from
  /// instructions and mispredictions).
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
  /// average, else it is cut. 1: rough stars 1.35 times, 6: 1.03 times; 10: 8 times the time or
  /// more for 100,000 vertices. Rough stars of 100,000 take 1.37 times as long with cuts alone, 4.9
  /// times with intervals alone; with neither those of 10,000 take 16 times as long.
  static constexpr double MAX_OVERLAPS = 3.0;
  /// A bundle is left to the grid when there are so many more comparisons than elements and
  /// crossings. Of the crowds that the benchmarks know, those that cross need up to 6, those that
  /// meet in a point hundreds; 3: 6 times the time or more for rough stars of 100,000.
  static constexpr Index MOST_IN_VAIN = 8;
};

}  // namespace shr::gpc
