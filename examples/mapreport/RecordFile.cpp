// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mapreport/RecordFile.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "examples/common/InputError.h"

namespace mapreport {

using namespace shr;

namespace {

/// A count is only a promise; no more room than this is taken before the points are there.
constexpr unsigned int LARGEST_RESERVE = 4096;

std::vector<GString> SplitAtTabs(const GString& line) {
  std::vector<GString> fields;
  std::size_t begin = 0;
  for (std::size_t tab = line.find(L'\t'); tab != GString::npos; tab = line.find(L'\t', begin)) {
    fields.push_back(line.substr(begin, tab - begin));
    begin = tab + 1;
  }
  fields.push_back(line.substr(begin));
  return fields;
}

}  // namespace

RecordReader::RecordReader(const GString& path, const TextFormat& format,
                           std::vector<GString> roles, unsigned int fewestPoints)
    : lines_(path, format), roles_(std::move(roles)), fewestPoints_(fewestPoints) {}

bool RecordReader::Next(Record& record) {
  GString line;
  do {
    if (!lines_.Next(line)) {
      if (header_.line == 0) ThrowInputError(lines_.Path(), 1, L"The file holds no record.");
      return false;
    }
  } while (line.empty());
  ParseHeader(line, record);
  record.points.clear();
  record.points.reserve(std::min(header_.count, LARGEST_RESERVE));
  for (unsigned int i = 0; i < header_.count; ++i) {
    const bool more = lines_.Next(line);
    if (!more || line.find(L'\t') != GString::npos) FailCount(i, more);
    record.points.push_back(ParsePoint(line));
  }
  return true;
}

void RecordReader::Fail(const GString& what) const {
  ThrowInputError(lines_.Path(), header_.line, what);
}

void RecordReader::ParseHeader(const GString& line, Record& record) {
  const std::vector<GString> fields = SplitAtTabs(line);
  if (fields.size() != 3) {
    lines_.Fail(L"A record header has to be here: name, role and point count between tabs.");
  }
  record.name = fields[0];
  record.role = fields[1];
  header_ = {fields[0], 0, lines_.LineNumber()};
  if (std::find(roles_.begin(), roles_.end(), record.role) == roles_.end()) {
    const GString known = roles_.size() == 1
                              ? L"not '" + roles_[0] + L"'."
                              : L"neither '" + roles_[0] + L"' nor '" + roles_[1] + L"'.";
    lines_.Fail(L"The role " + Quoted(record.role) + L" is " + known);
  }
  if (!fields[2].ToUnsignedInt(header_.count)) {
    lines_.Fail(L"The point count " + Quoted(fields[2]) + L" is no number.");
  }
  if (header_.count < fewestPoints_) {
    lines_.Fail((fewestPoints_ == 3 ? L"A ring needs at least " : L"A line needs at least ") +
                GString(std::to_wstring(fewestPoints_)) + L" points.");
  }
}

void RecordReader::FailCount(unsigned int found, bool more) const {
  const GString counts = GString(std::to_wstring(header_.count)) + L" points announced in line " +
                         std::to_wstring(header_.line) + L" for " + Quoted(header_.name) +
                         L", but " + std::to_wstring(found) + L" found.";
  if (!more) {
    ThrowInputError(lines_.Path(), lines_.LineNumber(), L"The file ends early: " + counts);
  }
  lines_.Fail(L"The record ends early: " + counts);
}

Vec2d RecordReader::ParsePoint(const GString& line) const {
  const std::size_t comma = line.find(L',');
  if (comma == GString::npos) {
    lines_.Fail(Quoted(line) + L" is no point: longitude, comma, latitude.");
  }
  return Vec2d(ParseDegrees(line.substr(0, comma), L"longitude", 180),
               ParseDegrees(line.substr(comma + 1), L"latitude", 90));
}

double RecordReader::ParseDegrees(GString text, const wchar_t* what, double limit) const {
  double value = 0;
  if (!text.ToDouble(value)) {
    lines_.Fail(GString(L"The ") + what + L" " + Quoted(text.Trim()) + L" is no number.");
  }
  // Not a number compares false.
  if (!(std::abs(value) <= limit)) {
    lines_.Fail(GString(L"The ") + what + L" " + Quoted(text.Trim()) + L" is not on the globe.");
  }
  return value;
}

}  // namespace mapreport
