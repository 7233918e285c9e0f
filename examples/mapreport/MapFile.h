// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads the outlines of countries from a map file.
///
/// The file is a sequence of records: a header line "name<TAB>role<TAB>count", then `count` lines
/// "longitude, latitude" in degrees. The role is `outer` or `hole`; a hole is cut out of the
/// nearest outer ring above it. Rings of the same name make up one country. Rings are not closed by
/// repeating the first point, though one that is does no harm.

#pragma once

#include <cstddef>
#include <vector>

#include "examples/mapreport/Model.h"
#include "examples/mapreport/TextFormat.h"

namespace mapreport {

struct MapContent {
  std::vector<Country> countries;  ///< in the order of their first ring
  std::size_t rings = 0;
  std::size_t holes = 0;
  std::size_t points = 0;
};

/// Returns the countries of the file.
/// Errors: the library's exception when it cannot be read; `ThrowInputError` with the line for
/// anything that is not of the form above: a role that is unknown, a count that does not fit what
/// follows, a coordinate that is no number or not on the globe, a hole before any outer ring, no
/// record at all.
MapContent ReadMapFile(const GString& path, const TextFormat& format);

}  // namespace mapreport
