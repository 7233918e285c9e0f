// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The steps on the tridiagonal matrix do not look at the vectors. So their rotations are collected,
// and many of them applied at once to a slice of the vectors, WIDTH of their components, that stays
// in the first cache: there all vectors' slices lie one after the other, and a step's rotations,
// which each join two neighbours, run through them with one of the two still in registers.

#include "shared/numerics/linear/TridiagonalQl.h"

#include <cmath>
#include <utility>
#include <vector>

#include "shared/numerics/linear/Kernels.h"
#include "shared/numerics/linear/Pivot.h"
#include "shared/numerics/linear/Tridiagonal.h"

namespace shr {
namespace {

constexpr int MOST_STEPS = 60;
/// Components of a slice.
constexpr std::size_t WIDTH = 8;
/// Rotations that are collected.
constexpr std::size_t BATCH = 4096;

double Hypot(double a, double b) {
  return std::sqrt(a * a + b * b);
}

class Iteration {
public:
  /// The rows of `z` are rotated as the columns of the transform of the matrix (d, e).
  Iteration(RVector& d, RVector& e, const RMatrix& q)
      : d_(d), e_(e), n_(static_cast<std::size_t>(d.size())), slices_((n_ + WIDTH - 1) / WIDTH) {
    values_.resize(slices_ * n_ * WIDTH);
    for (std::size_t i = 0; i < n_; ++i) {
      for (std::size_t j = 0; j < n_; ++j) Value(j, i) = q(i, j);
    }
  }

  bool Run() {
    for (std::size_t l = 0; l < n_; ++l) {
      for (int step = 0;; ++step) {
        const std::size_t m = FindSplit(l);
        if (m == l) break;
        if (step == MOST_STEPS) return false;
        Step(l, m);
      }
    }
    ApplyAll();
    return true;
  }

  void Store(RMatrix& z) {
    z.Resize(n_, n_);
    for (std::size_t i = 0; i < n_; ++i) {
      for (std::size_t j = 0; j < n_; ++j) z(i, j) = Value(i, j);
    }
  }

private:
  /// Rotations of the vectors first + count, first + count - 1, ..., first, each with the next.
  struct Chain {
    std::size_t first;
    std::size_t begin;
    std::size_t count;
  };

  double& Value(std::size_t vector, std::size_t component) {
    return values_[(component / WIDTH * n_ + vector) * WIDTH + component % WIDTH];
  }

  /// Returns the first m >= l behind which the matrix falls apart.
  std::size_t FindSplit(std::size_t l) const {
    std::size_t m = l;
    while (m + 1 < n_ &&
           std::abs(e_(m)) > PIVOT_EPSILON * (std::abs(d_(m)) + std::abs(d_(m + 1)))) {
      ++m;
    }
    return m;
  }

  /// A step of the QL method on rows l to m, with Wilkinson's shift.
  void Step(std::size_t l, std::size_t m) {
    const double half = (d_(l + 1) - d_(l)) / (2.0 * e_(l));
    const double root = std::abs(half) > 1e100 ? std::abs(half) : Hypot(half, 1.0);
    const double shift = d_(l) - e_(l) / (half + (half < 0.0 ? -root : root));
    double s = 1.0, c = 1.0, moved = 0.0, g = d_(m) - shift;
    if (m + 1 < n_) e_(m) = 0.0;
    chains_.push_back({l, cosines_.size(), 0});
    for (std::size_t i = m; i-- > l;) {
      const double bulge = s * e_(i), beside = c * e_(i);
      const double r = Hypot(bulge, g);
      if (i + 1 < m) e_(i + 1) = r;
      if (r == 0.0) {  // the bulge has vanished: what is above is for another step
        d_(i + 1) -= moved;
        chains_.back().first = i + 1;
        return Collected();
      }
      s = bulge / r;
      c = g / r;
      g = d_(i + 1) - moved;
      const double change = (d_(i) - g) * s + 2.0 * c * beside;
      moved = s * change;
      d_(i + 1) = g + moved;
      g = c * change - beside;
      cosines_.push_back(c);
      sines_.push_back(s);
      ++chains_.back().count;
    }
    d_(l) -= moved;
    e_(l) = g;
    Collected();
  }

  void Collected() {
    if (cosines_.size() >= BATCH) ApplyAll();
  }

  void ApplyAll() {
    const LinearKernels& kernels = Kernels();
    for (std::size_t slice = 0; slice < slices_; ++slice) {
      double* vectors = &values_[slice * n_ * WIDTH];
      for (const Chain& chain : chains_) {
        kernels.rotateChain(&cosines_[chain.begin], &sines_[chain.begin], chain.count,
                            vectors + chain.first * WIDTH);
      }
    }
    chains_.clear();
    cosines_.clear();
    sines_.clear();
  }

  RVector& d_;
  RVector& e_;
  std::size_t n_;
  std::size_t slices_;
  std::vector<double> values_;
  std::vector<Chain> chains_;
  std::vector<double> cosines_;
  std::vector<double> sines_;
};

}  // namespace

bool NearEigenvectors(RMatrix& a, RMatrix& z) {
  const std::uint64_t n = a.Rows();
  for (std::uint64_t i = 0; i < n; ++i) {
    for (std::uint64_t j = 0; j < i; ++j) a(i, j) = a(j, i);
  }
  RVector d, e;
  if (!TridiagonalDecomposition(a, d, e)) return false;
  Iteration iteration(d, e, a);
  if (!iteration.Run()) return false;
  iteration.Store(z);
  return true;
}

}  // namespace shr
