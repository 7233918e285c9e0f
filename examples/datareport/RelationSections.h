// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The parts of the page on several columns together: relations and places.

#pragma once

#include "examples/common/HtmlPage.h"
#include "examples/datareport/DataTable.h"
#include "examples/datareport/Options.h"
#include "examples/datareport/ReportPage.h"

namespace datareport {

/// Writes scatter plots, correlations and principal components; nothing for fewer than two columns
/// of numbers.
void WriteRelations(examples::CHtmlReport& report, const DataTable& table, const Options& options,
                    ReportFiles& files);

/// Writes the map and the distances of nearest neighbours of the places that the options name;
/// nothing when they name none. Errors: `ThrowInputError` for a column that does not hold numbers.
void WritePlaces(examples::CHtmlReport& report, const DataTable& table, const Options& options,
                 ReportFiles& files);

}  // namespace datareport
