// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Square grids for point location are old (F. Preparata and M. Shamos, "Computational Geometry",
// 1985, section 2.2, call the idea "locus method"); here the answer must be that of the test of all
// edges, which is exact.
//
// Every edge is entered into all cells that it touches with a margin of 1e-9 of the extent, far
// more than the rounding errors of the grid's own arithmetic. No edge passes through a cell without
// edges, so that the answer is the same in the whole cell.
//
// The cells with edges form runs along each row. A point in a run asks for crossings to the right:
// those of the edges in the run are tested one by one, and beyond the run lies a
// cell whose state is known and the same at every height of the row.
//
// States are found from right to left in every row: outside of the grid nothing is inside, and a
// run changes the state if an odd number of its edges span some height in the row.

#include "shared/polygons/ContourGrid.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <utility>

namespace shr {
namespace {

constexpr double RELATIVE_MARGIN = 1e-9;

/// Extents between these, and edges no flatter than this, keep the grid's arithmetic away from the
/// ends of the exponent range.
constexpr double SMALLEST_EXTENT = 1e-100;
constexpr double LARGEST_EXTENT = 1e100;
constexpr double SMALLEST_HEIGHT = 1e-150;

constexpr std::uint32_t MIN_SIZE = 8;
constexpr std::uint32_t MAX_SIZE = 1024;

bool IsMeasurable(double extent) {
  return extent >= SMALLEST_EXTENT && extent <= LARGEST_EXTENT;
}

}  // namespace

std::vector<ContourEdge> MakeContourEdges(std::span<const Vec2d> points,
                                          std::span<const unsigned int> counts) {
  std::vector<ContourEdge> edges;
  edges.reserve(points.size());
  for (const unsigned int count : counts) {
    const std::span<const Vec2d> contour = points.first(count);
    points = points.subspan(count);
    for (std::size_t i = 0; i < count; ++i) {
      edges.push_back({contour[i == 0 ? count - 1 : i - 1], contour[i]});
    }
  }
  return edges;
}

/// Enters the edges into the cells.
class ContourGrid::Builder {
public:
  explicit Builder(ContourGrid& grid) : grid_(grid) {}

  void Build(Lists lists) {
    FindEntries();
    SortEntriesByRow();
    grid_.cells_.assign(std::size_t{grid_.size_} * grid_.size_, 0);
    for (std::uint32_t row = 0; row < grid_.size_; ++row) {
      BuildRow(row,
               std::span(entries_).subspan(rowStarts_[row], rowStarts_[row + 1] - rowStarts_[row]));
    }
    if (lists == Lists::OF_ROWS_AND_CELLS) ListEdgesOfCells();
  }

private:
  void FindEntries() {
    for (std::uint32_t edge = 0; edge < grid_.edges_.size(); ++edge) {
      const Walk walk = grid_.WalkAlong(grid_.edges_[edge].from, grid_.edges_[edge].to);
      for (std::uint32_t row = walk.rows.first; row <= walk.rows.last; ++row) {
        const Range columns = grid_.ColumnsOf(walk, row);
        entries_.push_back({edge, static_cast<std::uint16_t>(row),
                            static_cast<std::uint16_t>(columns.first),
                            static_cast<std::uint16_t>(columns.last)});
      }
    }
  }

  void SortEntriesByRow() {
    rowStarts_.assign(grid_.size_ + 1, 0);
    for (const Entry& entry : entries_) ++rowStarts_[entry.row + 1u];
    for (std::size_t row = 1; row < rowStarts_.size(); ++row)
      rowStarts_[row] += rowStarts_[row - 1];
    std::vector<std::uint32_t> next(rowStarts_);
    std::vector<Entry> sorted(entries_.size());
    for (const Entry& entry : entries_) sorted[next[entry.row]++] = entry;
    entries_.swap(sorted);
  }

  void BuildRow(std::uint32_t row, std::span<const Entry> entries) {
    const std::size_t firstRun = grid_.runs_.size();
    const std::span<std::uint32_t> cells =
        std::span(grid_.cells_).subspan(grid_.CellIndex(row, 0), grid_.size_);
    MarkRuns(entries, cells);
    FillRuns(entries, cells, firstRun);
    FindStates(row, cells);
  }

