// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Reads the input as a double-double in both widths, compares head and tail with MPFR's, and
// demands that what is written of it reads back.

#include <mpfr.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "shared/numerics/doubledouble/DoubleDouble.h"
#include "shared/text/StringUtility.h"

namespace {

using shr::doubledouble;

/// Enough for every text of this length: 8,192 digits before or behind the point of a number near
/// the ends of the range.
constexpr mpfr_prec_t PRECISION = 40000;
constexpr size_t LONGEST = 2000;

/// The nearest double and the nearest double of the rest.
doubledouble NearestPair(const std::string& text) {
  mpfr_t number;
  mpfr_init2(number, PRECISION);
  mpfr_set_str(number, text.c_str(), 10, MPFR_RNDN);
  const double head = mpfr_get_d(number, MPFR_RNDN);
  if (std::isfinite(head)) mpfr_sub_d(number, number, head, MPFR_RNDN);
  const double tail = std::isfinite(head) ? mpfr_get_d(number, MPFR_RNDN) : 0;
  mpfr_clear(number);
  return std::isfinite(head + tail) ? shr::normalize({head, tail}) : doubledouble(head, tail);
}

bool IsSame(const doubledouble& a, const doubledouble& b) {
  return a == b || (isnan(a) && isnan(b));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > LONGEST) return 0;
  const std::string text(data, data + size);
  doubledouble value = 42;
  const bool isValid = shr::StringToDoubleDouble(std::string_view(text), value);
  double head = 0;
  if (isValid != shr::StringToDouble(text, head)) std::abort();
  const std::vector<wchar_t> wide(data, data + size);
  doubledouble wideValue = 42;
  const std::wstring_view wideText(wide.data(), wide.size());
  if (shr::StringToDoubleDouble(wideText, wideValue) != isValid) std::abort();
  if (!IsSame(value, wideValue)) std::abort();
  if (!isValid) return value == 0 ? 0 : (std::abort(), 0);
  if (text.find_first_of("nN") == std::string::npos) {
    const doubledouble expected = NearestPair(text);
    if (std::isfinite(expected.head + expected.tail) && value != expected) std::abort();
  }
  if (!IsSame(doubledouble(shr::DoubleDoubleToString(value).c_str()), value)) std::abort();
  std::stringstream stream;
  stream << value;
  doubledouble back;
  if (!(stream >> back) || !IsSame(back, value)) std::abort();
  return 0;
}
