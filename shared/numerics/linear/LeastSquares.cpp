// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The matrix is stored by rows, and the method works on columns. So that memory is read as it lies,
// step k goes over the rows once. In each row it
//
//   1. subtracts what step k - 1 found, r(k-1, j) q(i, k-1), from the elements j >= k and from b,
//   2. adds the products of element k with all later ones, and with b, to sums.
//
// At the end of the pass the first sum is the square of the length of column k, and the others
// divided by the length are r(k, j). The columns are the same as when column k is first divided by
// its length. Sums go over BLOCK rows, then to the sums of all: that keeps their errors small.

#include "shared/numerics/linear/LeastSquares.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/linear/Kernels.h"
#include "shared/numerics/linear/Pivot.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"LeastSquares";
constexpr std::size_t BLOCK = 64;
constexpr std::size_t LANES = 4;

void Require(bool fits, int line) {
  if (!fits) ThrowInternalError(SHARED_MODULE, UNIT, line);
}

/// Right-hand sides, or solutions, row by row.
struct Sides {
  double* data;
  std::size_t count;

  double* Row(std::size_t i) const { return data + i * count; }
};

class Orthogonalizer {
public:
  Orthogonalizer(RMatrix& a, const Sides& x, const Sides& b)
      : a_(a),
        x_(x),
        b_(b),
        rows_(static_cast<std::size_t>(a.Rows())),
        columns_(static_cast<std::size_t>(a.Columns())),
        r_(columns_ * columns_),
        factors_(columns_ + 1),
        noSides_(b.count),
        sums_(columns_ + b.count + 1),
        blockSums_(columns_ + b.count + 1) {}

  bool Run() {
    for (std::size_t k = 0; k < columns_; ++k) {
      Pass(k);
      const double squares = sums_[k];
      if (squares < PIVOT_EPSILON) return false;
      const double length = std::sqrt(squares);
      R(k, k) = length;
      for (std::size_t j = k + 1; j < columns_; ++j) R(k, j) = sums_[j] / length;
      for (std::size_t j = 0; j < b_.count; ++j) x_.Row(k)[j] = sums_[columns_ + j] / length;
    }
    if (columns_ != 0) Pass(columns_);
    return SubstituteBack();
  }

private:
  double& R(std::size_t i, std::size_t j) { return r_[i * columns_ + j]; }

  /// Subtracts the parts of column k - 1 and sums the products with column k.
  void Pass(std::size_t k) {
    const LinearKernels& kernels = Kernels();
    // Columns are taken in fours; those before k in the first four have a factor of 0 and stay.
    const std::size_t begin = k / LANES * LANES;
    std::fill(factors_.begin(), factors_.end(), 0.0);
    if (k > 0) std::copy(&R(k - 1, 0) + k, &R(k - 1, 0) + columns_, &factors_[k]);
    const double* const sideFactors = k > 0 ? x_.Row(k - 1) : noSides_.data();
    std::fill(sums_.begin(), sums_.end(), 0.0);
    for (std::size_t first = 0; first < rows_; first += BLOCK) {
      const std::size_t count = std::min(BLOCK, rows_ - first);
      FindParts(k, first, count);
      std::fill(blockSums_.begin(), blockSums_.end(), 0.0);
      kernels.project({a_.Base(first, begin), columns_, count, columns_ - begin, &factors_[begin],
                       parts_, values_, &blockSums_[begin]});
      if (b_.count == 1) {
        kernels.axpy(-*sideFactors, parts_, b_.Row(first), count);
        blockSums_[columns_] = kernels.dot(values_, b_.Row(first), count);
      } else {
        kernels.project({b_.Row(first), b_.count, count, b_.count, sideFactors, parts_, values_,
                         &blockSums_[columns_]});
      }
      if (k > 0) {
        double* column = a_.Base(first, k - 1);
        for (std::size_t i = 0; i < count; ++i, column += columns_) *column = parts_[i];
      }
      for (std::size_t j = begin; j < sums_.size(); ++j) sums_[j] += blockSums_[j];
    }
  }

  /// Divides rows [first, first + count) of column k - 1 and finds what column k will be there. The
  /// quotients are stored later: what was just written in parts is slow to load as a whole.
  void FindParts(std::size_t k, std::size_t first, std::size_t count) {
    if (k == 0) {
      std::fill_n(parts_, count, 0.0);
    } else {
      const double* column = a_.Base(first, k - 1);
      for (std::size_t i = 0; i < count; ++i, column += columns_) parts_[i] = *column;
      Kernels().divide(R(k - 1, k - 1), parts_, count);
    }
    if (k == columns_) {
      std::fill_n(values_, count, 0.0);
      return;
    }
    const double factor = factors_[k];
    const double* column = a_.Base(first, k);
    for (std::size_t i = 0; i < count; ++i, column += columns_) {
      values_[i] = *column - parts_[i] * factor;
    }
  }

  bool SubstituteBack() {
    const LinearKernels& kernels = Kernels();
    for (std::size_t i = columns_; i-- > 0;) {
      if (IsNegligible(R(i, i))) return false;
      for (std::size_t k = i + 1; k < columns_; ++k) {
        kernels.axpy(-R(i, k), x_.Row(k), x_.Row(i), x_.count);
      }
      kernels.divide(R(i, i), x_.Row(i), x_.count);
    }
    return true;
  }

  RMatrix& a_;
  Sides x_;
  Sides b_;
  std::size_t rows_;
  std::size_t columns_;
  std::vector<double> r_;
  std::vector<double> factors_;  // of column k - 1 in the later ones
  std::vector<double> noSides_;  // zeros
  std::vector<double> sums_;     // products with column k: of the columns, then of b
  std::vector<double> blockSums_;
  double parts_[BLOCK];   // column k - 1 of a block
  double values_[BLOCK];  // column k
};

}  // namespace

bool MGSLeastSquares(RMatrix& a, RVector& x, RVector& b) {
  Require(b.size() == a.Rows() && x.size() == a.Columns(), __LINE__);
  return Orthogonalizer(a, {x.data(), 1}, {b.data(), 1}).Run();
}

bool MGSLeastSquares(RMatrix& a, RMatrix& x, RMatrix& b) {
  Require(b.Rows() == a.Rows() && x.Rows() == a.Columns() && x.Columns() == b.Columns(), __LINE__);
  const std::size_t count = static_cast<std::size_t>(b.Columns());
  return Orthogonalizer(a, {x.data(), count}, {b.data(), count}).Run();
}

}  // namespace shr