  /// Numbers the runs of cells that entries touch.
  void MarkRuns(std::span<const Entry> entries, std::span<std::uint32_t> cells) {
    depths_.assign(cells.size() + 1, 0);
    for (const Entry& entry : entries) {
      ++depths_[entry.firstColumn];
      --depths_[entry.lastColumn + 1u];
    }
    int depth = 0;
    bool isInRun = false;
    for (std::size_t column = 0; column < cells.size(); ++column) {
      depth += depths_[column];
      if (depth > 0 && !isInRun) grid_.runs_.push_back({0, 0, false});
      isInRun = depth > 0;
      if (isInRun) cells[column] = FIRST_RUN + static_cast<std::uint32_t>(grid_.runs_.size() - 1);
    }
  }

  /// Lists the edges of every run that are not horizontal.
  void FillRuns(std::span<const Entry> entries, std::span<const std::uint32_t> cells,
                std::size_t firstRun) {
    const auto runOf = [&](const Entry& entry) -> Run& {
      return grid_.runs_[cells[entry.firstColumn] - FIRST_RUN];
    };
    for (const Entry& entry : entries) runOf(entry).endEdge += !IsHorizontal(entry.edge);
    std::uint32_t next = static_cast<std::uint32_t>(grid_.runEdges_.size());
    for (Run& run : std::span(grid_.runs_).subspan(firstRun)) {
      run.firstEdge = next;
      next += std::exchange(run.endEdge, next);
    }
    grid_.runEdges_.resize(next);
    for (const Entry& entry : entries) {
      if (!IsHorizontal(entry.edge)) grid_.runEdges_[runOf(entry).endEdge++] = entry.edge;
    }
  }

  /// Finds the states of the cells without edges and right of every run.
  void FindStates(std::uint32_t row, std::span<std::uint32_t> cells) {
    const double y = grid_.bounds_.yMin() + (row + 0.5) / grid_.scale_.y;
    bool isInside = false;
    for (std::size_t column = cells.size(); column-- > 0;) {
      if (cells[column] < FIRST_RUN) {
        cells[column] = isInside;
        continue;
      }
      Run& run = grid_.runs_[cells[column] - FIRST_RUN];
      run.isRightInside = isInside;
      for (std::uint32_t i = run.firstEdge; i < run.endEdge; ++i) {
        const ContourEdge& edge = grid_.edges_[grid_.runEdges_[i]];
        isInside ^= (edge.from.y <= y) != (edge.to.y <= y);
      }
      while (column > 0 && cells[column - 1] == cells[column]) --column;
    }
  }

  void ListEdgesOfCells() {
    std::vector<std::uint32_t>& starts = grid_.cellStarts_;
    starts.assign(grid_.cells_.size() + 1, 0);
    const auto forEachCell = [&](auto function) {
      for (const Entry& entry : entries_) {
        for (std::uint32_t column = entry.firstColumn; column <= entry.lastColumn; ++column) {
          function(grid_.CellIndex(entry.row, column), entry.edge);
        }
      }
    };
    forEachCell([&](std::size_t cell, std::uint32_t) { ++starts[cell + 1]; });
    for (std::size_t cell = 1; cell < starts.size(); ++cell) starts[cell] += starts[cell - 1];
    grid_.cellEdges_.resize(starts.back());
    std::vector<std::uint32_t> next(starts);
    forEachCell(
        [&](std::size_t cell, std::uint32_t edge) { grid_.cellEdges_[next[cell]++] = edge; });
  }

  bool IsHorizontal(std::uint32_t edge) const {
    return grid_.edges_[edge].from.y == grid_.edges_[edge].to.y;
  }

