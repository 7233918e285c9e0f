// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The wanted parts are those of the polar decomposition M = S R into a symmetric stretch and a
// rotation, with the stretch in turn written by its axes. The usual way, Newton's iteration for the
// rotation, breaks down for matrices that lose a dimension, such as a scale of 0. The singular
// value decomposition gives all parts at once and does not.
//
// Rows of M are turned in pairs until all are perpendicular to each other: A^T M = W, where A
// collects the turns. Each turn is the smaller one of those that make a pair perpendicular, so that
// a matrix whose rows are perpendicular already, scales followed by a rotation, stays as it is. The
// lengths of the rows of W are the scales and their directions V^T, hence
//
//   M = A diag(scales) V^T = A diag(scales) A^T (A V^T),
//
// and A V^T is the rotation. Rows of length 0 get a direction perpendicular to the others. If V^T
// reverses the sense, one or all of its rows are reversed with their scales, whichever leaves the
// smaller rotation.
//
// Source: K. Shoemake and T. Duff, "Matrix Animation and Polar Decomposition", 1992 (the parts and
// their meaning); M. R. Hestenes, "Inversion of Matrices by Biorthogonalization and Related
// Results", 1958 (turning pairs of rows).

#include "shared/geometry/MatrixDecomposition.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace shr {
namespace {

/// Rows count as perpendicular when the cosine between them is at most this.
constexpr double PERPENDICULAR = 4.0 * DBL_EPSILON;
/// Pairs converge quadratically, in four or five sweeps.
constexpr int MOST_SWEEPS = 30;
/// Rows shorter than this, where the largest element of the matrix is 1 to 2, have no direction.
constexpr double NO_LENGTH = 1e-140;

template <int N>
double Dot(const double (&a)[N], const double (&b)[N]) {
  double sum = 0.0;
  for (int i = 0; i < N; ++i) sum += a[i] * b[i];
  return sum;
}

/// Replaces a by cosine a - sine b and b by sine a + cosine b.
template <int N>
void TurnRows(double (&a)[N], double (&b)[N], double cosine, double sine) {
  for (int i = 0; i < N; ++i) {
    const double before = a[i];
    a[i] = cosine * before - sine * b[i];
    b[i] = sine * before + cosine * b[i];
  }
}

/// Makes two rows perpendicular and turns the same rows of `turns`. Returns false when they were.
template <int N>
bool TurnPair(double (&a)[N], double (&b)[N], double (&turnsA)[N], double (&turnsB)[N]) {
  const double squareA = Dot(a, a);
  const double squareB = Dot(b, b);
  const double product = Dot(a, b);
  if (!(std::abs(product) > PERPENDICULAR * std::sqrt(squareA) * std::sqrt(squareB))) return false;
  const double cotangent = (squareB - squareA) / (2.0 * product);
  const double tangent =
      std::copysign(1.0 / (std::abs(cotangent) + std::hypot(1.0, cotangent)), cotangent);
  const double cosine = 1.0 / std::sqrt(1.0 + tangent * tangent);
  const double sine = cosine * tangent;
  TurnRows(a, b, cosine, sine);
  TurnRows(turnsA, turnsB, cosine, sine);
  return true;
}

/// Removes from `row` its parts along the rows that have a direction. Those are perpendicular to
/// each other, so that once is enough for an error of a few units of PERPENDICULAR.
template <int N>
void MakePerpendicular(double (&row)[N], const double (&rows)[N][N], const bool (&known)[N]) {
  for (int k = 0; k < N; ++k) {
    if (!known[k]) continue;
    const double part = Dot(row, rows[k]);
    for (int i = 0; i < N; ++i) row[i] -= part * rows[k][i];
  }
}

/// Gives every row without a direction one that is perpendicular to all others, close to its own
/// axis where that is possible.
template <int N>
void CompleteRows(double (&rows)[N][N], bool (&known)[N]) {
  for (int row = 0; row < N; ++row) {
    if (known[row]) continue;
    for (int attempt = 0; attempt < N; ++attempt) {
      std::fill_n(rows[row], N, 0.0);
      rows[row][(row + attempt) % N] = 1.0;
      MakePerpendicular(rows[row], rows, known);
      const double length = std::sqrt(Dot(rows[row], rows[row]));
      // Of N axes, one keeps at least this length when up to N - 1 directions are removed.
      if (length < 0.5) continue;
      for (double& value : rows[row]) value /= length;
      break;
    }
    known[row] = true;
  }
}

double Determinant(const double (&m)[2][2]) {
  return m[0][0] * m[1][1] - m[0][1] * m[1][0];
}

double Determinant(const double (&m)[3][3]) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

/// Reverses rows and scales so that the rows are a rotation; a row of scale 0 if there is one.
template <int N>
void MakeRotation(double (&rows)[N][N], const double (&turns)[N][N], double (&scales)[N]) {
  if (Determinant(rows) > 0.0) return;
  int reversed = 0;
  double trace = 0.0;
  double traces[N];  // what each row adds to the trace of the rotation
  for (int i = 0; i < N; ++i) {
    traces[i] = Dot(rows[i], turns[i]);
    trace += traces[i];
    const bool isFree = scales[i] == 0.0;
    const bool isBestFree = scales[reversed] == 0.0;
    if (isFree != isBestFree ? isFree : traces[i] < traces[reversed]) reversed = i;
  }
  const bool reverseAll =
      N % 2 == 1 && scales[reversed] != 0.0 && -trace > trace - 2.0 * traces[reversed];
  for (int i = 0; i < N; ++i) {
    if (i != reversed && !reverseAll) continue;
    if (scales[i] != 0.0) scales[i] = -scales[i];
    for (double& value : rows[i]) value = -value;
  }
}

/// Returns the power of two next below the largest magnitude, 1 for a matrix of zeros.
template <int N>
double Unit(const double (&matrix)[N][N]) {
  double largest = 0.0;
  for (const auto& row : matrix) {
    for (const double value : row) largest = std::max(largest, std::abs(value));
  }
  return largest == 0.0 ? 1.0 : std::ldexp(1.0, std::ilogb(largest));
}

}  // namespace

