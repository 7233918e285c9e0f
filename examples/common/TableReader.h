// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Reads text files by lines, and tables of separated fields by rows, keeping the line number for
/// messages.
///
///     TableReader table(path, DetectTextFormat(path, std::nullopt));
///     const std::size_t name = table.Column({L"name"});
///     while (table.NextRow()) cities.push_back(table.Field(name));
///
/// A reader holds one line or row at a time, however large the file is.

#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <vector>

#include "examples/common/TextFormat.h"
#include "shared/files/EncodedBufferedFile.h"
#include "shared/text/GString.h"

namespace examples {

/// The lines of one text file.
class LineReader {
public:
  LineReader(const GString& path, const TextFormat& format);

  /// Reads the next line, without its end. Returns false at the end of the file.
  /// Errors: `ThrowInputError` when the line holds a zero character.
  bool Next(GString& line);

  /// Returns the number of the line read last, from 1; 0 before the first.
  std::size_t LineNumber() const { return lineNumber_; }
  const GString& Path() const { return path_; }
  /// Return how far the file was read and how long it is, in bytes.
  std::int64_t Position() const { return file_.GetPosition(); }
  std::int64_t FileLength() const { return file_.GetLength(); }

  /// Rejects the line read last.
  [[noreturn]] void Fail(const GString& what) const;

private:
  GString path_;
  shr::CEncodedBufferedFile file_;
  std::size_t lineNumber_ = 0;
};

/// A table whose first row names the columns. The separator is the comma, the semicolon or the tab,
/// whichever the first row holds most of. A field may stand in double quotes; inside, separators
/// and line ends are text and two quotes are one.
class TableReader {
public:
  static constexpr std::size_t NO_COLUMN = std::numeric_limits<std::size_t>::max();

  /// What a read of the next row finds.
  enum class RowState { Row, Broken, End };
  /// Whether lines above the first row that begin with "#" are told apart from it.
  enum class Comments { AreText, AreSkipped };

  /// `separator` is the one that the caller knows; 0 for the one that the first row shows.
  TableReader(const GString& path, const TextFormat& format, wchar_t separator = L'\0',
              Comments comments = Comments::AreText);

  /// Returns the lines that were skipped above the first row, without the "#".
  const std::vector<GString>& SkippedComments() const { return comments_; }
  /// Returns the names of the columns, as they stand in the first row.
  const std::vector<GString>& Names() const { return names_; }

  /// Returns the column that bears one of `names` (letter case does not matter), or `NO_COLUMN`.
  std::size_t FindColumn(std::initializer_list<const wchar_t*> names) const;
  /// The same, but a missing column is an error that tells the first name.
  std::size_t Column(std::initializer_list<const wchar_t*> names) const;

  /// Reads the next row; blank lines are passed over. Returns false at the end.
  /// Errors: `ThrowInputError` when the number of fields is not that of the first row, or quotes
  /// are not closed.
  bool NextRow();

  /// The same for callers that go on behind a broken row: what is wrong with it is `Fault`.
  RowState ReadRow();
  const GString& Fault() const { return fault_; }

  /// Returns a field of the current row; of `NO_COLUMN` the empty text.
  const GString& Field(std::size_t column) const;
  /// Returns the field as a number, or nothing when it is empty.
  std::optional<double> OptionalNumber(std::size_t column) const;
  /// Returns the field as a finite number from `smallest` to `largest`.
  double Number(std::size_t column, double smallest, double largest) const;

  /// Returns the number of rows read so far, without the first.
  std::size_t RowCount() const { return rowCount_; }
  /// Returns the line on which the current row begins.
  std::size_t RowLine() const { return rowLine_; }
  /// Return how far the file was read and how long it is, in bytes.
  std::int64_t Position() const { return lines_.Position(); }
  std::int64_t FileLength() const { return lines_.FileLength(); }
  /// Rejects the current row.
  [[noreturn]] void Fail(const GString& what) const;

private:
  bool ReadFields();
  bool ParseQuoted(std::size_t& pos, GString& field);
  void ParsePlain(std::size_t& pos, GString& field) const;
  GString& AddField();

  LineReader lines_;
  wchar_t separator_ = L',';
  std::vector<GString> comments_;
  std::vector<GString> names_;
  std::vector<GString> header_;  ///< the names in small letters
  GString line_;
  std::vector<GString> fields_;  ///< more than the row has, so that their memory is used again
  std::size_t fieldCount_ = 0;
  GString fault_;
  std::size_t rowLine_ = 1;
  std::size_t rowCount_ = 0;
};

}  // namespace examples
