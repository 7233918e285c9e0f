// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Writes CSV files for spreadsheets and programs: UTF-8 with a mark, commas, CR LF, fields quoted
/// where they must be (RFC 4180); plain numbers with a point that read back as they were.
///
///     CsvWriter csv({"city", "population"});
///     csv.Text(city.name).Number(city.population).EndRow();
///     files.Add(folder.Join(L"cities.csv"), csv.Take());

#pragma once

#include <initializer_list>
#include <optional>
#include <string>

#include "shared/text/GString.h"

namespace examples {

using shr::GString;

/// A table under construction.
class CsvWriter {
public:
  /// Writes the first row, of names in ASCII.
  explicit CsvWriter(std::initializer_list<const char*> headings);

  CsvWriter& Text(const GString& text);
  CsvWriter& Number(double value);
  /// Writes an empty field for nothing.
  CsvWriter& Number(const std::optional<double>& value);
  void EndRow();

  /// Returns the bytes of the file.
  std::string Take() { return std::move(out_); }

private:
  CsvWriter& Raw(const std::string& field);

  std::string out_;
  bool isFirst_ = true;
};

}  // namespace examples
