// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/georeference/Tables.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>
#include <optional>

#include "examples/common/CsvWriter.h"
#include "examples/georeference/GridPlot.h"
#include "shared/numerics/registration/InverseDistanceSquared.h"
#include "shared/numerics/registration/PolynomialWarps.h"
#include "shared/numerics/registration/RadialBasisFunction.h"
#include "shared/numerics/registration/SimpleWarps.h"

namespace georeference {

using namespace shr;
using examples::CsvWriter;

namespace {

constexpr double RESOLUTION = 1e-9;
constexpr std::size_t MOST_DECIMALS = 15;

/// Rounds to so many decimals; nothing for what is no number.
std::optional<double> Rounded(double value, std::size_t decimals) {
  if (!std::isfinite(value)) return std::nullopt;
  char text[400];
  const auto written = std::to_chars(std::begin(text), std::end(text), value,
                                     std::chars_format::fixed, static_cast<int>(decimals));
  double result = 0.0;
  std::from_chars(text, written.ptr, result);
  return result == 0.0 ? 0.0 : result;
}

/// Keeps twelve digits, which all processors agree on.
double TwelveDigits(double value) {
  char text[64];
  const auto written =
      std::to_chars(std::begin(text), std::end(text), value, std::chars_format::scientific, 11);
  double result = value;
  std::from_chars(text, written.ptr, result);
  return result;
}

std::vector<Parameter> RowsOf(const RMatrix& matrix, std::initializer_list<const wchar_t*> names) {
  std::vector<Parameter> parameters;
  std::size_t row = 0;
  for (const wchar_t* name : names) {
    parameters.push_back({name, matrix(row, 0), matrix(row, 1)});
    ++row;
  }
  return parameters;
}

}  // namespace

std::size_t DecimalsFor(double extent, double part) {
  std::size_t decimals = 0;
  double unit = 1.0;
  // With room for the rounding of quotients by ten.
  const double wanted = (extent > 0.0 ? extent : 1.0) * part * 1.000001;
  while (unit > wanted && decimals < MOST_DECIMALS) {
    unit /= 10.0;
    ++decimals;
  }
  return decimals;
}

std::vector<std::size_t> WorstFirst(const Georeference& fit) {
  const std::vector<RPoint>& errors = MeetsAllPoints(fit) ? fit.leftOut : fit.residuals;
  std::vector<double> lengths;
  for (const RPoint& error : errors) {
    const double length = Length(error);
    // What cannot be told comes last; what is not told apart keeps its order.
    lengths.push_back(std::isfinite(length) ? TwelveDigits(length) : -1.0);
  }
  std::vector<std::size_t> order(lengths.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return lengths[a] > lengths[b]; });
  return order;
}

std::vector<Parameter> ParametersOf(const CImageWarp& warp) {
  if (const auto* spline = dynamic_cast<const CRadialBasisFunction*>(&warp)) {
    return RowsOf(spline->Polynomial(), {L"constant", L"u", L"v"});
  }
  if (const auto* inverse = dynamic_cast<const CInverseDistanceSquared*>(&warp)) {
    return RowsOf(inverse->Trend(), {L"constant", L"u", L"v"});
  }
  if (const auto* quadratic = dynamic_cast<const CQuadraticPolynomial*>(&warp)) {
    return RowsOf(quadratic->Coefficients(),
                  {L"constant", L"u", L"v", L"u v", L"u\u00B2", L"v\u00B2"});
  }
  if (const auto* linear = dynamic_cast<const CGeneralLinear*>(&warp)) {
    return RowsOf(linear->Coefficients(), {L"constant", L"u", L"v"});
  }
  if (const auto* conformal = dynamic_cast<const CLinearConformal*>(&warp)) {
    const RVector& k = conformal->Coefficients();
    return {{L"constant", k(0), k(1)}, {L"u", k(2), -k(3)}, {L"v", k(3), k(2)}};
  }
  if (const auto* mixed = dynamic_cast<const CMixedScale*>(&warp)) {
    const RMatrix& k = mixed->Coefficients();
    return {{L"constant", k(0, 0), k(0, 1)}, {L"u", k(1, 0), 0.0}, {L"v", 0.0, k(1, 1)}};
  }
  if (const auto* uniform = dynamic_cast<const CUniformScale*>(&warp)) {
    const RVector& k = uniform->Coefficients();
    return {{L"constant", k(0), k(1)}, {L"u", k(2), 0.0}, {L"v", 0.0, k(2)}};
  }
  if (const auto* translate = dynamic_cast<const CTranslate*>(&warp)) {
    return {{L"offset", translate->OffsetX(), translate->OffsetY()}};
  }
  return {};
}

std::string MakeResidualTable(const ControlPoints& points, const Georeference& fit) {
  const std::size_t decimals = DecimalsFor(fit.mapExtent, RESOLUTION);
  CsvWriter table({"id", "image_x", "image_y", "map_x", "map_y", "residual_x", "residual_y",
                   "residual", "left_out_x", "left_out_y", "left_out"});
  for (const std::size_t i : WorstFirst(fit)) {
    table.Text(points.ids[i]).Number(points.image[i].x).Number(points.image[i].y);
    table.Number(points.map[i].x).Number(points.map[i].y);
    for (const RPoint& error : {fit.residuals[i], fit.leftOut[i]}) {
      table.Number(Rounded(error.x, decimals)).Number(Rounded(error.y, decimals));
      table.Number(Rounded(Length(error), decimals));
    }
    table.EndRow();
  }
  return table.Take();
}

std::string MakeCoefficientTable(const ControlPoints& points, const Georeference& fit) {
  const CImageWarp& warp = fit.registration.Warp();
  CsvWriter table({"parameter", "x", "y"});
  const auto add = [&](const GString& name, double x, double y) {
    table.Text(name).Number(TwelveDigits(x)).Number(TwelveDigits(y)).EndRow();
  };
  if (!warp.ControlU().empty()) {
    add(L"centre", warp.CenterX(), warp.CenterY());
    add(L"scale", warp.Scale(), warp.Scale());
  }
  for (const Parameter& parameter : ParametersOf(warp)) {
    add(parameter.name, parameter.x, parameter.y);
  }
  if (const auto* spline = dynamic_cast<const CRadialBasisFunction*>(&warp)) {
    for (std::size_t i = 0; i < points.ids.size(); ++i) {
      add(L"weight of " + points.ids[i], spline->Weights()(i, 0), spline->Weights()(i, 1));
    }
  }
  return table.Take();
}

std::string MakePointTable(const ImagePoints& points, const Georeference& fit) {
  const std::size_t decimals = DecimalsFor(fit.mapExtent, RESOLUTION);
  RPoints results(points.points.size());
  fit.registration.Transform(points.points, results);
  CsvWriter table({"id", "image_x", "image_y", "map_x", "map_y"});
  for (std::size_t i = 0; i < results.size(); ++i) {
    table.Text(points.ids[i]).Number(points.points[i].x).Number(points.points[i].y);
    table.Number(Rounded(results[i].x, decimals)).Number(Rounded(results[i].y, decimals)).EndRow();
  }
  return table.Take();
}

}  // namespace georeference
