// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The cyclic Jacobi method as it is written in textbooks, which the library's is measured by.

#pragma once

#include <cmath>
#include <cstddef>

#include "shared/numerics/linear/MatrixUtility.h"

namespace shr::bench {

/// The steps of the cyclic Jacobi method with threshold, in plain loops.
inline void PlainJacobi(RMatrix& a, RMatrix& v) {
  const std::size_t n = static_cast<std::size_t>(a.Rows());
  Eye(v, n, n);
  const double tolerance = SymOff(a) * 1e-16;
  for (int sweep = 0; sweep < 100; ++sweep) {
    const double off = SymOff(a);
    if (off < tolerance) return;
    const double threshold = off / ((sweep + 1.0) * static_cast<double>(n * n));
    for (std::size_t p = 0; p + 1 < n; ++p) {
      for (std::size_t q = p + 1; q < n; ++q) {
        if (std::abs(a(p, q)) <= threshold) continue;
        const double theta = (a(q, q) - a(p, p)) / (2.0 * a(p, q));
        const double t = theta >= 0.0 ? 1.0 / (theta + std::hypot(1.0, theta))
                                      : -1.0 / (std::hypot(1.0, theta) - theta);
        const double c = 1.0 / std::hypot(1.0, t), s = c * t;
        for (std::size_t k = 0; k < n; ++k) {
          const double x = a(p, k), y = a(q, k);
          a(p, k) = c * x - s * y;
          a(q, k) = s * x + c * y;
        }
        for (std::size_t k = 0; k < n; ++k) {
          const double x = a(k, p), y = a(k, q);
          a(k, p) = c * x - s * y;
          a(k, q) = s * x + c * y;
          const double u = v(k, p), w = v(k, q);
          v(k, p) = c * u - s * w;
          v(k, q) = s * u + c * w;
        }
      }
    }
  }
}

}  // namespace shr::bench
