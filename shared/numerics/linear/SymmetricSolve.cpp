// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Small matrices are factored column by column where they are. Larger ones go panel by panel, each
// PANEL columns wide (left-looking: what stands behind a panel is untouched until its turn, which
// is also what a refused pivot must leave behind):
//
//   1. The products of all columns before it are subtracted from a copy of the panel.
//   2. The copy is turned, so that its columns lie in memory one after the other, and factored by
//      halves: the left half, its products from the right half, the right half; a narrow one column
//      by column.
//   3. As many columns as succeeded go back, and of a refused one what was done to it.
//
// L D L^T is the same with the left factor of all products times D.

#include "shared/numerics/linear/SymmetricSolve.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <tuple>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/linear/Multiply.h"
#include "shared/numerics/linear/Pivot.h"
#include "shared/numerics/linear/PositiveEigen.h"
#include "shared/numerics/linear/TriangularSolve.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"SymmetricSolve";

/// Up to here a matrix is factored without panels.
constexpr std::size_t SMALL = 32;
/// Shorter sums are formed one term after the other.
constexpr std::size_t SHORT = 10;
constexpr std::size_t PANEL = 64;
/// Columns of a panel that are factored one by one.
constexpr std::size_t NARROW = 8;

enum class Kind { Cholesky, Symmetric };

void Require(bool fits, int line) {
  if (!fits) ThrowInternalError(SHARED_MODULE, UNIT, line);
}

std::size_t OrderOf(const RMatrix& a, int line) {
  Require(a.Rows() == a.Columns(), line);
  return static_cast<std::size_t>(a.Rows());
}

/// The dot product of short rows, for which calling the loops takes longer than running them.
double ShortDot(const double* x, const double* y, std::size_t n) {
  double sum = 0.0;
  for (std::size_t i = 0; i < n; ++i) sum += x[i] * y[i];
  return sum;
}

bool CholeskySmall(RMatrix& a, std::size_t n, double leastPivot) {
  const LinearKernels& kernels = Kernels();
  const auto dot = [&](const double* x, const double* y, std::size_t count) {
    return count < SHORT ? ShortDot(x, y, count) : kernels.dot(x, y, count);
  };
  for (std::size_t k = 0; k < n; ++k) {
    const double* row = a.Base(k, 0);
    for (std::size_t i = k; i < n; ++i) a(i, k) -= dot(a.Base(i, 0), row, k);
    if (a(k, k) < leastPivot) return false;
    const double pivot = a(k, k) = std::sqrt(a(k, k));
    for (std::size_t i = k + 1; i < n; ++i) a(i, k) /= pivot;
  }
  return true;
}

bool SymmetricSmall(RMatrix& a, std::size_t n) {
  const LinearKernels& kernels = Kernels();
  double scaled[SMALL];
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t k = 0; k < j; ++k) scaled[k] = a(j, k) * a(k, k);
    a(j, j) -= kernels.dot(a.Base(j, 0), scaled, j);
    if (IsNegligible(a(j, j))) return false;
    for (std::size_t i = j + 1; i < n; ++i) {
      a(i, j) = (a(i, j) - kernels.dot(a.Base(i, 0), scaled, j)) / a(j, j);
    }
  }
  return true;
}

/// Factors a matrix panel by panel.
class Factorizer {
public:
  Factorizer(RMatrix& a, Kind kind, double leastPivot = PIVOT_EPSILON)
      : a_(a),
        kind_(kind),
        leastPivot_(leastPivot),
        n_(static_cast<std::size_t>(a.Rows())),
        rowStep_(RoundUp(n_)) {
    panel_.reset(new double[PANEL * n_]);
    turned_.reset(new double[PANEL * rowStep_]);
    if (kind == Kind::Symmetric) scaled_.reset(new double[PANEL * rowStep_]);
  }

