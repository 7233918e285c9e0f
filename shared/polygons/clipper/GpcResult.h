// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The contours that the polygon clipper gives back. For the library's own use.
///
/// Threads: an object serves one call at a time.

#pragma once

#include "shared/polygons/clipper/GpcLabels.h"

namespace shr::gpc {

/// A contour of the result: points of the result, of which `top` is the highest, of several the
/// leftmost.
struct ResultContour {
  Index first;
  Index count;
  Index top;
  Index side;   ///< the side of a chain on which the result is, see `SideOfLoop`
  Index owner;  ///< of a hole, the number of its outer contour; of others their own
  bool isHole;
};

/// Where a part of a line lies: the area is on both of its sides, on neither, or on one.
enum class LinePlace : std::uint8_t { Inside, Outside, Border };

/// A part of a line: points of the result.
struct LinePart {
  Index line;
  LinePlace place;
  Index first;
  Index count;
};

struct Result {
  Buffer<Vec2d> points{L"vertex list creation"};
  Buffer<ResultContour> contours{L"contour creation"};
  Buffer<LinePart> lineParts{L"contour creation"};  ///< line by line, along each

  // What the stages work with.
  Buffer<std::uint8_t> isBorder{L"result table creation"};  ///< by chain: not yet traced
  Buffer<Index> nodeMarks{L"result table creation"};
  Buffer<Half> path{L"result table creation"};
  Buffer<Index> faces{L"face creation"};   ///< by side: a forest of sides of one face of the result
  Buffer<Index> outers{L"face creation"};  ///< by face: its outer contour
  Buffer<Index> keptChains{L"result table creation"};  ///< by chain, if there are mergers
};

/// Whether a place is in the result, by the operands it is inside.
struct Membership {
  /// Errors: `GPCException` for an unknown operation.
  explicit Membership(gpc_op operation);
  bool operator[](Operands operands) const { return isIn[operands]; }
  bool isIn[4];
};

/// Traces the contours of the result.
void TraceContours(gpc_op operation, const Input& input, const Graph& graph, const Labels& labels,
                   Result& result);
/// Finds the outer contour of each hole of the result.
void FindOwners(gpc_op operation, const Input& input, const Crossings& crossings,
                const Graph& graph, const Labels& labels, Result& result);

/// Cuts the lines into parts.
void CutLines(const Input& input, const Crossings& crossings, const Graph& graph,
              const Labels& labels, Result& result);

}  // namespace shr::gpc
