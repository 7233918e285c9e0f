// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The part of the page on each column: summary values and pictures.

#pragma once

#include <cstddef>

#include "examples/common/HtmlPage.h"
#include "examples/datareport/DataTable.h"
#include "examples/datareport/Options.h"
#include "examples/datareport/ReportPage.h"

namespace datareport {

/// Columns beyond these are in the table of columns only.
inline constexpr std::size_t MOST_SECTIONS = 40;

/// Writes the table of all columns.
void WriteColumns(examples::CHtmlReport& report, const DataTable& table);

/// Writes the section of a column and adds its pictures to `files`.
void WriteColumn(examples::CHtmlReport& report, const DataTable& table, std::size_t column,
                 const Options& options, ReportFiles& files);

/// Returns "Drawn from a sample of 200,000 of 15,500,000 rows." or nothing.
GString SampleNote(const DataTable& table);

/// Adds a picture to `files` and shows it.
void AddPicture(examples::CHtmlReport& report, ReportFiles& files, const GString& name,
                const GString& alternative, std::string svg);

}  // namespace datareport
