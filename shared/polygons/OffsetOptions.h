// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// How the corners of an offset polygon are made. The operations are `GPolygon::Offset` and
/// `GPolygon2d::Offset`.
///
///     GPolygon2d zone = lake;
///     zone.Offset(500.0);                       // round, within 0.25 % of 500
///     zone.Offset(-20.0, {JoinType::Miter});
///
/// Threads: plain values.

#pragma once

namespace shr {

/// What stands at a corner that the offset pulls apart.
enum class JoinType {
  Round,   ///< an arc around the vertex
  Miter,   ///< both edges run on until they meet, square beyond the miter limit
  Square,  ///< an edge across, as far from the vertex as the edges are
};

struct OffsetOptions {
  JoinType join = JoinType::Round;
  /// The largest distance from a vertex to the tip of a miter, in offset distances; at least 1.
  double miterLimit = 2.0;
  /// How far an arc may lie inside the true one, in the units of the coordinates; 0 stands for
  /// 0.25 % of the distance. At most 65,536 edges make a full circle, so that the bound is no less
  /// than 1.2e-9 of the distance.
  double arcTolerance = 0.0;
};

}  // namespace shr
