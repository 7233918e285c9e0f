// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/text/StringUtility.h"

#include <algorithm>
#include <charconv>
#include <locale>
#include <utility>

#include "shared/text/PrintfFormat.h"

namespace shr {
namespace {

// Trimming.

template <typename Char>
std::basic_string<Char>& TrimLeftImpl(std::basic_string<Char>& text) {
  const std::locale locale;
  const auto& type = std::use_facet<std::ctype<Char>>(locale);
  const Char* const first = text.data();
  const Char* const rest = type.scan_not(std::ctype_base::space, first, first + text.size());
  text.erase(0, static_cast<std::size_t>(rest - first));
  return text;
}

template <typename Char>
std::basic_string<Char>& TrimRightImpl(std::basic_string<Char>& text) {
  const std::locale locale;
  const auto& type = std::use_facet<std::ctype<Char>>(locale);
  std::size_t length = text.size();
  while (length > 0 && type.is(std::ctype_base::space, text[length - 1])) --length;
  text.erase(length);
  return text;
}

// Case.

template <typename Char>
Char LowerAscii(Char ch) {
  return ch >= 'A' && ch <= 'Z' ? static_cast<Char>(ch - 'A' + 'a') : ch;
}

template <typename Char>
Char UpperAscii(Char ch) {
  return ch >= 'a' && ch <= 'z' ? static_cast<Char>(ch - 'a' + 'A') : ch;
}

template <typename String>
void MakeLowerImpl(String& text) {
  for (auto& ch : text) ch = LowerAscii(ch);
}

template <typename String>
void MakeUpperImpl(String& text) {
  for (auto& ch : text) ch = UpperAscii(ch);
}

// Words.

template <typename Char>
bool EqualsLowered(std::basic_string_view<Char> text, std::string_view lowerWord) {
  return std::equal(text.begin(), text.end(), lowerWord.begin(), lowerWord.end(),
                    [](Char a, char b) { return LowerAscii(a) == static_cast<Char>(b); });
}

template <typename Char>
bool StringToBoolImpl(std::basic_string_view<Char> text, bool& value) {
  const auto isOneOf = [text](std::string_view a, std::string_view b, std::string_view c) {
    return EqualsLowered(text, a) || EqualsLowered(text, b) || EqualsLowered(text, c);
  };
  value = isOneOf("t", "1", "true");
  return value || isOneOf("f", "0", "false");
}

}  // namespace

std::string& TrimLeft(std::string& text) {
  return TrimLeftImpl(text);
}
std::wstring& TrimLeft(std::wstring& text) {
  return TrimLeftImpl(text);
}
std::string& TrimRight(std::string& text) {
  return TrimRightImpl(text);
}
std::wstring& TrimRight(std::wstring& text) {
  return TrimRightImpl(text);
}
std::string& Trim(std::string& text) {
  return TrimLeftImpl(TrimRightImpl(text));
}
std::wstring& Trim(std::wstring& text) {
  return TrimLeftImpl(TrimRightImpl(text));
}

std::wstring& TrimRight(std::wstring& text, wchar_t ch) {
  const std::size_t last = text.find_last_not_of(ch);
  text.erase(last == std::wstring::npos ? 0 : last + 1);
  return text;
}

void MakeLower(std::string& text) {
  MakeLowerImpl(text);
}
void MakeLower(std::wstring& text) {
  MakeLowerImpl(text);
}
void MakeUpper(std::string& text) {
  MakeUpperImpl(text);
}
void MakeUpper(std::wstring& text) {
  MakeUpperImpl(text);
}

std::string ToLower(std::string_view text) {
  std::string copy(text);
  MakeLowerImpl(copy);
  return copy;
}

std::wstring ToLower(std::wstring_view text) {
  std::wstring copy(text);
  MakeLowerImpl(copy);
  return copy;
}

std::string ToUpper(std::string_view text) {
  std::string copy(text);
  MakeUpperImpl(copy);
  return copy;
}

std::wstring ToUpper(std::wstring_view text) {
  std::wstring copy(text);
  MakeUpperImpl(copy);
  return copy;
}

bool FormatString(std::string& text, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const bool done = PrintfFormat(text, format, arguments);
  va_end(arguments);
  return done;
}

bool FormatString(std::wstring& text, const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const bool done = PrintfFormat(text, format, arguments);
  va_end(arguments);
  return done;
}

bool FormatStringVA(std::string& text, const char* format, va_list arguments) {
  return PrintfFormat(text, format, arguments);
}

bool FormatStringVA(std::wstring& text, const wchar_t* format, va_list arguments) {
  return PrintfFormat(text, format, arguments);
}

bool AppendFormatString(std::string& text, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const bool done = PrintfAppend(text, format, arguments);
  va_end(arguments);
  return done;
}

bool AppendFormatString(std::wstring& text, const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const bool done = PrintfAppend(text, format, arguments);
  va_end(arguments);
  return done;
}

bool AppendFormatStringVA(std::string& text, const char* format, va_list arguments) {
  return PrintfAppend(text, format, arguments);
}

bool AppendFormatStringVA(std::wstring& text, const wchar_t* format, va_list arguments) {
  return PrintfAppend(text, format, arguments);
}

std::string ToString(const char* text) {
  return text;
}
std::wstring ToString(const wchar_t* text) {
  return text;
}

std::string BoolToString(bool value) {
  return value ? "True" : "False";
}
std::wstring BoolToStringW(bool value) {
  return value ? L"True" : L"False";
}

std::string DoubleToString(double value, std::size_t precision) {
  // Digits behind the last non-zero one of any double are zeros, so that the buffer is bounded: the
  // longest texts have 309 digits before the point or 1,074 behind it.
  constexpr std::size_t LAST_DECIMAL = 1074;
  char buffer[1536];
  const auto digits = static_cast<int>(std::min(precision, LAST_DECIMAL));
  char* const end =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, digits).ptr;
  std::string text(buffer, end);
  const bool finite = text.back() >= '0' && text.back() <= '9';
  if (finite && precision > LAST_DECIMAL) text.append(precision - LAST_DECIMAL, '0');
  return text;
}

std::wstring DoubleToStringW(double value, std::size_t precision) {
  const std::string text = DoubleToString(value, precision);
  return std::wstring(text.begin(), text.end());
}

bool StringToBool(std::string_view text, bool& value) {
  return StringToBoolImpl(text, value);
}
bool StringToBool(std::wstring_view text, bool& value) {
  return StringToBoolImpl(text, value);
}

}  // namespace shr
