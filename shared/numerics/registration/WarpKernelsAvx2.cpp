// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Vectors hold the same coordinate of eight points, so that each point's sum runs over the control
// points in their order, as in the baseline code, and the bits are the same. Nothing of a header
// but the intrinsics and what is made from WarpMath.h with `Lanes` may be called here, see
// shared_avx2_units.

#include "shared/numerics/registration/WarpKernels.h"

#include <immintrin.h>

namespace shr {
namespace {

/// Points in hand at a time. The chain of operations that leads to a logarithm is long; two chains
/// side by side keep the processor busy, where it would wait for the one.
constexpr std::size_t WIDTH = 8;

struct Lanes {
  explicit Lanes(double number) : low(_mm256_set1_pd(number)), high(low) {}
  Lanes(__m256d lowNumbers, __m256d highNumbers) : low(lowNumbers), high(highNumbers) {}
  __m256d low;
  __m256d high;
};

SHARED_ALWAYS_INLINE Lanes operator+(Lanes a, Lanes b) {
  return Lanes(_mm256_add_pd(a.low, b.low), _mm256_add_pd(a.high, b.high));
}
SHARED_ALWAYS_INLINE Lanes operator-(Lanes a, Lanes b) {
  return Lanes(_mm256_sub_pd(a.low, b.low), _mm256_sub_pd(a.high, b.high));
}
SHARED_ALWAYS_INLINE Lanes operator*(Lanes a, Lanes b) {
  return Lanes(_mm256_mul_pd(a.low, b.low), _mm256_mul_pd(a.high, b.high));
}
SHARED_ALWAYS_INLINE Lanes operator/(Lanes a, Lanes b) {
  return Lanes(_mm256_div_pd(a.low, b.low), _mm256_div_pd(a.high, b.high));
}
SHARED_ALWAYS_INLINE Lanes Sqrt(Lanes a) {
  return Lanes(_mm256_sqrt_pd(a.low), _mm256_sqrt_pd(a.high));
}
/// The second one where they do not compare.
SHARED_ALWAYS_INLINE Lanes Max(Lanes a, Lanes b) {
  return Lanes(_mm256_max_pd(a.low, b.low), _mm256_max_pd(a.high, b.high));
}
SHARED_ALWAYS_INLINE Lanes SelectLessEqual(Lanes a, Lanes b, Lanes yes, Lanes no) {
  const __m256d low = _mm256_cmp_pd(a.low, b.low, _CMP_LE_OQ);
  const __m256d high = _mm256_cmp_pd(a.high, b.high, _CMP_LE_OQ);
  return Lanes(_mm256_blendv_pd(no.low, yes.low, low), _mm256_blendv_pd(no.high, yes.high, high));
}

SHARED_ALWAYS_INLINE __m256i Whole(long long number) {
  return _mm256_set1_epi64x(number);
}

constexpr long long ONE = 0x3FF0000000000000;
constexpr long long ROOT_OF_HALF = 0x3FE6A09E667F3BCD;
constexpr long long TWO_TO_52 = 0x4330000000000000;
constexpr long long FRACTION = 0x000FFFFFFFFFFFFF;

SHARED_ALWAYS_INLINE __m256i Shifted(__m256d x) {
  return _mm256_add_epi64(_mm256_castpd_si256(x), Whole(ONE - ROOT_OF_HALF));
}
/// The bits of 2^52 + n are those of 2^52 with n in the lowest.
SHARED_ALWAYS_INLINE __m256d BiasedExponent(__m256i bits) {
  return _mm256_castsi256_pd(_mm256_or_si256(_mm256_srli_epi64(bits, 52), Whole(TWO_TO_52)));
}
SHARED_ALWAYS_INLINE __m256d Mantissa(__m256i bits) {
  const __m256i fraction = _mm256_and_si256(bits, Whole(FRACTION));
  return _mm256_castsi256_pd(_mm256_add_epi64(fraction, Whole(ROOT_OF_HALF)));
}

SHARED_ALWAYS_INLINE void Split(Lanes x, Lanes& mantissa, Lanes& exponent) {
  const __m256i low = Shifted(x.low), high = Shifted(x.high);
  exponent = Lanes(BiasedExponent(low), BiasedExponent(high)) - Lanes(0x1p52 + 1023.0);
  mantissa = Lanes(Mantissa(low), Mantissa(high));
}

SHARED_ALWAYS_INLINE __m256d ShiftedToExponent(__m256d x) {
  return _mm256_castsi256_pd(_mm256_slli_epi64(_mm256_castpd_si256(x), 52));
}
SHARED_ALWAYS_INLINE Lanes PowerOfTwo(Lanes k) {
  const Lanes biased = k + Lanes(0x1.8p52 + 1023.0);
  return Lanes(ShiftedToExponent(biased.low), ShiftedToExponent(biased.high));
}

SHARED_ALWAYS_INLINE Lanes Load(const double* numbers) {
  return Lanes(_mm256_loadu_pd(numbers), _mm256_loadu_pd(numbers + 4));
}
SHARED_ALWAYS_INLINE void Store(Lanes lanes, double* numbers) {
  _mm256_storeu_pd(numbers, lanes.low);
  _mm256_storeu_pd(numbers + 4, lanes.high);
}

/// Eight points as two vectors; the lanes are points 0, 2, 1, 3 and 4, 6, 5, 7.
SHARED_ALWAYS_INLINE Position<Lanes> LoadPoints(const double* points) {
  const Lanes first = Load(points);
  const Lanes second = Load(points + 8);
  return {
      Lanes(_mm256_unpacklo_pd(first.low, first.high), _mm256_unpacklo_pd(second.low, second.high)),
      Lanes(_mm256_unpackhi_pd(first.low, first.high),
            _mm256_unpackhi_pd(second.low, second.high))};
}
SHARED_ALWAYS_INLINE void StorePoints(const Position<Lanes>& pair, double* points) {
  Store(
      Lanes(_mm256_unpacklo_pd(pair.x.low, pair.y.low), _mm256_unpackhi_pd(pair.x.low, pair.y.low)),
      points);
  Store(Lanes(_mm256_unpacklo_pd(pair.x.high, pair.y.high),
              _mm256_unpackhi_pd(pair.x.high, pair.y.high)),
        points + 8);
}

template <class Map>
std::size_t ForEachEightPoints(const double* source, double* destination, std::size_t count,
                               Map map) {
  const std::size_t end = count / WIDTH * WIDTH;
  for (std::size_t i = 0; i < end; i += WIDTH) {
    StorePoints(map(LoadPoints(source + 2 * i)), destination + 2 * i);
  }
  return end;
}

template <class Map>
std::size_t ForEachEight(const double* x, double* results, std::size_t count, Map map) {
  const std::size_t end = count / WIDTH * WIDTH;
  for (std::size_t i = 0; i < end; i += WIDTH) {
    Store(map(Load(x + i)), results + i);
  }
  return end;
}

template <class Function>
std::size_t WithKernel(RadialKernel kernel, Function function) {
  switch (kernel) {
    case RadialKernel::ThinPlate:
      return function.template operator()<RadialKernel::ThinPlate>();
    case RadialKernel::NaturalCubic:
      return function.template operator()<RadialKernel::NaturalCubic>();
    case RadialKernel::Marcov:
      return function.template operator()<RadialKernel::Marcov>();
    case RadialKernel::Exponential:
      return function.template operator()<RadialKernel::Exponential>();
    case RadialKernel::RationalQuadratic:
      break;
  }
  return function.template operator()<RadialKernel::RationalQuadratic>();
}

}  // namespace

std::size_t RadialRowAvx2(RadialKernel kernel, double u, double v, const double* pointU,
                          const double* pointV, std::size_t count, double* row) {
  return WithKernel(kernel, [=]<RadialKernel KERNEL>() {
    const std::size_t end = count / WIDTH * WIDTH;
    for (std::size_t i = 0; i < end; i += WIDTH) {
      const Lanes du = Lanes(u) - Load(pointU + i);
      const Lanes dv = Lanes(v) - Load(pointV + i);
      Store(Radial<KERNEL>(du * du + dv * dv), row + i);
    }
    return end;
  });
}

std::size_t MapBySplineAvx2(RadialKernel kernel, const SplineTerms& terms, const double* source,
                            double* destination, std::size_t count) {
  return WithKernel(kernel, [=, &terms]<RadialKernel KERNEL>() {
    return ForEachEightPoints(source, destination, count, [&terms](const Position<Lanes>& point) {
      return TransformBySpline<KERNEL>(terms, point);
    });
  });
}

std::size_t MapByDistanceAvx2(const DistanceTerms& terms, const double* source, double* destination,
                              std::size_t count) {
  return ForEachEightPoints(source, destination, count, [&terms](const Position<Lanes>& point) {
    return TransformByDistance(terms, point);
  });
}

std::size_t LogAvx2(const double* x, double* results, std::size_t count) {
  return ForEachEight(x, results, count, LogOfNormal<Lanes>);
}

std::size_t ExpAvx2(const double* x, double* results, std::size_t count) {
  return ForEachEight(x, results, count, ExpInRange<Lanes>);
}

}  // namespace shr
