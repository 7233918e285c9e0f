// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/numerics/linear/MatrixUtility.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>
#include <utility>

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"MatrixUtility";

/// A sum of squares between these has lost nothing to underflow and overflow that would matter.
constexpr double LEAST_SQUARES = 1e-270;
constexpr double MOST_SQUARES = 1e300;

using Elements = std::span<const double>;

void Require(bool fits, int line) {
  if (!fits) ThrowInternalError(SHARED_MODULE, UNIT, line);
}

bool AreEqual(double a, double b, double tolerance) {
  return a == b || std::abs(a - b) <= tolerance;
}

bool AreZero(Elements elements, double tolerance) {
  return std::all_of(elements.begin(), elements.end(),
                     [tolerance](double element) { return std::abs(element) <= tolerance; });
}

bool AreEqual(Elements a, Elements b, double tolerance) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [tolerance](double x, double y) { return AreEqual(x, y, tolerance); });
}

/// Returns true for a square matrix without other elements than those of the diagonal and `bands`
/// on both sides of it.
bool IsBanded(const RMatrix& m, std::uint64_t bands, double tolerance) {
  if (!IsSquare(m)) return false;
  for (std::uint64_t i = 0; i < m.Rows(); ++i) {
    for (std::uint64_t j = 0; j < m.Columns(); ++j) {
      const std::uint64_t distance = i < j ? j - i : i - j;
      if (distance > bands && !(std::abs(m(i, j)) <= tolerance)) return false;
    }
  }
  return true;
}

double SumOfMagnitudes(Elements elements) {
  double sum = 0.0;
  for (const double element : elements) sum += std::abs(element);
  return sum;
}

/// Returns the larger one, or NaN when one is.
double LargerOf(double a, double b) {
  return std::isnan(a) || a > b ? a : b;
}

double LargestMagnitude(Elements elements) {
  double largest = 0.0;
  for (const double element : elements) largest = LargerOf(largest, std::abs(element));
  return largest;
}

double Euclidean(Elements elements) {
  double squares = 0.0;
  for (const double element : elements) squares += element * element;
  if (squares > LEAST_SQUARES && squares < MOST_SQUARES) return std::sqrt(squares);
  const double largest = LargestMagnitude(elements);
  if (largest == 0.0 || !std::isfinite(largest)) return largest;
  squares = 0.0;
  for (const double element : elements) squares += element / largest * (element / largest);
  return largest * std::sqrt(squares);
}

/// A matrix that is a copy of a column or of a row.
RMatrix MatrixOf(const RVector& v, std::uint64_t rows, std::uint64_t columns) {
  RMatrix m(rows, columns);
  std::copy(v.begin(), v.end(), m.begin());
  return m;
}
RMatrix ColumnOf(const RVector& v) {
  return MatrixOf(v, v.size(), 1);
}
RMatrix RowOf(const RVector& v) {
  return MatrixOf(v, 1, v.size());
}

bool IsNothing(const RMatrix& m) {
  return m.Rows() == 0 && m.Columns() == 0;
}

/// Copies `block` to where its first element is (i, j).
void Place(const RMatrix& block, std::uint64_t i, std::uint64_t j, RMatrix& m) {
  for (std::uint64_t row = 0; row < block.Rows(); ++row) {
    const Elements source = block.Row(row);
    std::copy(source.begin(), source.end(),
              m.Row(i + row).begin() + static_cast<std::ptrdiff_t>(j));
  }
}

template <class Operands, class Operation>
void Combine(const Operands& a, const Operands& b, Operands& r, Operation operation) {
  std::transform(a.begin(), a.end(), b.begin(), r.begin(), operation);
}

bool HaveSameShape(const RVector& a, const RVector& b) {
  return a.size() == b.size();
}
bool HaveSameShape(const RMatrix& a, const RMatrix& b) {
  return a.Rows() == b.Rows() && a.Columns() == b.Columns();
}

void TakeShape(const RVector& a, RVector& r) {
  r.Resize(a.size());
}
void TakeShape(const RMatrix& a, RMatrix& r) {
  r.Resize(a.Rows(), a.Columns());
}

template <class Operands, class Operation>
void Change(Operands& a, const Operands& b, Operation operation) {
  Require(HaveSameShape(a, b), __LINE__);
  Combine(a, b, a, operation);
}

template <class Operands, class Operation>
void Make(const Operands& a, const Operands& b, Operands& r, Operation operation) {
  Require(HaveSameShape(a, b), __LINE__);
  TakeShape(a, r);
  Combine(a, b, r, operation);
}

}  // namespace

