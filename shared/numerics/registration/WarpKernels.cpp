// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/registration/WarpKernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "shared/numerics/registration/PortableMath.h"
#include "shared/platform/CpuFeatures.h"

namespace shr {
namespace {

/// A vector of one lane.
struct Lane {
  explicit Lane(double number) : value(number) {}
  double value;
};

Lane operator+(Lane a, Lane b) {
  return Lane(a.value + b.value);
}
Lane operator-(Lane a, Lane b) {
  return Lane(a.value - b.value);
}
Lane operator*(Lane a, Lane b) {
  return Lane(a.value * b.value);
}
Lane operator/(Lane a, Lane b) {
  return Lane(a.value / b.value);
}
Lane Sqrt(Lane a) {
  return Lane(std::sqrt(a.value));
}
/// The second one where they do not compare.
Lane Max(Lane a, Lane b) {
  return a.value > b.value ? a : b;
}
Lane SelectLessEqual(Lane a, Lane b, Lane yes, Lane no) {
  return a.value <= b.value ? yes : no;
}

constexpr std::uint64_t ONE = 0x3FF0000000000000u;
constexpr std::uint64_t ROOT_OF_HALF = 0x3FE6A09E667F3BCDu;
constexpr std::uint64_t FRACTION = 0x000FFFFFFFFFFFFFu;

/// Splits a positive normal number into a mantissa from sqrt(1/2) to sqrt(2) and a power of two.
void Split(Lane x, Lane& mantissa, Lane& exponent) {
  const std::uint64_t bits = std::bit_cast<std::uint64_t>(x.value) + (ONE - ROOT_OF_HALF);
  exponent.value = static_cast<double>(bits >> 52) - 1023.0;
  mantissa.value = std::bit_cast<double>((bits & FRACTION) + ROOT_OF_HALF);
}

/// 2^k for a whole k from -1022 to 1023; any number for others.
Lane PowerOfTwo(Lane k) {
  const auto bits = std::bit_cast<std::uint64_t>(k.value + (0x1.8p52 + 1023.0));
  return Lane(std::bit_cast<double>(bits << 52));
}

/// Calls `function` with the kernel as a constant.
template <class Function>
auto WithKernel(RadialKernel kernel, Function function) {
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

constexpr double LEAST_NORMAL = 0x1p-1022;
constexpr double UNBOUNDED = HUGE_VAL;
/// Powers are finite up to here.
constexpr double MOST_EXPONENT = 709.78271289338397;
/// 2^k for a larger x would be infinite.
constexpr double MOST_IN_RANGE = 709.0;

bool IsInRangeOfLog(double x) {
  return x >= LEAST_NORMAL && x < UNBOUNDED;
}

double LogOutOfRange(double x) {
  if (x == 0.0) return -UNBOUNDED;
  if (x < 0.0) return std::nan("");
  if (!(x < LEAST_NORMAL)) return x;
  Lane mantissa(0.0), exponent(0.0);
  Split(Lane(x * 0x1p54), mantissa, exponent);
  return LogOfParts(mantissa, exponent - Lane(54.0)).value;
}

bool IsInRangeOfExp(double x) {
  return x >= LEAST_EXPONENT && x <= MOST_IN_RANGE;
}

double ExpOutOfRange(double x) {
  if (x < LEAST_EXPONENT) return 0.0;
  if (x > MOST_EXPONENT) return UNBOUNDED;
  if (std::isnan(x)) return x;
  Lane exponent(0.0);
  const Lane sum = PartsOfExp(Lane(x), exponent);
  return (sum * PowerOfTwo(exponent - Lane(1.0))).value * 2.0;
}

/// Fills `results` by `wide` as far as it goes, then one by one, and does again what lies outside
/// of the range of both. `x` may be `results`.
template <class Wide, class IsInRange, class InRange, class OutOfRange>
void ForEachNumber(std::span<const double> x, std::span<double> results, Wide wide,
                   IsInRange isInRange, InRange inRange, OutOfRange outOfRange) {
  constexpr std::size_t BLOCK = 256;
  const std::size_t count = std::min(x.size(), results.size());
  for (std::size_t begin = 0; begin < count; begin += BLOCK) {
    const std::size_t size = std::min(BLOCK, count - begin);
    std::array<double, BLOCK> values;
    std::copy_n(&x[begin], size, values.begin());
    std::size_t done = HasAvx2() ? wide(values.data(), &results[begin], size) : 0;
    for (; done < size; ++done) results[begin + done] = inRange(Lane(values[done])).value;
    for (std::size_t i = 0; i < size; ++i) {
      if (!isInRange(values[i])) results[begin + i] = outOfRange(values[i]);
    }
  }
}

template <class Map>
void ForEachPoint(const double* source, double* destination, std::size_t first, std::size_t count,
                  Map map) {
  for (std::size_t i = first; i < count; ++i) {
    const Position<Lane> result = map(Position<Lane>{Lane(source[2 * i]), Lane(source[2 * i + 1])});
    destination[2 * i] = result.x.value;
    destination[2 * i + 1] = result.y.value;
  }
}

}  // namespace

double PortableLog(double x) {
  return IsInRangeOfLog(x) ? LogOfNormal(Lane(x)).value : LogOutOfRange(x);
}

double PortableExp(double x) {
  return IsInRangeOfExp(x) ? ExpInRange(Lane(x)).value : ExpOutOfRange(x);
}

void PortableLog(std::span<const double> x, std::span<double> results) {
  ForEachNumber(x, results, LogAvx2, IsInRangeOfLog, LogOfNormal<Lane>, LogOutOfRange);
}

void PortableExp(std::span<const double> x, std::span<double> results) {
  ForEachNumber(x, results, ExpAvx2, IsInRangeOfExp, ExpInRange<Lane>, ExpOutOfRange);
}

double RadialFunction(RadialKernel kernel, double squared) {
  return WithKernel(kernel,
                    [=]<RadialKernel KERNEL>() { return Radial<KERNEL>(Lane(squared)).value; });
}

void RadialRow(RadialKernel kernel, double u, double v, const double* pointU, const double* pointV,
               std::size_t count, double* row) {
  const std::size_t done = HasAvx2() ? RadialRowAvx2(kernel, u, v, pointU, pointV, count, row) : 0;
  WithKernel(kernel, [=]<RadialKernel KERNEL>() {
    for (std::size_t i = done; i < count; ++i) {
      const Lane du(u - pointU[i]);
      const Lane dv(v - pointV[i]);
      row[i] = Radial<KERNEL>(du * du + dv * dv).value;
    }
  });
}

void MapBySpline(RadialKernel kernel, const SplineTerms& terms, const double* source,
                 double* destination, std::size_t count) {
  const std::size_t done =
      HasAvx2() ? MapBySplineAvx2(kernel, terms, source, destination, count) : 0;
  WithKernel(kernel, [=, &terms]<RadialKernel KERNEL>() {
    ForEachPoint(source, destination, done, count, [&terms](const Position<Lane>& point) {
      return TransformBySpline<KERNEL>(terms, point);
    });
  });
}

void MapByDistance(const DistanceTerms& terms, const double* source, double* destination,
                   std::size_t count) {
  const std::size_t done = HasAvx2() ? MapByDistanceAvx2(terms, source, destination, count) : 0;
  ForEachPoint(source, destination, done, count,
               [&terms](const Position<Lane>& point) { return TransformByDistance(terms, point); });
}

}  // namespace shr
