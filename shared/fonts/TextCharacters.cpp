// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Simple characters of the basic plane are bits of a table that is made from ranges while
// compiling: the test is one look-up, since all text that is measured goes through it.

#include "shared/fonts/TextCharacters.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

namespace shr {
namespace {

constexpr std::size_t LONGEST_CLUSTER = 64;
constexpr char32_t ZERO_WIDTH_JOINER = 0x200D;
constexpr char32_t ZERO_WIDTH_NON_JOINER = 0x200C;
constexpr char32_t FIRST_REGIONAL = 0x1F1E6, LAST_REGIONAL = 0x1F1FF;
constexpr char32_t BASIC_PLANE = 0x10000;

struct Range {
  char32_t first, last;
};

constexpr Range MARKS[] = {
#include "shared/fonts/CombiningMarks.inc"
};

constexpr Range NEUTRAL[] = {
#include "shared/fonts/NeutralCharacters.inc"
};

constexpr Range RIGHT_TO_LEFT[] = {
#include "shared/fonts/RightToLeftCharacters.inc"
};

// Letters, signs and ideographs that stand side by side from left to right, without marks.
constexpr Range SIMPLE[] = {
    {0x0000, 0x00AC},     // Latin, signs, controls
    {0x00AE, 0x02FF},     // without the soft hyphen
    {0x0370, 0x0482},     // Greek, Cyrillic
    {0x048A, 0x058F},     // Cyrillic, Armenian
    {0x10A0, 0x10FF},     // Georgian
    {0x1200, 0x135C},     // Ethiopic
    {0x1360, 0x1680},     // Ethiopic, Cherokee, Canadian syllabics, Ogham
    {0x1681, 0x16FF},     // Ogham, Runic
    {0x1C80, 0x1CBF},     // Cyrillic, Georgian
    {0x1D00, 0x1DBF},     // phonetic letters
    {0x1E00, 0x1FFF},     // Latin, Greek
    {0x2000, 0x200A},     // blanks
    {0x2010, 0x2027},     // punctuation
    {0x202F, 0x205F},     // punctuation
    {0x2070, 0x20CF},     // raised and lowered digits, currencies
    {0x2100, 0x2CEE},     // signs of all kinds, Glagolitic, Latin, Coptic
    {0x2CF2, 0x2D2F},     // Coptic, Georgian
    {0x2D80, 0x2DDF},     // Ethiopic
    {0x2E00, 0x3029},     // punctuation, radicals
    {0x3030, 0x3098},     // Japanese
    {0x309B, 0xA66E},     // Japanese, Bopomofo, Chinese, Yi, Vai
    {0xA673, 0xA673},     // Cyrillic
    {0xA67E, 0xA69D},     // Cyrillic
    {0xA6A0, 0xA6EF},     // Bamum
    {0xA700, 0xA7FF},     // Latin
    {0xAB00, 0xABBF},     // Ethiopic, Latin, Cherokee
    {0xAC00, 0xD7A3},     // Korean syllables
    {0xD800, 0xFB1C},     // unpaired surrogates, private use, Chinese, ligatures
    {0xFE10, 0xFE1F},     // punctuation of vertical text
    {0xFE30, 0xFE6F},     // punctuation
    {0xFF01, 0xFFEF},     // wide and narrow forms
    {0xFFFC, 0xFFFF},     // replacements
    {0x10000, 0x100FF},   // Linear B
    {0x1B000, 0x1B16F},   // Japanese
    {0x1D400, 0x1D7FF},   // letters of mathematics
    {0x1F000, 0x1F1E5},   // emoji and signs
    {0x1F200, 0x1F3FA},   // without letters of flags and modifiers of skin
    {0x1F400, 0x1FBFF},   // emoji and signs
    {0x20000, 0x3FFFF},   // Chinese
    {0xF0000, 0x10FFFF},  // private use
};

// Nothing is seen of them.
constexpr Range FORMAT_MARKS[] = {
    {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x061C, 0x061C}, {0x115F, 0x1160}, {0x17B4, 0x17B5},
    {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E}, {0x2060, 0x206F}, {0x3164, 0x3164},
    {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0}, {0xFFF0, 0xFFF8}, {0x1BCA0, 0x1BCA3},
    {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF},
};

template <std::size_t N>
constexpr bool IsIn(const Range (&ranges)[N], char32_t c) {
  const Range* const behind = std::upper_bound(
      ranges, ranges + N, c, [](char32_t v, const Range& r) { return v < r.first; });
  return behind != ranges && c <= behind[-1].last;
}

using Bits = std::array<std::uint64_t, BASIC_PLANE / 64>;

constexpr Bits MakeSimpleBits() {
  Bits bits = {};
  for (const Range& range : SIMPLE) {
    for (char32_t c = range.first; c <= range.last && c < BASIC_PLANE; ++c) {
      bits[c / 64] |= std::uint64_t{1} << (c % 64);
    }
  }
  return bits;
}

constexpr Bits SIMPLE_BITS = MakeSimpleBits();

bool IsRegional(char32_t c) {
  return c >= FIRST_REGIONAL && c <= LAST_REGIONAL;
}

/// Returns true for characters that belong to the one before.
bool Extends(char32_t c) {
  return IsMark(c) || c == ZERO_WIDTH_JOINER || c == ZERO_WIDTH_NON_JOINER ||
         (c >= 0x1F3FB && c <= 0x1F3FF) || (c >= 0xE0020 && c <= 0xE007F);
}

}  // namespace

char32_t NextCharacter(std::wstring_view& text) {
  const auto first = static_cast<char32_t>(text[0]);
  if (first >= 0xD800 && first < 0xDC00 && text.size() > 1) {
    const auto second = static_cast<char32_t>(text[1]);
    if (second >= 0xDC00 && second < 0xE000) {
      text.remove_prefix(2);
      return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
    }
  }
  text.remove_prefix(1);
  return first;
}

bool IsControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

bool IsFormatMark(char32_t character) {
  return character >= FORMAT_MARKS[0].first && IsIn(FORMAT_MARKS, character);
}

bool NeedsNoFace(char32_t character) {
  return IsControl(character) || IsFormatMark(character) ||
         (character >= 0xD800 && character < 0xE000) || (character & 0xFFFE) == 0xFFFE ||
         character > 0x10FFFF;
}

bool IsSimple(char32_t character) {
  if (character < BASIC_PLANE) return SIMPLE_BITS[character / 64] >> (character % 64) & 1;
  return IsIn(SIMPLE, character);
}

bool IsShared(char32_t c) {
  const bool isLetter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == 0xAA || c == 0xBA;
  return (c < 0xC0 && !isLetter) || c == 0xD7 || c == 0xF7 || (c >= 0x2000 && c <= 0x206F) ||
         (c >= 0x3000 && c <= 0x3020);
}

CharacterDirection DirectionOf(char32_t character) {
  if (IsIn(NEUTRAL, character) || IsIn(MARKS, character)) return CharacterDirection::None;
  const bool isRightToLeft = IsIn(RIGHT_TO_LEFT, character);
  return isRightToLeft ? CharacterDirection::RightToLeft : CharacterDirection::LeftToRight;
}

bool IsMark(char32_t character) {
  return character >= MARKS[0].first && IsIn(MARKS, character);
}

bool IsInsideCluster(std::wstring_view text, std::size_t place) {
  if (place == 0) return false;
  std::wstring_view rest = text.substr(place);
  const char32_t character = NextCharacter(rest);
  return Extends(character) || (text[place - 1] == ZERO_WIDTH_JOINER && !NeedsNoFace(character));
}

std::size_t ClusterLength(std::wstring_view text) {
  std::wstring_view rest = text;
  char32_t last = NextCharacter(rest);
  std::size_t count = 1;
  bool isFlag = IsRegional(last);
  while (!rest.empty() && count < LONGEST_CLUSTER) {
    std::wstring_view next = rest;
    const char32_t c = NextCharacter(next);
    const bool isJoined = last == ZERO_WIDTH_JOINER && !NeedsNoFace(c);
    const bool isSecondOfFlag = isFlag && count == 1 && IsRegional(c);
    if (!Extends(c) && !isJoined && !isSecondOfFlag) break;
    rest = next;
    last = c;
    ++count;
  }
  return text.size() - rest.size();
}

}  // namespace shr
