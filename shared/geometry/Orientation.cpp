// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The determinant of two difference vectors is first evaluated in plain arithmetic. Its rounding
// error is at most (3 + 16 u) u times the sum of the sizes of its two products, where u = 2^-53; a
// larger result has the right sign. Otherwise the determinant is written as six products of the
// coordinates themselves, each split into its rounded value and its exact rounding error, and the
// twelve numbers are added into an expansion: a list of numbers, each smaller than the last bit of
// the next, whose sum is exact. The sign is that of its largest member. Both axes are scaled by
// powers of two first, which changes no sign and keeps products and their errors away from overflow
// and underflow.
//
// Source: J. R. Shewchuk, "Adaptive Precision Floating-Point Arithmetic and Fast Robust Geometric
// Predicates", Discrete & Computational Geometry 18, 1997 (grow-expansion, orientation error
// bound); T. J. Dekker, "A Floating-Point Technique for Extending the Available Precision", 1971
// (product).

#include "shared/geometry/Orientation.h"

#include <algorithm>
#include <cmath>

namespace shr {
namespace {

constexpr double UNIT_ROUNDOFF = DBL_EPSILON / 2.0;
constexpr double ERROR_FACTOR = (3.0 + 16.0 * UNIT_ROUNDOFF) * UNIT_ROUNDOFF;
/// Products whose sum lies between these have neither underflowed nor overflowed in a way that
/// matters.
constexpr double SMALLEST_SAFE = 1e-280;
constexpr double LARGEST_SAFE = 1e300;
/// The size to which the largest coordinate of each axis is scaled: products stay below 2^1002.
constexpr int SCALED_EXPONENT = 500;

int Sign(double value) {
  return (value > 0.0) - (value < 0.0);
}

/// The exact sum of numbers added one by one.
class Expansion {
public:
  void Add(double value) {
    for (int i = 0; i < size_; ++i) {
      const double sum = value + terms_[i];
      const double shifted = sum - value;
      terms_[i] = (value - (sum - shifted)) + (terms_[i] - shifted);
      value = sum;
    }
    terms_[size_++] = value;
  }

  void AddProduct(double a, double b) {
    const double product = a * b;
    const Halves x = Split(a);
    const Halves y = Split(b);
    Add(((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low);
    Add(product);
  }

  int SignOfSum() const {
    for (int i = size_ - 1; i >= 0; --i) {
      if (terms_[i] != 0.0) return Sign(terms_[i]);
    }
    return 0;
  }

private:
  struct Halves {
    double high;
    double low;
  };

  /// Splits into two numbers of at most 26 bits each.
  static Halves Split(double value) {
    const double scaled = 134217729.0 * value;  // 2^27 + 1
    const double high = scaled - (scaled - value);
    return {high, value - high};
  }

  double terms_[12] = {};
  int size_ = 0;
};

/// Scales three numbers by one power of two so that the largest comes near 2^SCALED_EXPONENT.
void ScaleAxis(double& a, double& b, double& c) {
  const double largest = std::max({std::abs(a), std::abs(b), std::abs(c)});
  if (largest == 0.0) return;
  const int shift = SCALED_EXPONENT - std::ilogb(largest);
  a = std::ldexp(a, shift);
  b = std::ldexp(b, shift);
  c = std::ldexp(c, shift);
}

int ExactSign(Vec2d a, Vec2d b, Vec2d c) {
  ScaleAxis(a.x, b.x, c.x);
  ScaleAxis(a.y, b.y, c.y);
  Expansion sum;
  sum.AddProduct(a.x, b.y);
  sum.AddProduct(-a.y, b.x);
  sum.AddProduct(a.y, c.x);
  sum.AddProduct(-a.x, c.y);
  sum.AddProduct(b.x, c.y);
  sum.AddProduct(-b.y, c.x);
  return sum.SignOfSum();
}

}  // namespace

int OrientationSign(const Vec2d& a, const Vec2d& b, const Vec2d& c) {
  const double left = (a.x - c.x) * (b.y - c.y);
  const double right = (a.y - c.y) * (b.x - c.x);
  const double determinant = left - right;
  const double magnitude = std::abs(left) + std::abs(right);
  if (magnitude > SMALLEST_SAFE && magnitude < LARGEST_SAFE &&
      std::abs(determinant) > ERROR_FACTOR * magnitude) {
    return Sign(determinant);
  }
  if (!a.IsFinite() || !b.IsFinite() || !c.IsFinite()) return 0;
  return ExactSign(a, b, c);
}

}  // namespace shr
