// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Significant digits of numbers of any size.

#include "shared/plots/NumberText.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

using namespace shr;

TEST(NumberText, significantDigitsAreRoundedOnce) {
  const std::pair<double, const wchar_t*> rows[] = {
      {0, L"0"},
      {-0.0, L"0"},
      {1, L"1"},
      {1234.5678, L"1234.57"},
      {999999.5, L"1000000"},
      {123456789.25, L"123456789"},
      {0.00012345678, L"0.000123457"},
      {-2.5,
       L"\x2212"
       L"2.5"},
      {1e9, L"1 \xD7 10\x2079"},
      {-1.5e-12,
       L"\x2212"
       L"1.5 \xD7 10\x207B\xB9\xB2"},
      {0.1 + 0.2, L"0.3"},
      {0.49999999999999994, L"0.5"},
      {std::numeric_limits<double>::max(), L"1.79769 \xD7 10\xB3\x2070\x2078"},
      {std::numeric_limits<double>::infinity(), L"\x2013"},
      {std::numeric_limits<double>::quiet_NaN(), L"\x2013"},
  };
  for (const auto& [value, expected] : rows) EXPECT_EQ(expected, SignificantText(value, 6));
  EXPECT_EQ(L"1.23456789012", SignificantText(1.23456789012, 12));
}
