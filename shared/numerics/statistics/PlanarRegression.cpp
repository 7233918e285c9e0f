// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// From sums: the determinants are differences of products that may agree in most of their digits,
// so they are formed exactly. What follows is computed with 100 bits and an unlimited exponent and
// rounded once at its end.
//
// From points: y is first made orthogonal to x (A. Bjorck, "Numerical Methods for Least Squares
// Problems", 1996, 2.4.1), which keeps all digits where points are all but on a line, and the
// residuals are squared one by one, which keeps them where points are all but on a plane.

#include "shared/numerics/statistics/PlanarRegression.h"

#include <array>
#include <vector>

#include "shared/numerics/statistics/Comoments.h"
#include "shared/numerics/statistics/ErrorFree.h"
#include "shared/numerics/statistics/ExactSum.h"

namespace shr {
namespace {

/// Means, and sums of products of deviations from them.
struct Sums {
  std::uint64_t count;
  ScaledPair meanX, meanY, meanZ;
  ScaledPair xx, xy, xz, yz, yy, zz;
};

/// The solution, and what is left of the sum of squares by it.
struct Fit {
  ScaledPair det;
  ScaledPair a, b;
  ScaledPair residual;
  // What the errors of c take: meanY Sxy - meanX Syy, meanX Sxy - meanY Sxx, and minus the sum of
  // both times the means.
  ScaledPair crossA, crossB, spread;
};

/// Returns a b - c d.
ScaledPair Determinant(double a, double b, double c, double d) {
  ExactSum sum;
  sum.AddProduct(a, b);
  sum.AddProduct(-c, d);
  return sum.Value();
}

bool ExceedsTiny(const ScaledPair& value) {
  return value.ToDouble() > TINY;
}

/// Returns the quotient, NaN where the divisor is not above the tiny value.
ScaledPair Quotient(const ScaledPair& dividend, const ScaledPair& divisor) {
  return ExceedsTiny(divisor) ? dividend / divisor : ScaledPair(NOT_A_NUMBER);
}

ScaledPair Root(const ScaledPair& radicand) {
  return ExceedsTiny(radicand) ? Sqrt(radicand) : ScaledPair(NOT_A_NUMBER);
}

ScaledPair WideCount(std::uint64_t count) {
  return {static_cast<double>(count >> 32) * 4294967296.0, static_cast<double>(count & 0xFFFFFFFF),
          0};
}

void TakeFit(CPlanarRegression& result, const Sums& s, const Fit& fit) {
  const ScaledPair &a = fit.a, &b = fit.b, &det = fit.det, &residual = fit.residual;
  if (!(std::fabs(det.ToDouble()) > TINY)) return;
  result.a = a.ToDouble();
  result.b = b.ToDouble();
  result.c = (s.meanZ - a * s.meanX - b * s.meanY).ToDouble();

  const ScaledPair regression = a * s.xz + b * s.yz;
  const ScaledPair regressionMean = regression / ScaledPair(2.0);
  const ScaledPair n = WideCount(s.count);
  const ScaledPair mean =
      s.count > 3 ? residual / WideCount(s.count - 3) : ScaledPair(NOT_A_NUMBER);
  result.regressionSumSquares = regression.ToDouble();
  result.residualSumSquares = residual.ToDouble();
  result.totalSumSquares = s.zz.ToDouble();
  result.regressionMeanSquare = regressionMean.ToDouble();
  result.residualMeanSquare = mean.ToDouble();
  result.fRatio = Quotient(regressionMean, mean).ToDouble();
  result.determination = Quotient(regression, s.zz).ToDouble();

  const ScaledPair errorA = Root(mean * s.yy / det), errorB = Root(mean * s.xx / det);
  const ScaledPair errorC = Root(mean * (ScaledPair(1.0) / n + fit.spread / det));
  result.errorA = errorA.ToDouble();
  result.errorB = errorB.ToDouble();
  result.errorC = errorC.ToDouble();
  const auto correlation = [&](const ScaledPair& covariance, const ScaledPair& first,
                               const ScaledPair& second) {
    return Quotient(covariance / det * mean, first * second).ToDouble();
  };
  result.correlationAB = correlation(-s.xy, errorA, errorB);
  result.correlationAC = correlation(fit.crossA, errorC, errorA);
  result.correlationBC = correlation(fit.crossB, errorC, errorB);
}

void CorrelateSamples(CPlanarRegression& result, const Sums& s) {
  const ScaledPair divisor = WideCount(s.count - 1);
  const ScaledPair deviationX = Sqrt(s.xx / divisor), deviationY = Sqrt(s.yy / divisor),
                   deviationZ = Sqrt(s.zz / divisor);
  result.correlationXY = Quotient(s.xy / divisor, deviationX * deviationY).ToDouble();
  result.correlationXZ = Quotient(s.xz / divisor, deviationZ * deviationX).ToDouble();
  result.correlationYZ = Quotient(s.yz / divisor, deviationZ * deviationY).ToDouble();
}

void TakeAll(CPlanarRegression& result, const Sums& sums, const Fit& fit) {
  result.Clear();
  result.count = sums.count;
  TakeFit(result, sums, fit);
  CorrelateSamples(result, sums);
}

ExactPair Sum(const ExactPair& a, const ExactPair& b) {
  const ExactPair highs = TwoSum(a.high, b.high), lows = TwoSum(a.low, b.low);
  const ExactPair upper = FastTwoSum(highs.high, highs.low + lows.high);
  return FastTwoSum(upper.high, upper.low + lows.low);
}
ExactPair Difference(const ExactPair& a, const ExactPair& b) {
  return Sum(a, {-b.high, -b.low});
}
ExactPair Product(const ExactPair& a, const ExactPair& b) {
  const ExactPair product = TwoProduct(a.high, b.high);
  return FastTwoSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}
void AddProduct(ExactSum& sum, const ExactPair& a, const ExactPair& b) {
  sum.AddProduct(a.high, b.high);
  sum.AddProduct(a.high, b.low);
  sum.AddProduct(a.low, b.high);
}

/// Fits a plane to points of which the sums are known.
class PointFitter {
public:
  PointFitter(std::span<const Vec3d> points, const Sums& sums)
      : points_(points),
        sums_(sums),
        meanX_(sums.meanX.ToPair()),
        meanY_(sums.meanY.ToPair()),
        meanZ_(sums.meanZ.ToPair()) {}

