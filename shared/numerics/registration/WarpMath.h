// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The arithmetic of the warps, written once for vectors of any width. Internal.
///
/// A vector type `V` stands in the anonymous namespace of the source that includes this, so that
/// all that is made from these templates stays inside of it (see shared_avx2_units). It has the
/// four operations, `V(double)` for equal lanes, and in its namespace `Sqrt(V)`, `Max(V, V)`,
/// `SelectLessEqual(a, b, yes, no)`, `Split(x, mantissa, exponent)` and `PowerOfTwo(V)`.
///
///     const V logarithm = LogOfNormal(x);
///
/// Every lane sees the same operations in the same order whatever the width: the bits are the same.

#pragma once

#include <cstddef>

#include "shared/platform/Simd.h"

namespace shr {

/// What the transform by a radial basis function reads.
struct SplineTerms {
  const double* u;           ///< of the control points
  const double* v;           ///< of the control points
  const double* weights;     ///< two each
  std::size_t count;         ///< of control points
  const double* polynomial;  ///< 3 x 2; null for 0
  double centerX;
  double centerY;
  double scale;
};

/// What the inverse distance method reads.
struct DistanceTerms {
  const double* u;
  const double* v;
  const double* residualX;
  const double* residualY;
  std::size_t count;
  const double* trend;  ///< 3 x 2
  double centerX;
  double centerY;
  double scale;
};

/// The radial functions, in the order of the warping methods.
enum class RadialKernel { ThinPlate, NaturalCubic, Marcov, Exponential, RationalQuadratic };

/// Squared distances up to here count as none.
inline constexpr double LEAST_SQUARED_DISTANCE = 1.1754943508222875e-38;

/// Results of `PortableExp` below the smallest normal number are 0.
inline constexpr double LEAST_EXPONENT = -708.39641853226408;

/// ln 2 in two parts; the first has 32 bits, so that its product with an exponent is exact.
inline constexpr double LN2_HIGH = 0x1.62e42feep-1;
inline constexpr double LN2_LOW = 0x1.a39ef35793c76p-33;

/// Minimax polynomial: (2 artanh(s) - 2 s) / s / s^2 in s^2 for |s| <= 0.1716; what it leaves of
/// the logarithm is below 2^-58 of s.
inline constexpr double LOG_0 = 0x1.5555555555592p-1;
inline constexpr double LOG_1 = 0x1.999999997fd77p-2;
inline constexpr double LOG_2 = 0x1.24924941f4f9ap-2;
inline constexpr double LOG_3 = 0x1.c71c5206090cbp-3;
inline constexpr double LOG_4 = 0x1.74663fa1fa5b2p-3;
inline constexpr double LOG_5 = 0x1.39a1a6faa23f8p-3;
inline constexpr double LOG_6 = 0x1.2f06346bae8cfp-3;

/// Minimax polynomial: (e^r - 1 - r) / r^2 for |r| <= ln 2 / 2; what it leaves is below 2^-57.
inline constexpr double EXP_0 = 0x1.000000000000ap-1;
inline constexpr double EXP_1 = 0x1.55555555554f9p-3;
inline constexpr double EXP_2 = 0x1.555555555083fp-5;
inline constexpr double EXP_3 = 0x1.1111111127d10p-7;
inline constexpr double EXP_4 = 0x1.6c16c18438ae6p-10;
inline constexpr double EXP_5 = 0x1.a01a012a0e82ep-13;
inline constexpr double EXP_6 = 0x1.a01999e2658dap-16;
inline constexpr double EXP_7 = 0x1.71df25b4b9a79p-19;
inline constexpr double EXP_8 = 0x1.28ad9b84d6d2dp-22;
inline constexpr double EXP_9 = 0x1.ad7f3c1c9bbf6p-26;

/// The logarithm of mantissa * 2^exponent with a mantissa from sqrt(1/2) to sqrt(2).
///
/// With f = mantissa - 1 and s = f / (2 + f): ln(1 + f) = 2 s + s R(s^2), where 2 s = f - s f keeps
/// the leading term exact.
template <class V>
SHARED_ALWAYS_INLINE static V LogOfParts(V mantissa, V exponent) {
  const V f = mantissa - V(1.0);
  const V s = f / (V(2.0) + f);
  const V z = s * s;
  const V w = z * z;
  const V even = V(LOG_0) + w * (V(LOG_2) + w * (V(LOG_4) + w * V(LOG_6)));
  const V odd = V(LOG_1) + w * (V(LOG_3) + w * V(LOG_5));
  const V rest = z * (even + z * odd);
  const V tail = s * (f - rest) - exponent * V(LN2_LOW);
  return exponent * V(LN2_HIGH) + (f - tail);
}

/// The logarithm of positive normal numbers; of infinity 1024 ln 2, of others any number.
template <class V>
SHARED_ALWAYS_INLINE static V LogOfNormal(V x) {
  V mantissa(0.0), exponent(0.0);
  Split(x, mantissa, exponent);
  return LogOfParts(mantissa, exponent);
}

/// e^x as a number from sqrt(1/2) to sqrt(2) and a power of two, for |x| < 2^50.
template <class V>
SHARED_ALWAYS_INLINE static V PartsOfExp(V x, V& exponent) {
  // Adding and taking away 1.5 * 2^52 rounds to a whole number.
  exponent = (x * V(0x1.71547652b82fep+0) + V(0x1.8p52)) - V(0x1.8p52);
  const V high = x - exponent * V(LN2_HIGH);
  const V low = exponent * V(LN2_LOW);
  const V r = high - low;
  const V lost = (high - r) - low;
  const V z = r * r;
  const V w = z * z;
  const V first = (V(EXP_0) + r * V(EXP_1)) + z * (V(EXP_2) + r * V(EXP_3));
  const V second = (V(EXP_4) + r * V(EXP_5)) + z * (V(EXP_6) + r * V(EXP_7));
  const V third = V(EXP_8) + r * V(EXP_9);
  return V(1.0) + (r + (z * (first + w * (second + w * third)) + lost));
}

/// e^x for x from -708 to 709; any number outside, NaN for NaN.
template <class V>
SHARED_ALWAYS_INLINE static V ExpInRange(V x) {
  V exponent(0.0);
  const V sum = PartsOfExp(x, exponent);
  return sum * PowerOfTwo(exponent);
}

/// The radial function of a squared distance.
template <RadialKernel KERNEL, class V>
SHARED_ALWAYS_INLINE static V Radial(V squared) {
  if constexpr (KERNEL == RadialKernel::ThinPlate) {
    const V value = V(0.5) * squared * LogOfNormal(squared);
    return SelectLessEqual(squared, V(LEAST_SQUARED_DISTANCE), V(0.0), value);
  } else if constexpr (KERNEL == RadialKernel::NaturalCubic) {
    return squared * Sqrt(squared);
  } else if constexpr (KERNEL == RadialKernel::Marcov) {
    return V(0.0) - Sqrt(squared);
  } else if constexpr (KERNEL == RadialKernel::Exponential) {
    const V x = V(0.0) - Sqrt(squared);
    return SelectLessEqual(x, V(LEAST_EXPONENT), V(0.0), ExpInRange(x));
  } else {
    return V(0.0) - squared / (squared + V(1.0));
  }
}

/// X and Y of the transform of points.
template <class V>
struct Position {
  V x;
  V y;
};

/// Maps points, one a lane, by a radial basis function. The terms are summed before the polynomial
/// is added, whose rounding is as coarse as the map's coordinates are large.
template <RadialKernel KERNEL, class V>
SHARED_ALWAYS_INLINE static Position<V> TransformBySpline(const SplineTerms& terms,
                                                          Position<V> point) {
  const V u = (point.x - V(terms.centerX)) / V(terms.scale);
  const V v = (point.y - V(terms.centerY)) / V(terms.scale);
  V x(0.0), y(0.0);
  for (std::size_t i = 0; i < terms.count; ++i) {
    const V du = u - V(terms.u[i]);
    const V dv = v - V(terms.v[i]);
    const V phi = Radial<KERNEL>(du * du + dv * dv);
    x = x + phi * V(terms.weights[2 * i]);
    y = y + phi * V(terms.weights[2 * i + 1]);
  }
  const double* c = terms.polynomial;
  return {V(c[0]) + (V(c[2]) * u + V(c[4]) * v + x), V(c[1]) + (V(c[3]) * u + V(c[5]) * v + y)};
}

/// The same by the inverse distance method.
template <class V>
SHARED_ALWAYS_INLINE static Position<V> TransformByDistance(const DistanceTerms& terms,
                                                            Position<V> point) {
  const V u = (point.x - V(terms.centerX)) / V(terms.scale);
  const V v = (point.y - V(terms.centerY)) / V(terms.scale);
  V x(0.0), y(0.0), sum(0.0);
  for (std::size_t i = 0; i < terms.count; ++i) {
    const V du = u - V(terms.u[i]);
    const V dv = v - V(terms.v[i]);
    const V weight = V(1.0) / Max(V(LEAST_SQUARED_DISTANCE), du * du + dv * dv);
    x = x + weight * V(terms.residualX[i]);
    y = y + weight * V(terms.residualY[i]);
    sum = sum + weight;
  }
  const double* c = terms.trend;
  return {V(c[0]) + (V(c[2]) * u + V(c[4]) * v + x / sum),
          V(c[1]) + (V(c[3]) * u + V(c[5]) * v + y / sum)};
}

}  // namespace shr
