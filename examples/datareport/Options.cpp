// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/datareport/Options.h"

#include "shared/mathtext/Context.h"

namespace datareport {

using namespace examples;

namespace {

constexpr std::size_t MOST_FREQUENT = 1000;

/// Returns the character that a text names, 0 for none.
wchar_t ParseSeparator(const GString& text) {
  if (text == L"tab" || text == L"\\t") return L'\t';
  if (text == L"comma") return L',';
  if (text == L"semicolon") return L';';
  const bool isOne = text.size() == 1 && text[0] != L'"' && text[0] >= L' ' && text[0] < 0x7F;
  return isOne || text == L"\t" ? text[0] : L'\0';
}

/// Reads "COLUMN=TEXT"; the text may hold "=", too.
std::optional<ColumnLabel> ParseLabel(const GString& text) {
  const std::size_t sign = text.find(L'=');
  if (sign == 0 || sign == GString::npos || sign + 1 == text.size()) return std::nullopt;
  return ColumnLabel{text.substr(0, sign), text.substr(sign + 1)};
}

GString FaultOfLabel(const GString& text) {
  const std::optional<ColumnLabel> label = ParseLabel(text);
  if (!label) return L"'" + text + L"' is not COLUMN=TEXT";
  return shr::FindMathTextFault(label->text);
}

ParsedArguments CheckOptions(const Options& options) {
  const GString program(L"datareport");
  if (options.outFolder.empty()) return UsageError(program, L"--out is empty");
  if (options.x.empty() != options.y.empty()) {
    return UsageError(program, L"--x and --y go together");
  }
  if (!options.z.empty() && options.x.empty()) return UsageError(program, L"--z needs --x and --y");
  if (options.decimalComma && options.separator == L',') {
    return UsageError(program, L"--decimal-comma and commas between fields do not go together");
  }
  return ParsedArguments();
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<GString>& arguments) {
  CommandLine result;
  Options& options = result.options;
  GString separator;
  std::vector<GString> labels;
  ArgumentParser parser("datareport",
                        "Describes a table of any size and encoding as an HTML report: summaries, "
                        "distributions, relations.",
                        DATAREPORT_VERSION);
  parser.SetFooter(
      "Columns are told by their names in the first row. Count, mean, variance, minimum and\n"
      "maximum are of all rows; of a large file the rest is of a sample, and the report says so.\n"
      "Exit status: 0 success, 1 the input cannot be used, 2 wrong usage.");
  parser.BeginGroup("Input");
  parser.AddText("--input", options.input, "FILE", "Table: CSV or TSV in any encoding").Required();
  parser.AddCodePage("--codepage", options.codePage, "Code page of a file without a mark");
  parser
      .AddText("--delimiter", separator, "CHAR",
               "What stands between fields: a character, comma, semicolon or tab")
      .MustParse([](const GString& text) { return ParseSeparator(text) != L'\0'; },
                 L"is no character between fields");
  parser.AddFlag("--decimal-comma", options.decimalComma, "Numbers are written 1.234,5");
  parser.AddFlag("--skip-broken", options.skipBroken, "Count broken rows instead of giving up");
  parser.BeginGroup("Report");
  parser.AddText("--out", options.outFolder, "DIR", "Folder for report.html; made when missing")
      .Required();
  parser.AddText("--title", options.title, "TEXT", "Title of the report, math text")
      .Check(shr::FindMathTextFault);
  parser
      .AddTexts("--label", labels, "COLUMN=TEXT",
                "What to call a column, math text; may be given for each")
      .Check(FaultOfLabel);
  parser.AddTextMode(options.textMode);
  parser.AddText("--x", options.x, "COLUMN", "Column of places: east or longitude");
  parser.AddText("--y", options.y, "COLUMN", "Column of places: north or latitude");
  parser.AddText("--z", options.z, "COLUMN", "Column of values at the places");
  parser.AddCount("--sample", options.sample, MOST_ROWS, "Most rows that are kept");
  parser.AddCount("--frequent", options.frequent, MOST_FREQUENT,
                  "Most frequent values of a text column");
  parser.AddFlag("--quiet", options.quiet, "Write nothing but errors");
  static_cast<ParsedArguments&>(result) = parser.Parse(arguments);
  if (result.action != ParsedArguments::Action::Run) return result;
  if (!separator.empty()) options.separator = ParseSeparator(separator);
  for (const GString& label : labels) options.labels.push_back(*ParseLabel(label));
  static_cast<ParsedArguments&>(result) = CheckOptions(options);
  return result;
}

}  // namespace datareport
