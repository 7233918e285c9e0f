// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The system resolves the levels of embedding; what follows from them is done here, alike on both
// targets: blanks at the end of the line go back to the level of the paragraph (rule L1) and
// stretches are turned around level by level (rule L2). Source: Unicode Standard Annex 9, "Unicode
// Bidirectional Algorithm", revision 44, rules P2, P3, L1, L2.

#include "shared/fonts/TextOrder.h"

#include <algorithm>
#include <atomic>
#include <iterator>

#include "shared/diagnostics/Logger.h"
#include "shared/fonts/TextCharacters.h"

namespace shr {
namespace {

using platform::TextItem;

/// Longer texts are ordered in blocks, which end behind a blank when one is near. It bounds memory
/// and what the algorithm costs for text made to be slow.
constexpr std::size_t LONGEST_BLOCK = 8192;
constexpr std::size_t NEAR_END = 256;

bool IsIsolateBegin(char32_t c) {
  return c >= 0x2066 && c <= 0x2068;
}

bool IsIsolateEnd(char32_t c) {
  return c == 0x2069;
}

/// Returns true for what rule L1 puts back at the end of a line.
bool IsTrailing(wchar_t unit) {
  const auto c = static_cast<char32_t>(unit);
  return c <= 0x20 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x3000 || c == 0x205F ||
         (c >= 0x2066 && c <= 0x2069) || c == 0x2028 || c == 0x2029 || c == 0x85;
}

/// Rules P2 and P3: the direction of the first letter that has one, outside of isolates.
bool BeginsRightToLeft(std::wstring_view text) {
  std::size_t depth = 0;
  while (!text.empty()) {
    const char32_t c = NextCharacter(text);
    if (IsIsolateBegin(c)) ++depth;
    if (IsIsolateEnd(c) && depth > 0) --depth;
    const CharacterDirection direction = depth == 0 ? DirectionOf(c) : CharacterDirection::None;
    if (direction != CharacterDirection::None) return direction == CharacterDirection::RightToLeft;
  }
  return false;
}

/// Returns where the block that begins at `begin` ends.
std::size_t EndOfBlock(std::wstring_view text, std::size_t begin) {
  if (text.size() - begin <= LONGEST_BLOCK) return text.size();
  const std::size_t end = begin + LONGEST_BLOCK;
  for (std::size_t i = end; i > end - NEAR_END; --i) {
    if (text[i - 1] == L' ') return i;
  }
  const bool isInPair = text[end] >= 0xDC00 && text[end] < 0xE000;
  return isInPair ? end - 1 : end;
}

/// Gives each character its own direction, and the others that of their neighbours where these
/// agree, else that of the paragraph.
std::vector<TextItem> OrderPlainly(std::wstring_view line, bool isRightToLeft) {
  std::vector<TextItem> items;
  const auto base = static_cast<unsigned char>(isRightToLeft);
  unsigned char last = base;
  std::size_t begin = 0, undecided = 0;  // of the item, of the characters without a direction
  const auto finish = [&](std::size_t end, unsigned char level) {
    if (end > begin) items.push_back({begin, end - begin, level, 0});
    begin = end;
  };
  for (std::wstring_view rest = line; !rest.empty();) {
    const std::size_t place = line.size() - rest.size();
    const char32_t character = NextCharacter(rest);
    const CharacterDirection direction = DirectionOf(character);
    if (IsMark(character) && undecided == place) undecided = line.size() - rest.size();
    if (direction == CharacterDirection::None) continue;
    const unsigned char level = direction == CharacterDirection::RightToLeft;
    if (level != last) {
      finish(last == base ? place : undecided, last);
      if (level != base) finish(place, base);
    }
    last = level;
    undecided = line.size() - rest.size();
  }
  finish(last == base ? line.size() : undecided, last);
  finish(line.size(), base);
  return items;
}

/// Gives what items hold of a cluster that began before them to the item where it began.
void MendClusters(std::wstring_view block, std::vector<TextItem>& items) {
  std::size_t kept = 0;
  for (const TextItem& item : items) {
    const std::size_t end = item.begin + item.length;
    std::size_t begin = item.begin;
    while (kept > 0 && begin < end && IsInsideCluster(block, begin)) {
      std::wstring_view rest = block.substr(begin, end - begin);
      NextCharacter(rest);
      begin = end - rest.size();
    }
    if (kept > 0) items[kept - 1].length = begin - items[kept - 1].begin;
    if (begin < end) items[kept++] = {begin, end - begin, item.level, item.script};
  }
  items.resize(kept);
}

/// Returns the items of a block in logical order.
std::vector<TextItem> Itemize(std::wstring_view block, bool isRightToLeft) {
  std::vector<TextItem> items;
  if (platform::ItemizeText(block, isRightToLeft, items)) {
    MendClusters(block, items);
    return items;
  }
  static std::atomic<bool> isTold = false;
  if (!isTold.exchange(true)) {
    g_Logger.Send(LogWarning,
                  L"The system cannot order and shape text: joined scripts are shown "
                  L"letter by letter.");
  }
  return OrderPlainly(block, isRightToLeft);
}

/// Puts the blanks at the end of the line back to the level of the paragraph.
void ResetTrailing(std::wstring_view line, unsigned char base, std::vector<TextItem>& items) {
  std::size_t end = line.size();
  while (end > 0 && IsTrailing(line[end - 1])) --end;
  std::size_t last = items.size();
  while (last > 0 && items[last - 1].begin >= end) items[--last].level = base;
  if (last == 0) return;
  TextItem& cut = items[last - 1];
  const std::size_t behind = cut.begin + cut.length;
  if (behind <= end || cut.level == base) return;
  const TextItem blanks = {end, behind - end, base, cut.script};
  cut.length = end - cut.begin;
  items.insert(items.begin() + static_cast<std::ptrdiff_t>(last), blanks);
}

/// Turns logical into visual order.
void Reorder(std::vector<TextItem>& items) {
  unsigned char highest = 0, lowestOdd = 0xFF;
  for (const TextItem& item : items) {
    highest = std::max(highest, item.level);
    if (item.IsRightToLeft()) lowestOdd = std::min(lowestOdd, item.level);
  }
  for (unsigned int level = highest; level >= lowestOdd; --level) {
    const auto isBelow = [level](const TextItem& item) { return item.level < level; };
    const auto isNot = [level](const TextItem& item) { return item.level >= level; };
    for (auto begin = items.begin(); begin != items.end();) {
      begin = std::find_if(begin, items.end(), isNot);
      const auto end = std::find_if(begin, items.end(), isBelow);
      std::reverse(begin, end);
      begin = end;
    }
  }
}

}  // namespace

std::vector<TextItem> OrderText(std::wstring_view text, TextDirection direction) {
  const bool isRightToLeft = direction == TextDirection::Auto
                                 ? BeginsRightToLeft(text)
                                 : direction == TextDirection::RightToLeft;
  std::vector<std::size_t> ends;
  for (std::size_t end = 0; end < text.size(); ends.push_back(end)) end = EndOfBlock(text, end);
  if (isRightToLeft) std::reverse(ends.begin(), ends.end());
  std::vector<TextItem> line;
  for (std::size_t i = 0; i < ends.size(); ++i) {
    const std::size_t before = isRightToLeft ? i + 1 : i - 1;
    const std::size_t begin = before < ends.size() ? ends[before] : 0;
    const std::wstring_view block = text.substr(begin, ends[i] - begin);
    std::vector<TextItem> items = Itemize(block, isRightToLeft);
    if (ends[i] == text.size()) ResetTrailing(block, isRightToLeft, items);
    Reorder(items);
    for (TextItem& item : items) item.begin += begin;
    line.insert(line.end(), items.begin(), items.end());
  }
  return line;
}

}  // namespace shr
