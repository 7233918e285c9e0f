// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What is learned of a column while its cells go by, in memory that does not grow with the rows.
///
///     ColumnProfile profile(L"depth", false);
///     const CellValue cell = profile.Add(field, line);
///     if (profile.Kind() == ColumnKind::Numbers) Use(profile.Numbers().Mean());
///
/// Threads: one thread an object.

#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "shared/mathtext/MathTextScanner.h"
#include "shared/numerics/statistics/ExactSum.h"
#include "shared/text/GString.h"

namespace datareport {

using shr::GString;

/// What a cell holds.
enum class CellKind : unsigned char { Missing, Number, Time, Text };

struct CellValue {
  CellKind kind = CellKind::Missing;
  double value = std::numeric_limits<double>::quiet_NaN();  ///< a number, or seconds since 1970
};

/// What a column holds: numbers or times where at least nine of ten values are such, else text.
enum class ColumnKind { Empty, Numbers, Times, Text };

/// Reads a cell. Missing are the empty cell and, in any letter case, "NA", "N/A", "NaN", "null",
/// "none" and "-". Numbers are finite. With `decimalComma` the comma stands before the fraction and
/// points may part thousands; else it is the other way round, without parted thousands.
CellValue ReadCell(const GString& text, bool decimalComma);

/// Count, mean, variance and ends of all values that were added, each sum without rounding.
class ExactMoments {
public:
  void Add(double value);

  std::uint64_t Count() const { return count_; }
  double Minimum() const { return minimum_; }
  double Maximum() const { return maximum_; }
  /// Returns NaN without a value.
  double Mean() const;
  /// Returns the variance of a sample (n - 1), NaN with fewer than two values.
  double Variance() const;

private:
  std::uint64_t count_ = 0;
  double minimum_ = std::numeric_limits<double>::quiet_NaN();
  double maximum_ = std::numeric_limits<double>::quiet_NaN();
  shr::ExactSum sum_;
  shr::ExactSum squares_;
};

/// Counts values, at most so many different ones at a time: a new one that has no room takes one
/// from the count of each other. Counts are then too low by at most `Error`.
/// Source: J. Misra, D. Gries, "Finding repeated elements", Science of Computer Programming 2,
/// 1982.
class FrequentValues {
public:
  void Add(const GString& text);

  /// Returns the most frequent values, equal counts in the order of their texts.
  std::vector<std::pair<GString, std::uint64_t>> Most(std::size_t number) const;
  /// Returns how many different values there were; at least, when `Error` is not 0.
  std::size_t Different() const { return counts_.size(); }
  std::uint64_t Error() const { return error_; }
  void Clear();

private:
  std::unordered_map<std::wstring, std::uint64_t> counts_;
  std::uint64_t error_ = 0;
};

class ColumnProfile {
public:
  ColumnProfile(GString name, bool decimalComma)
      : name_(std::move(name)), label_(shr::EscapeMathText(name_)), decimalComma_(decimalComma) {}

  /// Takes the cell of a row that begins on `line`.
  CellValue Add(const GString& text, std::size_t line);

  const GString& Name() const { return name_; }
  /// What headings and pictures call the column: math text, at first its name.
  const GString& Label() const { return label_; }
  void SetLabel(const GString& label) { label_ = label; }
  ColumnKind Kind() const;
  std::uint64_t Missing() const { return missing_; }
  /// Returns the number of cells that are neither missing nor of the column's kind.
  std::uint64_t Odd() const;
  const ExactMoments& Numbers() const { return numbers_; }
  const ExactMoments& Times() const { return times_; }
  const FrequentValues& Values() const { return values_; }
  /// Returns whether `Values` are of the first rows only, because they looked like numbers.
  bool StoppedCounting() const { return stoppedCounting_; }

  /// The first cell that is not missing and no number; line 0 when there is none.
  std::size_t FirstTextLine() const { return firstTextLine_; }
  const GString& FirstText() const { return firstText_; }

private:
  GString name_;
  GString label_;
  bool decimalComma_;
  std::uint64_t missing_ = 0;
  std::uint64_t texts_ = 0;
  ExactMoments numbers_;
  ExactMoments times_;
  FrequentValues values_;
  bool stoppedCounting_ = false;
  std::size_t firstTextLine_ = 0;
  GString firstText_;
};

}  // namespace datareport
