// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/datareport/ReportPage.h"

#include <algorithm>

#include "examples/common/HtmlPage.h"
#include "examples/common/NumberText.h"
#include "examples/datareport/ColumnSections.h"
#include "examples/datareport/RelationSections.h"
#include "shared/mathtext/Context.h"
#include "shared/mathtext/MathTextHtml.h"

namespace datareport {

using namespace shr;
using namespace examples;

namespace {

GString FileNameOf(const GString& path) {
  const std::size_t slash = path.find_last_of(L"/\\");
  return slash == GString::npos ? path : path.substr(slash + 1);
}

GString SeparatorText(wchar_t separator) {
  switch (separator) {
    case L',':
      return L"commas";
    case L';':
      return L"semicolons";
    case L'\t':
      return L"tabs";
    default:
      return GString(L"the character ") + separator;
  }
}

void WriteSummary(CHtmlReport& report, const DataTable& table, const Options& options) {
  const GString text =
      FileNameOf(options.input) + L": " + FormatCount(table.rows, L"row", L"rows") + L", " +
      FormatCount(table.columns.size(), L"column", L"columns") + L", " + table.encoding + L", " +
      SeparatorText(table.separator) + L" between fields.";
  report << Paragraph(text);
  if (table.broken > 0) {
    const GString broken = FormatCount(table.broken, L"broken row was", L"broken rows were") +
                           L" passed over; the first in " + table.firstFault;
    report << Paragraph(broken);
  }
  if (!table.IsSampled()) return;
  const GString sample =
      L"Count, mean, variance, minimum, maximum and frequent values are of all rows. Percentiles, "
      L"the other statistics, relations and pictures are of a random sample of " +
      FormatCount(table.sample.rows) + L" rows; the same file gives the same sample.";
  report << Paragraph(sample);
}

}  // namespace

ReportFiles MakeReport(const DataTable& table, const Options& options, IProgress& progress) {
  ReportFiles files;
  CHtmlReport report;
  const GString title =
      options.title.empty() ? EscapeMathText(FileNameOf(options.input)) : options.title;
  report << Preamble(MathTextToSimpleText(title), PAGE_STYLE) << Heading(1, MathTextToHtml(title));
  WriteSummary(report, table, options);
  WriteColumns(report, table);
  const std::size_t sections = std::min(table.columns.size(), MOST_SECTIONS);
  Operation drawing(progress, L"Drawing", sections + 2);
  // What may be wrong with the options is told before the long work.
  WritePlaces(report, table, options, files);
  drawing.Step();
  for (std::size_t i = 0; i < sections; ++i) {
    WriteColumn(report, table, i, options, files);
    drawing.Step();
  }
  if (sections < table.columns.size()) {
    WriteNote(report, L"The first " + FormatCount(sections) + L" columns are shown one by one.");
  }
  WriteRelations(report, table, options, files);
  files.emplace_back(PAGE_NAME, FinishPage(report));
  return files;
}

}  // namespace datareport