  Fit Solve() const {
    Fit fit;
    const ScaledPair slope = sums_.xy / sums_.xx;
    const ExactPair yOfX = slope.ToPair();
    ExactSum squares, products;
    for (const Vec3d& point : points_) {
      const ExactPair y = Difference(Y(point), Product(yOfX, X(point)));
      AddProduct(squares, y, y);
      AddProduct(products, y, Z(point));
    }
    const ScaledPair rest = squares.Value();
    // What rounding leaves of points on a line is not above.
    constexpr int LINE_EXPONENT = -190;
    if (!(rest.ToDouble() > sums_.yy.Times2To(LINE_EXPONENT).ToDouble())) return fit;
    fit.det = sums_.xx * rest;
    fit.b = products.Value() / rest;
    fit.a = (sums_.xz - fit.b * sums_.xy) / sums_.xx;
    fit.residual = Residual(fit.a.ToPair(), fit.b.ToPair());
    const ScaledPair offset = sums_.meanY - slope * sums_.meanX;
    fit.crossA = sums_.xy * offset - sums_.meanX * rest;
    fit.crossB = -(sums_.xx * offset);
    fit.spread = offset * offset * sums_.xx + sums_.meanX * sums_.meanX * rest;
    return fit;
  }

private:
  static ExactPair Deviation(double value, const ExactPair& mean) {
    return Difference({value, 0.0}, mean);
  }
  ExactPair X(const Vec3d& point) const { return Deviation(point.x, meanX_); }
  ExactPair Y(const Vec3d& point) const { return Deviation(point.y, meanY_); }
  ExactPair Z(const Vec3d& point) const { return Deviation(point.z, meanZ_); }

  ScaledPair Residual(const ExactPair& a, const ExactPair& b) const {
    ExactSum sum;
    for (const Vec3d& point : points_) {
      const ExactPair fitted = Sum(Product(a, X(point)), Product(b, Y(point)));
      const ExactPair residual = Difference(Z(point), fitted);
      AddProduct(sum, residual, residual);
    }
    return sum.Value();
  }

  std::span<const Vec3d> points_;
  const Sums& sums_;
  ExactPair meanX_, meanY_, meanZ_;
};

}  // namespace

void Load(CPlanarRegression& regression, std::uint64_t count, double meanX, double meanY,
          double meanZ, double sxx, double sxy, double sxz, double syz, double syy, double szz) {
  if (count == 0) return regression.Clear();
  const Sums sums{count, meanX, meanY, meanZ, sxx, sxy, sxz, syz, syy, szz};
  Fit fit;
  fit.det = Determinant(sxx, syy, sxy, sxy);
  fit.a = Determinant(sxz, syy, sxy, syz) / fit.det;
  fit.b = Determinant(sxx, syz, sxy, sxz) / fit.det;
  fit.residual = ScaledPair(szz) - (fit.a * sxz + fit.b * syz);
  fit.crossA = sums.meanY * sums.xy - sums.meanX * sums.yy;
  fit.crossB = sums.meanX * sums.xy - sums.meanY * sums.xx;
  fit.spread = -(sums.meanX * fit.crossA + sums.meanY * fit.crossB);
  TakeAll(regression, sums, fit);
}

void Load(CPlanarRegression& regression, std::span<const Vec3d> points) {
  if (points.empty()) return regression.Clear();
  const std::array<const double*, 3> columns{&points[0].x, &points[0].y, &points[0].z};
  const Comoments moments(columns, 3, points.size());
  const Sums sums{points.size(),     moments.Mean(0),   moments.Mean(1),   moments.Mean(2),
                  moments.Sum(0, 0), moments.Sum(0, 1), moments.Sum(0, 2), moments.Sum(1, 2),
                  moments.Sum(1, 1), moments.Sum(2, 2)};
  TakeAll(regression, sums, PointFitter(points, sums).Solve());
}

}  // namespace shr
