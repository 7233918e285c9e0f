// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A sum waits for each addition to end before it can take the next number. Sixteen partial sums
// keep the adders busy, as four vectors of four or one by one, and give the same bits either way:
// what is added to which sum in which order does not depend on the processor.
//
// The vector code runs the plain steps of the operators. Infinities and numbers that overflow on
// the way make a NaN that no later addition takes away, so that a finite result is the one that the
// operators give; otherwise they do the work again.

#include "shared/numerics/doubledouble/DoubleDoubleSpans.h"

#include <algorithm>
#include <array>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/doubledouble/DoubleDoubleSpansAvx2.h"
#include "shared/platform/CpuFeatures.h"

namespace shr {
namespace {

using doubledouble_avx2::PARTIAL_SUMS;
using PartialSums = std::array<doubledouble, PARTIAL_SUMS>;

static_assert(sizeof(doubledouble) == 2 * sizeof(double));

constexpr const wchar_t* UNIT = L"DoubleDouble";

void RequireSameSize(std::size_t a, std::size_t b) {
  if (a != b) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
}

const double* PartsOf(std::span<const doubledouble> x) {
  return x.empty() ? nullptr : &x.front().head;
}
double* PartsOf(std::span<doubledouble> x) {
  return x.empty() ? nullptr : &x.front().head;
}

doubledouble SumOfAll(PartialSums sums) {
  for (std::size_t half = PARTIAL_SUMS / 2; half > 0; half /= 2) {
    for (std::size_t i = 0; i < half; ++i) sums[i] += sums[i + half];
  }
  return sums[0];
}

/// Adds the terms from `first` on to their partial sums and returns the sum of all.
template <class Term>
doubledouble SumFrom(std::size_t first, std::size_t count, PartialSums& sums, const Term& term) {
  std::size_t i = first;
  for (; i + PARTIAL_SUMS <= count; i += PARTIAL_SUMS) {
    for (std::size_t k = 0; k < PARTIAL_SUMS; ++k) sums[k] += term(i + k);
  }
  for (std::size_t k = 0; i + k < count; ++k) sums[k] += term(i + k);
  return SumOfAll(sums);
}

/// Sums `term(i)`, whole blocks by `sumBlocks` where the processor can.
template <class Term, class SumBlocks>
doubledouble SumTerms(std::size_t count, const Term& term, const SumBlocks& sumBlocks) {
  constexpr std::size_t LEAST_BLOCKS = 2;
  const std::size_t blocks = count / PARTIAL_SUMS;
  if (blocks >= LEAST_BLOCKS && HasAvx2()) {
    PartialSums sums{};
    sumBlocks(blocks, &sums[0].head);
    const bool isSound = std::all_of(sums.begin(), sums.end(), [](const doubledouble& sum) {
      return doubledouble_formulas::IsFinite(sum.tail);
    });
    if (isSound) return SumFrom(blocks * PARTIAL_SUMS, count, sums, term);
  }
  PartialSums sums{};
  return SumFrom(0, count, sums, term);
}

using Kernel = std::size_t (*)(const double*, const double*, std::size_t, double*) noexcept;

/// Applies an operation to all elements; the kernel stops before those that are the operator's.
template <class Operation>
void ForEach(std::span<const doubledouble> x, std::span<const doubledouble> y,
             std::span<doubledouble> result, Kernel kernel, const Operation& operation) {
  constexpr std::size_t LANES = 4;
  RequireSameSize(x.size(), y.size());
  RequireSameSize(x.size(), result.size());
  const std::size_t count = x.size();
  const bool hasKernel = HasAvx2();
  for (std::size_t i = 0; i < count;) {
    if (hasKernel && count - i >= LANES) {
      i += kernel(PartsOf(x) + 2 * i, PartsOf(y) + 2 * i, count - i, PartsOf(result) + 2 * i);
    }
    const std::size_t end = hasKernel ? std::min(count, i + LANES) : count;
    for (; i < end; ++i) result[i] = operation(x[i], y[i]);
  }
}

}  // namespace

doubledouble Sum(std::span<const double> x) {
  return SumTerms(
      x.size(), [x](std::size_t i) { return doubledouble(x[i]); },
      [x](std::size_t blocks, double* sums) {
        doubledouble_avx2::SumDoubles(x.data(), blocks, sums);
      });
}

doubledouble Sum(std::span<const doubledouble> x) {
  return SumTerms(
      x.size(), [x](std::size_t i) { return x[i]; },
      [x](std::size_t blocks, double* sums) {
        doubledouble_avx2::SumPairs(PartsOf(x), blocks, sums);
      });
}

doubledouble DotProduct(std::span<const double> x, std::span<const double> y) {
  RequireSameSize(x.size(), y.size());
  return SumTerms(
      x.size(), [x, y](std::size_t i) { return Multiply(x[i], y[i]); },
      [x, y](std::size_t blocks, double* sums) {
        doubledouble_avx2::DotDoubles(x.data(), y.data(), blocks, sums);
      });
}

doubledouble DotProduct(std::span<const doubledouble> x, std::span<const doubledouble> y) {
  RequireSameSize(x.size(), y.size());
  return SumTerms(
      x.size(), [x, y](std::size_t i) { return x[i] * y[i]; },
      [x, y](std::size_t blocks, double* sums) {
        doubledouble_avx2::DotPairs(PartsOf(x), PartsOf(y), blocks, sums);
      });
}

void Add(std::span<const doubledouble> x, std::span<const doubledouble> y,
         std::span<doubledouble> result) {
  ForEach(x, y, result, doubledouble_avx2::AddPairs,
          [](const doubledouble& a, const doubledouble& b) { return a + b; });
}

void Subtract(std::span<const doubledouble> x, std::span<const doubledouble> y,
              std::span<doubledouble> result) {
  ForEach(x, y, result, doubledouble_avx2::SubtractPairs,
          [](const doubledouble& a, const doubledouble& b) { return a - b; });
}

void Multiply(std::span<const doubledouble> x, std::span<const doubledouble> y,
              std::span<doubledouble> result) {
  ForEach(x, y, result, doubledouble_avx2::MultiplyPairs,
          [](const doubledouble& a, const doubledouble& b) { return a * b; });
}

void Divide(std::span<const doubledouble> x, std::span<const doubledouble> y,
            std::span<doubledouble> result) {
  ForEach(x, y, result, doubledouble_avx2::DividePairs,
          [](const doubledouble& a, const doubledouble& b) { return a / b; });
}

}  // namespace shr
