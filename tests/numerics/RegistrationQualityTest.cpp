// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: errors of left-out points in closed form against calibrating once for each point, for
// every method, with duplicates and with points whose absence leaves the rest on a line; residuals;
// the way there and back by every method; derivatives against differences; targets that nothing is
// mapped to.

#include "shared/numerics/registration/RegistrationQuality.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "shared/numerics/registration/ImageRegistration.h"
#include "shared/numerics/registration/InverseWarp.h"
#include "shared/numerics/registration/PolynomialWarps.h"
#include "shared/numerics/registration/SimpleWarps.h"
#include "tests/numerics/RegistrationCases.h"

namespace shr {
namespace {

/// NaN where the rest does not calibrate the method.
RPoint ErrorByRefit(int method, Pairs pairs, std::size_t k) {
  const RPoint from = pairs.from[k], to = pairs.to[k];
  pairs.from.erase(pairs.from.begin() + static_cast<std::ptrdiff_t>(k));
  pairs.to.erase(pairs.to.begin() + static_cast<std::ptrdiff_t>(k));
  const std::unique_ptr<CImageWarp> warp = MakeWarp(MethodOf(method));
  if (!warp->Calibrate(pairs.from, pairs.to)) return RPoint(std::nan(""), std::nan(""));
  const RPoint value = warp->Transform(from);
  return RPoint(to.x - value.x, to.y - value.y);
}

TEST(RegistrationQuality, leavingPointsOutIsCalibratingOnTheRest) {
  Pairs duplicates = RandomPairs(13, 21), few = RandomPairs(5, 22), line;
  duplicates.Add(duplicates.from[5], RPoint(duplicates.to[5].x + 8, duplicates.to[5].y));
  for (int i = 0; i < 6; ++i) line.Add(RPoint(i * i, 0), RPoint(10 * i, 3 * i));
  line.Add(RPoint(3, 9), RPoint(1, 1));
  const struct {
    const char* name;
    Pairs pairs;
  } rows[] = {{"random", RandomPairs(25, 20)},
              {"duplicates", duplicates},
              {"few", few},
              {"a line and one point", line}};
  for (const auto& row : rows) {
    for (int method = 0; method < WARPING_METHOD_COUNT; ++method) {
      const auto errors = LeaveOneOutErrors(MethodOf(method), row.pairs.from, row.pairs.to);
      ASSERT_EQ(errors.size(), row.pairs.from.size());
      for (std::size_t k = 0; k < errors.size(); ++k) {
        const RPoint wanted = ErrorByRefit(method, row.pairs, k);
        // The rest of the last row is on a line, where only a pseudo-inverse finds a spline.
        const bool isOnLine = line.from == row.pairs.from && k + 1 == errors.size();
        if (isOnLine && IsSpline(method)) {
          EXPECT_TRUE(std::isnan(errors[k].x));
        } else if (std::isnan(wanted.x)) {
          EXPECT_TRUE(std::isnan(errors[k].x)) << row.name << ' ' << method << ' ' << k;
        } else {
          EXPECT_NEAR(errors[k].x, wanted.x, 1e-5) << row.name << ' ' << method << ' ' << k;
          EXPECT_NEAR(errors[k].y, wanted.y, 1e-5) << row.name << ' ' << method << ' ' << k;
        }
      }
    }
  }
}

TEST(RegistrationQuality, manyPointsAreLeftOutByTheSameRule) {
  const Pairs pairs = RandomPairs(230, 25);
  for (const int method : {0, 2, 3}) {
    const auto errors = LeaveOneOutErrors(MethodOf(method), pairs.from, pairs.to);
    for (const std::size_t k : {0u, 1u, 100u, 131u, 229u}) {
      const RPoint wanted = ErrorByRefit(method, pairs, k);
      EXPECT_NEAR(errors[k].x, wanted.x, 1e-5) << method << ' ' << k;
      EXPECT_NEAR(errors[k].y, wanted.y, 1e-5) << method << ' ' << k;
    }
  }
}

TEST(RegistrationQuality, residualsAndTheirMean) {
  const CIdentityMap identity;
  const auto residuals = Residuals(identity, {{0, 0}, {1, 1}}, {{3, 4}, {1, 1}});
  EXPECT_EQ(residuals[0], RPoint(3, 4));
  EXPECT_DOUBLE_EQ(RootMeanSquare(residuals), std::sqrt(12.5));
  EXPECT_TRUE(std::isnan(RootMeanSquare({})));
  EXPECT_TRUE(LeaveOneOutErrors(MethodOf(13), {}, {}).empty());
}

TEST(InverseWarp, everyMethodFindsTheWayBack) {
  const Pairs pairs = RandomPairs(30, 23, 1e7, 20.0);
  for (int method = 0; method < WARPING_METHOD_COUNT; ++method) {
    const std::unique_ptr<CImageWarp> warp = MakeWarp(MethodOf(method));
    ASSERT_TRUE(warp->Calibrate(pairs.from, pairs.to));
    for (const RPoint& p : {RPoint(2000, 1300), RPoint(400, 2500), pairs.from[3]}) {
      const InverseResult result = InverseTransform(*warp, warp->Transform(p));
      EXPECT_TRUE(result.converged) << method;
      EXPECT_LE(result.distance, 1e-4);
      EXPECT_NEAR(result.point.x, p.x, 1e-4) << method;
      EXPECT_NEAR(result.point.y, p.y, 1e-4) << method;
    }
  }
}

TEST(InverseWarp, derivativesAreThoseOfDifferences) {
  const Pairs pairs = RandomPairs(12, 24, 0.0, 200.0);
  const RPoint p(1234, 987);
  const double step = 0.01;
  for (int method = 0; method < WARPING_METHOD_COUNT; ++method) {
    const std::unique_ptr<CImageWarp> warp = MakeWarp(MethodOf(method));
    EXPECT_EQ(DerivativeOf(*warp, p).has_value(), method >= WarpTranslate);
    ASSERT_TRUE(warp->Calibrate(pairs.from, pairs.to));
    const WarpDerivative d = DerivativeOf(*warp, p).value();
    const RPoint right = warp->Transform(RPoint(p.x + step, p.y));
    const RPoint left = warp->Transform(RPoint(p.x - step, p.y));
    const RPoint up = warp->Transform(RPoint(p.x, p.y + step));
    const RPoint down = warp->Transform(RPoint(p.x, p.y - step));
    EXPECT_NEAR(d.xByX, (right.x - left.x) / (2 * step), 1e-6) << method;
    EXPECT_NEAR(d.yByX, (right.y - left.y) / (2 * step), 1e-6) << method;
    EXPECT_NEAR(d.xByY, (up.x - down.x) / (2 * step), 1e-6) << method;
    EXPECT_NEAR(d.yByY, (up.y - down.y) / (2 * step), 1e-6) << method;
  }
}

TEST(InverseWarp, whatIsNotReachedIsTold) {
  Pairs folded, flat;
  for (int i = 0; i < 9; ++i) {
    const double x = i % 3 - 1, y = i / 3 - 1;
    folded.Add(RPoint(x, y), RPoint(x * x, y));
    flat.Add(RPoint(x, y), RPoint(x, 5));
  }
  CQuadraticPolynomial quadratic;
  ASSERT_TRUE(quadratic.Calibrate(folded.from, folded.to));
  const InverseResult outside = InverseTransform(quadratic, RPoint(-1, 0), RPoint(0.3, 0));
  EXPECT_FALSE(outside.converged);
  EXPECT_NEAR(outside.distance, 1.0, 1e-6);
  EXPECT_LE(outside.steps, MOST_INVERSE_STEPS);
  const InverseResult inside = InverseTransform(quadratic, RPoint(0.25, 0.5), RPoint(0.3, 0));
  EXPECT_TRUE(inside.converged);
  EXPECT_NEAR(inside.point.x, 0.5, 1e-12);

  CGeneralLinear linear;
  ASSERT_TRUE(linear.Calibrate(flat.from, flat.to));
  EXPECT_FALSE(InverseTransform(linear, RPoint(0, 6)).converged);
  EXPECT_FALSE(InverseTransform(CGeneralLinear(), RPoint(0, 6)).converged);
  EXPECT_TRUE(std::isnan(InverseTransform(CGeneralLinear(), RPoint(0, 6)).point.x));
}

}  // namespace
}  // namespace shr
