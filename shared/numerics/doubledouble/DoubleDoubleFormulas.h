// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The arithmetic steps of `doubledouble`, for one number or a vector of them.
///
/// The operators of shared/numerics/doubledouble/DoubleDouble.h run them on `double`, the span
/// functions on vector registers: the same steps in the same order give the same bits. They are
/// for finite operands far from overflow; the operators see to the rest.
///
///     using namespace doubledouble_formulas;
///     Pair<double> sum = SumOf<double>({1.0, 0.0}, {1e-20, 0.0});   // head 1, tail 1e-20
///
/// Source: T. J. Dekker, "A Floating-Point Technique for Extending the Available Precision", 1971;
/// D. E. Knuth, "The Art of Computer Programming", volume 2, 4.2.2. Threads: no state.

#pragma once

namespace shr::doubledouble_formulas {

/// Splits a double into two halves of at most 26 bits: 2^27 + 1.
inline constexpr double SPLITTER = 134217729.0;

/// An unevaluated sum.
template <class V>
struct Pair {
  V head, tail;
};

/// A number as the sum of two whose products are exact.
template <class V>
struct Halves {
  V high, low;
};

template <class V>
constexpr Halves<V> Split(V a) {
  const V t = a * V(SPLITTER);
  const V high = t - (t - a);
  return {high, a - high};
}

/// Returns the product and what it lacks: exact, where nothing underflows.
template <class V>
constexpr Pair<V> ExactProduct(V a, V b) {
  const V product = a * b;
  const Halves<V> x = Split(a);
  const Halves<V> y = Split(b);
  return {product, (x.high * y.high - product + x.low * y.high + x.high * y.low) + x.low * y.low};
}

/// Adds the parts of a number the first of which is much the larger.
template <class V>
constexpr Pair<V> Renormalized(V large, V small) {
  const V head = large + small;
  return {head, (large - head) + small};
}

/// Both the heads and the tails are summed without error, so that nothing is lost where the heads
/// cancel.
template <class V>
constexpr Pair<V> SumOf(Pair<V> x, Pair<V> y) {
  const V heads = x.head + y.head;
  const V tails = x.tail + y.tail;
  const V headPart = heads - x.head;
  const V tailPart = tails - x.tail;
  const V headRest = y.head - headPart;
  const V tailRest = y.tail - tailPart;
  const V small = (x.head - (heads - headPart)) + headRest + tails;
  const V large = small + heads;
  const V rest = (x.tail - (tails - tailPart)) + tailRest + (heads - large + small);
  const V head = rest + large;
  return {head, (large - head) + rest};
}

template <class V>
constexpr Pair<V> ProductOf(Pair<V> x, Pair<V> y) {
  const Pair<V> heads = ExactProduct(x.head, y.head);
  return Renormalized(heads.head, heads.tail + (x.head * y.tail + x.tail * y.head));
}

template <class V>
constexpr Pair<V> QuotientOf(Pair<V> x, Pair<V> y) {
  const V quotient = x.head / y.head;
  const Pair<V> back = ExactProduct(y.head, quotient);
  const V rest = ((x.head - back.head) - back.tail + x.tail - quotient * y.tail) / y.head;
  return Renormalized(quotient, rest);
}

}  // namespace shr::doubledouble_formulas