template <int N>
ScaleAndRotation<N> DecomposeLinear(const double (&matrix)[N][N]) {
  const double unit = Unit(matrix);
  double rows[N][N];
  double turns[N][N] = {};  // the transpose of `axes`
  for (int row = 0; row < N; ++row) {
    for (int i = 0; i < N; ++i) rows[row][i] = matrix[row][i] / unit;
    turns[row][row] = 1.0;
  }
  bool isDone = false;
  for (int sweep = 0; sweep < MOST_SWEEPS && !isDone; ++sweep) {
    isDone = true;
    for (int a = 0; a < N; ++a) {
      for (int b = a + 1; b < N; ++b) {
        if (TurnPair(rows[a], rows[b], turns[a], turns[b])) isDone = false;
      }
    }
  }
  ScaleAndRotation<N> result;
  bool known[N];
  for (int row = 0; row < N; ++row) {
    const double length = std::sqrt(Dot(rows[row], rows[row]));
    known[row] = length > NO_LENGTH;
    result.scales[row] = known[row] ? length * unit : 0.0;
    for (double& value : rows[row]) value /= known[row] ? length : 1.0;
  }
  CompleteRows(rows, known);
  MakeRotation(rows, turns, result.scales);
  for (int row = 0; row < N; ++row) {
    for (int column = 0; column < N; ++column) {
      result.axes[row][column] = turns[column][row];
      double sum = 0.0;
      for (int i = 0; i < N; ++i) sum += turns[i][row] * rows[i][column];
      result.rotation[row][column] = sum;
    }
  }
  return result;
}

template ScaleAndRotation<2> DecomposeLinear(const double (&)[2][2]);
template ScaleAndRotation<3> DecomposeLinear(const double (&)[3][3]);

}  // namespace shr