  bool Run() {
    for (std::size_t first = 0; first < n_; first += PANEL) {
      width_ = std::min(PANEL, n_ - first);
      rows_ = n_ - first;
      SubtractFormer(first);
      const std::size_t good = FactorColumns(0, width_);
      PutBack(first, good);
      if (good != width_) return false;
    }
    return true;
  }

private:
  /// To whole strips of the product, so that they are read in place.
  static std::size_t RoundUp(std::size_t n) {
    return (n + MULTIPLY_STRIP - 1) / MULTIPLY_STRIP * MULTIPLY_STRIP;
  }
  double* Column(std::size_t j) { return &turned_[j * rowStep_]; }

  /// Copies the panel that begins at column `first`, with the columns before it done, and turns it.
  void SubtractFormer(std::size_t first) {
    for (std::size_t i = 0; i < rows_; ++i) {
      std::copy_n(a_.Base(first + i, first), std::min(width_, i + 1), &panel_[i * width_]);
      std::fill(&panel_[i * width_] + std::min(width_, i + 1), &panel_[i * width_] + width_, 0.0);
    }
    const std::size_t step = static_cast<std::size_t>(a_.Columns());
    Strided right{a_.Base(first, 0), 1, step};
    if (kind_ == Kind::Symmetric && first != 0) {
      for (std::size_t j = 0; j < width_; ++j) {
        for (std::size_t k = 0; k < first; ++k) scaled_[j * n_ + k] = a_(first + j, k) * a_(k, k);
      }
      right = {scaled_.get(), 1, n_};
    }
    multiplier_.Add(
        {rows_, width_, first, {a_.Base(first, 0), step, 1}, right, panel_.get(), width_, true});
    for (std::size_t i = 0; i < rows_; ++i) {
      for (std::size_t j = 0; j < width_; ++j) Column(j)[i] = panel_[i * width_ + j];
    }
    for (std::size_t j = 0; j < width_; ++j) {
      std::fill(Column(j) + rows_, Column(j) + rowStep_, 0.0);
    }
  }

  /// Returns `end`, or the column whose pivot was refused.
  std::size_t FactorColumns(std::size_t first, std::size_t end) {
    if (end - first <= NARROW) return FactorNarrow(first, end);
    const std::size_t middle = first + RoundUp((end - first) / 2);
    const std::size_t good = FactorColumns(first, middle);
    if (good != middle) return good;
    // Row `first` is a multiple of NARROW; rows before `middle` of these columns are not used.
    const double* left = Column(first) + middle;
    if (kind_ == Kind::Symmetric) {
      for (std::size_t k = first; k < middle; ++k) {
        const double pivot = Column(k)[k];
        double* row = &scaled_[k * rowStep_];
        for (std::size_t i = middle; i < end; ++i) row[i] = Column(k)[i] * pivot;
      }
      left = &scaled_[first * rowStep_] + middle;
    }
    multiplier_.Add({end - middle,
                     RoundUp(rows_) - middle,
                     middle - first,
                     {left, 1, rowStep_},
                     {Column(first) + middle, rowStep_, 1},
                     Column(middle) + middle,
                     rowStep_,
                     true});
    return FactorColumns(middle, end);
  }

  std::size_t FactorNarrow(std::size_t first, std::size_t end) {
    const LinearKernels& kernels = Kernels();
    for (std::size_t j = first; j < end; ++j) {
      double* column = Column(j);
      for (std::size_t k = first; k < j; ++k) {
        const double factor = Column(k)[j] * (kind_ == Kind::Symmetric ? Column(k)[k] : 1.0);
        kernels.axpy(-factor, Column(k) + j, column + j, rows_ - j);
      }
      if (kind_ == Kind::Cholesky) {
        if (column[j] < leastPivot_) return j;
        column[j] = std::sqrt(column[j]);
      } else if (IsNegligible(column[j])) {
        return j;
      }
      kernels.divide(column[j], column + j + 1, rows_ - j - 1);
    }
    return end;
  }

  /// Stores the columns before `good`, and of that one what is to be seen of it.
  void PutBack(std::size_t first, std::size_t good) {
    for (std::size_t i = 0; i < rows_; ++i) {
      double* row = a_.Base(first + i, first);
      const std::size_t count = std::min(good, i + 1);
      for (std::size_t j = 0; j < count; ++j) row[j] = Column(j)[i];
      const bool isSeen = kind_ == Kind::Cholesky ? i >= good : i == good;
      if (good < width_ && isSeen) row[good] = Column(good)[i];
    }
  }

