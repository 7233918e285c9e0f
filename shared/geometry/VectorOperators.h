// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the vector types of every dimension and precision have in common: arithmetic, products,
/// lengths and their tolerance. Not for direct use; include shared/geometry/Vec2.h.
///
/// A vector type derives from `VectorOperators<itself, component type>` and supplies `ForEach`, see
/// shared/geometry/ComponentOperators.h.
///
///     struct Vec2d : VectorOperators<Vec2d, double> { ... };
///
/// Threads: no state.

#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "shared/geometry/ComponentOperators.h"

namespace shr {

/// The type of sums of products: 64 bits for integers, otherwise the component type itself.
template <class T>
using ProductType = std::conditional_t<std::integral<T>, std::int64_t, T>;

/// The type of lengths: `double` for integers, otherwise the component type itself.
template <class T>
using LengthType = std::conditional_t<std::integral<T>, double, T>;

/// True when every value of `From` is also a value of `To`.
template <class From, class To>
concept WideningTo = std::numeric_limits<From>::digits <= std::numeric_limits<To>::digits &&
                     (std::integral<From> || std::floating_point<To>);

template <class V, class T>
struct VectorOperators : ComponentOperators<V, T> {
  /// Reverses the direction in place.
  constexpr void Negate() {
    V::ForEach([](T& a) { a = -a; }, Self());
  }
  friend constexpr V operator-(V a) {
    a.Negate();
    return a;
  }

  friend constexpr V operator+(V a, const V& b) { return a += b; }
  friend constexpr V operator-(V a, const V& b) { return a -= b; }
  friend constexpr V operator*(V a, const V& b) { return a *= b; }
  friend constexpr V operator/(V a, const V& b) { return a /= b; }
  friend constexpr V operator+(V a, T b) { return a += b; }
  friend constexpr V operator-(V a, T b) { return a -= b; }
  friend constexpr V operator*(V a, T b) { return a *= b; }
  friend constexpr V operator/(V a, T b) { return a /= b; }
  friend constexpr V operator+(T a, const V& b) { return b + a; }
  friend constexpr V operator*(T a, const V& b) { return b * a; }

  /// Exact, component by component; a NaN equals nothing.
  friend constexpr bool operator==(const V& a, const V& b) { return a.HasComponentsOf(b); }

  /// Returns the sum of the products of the components.
  constexpr ProductType<T> Dot(const V& b) const {
    ProductType<T> sum{};
    V::ForEach([&sum](const T& x, const T& y) { sum += static_cast<ProductType<T>>(x) * y; },
               Self(), b);
    return sum;
  }

  constexpr ProductType<T> LengthSquared() const { return Dot(Self()); }

  /// Returns the Euclidean length, computed in `double`.
  LengthType<T> Length() const { return static_cast<LengthType<T>>(DoubleLength()); }

  constexpr ProductType<T> DistanceSquared(const V& b) const {
    return (Self() - b).LengthSquared();
  }

  LengthType<T> Distance(const V& b) const { return (Self() - b).Length(); }

  /// Scales to length 1. Returns false and changes nothing when the length is no finite number
  /// above `V::NORMALIZE_TOLERANCE`.
  bool Normalize() requires std::floating_point<T> {
    const double length = DoubleLength();
    if (!(length > V::NORMALIZE_TOLERANCE) || length > std::numeric_limits<double>::max()) {
      return false;
    }
    ScaleBy(1.0 / length);
    return true;
  }

  /// Returns the vector divided by its length, unchecked: the zero vector gives NaNs.
  V Normalized() const requires std::floating_point<T> {
    V result = Self();
    result.ScaleBy(1.0 / DoubleLength());
    return result;
  }

  /// Returns a + (b - a) * t per component; t may lie outside 0 to 1.
  constexpr V Lerp(const V& b, T t) const requires std::floating_point<T> {
    return Self() + (b - Self()) * t;
  }

private:
  using ComponentOperators<V, T>::Self;

  double DoubleLength() const {
    double sum = 0.0;
    V::ForEach([&sum](const T& x) { sum += static_cast<double>(x) * static_cast<double>(x); },
               Self());
    return std::sqrt(sum);
  }

  void ScaleBy(double factor) {
    V::ForEach([factor](T& x) { x = static_cast<T>(x * factor); }, Self());
  }
};

}  // namespace shr
