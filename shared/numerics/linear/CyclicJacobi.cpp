// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The threshold cyclic Jacobi method: sweeps over all pairs (p, q), of which those above an average
// of what is off the diagonal are rotated away (H. Rutishauser, "The Jacobi method for real
// symmetric matrices", 1966). Small matrices just go through it. For larger ones there are two ways
// to begin further on, each of which ends with sweeps until they find nothing to do:
//
//   1. A definite matrix goes by way of its Cholesky factor, PositiveEigen.cpp, which is as
//   accurate
//      as the matrix determines its eigenvalues, or more accurate than rotations of A are.
//   2. Another dense one, with rows of about the same size, is brought near to diagonal form by
//      orthogonal vectors V0 from a faster method, V0^T A V0. The sweeps go on from there, with the
//      tolerance of A. Their rounding and that of the product are of one size, epsilon |A|.
//
// Matrices that are graded or nearly diagonal, for which the sweeps are short or the second way
// loses small elements beside large ones, go through the sweeps alone.

#include "shared/numerics/linear/CyclicJacobi.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/linear/Kernels.h"
#include "shared/numerics/linear/MatrixProducts.h"
#include "shared/numerics/linear/MatrixUtility.h"
#include "shared/numerics/linear/PositiveEigen.h"
#include "shared/numerics/linear/TridiagonalQl.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"CyclicJacobi";

constexpr int MOST_SWEEPS = 100;
/// Up to here sweeps are all that is done.
constexpr std::uint64_t SMALL = 16;
/// Rows of a larger ratio of sizes are graded.
constexpr double MOST_GRADED = 100.0;
/// Of the sum of the diagonal's magnitudes: where less is off it, the matrix is nearly diagonal.
constexpr double NEARLY_DIAGONAL = 0.01;
/// Of the sum of off-diagonal magnitudes at the start.
constexpr double OFF_TOLERANCE = 1e-16;
/// Eigenvalues of a smaller part of the first one are dropped.
constexpr double DROPPED = 1e-9;
/// From here on the square is all of 1 + x^2, and later it overflows.
constexpr double LARGE = 1e10;

void Require(bool fits, int line) {
  if (!fits) ThrowInternalError(SHARED_MODULE, UNIT, line);
}

/// Returns sqrt(1 + x^2).
double HypotOfOne(double x) {
  return std::abs(x) > LARGE ? std::abs(x) : std::sqrt(1.0 + x * x);
}

/// The rotation that makes element (p, q) zero.
struct Rotation {
  double t;
  double c;
  double s;
};

Rotation RotationFor(double pp, double qq, double pq) {
  const double theta = (qq - pp) / (2.0 * pq);
  const double root = HypotOfOne(theta);
  const double t = theta >= 0.0 ? 1.0 / (theta + root) : -1.0 / (root - theta);
  const double c = 1.0 / HypotOfOne(t);
  return {t, c, c * t};
}

/// Rotates rows and columns p and q of the whole symmetric matrix `a` and rows p and q of `v`,
/// which is the transpose of the eigenvectors.
void Apply(const Rotation& rotation, std::size_t p, std::size_t q, RMatrix& a, RMatrix& v) {
  const LinearKernels& kernels = Kernels();
  const std::size_t n = static_cast<std::size_t>(a.Rows());
  const double pp = a(p, p) - rotation.t * a(p, q);
  const double qq = a(q, q) + rotation.t * a(p, q);
  kernels.rotate(rotation.c, rotation.s, a.Base(p, 0), a.Base(q, 0), n);
  a(p, p) = pp;
  a(q, q) = qq;
  a(p, q) = a(q, p) = 0.0;
  for (std::size_t k = 0; k < n; ++k) {
    a(k, p) = a(p, k);
    a(k, q) = a(q, k);
  }
  kernels.rotate(rotation.c, rotation.s, v.Base(p, 0), v.Base(q, 0), n);
}

/// Sweeps until what is off the diagonal of `a` sums up to less than `tolerance`.
bool Sweep(RMatrix& a, RMatrix& v, double tolerance) {
  const std::size_t n = static_cast<std::size_t>(a.Rows());
  for (int sweep = 0; sweep < MOST_SWEEPS; ++sweep) {
    const double off = SymOff(a);
    if (off < tolerance || off == 0.0) return true;
    if (!std::isfinite(off)) return false;
    const double threshold =
        off / ((sweep + 1.0) * static_cast<double>(n) * static_cast<double>(n));
    for (std::size_t p = 0; p + 1 < n; ++p) {
      for (std::size_t q = p + 1; q < n; ++q) {
        if (!(std::abs(a(p, q)) > threshold)) continue;
        Apply(RotationFor(a(p, p), a(q, q), a(p, q)), p, q, a, v);
      }
    }
  }
  return false;
}

/// Brings the definite matrix `a`, or its negative, to its eigenvalues and the rows of `v`, its
/// eigenvectors.
EigenResult FindDefinite(RMatrix& a, RVector& w, RMatrix& v) {
  const bool isNegative = a(0, 0) < 0.0;
  if (isNegative) Negate(a);
  const EigenResult result = PositiveEigen(a, w, v);
  if (isNegative) Negate(a);
  if (isNegative && result != EigenResult::NotApplicable) Negate(w);
  return result;
}

