// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: new and known words, case, the empty word.

#include "shared/text/Counter.h"

#include <gtest/gtest.h>

#include "shared/diagnostics/Exception.h"

namespace shr {
namespace {

TEST(Counter, theEmptyWordIsRefusedAndNotCounted) {
  Counter counter;
  EXPECT_THROW(counter.Add(L""), Exception);
  EXPECT_EQ(counter.TimesOf(L""), 0u);
}

}  // namespace
}  // namespace shr
