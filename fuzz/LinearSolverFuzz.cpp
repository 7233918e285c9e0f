// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Solvers on matrices of any numbers: what is finite and of moderate size gives a small residual or
// false, what is not gives anything but a crash, a hang or a write elsewhere. Input: the order,
// what kind of matrix, then numbers of 3 bytes each, a mantissa of 16 bits and an exponent.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "shared/numerics/linear/ConstrainedSolve.h"
#include "shared/numerics/linear/CyclicJacobi.h"
#include "shared/numerics/linear/GaussSolve.h"
#include "shared/numerics/linear/LeastSquares.h"
#include "shared/numerics/linear/MatrixProducts.h"
#include "shared/numerics/linear/MatrixUtility.h"
#include "shared/numerics/linear/SymmetricSolve.h"
#include "shared/numerics/linear/Tridiagonal.h"

namespace {

using shr::RMatrix;
using shr::RVector;

constexpr double EPSILON = 2.220446049250313e-16;
constexpr std::uint64_t MOST_ROWS = 40;

struct Bytes {
  const std::uint8_t* data;
  std::size_t size;

  unsigned int Next() { return size == 0 ? 0u : (--size, *data++); }
  /// Mostly within a few powers of ten; the last exponents are infinity, NaN and the ends of the
  /// range.
  double Number() {
    const unsigned int low = Next(), high = Next(), exponent = Next();
    const double mantissa = (static_cast<double>(high * 256 + low) - 32768.0) / 32768.0;
    if (exponent == 255) return std::numeric_limits<double>::quiet_NaN();
    if (exponent == 254) return std::numeric_limits<double>::infinity();
    if (exponent >= 250) return mantissa * (exponent % 2 == 0 ? 1e300 : 1e-300);
    return std::ldexp(mantissa, static_cast<int>(exponent % 16) - 8);
  }
};

bool IsModerate(const RMatrix& a, const RVector& b) {
  return shr::LInfNorm(a) < 1e100 && shr::LInfNorm(b) < 1e100;
}

/// Aborts unless |a x - b| is within `bound` n epsilon of |a| |x| + |b|.
void RequireSmallResidual(const RMatrix& a, const RVector& x, const RVector& b, double bound) {
  RVector r;
  shr::Product(a, x, r);
  shr::Subtract(r, b);
  const double size = shr::LInfNorm(a) * shr::LInfNorm(x) + shr::LInfNorm(b);
  const double n = static_cast<double>(a.Rows());
  if (!(shr::LInfNorm(r) <= bound * n * EPSILON * size)) std::abort();
}

/// Partial pivoting may let elements grow; 2^12 is far beyond what is met without intent.
void TryGauss(const RMatrix& a, const RVector& b, bool isModerate) {
  RMatrix work(a);
  RVector x(b);
  if (shr::GaussSolve(work, x) && isModerate) RequireSmallResidual(a, x, b, 4096.0);
}

void TryCholesky(RMatrix a, const RVector& b, bool isModerate) {
  RMatrix l(a);
  if (!shr::CholeskyDecomposition(l) || !isModerate) return;
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    for (std::uint64_t j = 0; j < i; ++j) a(j, i) = a(i, j);
  }
  RVector x(b);
  shr::CholeskySolve(l, x);
  // Of a matrix that just passes as definite the factor is no longer bounded by it.
  double least = l(0, 0);
  for (std::uint64_t i = 0; i < l.Rows(); ++i) least = std::fmin(least, l(i, i));
  if (least * least > 1e-6 * shr::LInfNorm(a)) RequireSmallResidual(a, x, b, 64.0);
}

void TryEigen(const RMatrix& a, bool isModerate) {
  RMatrix v(a), product;
  RVector w;
  if (!shr::CyclicJacobi(v, w) || !isModerate) return;
  const double bound = 100.0 * static_cast<double>(a.Rows()) * EPSILON;
  RMatrix symmetric(a);
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    for (std::uint64_t j = 0; j < i; ++j) symmetric(i, j) = a(j, i);
  }
  shr::Product(symmetric, v, product);
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    for (std::uint64_t j = 0; j < a.Rows(); ++j) product(i, j) -= v(i, j) * w(j);
  }
  if (!(shr::FNorm(product) <= bound * shr::FNorm(symmetric))) std::abort();
}

void TryRest(const RMatrix& a, const RVector& b) {
  RMatrix work(a), constraint(1, a.Rows());
  RVector x(a.Columns()), side(b), d, e, y;
  if (shr::MGSLeastSquares(work, x, side)) side = b;
  work = a;
  if (shr::TridiagonalDecomposition(work, d, e) && shr::TridiagonalSolve(work, d, e, side))
    side = b;
  work = a;
  if (shr::SymmetricDecomposition(work)) shr::SymmetricSolve(work, side);
  std::vector<std::uint64_t> order;
  work = a;
  shr::AasenDecomposition(work, order);
  if (shr::AasenSolve(work, order, side)) side = b;
  shr::Ones(constraint);
  if (shr::CPDSolve(a, constraint, b, x, y) && !(shr::L2Norm(x) < 1e300)) std::abort();
  if (shr::AlternateSolve(a, constraint, b, x, y)) side = x;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes{data, size};
  const std::uint64_t n = 1 + bytes.Next() % MOST_ROWS;
  const unsigned int kind = bytes.Next();
  RMatrix a(n, n);
  RVector b(n);
  for (double& element : b) element = bytes.Number();
  for (double& element : a) element = bytes.Number();
  if (kind % 4 == 1) shr::Add(a, shr::Transpose(a));
  if (kind % 4 == 2) shr::OuterProduct(a, a);
  const bool isModerate = IsModerate(a, b);
  TryGauss(a, b, isModerate);
  TryCholesky(a, b, isModerate);
  TryEigen(a, isModerate);
  TryRest(a, b);
  return 0;
}
