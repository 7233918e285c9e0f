// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/common/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <string>

#include "shared/text/StringUtility.h"

namespace examples {

using namespace shr;

namespace {

constexpr const wchar_t* MINUS = L"\u2212";

/// Powers of ten from which on, and up to which, a number is written with one.
constexpr int LARGEST_PLAIN = 9;
constexpr int SMALLEST_PLAIN = -4;

GString Superscript(int number) {
  constexpr const wchar_t DIGITS[] =
      L"\u2070\u00B9\u00B2\u00B3\u2074\u2075\u2076\u2077\u2078\u2079";
  GString text(number < 0 ? L"\u207B" : L"");
  for (const char digit : std::to_string(std::abs(number))) text += DIGITS[digit - '0'];
  return text;
}

/// Takes zeros behind the point away, and a point without anything behind it.
std::string WithoutEndZeros(std::string digits) {
  if (digits.find('.') == std::string::npos) return digits;
  digits.resize(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  return digits;
}

}  // namespace

GString FormatCount(std::size_t count) {
  std::wstring text = std::to_wstring(count);
  for (std::size_t pos = text.size(); pos > 3; pos -= 3) text.insert(pos - 3, 1, L',');
  return text;
}

GString FormatCount(std::size_t count, const wchar_t* one, const wchar_t* many) {
  return FormatCount(count) + L" " + (count == 1 ? one : many);
}

GString FormatNumber(double value, std::size_t decimals) {
  GString text(DoubleToStringW(std::abs(value), decimals));
  const bool isZero =
      std::all_of(text.begin(), text.end(), [](wchar_t ch) { return ch == L'0' || ch == L'.'; });
  return value < 0 && !isZero ? L"\u2212" + text : text;
}

GString FormatShort(double value, std::size_t decimals) {
  GString text = FormatNumber(value, decimals);
  if (text.find(L'.') == GString::npos) return text;
  while (text[text.size() - 1] == L'0') text.resize(text.size() - 1);
  if (text[text.size() - 1] == L'.') text.resize(text.size() - 1);
  return text;
}

GString FormatSignificant(double value, int digits) {
  if (!std::isfinite(value)) return L"\u2013";
  if (value == 0) return L"0";
  char buffer[64];
  // Rounded once, in scientific form; the digits are then moved about as text.
  char* const end = std::to_chars(std::begin(buffer), std::end(buffer), std::abs(value),
                                  std::chars_format::scientific, digits - 1)
                        .ptr;
  const std::string all(std::begin(buffer), end);
  const std::size_t mark = all.find('e');
  const int exponent = std::stoi(all.substr(mark + 1));
  std::string mantissa = all.substr(0, mark);
  const GString sign(value < 0 ? MINUS : L"");
  if (exponent >= std::max(LARGEST_PLAIN, digits) || exponent < SMALLEST_PLAIN) {
    return sign + GString(WithoutEndZeros(mantissa).c_str()) + L" \u00D7 10" +
           Superscript(exponent);
  }
  mantissa.erase(std::remove(mantissa.begin(), mantissa.end(), '.'), mantissa.end());
  if (exponent < 0) {
    mantissa.insert(0, static_cast<std::size_t>(-exponent), '0');
    mantissa.insert(1, 1, '.');
  } else {
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (mantissa.size() < whole) mantissa.append(whole - mantissa.size(), '0');
    if (mantissa.size() > whole) mantissa.insert(whole, 1, '.');
  }
  return sign + GString(WithoutEndZeros(mantissa).c_str());
}

}  // namespace examples
