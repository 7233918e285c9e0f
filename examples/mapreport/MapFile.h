// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads the outlines of countries, and rivers, from map files (RecordFile.h).
///
/// The role of a country's ring is `outer` or `hole`; a hole is cut out of the nearest outer ring
/// above it. Rings of the same name make up one country. Rings are not closed by repeating the
/// first point, though one that is does no harm. The role of a river is `line`.

#pragma once

#include <cstddef>
#include <vector>

#include "examples/common/TextFormat.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

struct MapContent {
  std::vector<Country> countries;  ///< in the order of their first ring
  std::size_t rings = 0;
  std::size_t holes = 0;
  std::size_t points = 0;
};

/// Returns the countries of the file. Errors: those of `RecordReader`, and a hole before any outer
/// ring.
MapContent ReadMapFile(const GString& path, const TextFormat& format);

/// Returns the rivers of a file of lines. Errors: those of `RecordReader`.
std::vector<River> ReadRivers(const GString& path, const TextFormat& format);

}  // namespace mapreport
