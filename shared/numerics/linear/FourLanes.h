// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Four doubles that are worked on together: one register where the source is compiled for AVX2,
/// two elsewhere, with the same bits in every lane. Everything is of the source that includes it.
///
///     Four sum = Zero();
///     sum = sum + Load(a) * Load(b);
///
/// Threads: no state.

#pragma once

#include <cstddef>

#ifdef __AVX2__
#include <immintrin.h>
#else
#include <emmintrin.h>
#endif

namespace shr {
namespace {

#ifdef __AVX2__

struct Four {
  __m256d lanes;
};

inline Four Zero() {
  return {_mm256_setzero_pd()};
}
inline Four Same(double value) {
  return {_mm256_set1_pd(value)};
}
inline Four Load(const double* source) {
  return {_mm256_loadu_pd(source)};
}
inline void Store(double* destination, Four a) {
  _mm256_storeu_pd(destination, a.lanes);
}
inline Four operator+(Four a, Four b) {
  return {_mm256_add_pd(a.lanes, b.lanes)};
}
inline Four operator-(Four a, Four b) {
  return {_mm256_sub_pd(a.lanes, b.lanes)};
}
inline Four operator*(Four a, Four b) {
  return {_mm256_mul_pd(a.lanes, b.lanes)};
}
inline Four operator/(Four a, Four b) {
  return {_mm256_div_pd(a.lanes, b.lanes)};
}

#else

struct Four {
  __m128d low;
  __m128d high;
};

inline Four Zero() {
  return {_mm_setzero_pd(), _mm_setzero_pd()};
}
inline Four Same(double value) {
  return {_mm_set1_pd(value), _mm_set1_pd(value)};
}
inline Four Load(const double* source) {
  return {_mm_loadu_pd(source), _mm_loadu_pd(source + 2)};
}
inline void Store(double* destination, Four a) {
  _mm_storeu_pd(destination, a.low);
  _mm_storeu_pd(destination + 2, a.high);
}
inline Four operator+(Four a, Four b) {
  return {_mm_add_pd(a.low, b.low), _mm_add_pd(a.high, b.high)};
}
inline Four operator-(Four a, Four b) {
  return {_mm_sub_pd(a.low, b.low), _mm_sub_pd(a.high, b.high)};
}
inline Four operator*(Four a, Four b) {
  return {_mm_mul_pd(a.low, b.low), _mm_mul_pd(a.high, b.high)};
}
inline Four operator/(Four a, Four b) {
  return {_mm_div_pd(a.low, b.low), _mm_div_pd(a.high, b.high)};
}

#endif

/// Returns (lane 0 + lane 1) + (lane 2 + lane 3).
inline double Sum(Four a) {
  double lanes[4];
  Store(lanes, a);
  return (lanes[0] + lanes[1]) + (lanes[2] + lanes[3]);
}

}  // namespace
}  // namespace shr
