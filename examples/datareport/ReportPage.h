// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The report on a table: a page and the pictures on it.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "examples/common/Progress.h"
#include "examples/datareport/DataTable.h"
#include "examples/datareport/Options.h"
#include "shared/text/GString.h"

namespace datareport {

/// Name and content of the files of a report.
using ReportFiles = std::vector<std::pair<GString, std::string>>;

inline constexpr const wchar_t* PAGE_NAME = L"report.html";

/// Returns the pictures and, last, the page that shows them. Errors: `ThrowInputError` when a
/// column that the options name is missing or does not hold numbers.
ReportFiles MakeReport(const DataTable& table, const Options& options,
                       examples::IProgress& progress);

}  // namespace datareport
