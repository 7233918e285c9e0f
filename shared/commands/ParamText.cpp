// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/ParamText.h"

#include <cstdint>
#include <limits>
#include <type_traits>

#include "shared/text/NumberParsing.h"
#include "shared/text/WhiteSpace.h"

namespace shr {
namespace {

template <typename Value>
GString Format(const wchar_t* format, Value value) {
  GString text;
  text.FormatString(format, value);
  return text;
}

const wchar_t* SkipWhiteSpace(const wchar_t* first, const wchar_t* last) {
  while (first != last && IsWhiteSpace(*first)) ++first;
  return first;
}

bool IsDigit(wchar_t ch) {
  return ch >= L'0' && ch <= L'9';
}

template <typename Integer>
bool ScanInteger(const GString& text, Integer& value) {
  using Magnitude = std::make_unsigned_t<Integer>;
  const wchar_t* const last = text.data() + text.size();
  const wchar_t* next = SkipWhiteSpace(text.data(), last);
  const bool negative = next != last && *next == L'-';
  if (next != last && (*next == L'-' || *next == L'+')) ++next;
  if (next == last || !IsDigit(*next)) return false;
  Magnitude limit = static_cast<Magnitude>(std::numeric_limits<Integer>::max());
  if (std::is_signed_v<Integer> && negative) ++limit;
  Magnitude magnitude = 0;
  for (; next != last && IsDigit(*next); ++next) {
    const auto digit = static_cast<Magnitude>(*next - L'0');
    if (magnitude > limit / 10 || magnitude * 10 > limit - digit) return false;
    magnitude = magnitude * 10 + digit;
  }
  value = static_cast<Integer>(negative ? Magnitude{0} - magnitude : magnitude);
  return true;
}

}  // namespace

GString ToParamText(bool value) {
  return value ? L"1" : L"0";
}

GString ToParamText(int value) {
  return Format(L"%d", value);
}

GString ToParamText(unsigned int value) {
  return Format(L"%u", value);
}

GString ToParamText(unsigned long value) {
  return Format(L"%lu", value);
}

GString ToParamText(std::int64_t value) {
  return Format(L"%I64d", value);
}

GString ToParamText(double value) {
  return Format(L"%.17lG", value);
}

bool FromParamText(const GString& text, bool& value) {
  int number = 0;
  if (!ScanInteger(text, number)) return false;
  value = number != 0;
  return true;
}

bool FromParamText(const GString& text, int& value) {
  return ScanInteger(text, value);
}

bool FromParamText(const GString& text, unsigned int& value) {
  return ScanInteger(text, value);
}

bool FromParamText(const GString& text, unsigned long& value) {
  return ScanInteger(text, value);
}

bool FromParamText(const GString& text, std::int64_t& value) {
  return ScanInteger(text, value);
}

bool FromParamText(const GString& text, double& value) {
  const wchar_t* const last = text.data() + text.size();
  const auto number = ParseRealPrefix(SkipWhiteSpace(text.data(), last), last);
  if (number.status != RealStatus::Ok) return false;
  value = number.value;
  return true;
}

}  // namespace shr