/// Returns true for a dense matrix without large differences between its rows.
bool IsEven(const RMatrix& a) {
  double least = 0.0, most = 0.0, diagonal = 0.0;
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    double largest = 0.0;
    for (const double element : a.Row(i)) largest = std::max(largest, std::abs(element));
    least = i == 0 ? largest : std::min(least, largest);
    most = std::max(most, largest);
    diagonal += std::abs(a(i, i));
  }
  return most <= MOST_GRADED * least && SymOff(a) > NEARLY_DIAGONAL * diagonal;
}

/// Brings `a` near to diagonal form, with the rows of `v` as near eigenvectors.
void BringNear(RMatrix& a, RMatrix& v) {
  RMatrix work(a), near;
  if (!NearEigenvectors(work, near)) return;
  Product(near, a, work);
  OuterProduct(work, near, a);
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    for (std::uint64_t j = 0; j < i; ++j) a(i, j) = a(j, i);
  }
  v = std::move(near);
}

/// Sorts by decreasing magnitude of the diagonal, NaN last, and stores the results.
void Store(const RMatrix& v, const RVector& diagonal, RMatrix& a, RVector& w) {
  const std::size_t n = static_cast<std::size_t>(a.Rows());
  std::vector<std::size_t> order(n);
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto key = [&diagonal](std::size_t i) {
    return std::isnan(diagonal(i)) ? -1.0 : std::abs(diagonal(i));
  };
  std::stable_sort(order.begin(), order.end(),
                   [&key](std::size_t i, std::size_t j) { return key(i) > key(j); });
  for (std::size_t i = 0; i < n; ++i) w(i) = diagonal(order[i]);
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t i = 0; i < n; ++i) a(k, i) = v(order[i], k);
  }
}

/// Returns the power of two by which the elements of `a` are multiplied so that sums of them do not
/// overflow and what matters of them does not underflow; 1 for most.
double ScaleFor(const RMatrix& a) {
  constexpr int MOST = 900;
  const double largest = LInfNorm(RVector(std::span<const double>(a.data(), a.size())));
  if (largest == 0.0 || !std::isfinite(largest)) return 1.0;
  const int exponent = std::ilogb(largest);
  return std::abs(exponent) < MOST ? 1.0 : std::ldexp(1.0, -exponent);
}

}  // namespace

bool CyclicJacobi(RMatrix& a, RVector& w) {
  Require(IsSquare(a), __LINE__);
  const std::uint64_t n = a.Rows();
  RMatrix v;
  Eye(v, n, n);
  RVector values(n);
  for (std::uint64_t i = 0; i < n; ++i) {
    for (std::uint64_t j = 0; j < i; ++j) a(i, j) = a(j, i);
  }
  const double scale = ScaleFor(a);
  if (scale != 1.0) {
    for (double& element : a) element *= scale;
  }
  const double off = SymOff(a);
  const bool isLarge = n > SMALL && off > 0.0 && std::isfinite(off + LInfNorm(a));
  EigenResult result = isLarge ? FindDefinite(a, values, v) : EigenResult::NotApplicable;
  if (result == EigenResult::NotApplicable) {
    Eye(v, n, n);
    if (isLarge && IsEven(a)) BringNear(a, v);
    const bool isConverged = Sweep(a, v, off * OFF_TOLERANCE);
    result = isConverged ? EigenResult::Found : EigenResult::NotConverged;
    ExtractDiagonal(a, values);
  }
  if (scale != 1.0) Divide(values, scale);
  w.Resize(n);
  Store(v, values, a, w);
  return result == EigenResult::Found &&
         std::all_of(w.begin(), w.end(), [](double value) { return std::isfinite(value); });
}

void SVDSolve(const RMatrix& v, const RVector& w, RVector& x) {
  Require(v.Rows() == x.size() && v.Columns() == w.size(), __LINE__);
  RVector t;
  InnerProduct(v, x, t);
  for (std::uint64_t i = 0; i < w.size(); ++i) {
    t(i) = std::abs(w(i)) > std::abs(w(0)) * DROPPED ? t(i) / w(i) : 0.0;
  }
  Product(v, t, x);
}

void SVDSolve(const RMatrix& v, const RVector& w, RMatrix& x) {
  Require(v.Rows() == x.Rows() && v.Columns() == w.size(), __LINE__);
  RMatrix t;
  InnerProduct(v, x, t);
  for (std::uint64_t i = 0; i < w.size(); ++i) {
    const bool isKept = std::abs(w(i)) > std::abs(w(0)) * DROPPED;
    for (double& element : t.Row(i)) element = isKept ? element / w(i) : 0.0;
  }
  Product(v, t, x);
}

bool GeneralizedSolve(const RMatrix& a, const RVector& b, RVector& x) {
  Require(IsSquare(a) && a.Rows() == b.size(), __LINE__);
  RMatrix v(a);
  RVector w;
  if (!CyclicJacobi(v, w)) return false;
  x = b;
  SVDSolve(v, w, x);
  return true;
}

}  // namespace shr
