// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Numbers of pages: counts, decimals.

#include "examples/common/NumberText.h"

#include <gtest/gtest.h>

using namespace examples;

TEST(NumberText, writesCountsAndDecimals) {
  EXPECT_EQ(L"0", FormatCount(0));
  EXPECT_EQ(L"999", FormatCount(999));
  EXPECT_EQ(L"1,000", FormatCount(1000));
  EXPECT_EQ(L"12,345,678", FormatCount(12345678));
  EXPECT_EQ(L"1 event", FormatCount(1, L"event", L"events"));
  EXPECT_EQ(L"0.0", FormatNumber(-0.04, 1));
  EXPECT_EQ(
      L"\x2212"
      L"1.3",
      FormatNumber(-1.25001, 1));
  EXPECT_EQ(L"30", FormatShort(30, 2));
  EXPECT_EQ(L"0.5", FormatShort(0.5, 2));
}
