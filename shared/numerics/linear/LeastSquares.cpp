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
        sums_(columns_ + b.count),
        blockSums_(columns_ + b.count) {}

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
    std::fill(sums_.begin(), sums_.end(), 0.0);
    for (std::size_t first = 0; first < rows_; first += BLOCK) {
      std::fill(blockSums_.begin(), blockSums_.end(), 0.0);
      for (std::size_t i = first; i < std::min(first + BLOCK, rows_); ++i) {
        double* row = a_.Base(i, 0);
        if (k > 0) {
          const double q = row[k - 1] /= R(k - 1, k - 1);
          kernels.axpy(-q, &R(k - 1, 0) + k, row + k, columns_ - k);
          kernels.axpy(-q, x_.Row(k - 1), b_.Row(i), b_.count);
        }
        if (k < columns_) {
          kernels.axpy(row[k], row + k, &blockSums_[k], columns_ - k);
          kernels.axpy(row[k], b_.Row(i), blockSums_.data() + columns_, b_.count);
        }
      }
      for (std::size_t j = 0; j < sums_.size(); ++j) sums_[j] += blockSums_[j];
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
  std::vector<double> sums_;
  std::vector<double> blockSums_;
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
