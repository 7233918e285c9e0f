// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Random matrices of a chosen type, for the tests of transforms.
///
///     const Mat4d m = RandomOfType<Mat4d>(Mat4d::TYPE_AFFINE, random);
///
/// Threads: as the generator.

#pragma once

#include <random>

#include "shared/geometry/Mat4.h"

namespace shr {

/// Returns a matrix of just this type, its elements multiples of 1/8 below 4.
template <class Matrix>
Matrix RandomOfType(int type, std::mt19937& random) {
  std::uniform_int_distribution<int> eighths(-31, 31);
  Matrix m = Matrix::IDENTITY;
  while (m.GetType() != type) {
    const int axes = type == Matrix::TYPE_2D ? 2 : 3;
    for (int row = 0; row < 4; ++row) {
      if (row >= axes && row < 3) continue;
      for (int column = 0; column < (type == Matrix::TYPE_COMPLEX ? 4 : axes); ++column) {
        m[row][column] = static_cast<float>(eighths(random)) / 8;
      }
    }
    if (m.Det4() == 0) m = Matrix::IDENTITY;
  }
  return m;
}

}  // namespace shr
