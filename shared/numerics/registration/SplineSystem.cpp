// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// A radial function of this library is positive definite for weights w with P w = 0 (C. Micchelli,
// "Interpolation of scattered data: distance matrices and conditionally positive definite
// functions", Constructive Approximation 2, 1986), not elsewhere, so the whole system
//
//     | Phi  P^T | | w |   | f |
//     | P    0   | | c | = | 0 |
//
// has no Cholesky factor. Three Householder reflections Q take P^T to an upper triangle R above
// zeros. With w = Q (0, z), P w = 0 holds for every z, and what is left is
//
//     K z = lower part of Q^T f,   K = lower right part of Q^T Phi Q,   R c = upper part of
//                                                                           Q^T (f - Phi w),
//
// where K is positive definite. The reflections are kept as Q = I - V T V^T (R. Schreiber and
// C. Van Loan, "A storage-efficient WY representation for products of Householder
// transformations", SIAM Journal on Scientific and Statistical Computing 10, 1989), so that with
// Y = Phi V T and W = Y - V (T^T V^T Y) / 2 the reduction is one pass,
//
//     Q^T Phi Q = Phi - V W^T - W V^T.
//
// Phi itself is never stored: its rows are made twice, once for Y and once for K, by the vector
// kernel, and f - Phi w, which the step of iterative refinement and the check of the result need,
// is the transform of the control points.
//
// Leaving one point out: the spline through the others misses the target of point k by
// w_k / (inverse of the whole matrix)_kk (S. Rippa, "An algorithm for selecting a good value for
// the parameter c in radial basis function interpolation", Advances in Computational Mathematics
// 11, 1999), and the inverse's first block is Q (0 + K^-1) Q^T, of which only the diagonal is made:
// the squared lengths of the columns of (0, L^-1) Q^T.

#include "shared/numerics/registration/SplineSystem.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

#include "shared/numerics/linear/MatrixProducts.h"
#include "shared/numerics/linear/Pivot.h"
#include "shared/numerics/linear/SymmetricSolve.h"
#include "shared/numerics/linear/TriangularSolve.h"
#include "shared/numerics/registration/ControlPoints.h"
#include "shared/numerics/registration/WarpKernels.h"

namespace shr {
namespace {

constexpr std::size_t CONSTRAINTS = 3;
/// What a solution may leave of the part of the targets that is not linear.
constexpr double LARGEST_RESIDUAL = 1e-3;
/// What rounding may leave of the targets.
constexpr double ROUNDING = 64 * PIVOT_EPSILON;

double Dot(const double* a, const double* b, std::size_t first, std::size_t end) {
  double sum = 0.0;
  for (std::size_t i = first; i < end; ++i) sum += a[i] * b[i];
  return sum;
}

double Dot(const std::vector<double>& a, const std::vector<double>& b) {
  return Dot(a.data(), b.data(), 0, a.size());
}

double Norm(const std::vector<double>& x, std::size_t first = 0) {
  return std::sqrt(Dot(x.data(), x.data(), first, x.size()));
}

/// x -= V y.
void SubtractProduct(const std::array<std::vector<double>, 3>& columns, const double* y,
                     std::vector<double>& x) {
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] -= columns[0][i] * y[0] + columns[1][i] * y[1] + columns[2][i] * y[2];
  }
}

/// The lower triangle of the block [first, first + size) becomes its inverse, row by row.
void InvertSmallBlock(RMatrix& l, std::size_t first, std::size_t size) {
  std::vector<double> row(size);
  for (std::size_t i = 0; i < size; ++i) {
    double* out = l.Base(first + i, first);
    const double pivot = out[i];
    std::copy_n(out, i, row.begin());
    std::fill_n(out, i, 0.0);
    for (std::size_t k = 0; k < i; ++k) {
      const double factor = -row[k] / pivot;
      const double* other = l.Base(first + k, first);
      for (std::size_t j = 0; j <= k; ++j) out[j] += factor * other[j];
    }
    out[i] = 1.0 / pivot;
  }
}

/// A copy of a block, of which what lies above the diagonal of the matrix counts 0.
RMatrix BlockOf(const RMatrix& l, std::size_t row, std::size_t column, std::size_t rows,
                std::size_t columns) {
  RMatrix block(rows, columns);
  for (std::size_t i = 0; i < rows; ++i) {
    const std::size_t end = std::min(columns, row + i + 1 - column);
    std::copy_n(l.Base(row + i, column), end, block.Base(i, 0));
    std::fill(block.Base(i, 0) + end, block.Base(i, 0) + columns, 0.0);
  }
  return block;
}

