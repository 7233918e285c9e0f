// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The constants named like macros when the standard's headers come first. It is a file of its own
// because the order of the headers is the case.

#include <gtest/gtest.h>
#include <math.h>

#include <cmath>

#include "shared/geometry/MathUtility.h"

namespace {

static_assert(shr::INFINITY == ::INFINITY && shr::NEG_INFINITY == -shr::INFINITY);
static_assert(shr::NAN != shr::NAN);

using namespace shr;

TEST(MathUtility, namesOfMacrosAreConstantsWhenTheHeaderComesLast) {
  const float narrow = INFINITY;
  EXPECT_TRUE(std::isinf(narrow));
  EXPECT_TRUE(std::isnan(NAN));
}

}  // namespace
