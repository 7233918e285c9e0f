// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Report pages of the examples: a style for screens of any width, light and dark, and for paper;
/// tables, pictures and notes.
///
///     CHtmlReport report;
///     report << Preamble(title, PAGE_STYLE) << Heading(1, title);
///     BeginTable(report, "Points", {{"Name"}, {"Residual", true}});
///     report << TRBeg();
///     Cell(report, name);
///     NumberCell(report, SignificantText(residual, 4));
///     report << TREnd();
///     EndTable(report);
///     files.Add(folder.Join(L"report.html"), FinishPage(report));

#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "shared/html/HtmlReport.h"
#include "shared/text/GString.h"

namespace examples {

using shr::CHtmlReport;
using shr::GString;

/// What a page adds to the style of the library's reports. Wide things scroll by themselves.
extern const char* const PAGE_STYLE;

/// A column of a table: its heading (markup) and whether it holds numbers.
struct TableColumn {
  const char* heading;
  bool isNumeric = false;
};

/// Begins a table that scrolls by itself where it is wider than the screen. `summary` is told to
/// those who do not see.
void BeginTable(CHtmlReport& report, const char* summary,
                std::initializer_list<TableColumn> columns);
void EndTable(CHtmlReport& report);
void Cell(CHtmlReport& report, const GString& text);
void NumberCell(CHtmlReport& report, const GString& text);
/// A row of a name and a number.
void NumberRow(CHtmlReport& report, const GString& name, const GString& number);

/// Writes small text below something.
void WriteNote(CHtmlReport& report, const GString& text);

/// Shows the picture `svg`, which is to be written beside the page as `fileName`, at its size or
/// smaller.
void WritePicture(CHtmlReport& report, const GString& fileName, const GString& alternative,
                  std::string_view svg);

/// Returns the document with its language, the width of telephones and, where the reader wants it,
/// dark controls.
std::string FinishPage(const CHtmlReport& report);

}  // namespace examples
