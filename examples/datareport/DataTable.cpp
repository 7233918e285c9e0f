// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/datareport/DataTable.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <utility>

#include "examples/common/InputError.h"
#include "examples/common/TableReader.h"
#include "shared/files/File.h"

namespace datareport {

using namespace shr;
using namespace examples;

namespace {

constexpr std::uint64_t SEED = 20261122;
constexpr std::size_t LINES_TO_SNIFF = 25;
constexpr std::uint64_t ROWS_A_STEP = 20000;

/// Keeps rows with equal chance.
class Reservoir {
public:
  Reservoir(std::size_t columns, std::size_t most)
      : columns_(columns), most_(std::min(most, std::max<std::size_t>(1, MOST_CELLS / columns))) {}

  void Add(const std::vector<CellValue>& row) {
    const std::uint64_t index = count_++;
    if (index < most_) {
      cells_.insert(cells_.end(), row.begin(), row.end());
      places_.push_back(index);
      return;
    }
    // The remainder favours small numbers by less than 2^-30 where there are fewer than 2^34 rows.
    const std::uint64_t chosen = random_() % count_;
    if (chosen >= most_) return;
    std::copy(row.begin(), row.end(),
              cells_.begin() + static_cast<std::ptrdiff_t>(chosen * columns_));
    places_[static_cast<std::size_t>(chosen)] = index;
  }

  /// Returns the rows in the order of the file.
  RowSample Take() {
    std::vector<std::size_t> order(places_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    if (std::is_sorted(places_.begin(), places_.end())) {
      return {std::move(cells_), order.size()};
    }
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return places_[a] < places_[b]; });
    RowSample sample;
    sample.rows = order.size();
    sample.cells.reserve(cells_.size());
    for (const std::size_t row : order) {
      const auto first = cells_.begin() + static_cast<std::ptrdiff_t>(row * columns_);
      sample.cells.insert(sample.cells.end(), first, first + static_cast<std::ptrdiff_t>(columns_));
    }
    return sample;
  }

private:
  std::size_t columns_;
  std::size_t most_;
  std::uint64_t count_ = 0;
  std::mt19937_64 random_{SEED};
  std::vector<CellValue> cells_;
  std::vector<std::uint64_t> places_;
};

std::size_t CountOutsideQuotes(const GString& line, wchar_t separator) {
  std::size_t count = 0;
  bool isInside = false;
  for (const wchar_t unit : line) {
    if (unit == L'"') isInside = !isInside;
    if (unit == separator && !isInside) ++count;
  }
  return count;
}

std::vector<GString> FirstLines(const GString& path, const TextFormat& format) {
  LineReader reader(path, format);
  std::vector<GString> lines;
  GString line;
  while (lines.size() < LINES_TO_SNIFF && reader.Next(line)) {
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

/// Names that are missing or stand twice get a number, so that each names one column.
std::vector<GString> UniqueNames(const std::vector<GString>& names) {
  std::vector<GString> unique;
  std::set<std::wstring> taken;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const GString base = names[i].empty() ? L"column " + GString(std::to_wstring(i + 1)) : names[i];
    GString name = base;
    for (std::size_t number = 2; !taken.insert(name).second; ++number) {
      name = base + L" (" + GString(std::to_wstring(number)) + L")";
    }
    unique.push_back(name);
  }
  return unique;
}

/// Reads the rows behind the first one.
class TableScan {
public:
  TableScan(const Options& options, TableReader& reader, DataTable& table)
      : options_(options),
        reader_(reader),
        table_(table),
        reservoir_(table.columns.size(), options.sample),
        row_(table.columns.size()) {}

  /// Returns false at the end of the table.
  bool Step() {
    switch (reader_.ReadRow()) {
      case TableReader::RowState::End:
        return false;
      case TableReader::RowState::Broken:
        TakeBroken();
        return true;
      case TableReader::RowState::Row:
        break;
    }
    ++table_.rows;
    for (std::size_t i = 0; i < row_.size(); ++i) {
      row_[i] = table_.columns[i].Add(reader_.Field(i), reader_.RowLine());
    }
    reservoir_.Add(row_);
    return true;
  }

  void Finish() { table_.sample = reservoir_.Take(); }

private:
  void TakeBroken() {
    if (!options_.skipBroken) reader_.Fail(reader_.Fault());
    if (table_.broken++ == 0) {
      table_.firstFault =
          L"line " + GString(std::to_wstring(reader_.RowLine())) + L": " + reader_.Fault();
    }
  }

  const Options& options_;
  TableReader& reader_;
  DataTable& table_;
  Reservoir reservoir_;
  std::vector<CellValue> row_;
};

}  // namespace

std::vector<double> DataTable::Sample(std::size_t column) const {
  const CellKind wanted =
      columns[column].Kind() == ColumnKind::Times ? CellKind::Time : CellKind::Number;
  std::vector<double> values;
  values.reserve(sample.rows);
  for (std::size_t row = 0; row < sample.rows; ++row) {
    const CellValue& cell = sample.cells[row * columns.size() + column];
    values.push_back(cell.kind == wanted ? cell.value : std::numeric_limits<double>::quiet_NaN());
  }
  return values;
}

std::size_t DataTable::Find(const GString& path, const GString& name) const {
  GString wanted = name;
  wanted.MakeLower();
  std::size_t found = columns.size();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].Name() == name) return i;
    GString own = columns[i].Name();
    if (found == columns.size() && own.MakeLower() == wanted) found = i;
  }
  if (found == columns.size()) {
    ThrowInputError(path, 1, L"There is no column " + Quoted(name) + L".");
  }
  return found;
}

