// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/datareport/ColumnProfile.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>

#include "shared/plots/TimeText.h"
#include "shared/text/StringUtility.h"

namespace datareport {

using namespace shr;

namespace {

constexpr std::size_t MOST_DIFFERENT = 20000;
/// Longer texts are told apart by their beginning only.
constexpr std::size_t LONGEST_VALUE = 120;
/// After so many rows a column that is all numbers is taken for one.
constexpr std::uint64_t ROWS_TO_KNOW = 10000;
constexpr std::size_t LONGEST_MISSING = 4;
constexpr std::size_t LONGEST_NUMBER = 64;

bool IsMissing(const GString& text) {
  if (text.empty()) return true;
  if (text.size() > LONGEST_MISSING) return false;
  for (const wchar_t* const name : {L"na", L"n/a", L"nan", L"null", L"none", L"-"}) {
    const std::wstring_view view(name);
    const bool isEqual = std::equal(
        text.begin(), text.end(), view.begin(), view.end(),
        [](wchar_t a, wchar_t b) { return (a >= L'A' && a <= L'Z' ? a + (L'a' - L'A') : a) == b; });
    if (isEqual) return true;
  }
  return false;
}

bool IsDigit(wchar_t ch) {
  return ch >= L'0' && ch <= L'9';
}

/// Returns "1234.5" for "1.234,5", and nothing where points part no thousands.
std::wstring WithDecimalPoint(const GString& text) {
  std::wstring result;
  std::size_t digits = 0;  // since the last mark
  bool hasGroups = false;
  bool isBehindComma = false;
  for (const wchar_t unit : text) {
    if (unit == L'.') {
      if (isBehindComma || digits == 0 || digits > 3 || (hasGroups && digits != 3)) return {};
      hasGroups = true;
      digits = 0;
    } else if (unit == L',') {
      if (isBehindComma || (hasGroups && digits != 3)) return {};
      isBehindComma = true;
      result += L'.';
    } else {
      if (IsDigit(unit)) {
        ++digits;
      } else if (hasGroups && !isBehindComma && digits != 3) {
        return {};
      }
      result += unit;
    }
  }
  return hasGroups && !isBehindComma && digits != 3 ? std::wstring() : result;
}

bool ReadNumber(const GString& text, bool decimalComma, double& value) {
  if (text.size() > LONGEST_NUMBER) return false;
  const wchar_t first = text[0];
  if (!IsDigit(first) && first != L'-' && first != L'+' && first != L'.' && first != L',') {
    return false;
  }
  const bool isRead = decimalComma ? StringToDouble(WithDecimalPoint(text), value)
                                   : StringToDouble(std::wstring_view(text), value);
  return isRead && std::isfinite(value);
}

}  // namespace

CellValue ReadCell(const GString& text, bool decimalComma) {
  CellValue cell;
  if (IsMissing(text)) return cell;
  double value = 0;
  if (ReadNumber(text, decimalComma, value)) return {CellKind::Number, value};
  cell.kind = CellKind::Text;
  if (!IsDigit(text[0])) return cell;
  if (const auto seconds = ParseTime(text)) return {CellKind::Time, *seconds};
  return cell;
}

void ExactMoments::Add(double value) {
  if (!(value >= minimum_)) minimum_ = count_ == 0 ? value : std::min(minimum_, value);
  if (!(value <= maximum_)) maximum_ = count_ == 0 ? value : std::max(maximum_, value);
  ++count_;
  sum_.Add(value);
  squares_.AddProduct(value, value);
}

double ExactMoments::Mean() const {
  if (count_ == 0) return std::numeric_limits<double>::quiet_NaN();
  return sum_.Mean(count_).ToDouble();
}

double ExactMoments::Variance() const {
  if (count_ < 2) return std::numeric_limits<double>::quiet_NaN();
  // Both sums are exact and have 106 bits, so that what cancels was there.
  const ScaledPair sum = sum_.Value();
  const ScaledPair count(static_cast<double>(count_));
  const ScaledPair squares = squares_.Value() - sum * sum / count;
  return std::max(0.0, (squares / ScaledPair(static_cast<double>(count_ - 1))).ToDouble());
}

void FrequentValues::Add(const GString& text) {
  const std::wstring_view key = std::wstring_view(text).substr(0, LONGEST_VALUE);
  std::wstring owned(key);
  const auto found = counts_.find(owned);
  if (found != counts_.end()) {
    ++found->second;
  } else if (counts_.size() < MOST_DIFFERENT) {
    counts_.emplace(std::move(owned), 1);
  } else {
    ++error_;
    for (auto entry = counts_.begin(); entry != counts_.end();) {
      entry = --entry->second == 0 ? counts_.erase(entry) : std::next(entry);
    }
  }
}

std::vector<std::pair<GString, std::uint64_t>> FrequentValues::Most(std::size_t number) const {
  std::vector<std::pair<GString, std::uint64_t>> all;
  for (const auto& [text, count] : counts_) all.emplace_back(GString(text), count);
  const auto comesFirst = [](const auto& a, const auto& b) {
    return a.second != b.second ? a.second > b.second : a.first < b.first;
  };
  const std::size_t kept = std::min(number, all.size());
  std::partial_sort(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(kept), all.end(),
                    comesFirst);
  all.resize(kept);
  return all;
}

void FrequentValues::Clear() {
  counts_.clear();
  error_ = 0;
}

CellValue ColumnProfile::Add(const GString& text, std::size_t line) {
  const CellValue cell = ReadCell(text, decimalComma_);
  switch (cell.kind) {
    case CellKind::Missing:
      ++missing_;
      return cell;
    case CellKind::Number:
      numbers_.Add(cell.value);
      break;
    case CellKind::Time:
      times_.Add(cell.value);
      break;
    case CellKind::Text:
      ++texts_;
      break;
  }
  if (cell.kind != CellKind::Number && firstTextLine_ == 0) {
    firstTextLine_ = line;
    firstText_ = text;
  }
  if (stoppedCounting_) return cell;
  values_.Add(text);
  if (texts_ == 0 && numbers_.Count() + times_.Count() == ROWS_TO_KNOW) {
    stoppedCounting_ = true;
    values_.Clear();
  }
  return cell;
}

ColumnKind ColumnProfile::Kind() const {
  const std::uint64_t numbers = numbers_.Count();
  const std::uint64_t times = times_.Count();
  const std::uint64_t all = numbers + times + texts_;
  constexpr std::uint64_t PARTS = 10;
  if (all == 0) return ColumnKind::Empty;
  if ((all - numbers) * PARTS <= all) return ColumnKind::Numbers;
  if ((all - times) * PARTS <= all) return ColumnKind::Times;
  return ColumnKind::Text;
}

std::uint64_t ColumnProfile::Odd() const {
  const std::uint64_t all = numbers_.Count() + times_.Count() + texts_;
  switch (Kind()) {
    case ColumnKind::Numbers:
      return all - numbers_.Count();
    case ColumnKind::Times:
      return all - times_.Count();
    default:
      return 0;
  }
}

}  // namespace datareport