  ContourGrid& grid_;
  std::vector<Entry> entries_;
  std::vector<std::uint32_t> rowStarts_;
  std::vector<int> depths_;
};

ContourGrid::ContourGrid(std::vector<ContourEdge> edges, Lists lists) : edges_(std::move(edges)) {
  for (const ContourEdge& edge : edges_) bounds_.ExtendBy(edge.to);
  if (!CanHaveCells()) return;
  ChooseSize();
  // The middle of a row must be a number in that row.
  const double largestY = std::max(std::abs(bounds_.yMin()), std::abs(bounds_.yMax()));
  if (bounds_.yRange() < 16.0 * DBL_EPSILON * largestY * size_) return;
  Builder(*this).Build(lists);
}

bool ContourGrid::CanHaveCells() const {
  if (!IsMeasurable(bounds_.xRange()) || !IsMeasurable(bounds_.yRange())) return false;
  return std::all_of(edges_.begin(), edges_.end(), [](const ContourEdge& edge) {
    const double height = std::abs(edge.to.y - edge.from.y);
    return edge.to.IsFinite() && (height == 0.0 || height >= SMALLEST_HEIGHT);
  });
}

/// About four cells an edge, so that few cells have edges, and few edges each; fewer where edges
/// are so long that they would be entered into many.
void ContourGrid::ChooseSize() {
  double rowsAndColumns = 0.0;  // that an edge spans in a grid of one cell
  for (const ContourEdge& edge : edges_) {
    rowsAndColumns += std::abs(edge.to.x - edge.from.x) / bounds_.xRange() +
                      std::abs(edge.to.y - edge.from.y) / bounds_.yRange();
  }
  const double count = static_cast<double>(edges_.size());
  const double wanted = std::max(64.0, 2.0 * std::sqrt(count));
  const double affordable = (4096.0 + 16.0 * count) / rowsAndColumns;
  size_ = static_cast<std::uint32_t>(
      std::clamp(std::min(wanted, affordable), double{MIN_SIZE}, double{MAX_SIZE}));
  margin_ = Vec2d(bounds_.xRange(), bounds_.yRange()) * RELATIVE_MARGIN;
  scale_ = Vec2d(size_ / bounds_.xRange(), size_ / bounds_.yRange());
}

bool ContourGrid::IsInside(const Vec2d& point) const {
  if (!HasCells()) {
    bool isInside = false;
    for (const ContourEdge& edge : edges_) isInside ^= IsToggledBy(edge.from, edge.to, point);
    return isInside;
  }
  // Written so that a NaN is outside, too.
  if (!(point.y >= bounds_.yMin() && point.y < bounds_.yMax() &&
        point.x >= bounds_.xMin() - margin_.x && point.x <= bounds_.xMax() + margin_.x)) {
    return false;
  }
  const std::uint32_t cell = cells_[CellIndex(RowOf(point.y), ColumnOf(point.x))];
  if (cell < FIRST_RUN) return cell != 0;
  const Run& run = runs_[cell - FIRST_RUN];
  bool isInside = run.isRightInside;
  for (std::uint32_t i = run.firstEdge; i < run.endEdge; ++i) {
    const ContourEdge& edge = edges_[runEdges_[i]];
    isInside ^= IsToggledBy(edge.from, edge.to, point);
  }
  return isInside;
}

ContourGrid::Walk ContourGrid::WalkAlong(const Vec2d& begin, const Vec2d& end) const {
  Walk walk;
  walk.begin = begin - bounds_.Min();
  walk.end = end - bounds_.Min();
  // The errors of a segment much longer than the grid grow with its own length.
  const Vec2d length(std::abs(end.x - begin.x), std::abs(end.y - begin.y));
  walk.margin = Vec2d(std::max(margin_.x, length.x * RELATIVE_MARGIN),
                      std::max(margin_.y, length.y * RELATIVE_MARGIN));
  walk.isFlat = length.y < SMALLEST_HEIGHT;
  walk.slope = walk.isFlat ? 0.0 : (end.x - begin.x) / (end.y - begin.y);
  const auto [low, high] = std::minmax(walk.begin.y, walk.end.y);
  walk.rows = {IndexOf((low - walk.margin.y) * scale_.y),
               IndexOf((high + walk.margin.y) * scale_.y)};
  return walk;
}

ContourGrid::Range ContourGrid::ColumnsOf(const Walk& walk, std::uint32_t row) const {
  double low = std::min(walk.begin.x, walk.end.x);
  double high = std::max(walk.begin.x, walk.end.x);
  if (walk.rows.first != walk.rows.last && !walk.isFlat) {
    const double bottom = row / scale_.y - walk.margin.y;
    const double top = (row + 1) / scale_.y + walk.margin.y;
    const double atBottom = walk.begin.x + (bottom - walk.begin.y) * walk.slope;
    const double atTop = walk.begin.x + (top - walk.begin.y) * walk.slope;
    low = std::max(low, std::min(atBottom, atTop));
    high = std::min(high, std::max(atBottom, atTop));
  }
  return {IndexOf((low - walk.margin.x) * scale_.x), IndexOf((high + walk.margin.x) * scale_.x)};
}

}  // namespace shr
