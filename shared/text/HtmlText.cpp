// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The escapes of HTML text and of names in XML documents.

#include <algorithm>
#include <cstdint>

#include "shared/text/StringUtility.h"

namespace shr {
namespace {

struct Entity {
  std::string_view name;
  char ch;
};

/// In the order of replacement: "&amp;" comes last, so that what it makes is not replaced again.
constexpr Entity ENTITIES[] = {
    {"&quot;", '"'}, {"&apos;", '\''}, {"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}};

/// Replaces every `name` in place, from left to right, in one pass.
template <typename Char>
void ReplaceAll(std::basic_string<Char>& text, const Entity& entity) {
  const std::basic_string<Char> name(entity.name.begin(), entity.name.end());
  std::size_t found = text.find(name);
  if (found == std::basic_string<Char>::npos) return;
  std::size_t written = found;
  while (found != std::basic_string<Char>::npos) {
    text[written++] = static_cast<Char>(entity.ch);
    const std::size_t rest = found + name.size();
    found = text.find(name, rest);
    const std::size_t last = std::min(found, text.size());
    for (std::size_t i = rest; i < last; ++i) text[written++] = text[i];
  }
  text.resize(written);
}

template <typename Char>
std::basic_string<Char> ReplaceEntities(std::basic_string_view<Char> text) {
  std::basic_string<Char> result(text);
  if (text.find(static_cast<Char>('&')) == text.npos) return result;
  for (const Entity& entity : ENTITIES) ReplaceAll(result, entity);
  return result;
}

/// Value of a hexadecimal digit, or 16.
std::uint32_t HexValue(std::uint32_t unit) {
  if (unit - '0' < 10u) return unit - '0';
  const std::uint32_t letter = (unit | 0x20u) - 'a';
  return unit < 0x80 && letter < 6u ? letter + 10 : 16;
}

/// An escape found in a text; `length` 0 means none.
struct Escape {
  std::size_t length = 0;
  std::uint32_t value = 0;
};

/// Reads the escape that begins at the underscore `at`.
template <typename Char>
Escape ReadEscape(std::basic_string_view<Char> text, std::size_t at) {
  if (at + 3 >= text.size() || (text[at + 1] != 'x' && text[at + 1] != 'X')) return {};
  Escape escape;
  std::size_t next = at + 2;
  for (; next < text.size() && next < at + 6; ++next) {
    const std::uint32_t digit = HexValue(static_cast<std::uint32_t>(text[next]));
    if (digit == 16) break;
    escape.value = escape.value * 16 + digit;
  }
  if (next == at + 2 || next >= text.size() || text[next] != '_') return {};
  escape.length = next + 1 - at;
  return escape;
}

bool IsHighSurrogate(std::uint32_t unit) {
  return unit - 0xD800 < 0x400;
}
bool IsLowSurrogate(std::uint32_t unit) {
  return unit - 0xDC00 < 0x400;
}

bool AppendUnit(std::string& result, std::uint32_t value, bool /*followsEscape*/) {
  if (value > 0xFF) return false;
  result += static_cast<char>(value);
  return true;
}

bool AppendUnit(std::wstring& result, std::uint32_t value, bool followsEscape) {
  if constexpr (sizeof(wchar_t) > 2) {
    if (followsEscape && IsLowSurrogate(value)) {
      const auto high = static_cast<std::uint32_t>(result.back());
      if (IsHighSurrogate(high)) {
        result.back() = static_cast<wchar_t>(0x10000 + ((high - 0xD800) << 10) + (value - 0xDC00));
        return true;
      }
    }
  }
  result += static_cast<wchar_t>(value);
  return true;
}

template <typename Char>
std::basic_string<Char> ReplaceHexCodes(std::basic_string_view<Char> text) {
  std::basic_string<Char> result;
  result.reserve(text.size());
  bool followsEscape = false;
  for (std::size_t i = 0; i < text.size();) {
    const Escape escape = text[i] == '_' ? ReadEscape(text, i) : Escape();
    if (escape.length > 0 && AppendUnit(result, escape.value, followsEscape)) {
      i += escape.length;
      followsEscape = true;
      continue;
    }
    // A match that no unit can hold is copied whole: its closing underscore opens no other one.
    const std::size_t count = std::max<std::size_t>(escape.length, 1);
    result.append(text.substr(i, count));
    i += count;
    followsEscape = false;
  }
  return result;
}

}  // namespace

std::string ReplaceHTMLSpecialEntities(std::string_view text) {
  return ReplaceEntities(text);
}
std::wstring ReplaceHTMLSpecialEntities(std::wstring_view text) {
  return ReplaceEntities(text);
}

std::string ReplaceHTMLHexCodes(std::string_view text) {
  return ReplaceHexCodes(text);
}
std::wstring ReplaceHTMLHexCodes(std::wstring_view text) {
  return ReplaceHexCodes(text);
}

}  // namespace shr
