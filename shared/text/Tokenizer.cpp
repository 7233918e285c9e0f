// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/Tokenizer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include "shared/text/GString.h"
#include "shared/text/NumberParsing.h"
#include "shared/text/WhiteSpace.h"

namespace shr {
namespace {

/// A field as it stands in the text, and where the next one begins.
struct Field {
  CTokenizer::Status status = CTokenizer::TokenEnd;
  std::wstring_view text;
  bool quoted = false;
  const wchar_t* next = nullptr;
};

const wchar_t* SkipWhiteSpace(const wchar_t* next) {
  while (IsWhiteSpace(*next)) ++next;
  return next;
}

/// Returns the quote that closes a field, or null. Quotes in pairs belong to the field.
const wchar_t* FindClosingQuote(const wchar_t* next) {
  for (; *next != L'\0'; ++next) {
    if (*next != L'"') continue;
    if (next[1] != L'"') return next;
    ++next;
  }
  return nullptr;
}

const wchar_t* FindFieldEnd(const wchar_t* next) {
  while (*next != L'\0' && *next != L',' && !IsWhiteSpace(*next)) ++next;
  return next;
}

Field ReadField(const wchar_t* source, bool allowQuotes) {
  Field field;
  field.next = source;
  if (source == nullptr) return field;
  const wchar_t* first = SkipWhiteSpace(source);
  field.next = first;
  if (*first == L'\0') return field;
  if (*first == L',') {
    field.status = CTokenizer::TokenEmpty;
    field.next = first + 1;
    return field;
  }
  field.quoted = allowQuotes && *first == L'"';
  if (field.quoted) ++first;
  const wchar_t* const last = field.quoted ? FindClosingQuote(first) : FindFieldEnd(first);
  if (last == nullptr) {
    field.status = CTokenizer::TokenError;
    field.next = source;
    return field;
  }
  field.status = CTokenizer::TokenOK;
  field.text = std::wstring_view(first, static_cast<std::size_t>(last - first));
  field.next = SkipWhiteSpace(field.quoted ? last + 1 : last);
  if (*field.next == L',') ++field.next;
  return field;
}

/// Stores a field; of two quotes in a row inside quotes one is kept.
void StoreText(const Field& field, GString& token) {
  token.assign(field.text.data(), field.text.size());
  if (!field.quoted) return;
  std::wstring& text = token;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[kept++] = text[i];
    if (text[i] == L'"') ++i;  // a quote inside a field always has its twin
  }
  text.resize(kept);
}

/// A number at the head of a field.
template <typename Number>
struct Prefix {
  bool found = false;
  Number value = 0;
};

int DigitOf(wchar_t ch) {
  return ch >= L'0' && ch <= L'9' ? ch - L'0' : -1;
}

Prefix<int> ParsePrefix(std::wstring_view text, int /*kind*/) {
  const bool negative = text[0] == L'-';
  std::size_t next = negative || text[0] == L'+' ? 1 : 0;
  Prefix<int> number;
  std::int64_t value = 0;
  constexpr std::int64_t BEYOND = std::int64_t{std::numeric_limits<int>::max()} + 1;
  for (; next < text.size() && DigitOf(text[next]) >= 0; ++next) {
    value = std::min(value * 10 + DigitOf(text[next]), BEYOND);
    number.found = true;
  }
  number.value = static_cast<int>(negative ? -value : std::min(value, BEYOND - 1));
  return number;
}

// Hexadecimal real numbers.

int HexDigitOf(wchar_t ch) {
  if (DigitOf(ch) >= 0) return DigitOf(ch);
  if (ch >= L'a' && ch <= L'f') return ch - L'a' + 10;
  return ch >= L'A' && ch <= L'F' ? ch - L'A' + 10 : -1;
}

/// The leading bits of a hexadecimal number; the lowest one also says that there is more behind
/// them.
struct HexMantissa {
  std::uint64_t bits = 0;
  std::int64_t exponent = 0;  ///< Power of two of the lowest bit.
  std::size_t end = 0;        ///< Where the digits end in the text.
  bool found = false;
};

HexMantissa ReadHexMantissa(std::wstring_view text, std::size_t next) {
  HexMantissa mantissa;
  bool fraction = false;
  for (; next < text.size(); ++next) {
    if (text[next] == L'.' && !fraction) {
      fraction = true;
      continue;
    }
    const int digit = HexDigitOf(text[next]);
    if (digit < 0) break;
    mantissa.found = true;
    const bool full = mantissa.bits >> 60 != 0;
    if (full) {
      mantissa.bits |= digit != 0 ? 1u : 0u;
    } else {
      mantissa.bits = mantissa.bits * 16 + static_cast<std::uint64_t>(digit);
    }
    mantissa.exponent += (full ? 4 : 0) - (fraction ? 4 : 0);
  }
  mantissa.end = next;
  return mantissa;
}

std::int64_t ReadBinaryExponent(std::wstring_view text, std::size_t next) {
  if (next >= text.size() || (text[next] != L'p' && text[next] != L'P')) return 0;
  ++next;
  const bool negative = next < text.size() && text[next] == L'-';
  if (negative || (next < text.size() && text[next] == L'+')) ++next;
  constexpr std::int64_t LIMIT = 1'000'000'000'000'000;
  std::int64_t value = 0;
  for (; next < text.size() && DigitOf(text[next]) >= 0; ++next) {
    if (value < LIMIT) value = value * 10 + DigitOf(text[next]);
  }
  return negative ? -value : value;
}

/// Rounds to nearest, ties to even, once, also where the result is subnormal.
double RoundHex(const HexMantissa& mantissa, std::int64_t exponent) {
  constexpr int PRECISION = 53;
  constexpr std::int64_t LOWEST_BIT = -1074;
  if (mantissa.bits == 0) return 0;
  const auto width = static_cast<std::int64_t>(std::bit_width(mantissa.bits));
  if (exponent + width > 1024) return std::numeric_limits<double>::infinity();
  const std::int64_t drop = std::max({std::int64_t{0}, width - PRECISION, LOWEST_BIT - exponent});
  if (drop > width) return 0;
  std::uint64_t kept = drop == 64 ? 0 : mantissa.bits >> drop;
  if (drop > 0) {
    const std::uint64_t half = std::uint64_t{1} << (drop - 1);
    const std::uint64_t dropped = mantissa.bits & (half | (half - 1));
    if (dropped > half || (dropped == half && (kept & 1) != 0)) ++kept;
  }
  return std::ldexp(static_cast<double>(kept), static_cast<int>(exponent + drop));
}

/// Reads "0x" with hexadecimal digits behind an optional sign.
Prefix<double> ParseHexPrefix(std::wstring_view text) {
  const std::size_t sign = text[0] == L'-' || text[0] == L'+' ? 1 : 0;
  const std::wstring_view mark = text.substr(sign, 2);
  if (mark != L"0x" && mark != L"0X") return {};
  const HexMantissa mantissa = ReadHexMantissa(text, sign + 2);
  if (!mantissa.found) return {};
  const std::int64_t exponent = mantissa.exponent + ReadBinaryExponent(text, mantissa.end);
  const double value = RoundHex(mantissa, exponent);
  return {true, text[0] == L'-' ? -value : value};
}

Prefix<double> ParsePrefix(std::wstring_view text, double /*kind*/) {
  if (const Prefix<double> hex = ParseHexPrefix(text); hex.found) return hex;
  const auto number = ParseRealPrefix(text.data(), text.data() + text.size());
  return {number.status != RealStatus::None, number.value};
}

template <typename Number>
CTokenizer::Status ParseNumber(const wchar_t*& next, Number& value) {
  const Field field = ReadField(next, false);
  if (field.status == CTokenizer::TokenOK) {
    const auto number = ParsePrefix(field.text, Number());
    if (!number.found) return CTokenizer::TokenError;
    value = number.value;
  }
  next = field.next;
  return field.status;
}

}  // namespace

CTokenizer::Status CTokenizer::Parse(GString& token, bool allowQuotes) {
  token.clear();
  const Field field = ReadField(next_, allowQuotes);
  if (field.status == TokenOK) StoreText(field, token);
  next_ = field.next;
  return field.status;
}

CTokenizer::Status CTokenizer::Parse(int& value) {
  return ParseNumber(next_, value);
}

CTokenizer::Status CTokenizer::Parse(double& value) {
  return ParseNumber(next_, value);
}

CTokenizer::Status CTokenizer::Parse(bool& value) {
  int number = 0;
  const Status status = Parse(number);
  if (status == TokenOK) value = number != 0;
  return status;
}

}  // namespace shr
