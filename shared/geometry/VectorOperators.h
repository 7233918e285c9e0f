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
#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "shared/Export.h"
#include "shared/geometry/ComponentOperators.h"

namespace shr {

/// The type of sums of products: `double` for integers, whose sums of three products may need 66
/// bits, otherwise the component type itself.
template <class T>
using ProductType = std::conditional_t<std::integral<T>, double, T>;

/// The type of lengths: `double` for integers, otherwise the component type itself.
template <class T>
using LengthType = std::conditional_t<std::integral<T>, double, T>;

/// True when every value of `From` is also a value of `To`.
template <class From, class To>
concept WideningTo = std::numeric_limits<From>::digits <= std::numeric_limits<To>::digits &&
                     (std::integral<From> || std::floating_point<To>);

/// Returns true unless the value is infinite or NaN.
template <std::floating_point T>
constexpr bool IsFiniteNumber(T value) {
  return value >= std::numeric_limits<T>::lowest() && value <= std::numeric_limits<T>::max();
}

/// A sum of products of 33-bit integers, which is exact until it is read: in units and in multiples
/// of 2^32, whose sum is rounded once.
class IntegerProducts {
public:
  constexpr void Add(std::int64_t a, std::int64_t b) {
    const bool isNegative = (a < 0) != (b < 0);
    const std::uint64_t size = Magnitude(a) * Magnitude(b);
    const auto high = static_cast<std::int64_t>(size >> 32);
    const auto low = static_cast<std::int64_t>(size & 0xFFFFFFFFu);
    high_ += isNegative ? -high : high;
    low_ += isNegative ? -low : low;
  }
  constexpr double Sum() const {
    return static_cast<double>(high_) * 4294967296.0 + static_cast<double>(low_);
  }

private:
  static constexpr std::uint64_t Magnitude(std::int64_t value) {
    return static_cast<std::uint64_t>(value < 0 ? -value : value);
  }

  std::int64_t high_ = 0;
  std::int64_t low_ = 0;
};

/// Vectors have no order but that of integers, component by component. Without these, `<` would
/// compare the addresses to which vectors convert.
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

  /// Integers only: lexicographic order, first x, then y and so on.
  friend constexpr std::strong_ordering operator<=>(const V& a,
                                                    const V& b) requires std::integral<T> {
    std::strong_ordering order = std::strong_ordering::equal;
    V::ForEach([&order](const T& x, const T& y) { order = order == 0 ? x <=> y : order; }, a, b);
    return order;
  }
  friend constexpr void operator<=>(const V& a, const V& b) requires(!std::integral<T>) = delete;

  /// True when no component is infinite or NaN.
  constexpr bool IsFinite() const {
    bool isFinite = true;
    if constexpr (std::floating_point<T>) {
      V::ForEach([&isFinite](const T& x) { isFinite &= IsFiniteNumber(x); }, Self());
    }
    return isFinite;
  }

  /// Returns the sum of the products of the components. Of integers it never overflows and is
  /// rounded once, so that its sign is right and sums below 2^53 are exact.
  constexpr ProductType<T> Dot(const V& b) const {
    if constexpr (std::integral<T>) {
      IntegerProducts sum;
      V::ForEach([&sum](const T& x, const T& y) { sum.Add(x, y); }, Self(), b);
      return sum.Sum();
    } else {
      T sum{};
      V::ForEach([&sum](const T& x, const T& y) { sum += x * y; }, Self(), b);
      return sum;
    }
  }

  constexpr ProductType<T> LengthSquared() const { return Dot(Self()); }

  /// Returns the Euclidean length, computed in `double`.
  LengthType<T> Length() const { return static_cast<LengthType<T>>(DoubleLength()); }

  constexpr ProductType<T> DistanceSquared(const V& b) const {
    if constexpr (std::integral<T>) {
      IntegerProducts sum;
      const auto add = [&sum](const T& x, const T& y) {
        const std::int64_t difference = std::int64_t{x} - y;
        sum.Add(difference, difference);
      };
      V::ForEach(add, Self(), b);
      return sum.Sum();
    } else {
      return (Self() - b).LengthSquared();
    }
  }

  LengthType<T> Distance(const V& b) const {
    if constexpr (std::integral<T>) {
      return std::sqrt(DistanceSquared(b));
    } else {
      return (Self() - b).Length();
    }
  }

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

template <class V, class T>
void TakeVector(const VectorOperators<V, T>& vector);

/// True for the vector types.
template <class V>
concept AnyVector = requires(const V& v) {
  TakeVector<V>(v);
};

/// True for two vector types neither of which converts to the other, such as those of different
/// dimensions. What they have in common, that they convert to pointers, is not meant.
template <class A, class B>
concept UnrelatedVectors = AnyVector<A> && AnyVector<B> && !std::same_as<A, B> &&
                           !std::convertible_to<A, B> && !std::convertible_to<B, A>;

template <class A, class B>
requires UnrelatedVectors<A, B>
void operator-(const A& a, const B& b) = delete;
template <class A, class B>
requires UnrelatedVectors<A, B>
void operator==(const A& a, const B& b) = delete;
/// Of classes alone: clang 14 looks at constraints last, and the standard library asks for this by
/// name with pointers to classes of this namespace.
template <class A, class B, class = std::enable_if_t<std::is_class_v<A> && std::is_class_v<B>>>
requires UnrelatedVectors<A, B>
void operator<=>(const A& a, const B& b) = delete;

}  // namespace shr
