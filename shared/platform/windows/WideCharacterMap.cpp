// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Source: OpenType specification, table "cmap", "Format 12: Segmented coverage".

#include "shared/platform/windows/WideCharacterMap.h"

#include <algorithm>

namespace shr::platform {
namespace {

constexpr DWORD CMAP = 0x70616D63;  // "cmap", its first letter lowest
constexpr char32_t FIRST_WIDE = 0x10000, LAST_CHARACTER = 0x10FFFF;

std::vector<unsigned char> ReadTable(HDC device) {
  const DWORD size = GetFontData(device, CMAP, 0, nullptr, 0);
  std::vector<unsigned char> table(size == GDI_ERROR ? 0 : size);
  if (!table.empty() && GetFontData(device, CMAP, 0, table.data(), size) != size) table.clear();
  return table;
}

/// Reads big-endian words of a table; 0 behind its end.
class TableReader {
public:
  explicit TableReader(std::vector<unsigned char> bytes) : bytes_(std::move(bytes)) {}

  std::uint32_t Word(std::size_t at) const {
    return at + 2 <= bytes_.size() ? static_cast<std::uint32_t>(bytes_[at]) << 8 | bytes_[at + 1]
                                   : 0;
  }
  std::uint32_t Long(std::size_t at) const { return Word(at) << 16 | Word(at + 2); }
  std::size_t Size() const { return bytes_.size(); }

private:
  std::vector<unsigned char> bytes_;
};

/// Returns where the map of all Unicode begins, the size of the table when there is none.
std::size_t FindMap(const TableReader& table) {
  constexpr std::uint32_t MICROSOFT = 3, FULL_UNICODE = 10, GROUPS_FORMAT = 12;
  const std::uint32_t count = table.Word(2);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::size_t record = 4 + 8 * std::size_t{i};
    if (record + 8 > table.Size()) break;
    if (table.Word(record) != MICROSOFT || table.Word(record + 2) != FULL_UNICODE) continue;
    const std::size_t map = table.Long(record + 4);
    if (map < table.Size() && table.Word(map) == GROUPS_FORMAT) return map;
  }
  return table.Size();
}

}  // namespace

WideCharacterMap::WideCharacterMap(HDC device) {
  constexpr std::size_t HEAD_BYTES = 16, GROUP_BYTES = 12;
  const TableReader table(ReadTable(device));
  const std::size_t map = FindMap(table);
  const std::size_t room = (table.Size() - map) / GROUP_BYTES;
  const std::size_t count = std::min<std::size_t>(table.Long(map + 12), room);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = map + HEAD_BYTES + i * GROUP_BYTES;
    const Group group = {table.Long(at), table.Long(at + 4), table.Long(at + 8)};
    const bool isInOrder = groups_.empty() || groups_.back().last < group.first;
    if (group.first < FIRST_WIDE) continue;
    if (group.first > group.last || group.last > LAST_CHARACTER || !isInOrder) break;
    groups_.push_back(group);
  }
}

std::uint32_t WideCharacterMap::GetGlyph(char32_t character) const {
  const auto behind =
      std::upper_bound(groups_.begin(), groups_.end(), character,
                       [](char32_t wanted, const Group& group) { return wanted < group.first; });
  if (behind == groups_.begin() || character > behind[-1].last) return MISSING_GLYPH;
  return behind[-1].glyph + (character - behind[-1].first);
}

void WideCharacterMap::AddRangesTo(std::vector<CharacterRange>& ranges) const {
  for (const Group& group : groups_) ranges.push_back({group.first, group.last});
}

}  // namespace shr::platform
