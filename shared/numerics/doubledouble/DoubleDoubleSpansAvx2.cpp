// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/doubledouble/DoubleDoubleSpansAvx2.h"

#include <immintrin.h>

#include "shared/numerics/doubledouble/DoubleDoubleFormulas.h"

namespace shr::doubledouble_avx2 {
namespace {

/// Four doubles with the operators that the formulas use. In the anonymous namespace, so that
/// nothing compiled here is what the linker keeps for other processors.
struct Vector {
  Vector() = default;
  Vector(__m256d v) : value(v) {}
  explicit Vector(double a) : value(_mm256_set1_pd(a)) {}
  __m256d value;
};

Vector operator+(Vector a, Vector b) {
  return _mm256_add_pd(a.value, b.value);
}
Vector operator-(Vector a, Vector b) {
  return _mm256_sub_pd(a.value, b.value);
}
Vector operator*(Vector a, Vector b) {
  return _mm256_mul_pd(a.value, b.value);
}
Vector operator/(Vector a, Vector b) {
  return _mm256_div_pd(a.value, b.value);
}

using Pair = doubledouble_formulas::Pair<Vector>;
using doubledouble_formulas::ExactProduct;
using doubledouble_formulas::ProductOf;
using doubledouble_formulas::QuotientOf;
using doubledouble_formulas::SumOf;

constexpr std::size_t LANES = 4;
constexpr std::size_t QUADS = PARTIAL_SUMS / LANES;

/// Loads four numbers, in the order 0, 2, 1, 3.
Pair Load(const double* parts) {
  const __m256d first = _mm256_loadu_pd(parts);
  const __m256d second = _mm256_loadu_pd(parts + LANES);
  return {_mm256_unpacklo_pd(first, second), _mm256_unpackhi_pd(first, second)};
}

void Store(Pair x, double* parts) {
  _mm256_storeu_pd(parts, _mm256_unpacklo_pd(x.head.value, x.tail.value));
  _mm256_storeu_pd(parts + LANES, _mm256_unpackhi_pd(x.head.value, x.tail.value));
}

Vector LoadDoubles(const double* x) {
  // The same order as that of pairs.
  return _mm256_permute4x64_pd(_mm256_loadu_pd(x), 0xD8);
}

/// Adds `term(i)`, the numbers i to i + 3, to the sums of their places, block by block. Four
/// vectors of sums hide that an addition waits for the one before.
template <class Term>
void SumBlocks(std::size_t blocks, double* sums, const Term& term) {
  Pair partial[QUADS];
  for (std::size_t k = 0; k < QUADS; ++k) partial[k] = Load(sums + 2 * LANES * k);
  for (std::size_t i = 0; i < blocks * PARTIAL_SUMS; i += PARTIAL_SUMS) {
    partial[0] = SumOf(partial[0], term(i));
    partial[1] = SumOf(partial[1], term(i + LANES));
    partial[2] = SumOf(partial[2], term(i + 2 * LANES));
    partial[3] = SumOf(partial[3], term(i + 3 * LANES));
  }
  for (std::size_t k = 0; k < QUADS; ++k) Store(partial[k], sums + 2 * LANES * k);
}

/// True when a tail is infinite or a NaN: the difference from itself is not 0 then.
bool IsExtreme(Pair x) {
  const __m256d difference = _mm256_sub_pd(x.tail.value, x.tail.value);
  return _mm256_movemask_pd(_mm256_cmp_pd(difference, difference, _CMP_UNORD_Q)) != 0;
}

template <class Operation>
std::size_t ForEach(const double* x, const double* y, std::size_t count, double* result,
                    const Operation& operation) {
  std::size_t i = 0;
  for (; i + LANES <= count; i += LANES) {
    const Pair value = operation(Load(x + 2 * i), Load(y + 2 * i));
    if (IsExtreme(value)) break;
    Store(value, result + 2 * i);
  }
  return i;
}

}  // namespace

void SumDoubles(const double* x, std::size_t blocks, double* sums) noexcept {
  SumBlocks(blocks, sums, [x](std::size_t i) { return Pair{LoadDoubles(x + i), Vector(0.0)}; });
}

void SumPairs(const double* x, std::size_t blocks, double* sums) noexcept {
  SumBlocks(blocks, sums, [x](std::size_t i) { return Load(x + 2 * i); });
}

void DotDoubles(const double* x, const double* y, std::size_t blocks, double* sums) noexcept {
  SumBlocks(blocks, sums,
            [x, y](std::size_t i) { return ExactProduct(LoadDoubles(x + i), LoadDoubles(y + i)); });
}

void DotPairs(const double* x, const double* y, std::size_t blocks, double* sums) noexcept {
  SumBlocks(blocks, sums,
            [x, y](std::size_t i) { return ProductOf(Load(x + 2 * i), Load(y + 2 * i)); });
}

std::size_t AddPairs(const double* x, const double* y, std::size_t count, double* result) noexcept {
  return ForEach(x, y, count, result, [](Pair a, Pair b) { return SumOf(a, b); });
}

std::size_t SubtractPairs(const double* x, const double* y, std::size_t count,
                          double* result) noexcept {
  return ForEach(x, y, count, result, [](Pair a, Pair b) {
    const Vector sign(-0.0);
    return SumOf(
        a, Pair{_mm256_xor_pd(b.head.value, sign.value), _mm256_xor_pd(b.tail.value, sign.value)});
  });
}

std::size_t MultiplyPairs(const double* x, const double* y, std::size_t count,
                          double* result) noexcept {
  return ForEach(x, y, count, result, [](Pair a, Pair b) { return ProductOf(a, b); });
}

std::size_t DividePairs(const double* x, const double* y, std::size_t count,
                        double* result) noexcept {
  return ForEach(x, y, count, result, [](Pair a, Pair b) { return QuotientOf(a, b); });
}

}  // namespace shr::doubledouble_avx2
