// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <charconv>
#include <cmath>
#include <concepts>
#include <limits>
#include <string>

#include "shared/text/StringUtility.h"
#include "shared/text/WhiteSpace.h"

namespace shr {
namespace {

template <typename Char>
std::basic_string_view<Char> TrimAscii(std::basic_string_view<Char> text) {
  const auto isSpace = [](Char ch) { return IsAsciiSpace(static_cast<std::uint32_t>(ch)); };
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

template <std::integral Integer, typename Char>
bool ParseInteger(std::basic_string_view<Char> text, Integer& value) {
  using Magnitude = std::make_unsigned_t<Integer>;
  value = 0;
  text = TrimAscii(text);
  bool negative = false;
  if (std::signed_integral<Integer> && !text.empty() && (text[0] == '-' || text[0] == '+')) {
    negative = text[0] == '-';
    text.remove_prefix(1);
  }
  if (text.empty()) return false;
  const Magnitude limit =
      static_cast<Magnitude>(std::numeric_limits<Integer>::max()) + Magnitude(negative ? 1 : 0);
  Magnitude magnitude = 0;
  for (const Char ch : text) {
    if (ch < '0' || ch > '9') return false;
    const auto digit = static_cast<Magnitude>(ch - '0');
    if (magnitude > (limit - digit) / 10) return false;
    magnitude = magnitude * 10 + digit;
  }
  value = static_cast<Integer>(negative ? Magnitude(0) - magnitude : magnitude);
  return true;
}

bool ParseDouble(std::string_view text, double& value) {
  value = 0;
  text = TrimAscii(text);
  if (!text.empty() && text[0] == '+') {
    text.remove_prefix(1);
    if (!text.empty() && text[0] == '-') return false;
  }
  double parsed = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), parsed);
  if (result.ptr != text.data() + text.size() || text.empty()) return false;
  if (result.ec == std::errc::result_out_of_range && parsed != 0) return false;
  if (result.ec != std::errc()) return false;
  value = parsed;
  return true;
}

}  // namespace

bool StringToInt(std::string_view text, int& value) {
  return ParseInteger(text, value);
}
bool StringToInt(std::wstring_view text, int& value) {
  return ParseInteger(text, value);
}
bool StringToInt64(std::string_view text, std::int64_t& value) {
  return ParseInteger(text, value);
}
bool StringToInt64(std::wstring_view text, std::int64_t& value) {
  return ParseInteger(text, value);
}
bool StringToUnsigned(std::string_view text, unsigned int& value) {
  return ParseInteger(text, value);
}
bool StringToUnsigned(std::wstring_view text, unsigned int& value) {
  return ParseInteger(text, value);
}

bool StringToDouble(std::string_view text, double& value) {
  return ParseDouble(text, value);
}
bool StringToDouble(std::wstring_view text, double& value) {
  std::string narrow;
  for (const wchar_t ch : text) narrow += ch > 0 && ch < 128 ? static_cast<char>(ch) : '?';
  return ParseDouble(narrow, value);
}

}  // namespace shr
