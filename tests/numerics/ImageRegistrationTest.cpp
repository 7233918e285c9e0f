// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the fallback chain from every method for every small number of points, collinear, equal
// and unusable points; parameters of least squares on exact data; splines against a dense solution
// of the whole system, at the control points of hard data (far from 0 with small detail, nearly
// equal, duplicates that agree and that do not); copies; a radial function of the user's; many
// points against one at a time, bit by bit.

#include "shared/numerics/registration/ImageRegistration.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>

#include "shared/numerics/linear/GaussSolve.h"
#include "shared/numerics/registration/InverseDistanceSquared.h"
#include "shared/numerics/registration/PolynomialWarps.h"
#include "shared/numerics/registration/RadialBasisFunction.h"
#include "shared/numerics/registration/SimpleWarps.h"
#include "tests/numerics/RegistrationCases.h"

namespace shr {
namespace {

constexpr double UNBOUNDED = std::numeric_limits<double>::infinity();
const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

bool HaveSameBits(const RPoint& a, const RPoint& b) {
  return std::bit_cast<std::uint64_t>(a.x) == std::bit_cast<std::uint64_t>(b.x) &&
         std::bit_cast<std::uint64_t>(a.y) == std::bit_cast<std::uint64_t>(b.y);
}

double LargestResidual(const CImageRegistration& registration, const Pairs& pairs) {
  double largest = 0.0;
  for (std::size_t i = 0; i < pairs.from.size(); ++i) {
    const RPoint p = registration.Transform(pairs.from[i]);
    largest = std::max(largest, std::hypot(p.x - pairs.to[i].x, p.y - pairs.to[i].y));
    if (!std::isfinite(p.x + p.y)) return UNBOUNDED;
  }
  return largest;
}

int Calibrated(const Pairs& pairs, int method) {
  CImageRegistration registration;
  return registration.Calibrate(pairs.from, pairs.to, MethodOf(method));
}

TEST(ImageRegistration, fewPointsFallBackAlongTheChain) {
  // For 0 to 6 points in general position: the method in force for each one asked for.
  const int expected[][7] = {
      {12, 12, 8, 8, 0, 0, 0},      {12, 12, 8, 8, 1, 1, 1},      {12, 12, 8, 8, 2, 2, 2},
      {12, 12, 8, 8, 3, 3, 3},      {12, 12, 8, 8, 4, 4, 4},      {12, 12, 8, 8, 5, 5, 5},
      {12, 12, 8, 8, 7, 7, 6},      {12, 12, 8, 8, 7, 7, 7},      {12, 12, 8, 8, 8, 8, 8},
      {12, 12, 9, 9, 9, 9, 9},      {12, 12, 10, 10, 10, 10, 10}, {12, 12, 11, 11, 11, 11, 11},
      {12, 12, 12, 12, 12, 12, 12},
  };
  for (int method = 0; method < WARPING_METHOD_COUNT; ++method) {
    for (std::size_t count = 0; count <= 6; ++count) {
      EXPECT_EQ(Calibrated(RandomPairs(count, 3), method), expected[method][count])
          << method << " with " << count << " points";
    }
  }
}

TEST(ImageRegistration, degeneratePointsEndWhereTheyDetermineSomething) {
  Pairs equal, vertical, slanted, lengths = RandomPairs(7, 1), nan = RandomPairs(7, 1),
                                  infinite = RandomPairs(7, 1);
  for (int i = 0; i < 7; ++i) {
    equal.Add(RPoint(3, 4), RPoint(10 + i, 20 - i));
    vertical.Add(RPoint(5, i * i), RPoint(100, 200 + 3 * i * i));
    slanted.Add(RPoint(0.1 * i, 0.7 * i), RPoint(1e6 + i, 2e6 - i * i));
  }
  lengths.to.pop_back();
  nan.from[3].x = NOT_A_NUMBER;
  infinite.to[6].y = UNBOUNDED;
  const struct {
    const char* name;
    const Pairs& pairs;
    int expected[WARPING_METHOD_COUNT];
  } rows[] = {
      {"equal", equal, {11, 11, 11, 11, 11, 11, 11, 11, 11, 11, 11, 11, 12}},
      {"vertical", vertical, {0, 1, 2, 3, 4, 8, 8, 8, 8, 10, 10, 11, 12}},
      {"slanted", slanted, {0, 1, 2, 3, 4, 8, 8, 8, 8, 9, 10, 11, 12}},
      {"lengths", lengths, {12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12}},
      {"NaN", nan, {12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12}},
      {"infinite", infinite, {12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12}},
  };
  for (const auto& row : rows) {
    for (int method = 0; method < WARPING_METHOD_COUNT; ++method) {
      EXPECT_EQ(Calibrated(row.pairs, method), row.expected[method]) << row.name << ' ' << method;
    }
  }
}

TEST(ImageRegistration, aValueThatIsNoMethodChangesNothing) {
  CImageRegistration registration;
  const Pairs pairs = RandomPairs(9, 2);
  ASSERT_EQ(registration.Calibrate(pairs.from, pairs.to, WarpGeneralLinear), WarpGeneralLinear);
  const RPoint before = registration.Transform(RPoint(1, 2));
  for (const int value : {13, 1000, -1}) {
    EXPECT_EQ(registration.Calibrate({}, {}, MethodOf(value)), value);
    EXPECT_EQ(registration.Transform(RPoint(1, 2)), before);
    EXPECT_EQ(MakeWarp(MethodOf(value)), nullptr);
  }
}

TEST(ImageRegistration, leastSquaresRecoversExactMaps) {
  const auto map = [](int method, double x, double y) {
    switch (method) {
      case WarpQuadraticPolynomial:
        return RPoint(1 + 2 * x - y + 0.01 * x * y - 0.02 * x * x + 0.03 * y * y,
                      5 - x + 3 * y + 0.02 * x * y + 0.01 * x * x - 0.04 * y * y);
      case WarpGeneralLinear:
        return RPoint(1e7 + 2 * x - y, 5 - x + 3 * y);
      case WarpLinearConformal:
        return RPoint(7 + 2 * x + 0.5 * y, -3 + 2 * y - 0.5 * x);
      case WarpMixedScale:
        return RPoint(7 + 2 * x, -3 - 4 * y);
      case WarpUniformScale:
        return RPoint(7 + 2 * x, -3 + 2 * y);
      default:
        return RPoint(x + 1000, y - 0.125);
    }
  };
  for (int method = WarpQuadraticPolynomial; method <= WarpTranslate; ++method) {
    Pairs pairs;
    for (int i = 0; i < 12; ++i) {
      const double x = 10 * std::cos(2.4 * i) + i, y = 8 * std::sin(1.7 * i) - i;
      pairs.Add(RPoint(x, y), map(method, x, y));
    }
    CImageRegistration registration;
    ASSERT_EQ(registration.Calibrate(pairs.from, pairs.to, MethodOf(method)), method);
    for (const RPoint& p : {RPoint(0, 0), RPoint(50, -30)}) {
      const RPoint wanted = map(method, p.x, p.y), found = registration.Transform(p);
      EXPECT_NEAR(found.x, wanted.x, 1e-13 * (500 + std::abs(wanted.x))) << method;
      EXPECT_NEAR(found.y, wanted.y, 1e-13 * (500 + std::abs(wanted.y))) << method;
    }
  }
}

double PlainPhi(int method, double squared) {
  switch (method) {
    case WarpThinPlateSpline:
      return squared <= 1.1754943508222875e-38 ? 0.0 : squared / 2 * std::log(squared);
    case WarpNaturalCubicSpline:
      return squared * std::sqrt(squared);
    case WarpMarcovSpline:
      return -std::sqrt(squared);
    case WarpExponentialSpline:
      return std::exp(-std::sqrt(squared));
    default:
      return -squared / (squared + 1);
  }
}

/// Solves the whole system by elimination and returns the spline's value at (u, v) for one column.
double DenseSpline(int method, const CImageWarp& warp, const std::vector<double>& targets, double u,
                   double v) {
  const std::size_t n = targets.size();
  const auto phi = [&](double uu, double vv, std::size_t j) {
    const double du = uu - warp.ControlU()(j), dv = vv - warp.ControlV()(j);
    return PlainPhi(method, du * du + dv * dv);
  };
  RMatrix a(n + 3, n + 3);
  RVector b(n + 3);
  std::fill(a.begin(), a.end(), 0.0);
  std::fill(b.begin(), b.end(), 0.0);
  for (std::size_t i = 0; i < n; ++i) {
    const double row[] = {1.0, warp.ControlU()(i), warp.ControlV()(i)};
    for (std::size_t j = 0; j < n; ++j) a(i, j) = phi(row[1], row[2], j);
    for (std::size_t k = 0; k < 3; ++k) a(i, n + k) = a(n + k, i) = row[k];
    b(i) = targets[i];
  }
  EXPECT_TRUE(GaussSolve(a, b));
  double value = b(n) + b(n + 1) * u + b(n + 2) * v;
  for (std::size_t j = 0; j < n; ++j) value += phi(u, v, j) * b(j);
  return value;
}

TEST(RadialBasisFunction, splinesAgreeWithADenseSolution) {
  const Pairs pairs = RandomPairs(23, 5, 4e4);
  std::vector<double> x, y;
  for (const RPoint& target : pairs.to) {
    x.push_back(target.x);
    y.push_back(target.y);
  }
  for (int method = 0; IsSpline(method); ++method) {
    const std::unique_ptr<CImageWarp> warp = MakeWarp(MethodOf(method));
    ASSERT_TRUE(warp->Calibrate(pairs.from, pairs.to));
    for (const RPoint& p : {RPoint(2000, 1000), RPoint(100, 2900), RPoint(9000, -4000)}) {
      const double u = (p.x - warp->CenterX()) / warp->Scale();
      const double v = (p.y - warp->CenterY()) / warp->Scale();
      const RPoint found = warp->Transform(p);
      EXPECT_NEAR(found.x, DenseSpline(method, *warp, x, u, v), 1e-6) << method;
      EXPECT_NEAR(found.y, DenseSpline(method, *warp, y, u, v), 1e-6) << method;
    }
  }
}

TEST(RadialBasisFunction, everyControlPointIsMetToRounding) {
  const Pairs random = RandomPairs(60, 6), large = RandomPairs(40, 7, 1e7, 1e-3);
  Pairs duplicates = RandomPairs(12, 8), closeBy = RandomPairs(12, 9), tiny;
  duplicates.Add(duplicates.from[2], duplicates.to[2]);
  duplicates.Add(duplicates.from[2], duplicates.to[2]);
  closeBy.Add(RPoint(closeBy.from[4].x + 1e-3, closeBy.from[4].y), closeBy.to[4]);
  for (const RPoint& p : random.from)
    tiny.Add(p, RPoint(1e-9 * std::sin(p.x), 1e-9 * std::cos(p.y)));
  const struct {
    const char* name;
    const Pairs& pairs;
    double largest;
  } rows[] = {{"random", random, 1e-8},
              {"1e7 with detail of 1e-3", large, 1e-7},
              {"duplicates", duplicates, 1e-8},
              {"nearly equal", closeBy, 1e-4},
              {"tiny", tiny, 1e-13}};
  for (const auto& row : rows) {
    for (int method = 0; method <= WarpInverseDistanceSquared; ++method) {
      // The smoothest function is singular to working precision on so many points.
      if (method == WarpRationalQuadraticSpline && row.pairs.from.size() > 14) continue;
      CImageRegistration registration;
      ASSERT_EQ(registration.Calibrate(row.pairs.from, row.pairs.to, MethodOf(method)), method);
      EXPECT_LE(LargestResidual(registration, row.pairs), row.largest) << row.name << ' ' << method;
    }
  }
}

TEST(RadialBasisFunction, equalPointsMeetTheMeanOfTheirTargets) {
  Pairs pairs = RandomPairs(15, 11);
  const RPoint source = pairs.from[3], target = pairs.to[3];
  pairs.Add(source, RPoint(target.x + 30, target.y));
  pairs.Add(source, RPoint(target.x, target.y - 60));
  for (int method = 0; method <= WarpInverseDistanceSquared; ++method) {
    CImageRegistration registration;
    ASSERT_EQ(registration.Calibrate(pairs.from, pairs.to, MethodOf(method)), method);
    const RPoint found = registration.Transform(source);
    EXPECT_NEAR(found.x, target.x + 10, 1e-6) << method;
    EXPECT_NEAR(found.y, target.y - 20, 1e-6) << method;
  }
}

TEST(RadialBasisFunction, thinPlateFunctionIsExactlyZeroAtNoDistance) {
  struct Opened : CThinPlateSpline {
    using CThinPlateSpline::Phi;
  } spline;
  EXPECT_EQ(std::bit_cast<std::uint64_t>(spline.Phi(0.0, -0.0)), 0u);
  EXPECT_EQ(spline.Phi(1e-19, 0.0), 0.0);
  EXPECT_LT(spline.Phi(1.1e-19, 0.0), 0.0);
  EXPECT_EQ(spline.Phi(1.0, 0.0), 0.0);
  EXPECT_DOUBLE_EQ(spline.Phi(3.0, 4.0), 12.5 * std::log(25.0));
}

/// A function of a user's own: a multiquadric, -sqrt(1 + r^2).
class Multiquadric : public CRadialBasisFunction {
public:
  [[nodiscard]] CImageWarp* Clone() const override { return new Multiquadric(*this); }

protected:
  double Phi(double dx, double dy) const override { return -std::sqrt(1 + dx * dx + dy * dy); }
};

TEST(RadialBasisFunction, aFunctionOfTheUsersIsSolvedByIteration) {
  const Pairs pairs = RandomPairs(14, 12, 1e7, 5.0);
  Multiquadric warp;
  ASSERT_TRUE(warp.Calibrate(pairs.from, pairs.to));
  const std::unique_ptr<CImageWarp> clone(warp.Clone());
  RPoints results(pairs.from.size());
  clone->Transform(pairs.from, results);
  for (std::size_t i = 0; i < results.size(); ++i) {
    EXPECT_NEAR(results[i].x, pairs.to[i].x, 1e-5);
    EXPECT_NEAR(results[i].y, pairs.to[i].y, 1e-5);
    EXPECT_TRUE(HaveSameBits(results[i], warp.Transform(pairs.from[i])));
  }
}

TEST(ImageWarp, manyPointsHaveTheBitsOfOneAtATime) {
  const Pairs pairs = RandomPairs(31, 13);
  RPoints points = RandomPairs(43, 14).from;
  points.insert(points.begin(), pairs.from.begin(), pairs.from.end());
  points.push_back(RPoint(1e30, -1e300));
  for (int method = 0; method < WARPING_METHOD_COUNT; ++method) {
    const std::unique_ptr<CImageWarp> warp = MakeWarp(MethodOf(method));
    ASSERT_TRUE(warp->Calibrate(pairs.from, pairs.to));
    for (const std::size_t count : {0u, 1u, 7u, 8u, 9u, 16u, 75u}) {
      RPoints inPlace(points.end() - static_cast<std::ptrdiff_t>(count), points.end());
      const RPoints before = inPlace;
      warp->Transform(inPlace, inPlace);
      for (std::size_t i = 0; i < count; ++i) {
        const RPoint one = warp->Transform(before[i]);
        EXPECT_TRUE(HaveSameBits(one, inPlace[i]) ||
                    (std::isnan(one.x) && std::isnan(inPlace[i].x)))
            << method << ' ' << i;
      }
    }
  }
}

TEST(ImageWarp, aFailedCalibrationLeavesNoParameters) {
  const Pairs pairs = RandomPairs(9, 15);
  for (int method = 0; method < WarpTranslate; ++method) {
    const std::unique_ptr<CImageWarp> warp = MakeWarp(MethodOf(method));
    EXPECT_TRUE(std::isnan(warp->Transform(RPoint(1, 1)).x));
    ASSERT_TRUE(warp->Calibrate(pairs.from, pairs.to));
    EXPECT_FALSE(std::isnan(warp->Transform(RPoint(1, 1)).x));
    EXPECT_FALSE(warp->Calibrate({RPoint(1, 1)}, {RPoint(2, 2)}));
    RPoint result;
    warp->Transform(std::span(&pairs.from[0], 1), std::span(&result, 1));
    EXPECT_TRUE(std::isnan(result.x) && std::isnan(warp->Transform(RPoint(1, 1)).y)) << method;
  }
}

TEST(ImageWarp, copiesAreDeep) {
  const Pairs pairs = RandomPairs(9, 16), other = RandomPairs(9, 17, -5e5);
  for (int method = 0; method < WARPING_METHOD_COUNT; ++method) {
    CImageRegistration first;
    ASSERT_EQ(first.Calibrate(pairs.from, pairs.to, MethodOf(method)), method);
    const RPoint wanted = first.Transform(RPoint(77, 88));
    const CImageRegistration copy(first);
    CImageRegistration assigned;
    assigned = first;
    const std::unique_ptr<CImageWarp> clone(first.Warp().Clone());
    first.Calibrate(other.from, other.to, MethodOf(method));
    EXPECT_EQ(copy.Transform(RPoint(77, 88)), wanted);
    EXPECT_EQ(assigned.Transform(RPoint(77, 88)), wanted);
    EXPECT_EQ(clone->Transform(RPoint(77, 88)), wanted);
    CImageRegistration moved(std::move(assigned));
    EXPECT_EQ(moved.Transform(RPoint(77, 88)), wanted);
    EXPECT_EQ(assigned.Transform(RPoint(77, 88)), RPoint(77, 88));
  }
}

TEST(ImageWarp, scalingTakesTheMiddleAndHalfOfTheLargerSide) {
  const struct {
    RPoints points;
    double x, y, scale;
  } rows[] = {{{}, 0, 0, 1},
              {{RPoint(3, 4)}, 3, 4, 1},
              {{RPoint(3, 4), RPoint(3, 4)}, 3, 4, 1},
              {{RPoint(-2, 1), RPoint(4, 2)}, 1, 1.5, 3},
              {{RPoint(0, -5), RPoint(1, 9), RPoint(2, 0)}, 1, 2, 7},
              {{RPoint(-1.5e308, 0), RPoint(1.5e308, 0)}, 0, 0, 1.5e308},
              {{RPoint(0, 0), RPoint(1e-39, 1e-40)}, 5e-40, 5e-41, 1}};
  for (const auto& row : rows) {
    CIdentityMap warp;
    warp.ScaleControlPoints(row.points);
    EXPECT_EQ(warp.CenterX(), row.x);
    EXPECT_EQ(warp.CenterY(), row.y);
    EXPECT_EQ(warp.Scale(), row.scale);
    ASSERT_EQ(warp.ControlU().size(), row.points.size());
    for (std::size_t i = 0; i < row.points.size(); ++i) {
      EXPECT_EQ(warp.ControlU()(i), (row.points[i].x - row.x) / row.scale);
      EXPECT_EQ(warp.ControlV()(i), (row.points[i].y - row.y) / row.scale);
    }
  }
}

TEST(Translate, aSecondCalibrationAddsToTheOffset) {
  CTranslate warp;
  ASSERT_TRUE(warp.Calibrate({{0, 0}, {1, 1}}, {{3, 4}, {6, 3}}));
  EXPECT_EQ(warp.Transform(RPoint(10, 10)), RPoint(14, 13));
  ASSERT_TRUE(warp.Calibrate({{0, 0}, {1, 1}}, {{0, 0}, {1, 1}}));
  EXPECT_EQ(warp.Transform(RPoint(10, 10)), RPoint(12, 11.5));
  EXPECT_FALSE(warp.Calibrate({{0, 0}}, {{3, 4}}));
  EXPECT_EQ(warp.OffsetX(), 2.0);
}

}  // namespace
}  // namespace shr
