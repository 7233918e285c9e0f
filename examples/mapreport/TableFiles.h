// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The tables of the report as CSV files, for spreadsheets and programs: UTF-8 with a mark, commas,
/// CR LF, fields quoted where they must be (RFC 4180); plain numbers with a point, empty where the
/// report has a dash.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "examples/mapreport/Model.h"
#include "examples/mapreport/SvgMap.h"

namespace mapreport {

inline constexpr const wchar_t* COUNTRIES_TABLE = L"countries.csv";
inline constexpr const wchar_t* STRONGEST_TABLE = L"strongest.csv";
inline constexpr const wchar_t* CITIES_TABLE = L"cities.csv";
inline constexpr const wchar_t* TRACKS_TABLE = L"tracks.csv";
inline constexpr const wchar_t* WAYPOINTS_TABLE = L"waypoints.csv";

/// Returns the name and the bytes of each table; those of tracks and waypoints where there are any.
std::vector<std::pair<GString, std::string>> MakeTableFiles(const Model& model,
                                                            const MapPicture& picture);

}  // namespace mapreport
