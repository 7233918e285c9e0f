// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/plots/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <string>

#include "shared/plots/Ticks.h"

namespace shr {

namespace {

constexpr int MOST_DIGITS = 17;
constexpr const wchar_t* MINUS = L"\u2212";

/// Powers of ten from which on, and up to which, a number is written with one.
constexpr int LARGEST_PLAIN = 9;
constexpr int SMALLEST_PLAIN = -4;

/// Takes zeros behind the point away, and a point without anything behind it.
std::string WithoutEndZeros(std::string digits) {
  if (digits.find('.') == std::string::npos) return digits;
  digits.resize(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  return digits;
}

}  // namespace

GString SignificantText(double value, int digits) {
  digits = std::clamp(digits, 1, MOST_DIGITS);
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
    return sign + GString(WithoutEndZeros(mantissa).c_str()) + L" \u00D7 " +
           PowerOfTenText(exponent);
  }
  if (exponent >= digits) {
    // Zeros in the place of digits would be taken for digits.
    char* const wholeEnd = std::to_chars(std::begin(buffer), std::end(buffer), std::abs(value),
                                         std::chars_format::fixed, 0)
                               .ptr;
    return sign + GString(std::string(std::begin(buffer), wholeEnd).c_str());
  }
  mantissa.erase(std::remove(mantissa.begin(), mantissa.end(), '.'), mantissa.end());
  if (exponent < 0) {
    mantissa.insert(0, static_cast<std::size_t>(-exponent), '0');
    mantissa.insert(1, 1, '.');
  } else {
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (mantissa.size() > whole) mantissa.insert(whole, 1, '.');
  }
  return sign + GString(WithoutEndZeros(mantissa).c_str());
}

}  // namespace shr
