// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Small systems are eliminated row by row. Larger ones go panel by panel, each PANEL columns wide:
//
//   1. The panel is turned, so that its columns lie in memory one after the other, and factored by
//      halves (S. Toledo, "Locality of Reference in LU Decomposition with Partial Pivoting", 1997):
//      the left half, what follows from it for the right half, the right half; a narrow one column
//      by column.
//   2. Its row exchanges are made in what stands to the right and in b, its columns eliminated from
//   b.
//   3. The rows of the panel go to the right, then their product with what is below is subtracted.
//
// The right-hand side is carried along as the method tells, so that after a refused pivot it holds
// what the columns before made of it.

#include "shared/numerics/linear/GaussSolve.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/linear/Multiply.h"
#include "shared/numerics/linear/Pivot.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"GaussSolve";

/// Up to here a system is eliminated without panels.
constexpr std::size_t SMALL = 32;
constexpr std::size_t PANEL = 64;
/// Columns, or rows, that are done one by one.
constexpr std::size_t NARROW = 8;

void Require(bool fits, int line) {
  if (!fits) ThrowInternalError(SHARED_MODULE, UNIT, line);
}

/// Right-hand sides, row by row.
struct Sides {
  double* data;
  std::size_t count;

  double* Row(std::size_t i) const { return data + i * count; }
  void SwapRows(std::size_t i, std::size_t j) const {
    std::swap_ranges(Row(i), Row(i) + count, Row(j));
  }
  void Subtract(double factor, std::size_t from, std::size_t to) const {
    if (count == 1) {
      data[to] -= factor * data[from];
    } else {
      Kernels().axpy(-factor, Row(from), Row(to), count);
    }
  }
  void DivideRow(std::size_t i, double pivot) const {
    if (count == 1) {
      data[i] /= pivot;
    } else {
      Kernels().divide(pivot, Row(i), count);
    }
  }
};

bool EliminateSmall(RMatrix& a, std::size_t n, const Sides& b) {
  const LinearKernels& kernels = Kernels();
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t pivotRow = k;
    for (std::size_t i = k + 1; i < n; ++i) {
      if (std::abs(a(i, k)) > std::abs(a(pivotRow, k))) pivotRow = i;
    }
    if (IsNegligible(a(pivotRow, k))) return false;
    if (pivotRow != k) {
      std::swap_ranges(a.Base(k, k), a.Base(k, 0) + n, a.Base(pivotRow, k));
      b.SwapRows(k, pivotRow);
    }
    const double pivot = a(k, k);
    for (std::size_t i = k + 1; i < n; ++i) {
      const double factor = a(i, k) / pivot;
      kernels.axpy(-factor, a.Base(k, k + 1), a.Base(i, k + 1), n - k - 1);
      b.Subtract(factor, k, i);
    }
  }
  return true;
}

/// Eliminates a matrix panel by panel.
class Eliminator {
public:
  Eliminator(RMatrix& a, const Sides& b)
      : a_(a),
        b_(b),
        n_(static_cast<std::size_t>(a.Rows())),
        rowStep_(RoundUp(n_)),
        turned_(new double[PANEL * rowStep_]),
        pivots_(PANEL) {}

  bool Run() {
    for (std::size_t first = 0; first < n_; first += PANEL) {
      width_ = std::min(PANEL, n_ - first);
      rows_ = n_ - first;
      Turn(first);
      const std::size_t good = FactorColumns(0, width_);
      EliminateSides(first, good);
      if (good != width_) return false;
      PutBack(first);
      EliminateRight(first);
    }
    return true;
  }

private:
  /// To whole strips of the product, so that they are read in place.
  static std::size_t RoundUp(std::size_t n) {
    return (n + MULTIPLY_STRIP - 1) / MULTIPLY_STRIP * MULTIPLY_STRIP;
  }
  double* Column(std::size_t j) { return &turned_[j * rowStep_]; }

  void Turn(std::size_t first) {
    for (std::size_t i = 0; i < rows_; ++i) {
      const double* row = a_.Base(first + i, first);
      for (std::size_t j = 0; j < width_; ++j) Column(j)[i] = row[j];
    }
    for (std::size_t j = 0; j < width_; ++j) {
      std::fill(Column(j) + rows_, Column(j) + rowStep_, 0.0);
    }
  }

  void PutBack(std::size_t first) {
    for (std::size_t i = 0; i < rows_; ++i) {
      double* row = a_.Base(first + i, first);
      for (std::size_t j = 0; j < width_; ++j) row[j] = Column(j)[i];
    }
  }