/// The same for a block of any size, by halves: (A 0; B C)^-1 = (A^-1 0; -C^-1 B A^-1 C^-1).
void InvertBlock(RMatrix& l, std::size_t first, std::size_t size) {
  constexpr std::size_t SMALL = 64;
  if (size <= SMALL) return InvertSmallBlock(l, first, size);
  const std::size_t half = size / 2, middle = first + half, rest = size - half;
  InvertBlock(l, first, half);
  InvertBlock(l, middle, rest);
  RMatrix right, below;
  Product(BlockOf(l, middle, first, rest, half), BlockOf(l, first, first, half, half), right);
  Product(BlockOf(l, middle, middle, rest, rest), right, below);
  for (std::size_t i = 0; i < rest; ++i) {
    for (std::size_t j = 0; j < half; ++j) l(middle + i, first + j) = -below(i, j);
  }
}

}  // namespace

SplineSystem::SplineSystem(RadialKernel kernel, const RVector& u, const RVector& v)
    : kernel_(kernel) {
  MergeEqualPoints(u, v);
}

/// The distinct points keep the order of their first control points.
void SplineSystem::MergeEqualPoints(const RVector& u, const RVector& v) {
  const std::size_t count = u.size();
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    if (u(a) != u(b)) return u(a) < u(b);
    if (v(a) != v(b)) return v(a) < v(b);
    return a < b;
  });
  std::vector<std::size_t> first(count);  // of each control point: the first one that equals it
  for (std::size_t k = 0; k < count; ++k) {
    const std::size_t i = order[k];
    const bool isNew = k == 0 || u(i) != u(order[k - 1]) || v(i) != v(order[k - 1]);
    first[i] = isNew ? i : first[order[k - 1]];
  }
  owner_.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    if (first[i] == i) {
      owner_[i] = u_.size();
      u_.push_back(u(i));
      v_.push_back(v(i));
      members_.push_back(0.0);
    } else {
      owner_[i] = owner_[first[i]];
    }
    members_[owner_[i]] += 1.0;
  }
}

bool SplineSystem::Factor() {
  return FactorConstraints() && ReduceAndFactor();
}

/// Makes the reflections that take the columns 1, u and v to an upper triangle.
bool SplineSystem::FactorConstraints() {
  const std::size_t size = Size();
  if (size < CONSTRAINTS) return false;
  Columns columns{std::vector<double>(size, 1.0), u_, v_};
  for (std::size_t k = 0; k < CONSTRAINTS; ++k) {
    std::vector<double>& x = columns[k];
    const double norm = std::sqrt(Dot(x.data(), x.data(), k, size));
    if (norm * norm < PIVOT_EPSILON) return false;
    const double head = x[k] > 0.0 ? -norm : norm;
    std::vector<double>& reflector = reflectors_[k];
    reflector.assign(size, 0.0);
    std::copy(x.begin() + static_cast<std::ptrdiff_t>(k), x.end(),
              reflector.begin() + static_cast<std::ptrdiff_t>(k));
    reflector[k] -= head;
    t_[k][k] = 2.0 / Dot(reflector, reflector);
    for (std::size_t j = k + 1; j < CONSTRAINTS; ++j) {
      const double factor = t_[k][k] * Dot(reflector, columns[j]);
      for (std::size_t i = k; i < size; ++i) columns[j][i] -= factor * reflector[i];
    }
    x[k] = head;
    for (std::size_t i = 0; i <= k; ++i) r_[i][k] = x[i];
  }
  MakeReflections();
  return true;
}

/// Fills T above its diagonal.
void SplineSystem::MakeReflections() {
  for (std::size_t k = 1; k < CONSTRAINTS; ++k) {
    double products[CONSTRAINTS];
    for (std::size_t i = 0; i < k; ++i) products[i] = Dot(reflectors_[i], reflectors_[k]);
    for (std::size_t i = 0; i < k; ++i) {
      double sum = 0.0;
      for (std::size_t j = i; j < k; ++j) sum += t_[i][j] * products[j];
      t_[i][k] = -t_[k][k] * sum;
    }
  }
}

/// x becomes Q^T x.
void SplineSystem::Reflect(std::vector<double>& x) const {
  double y[CONSTRAINTS] = {}, product[CONSTRAINTS];
  for (std::size_t k = 0; k < CONSTRAINTS; ++k) product[k] = Dot(reflectors_[k], x);
  for (std::size_t k = 0; k < CONSTRAINTS; ++k) {
    for (std::size_t i = 0; i <= k; ++i) y[k] += t_[i][k] * product[i];
  }
  SubtractProduct(reflectors_, y, x);
}

