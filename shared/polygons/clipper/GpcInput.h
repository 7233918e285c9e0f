// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The contours of both operands, as the stages of the polygon clipper read them. For the library's
/// own use; the public face is shared/polygons/Gpc.h, the idea of the whole is at the top of
/// Gpc.cpp.
///
/// Threads: an object serves one call at a time.

#pragma once

#include <cstdint>
#include <span>

#include "shared/polygons/clipper/GpcBuffer.h"

namespace shr::gpc {

/// Which operands something belongs to or lies inside: a sum of the two bits below.
using Operands = std::uint8_t;
inline constexpr Operands SUBJECT = 1;
inline constexpr Operands CLIP = 2;
/// Marks a line: it is open and encloses nothing.
inline constexpr Operands LINE = 0;

/// What is inside an operand.
enum class Rule : std::uint8_t {
  EvenOdd,   ///< an odd number of contours, counting a contour once for each time around
  NonZero,   ///< a winding number other than 0
  Positive,  ///< a winding number above 0, as inside a counter-clockwise contour in a y-up frame
  Negative,
  Polygons,  ///< at least one polygon, in which the even-odd rule holds
  Nests,     ///< as `EvenOdd`; beside it the contours are found that lie around each polygon
};

/// The contours of an operand. `polygons` has the number of the polygon that each belongs to; it
/// is looked at by the rule of polygons only.
struct Operand {
  std::span<const GpcContour> contours;
  std::span<const Index> polygons;
};

/// A closed walk over `count` points, which lie in the points from `first` on. The first is
/// repeated at `first + count`, so that edge i runs from point i to point i + 1 for every i. Or a
/// line of `count` edges, whose last point is at `first + count`.
struct Contour {
  Index first;
  Index count;
  Index lowest;   ///< the point of least y, of several the one of least x
  Index polygon;  ///< by the rule of polygons: its number among those of both operands; of a line,
                  ///< its number among the lines
  Operands operand;

  bool IsLine() const { return operand == LINE; }
  Index End() const { return first + count; }
  /// Returns the vertex at an end of an edge of the contour.
  Index VertexAt(Index point) const { return point == End() && !IsLine() ? first : point; }
  Index VertexBefore(Index vertex) const { return vertex == first ? End() - 1 : vertex - 1; }
};

enum Direction : std::uint8_t { TO_RIGHT = 1, TO_LEFT = 2, UPWARD = 4, DOWNWARD = 8 };

/// A run of successive edges that turn by less than a right angle each and go one way along an
/// axis: they cross each other nowhere.
struct Section {
  Box box;
  Index firstEdge;
  Index contour;
  std::uint16_t edgeCount;
  std::uint8_t directions;     ///< the ways all edges go, as bits of `Direction`
  std::uint8_t turnsSmoothly;  ///< the next section begins with a turn of less than a right angle
};

struct ContourTable {
  Buffer<Vec2d> points{L"vertex creation"};
  Buffer<Contour> contours{L"contour table creation"};

  void Clear() {
    points.Clear();
    contours.Clear();
  }
  void Swap(ContourTable& other) {
    points.Swap(other.points);
    contours.Swap(other.contours);
  }
};

/// What the operands are to the operation, and the contours as they are at present: those of the
/// operands at first, moved ones later if need be.
struct Input : ContourTable {
  Rule rule = Rule::EvenOdd;
  Index polygonCount = 0;  ///< by the rule of polygons
  double largest = 0.0;    ///< largest coordinate by absolute value
  double tolerance = 0.0;  ///< the snap distance
  double unscale = 1.0;    ///< factor from stored coordinates to those of the operands
  Buffer<Section> sections{L"section table creation"};

  /// Returns 1 where a contour turns to the left at its lowest point, else -1 (0 for no turn).
  int TurnAtLowest(const Contour& contour) const;
};

/// Makes the input of the contours of both operands, without repeated points and without what
/// cannot matter to the operation. Errors: as `gpc_polygon_clip`.
void LoadPolygons(gpc_op operation, Rule rule, const Operand& subject, const Operand& clip,
                  Input& input);
/// Makes the input of lines (contours of two or more vertices) and of the contours of an area, its
/// subject, as far as they matter to the lines. Errors: as `CutPolylines`.
void LoadLines(Rule rule, const Operand& area, std::span<const GpcContour> lines, Input& input);
/// Cuts the contours into sections and finds their lowest points.
void BuildSections(Input& input);

}  // namespace shr::gpc
