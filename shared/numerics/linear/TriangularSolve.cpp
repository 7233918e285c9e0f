// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Both directions run along the rows of L, as they lie in memory: forward elimination takes the dot
// product of a row with what is known, back substitution subtracts the row of an unknown, times its
// value, from all that stand above. That changes elements for which a pivot may yet be refused, so
// the pivots are looked at first. Columns of a matrix are solved side by side, row operation by row
// operation.

#include "shared/numerics/linear/TriangularSolve.h"

#include "shared/diagnostics/ThrowError.h"
#include "shared/numerics/linear/Kernels.h"
#include "shared/numerics/linear/Pivot.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"TriangularSolve";

std::uint64_t RowsOf(const RVector& b) {
  return b.size();
}
std::uint64_t RowsOf(const RMatrix& b) {
  return b.Rows();
}

template <class Side>
void Require(const RMatrix& matrix, const Side& b, int line) {
  const bool fits = matrix.Rows() == matrix.Columns() && matrix.Rows() == RowsOf(b);
  if (!fits) ThrowInternalError(SHARED_MODULE, UNIT, line);
}

/// Returns the number of pivots before the first that is refused.
std::uint64_t GoodPivots(const RMatrix& m) {
  std::uint64_t i = 0;
  while (i < m.Rows() && !IsNegligible(m(i, i))) ++i;
  return i;
}

/// Returns the index behind the last pivot that is refused, 0 when there is none.
std::uint64_t BehindBadPivots(const RMatrix& m) {
  std::uint64_t i = m.Rows();
  while (i > 0 && !IsNegligible(m(i - 1, i - 1))) --i;
  return i;
}

/// Solves the first `end` rows.
void Forward(const RMatrix& l, RVector& b, std::uint64_t end, bool isUnit) {
  const LinearKernels& kernels = Kernels();
  for (std::uint64_t i = 0; i < end; ++i) {
    const double rest = b(i) - kernels.dot(l.Base(i, 0), b.data(), i);
    b(i) = isUnit ? rest : rest / l(i, i);
  }
}

void Forward(const RMatrix& l, RMatrix& b, std::uint64_t end, bool isUnit) {
  const LinearKernels& kernels = Kernels();
  for (std::uint64_t i = 0; i < end; ++i) {
    for (std::uint64_t k = 0; k < i; ++k) {
      kernels.axpy(-l(i, k), b.Base(k, 0), b.Base(i, 0), b.Columns());
    }
    if (!isUnit) kernels.divide(l(i, i), b.Base(i, 0), b.Columns());
  }
}

/// Solves the rows from the last one up to `first`; those before it stay.
void Back(const RMatrix& l, RVector& b, std::uint64_t first, bool isUnit) {
  const LinearKernels& kernels = Kernels();
  for (std::uint64_t i = b.size(); i-- > first;) {
    if (!isUnit) b(i) /= l(i, i);
    kernels.axpy(-b(i), l.Base(i, first), b.Base(first), i - first);
  }
}

void Back(const RMatrix& l, RMatrix& b, std::uint64_t first, bool isUnit) {
  const LinearKernels& kernels = Kernels();
  for (std::uint64_t i = b.Rows(); i-- > first;) {
    if (!isUnit) kernels.divide(l(i, i), b.Base(i, 0), b.Columns());
    for (std::uint64_t k = first; k < i; ++k) {
      kernels.axpy(-l(i, k), b.Base(i, 0), b.Base(k, 0), b.Columns());
    }
  }
}

template <class Side>
bool SolveForward(const RMatrix& l, Side& b) {
  const std::uint64_t end = GoodPivots(l);
  Forward(l, b, end, false);
  return end == l.Rows();
}

template <class Side>
bool SolveBack(const RMatrix& l, Side& b) {
  const std::uint64_t first = BehindBadPivots(l);
  Back(l, b, first, false);
  return first == 0;
}

}  // namespace

bool DiagonalSolve(const RMatrix& d, RVector& b) {
  Require(d, b, __LINE__);
  const std::uint64_t end = GoodPivots(d);
  for (std::uint64_t i = 0; i < end; ++i) b(i) /= d(i, i);
  return end == d.Rows();
}

bool DiagonalSolve(const RMatrix& d, RMatrix& b) {
  Require(d, b, __LINE__);
  const LinearKernels& kernels = Kernels();
  const std::uint64_t end = GoodPivots(d);
  for (std::uint64_t i = 0; i < end; ++i) kernels.divide(d(i, i), b.Base(i, 0), b.Columns());
  return end == d.Rows();
}

bool ForwardElimination(const RMatrix& l, RVector& b) {
  Require(l, b, __LINE__);
  return SolveForward(l, b);
}
bool ForwardElimination(const RMatrix& l, RMatrix& b) {
  Require(l, b, __LINE__);
  return SolveForward(l, b);
}

bool BackSubstitution(const RMatrix& l, RVector& b) {
  Require(l, b, __LINE__);
  return SolveBack(l, b);
}
bool BackSubstitution(const RMatrix& l, RMatrix& b) {
  Require(l, b, __LINE__);
  return SolveBack(l, b);
}

void UnitForwardElimination(const RMatrix& l, RVector& b) {
  Require(l, b, __LINE__);
  Forward(l, b, l.Rows(), true);
}
void UnitForwardElimination(const RMatrix& l, RMatrix& b) {
  Require(l, b, __LINE__);
  Forward(l, b, l.Rows(), true);
}

void UnitBackSubstitution(const RMatrix& l, RVector& b) {
  Require(l, b, __LINE__);
  Back(l, b, 0, true);
}
void UnitBackSubstitution(const RMatrix& l, RMatrix& b) {
  Require(l, b, __LINE__);
  Back(l, b, 0, true);
}

}  // namespace shr
