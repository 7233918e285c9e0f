// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: errors against the extended precision of the C library where the argument is near 1, near
// the ends of the reduced range, tiny, huge and subnormal; arrays against single values, bit by
// bit, at every length around the vector width; special values; fixed bits, the same on every
// target.

#include "shared/numerics/registration/PortableMath.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace shr {
namespace {

constexpr double UNBOUNDED = std::numeric_limits<double>::infinity();
const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

std::uint64_t Bits(double x) {
  return std::bit_cast<std::uint64_t>(x);
}

double ErrorInUlps(double found, long double wanted) {
  int exponent = 0;
  std::frexp(static_cast<double>(wanted), &exponent);
  const long double ulp = std::ldexp(1.0L, std::max(exponent, -1021) - 53);
  return static_cast<double>(std::abs(static_cast<long double>(found) - wanted) / ulp);
}

TEST(PortableMath, logarithmsKeepTheirErrorBound) {
  static_assert(std::numeric_limits<long double>::digits >= 64);
  std::mt19937_64 random(8);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  double worst = 0.0;
  for (int i = 0; i < 200000; ++i) {
    double x = 0.5 + unit(random);
    if (i % 4 == 1) x = 1.0 + (unit(random) - 0.5) * std::ldexp(1.0, -i % 53);
    if (i % 4 == 2) x = std::ldexp(1.0 + unit(random), i % 2040 - 1021);
    if (i % 4 == 3) x = std::sqrt(0.5) * (1.0 + 1e-3 * (unit(random) - 0.5));
    if (i % 1000 == 0) x = std::ldexp(unit(random), -1030);
    if (x <= 0.0 || x == 1.0) continue;
    worst = std::max(worst, ErrorInUlps(PortableLog(x), std::log(static_cast<long double>(x))));
  }
  EXPECT_LE(worst, PORTABLE_LOG_ULPS);
}

TEST(PortableMath, powersKeepTheirErrorBound) {
  std::mt19937_64 random(9);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  double worst = 0.0;
  for (int i = 0; i < 200000; ++i) {
    double x = 2.0 * unit(random) - 1.0;
    if (i % 3 == 1) x = 1417.0 * unit(random) - 708.0;
    if (i % 3 == 2) x = (std::floor(40.0 * unit(random)) + 0.5) * std::log(2.0) + 1e-9 * x;
    if (i % 100 == 0) x = 709.0 + 0.78 * unit(random);
    worst = std::max(worst, ErrorInUlps(PortableExp(x), std::exp(static_cast<long double>(x))));
  }
  EXPECT_LE(worst, PORTABLE_EXP_ULPS);
}

TEST(PortableMath, specialValuesAreThoseOfTheFunctions) {
  const struct {
    double x, logarithm, power;
  } rows[] = {
      {0.0, -UNBOUNDED, 1.0},
      {-0.0, -UNBOUNDED, 1.0},
      {1.0, 0.0, 0x1.5bf0a8b14576ap+1},
      {-1.0, NOT_A_NUMBER, 0x1.78b56362cef38p-2},
      {UNBOUNDED, UNBOUNDED, UNBOUNDED},
      {-UNBOUNDED, NOT_A_NUMBER, 0.0},
      {NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER},
      {709.79, 0x1.a428745f620cep+2, UNBOUNDED},
      {-708.4, NOT_A_NUMBER, 0.0},
      {5e-324, -0x1.74385446d71c3p+9, 1.0},
      {2.0, 0x1.62e42fefa39efp-1, 0x1.d8e64b8d4ddaep+2},
  };
  for (const auto& row : rows) {
    const auto expect = [&](double found, double wanted) {
      EXPECT_TRUE(std::isnan(wanted) ? std::isnan(found) : Bits(found) == Bits(wanted))
          << row.x << ": " << found << " for " << wanted;
    };
    expect(PortableLog(row.x), row.logarithm);
    expect(PortableExp(row.x), row.power);
  }
}

TEST(PortableMath, arraysHaveTheBitsOfSingleValues) {
  std::vector<double> values = {0.0,  -1.0,  5e-324, 1e-310, UNBOUNDED, NOT_A_NUMBER, 1.0,
                                -5e9, 1e300, 709.5,  -708.0, 709.9,     -709.0,       3.0};
  std::mt19937_64 random(10);
  while (values.size() < 1037) {
    const double x = std::bit_cast<double>(random());
    values.push_back(random() % 2 == 0 ? x : std::ldexp(static_cast<double>(random() % 4096), -4));
  }
  for (std::size_t count = 0; count <= values.size(); count += count < 20 ? 1 : 339) {
    const std::span<const double> x(values.data(), count);
    std::vector<double> logarithms(count), powers(x.begin(), x.end());
    PortableLog(x, logarithms);
    PortableExp(powers, powers);
    for (std::size_t i = 0; i < count; ++i) {
      const double logarithm = PortableLog(x[i]), power = PortableExp(x[i]);
      ASSERT_TRUE(std::isnan(logarithm) ? std::isnan(logarithms[i])
                                        : Bits(logarithm) == Bits(logarithms[i]))
          << x[i];
      ASSERT_TRUE(std::isnan(power) ? std::isnan(powers[i]) : Bits(power) == Bits(powers[i]))
          << x[i];
    }
  }
}

}  // namespace
}  // namespace shr
