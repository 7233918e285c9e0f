// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads the records of a map file: named rings or lines of points.
///
/// A record is a header line "name<TAB>role<TAB>count", then `count` lines "longitude, latitude" in
/// degrees. Which roles there are depends on what the file is read for; blank lines between records
/// are passed over.
///
///     RecordReader records(path, format, {L"outer", L"hole"}, 3);
///     Record record;
///     while (records.Next(record)) ...

#pragma once

#include <cstddef>
#include <vector>

#include "examples/common/TableReader.h"
#include "examples/common/TextFormat.h"
#include "examples/mapreport/Model.h"

namespace mapreport {

struct Record {
  GString name;
  GString role;
  std::vector<Vec2d> points;
};

/// Errors of all members: the library's exception when the file cannot be read; `ThrowInputError`
/// with the line for anything that is not of the form above: a role that is unknown, a count that
/// does not fit what follows, a coordinate that is no number or not on the globe, no record at all.
class RecordReader {
public:
  /// `roles` are one or two; every record has at least `fewestPoints` points.
  RecordReader(const GString& path, const TextFormat& format, std::vector<GString> roles,
               unsigned int fewestPoints);

  /// Reads the next record. Returns false at the end of the file.
  bool Next(Record& record);

  /// Rejects the record read last; the message names the line of its header.
  [[noreturn]] void Fail(const GString& what) const;

private:
  /// The header of the record read last.
  struct Header {
    GString name;
    unsigned int count = 0;
    std::size_t line = 0;
  };

  void ParseHeader(const GString& line, Record& record);
  [[noreturn]] void FailCount(unsigned int found, bool more) const;
  Vec2d ParsePoint(const GString& line) const;
  double ParseDegrees(GString text, const wchar_t* what, double limit) const;

  LineReader lines_;
  std::vector<GString> roles_;
  unsigned int fewestPoints_;
  Header header_;
};

}  // namespace mapreport
