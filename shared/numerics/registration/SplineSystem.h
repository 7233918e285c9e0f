// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The direct solution of the interpolation system of a radial basis function. Internal.
///
///     SplineSystem system(RadialKernel::ThinPlate, u, v);
///     if (system.Factor() && system.Solve(targets, weights, polynomial)) ...
///
/// Threads: one thread a system.

#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "shared/numerics/linear/RMatrix.h"
#include "shared/numerics/linear/RVector.h"
#include "shared/numerics/registration/WarpMath.h"

namespace shr {

/// Phi w + P^T c = target, P w = 0 for n control points, equal ones as one.
class SplineSystem {
public:
  /// Points are normalised. The vectors are not kept.
  SplineSystem(RadialKernel kernel, const RVector& u, const RVector& v);

  /// Reduces the matrix to the space where P w = 0 and factors it. Returns false when the points
  /// lie on a line or the matrix is not positive definite there to working precision.
  /// Cost: O(m^3) for m distinct points, 8 m^2 bytes.
  bool Factor();

  /// Solves for two columns of targets, n x 2. Returns false when the solution misses the targets
  /// by more than a thousandth of what they leave of their trend. Requires: `Factor` returned true.
  bool Solve(const RMatrix& targets, RMatrix& weights, RMatrix& polynomial) const;

  /// For each control point, how far its target is from the spline through the others, n x 2; NaN
  /// where the others are on a line. Takes the factor's place. Requires: `Solve` returned true for
  /// these targets and gave these weights. Cost: O(m^3).
  RMatrix LeaveOneOut(const RMatrix& targets, const RMatrix& weights);

private:
  /// Three numbers of each distinct point.
  using Columns = std::array<std::vector<double>, 3>;

  void MergeEqualPoints(const RVector& u, const RVector& v);
  bool FactorConstraints();
  void MakeReflections();
  bool ReduceAndFactor();
  void Reflect(std::vector<double>& x) const;
  void ReflectBack(std::vector<double>& x) const;
  std::vector<double> MeanTargets(const RMatrix& targets, std::size_t column, double offset) const;
  void SubtractSpline(const std::vector<double>& weights,
                      std::array<std::vector<double>, 2>& rest) const;
  bool AddCorrection(const std::vector<double>& reflected, std::size_t column,
                     std::vector<double>& weights) const;
  void SolveConstants(const std::vector<double>& reflected, double* constants) const;
  std::vector<double> InverseDiagonal();

  std::size_t Size() const { return u_.size(); }

  RadialKernel kernel_;
  std::vector<double> u_;  ///< of the distinct points
  std::vector<double> v_;
  std::vector<std::size_t> owner_;  ///< of each control point: its distinct point
  std::vector<double> members_;  ///< of each distinct point: how many control points it stands for
  Columns reflectors_;           ///< V of Q = I - V T V^T
  double t_[3][3] = {};          ///< T, upper triangle
  double r_[3][3] = {};          ///< P^T = Q R
  RMatrix factor_;
};

}  // namespace shr
