// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// All decimal digits of a double-double, for shared/numerics/doubledouble/DoubleDoubleText.cpp and
/// DoubleDoubleFormat.cpp only. Threads: no state.

#pragma once

#include <array>

#include "shared/numerics/doubledouble/DoubleDouble.h"

namespace shr {

/// Digits of a number 0.d1 d2 d3 ... * 10^exponent, d1 not zero; no digits for 0.
struct DecimalExpansion {
  /// The largest number has 309 digits before the point, the smallest bit 1,074 behind it.
  static constexpr int CAPACITY = 1400;

  std::array<char, CAPACITY> digits;  ///< From 0 to 9, no characters.
  int count = 0;
  int exponent = 0;
  bool isExact = true;  ///< Otherwise more digits follow, not all of them zeros.
};

/// Returns the digits of |head + tail|, all of them or at least `wanted`, without zeros at the end.
/// Requires: both parts are finite and |head| >= |tail|. Cost: for numbers about 1 a few
/// multiplications, for the others about the square of the logarithm.
DecimalExpansion ExpandDecimal(const doubledouble& x, int wanted);

}  // namespace shr
