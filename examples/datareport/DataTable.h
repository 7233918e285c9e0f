// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads a table of any size once: a profile of each column over all rows, and a random sample of
/// rows for what needs values one by one.
///
///     DataTable table = ReadTable(options, progress);
///     std::vector<double> depths = table.Sample(2);   // NaN where a row has no such value

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "examples/common/Progress.h"
#include "examples/datareport/ColumnProfile.h"
#include "examples/datareport/Options.h"
#include "shared/text/GString.h"

namespace datareport {

/// More columns are refused: a table of so many is one that was not meant to be read by rows.
inline constexpr std::size_t MOST_COLUMNS = 1000;

/// Cells of the rows that are kept, row by row.
struct RowSample {
  std::vector<CellValue> cells;
  std::size_t rows = 0;
};

class DataTable {
public:
  std::vector<ColumnProfile> columns;
  RowSample sample;
  std::uint64_t rows = 0;    ///< without the first and the broken ones
  std::uint64_t broken = 0;  ///< rows that were passed over
  GString firstFault;        ///< what is wrong with the first of them, with its line
  GString encoding;
  wchar_t separator = L',';

  bool IsSampled() const { return sample.rows < rows; }

  /// Returns a column of the sample in the order of the file: its numbers, or its times where it is
  /// one of times. What is of another kind is NaN.
  std::vector<double> Sample(std::size_t column) const;

  /// Returns the column of this name, letter case set aside where no name is equal. Errors:
  /// `ThrowInputError` when there is none.
  std::size_t Find(const GString& path, const GString& name) const;
  /// The same for a column that must hold numbers; the error names the first row that does not.
  std::size_t FindNumbers(const GString& path, const GString& name) const;
};

/// Reads the input. Rows are kept by reservoir sampling from a fixed seed: each has the same
/// chance, and the same file gives the same sample everywhere. Source: J. S. Vitter, "Random
/// sampling with a reservoir", ACM Transactions on Mathematical Software 11, 1985, algorithm R.
/// Errors: the library's exception when the file cannot be read; `ThrowInputError` with file and
/// line for a table without rows, with too many columns and, unless they are skipped, broken rows.
DataTable ReadTable(const Options& options, examples::IProgress& progress);

/// Returns which of comma, semicolon, tab and vertical bar parts the fields: the one that parts the
/// most first lines alike. Quoted text does not count. The comma when none does.
wchar_t SniffSeparator(const std::vector<GString>& lines, bool decimalComma);

}  // namespace datareport