/// x becomes Q x.
void SplineSystem::ReflectBack(std::vector<double>& x) const {
  double y[CONSTRAINTS] = {}, product[CONSTRAINTS];
  for (std::size_t k = 0; k < CONSTRAINTS; ++k) product[k] = Dot(reflectors_[k], x);
  for (std::size_t k = 0; k < CONSTRAINTS; ++k) {
    for (std::size_t j = k; j < CONSTRAINTS; ++j) y[k] += t_[k][j] * product[j];
  }
  SubtractProduct(reflectors_, y, x);
}

bool SplineSystem::ReduceAndFactor() {
  const std::size_t size = Size();
  const Columns& v = reflectors_;
  Columns w;  // first Phi V, then Y = Phi V T, then Y - V S / 2
  for (auto& column : w) column.resize(size);
  std::vector<double> row(size);
  for (std::size_t i = 0; i < size; ++i) {
    RadialRow(kernel_, u_[i], v_[i], u_.data(), v_.data(), size, row.data());
    double sums[CONSTRAINTS] = {};
    for (std::size_t j = 0; j < size; ++j) {
      for (std::size_t k = 0; k < CONSTRAINTS; ++k) sums[k] += row[j] * v[k][j];
    }
    for (std::size_t k = 0; k < CONSTRAINTS; ++k) {
      w[k][i] = 0.0;
      for (std::size_t j = 0; j <= k; ++j) w[k][i] += sums[j] * t_[j][k];
    }
  }
  double product[CONSTRAINTS][CONSTRAINTS];
  for (std::size_t i = 0; i < CONSTRAINTS; ++i) {
    for (std::size_t k = 0; k < CONSTRAINTS; ++k) product[i][k] = Dot(v[i], w[k]);
  }
  for (std::size_t k = 0; k < CONSTRAINTS; ++k) {
    double half[CONSTRAINTS] = {};
    for (std::size_t i = 0; i < CONSTRAINTS; ++i) {
      for (std::size_t j = 0; j <= i; ++j) half[i] += 0.5 * t_[j][i] * product[j][k];
    }
    SubtractProduct(v, half, w[k]);
  }
  const std::size_t rest = size - CONSTRAINTS;
  factor_.Resize(rest, rest);
  for (std::size_t i = 0; i < rest; ++i) {
    const std::size_t p = i + CONSTRAINTS;
    double* out = factor_.Base(i, 0);
    RadialRow(kernel_, u_[p], v_[p], &u_[CONSTRAINTS], &v_[CONSTRAINTS], i + 1, out);
    const double v0 = v[0][p], v1 = v[1][p], v2 = v[2][p];
    const double w0 = w[0][p], w1 = w[1][p], w2 = w[2][p];
    for (std::size_t j = 0; j <= i; ++j) {
      const std::size_t q = j + CONSTRAINTS;
      out[j] -= (v0 * w[0][q] + v1 * w[1][q] + v2 * w[2][q]) +
                (w0 * v[0][q] + w1 * v[1][q] + w2 * v[2][q]);
    }
  }
  return CholeskyDecomposition(factor_);
}

/// The targets of the distinct points in one column, less `offset`.
std::vector<double> SplineSystem::MeanTargets(const RMatrix& targets, std::size_t column,
                                              double offset) const {
  std::vector<double> means(Size(), 0.0);
  for (std::size_t i = 0; i < owner_.size(); ++i) {
    means[owner_[i]] += (targets(i, column) - offset) / members_[owner_[i]];
  }
  return means;
}

/// Takes Phi w from both columns of `rest`.
void SplineSystem::SubtractSpline(const std::vector<double>& weights,
                                  std::array<std::vector<double>, 2>& rest) const {
  constexpr double ZEROS[2 * CONSTRAINTS] = {};
  const std::size_t size = Size();
  const SplineTerms terms{u_.data(), v_.data(), weights.data(), size, ZEROS, 0.0, 0.0, 1.0};
  std::vector<double> points(2 * size);
  for (std::size_t i = 0; i < size; ++i) {
    points[2 * i] = u_[i];
    points[2 * i + 1] = v_[i];
  }
  MapBySpline(kernel_, terms, points.data(), points.data(), size);
  for (std::size_t i = 0; i < size; ++i) {
    rest[0][i] -= points[2 * i];
    rest[1][i] -= points[2 * i + 1];
  }
}

/// Adds Q (0, K^-1 x) to a column of the weights, where x is the lower part of `reflected`.
bool SplineSystem::AddCorrection(const std::vector<double>& reflected, std::size_t column,
                                 std::vector<double>& weights) const {
  RVector z(std::span<const double>(reflected).subspan(CONSTRAINTS));
  if (!ForwardElimination(factor_, z) || !BackSubstitution(factor_, z)) return false;
  std::vector<double> correction(CONSTRAINTS, 0.0);
  correction.insert(correction.end(), z.begin(), z.end());
  ReflectBack(correction);
  for (std::size_t i = 0; i < Size(); ++i) weights[2 * i + column] += correction[i];
  return true;
}