bool IsZero(const RVector& v, double tolerance) {
  return AreZero(v, tolerance);
}
bool IsZero(const RMatrix& m, double tolerance) {
  return AreZero(m, tolerance);
}

bool IsEqual(const RVector& a, const RVector& b, double tolerance) {
  return AreEqual(Elements(a), Elements(b), tolerance);
}
bool IsEqual(const RMatrix& a, const RMatrix& b, double tolerance) {
  return HaveSameShape(a, b) && AreEqual(Elements(a), Elements(b), tolerance);
}

bool IsSquare(const RMatrix& m) {
  return m.Rows() == m.Columns();
}

bool IsSymmetric(const RMatrix& m, double tolerance) {
  if (!IsSquare(m)) return false;
  for (std::uint64_t i = 0; i < m.Rows(); ++i) {
    for (std::uint64_t j = 0; j < i; ++j) {
      if (!AreEqual(m(i, j), m(j, i), tolerance)) return false;
    }
  }
  return true;
}

bool IsDiagonal(const RMatrix& m, double tolerance) {
  return IsBanded(m, 0, tolerance);
}
bool IsTriDiagonal(const RMatrix& m, double tolerance) {
  return IsBanded(m, 1, tolerance);
}

bool IsIdentity(const RMatrix& m, double tolerance) {
  if (!IsDiagonal(m, tolerance)) return false;
  for (std::uint64_t i = 0; i < m.Rows(); ++i) {
    if (!AreEqual(m(i, i), 1.0, tolerance)) return false;
  }
  return true;
}

void ExtractRow(const RMatrix& m, std::uint64_t i, RVector& v) {
  Require(i < m.Rows(), __LINE__);
  v.Resize(m.Columns());
  std::copy(m.Row(i).begin(), m.Row(i).end(), v.begin());
}

void ExtractCol(const RMatrix& m, std::uint64_t j, RVector& v) {
  Require(j < m.Columns(), __LINE__);
  v.Resize(m.Rows());
  for (std::uint64_t i = 0; i < m.Rows(); ++i) v(i) = m(i, j);
}

void ExtractDiagonal(const RMatrix& m, RVector& v) {
  v.Resize(std::min(m.Rows(), m.Columns()));
  for (std::uint64_t i = 0; i < v.size(); ++i) v(i) = m(i, i);
}

void AssignRow(const RVector& v, std::uint64_t i, RMatrix& m) {
  Require(i < m.Rows() && v.size() == m.Columns(), __LINE__);
  std::copy(v.begin(), v.end(), m.Row(i).begin());
}

void AssignCol(const RVector& v, std::uint64_t j, RMatrix& m) {
  Require(j < m.Columns() && v.size() == m.Rows(), __LINE__);
  for (std::uint64_t i = 0; i < v.size(); ++i) m(i, j) = v(i);
}

void AssignDiagonal(const RVector& v, RMatrix& m) {
  Require(v.size() == std::min(m.Rows(), m.Columns()), __LINE__);
  for (std::uint64_t i = 0; i < v.size(); ++i) m(i, i) = v(i);
}

void Concatenate(RVector& a, const RVector& b) {
  Concatenate(a, b, a);
}

void Concatenate(const RVector& a, const RVector& b, RVector& r) {
  RVector all(a.size() + b.size());
  std::copy(b.begin(), b.end(), std::copy(a.begin(), a.end(), all.begin()));
  r = std::move(all);
}

void ConcatenateCols(RMatrix& a, const RMatrix& b) {
  ConcatenateCols(a, b, a);
}
void ConcatenateCols(RMatrix& a, const RVector& b) {
  ConcatenateCols(a, ColumnOf(b), a);
}
void ConcatenateCols(const RMatrix& a, const RVector& b, RMatrix& r) {
  ConcatenateCols(a, ColumnOf(b), r);
}
void ConcatenateCols(const RVector& a, const RVector& b, RMatrix& r) {
  ConcatenateCols(ColumnOf(a), ColumnOf(b), r);
}
void ConcatenateCols(const RMatrix& a, const RMatrix& b, RMatrix& r) {
  Require(a.Rows() == b.Rows() || IsNothing(a), __LINE__);
  RMatrix all(b.Rows(), a.Columns() + b.Columns());
  Place(a, 0, 0, all);
  Place(b, 0, a.Columns(), all);
  r = std::move(all);
}

