// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/linear/Tridiagonal.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/linear/MatrixProducts.h"
#include "shared/numerics/linear/MatrixUtility.h"
#include "shared/numerics/linear/Multiply.h"
#include "shared/numerics/linear/Pivot.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"Tridiagonal";

/// The smallest number whose reciprocal, times epsilon, is finite. Shorter vectors are scaled up.
constexpr double SAFE_MINIMUM = 1.0020841800044864e-292;
/// A sum of squares between these has lost nothing to underflow and overflow that would matter.
constexpr double LEAST_SQUARES = 1e-270;
constexpr double MOST_SQUARES = 1e300;
/// Columns that are reduced before the rest of the matrix is updated.
constexpr std::size_t PANEL = 24;
/// Rows of the triangle that are updated as a block.
constexpr std::size_t UPDATE_ROWS = 96;

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

/// Returns the Euclidean norm of n numbers, whatever their size.
double NormOf(const double* x, std::size_t n) {
  const double squares = Kernels().dot(x, x, n);
  if (squares > LEAST_SQUARES && squares < MOST_SQUARES) return std::sqrt(squares);
  return L2Norm(RVector(std::span<const double>(x, n)));
}

/// A reflection I - factor u u^T with u = (1, x_1, x_2, ...), which maps a vector to (image, 0,
/// ...).
struct Reflection {
  double factor;
  double image;
};

/// Makes the vector `x`, whose norm is `norm`, the u of its reflection. A norm below SAFE_MINIMUM
/// is scaled up for the divisions.
Reflection MakeReflection(double* x, std::size_t n, double norm) {
  double scale = 1.0;
  if (norm < SAFE_MINIMUM) {
    scale = SAFE_MINIMUM;
    for (std::size_t i = 0; i < n; ++i) x[i] /= scale;
    norm = NormOf(x, n);
  }
  const double first = x[0];
  const double image = first >= 0.0 ? -norm : norm;
  x[0] = 1.0;
  if (std::all_of(x + 1, x + n, [](double element) { return element == 0.0; })) {
    return {0.0, first * scale};
  }
  Kernels().divide(first - image, x + 1, n - 1);
  return {(image - first) / image, image * scale};
}

/// Reduces a symmetric matrix, PANEL columns at a time. Of the rest of the matrix only what the
/// next column needs is brought up to date within a panel:
///
///   A' = A - sum over the columns of the panel (v w^T + w v^T),
///   w = p - 1/2 factor (p^T v) v,  p = factor A' v,
///
/// so that one product of A with a vector is left a column, half of all work, and the other half is
/// one product of matrices a panel. The upper triangle is worked on, whose rows lie as columns are
/// needed.
class Reducer {
public:
  Reducer(RMatrix& a, RVector& d, RVector& e)
      : a_(a), d_(d), e_(e), n_(static_cast<std::size_t>(a.Rows())), factors_(n_) {
    Zeros(d_, n_);
    Zeros(e_, n_ == 0 ? 0 : n_ - 1);
    first_.resize(PANEL * n_);
    second_.resize(PANEL * n_);
  }

  void Run() {
    const std::size_t count = n_ < 2 ? 0 : n_ - 2;
    for (std::size_t i = 0; i < n_; ++i) {
      for (std::size_t j = 0; j < i; ++j) a_(j, i) = a_(i, j);
    }
    for (std::size_t first = 0; first < count; first += PANEL) {
      const std::size_t end = std::min(first + PANEL, count);
      Zeros(stack_, 3 * (end - first), n_);
      for (std::size_t k = first; k < end; ++k) ReduceColumn(first, end, k);
      UpdateRest(first, end);
    }
    for (std::size_t i = count; i < n_; ++i) {
      d_(i) = a_(i, i);
      if (i + 1 < n_) e_(i) = a_(i, i + 1);
    }
    FormQ(count);
  }

private:
  /// Row k of `stack_` is v, row (end - first) + k is w, and the last third is v again: the first
  /// two thirds and the last two are the factors of the update.
  double* V(std::size_t k) { return stack_.Base(k, 0); }
  double* W(std::size_t size, std::size_t k) { return stack_.Base(size + k, 0); }