/// Solves R c = upper part of `reflected`.
void SplineSystem::SolveConstants(const std::vector<double>& reflected, double* constants) const {
  for (std::size_t k = CONSTRAINTS; k-- > 0;) {
    double sum = reflected[k];
    for (std::size_t j = k + 1; j < CONSTRAINTS; ++j) sum -= r_[k][j] * constants[j];
    constants[k] = sum / r_[k][k];
  }
}

bool SplineSystem::Solve(const RMatrix& targets, RMatrix& weights, RMatrix& polynomial) const {
  constexpr int STEPS = 2;  // the second one is the refinement
  const double offsets[2] = {targets(0, 0), targets(0, 1)};
  std::array<std::vector<double>, 2> rest, reflected;
  double limits[2];
  for (std::size_t k = 0; k < 2; ++k) {
    rest[k] = MeanTargets(targets, k, offsets[k]);
    reflected[k] = rest[k];
    Reflect(reflected[k]);
    limits[k] = std::max(LARGEST_RESIDUAL * Norm(reflected[k], CONSTRAINTS),
                         ROUNDING * (Norm(rest[k]) + std::abs(offsets[k])));
  }
  const std::array<std::vector<double>, 2> wanted = rest;
  std::vector<double> sums(2 * Size(), 0.0);
  for (int step = 0; step < STEPS; ++step) {
    for (std::size_t k = 0; k < 2; ++k) {
      if (!AddCorrection(reflected[k], k, sums)) return false;
    }
    rest = wanted;
    SubtractSpline(sums, rest);
    for (std::size_t k = 0; k < 2; ++k) {
      reflected[k] = rest[k];
      Reflect(reflected[k]);
    }
  }
  polynomial.Resize(CONSTRAINTS, 2);
  for (std::size_t k = 0; k < 2; ++k) {
    if (!(Norm(reflected[k], CONSTRAINTS) <= limits[k])) return false;
    double constants[CONSTRAINTS];
    SolveConstants(reflected[k], constants);
    constants[0] += offsets[k];
    for (std::size_t i = 0; i < CONSTRAINTS; ++i) polynomial(i, k) = constants[i];
  }
  weights.Resize(owner_.size(), 2);
  for (std::size_t i = 0; i < owner_.size(); ++i) {
    for (std::size_t k = 0; k < 2; ++k) {
      weights(i, k) = sums[2 * owner_[i] + k] / members_[owner_[i]];
    }
  }
  return AreFinite(weights) && AreFinite(polynomial);
}

/// The diagonal of the inverse's first block; 0 for a point without which the others lie on a line.
std::vector<double> SplineSystem::InverseDiagonal() {
  constexpr double LEAST_FREEDOM = 1e-13;
  const std::size_t size = Size();
  std::vector<double> diagonal(size, 0.0), freedom(size, 1.0), row(size);
  InvertBlock(factor_, 0, factor_.Rows());
  for (std::size_t i = 0; i < size - CONSTRAINTS; ++i) {
    std::fill(row.begin(), row.end(), 0.0);
    std::copy_n(factor_.Base(i, 0), i + 1, &row[CONSTRAINTS]);
    ReflectBack(row);
    for (std::size_t k = 0; k < size; ++k) diagonal[k] += row[k] * row[k];
  }
  for (std::size_t i = 0; i < CONSTRAINTS; ++i) {
    std::fill(row.begin(), row.end(), 0.0);
    row[i] = 1.0;
    ReflectBack(row);
    for (std::size_t k = 0; k < size; ++k) freedom[k] -= row[k] * row[k];
  }
  for (std::size_t k = 0; k < size; ++k) {
    if (freedom[k] < LEAST_FREEDOM) diagonal[k] = 0.0;
  }
  return diagonal;
}

RMatrix SplineSystem::LeaveOneOut(const RMatrix& targets, const RMatrix& weights) {
  const std::vector<double> diagonal = InverseDiagonal();
  RMatrix errors(owner_.size(), 2);
  for (std::size_t k = 0; k < 2; ++k) {
    const double offset = targets(0, k);
    const std::vector<double> means = MeanTargets(targets, k, offset);
    for (std::size_t i = 0; i < owner_.size(); ++i) {
      const std::size_t point = owner_[i];
      const double count = members_[point];
      // Equal points that stay behind hold the spline at the mean of their targets.
      if (count > 1.0) {
        errors(i, k) = (targets(i, k) - offset - means[point]) * count / (count - 1.0);
      } else {
        errors(i, k) = diagonal[point] > 0.0 ? weights(i, k) / diagonal[point] : NO_NUMBER;
      }
    }
  }
  return errors;
}

}  // namespace shr
