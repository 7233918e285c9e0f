// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/color/ColorTable.h"

#include <algorithm>
#include <iterator>

#include "shared/color/Color4b.h"
#include "shared/files/ConfigFile.h"
#include "shared/files/Path.h"
#include "shared/text/WhiteSpace.h"

namespace shr {
namespace {

const wchar_t FILE_NAME[] = L"Colors.ini";
const wchar_t SECTION[] = L"Colors";

/// Reads numbers as the scanning format "%d" does, except that a number of any length keeps its low
/// bits instead of overflowing.
class NumberScanner {
public:
  explicit NumberScanner(const GString& text, std::size_t pos) : text_(text), pos_(pos) {}

  /// Returns the low 8 bits of the next number, 0 once there was none.
  unsigned char NextByte() {
    while (pos_ < text_.size() && IsWhiteSpace(text_[pos_])) ++pos_;
    const bool negative = Unit() == L'-';
    if (negative || Unit() == L'+') ++pos_;
    if (!IsDigit()) {
      pos_ = text_.size();
      return 0;
    }
    unsigned int value = 0;
    for (; IsDigit(); ++pos_) value = value * 10 + static_cast<unsigned int>(Unit() - L'0');
    return static_cast<unsigned char>((negative ? 0u - value : value) & 0xFFu);
  }

private:
  wchar_t Unit() const { return pos_ < text_.size() ? text_[pos_] : L'\0'; }
  bool IsDigit() const { return Unit() >= L'0' && Unit() <= L'9'; }

  const GString& text_;
  std::size_t pos_;
};

template <class Container, class Predicate>
bool FindIndex(const Container& container, Predicate matches, std::size_t& index) {
  const auto found = std::find_if(container.begin(), container.end(), matches);
  if (found == container.end()) return false;
  index = static_cast<std::size_t>(found - container.begin());
  return true;
}

}  // namespace

bool ParseColorLine(const GString& line, CColorTableEntry& entry) {
  const std::size_t equals = line.find(L'=');
  if (equals == GString::npos || equals + 1 == line.size()) return false;
  NumberScanner numbers(line, equals + 1);
  Color4b color;
  color.red = numbers.NextByte();
  color.green = numbers.NextByte();
  color.blue = numbers.NextByte();
  entry = CColorTableEntry(color.GetCOLORREF(), line.substr(0, equals).Trim());
  return true;
}

std::vector<CColorTableEntry> BuiltInColorTable() {
  constexpr struct {
    std::uint32_t color;
    const wchar_t* name;
  } ROWS[] = {
#include "shared/color/BuiltInColors.inc"
  };
  std::vector<CColorTableEntry> entries;
  entries.reserve(std::size(ROWS));
  for (const auto& row : ROWS) entries.emplace_back(row.color, row.name);
  return entries;
}

std::vector<CColorTableEntry> ReadColorTable(const GString& fileName) {
  std::vector<GString> lines;
  CConfigFile(fileName).ReadSection(SECTION, lines);
  std::vector<CColorTableEntry> entries;
  CColorTableEntry entry;
  for (const GString& line : lines) {
    if (ParseColorLine(line, entry)) entries.push_back(entry);
  }
  return entries;
}

template <>
CColorTable& Singleton<CColorTable>::GetInstance() {
  static CColorTable instance;
  return instance;
}

CColorTable::CColorTable() {
  Load();
}

CColorTable::~CColorTable() = default;

void CColorTable::Load() {
  const GString fileName = LocateFile(FILE_NAME);
  // A program that is linked to the archive, or a library that was moved without its files, has
  // the colors nevertheless.
  entries_ = IsFileReadable(fileName) ? ReadColorTable(fileName) : BuiltInColorTable();
  lowerNames_.reserve(entries_.size());
  for (const CColorTableEntry& entry : entries_) lowerNames_.push_back(entry.Name().ToLower());
}

bool CColorTable::IndexFromColor(std::uint32_t color, std::size_t& index) const {
  return FindIndex(
      entries_, [color](const CColorTableEntry& entry) { return entry.Color() == color; }, index);
}

bool CColorTable::IndexFromColor(const GString& name, std::size_t& index) const {
  const GString lower = name.ToLower();
  return FindIndex(
      lowerNames_, [&lower](const GString& candidate) { return candidate == lower; }, index);
}

}  // namespace shr
