// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the method of least error when points are left out, ties to the simpler one; chains of
// fallbacks; decimals of tables.

#include "examples/georeference/Fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "examples/georeference/Options.h"
#include "examples/georeference/Tables.h"

namespace georeference {
namespace {

using namespace shr;

ControlPoints Map(std::size_t count, double bend) {
  ControlPoints points;
  for (std::size_t i = 0; i < count; ++i) {
    const auto k = static_cast<double>(i);
    const double x = std::fmod(37 * k, 100), y = std::fmod(61 * k, 83);
    points.ids.push_back(GString(std::to_wstring(i)));
    points.image.emplace_back(x, y);
    points.map.emplace_back(2 * x - y + bend * x * y, x + 3 * y - bend * y * y);
  }
  return points;
}

TEST(GeoreferenceFit, theMethodThatErrsLeastOnLeftOutPointsIsChosen) {
  const std::unique_ptr<examples::IProgress> progress = examples::MakeProgress(true);
  const Georeference bent = Fit(Map(20, 0.01), std::nullopt, *progress);
  EXPECT_EQ(bent.Method(), WarpQuadraticPolynomial);
  EXPECT_TRUE(bent.isChosen);
  EXPECT_EQ(bent.comparison.size(), 13u);
  EXPECT_LE(bent.leftOutRms, 1e-9);
  for (const MethodFit& fit : bent.comparison) EXPECT_GE(fit.leftOut, bent.leftOutRms);
  EXPECT_EQ(Fit(Map(3, 0.0), std::nullopt, *progress).Method(), WarpLinearConformal);
  EXPECT_EQ(Fit(Map(1, 0.0), std::nullopt, *progress).Method(), WarpIdentityMap);
}

TEST(GeoreferenceFit, chainsGoFromWhatWasAskedForToWhatIsInForce) {
  const std::unique_ptr<examples::IProgress> progress = examples::MakeProgress(true);
  const struct {
    std::size_t count;
    WarpingMethod method;
    std::vector<WarpingMethod> chain;
  } rows[] = {
      {9, WarpMarcovSpline, {WarpMarcovSpline}},
      {5, WarpQuadraticPolynomial, {WarpQuadraticPolynomial, WarpGeneralLinear}},
      {2,
       WarpThinPlateSpline,
       {WarpThinPlateSpline, WarpInverseDistanceSquared, WarpLinearConformal}},
      {1, WarpGeneralLinear, {WarpGeneralLinear, WarpTranslate, WarpIdentityMap}},
      {1, WarpIdentityMap, {WarpIdentityMap}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Fit(Map(row.count, 0.0), row.method, *progress).chain, row.chain) << row.count;
  }
}

TEST(GeoreferenceTables, decimalsResolveAPartOfTheExtent) {
  EXPECT_EQ(DecimalsFor(1e6, 1e-9), 3u);
  EXPECT_EQ(DecimalsFor(15.0, 1e-9), 8u);
  EXPECT_EQ(DecimalsFor(1e12, 1e-9), 0u);
  EXPECT_EQ(DecimalsFor(0.0, 1e-9), 9u);
  EXPECT_EQ(DecimalsFor(1e-300, 1e-9), 15u);
}

TEST(GeoreferenceOptions, everyMethodHasAWord) {
  EXPECT_EQ(ParseMethod(L"Thin-Plate-Spline"), WarpThinPlateSpline);
  EXPECT_EQ(ParseMethod(L"marcov-spline"), WarpMarcovSpline);
  EXPECT_EQ(ParseMethod(L"identity-map"), WarpIdentityMap);
  EXPECT_EQ(ParseMethod(L"affine"), WarpGeneralLinear);
  EXPECT_EQ(ParseMethod(L"auto"), std::nullopt);
  EXPECT_EQ(ParseMethod(L""), std::nullopt);
}

}  // namespace
}  // namespace georeference
