// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A grid over the edges of contours, in which a point or a segment meets only what is near it. Not
/// installed.
///
/// A cell that no edge touches knows whether it is inside; the others know their edges.
///
///     const ContourGrid grid(edges, ContourGrid::Lists::OF_ROWS);
///     bool inside = grid.IsInside(point);
///
/// Threads: const calls may run together.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec2.h"
#include "shared/polygons/ContourEdge.h"

namespace shr {

/// Returns the edges of contours in flat form, each from the point before to the point; that of the
/// first point comes from the last.
std::vector<ContourEdge> MakeContourEdges(std::span<const Vec2d> points,
                                          std::span<const unsigned int> counts);

class ContourGrid {
public:
  /// What the cells keep: lists for points only, or for segments as well.
  enum class Lists { OF_ROWS, OF_ROWS_AND_CELLS };
  enum class CellState : std::uint32_t { OUTSIDE = 0, INSIDE = 1, HAS_EDGES = 2 };

  ContourGrid() = default;
  ContourGrid(std::vector<ContourEdge> edges, Lists lists);

  /// False when the edges have coordinates for which the grid could not be sure of its cells: none
  /// that are numbers, or an extent of nothing or beyond all measure. Every point and segment then
  /// meets every edge.
  bool HasCells() const { return !cells_.empty(); }
  std::span<const ContourEdge> Edges() const { return edges_; }
  /// The bounds of all finite edges.
  const Box2d& Bounds() const { return bounds_; }

  /// Returns what `PointInPolygon` returns, to the bit.
  bool IsInside(const Vec2d& point) const;

  /// The rows, or columns, from the first to the last, both included.
  struct Range {
    std::uint32_t first;
    std::uint32_t last;
  };
  /// A segment among the cells, in coordinates relative to the grid.
  struct Walk {
    Vec2d begin;
    Vec2d end;
    Vec2d margin;
    double slope;  ///< of x over y
    bool isFlat;   ///< too flat for a slope
    Range rows;
  };
  /// The cells that a box may touch. Requires cells.
  struct Block {
    Range rows;
    Range columns;
  };
  Block CellsAround(const Box2d& box) const {
    return {{RowOf(box.yMin() - margin_.y), RowOf(box.yMax() + margin_.y)},
            {ColumnOf(box.xMin() - margin_.x), ColumnOf(box.xMax() + margin_.x)}};
  }
  /// Begins to walk along a finite segment. Requires cells.
  Walk WalkAlong(const Vec2d& begin, const Vec2d& end) const;
  /// Returns the columns that the segment may touch in a row.
  Range ColumnsOf(const Walk& walk, std::uint32_t row) const;

  /// Returns what is in a cell. Requires cells.
  CellState State(std::uint32_t row, std::uint32_t column) const {
    const std::uint32_t cell = cells_[CellIndex(row, column)];
    return cell < FIRST_RUN ? static_cast<CellState>(cell) : CellState::HAS_EDGES;
  }
  /// Returns the indices of the edges that may touch a cell. Requires lists of cells.
  std::span<const std::uint32_t> EdgesIn(std::uint32_t row, std::uint32_t column) const {
    const std::size_t cell = CellIndex(row, column);
    return std::span(cellEdges_)
        .subspan(cellStarts_[cell], cellStarts_[cell + 1] - cellStarts_[cell]);
  }
  std::uint32_t RowOf(double y) const { return IndexOf((y - bounds_.yMin()) * scale_.y); }
  std::uint32_t ColumnOf(double x) const { return IndexOf((x - bounds_.xMin()) * scale_.x); }

private:
  static constexpr std::uint32_t FIRST_RUN = 2;

  /// Neighbouring cells of a row that edges touch.
  struct Run {
    std::uint32_t firstEdge;
    std::uint32_t endEdge;
    bool isRightInside;  ///< the state of the cell to the right of the run
  };
  /// The columns of a row that an edge touches.
  struct Entry {
    std::uint32_t edge;
    std::uint16_t row;
    std::uint16_t firstColumn;
    std::uint16_t lastColumn;
  };
  class Builder;

  bool CanHaveCells() const;
  void ChooseSize();
  std::uint32_t IndexOf(double position) const {
    if (!(position > 0.0)) return 0;
    return position < size_ ? static_cast<std::uint32_t>(position) : size_ - 1;
  }
  std::size_t CellIndex(std::uint32_t row, std::uint32_t column) const {
    return std::size_t{row} * size_ + column;
  }

  std::vector<ContourEdge> edges_;
  Box2d bounds_;
  Vec2d margin_;                      ///< by which an edge may seem to be elsewhere
  Vec2d scale_;                       ///< cells a unit
  std::uint32_t size_ = 0;            ///< rows, and columns
  std::vector<std::uint32_t> cells_;  ///< a state, or FIRST_RUN and the index of a run
  std::vector<Run> runs_;
  std::vector<std::uint32_t> runEdges_;  ///< without the horizontal ones
  std::vector<std::uint32_t> cellStarts_;
  std::vector<std::uint32_t> cellEdges_;
};

}  // namespace shr
