// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/TableReader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

#include "examples/common/InputError.h"
#include "shared/text/StringUtility.h"
#include "shared/text/WhiteSpace.h"

namespace examples {

using namespace shr;

namespace {

/// A quoted field that is never closed would take the rest of the file.
constexpr std::size_t LONGEST_FIELD = LONGEST_LINE;

wchar_t FindSeparator(const GString& firstRow) {
  const auto occurrences = [&](wchar_t ch) {
    return std::count(firstRow.begin(), firstRow.end(), ch);
  };
  wchar_t best = L',';
  for (const wchar_t candidate : {L';', L'\t'}) {
    if (occurrences(candidate) > occurrences(best)) best = candidate;
  }
  return best;
}

GString NumberText(double value) {
  return DoubleToStringW(value, 0);
}

}  // namespace

LineReader::LineReader(const GString& path, const TextFormat& format) : path_(path) {
  file_.Open(path, L"rb", CEncodedBufferedFile::ShareRead, format.encoding, format.codePage, true,
             false);
  file_.SetWholeLines(true);
}

bool LineReader::Next(GString& line) {
  line.clear();
  if (!file_.ReadString(line)) return false;
  ++lineNumber_;
  if (line.find(L'\0') != GString::npos) Fail(L"The line holds a zero character; this is no text.");
  return true;
}

void LineReader::Fail(const GString& what) const {
  ThrowInputError(path_, lineNumber_, what);
}

TableReader::TableReader(const GString& path, const TextFormat& format, wchar_t separator,
                         Comments comments)
    : lines_(path, format) {
  if (!lines_.Next(line_)) ThrowInputError(path, 1, L"The file is empty.");
  while (comments == Comments::AreSkipped && !line_.empty() && line_[0] == L'#') {
    comments_.push_back(line_.substr(1));
    if (!lines_.Next(line_)) lines_.Fail(L"There is no row below the comment.");
  }
  rowLine_ = lines_.LineNumber();
  separator_ = separator != L'\0' ? separator : FindSeparator(line_);
  if (!ReadFields()) Fail(fault_);
  names_.assign(fields_.begin(), fields_.begin() + static_cast<std::ptrdiff_t>(fieldCount_));
  header_ = names_;
  for (GString& name : header_) name.Trim().MakeLower();
}

std::size_t TableReader::FindColumn(std::initializer_list<const wchar_t*> names) const {
  for (const wchar_t* name : names) {
    const auto found = std::find(header_.begin(), header_.end(), name);
    if (found != header_.end()) return static_cast<std::size_t>(found - header_.begin());
  }
  return NO_COLUMN;
}

std::size_t TableReader::Column(std::initializer_list<const wchar_t*> names) const {
  const std::size_t column = FindColumn(names);
  if (column == NO_COLUMN) {
    ThrowInputError(lines_.Path(), lines_.LineNumber(),
                    GString(L"The column '") + *names.begin() + L"' is missing.");
  }
  return column;
}

bool TableReader::NextRow() {
  const RowState state = ReadRow();
  if (state == RowState::Broken) Fail(fault_);
  return state == RowState::Row;
}

TableReader::RowState TableReader::ReadRow() {
  do {
    if (!lines_.Next(line_)) return RowState::End;
  } while (line_.empty());
  rowLine_ = lines_.LineNumber();
  if (!ReadFields()) return RowState::Broken;
  if (fieldCount_ != header_.size()) {
    fault_ = GString(std::to_wstring(fieldCount_)) + L" fields where the first row has " +
             std::to_wstring(header_.size()) + L".";
    return RowState::Broken;
  }
  ++rowCount_;
  return RowState::Row;
}

GString& TableReader::AddField() {
  if (fieldCount_ == fields_.size()) fields_.emplace_back();
  GString& field = fields_[fieldCount_++];
  field.clear();
  return field;
}

/// Returns false when the row is broken; `fault_` then tells how.
bool TableReader::ReadFields() {
  fieldCount_ = 0;
  std::size_t pos = 0;
  while (true) {
    GString& field = AddField();
    if (pos < line_.size() && line_[pos] == L'"') {
      if (!ParseQuoted(pos, field)) return false;
    } else {
      ParsePlain(pos, field);
    }
    if (pos >= line_.size()) return true;
    if (line_[pos] != separator_) {
      fault_ = L"Text follows the closing quote of a field.";
      return false;
    }
    ++pos;
  }
}

bool TableReader::ParseQuoted(std::size_t& pos, GString& field) {
  ++pos;
  while (true) {
    const std::size_t quote = std::min(line_.find(L'"', pos), line_.size());
    field.append(line_.data() + pos, quote - pos);
    pos = quote;
    if (pos == line_.size()) {
      // The field goes on in the next line.
      field += L'\n';
      pos = 0;
      if (field.size() > LONGEST_FIELD || !lines_.Next(line_)) {
        fault_ = L"The quotes of a field are not closed.";
        return false;
      }
      continue;
    }
    ++pos;
    if (pos >= line_.size() || line_[pos] != L'"') return true;
    field += L'"';
    ++pos;
  }
}

void TableReader::ParsePlain(std::size_t& pos, GString& field) const {
  const std::size_t end = std::min(line_.find(separator_, pos), line_.size());
  std::size_t first = pos;
  std::size_t last = end;
  while (first < last && IsWhiteSpace(line_[first])) ++first;
  while (first < last && IsWhiteSpace(line_[last - 1])) --last;
  field.assign(line_.data() + first, last - first);
  pos = end;
}

const GString& TableReader::Field(std::size_t column) const {
  static const GString EMPTY;
  return column == NO_COLUMN ? EMPTY : fields_[column];
}

std::optional<double> TableReader::OptionalNumber(std::size_t column) const {
  const GString& text = Field(column);
  if (text.empty()) return std::nullopt;
  double value = 0;
  if (!text.ToDouble(value) || !std::isfinite(value)) {
    Fail(Quoted(text) + L" in column '" + header_[column] + L"' is no number.");
  }
  return value;
}

double TableReader::Number(std::size_t column, double smallest, double largest) const {
  const std::optional<double> value = OptionalNumber(column);
  if (!value) Fail(L"The column '" + header_[column] + L"' is empty.");
  if (*value < smallest || *value > largest) {
    Fail(Quoted(Field(column)) + L" in column '" + header_[column] + L"' is not between " +
         NumberText(smallest) + L" and " + NumberText(largest) + L".");
  }
  return *value;
}

void TableReader::Fail(const GString& what) const {
  ThrowInputError(lines_.Path(), rowLine_, what);
}

}  // namespace examples
