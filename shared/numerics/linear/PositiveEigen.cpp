// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Of a positive definite A = L L^T the eigenvalues are the squares of the singular values of L, and
// the eigenvectors its left singular vectors. Rotations of pairs of columns of L, L V = G, make all
// columns orthogonal (one-sided Jacobi); then their lengths are the singular values and their
// directions the vectors. Rounding in a rotation is relative to each row of G, as that in
// Cholesky's method is to the diagonal of A. So where A = D S D with S well conditioned, the
// smallest eigenvalues come out with all digits, however much D is graded; methods that work on A
// itself, and their errors with the norm of A, lose them.
//
//   1. Rows and columns are sorted by decreasing diagonal, and A is factored.
//   2. Unless the matrix is too graded for it to help, G begins as L V0 with near eigenvectors V0
//   of
//      L^T L: then columns are nearly orthogonal to begin with. A product from the right, like the
//      rotations, errs relative to rows.
//   3. Each sweep begins with all products of columns at once, G^T G. Pairs whose product is not
//   small
//      beside their lengths are looked at again and rotated. A sweep without rotations is the last.
//
// The transpose of G is stored, so that its columns are rows in memory.

#include "shared/numerics/linear/PositiveEigen.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "shared/numerics/linear/Kernels.h"
#include "shared/numerics/linear/MatrixProducts.h"
#include "shared/numerics/linear/MatrixUtility.h"
#include "shared/numerics/linear/Pivot.h"
#include "shared/numerics/linear/TridiagonalQl.h"

namespace shr {
namespace {

constexpr int MOST_SWEEPS = 100;
/// Squares of elements between these, and products of them, do neither overflow nor vanish.
constexpr double LEAST_DIAGONAL = 1e-280;
constexpr double MOST_DIAGONAL = 1e280;
/// Diagonals of L that differ by more are too graded for near eigenvectors.
constexpr double MOST_GRADED = 1e8;
/// Where a rotation takes so much from the square of a length, it is computed anew.
constexpr double CANCELLED = 0.01;

using Order = std::vector<std::size_t>;

class OneSided {
public:
  explicit OneSided(RMatrix& g)
      : g_(g),
        n_(static_cast<std::size_t>(g.Rows())),
        tolerance_(PIVOT_EPSILON * std::sqrt(static_cast<double>(n_))),
        squares_(n_),
        lengths_(n_),
        order_(n_) {}

  bool Run() {
    for (int sweep = 0; sweep < MOST_SWEEPS; ++sweep) {
      if (Sweep() == 0) return true;
    }
    return false;
  }

private:
  std::size_t Sweep() {
    OuterProduct(g_, g_, products_);
    for (std::size_t i = 0; i < n_; ++i) {
      squares_[i] = products_(i, i);
      lengths_[i] = std::sqrt(squares_[i]);
    }
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    std::stable_sort(order_.begin(), order_.end(),
                     [this](std::size_t i, std::size_t j) { return squares_[i] > squares_[j]; });
    std::size_t rotations = 0;
    for (std::size_t p = 0; p + 1 < n_; ++p) {
      const std::size_t i = order_[p];
      const double limit = tolerance_ * lengths_[i];
      for (std::size_t q = p + 1; q < n_; ++q) {
        const std::size_t j = order_[q];
        if (std::abs(products_(i, j)) > limit * lengths_[j]) rotations += Join(i, j);
      }
    }
    return rotations;
  }

  /// Makes columns i and j orthogonal unless they are. Returns the number of rotations.
  std::size_t Join(std::size_t i, std::size_t j) {
    const LinearKernels& kernels = Kernels();
    const double product = kernels.dot(g_.Base(i, 0), g_.Base(j, 0), n_);
    const double lengths = std::sqrt(squares_[i]) * std::sqrt(squares_[j]);
    if (!(std::abs(product) > tolerance_ * lengths)) return 0;
    const double half = (squares_[j] - squares_[i]) / (2.0 * product);
    const double root = std::abs(half) > 1e10 ? std::abs(half) : std::sqrt(1.0 + half * half);
    const double t = half >= 0.0 ? 1.0 / (half + root) : -1.0 / (root - half);
    const double c = 1.0 / std::sqrt(1.0 + t * t);
    kernels.rotate(c, c * t, g_.Base(i, 0), g_.Base(j, 0), n_);
    Lengthen(i, -t * product);
    Lengthen(j, t * product);
    return 1;
  }

  void Lengthen(std::size_t i, double change) {
    const double square = squares_[i] + change;
    squares_[i] =
        square > squares_[i] * CANCELLED ? square : Kernels().dot(g_.Base(i, 0), g_.Base(i, 0), n_);
  }

  RMatrix& g_;
  std::size_t n_;
  double tolerance_;
  RMatrix products_;
  std::vector<double> squares_;
  std::vector<double> lengths_;
  Order order_;
};

/// Returns `a` with rows and columns in `order`, its lower triangle alone.
RMatrix LowerInOrder(const RMatrix& a, const Order& order) {
  RMatrix l;
  Zeros(l, a.Rows(), a.Rows());
  for (std::size_t i = 0; i < order.size(); ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      l(i, j) = a(std::min(order[i], order[j]), std::max(order[i], order[j]));
    }
  }
  return l;
}

/// Makes `g` the transpose of L times near eigenvectors of L^T L; of L itself where that is of no
/// use.
void Begin(const RMatrix& l, RMatrix& g) {
  const double last = l(l.Rows() - 1, l.Rows() - 1);
  RMatrix products, near;
  if (l(0, 0) < MOST_GRADED * last) {
    InnerProduct(l, l, products);
    if (NearEigenvectors(products, near)) return OuterProduct(near, l, g);
  }
  Transpose(l, g);
}

}  // namespace

EigenResult PositiveEigen(const RMatrix& a, RVector& w, RMatrix& v) {
  const std::size_t n = static_cast<std::size_t>(a.Rows());
  for (std::size_t i = 0; i < n; ++i) {
    if (!(a(i, i) > LEAST_DIAGONAL && a(i, i) < MOST_DIAGONAL)) return EigenResult::NotApplicable;
  }
  Order order(n);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&a](std::size_t i, std::size_t j) { return a(i, i) > a(j, j); });
  RMatrix l = LowerInOrder(a, order), g;
  if (!CholeskyFactor(l, LEAST_DIAGONAL)) return EigenResult::NotApplicable;
  Begin(l, g);
  const bool isConverged = OneSided(g).Run();
  w.Resize(n);
  v.Resize(n, n);
  for (std::size_t i = 0; i < n; ++i) {
    w(i) = Kernels().dot(g.Base(i, 0), g.Base(i, 0), n);
    if (!(w(i) > 0.0)) return EigenResult::NotApplicable;
    const double length = std::sqrt(w(i));
    for (std::size_t k = 0; k < n; ++k) v(i, order[k]) = g(i, k) / length;
  }
  return isConverged ? EigenResult::Found : EigenResult::NotConverged;
}

}  // namespace shr
