// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Opt-in: `doubledouble` as a scalar of Eigen. Needs the headers of Eigen 3.3 or later where it is
/// included; the library itself does not, and no other header of it includes this one.
///
///     using Matrix = Eigen::Matrix<doubledouble, Eigen::Dynamic, Eigen::Dynamic>;
///     using Column = Eigen::Matrix<doubledouble, Eigen::Dynamic, 1>;
///     Matrix hilbert(12, 12);
///     for (int i = 0; i < 12; ++i)
///       for (int j = 0; j < 12; ++j) hilbert(i, j) = recip(doubledouble(i + j + 1));
///     Column x = hilbert.partialPivLu().solve(hilbert * Column::Ones(12));   // ones to 16 digits
///
/// Threads: no state.

#pragma once

#include <Eigen/Core>

#include "shared/numerics/doubledouble/DoubleDouble.h"

/// What Eigen must know of a scalar; costs are those of its operators in plain additions.
template <>
struct Eigen::NumTraits<shr::doubledouble> : Eigen::GenericNumTraits<shr::doubledouble> {
  enum {
    IsComplex = 0,
    IsInteger = 0,
    IsSigned = 1,
    RequireInitialization = 1,
    ReadCost = 2,
    AddCost = 20,
    MulCost = 25
  };
  static int digits10() { return std::numeric_limits<shr::doubledouble>::digits10; }
  static shr::doubledouble epsilon() { return std::numeric_limits<shr::doubledouble>::epsilon(); }
  /// What comparisons with a tolerance take for equal, as 1e-12 for doubles.
  static shr::doubledouble dummy_precision() { return 1e-28; }
  static shr::doubledouble highest() { return (std::numeric_limits<shr::doubledouble>::max)(); }
  static shr::doubledouble lowest() { return std::numeric_limits<shr::doubledouble>::lowest(); }
};