void ConcatenateRows(RMatrix& a, const RMatrix& b) {
  ConcatenateRows(a, b, a);
}
void ConcatenateRows(RMatrix& a, const RVector& b) {
  ConcatenateRows(a, RowOf(b), a);
}
void ConcatenateRows(const RMatrix& a, const RVector& b, RMatrix& r) {
  ConcatenateRows(a, RowOf(b), r);
}
void ConcatenateRows(const RVector& a, const RVector& b, RMatrix& r) {
  ConcatenateRows(RowOf(a), RowOf(b), r);
}
void ConcatenateRows(const RMatrix& a, const RMatrix& b, RMatrix& r) {
  Require(a.Columns() == b.Columns() || IsNothing(a), __LINE__);
  RMatrix all(a.Rows() + b.Rows(), b.Columns());
  Place(a, 0, 0, all);
  Place(b, a.Rows(), 0, all);
  r = std::move(all);
}

void ComposeMatrix(const RMatrix& a, const RMatrix& b, const RMatrix& c, const RMatrix& d,
                   RMatrix& r) {
  Require(a.Rows() == b.Rows() && c.Rows() == d.Rows(), __LINE__);
  Require(a.Columns() == c.Columns() && b.Columns() == d.Columns(), __LINE__);
  RMatrix all(a.Rows() + c.Rows(), a.Columns() + b.Columns());
  Place(a, 0, 0, all);
  Place(b, 0, a.Columns(), all);
  Place(c, a.Rows(), 0, all);
  Place(d, a.Rows(), a.Columns(), all);
  r = std::move(all);
}

void ComposeMatrix(const RMatrix& a, const RMatrix& b, const RMatrix& c, RMatrix& r) {
  ComposeMatrix(a, Transpose(b), b, c, r);
}

void Transpose(const RMatrix& a, RMatrix& t) {
  if (&t == &a) {
    t = Transpose(a);
    return;
  }
  constexpr std::uint64_t BLOCK = 16;  // rows and columns, so that every cache line is used up
  t.Resize(a.Columns(), a.Rows());
  for (std::uint64_t first = 0; first < a.Rows(); first += BLOCK) {
    const std::uint64_t end = std::min(first + BLOCK, a.Rows());
    for (std::uint64_t j = 0; j < a.Columns(); ++j) {
      for (std::uint64_t i = first; i < end; ++i) t(j, i) = a(i, j);
    }
  }
}

RMatrix Transpose(const RMatrix& a) {
  RMatrix t;
  Transpose(a, t);
  return t;
}

double L1Norm(const RVector& v) {
  return SumOfMagnitudes(v);
}
double L2Norm(const RVector& v) {
  return Euclidean(v);
}
double LInfNorm(const RVector& v) {
  return LargestMagnitude(v);
}

double L1Norm(const RMatrix& m) {
  RVector sums;
  Zeros(sums, m.Columns());
  for (std::uint64_t i = 0; i < m.Rows(); ++i) {
    for (std::uint64_t j = 0; j < m.Columns(); ++j) sums(j) += std::abs(m(i, j));
  }
  return LargestMagnitude(sums);
}

double LInfNorm(const RMatrix& m) {
  double largest = 0.0;
  for (std::uint64_t i = 0; i < m.Rows(); ++i) {
    largest = LargerOf(largest, SumOfMagnitudes(m.Row(i)));
  }
  return largest;
}

double FNorm(const RMatrix& m) {
  return Euclidean(m);
}

double Trace(const RMatrix& m) {
  double sum = 0.0;
  for (std::uint64_t i = 0; i < std::min(m.Rows(), m.Columns()); ++i) sum += m(i, i);
  return sum;
}

double Off(const RMatrix& m) {
  double sum = 0.0;
  for (std::uint64_t i = 0; i < m.Rows(); ++i) {
    for (std::uint64_t j = 0; j < m.Columns(); ++j) {
      if (i != j) sum += std::abs(m(i, j));
    }
  }
  return sum;
}

double SymOff(const RMatrix& m) {
  double sum = 0.0;
  for (std::uint64_t i = 0; i < m.Rows() && i < m.Columns(); ++i) {
    sum += SumOfMagnitudes(m.Row(i).subspan(i + 1));
  }
  return 2.0 * sum;
}

void HSum(const RMatrix& m, RVector& v) {
  Zeros(v, m.Rows());
  for (std::uint64_t i = 0; i < m.Rows(); ++i) {
    for (const double element : m.Row(i)) v(i) += element;
  }
}

