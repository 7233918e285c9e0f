// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/linear/ConstrainedSolve.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/linear/CyclicJacobi.h"
#include "shared/numerics/linear/MatrixProducts.h"
#include "shared/numerics/linear/MatrixUtility.h"
#include "shared/numerics/linear/Pivot.h"
#include "shared/numerics/linear/SymmetricSolve.h"
#include "shared/numerics/linear/TriangularSolve.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"ConstrainedSolve";

/// Of the square of the length of the right-hand side.
constexpr double RESIDUAL_TOLERANCE = 1e-18;
/// The single-precision epsilon: a direction of less curvature is none to go.
constexpr double LEAST_CURVATURE = 1.1920928955078125e-7;
constexpr int MOST_RESTARTS = 9;

void Require(bool fits, int line) {
  if (!fits) ThrowInternalError(SHARED_MODULE, UNIT, line);
}

/// Conjugate gradients on the null space of B.
class Projected {
public:
  Projected(const RMatrix& a, const RMatrix& b, const RMatrix& l, const RVector& c, RVector& x,
            RVector& y)
      : a_(a), b_(b), l_(l), c_(c), x_(x), y_(y) {
    tolerance_ = std::max(DotProduct(c, c) * RESIDUAL_TOLERANCE, PIVOT_EPSILON);
  }

  bool Run() {
    FindResidual();
    for (int restart = 0; restart <= MOST_RESTARTS && !(squares_ < tolerance_); ++restart) {
      Descend();
      FindResidual();
    }
    return squares_ < tolerance_;
  }

private:
  /// Finds the projected residual of x, whose rest is that of the multipliers.
  void FindResidual() {
    Product(a_, x_, r_);
    Subtract(c_, r_, r_);
    CPDProject(b_, l_, r_, y_);
    squares_ = DotProduct(r_, r_);
  }

  void Descend() {
    RVector p(r_), q, unused;
    const std::uint64_t steps = x_.size() > b_.Rows() ? x_.size() - b_.Rows() : 0;
    for (std::uint64_t step = 0; step < steps && !(squares_ < tolerance_); ++step) {
      Product(a_, p, q);
      const double curvature = DotProduct(p, q);
      if (!(curvature >= squares_ * LEAST_CURVATURE)) return;
      const double length = squares_ / curvature;
      Update_xpay(x_, length, p);
      Update_xpay(r_, -length, q);
      CPDProject(b_, l_, r_, unused);
      const double next = DotProduct(r_, r_);
      Update_axpy(next / squares_, p, r_);
      squares_ = next;
    }
  }

  const RMatrix& a_;
  const RMatrix& b_;
  const RMatrix& l_;
  const RVector& c_;
  RVector& x_;
  RVector& y_;
  RVector r_;
  double squares_ = 0.0;
  double tolerance_;
};

void RequireFitting(const RMatrix& a, const RMatrix& b, std::uint64_t rows, int line) {
  Require(IsSquare(a) && b.Columns() == a.Rows() && rows == a.Rows(), line);
}

}  // namespace

bool CPDSolve(const RMatrix& a, const RMatrix& b, const RVector& c, RVector& x, RVector& y) {
  RequireFitting(a, b, c.size(), __LINE__);
  const RVector side(c);  // `c` may be `x` or `y`
  RMatrix l;
  OuterProduct(b, b, l);
  Zeros(x, a.Rows());
  Zeros(y, b.Rows());
  if (!CholeskyDecomposition(l)) return false;
  return Projected(a, b, l, side, x, y).Run();
}

void CPDProject(const RMatrix& b, const RMatrix& l, RVector& x, RVector& y) {
  Require(IsSquare(l) && l.Rows() == b.Rows() && b.Columns() == x.size(), __LINE__);
  Product(b, x, y);
  std::ignore = ForwardElimination(l, y);
  std::ignore = BackSubstitution(l, y);
  RVector part;
  InnerProduct(b, y, part);
  Subtract(x, part);
}

bool AlternateSolve(const RMatrix& a, const RMatrix& b, const RMatrix& c, RMatrix& x, RMatrix& y) {
  RequireFitting(a, b, c.Rows(), __LINE__);
  RMatrix v(a);
  RVector w;
  if (!CyclicJacobi(v, w)) return false;
  RMatrix inverted = Transpose(b);
  SVDSolve(v, w, inverted);  // A^+ B^T
  RMatrix complement, multipliers;
  Product(b, inverted, complement);
  InnerProduct(inverted, c, multipliers);
  if (b.Rows() == 1) {
    if (IsNegligible(complement(0, 0))) return false;
    Divide(multipliers, complement(0, 0));
  } else {
    RVector values;
    if (!CyclicJacobi(complement, values)) return false;
    SVDSolve(complement, values, multipliers);
  }
  RMatrix rest;
  InnerProduct(b, multipliers, rest);
  Subtract(c, rest, rest);
  SVDSolve(v, w, rest);
  x = std::move(rest);
  y = std::move(multipliers);
  return true;
}

bool AlternateSolve(const RMatrix& a, const RMatrix& b, const RVector& c, RVector& x, RVector& y) {
  RMatrix side(c.size(), 1), columnX, columnY;
  std::copy(c.begin(), c.end(), side.begin());
  if (!AlternateSolve(a, b, side, columnX, columnY)) return false;
  x = RVector(std::span<const double>(columnX));
  y = RVector(std::span<const double>(columnY));
  return true;
}

}  // namespace shr