  RMatrix& a_;
  Kind kind_;
  double leastPivot_;
  std::size_t n_;
  std::size_t rowStep_;
  std::size_t width_ = 0;
  std::size_t rows_ = 0;
  std::unique_ptr<double[]> panel_;   // rows x width
  std::unique_ptr<double[]> turned_;  // a column of the panel after the other, rowStep_ apart
  std::unique_ptr<double[]> scaled_;
  Multiplier multiplier_;
};

/// The symmetric tridiagonal T and the unit triangle L that Aasen's method finds.
class Aasen {
public:
  Aasen(RMatrix& a, std::vector<std::uint64_t>* order)
      : a_(a), order_(order), n_(static_cast<std::size_t>(a.Rows())), h_(n_), v_(n_) {}

  /// With H = T L^T, A = L H. Of column j of H the elements up to j follow from T and row j of L,
  /// and what L H leaves of column j of A is v = H(j+1, j) L(., j+1): its first element is T's next
  /// one below the diagonal, the rest, divided by it, the next column of L.
  void Run() {
    for (std::size_t j = 0; j < n_; ++j) {
      for (std::size_t k = 1; k < j; ++k) {
        h_[k] = Below(k - 1) * L(j, k - 1) + a_(k, k) * L(j, k) + Below(k) * L(j, k + 1);
      }
      FindColumn(j);
      if (j + 1 < n_) NextColumn(j);
    }
  }

private:
  double Below(std::size_t k) const { return a_(k + 1, k); }
  double L(std::size_t i, std::size_t k) const {
    if (i == k) return 1.0;
    return k == 0 || i < k ? 0.0 : a_(i, k - 1);
  }

  /// Finds element (j, j) of T and the rest of column j of A.
  void FindColumn(std::size_t j) {
    double h = a_(j, j);
    for (std::size_t k = 1; k < j; ++k) h -= L(j, k) * h_[k];
    h_[j] = h;
    if (j > 0) h -= Below(j - 1) * L(j, j - 1);
    for (std::size_t i = j + 1; i < n_; ++i) {
      double rest = a_(i, j);
      for (std::size_t k = 1; k <= j; ++k) rest -= L(i, k) * h_[k];
      v_[i] = rest;
    }
    a_(j, j) = h;
  }

  void NextColumn(std::size_t j) {
    if (order_ != nullptr) BringUp(j);
    const double pivot = v_[j + 1];
    a_(j + 1, j) = pivot;
    for (std::size_t i = j + 2; i < n_; ++i) a_(i, j) = IsNegligible(pivot) ? 0.0 : v_[i] / pivot;
  }

  /// Exchanges row and column j + 1 with those of the largest element of v.
  void BringUp(std::size_t j) {
    std::size_t largest = j + 1;
    for (std::size_t i = j + 2; i < n_; ++i) {
      if (std::abs(v_[i]) > std::abs(v_[largest])) largest = i;
    }
    if (largest == j + 1) return;
    const std::size_t p = j + 1, q = largest;
    std::swap(v_[p], v_[q]);
    std::swap((*order_)[p], (*order_)[q]);
    for (std::size_t k = 0; k < j; ++k) std::swap(a_(p, k), a_(q, k));
    for (std::size_t k = p + 1; k < q; ++k) std::swap(a_(k, p), a_(q, k));
    for (std::size_t k = q + 1; k < n_; ++k) std::swap(a_(k, p), a_(k, q));
    std::swap(a_(p, p), a_(q, q));
  }

  RMatrix& a_;
  std::vector<std::uint64_t>* order_;
  std::size_t n_;
  std::vector<double> h_;
  std::vector<double> v_;
};