void VSum(const RMatrix& m, RVector& v) {
  Zeros(v, m.Columns());
  for (std::uint64_t i = 0; i < m.Rows(); ++i) {
    for (std::uint64_t j = 0; j < m.Columns(); ++j) v(j) += m(i, j);
  }
}

void Fill(RVector& v, double value) {
  std::fill(v.begin(), v.end(), value);
}
void Fill(RMatrix& m, double value) {
  std::fill(m.begin(), m.end(), value);
}
void Ones(RVector& v) {
  Fill(v, 1.0);
}
void Ones(RMatrix& m) {
  Fill(m, 1.0);
}
void Ones(RVector& v, std::uint64_t n) {
  v.Resize(n);
  Ones(v);
}
void Ones(RMatrix& m, std::uint64_t rows, std::uint64_t columns) {
  m.Resize(rows, columns);
  Ones(m);
}
void Zeros(RVector& v) {
  Fill(v, 0.0);
}
void Zeros(RMatrix& m) {
  Fill(m, 0.0);
}
void Zeros(RVector& v, std::uint64_t n) {
  v.Resize(n);
  Zeros(v);
}
void Zeros(RMatrix& m, std::uint64_t rows, std::uint64_t columns) {
  m.Resize(rows, columns);
  Zeros(m);
}

void Unit(RVector& v, std::uint64_t n, std::uint64_t k) {
  Require(k < n, __LINE__);
  Zeros(v, n);
  v(k) = 1.0;
}

void Eye(RMatrix& m, std::uint64_t rows, std::uint64_t columns) {
  Zeros(m, rows, columns);
  for (std::uint64_t i = 0; i < std::min(rows, columns); ++i) m(i, i) = 1.0;
}

void Initialize(RVector& v, std::uint64_t n, const double* elements) {
  RVector copy(n);
  std::copy_n(elements, n, copy.begin());
  v = std::move(copy);
}

void Initialize(RMatrix& m, std::uint64_t rows, std::uint64_t columns, const double* elements) {
  RMatrix copy(rows, columns);
  std::copy_n(elements, copy.size(), copy.begin());
  m = std::move(copy);
}

void Negate(RVector& v) {
  for (double& element : v) element = -element;
}
void Negate(RMatrix& m) {
  for (double& element : m) element = -element;
}

void Add(RVector& a, const RVector& b) {
  Change(a, b, std::plus<>());
}
void Add(RMatrix& a, const RMatrix& b) {
  Change(a, b, std::plus<>());
}
void Add(RVector& a, double b) {
  for (double& element : a) element += b;
}
void Add(RMatrix& a, double b) {
  for (double& element : a) element += b;
}
void Add(const RVector& a, const RVector& b, RVector& r) {
  Make(a, b, r, std::plus<>());
}
void Add(const RMatrix& a, const RMatrix& b, RMatrix& r) {
  Make(a, b, r, std::plus<>());
}

void Subtract(RVector& a, const RVector& b) {
  Change(a, b, std::minus<>());
}
void Subtract(RMatrix& a, const RMatrix& b) {
  Change(a, b, std::minus<>());
}
void Subtract(RVector& a, double b) {
  Add(a, -b);
}
void Subtract(RMatrix& a, double b) {
  Add(a, -b);
}
void Subtract(const RVector& a, const RVector& b, RVector& r) {
  Make(a, b, r, std::minus<>());
}
void Subtract(const RMatrix& a, const RMatrix& b, RMatrix& r) {
  Make(a, b, r, std::minus<>());
}

void Divide(RVector& a, double b) {
  for (double& element : a) element /= b;
}
void Divide(RMatrix& a, double b) {
  for (double& element : a) element /= b;
}
void Divide(RVector& a, const RVector& b) {
  Change(a, b, std::divides<>());
}
void Divide(RMatrix& a, const RMatrix& b) {
  Change(a, b, std::divides<>());
}

void Update_axpy(double alpha, RVector& y, const RVector& x) {
  Change(y, x, [alpha](double a, double b) { return alpha * a + b; });
}
void Update_axpy(double alpha, RMatrix& y, const RMatrix& x) {
  Change(y, x, [alpha](double a, double b) { return alpha * a + b; });
}
void Update_xpay(RVector& y, double alpha, const RVector& x) {
  Change(y, x, [alpha](double a, double b) { return a + alpha * b; });
}
void Update_xpay(RMatrix& y, double alpha, const RMatrix& x) {
  Change(y, x, [alpha](double a, double b) { return a + alpha * b; });
}

}  // namespace shr
