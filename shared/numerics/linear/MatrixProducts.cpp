// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/linear/MatrixProducts.h"

#include <algorithm>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/linear/Multiply.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"MatrixProducts";

void Require(bool fits, int line) {
  if (!fits) ThrowInternalError(SHARED_MODULE, UNIT, line);
}

/// Makes `m` the product of two views that fit.
void MultiplyInto(std::uint64_t rows, std::uint64_t columns, std::uint64_t depth, const Strided& a,
                  const Strided& b, RMatrix& m) {
  m.Resize(rows, columns);
  std::fill(m.begin(), m.end(), 0.0);
  Multiplier().Add({static_cast<std::size_t>(rows), static_cast<std::size_t>(columns),
                    static_cast<std::size_t>(depth), a, b, m.data(),
                    static_cast<std::size_t>(columns), false});
}

/// Calls `compute` with the result itself, or with another matrix where the result is an argument.
template <class Compute>
void WithoutOverlap(const RMatrix& a, const RMatrix& b, RMatrix& m, Compute compute) {
  if (&m != &a && &m != &b) return compute(m);
  RMatrix result;
  compute(result);
  m = std::move(result);
}

}  // namespace

double DotProduct(const RVector& a, const RVector& b) {
  Require(a.size() == b.size(), __LINE__);
  return Kernels().dot(a.data(), b.data(), a.size());
}

void InnerProduct(const RVector& a, const RVector& b, double& result) {
  result = DotProduct(a, b);
}

void Product(const RMatrix& a, const RVector& v, RVector& r) {
  Require(a.Columns() == v.size(), __LINE__);
  if (&r == &v) {
    const RVector copy(v);
    return Product(a, copy, r);
  }
  r.Resize(a.Rows());
  const LinearKernels& kernels = Kernels();
  for (std::uint64_t i = 0; i < a.Rows(); ++i) r(i) = kernels.dot(a.Base(i, 0), v.data(), v.size());
}

void InnerProduct(const RMatrix& a, const RVector& v, RVector& r) {
  Require(a.Rows() == v.size(), __LINE__);
  if (&r == &v) {
    const RVector copy(v);
    return InnerProduct(a, copy, r);
  }
  r.Resize(a.Columns());
  std::fill(r.begin(), r.end(), 0.0);
  const LinearKernels& kernels = Kernels();
  for (std::uint64_t i = 0; i < a.Rows(); ++i) {
    kernels.axpy(v(i), a.Base(i, 0), r.data(), r.size());
  }
}

void Product(const RMatrix& a, const RMatrix& b, RMatrix& m) {
  Require(a.Columns() == b.Rows(), __LINE__);
  WithoutOverlap(a, b, m, [&](RMatrix& result) {
    MultiplyInto(a.Rows(), b.Columns(), a.Columns(), ViewOf(a), ViewOf(b), result);
  });
}

void Product(RMatrix& a, const RMatrix& b) {
  Product(a, b, a);
}

void InnerProduct(const RMatrix& a, const RMatrix& b, RMatrix& m) {
  Require(a.Rows() == b.Rows(), __LINE__);
  WithoutOverlap(a, b, m, [&](RMatrix& result) {
    MultiplyInto(a.Columns(), b.Columns(), a.Rows(), TransposeOf(a), ViewOf(b), result);
  });
}

void InnerProduct(RMatrix& a, const RMatrix& b) {
  InnerProduct(a, b, a);
}

void OuterProduct(const RMatrix& a, const RMatrix& b, RMatrix& m) {
  Require(a.Columns() == b.Columns(), __LINE__);
  WithoutOverlap(a, b, m, [&](RMatrix& result) {
    MultiplyInto(a.Rows(), b.Rows(), a.Columns(), ViewOf(a), TransposeOf(b), result);
  });
}

void OuterProduct(RMatrix& a, const RMatrix& b) {
  OuterProduct(a, b, a);
}

void OuterProduct(const RVector& a, const RVector& b, RMatrix& m) {
  m.Resize(a.size(), b.size());
  for (std::uint64_t i = 0; i < a.size(); ++i) {
    double* row = m.Base(i, 0);
    for (std::uint64_t j = 0; j < b.size(); ++j) row[j] = a(i) * b(j);
  }
}

double QuadraticProduct(const RVector& a, const RMatrix& m, const RVector& b) {
  Require(a.size() == m.Rows() && b.size() == m.Columns(), __LINE__);
  const LinearKernels& kernels = Kernels();
  double sum = 0.0;
  for (std::uint64_t i = 0; i < m.Rows(); ++i) {
    sum += a(i) * kernels.dot(m.Base(i, 0), b.data(), b.size());
  }
  return sum;
}

void QuadraticProduct(const RVector& a, const RMatrix& m, const RVector& b, double& result) {
  result = QuadraticProduct(a, m, b);
}

}  // namespace shr