  /// Returns `end`, or the column whose pivot was refused.
  std::size_t FactorColumns(std::size_t first, std::size_t end) {
    if (end - first <= NARROW) return FactorNarrow(first, end);
    const std::size_t middle = first + RoundUp((end - first) / 2);
    const std::size_t good = FactorColumns(first, middle);
    if (good != middle) return good;
    const LinearKernels& kernels = Kernels();
    for (std::size_t j = middle; j < end; ++j) {
      for (std::size_t k = first; k + 1 < middle; ++k) {
        kernels.axpy(-Column(j)[k], Column(k) + k + 1, Column(j) + k + 1, middle - k - 1);
      }
    }
    multiplier_.Add({end - middle,
                     RoundUp(rows_) - middle,
                     middle - first,
                     {Column(middle) + first, rowStep_, 1},
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
      std::size_t pivotRow = j;
      for (std::size_t i = j + 1; i < rows_; ++i) {
        if (std::abs(column[i]) > std::abs(column[pivotRow])) pivotRow = i;
      }
      if (IsNegligible(column[pivotRow])) return j;
      pivots_[j] = pivotRow;
      if (pivotRow != j) {
        for (std::size_t k = 0; k < width_; ++k) std::swap(Column(k)[j], Column(k)[pivotRow]);
      }
      kernels.divide(column[j], column + j + 1, rows_ - j - 1);
      for (std::size_t k = j + 1; k < end; ++k) {
        kernels.axpy(-Column(k)[j], column + j + 1, Column(k) + j + 1, rows_ - j - 1);
      }
    }
    return end;
  }

  /// Makes the exchanges of the first `good` columns in b and eliminates them there.
  void EliminateSides(std::size_t first, std::size_t good) {
    for (std::size_t j = 0; j < good; ++j) {
      if (pivots_[j] != j) b_.SwapRows(first + j, first + pivots_[j]);
    }
    for (std::size_t j = 0; j < good; ++j) {
      if (b_.count == 1) {
        Kernels().axpy(-b_.data[first + j], Column(j) + j + 1, b_.data + first + j + 1,
                       rows_ - j - 1);
        continue;
      }
      for (std::size_t i = j + 1; i < rows_; ++i) b_.Subtract(Column(j)[i], first + j, first + i);
    }
  }

  /// Does to the columns behind the panel what was done to it.
  void EliminateRight(std::size_t first) {
    const std::size_t begin = first + width_;
    const std::size_t count = n_ - begin;
    if (count == 0) return;
    for (std::size_t j = 0; j < width_; ++j) {
      if (pivots_[j] == j) continue;
      double* row = a_.Base(first + j, begin);
      std::swap_ranges(row, row + count, a_.Base(first + pivots_[j], begin));
    }
    EliminateRows(first, 0, width_);
    multiplier_.Add({rows_ - width_,
                     count,
                     width_,
                     {a_.Base(begin, first), n_, 1},
                     {a_.Base(first, begin), n_, 1},
                     a_.Base(begin, begin),
                     n_,
                     true});
  }

  /// Eliminates among rows [top, end) of the panel, to the right of it.
  void EliminateRows(std::size_t first, std::size_t top, std::size_t end) {
    const std::size_t begin = first + width_;
    const std::size_t count = n_ - begin;
    if (end - top <= NARROW) {
      const LinearKernels& kernels = Kernels();
      for (std::size_t i = top + 1; i < end; ++i) {
        for (std::size_t k = top; k < i; ++k) {
          kernels.axpy(-a_(first + i, first + k), a_.Base(first + k, begin),
                       a_.Base(first + i, begin), count);
        }
      }
      return;
    }
    const std::size_t middle = top + RoundUp((end - top) / 2);
    EliminateRows(first, top, middle);
    multiplier_.Add({end - middle,
                     count,
                     middle - top,
                     {a_.Base(first + middle, first + top), n_, 1},
                     {a_.Base(first + top, begin), n_, 1},
                     a_.Base(first + middle, begin),
                     n_,
                     true});
    EliminateRows(first, middle, end);
  }

  RMatrix& a_;
  Sides b_;
  std::size_t n_;
  std::size_t rowStep_;
  std::size_t width_ = 0;
  std::size_t rows_ = 0;
  std::unique_ptr<double[]> turned_;  // a column of the panel after the other, rowStep_ apart
  std::vector<std::size_t> pivots_;
  Multiplier multiplier_;
};

/// Solves with the upper triangle of `a`.
void SubstituteBack(const RMatrix& a, std::size_t n, const Sides& b) {
  const LinearKernels& kernels = Kernels();
  for (std::size_t i = n; i-- > 0;) {
    if (b.count == 1) {
      b.data[i] -= kernels.dot(a.Base(i, i + 1), b.data + i + 1, n - i - 1);
    } else {
      for (std::size_t k = i + 1; k < n; ++k) b.Subtract(a(i, k), k, i);
    }
    b.DivideRow(i, a(i, i));
  }
}

bool Solve(RMatrix& a, const Sides& b) {
  const std::size_t n = static_cast<std::size_t>(a.Rows());
  const bool isRegular = n <= SMALL ? EliminateSmall(a, n, b) : Eliminator(a, b).Run();
  if (isRegular) SubstituteBack(a, n, b);
  return isRegular;
}

}  // namespace

bool GaussSolve(RMatrix& a, RVector& b) {
  Require(a.Rows() == a.Columns() && a.Rows() == b.size(), __LINE__);
  return Solve(a, {b.data(), 1});
}

bool GaussSolve(RMatrix& a, RMatrix& b) {
  Require(a.Rows() == a.Columns() && a.Rows() == b.Rows(), __LINE__);
  return Solve(a, {b.data(), static_cast<std::size_t>(b.Columns())});
}

bool Solve3x3(const RMatrix& a, const RVector& b, RVector& x) {
  Require(a.Rows() == 3 && a.Columns() == 3 && b.size() == 3, __LINE__);
  // The determinant of the matrix with columns p, q and r, expanded along the first one.
  const auto determinant = [](const double(&p)[3], const double(&q)[3], const double(&r)[3]) {
    return p[0] * (q[1] * r[2] - q[2] * r[1]) - p[1] * (q[0] * r[2] - q[2] * r[0]) +
           p[2] * (q[0] * r[1] - q[1] * r[0]);
  };
  double columns[3][3];
  for (std::size_t j = 0; j < 3; ++j) {
    for (std::size_t i = 0; i < 3; ++i) columns[j][i] = a(i, j);
  }
  const double side[3] = {b(0), b(1), b(2)};
  const double whole = determinant(columns[0], columns[1], columns[2]);
  if (whole < TINY) return false;
  x.Resize(3);
  x(0) = determinant(side, columns[1], columns[2]) / whole;
  x(1) = determinant(columns[0], side, columns[2]) / whole;
  x(2) = determinant(columns[0], columns[1], side) / whole;
  return true;
}

}  // namespace shr
