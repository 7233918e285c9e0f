// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Splits the linear part of a transform into scales along turned axes and a rotation, for the
/// transform matrices of this folder.
///
///     double m[2][2] = {{1.0, 0.5}, {0.0, 1.0}};
///     const ScaleAndRotation<2> parts = DecomposeLinear(m);
///
/// Threads: no state.

#pragma once

namespace shr {

/// The parts of an N x N matrix M for row vectors: M = axes diag(scales) axes^T rotation, where
/// `axes` and `rotation` are rotations. The columns of `axes` are the directions that are scaled.
template <int N>
struct ScaleAndRotation {
  double axes[N][N];
  double scales[N];
  double rotation[N][N];
};

/// Laws: a matrix diag(s) R with rotation R and s > 0 gives just s and R; a matrix that reverses
/// the sense gives an odd number of negative scales, other matrices give none; a matrix that loses
/// dimensions gives scales of 0. Requires finite elements.
/// Error bound: 1e-14 of the largest element.
template <int N>
ScaleAndRotation<N> DecomposeLinear(const double (&matrix)[N][N]);

extern template ScaleAndRotation<2> DecomposeLinear(const double (&)[2][2]);
extern template ScaleAndRotation<3> DecomposeLinear(const double (&)[3][3]);

}  // namespace shr