  void ReduceColumn(std::size_t first, std::size_t end, std::size_t k) {
    const LinearKernels& kernels = Kernels();
    const std::size_t size = end - first, local = k - first;
    const std::size_t rest = n_ - k - 1;
    double* column = a_.Base(k, k);
    for (std::size_t m = 0; m < local; ++m) {
      kernels.axpy(-W(size, m)[k], V(m) + k, column, n_ - k);
      kernels.axpy(-V(m)[k], W(size, m) + k, column, n_ - k);
    }
    d_(k) = column[0];
    double* const v = column + 1;  // becomes the reflection's vector and stays there
    const double norm = NormOf(v, rest);
    if (norm < PIVOT_EPSILON) {
      std::fill_n(v, rest, 0.0);
      return;
    }
    const Reflection reflection = MakeReflection(v, rest, norm);
    e_(k) = reflection.image;
    factors_[k] = reflection.factor;
    std::copy_n(v, rest, V(local) + k + 1);
    std::copy_n(v, rest, stack_.Base(2 * size + local, k + 1));
    double* const w = W(size, local) + k + 1;
    kernels.multiplySymmetric(a_.Base(k + 1, k + 1), n_, rest, v, w);
    for (std::size_t m = 0; m < local; ++m) {
      const double* const formerV = V(m) + k + 1;
      const double* const formerW = W(size, m) + k + 1;
      const double partW = kernels.dot(formerW, v, rest), partV = kernels.dot(formerV, v, rest);
      kernels.axpy(-partW, formerV, w, rest);
      kernels.axpy(-partV, formerW, w, rest);
    }
    kernels.scale(reflection.factor, w, rest);
    kernels.axpy(-0.5 * reflection.factor * kernels.dot(w, v, rest), v, w, rest);
  }

  /// Subtracts what the panel's columns did to the upper triangle behind it, block row by block
  /// row.
  void UpdateRest(std::size_t first, std::size_t end) {
    const std::size_t depth = 2 * (end - first);
    for (std::size_t i = end; i < n_; i += UPDATE_ROWS) {
      const std::size_t rows = std::min(UPDATE_ROWS, n_ - i);
      multiplier_.Add({rows,
                       n_ - i,
                       depth,
                       {stack_.Base(0, i), 1, n_},
                       {stack_.Base(end - first, i), n_, 1},
                       a_.Base(i, i),
                       n_,
                       true});
    }
  }

  /// Makes A the product of all reflections, from the last panel on: I - V^T T V is that of those
  /// of a panel, with a triangle T (R. Schreiber and C. Van Loan, "A storage-efficient WY
  /// representation for products of Householder transformations", 1989). The vectors of the panels
  /// before lie above and left of what is done.
  void FormQ(std::size_t count) {
    std::size_t done = n_;
    for (std::size_t first = (count + PANEL - 1) / PANEL * PANEL; first > 0;) {
      first -= PANEL;
      const std::size_t size = std::min(PANEL, count - first), begin = first + 1;
      const std::size_t rest = n_ - begin;
      Zeros(stack_, size, rest);
      for (std::size_t k = 0; k < size; ++k) {
        std::copy_n(a_.Base(first + k, begin + k), rest - k, stack_.Base(k, k));
      }
      Extend(begin, done);
      done = begin;
      const Strided v{stack_.data(), rest, 1}, transposed{stack_.data(), 1, rest};
      Zeros(products_, size, size);
      multiplier_.Add({size, size, rest, v, transposed, products_.data(), size, false});
      FindTriangle(first, size);
      std::fill_n(first_.begin(), size * rest, 0.0);
      std::fill_n(second_.begin(), size * rest, 0.0);
      multiplier_.Add(
          {size, rest, rest, v, {a_.Base(begin, begin), n_, 1}, first_.data(), rest, false});
      multiplier_.Add({size,
                       rest,
                       size,
                       {triangle_.data(), size, 1},
                       {first_.data(), rest, 1},
                       second_.data(),
                       rest,
                       false});
      multiplier_.Add({rest,
                       rest,
                       size,
                       transposed,
                       {second_.data(), rest, 1},
                       a_.Base(begin, begin),
                       n_,
                       true});
    }
    Extend(0, done);
  }

  /// Makes rows and columns [begin, end) those of the identity, from row and column `begin` on.
  void Extend(std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < n_; ++i) {
      double* const row = a_.Base(i, 0);
      std::fill(row + begin, row + (i < end ? n_ : end), 0.0);
      if (i < end) row[i] = 1.0;
    }
  }

  void FindTriangle(std::size_t first, std::size_t size) {
    Zeros(triangle_, size, size);
    for (std::size_t k = 0; k < size; ++k) {
      const double factor = factors_[first + k];
      triangle_(k, k) = factor;
      for (std::size_t i = 0; i < k; ++i) {
        double sum = 0.0;
        for (std::size_t m = i; m < k; ++m) sum += triangle_(i, m) * products_(m, k);
        triangle_(i, k) = -factor * sum;
      }
    }
  }

  RMatrix& a_;
  RVector& d_;
  RVector& e_;
  std::size_t n_;
  std::vector<double> factors_;
  RMatrix stack_;
  RMatrix products_, triangle_;
  std::vector<double> first_, second_;
  Multiplier multiplier_;
};

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
  Reducer(a, d, e).Run();
  const auto isFinite = [](double x) { return std::isfinite(x); };
  return std::all_of(d.begin(), d.end(), isFinite) && std::all_of(e.begin(), e.end(), isFinite);
}

}  // namespace shr
