// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads the tables of points: events, cities; of the continents of countries, and of the credits
/// of files.

#pragma once

#include <map>
#include <vector>

#include "examples/common/TextFormat.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

/// Returns the events of a table with the columns latitude and longitude (also lat and lon) and,
/// where it has them, magnitude (mag), depth, time and place. Errors: the library's exception when
/// the file cannot be read; `ThrowInputError` with the line otherwise.
std::vector<Event> ReadEvents(const GString& path, const TextFormat& format);

/// Returns the cities of a table with the columns name, lat and lon and, where it has them,
/// country, population and capital (yes or no); the largest come first, equal ones in the order of
/// the table. Errors: as above.
std::vector<City> ReadCities(const GString& path, const TextFormat& format);

/// Returns the continents of countries by their names, from a table with the columns name and
/// continent. Errors: as above.
std::map<GString, GString> ReadContinents(const GString& path, const TextFormat& format);

/// Returns the credit of the file at `path` from the table `credits.csv` (columns file and credit)
/// in its folder; empty when there is no such table or row.
GString FindCredit(const GString& path);

/// Returns what follows the last slash or backslash.
GString FileNameOf(const GString& path);
/// Returns the rest of the path, slash included; empty for a bare name.
GString FolderOf(const GString& path);

}  // namespace mapreport
