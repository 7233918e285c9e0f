// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Parses the input as a real number in both widths and compares the value with std::from_chars.

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "shared/text/StringUtility.h"

namespace {

bool IsNumberOfDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789.eE+-") == std::string_view::npos;
}

/// Both know the same numbers but for a plus sign; zeros and infinities tell underflow from
/// overflow.
void CompareWithFromChars(std::string_view text, bool valid, double value) {
  if (!IsNumberOfDigits(text) || text[0] == '+') return;
  double expected = 0;
  const char* const last = text.data() + text.size();
  const auto result = std::from_chars(text.data(), last, expected);
  const bool whole = result.ptr == last && result.ec != std::errc::invalid_argument;
  if (result.ec == std::errc::result_out_of_range) {
    if (value != 0) std::abort();
    return;
  }
  if (valid != whole) std::abort();
  if (valid && std::bit_cast<std::uint64_t>(value) != std::bit_cast<std::uint64_t>(expected)) {
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  double value = 42;
  const bool valid = shr::StringToDouble(text, value);
  if (!valid && (value != 0 || std::signbit(value))) std::abort();
  // An exact copy, so that the sanitizer sees a read behind the last unit.
  const std::vector<wchar_t> wide(data, data + size);
  double wideValue = 42;
  const std::wstring_view wideText(wide.data(), wide.size());
  if (shr::StringToDouble(wideText, wideValue) != valid) std::abort();
  if (std::bit_cast<std::uint64_t>(value) != std::bit_cast<std::uint64_t>(wideValue)) std::abort();
  CompareWithFromChars(text, valid, value);
  return 0;
}