std::size_t DataTable::FindNumbers(const GString& path, const GString& name) const {
  const std::size_t index = Find(path, name);
  const ColumnProfile& column = columns[index];
  if (column.Kind() == ColumnKind::Numbers) return index;
  if (column.FirstTextLine() == 0) {
    ThrowInputError(path, 1, L"The column " + Quoted(name) + L" is empty.");
  }
  ThrowInputError(
      path, column.FirstTextLine(),
      Quoted(column.FirstText()) + L" in column " + Quoted(column.Name()) + L" is no number.");
}

DataTable ReadTable(const Options& options, IProgress& progress) {
  TextFormat format;
  {
    const Operation detecting(progress, L"Looking at the encoding", 0);
    format = DetectTextFormat(options.input, options.codePage);
  }
  DataTable table;
  table.encoding = format.Describe();
  table.separator = options.separator != L'\0'
                        ? options.separator
                        : SniffSeparator(FirstLines(options.input, format), options.decimalComma);
  TableReader reader(options.input, format, table.separator);
  if (reader.Names().size() > MOST_COLUMNS) {
    ThrowInputError(
        options.input, 1,
        L"The table has more than " + GString(std::to_wstring(MOST_COLUMNS)) + L" columns.");
  }
  for (const GString& name : UniqueNames(reader.Names())) {
    table.columns.emplace_back(name, options.decimalComma);
  }
  TableScan scan(options, reader, table);
  const auto length = static_cast<std::uint64_t>(std::max<std::int64_t>(1, reader.FileLength()));
  progress.Begin(L"Reading", length);
  while (scan.Step()) {
    if (table.rows % ROWS_A_STEP == 0) {
      progress.Advance(static_cast<std::uint64_t>(std::max<std::int64_t>(0, reader.Position())));
    }
  }
  progress.End();
  scan.Finish();
  if (table.rows == 0) ThrowInputError(options.input, 1, L"The table has no rows.");
  return table;
}

wchar_t SniffSeparator(const std::vector<GString>& lines, bool decimalComma) {
  wchar_t best = decimalComma ? L';' : L',';
  std::size_t bestScore = 0;
  for (const wchar_t candidate : {L',', L';', L'\t', L'|'}) {
    if (lines.empty() || (candidate == L',' && decimalComma)) continue;
    const std::size_t wanted = CountOutsideQuotes(lines[0], candidate);
    if (wanted == 0) continue;
    const auto alike = static_cast<std::size_t>(std::count_if(
        lines.begin(), lines.end(),
        [&](const GString& line) { return CountOutsideQuotes(line, candidate) == wanted; }));
    // Lines that are alike weigh more than many fields.
    const std::size_t score = alike * MOST_COLUMNS + std::min(wanted, MOST_COLUMNS - 1);
    if (score <= bestScore) continue;
    best = candidate;
    bestScore = score;
  }
  return best;
}

}  // namespace datareport
