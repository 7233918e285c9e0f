// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/CsvWriter.h"

#include <charconv>
#include <iterator>

namespace examples {

CsvWriter::CsvWriter(std::initializer_list<const char*> headings) : out_("\xEF\xBB\xBF") {
  for (const char* heading : headings) Raw(heading);
  EndRow();
}

CsvWriter& CsvWriter::Text(const GString& text) {
  const std::string bytes = text.ToUtf8();
  if (bytes.find_first_of(",\"\r\n") == std::string::npos) return Raw(bytes);
  std::string quoted = "\"";
  for (const char ch : bytes) {
    if (ch == '"') quoted += ch;
    quoted += ch;
  }
  return Raw(quoted + '"');
}

CsvWriter& CsvWriter::Number(double value) {
  char digits[400];  // the largest number has 309 before the point
  const auto [end, error] =
      std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed);
  return Raw(std::string(digits, end));
}

CsvWriter& CsvWriter::Number(const std::optional<double>& value) {
  return value ? Number(*value) : Raw(std::string());
}

void CsvWriter::EndRow() {
  out_ += "\r\n";
  isFirst_ = true;
}

CsvWriter& CsvWriter::Raw(const std::string& field) {
  if (!isFirst_) out_ += ',';
  isFirst_ = false;
  out_ += field;
  return *this;
}

}  // namespace examples
