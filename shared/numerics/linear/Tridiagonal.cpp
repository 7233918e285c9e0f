// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/linear/Tridiagonal.h"

#include <algorithm>
#include <cmath>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/linear/Kernels.h"
#include "shared/numerics/linear/MatrixProducts.h"
#include "shared/numerics/linear/MatrixUtility.h"
#include "shared/numerics/linear/Pivot.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"Tridiagonal";

/// The smallest number whose reciprocal, times epsilon, is finite. Shorter vectors are scaled up.
constexpr double SAFE_MINIMUM = 1.0020841800044864e-292;

void Require(bool fits, int line) {
  if (!fits) ThrowInternalError(SHARED_MODULE, UNIT, line);
}

bool Factor(RVector& d, RVector& e) {
  if (d.empty()) return true;
  if (IsNegligible(d(0))) return false;
  for (std::uint64_t i = 1; i < d.size(); ++i) {
    const double beside = e(i - 1);
    e(i - 1) = beside / d(i - 1);
    d(i) -= e(i - 1) * beside;
    if (IsNegligible(d(i))) return false;
  }
  return true;
}

void RequireTridiagonal(const RVector& d, const RVector& e, std::uint64_t rows, int line) {
  Require(rows == d.size() && e.size() == (d.empty() ? 0 : d.size() - 1), line);
}

/// Makes x a reflector as LAPACK has them: with u = (1, x_1, ...) I - tau u u^T maps x to (beta, 0,
/// ...). Returns tau; x_0 becomes beta.
double MakeReflector(double* x, std::size_t n) {
  double norm = 0.0;
  int scalings = 0;
  for (;;) {
    const RVector tail(std::span<const double>(x + 1, n - 1));
    norm = L2Norm(tail);
    const double whole = L2Norm(RVector{x[0], norm});
    if (norm == 0.0) return 0.0;
    if (whole >= SAFE_MINIMUM || scalings == 20) break;
    for (std::size_t i = 0; i < n; ++i) x[i] /= SAFE_MINIMUM;
    ++scalings;
  }
  const double whole = L2Norm(RVector{x[0], norm});
  double beta = x[0] >= 0.0 ? -whole : whole;
  const double tau = (beta - x[0]) / beta;
  Kernels().divide(x[0] - beta, x + 1, n - 1);
  for (; scalings > 0; --scalings) beta *= SAFE_MINIMUM;
  x[0] = beta;
  return tau;
}

}  // namespace

bool TridiagonalSolve(RVector& d, RVector& e, RVector& b) {
  RequireTridiagonal(d, e, b.size(), __LINE__);
  if (!Factor(d, e)) return false;
  const std::uint64_t n = d.size();
  for (std::uint64_t i = 1; i < n; ++i) b(i) -= e(i - 1) * b(i - 1);
  for (std::uint64_t i = n; i-- > 0;) {
    b(i) /= d(i);
    if (i + 1 < n) b(i) -= e(i) * b(i + 1);
  }
  return true;
}

bool TridiagonalSolve(RVector& d, RVector& e, RMatrix& b) {
  RequireTridiagonal(d, e, b.Rows(), __LINE__);
  if (!Factor(d, e)) return false;
  const LinearKernels& kernels = Kernels();
  const std::uint64_t n = d.size();
  for (std::uint64_t i = 1; i < n; ++i) {
    kernels.axpy(-e(i - 1), b.Base(i - 1, 0), b.Base(i, 0), b.Columns());
  }
  for (std::uint64_t i = n; i-- > 0;) {
    kernels.divide(d(i), b.Base(i, 0), b.Columns());
    if (i + 1 < n) kernels.axpy(-e(i), b.Base(i + 1, 0), b.Base(i, 0), b.Columns());
  }
  return true;
}

bool TridiagonalSolve(const RMatrix& q, RVector& d, RVector& e, RVector& b) {
  Require(q.Rows() == q.Columns() && q.Rows() == b.size(), __LINE__);
  RequireTridiagonal(d, e, b.size(), __LINE__);
  InnerProduct(q, b, b);
  if (!TridiagonalSolve(d, e, b)) return false;
  Product(q, b, b);
  return true;
}

void Householder(RVector& v) {
  if (v.empty()) return;
  const double largest = LInfNorm(v);
  if (largest == 0.0) return;  // beta is 0 as it stands
  Divide(v, largest);
  double squares = 0.0;
  for (std::uint64_t i = 1; i < v.size(); ++i) squares += v(i) * v(i);
  if (squares < TINY) {
    v(0) = 0.0;
    return;
  }
  const double length = std::sqrt(v(0) * v(0) + squares);
  const double first = v(0) <= 0.0 ? v(0) - length : -squares / (v(0) + length);
  Divide(v, first);
  v(0) = 2.0 * first * first / (squares + first * first);
}

bool TridiagonalDecomposition(RMatrix& a, RVector& d, RVector& e) {
  Require(a.Rows() == a.Columns(), __LINE__);
  const std::size_t n = static_cast<std::size_t>(a.Rows());
  const LinearKernels& kernels = Kernels();
  Zeros(d, n);
  Zeros(e, n == 0 ? 0 : n - 1);
  RMatrix reflectors;  // row k holds the reflector of column k
  Zeros(reflectors, n, n);
  RVector factors, w;
  Zeros(factors, n);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < i; ++j) a(j, i) = a(i, j);
  }
  for (std::size_t k = 0; k + 2 < n; ++k) {
    const std::size_t rest = n - k - 1;
    d(k) = a(k, k);
    double* v = reflectors.Base(k, k + 1);
    std::copy_n(a.Base(k, k + 1), rest, v);
    if (L2Norm(RVector(std::span<const double>(v, rest))) < PIVOT_EPSILON) {
      std::fill_n(v, rest, 0.0);
      continue;
    }
    const double tau = factors(k) = MakeReflector(v, rest);
    e(k) = v[0];
    v[0] = 1.0;
    if (tau == 0.0) continue;
    w.Resize(rest);
    for (std::size_t i = 0; i < rest; ++i) {
      w(i) = tau * kernels.dot(a.Base(k + 1 + i, k + 1), v, rest);
    }
    kernels.axpy(-0.5 * tau * kernels.dot(w.data(), v, rest), v, w.data(), rest);
    for (std::size_t i = 0; i < rest; ++i) {
      kernels.axpy(-v[i], w.data(), a.Base(k + 1 + i, k + 1), rest);
      kernels.axpy(-w(i), v, a.Base(k + 1 + i, k + 1), rest);
    }
  }
  if (n >= 2) {
    d(n - 2) = a(n - 2, n - 2);
    e(n - 2) = a(n - 1, n - 2);
  }
  if (n >= 1) d(n - 1) = a(n - 1, n - 1);
  Eye(a, n, n);
  for (std::size_t k = n < 2 ? 0 : n - 2; k-- > 0;) {
    const std::size_t rest = n - k - 1;
    const double* v = reflectors.Base(k, k + 1);
    Zeros(w, rest);
    for (std::size_t i = 0; i < rest; ++i) {
      kernels.axpy(v[i], a.Base(k + 1 + i, k + 1), w.data(), rest);
    }
    for (std::size_t i = 0; i < rest; ++i) {
      kernels.axpy(-factors(k) * v[i], w.data(), a.Base(k + 1 + i, k + 1), rest);
    }
  }
  const auto isFinite = [](double x) { return std::isfinite(x); };
  return std::all_of(d.begin(), d.end(), isFinite) && std::all_of(e.begin(), e.end(), isFinite);
}

}  // namespace shr