/// Solves T x = b with the tridiagonal T on the diagonal of `f` and below, by elimination with row
/// exchanges.
bool SolveTridiagonal(const RMatrix& f, RVector& b) {
  const std::size_t n = static_cast<std::size_t>(b.size());
  std::vector<double> diagonal(n), above(n), second(n);
  for (std::size_t i = 0; i < n; ++i) diagonal[i] = f(i, i);
  for (std::size_t i = 0; i + 1 < n; ++i) above[i] = f(i + 1, i);
  for (std::size_t i = 0; i + 1 < n; ++i) {
    double below = f(i + 1, i);
    if (std::abs(below) > std::abs(diagonal[i])) {
      std::swap(diagonal[i], below);
      std::swap(above[i], diagonal[i + 1]);
      std::swap(second[i], above[i + 1]);
      std::swap(b(i), b(i + 1));
    }
    if (IsNegligible(diagonal[i])) return false;
    const double factor = below / diagonal[i];
    diagonal[i + 1] -= factor * above[i];
    above[i + 1] -= factor * second[i];
    b(i + 1) -= factor * b(i);
  }
  if (n != 0 && IsNegligible(diagonal[n - 1])) return false;
  for (std::size_t i = n; i-- > 0;) {
    if (i + 1 < n) b(i) -= above[i] * b(i + 1);
    if (i + 2 < n) b(i) -= second[i] * b(i + 2);
    b(i) /= diagonal[i];
  }
  return true;
}

}  // namespace

bool SymmetricDecomposition(RMatrix& a) {
  const std::size_t n = OrderOf(a, __LINE__);
  return n <= SMALL ? SymmetricSmall(a, n) : Factorizer(a, Kind::Symmetric).Run();
}

void SymmetricSolve(const RMatrix& factor, RVector& b) {
  UnitForwardElimination(factor, b);
  std::ignore = DiagonalSolve(factor, b);
  UnitBackSubstitution(factor, b);
}

void SymmetricSolve(const RMatrix& factor, RMatrix& b) {
  UnitForwardElimination(factor, b);
  std::ignore = DiagonalSolve(factor, b);
  UnitBackSubstitution(factor, b);
}

bool CholeskyDecomposition(RMatrix& a) {
  OrderOf(a, __LINE__);
  return CholeskyFactor(a, PIVOT_EPSILON);
}

bool CholeskyFactor(RMatrix& a, double leastPivot) {
  const std::size_t n = static_cast<std::size_t>(a.Rows());
  return n <= SMALL ? CholeskySmall(a, n, leastPivot)
                    : Factorizer(a, Kind::Cholesky, leastPivot).Run();
}

void CholeskySolve(const RMatrix& l, RVector& b) {
  std::ignore = ForwardElimination(l, b);
  std::ignore = BackSubstitution(l, b);
}

void CholeskySolve(const RMatrix& l, RMatrix& b) {
  std::ignore = ForwardElimination(l, b);
  std::ignore = BackSubstitution(l, b);
}

void AasenDecomposition(RMatrix& a) {
  OrderOf(a, __LINE__);
  Aasen(a, nullptr).Run();
}

void AasenDecomposition(RMatrix& a, std::vector<std::uint64_t>& order) {
  const std::size_t n = OrderOf(a, __LINE__);
  order.resize(n);
  for (std::size_t i = 0; i < n; ++i) order[i] = i;
  Aasen(a, &order).Run();
}

bool AasenSolve(const RMatrix& factor, RVector& b) {
  Require(OrderOf(factor, __LINE__) == b.size(), __LINE__);
  const std::size_t n = static_cast<std::size_t>(b.size());
  for (std::size_t i = 2; i < n; ++i) {
    for (std::size_t k = 1; k < i; ++k) b(i) -= factor(i, k - 1) * b(k);
  }
  if (!SolveTridiagonal(factor, b)) return false;
  for (std::size_t i = n; i-- > 2;) {
    for (std::size_t k = 1; k < i; ++k) b(k) -= factor(i, k - 1) * b(i);
  }
  return true;
}

bool AasenSolve(const RMatrix& factor, const std::vector<std::uint64_t>& order, RVector& b) {
  Require(factor.Rows() == order.size() && b.size() == order.size(), __LINE__);
  RVector ordered(b.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    Require(order[i] < b.size(), __LINE__);
    ordered(i) = b(order[i]);
  }
  const bool isSolved = AasenSolve(factor, ordered);
  for (std::size_t i = 0; i < order.size(); ++i) b(order[i]) = ordered(i);
  return isSolved;
}

}  // namespace shr
