// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The plain way sorts the points by x and scans from each one to both sides until the difference of
// x alone is above the best distance. That is quadratic where many points have the same x. Its
// result does not depend on the scan: no point that it leaves out could have been nearer or as
// near, because rounding is monotone, so what it finds is the smallest rounded square distance and
// the smallest |dz| among all points at it. Any search with bounds that are monotone in the same
// way finds the very same numbers.
//
// Here the points are sorted into the square cells of a grid with a few points each. A search
// starts in the cell of its point and adds a row or column of cells on each side that the circle
// of the best distance still reaches. The circles of half the distances do not overlap, so all
// searches together pass O(n) cells, wherever the points are.
//
// What a grid cannot do is keep its cells small: in clustered data many points share one. Such a
// cell holds its points as a k-d tree (J. L. Bentley, "Multidimensional binary search trees used
// for associative searching", 1975) with the bounds of the points of each node. A node whose points
// are all at distance 0, as far as doubles can tell, is split by z, so that equal points by the
// million find the smallest |dz| as well. Two points can be as near as doubles tell to a third one
// only if they are in different directions or equal, so ties stay few.

#include "shared/numerics/statistics/NearestNeighbours.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "shared/numerics/statistics/OrderSelection.h"
#include "shared/numerics/statistics/TwoLanes.h"

namespace shr {
namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double POINTS_OF_A_CELL = 2.0;
/// A cell with more points is a tree, whose leaves have at most half as many.
constexpr std::size_t FULL_CELL = 24;
constexpr std::size_t LEAF_SIZE = 12;
/// Extents whose squares are normal numbers, with room for the cells to be smaller.
constexpr double SMALLEST_CELL = 1e-140;
constexpr double LARGEST_EXTENT = 1e140;
/// Below, starting threads costs more than it saves.
constexpr std::size_t PARALLEL_SIZE = 20000;
/// Cells or points that a thread takes at once.
constexpr std::size_t CHUNK = 1024;

double Square(double value) {
  return value * value;
}

double SquareDistance(const Vec3d& a, const Vec3d& b) {
  return Square(a.x - b.x) + Square(a.y - b.y);
}

/// The best neighbour found so far.
struct Nearest {
  double square = std::numeric_limits<double>::max();
  double difference = std::numeric_limits<double>::quiet_NaN();

  void Take(double newSquare, double newDifference) {
    if (newSquare < square) {
      square = newSquare;
      difference = newDifference;
    } else if (newSquare == square && !(newDifference >= difference)) {
      // NaN, which may stand on either side, is above all.
      if (newDifference == newDifference) difference = newDifference;
    }
  }
};

/// Bounds of points; those of z are of numbers alone.
struct Bounds {
  double lowX = INFINITE, highX = -INFINITE;
  double lowY = INFINITE, highY = -INFINITE;
  double lowZ = INFINITE, highZ = -INFINITE;

  void Add(const Vec3d& point) {
    lowX = std::min(lowX, point.x);
    highX = std::max(highX, point.x);
    lowY = std::min(lowY, point.y);
    highY = std::max(highY, point.y);
    if (point.z < lowZ) lowZ = point.z;
    if (point.z > highZ) highZ = point.z;
  }

  /// Not above the square distance of any of the points.
  double SquareDistance(const Vec3d& point) const {
    const double dx = std::max({0.0, lowX - point.x, point.x - highX});
    const double dy = std::max({0.0, lowY - point.y, point.y - highY});
    return dx * dx + dy * dy;
  }

  /// Tells whether one of the points may have a difference of z below `difference`.
  bool MayBeCloser(double z, double difference) const {
    if (lowZ > highZ || z != z) return false;  // no number would come of it
    if (std::isinf(z)) return difference != difference && !(lowZ == z && highZ == z);
    const double dz = std::max({0.0, lowZ - z, z - highZ});
    return !(dz >= difference);
  }
};

/// A node of a tree: all points from `begin` to `end`. Its first child follows it.
struct Node {
  Bounds bounds;
  std::size_t begin;
  std::size_t end;
  std::size_t second;  // child, 0 for a leaf
};

/// Trees over parts of an array of points.
class Trees {
public:
  explicit Trees(std::span<Vec3d> points) : points_(points) {}

  /// Makes a tree of the points from `begin` to `end`, which it reorders, and returns its root.
  std::size_t Build(std::size_t begin, std::size_t end) {
    const std::size_t index = nodes_.size();
    nodes_.push_back({{}, begin, end, 0});
    Bounds bounds;
    for (std::size_t i = begin; i < end; ++i) bounds.Add(points_[i]);
    nodes_[index].bounds = bounds;
    if (end - begin <= LEAF_SIZE) return index;
    const std::size_t middle = begin + (end - begin) / 2;
    Halve(points_.subspan(begin, end - begin), middle - begin, bounds);
    Build(begin, middle);
    const std::size_t second = Build(middle, end);
    nodes_[index].second = second;
    return index;
  }

  void Search(std::size_t index, std::size_t self, Nearest& nearest) const {
    const Node& node = nodes_[index];
    if (node.second == 0) return Scan(node.begin, node.end, self, nearest);
    const Vec3d& point = points_[self];
    std::size_t near = index + 1, far = node.second;
    double nearSquare = nodes_[near].bounds.SquareDistance(point);
    double farSquare = nodes_[far].bounds.SquareDistance(point);
    // Within a node of equal points the half of the point itself comes first.
    if (farSquare < nearSquare || (farSquare == nearSquare && self >= nodes_[far].begin)) {
      std::swap(near, far);
      std::swap(nearSquare, farSquare);
    }
    if (MayImprove(near, nearSquare, point, nearest)) Search(near, self, nearest);
    if (MayImprove(far, farSquare, point, nearest)) Search(far, self, nearest);
  }

  bool MayImprove(std::size_t index, const Vec3d& point, const Nearest& nearest) const {
    return MayImprove(index, nodes_[index].bounds.SquareDistance(point), point, nearest);
  }

  void Scan(std::size_t begin, std::size_t end, std::size_t self, Nearest& nearest) const {
    const Vec3d& point = points_[self];
    for (std::size_t i = begin; i < end; ++i) {
      const double square = SquareDistance(points_[i], point);
      if (square <= nearest.square && i != self) {
        nearest.Take(square, std::fabs(points_[i].z - point.z));
      }
    }
  }

private:
  bool MayImprove(std::size_t index, double square, const Vec3d& point,
                  const Nearest& nearest) const {
    if (square != nearest.square) return square < nearest.square;
    return nodes_[index].bounds.MayBeCloser(point.z, nearest.difference);
  }

  static void Halve(std::span<Vec3d> points, std::size_t middle, const Bounds& bounds) {
    const double width = bounds.highX - bounds.lowX, height = bounds.highY - bounds.lowY;
    if (width * width + height * height == 0.0) {
      if (bounds.lowZ == bounds.highZ) return;
      SelectInPlace(points, middle, [](const Vec3d& a, const Vec3d& b) {
        return a.z < b.z || (a.z == a.z && b.z != b.z);
      });
    } else if (width >= height) {
      SelectInPlace(points, middle, [](const Vec3d& a, const Vec3d& b) { return a.x < b.x; });
    } else {
      SelectInPlace(points, middle, [](const Vec3d& a, const Vec3d& b) { return a.y < b.y; });
    }
  }

  std::span<Vec3d> points_;
  std::vector<Node> nodes_;
};

/// The columns or rows of a grid: which one a coordinate belongs to, and where each begins.
class Axis {
public:
  Axis(double low, double high, double cellSize) : low_(low) {
    const double extent = high - low;
    tolerance_ = TOLERANCE * std::max(std::fabs(low), std::fabs(high));
    const double size = std::max(cellSize, 8.0 * tolerance_);
    count_ = size > 0.0 ? static_cast<std::size_t>(extent / size) + 1 : 1;
    size_ = extent / static_cast<double>(count_);
    factor_ = count_ > 1 ? static_cast<double>(count_) / extent : 0.0;
  }
  /// One column for everything.
  Axis() = default;

  std::size_t Count() const { return count_; }
  /// Grows with the coordinate.
  std::size_t IndexOf(double coordinate) const {
    const auto index = static_cast<std::int64_t>((coordinate - low_) * factor_);
    return std::min(static_cast<std::size_t>(index), count_ - 1);
  }
  /// Not above the difference between a coordinate and any of the columns before `index`.
  double DistanceBefore(std::size_t index, double coordinate) const {
    return std::max(0.0, coordinate - (Start(index) + tolerance_));
  }
  /// Not above the difference between a coordinate and any of the columns from `index` on.
  double DistanceFrom(std::size_t index, double coordinate) const {
    return std::max(0.0, (Start(index) - tolerance_) - coordinate);
  }

private:
  /// Above what rounding does to `IndexOf` and to `Start`, 7 units of the largest coordinate.
  static constexpr double TOLERANCE = 16.0 * 2.220446049250313e-16;

  double Start(std::size_t index) const { return low_ + static_cast<double>(index) * size_; }

  double low_ = 0.0;
  double size_ = 0.0;    // of a column
  double factor_ = 0.0;  // columns in a unit
  double tolerance_ = 0.0;
  std::size_t count_ = 1;
};

/// Copies of the points of a cell and of those around it, to be searched without branches.
class Block {
public:
  static constexpr std::size_t CAPACITY = 64;

  std::size_t Size() const { return size_; }
  void Add(std::span<const Vec3d> points) {
    for (const Vec3d& point : points) {
      x_[size_] = point.x;
      y_[size_] = point.y;
      z_[size_] = point.z;
      ++size_;
    }
  }
  /// Fills up what is computed with at once by points at no finite distance.
  void Close() {
    for (end_ = size_; end_ % STEP != 0; ++end_) x_[end_] = y_[end_] = INFINITE;
  }

  /// Returns the nearest of the points other than that at `self`.
  Nearest Search(std::size_t self) const {
    Nearest nearest;
    const double best = SecondLeast(self);
    if (!(best <= nearest.square)) return nearest;
    const TwoLanes x(x_[self]), y(y_[self]), wanted(best);
    for (std::size_t i = 0; i < end_; i += 2) {
      if (!IsAnyEqual(Squares(i, x, y), wanted)) continue;
      for (std::size_t k = i; k < i + 2; ++k) {
        const double square = Square(x_[k] - x_[self]) + Square(y_[k] - y_[self]);
        if (k != self && square == best) nearest.Take(best, std::fabs(z_[k] - z_[self]));
      }
    }
    return nearest;
  }

private:
  static constexpr std::size_t STEP = 4;

  /// The two smallest numbers that a lane has seen.
  struct Least {
    TwoLanes first{INFINITE};
    TwoLanes second{INFINITE};
    void Add(TwoLanes value) {
      second = Min(second, Max(first, value));
      first = Min(first, value);
    }
  };

  TwoLanes Squares(std::size_t i, TwoLanes x, TwoLanes y) const {
    const TwoLanes dx = TwoLanes::Load(x_ + i) - x, dy = TwoLanes::Load(y_ + i) - y;
    return dx * dx + dy * dy;
  }

  /// Returns the second smallest square distance from the point `self`, to which itself has 0.
  double SecondLeast(std::size_t self) const {
    const TwoLanes x(x_[self]), y(y_[self]);
    Least even, odd;
    for (std::size_t i = 0; i < end_; i += STEP) {
      even.Add(Squares(i, x, y));
      odd.Add(Squares(i + 2, x, y));
    }
    even.Add(odd.first);
    even.Add(odd.second);
    double first[2], second[2];
    even.first.Store(first);
    even.second.Store(second);
    return std::min(std::max(first[0], first[1]), std::min(second[0], second[1]));
  }

  double x_[CAPACITY], y_[CAPACITY], z_[CAPACITY];
  std::size_t size_ = 0;
  std::size_t end_ = 0;
};

/// The points sorted into cells, row by row.
class Grid {
public:
  explicit Grid(std::vector<Vec3d>& points, std::size_t count) : trees_(Sort(points, count)) {
    points_ = std::span<const Vec3d>(points).first(count);
    for (std::size_t cell = 0; cell + 1 < starts_.size(); ++cell) {
      if (starts_[cell + 1] - starts_[cell] <= FULL_CELL) continue;
      full_.push_back({cell, trees_.Build(starts_[cell], starts_[cell + 1])});
    }
  }

  /// Calls `take(point, nearest)` for every point, in parallel.
  template <class Taker>
  void SearchAll(const Taker& take) const {
    const std::size_t cells = starts_.size() - 1;
    const auto chunks = static_cast<std::int64_t>((cells + CHUNK - 1) / CHUNK);
    [[maybe_unused]] const bool isLarge = points_.size() > PARALLEL_SIZE;
#pragma omp parallel for schedule(dynamic) if (isLarge)
    for (std::int64_t i = 0; i < chunks; ++i) {
      const std::size_t first = static_cast<std::size_t>(i) * CHUNK;
      for (std::size_t cell = first; cell < std::min(first + CHUNK, cells); ++cell) {
        if (starts_[cell + 1] - starts_[cell] <= FULL_CELL) SearchCell(cell, take);
      }
    }
    for (const FullCell& full : full_) SearchFullCell(full.cell, take);
  }

private:
  /// Columns and rows that have been searched.
  struct Area {
    std::size_t firstColumn, lastColumn;
    std::size_t firstRow, lastRow;
  };
  struct FullCell {
    std::size_t cell;
    std::size_t root;
  };

  std::span<Vec3d> Sort(std::vector<Vec3d>& points, std::size_t count) {
    Bounds bounds;
    for (std::size_t i = 0; i < count; ++i) bounds.Add(points[i]);
    ChooseCells(bounds, static_cast<double>(count));
    starts_.assign(columns_.Count() * rows_.Count() + 1, 0);
    if (starts_.size() == 2) {
      starts_[1] = count;
      return std::span(points).first(count);
    }
    // Counting sort. Each start is first the number of points of the cell, then its next place.
    std::vector<std::uint32_t> cells(count);
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t cell = CellOf(points[i]);
      cells[i] = static_cast<std::uint32_t>(cell);
      ++starts_[cell];
    }
    std::size_t next = 0;
    for (std::size_t& start : starts_) {
      const std::size_t size = start;
      start = next;
      next += size;
    }
    std::vector<Vec3d> sorted(points.size());
    for (std::size_t i = 0; i < count; ++i) sorted[starts_[cells[i]]++] = points[i];
    std::copy(points.begin() + static_cast<std::ptrdiff_t>(count), points.end(),
              sorted.begin() + static_cast<std::ptrdiff_t>(count));
    points.swap(sorted);
    std::copy_backward(starts_.begin(), starts_.end() - 1, starts_.end());
    starts_[0] = 0;
    return std::span(points).first(count);
  }

  void ChooseCells(const Bounds& bounds, double count) {
    const double width = bounds.highX - bounds.lowX, height = bounds.highY - bounds.lowY;
    const double larger = std::max(width, height);
    const double cells = count / POINTS_OF_A_CELL;
    if (!(larger <= LARGEST_EXTENT) || cells < 2.0 || cells >= 4294967295.0 / 2.0) return;
    const double side = std::max(std::sqrt(width * height / cells), larger / cells);
    if (!(side >= SMALLEST_CELL)) return;
    columns_ = Axis(bounds.lowX, bounds.highX, side);
    rows_ = Axis(bounds.lowY, bounds.highY, side);
  }

  std::size_t CellOf(const Vec3d& point) const {
    return rows_.IndexOf(point.y) * columns_.Count() + columns_.IndexOf(point.x);
  }

  /// Searches for the points of a cell among those around it, together unless they are many.
  template <class Taker>
  void SearchCell(std::size_t cell, const Taker& take) const {
    if (starts_[cell] == starts_[cell + 1]) return;
    const std::size_t row = cell / columns_.Count(), column = cell % columns_.Count();
    const Area area{column - (column > 0 ? 1 : 0), std::min(column + 1, columns_.Count() - 1),
                    row - (row > 0 ? 1 : 0), std::min(row + 1, rows_.Count() - 1)};
    Block block;
    std::size_t ownPlace = 0;
    for (std::size_t i = area.firstRow; i <= area.lastRow; ++i) {
      const std::size_t first = i * columns_.Count();
      const std::size_t begin = starts_[first + area.firstColumn];
      const std::size_t end = starts_[first + area.lastColumn + 1];
      if (block.Size() + (end - begin) > Block::CAPACITY) return SearchEach(cell, take);
      if (i == row) ownPlace = block.Size() + (starts_[cell] - begin);
      block.Add(points_.subspan(begin, end - begin));
    }
    block.Close();
    for (std::size_t self = starts_[cell]; self < starts_[cell + 1]; ++self) {
      Nearest nearest = block.Search(ownPlace + (self - starts_[cell]));
      take(self, SearchAround(area, self, nearest));
    }
  }

  template <class Taker>
  void SearchEach(std::size_t cell, const Taker& take) const {
    for (std::size_t self = starts_[cell]; self < starts_[cell + 1]; ++self) {
      take(self, SearchFrom(cell, self));
    }
  }

  template <class Taker>
  void SearchFullCell(std::size_t cell, const Taker& take) const {
    const auto begin = static_cast<std::int64_t>(starts_[cell]);
    const auto end = static_cast<std::int64_t>(starts_[cell + 1]);
    [[maybe_unused]] const bool isLarge = end - begin > static_cast<std::int64_t>(PARALLEL_SIZE);
#pragma omp parallel for schedule(dynamic, CHUNK) if (isLarge)
    for (std::int64_t i = begin; i < end; ++i) {
      const auto self = static_cast<std::size_t>(i);
      take(self, SearchFrom(cell, self));
    }
  }

  /// Searches from the cell of a point on.
  Nearest SearchFrom(std::size_t cell, std::size_t self) const {
    const std::size_t row = cell / columns_.Count(), column = cell % columns_.Count();
    Nearest nearest;
    Visit(column, column, row, self, nearest);
    return SearchAround({column, column, row, row}, self, nearest);
  }

  Nearest SearchAround(Area area, std::size_t self, Nearest nearest) const {
    while (Grow(area, self, nearest)) continue;
    return nearest;
  }

  /// Searches the cells of a row from one column to another.
  void Visit(std::size_t firstColumn, std::size_t lastColumn, std::size_t row, std::size_t self,
             Nearest& nearest) const {
    const std::size_t first = row * columns_.Count() + firstColumn;
    const std::size_t last = row * columns_.Count() + lastColumn;
    const std::size_t begin = starts_[first], end = starts_[last + 1];
    if (end - begin <= FULL_CELL) return trees_.Scan(begin, end, self, nearest);
    for (std::size_t cell = first; cell <= last; ++cell) {
      if (starts_[cell + 1] - starts_[cell] <= FULL_CELL) {
        trees_.Scan(starts_[cell], starts_[cell + 1], self, nearest);
      } else {
        const std::size_t root = RootOf(cell);
        if (trees_.MayImprove(root, points_[self], nearest)) trees_.Search(root, self, nearest);
      }
    }
  }

  std::size_t RootOf(std::size_t cell) const {
    return std::lower_bound(
               full_.begin(), full_.end(), cell,
               [](const FullCell& full, std::size_t index) { return full.cell < index; })
        ->root;
  }

  /// Adds a column or row on each side that the circle of the best distance reaches, and tells
  /// whether there was one.
  bool Grow(Area& area, std::size_t self, Nearest& nearest) const {
    const Vec3d& point = points_[self];
    bool isGrown = false;
    if (area.firstColumn > 0 &&
        Square(columns_.DistanceBefore(area.firstColumn, point.x)) <= nearest.square) {
      --area.firstColumn;
      VisitColumn(area, area.firstColumn, self, nearest);
      isGrown = true;
    }
    if (area.lastColumn + 1 < columns_.Count() &&
        Square(columns_.DistanceFrom(area.lastColumn + 1, point.x)) <= nearest.square) {
      ++area.lastColumn;
      VisitColumn(area, area.lastColumn, self, nearest);
      isGrown = true;
    }
    if (area.firstRow > 0 &&
        Square(rows_.DistanceBefore(area.firstRow, point.y)) <= nearest.square) {
      --area.firstRow;
      Visit(area.firstColumn, area.lastColumn, area.firstRow, self, nearest);
      isGrown = true;
    }
    if (area.lastRow + 1 < rows_.Count() &&
        Square(rows_.DistanceFrom(area.lastRow + 1, point.y)) <= nearest.square) {
      ++area.lastRow;
      Visit(area.firstColumn, area.lastColumn, area.lastRow, self, nearest);
      isGrown = true;
    }
    return isGrown;
  }

  void VisitColumn(const Area& area, std::size_t column, std::size_t self, Nearest& nearest) const {
    for (std::size_t row = area.firstRow; row <= area.lastRow; ++row) {
      Visit(column, column, row, self, nearest);
    }
  }

  Axis columns_, rows_;
  std::vector<std::size_t> starts_;  // of the cells, and the end of the last one
  Trees trees_;
  std::vector<FullCell> full_;
  std::span<const Vec3d> points_;
};

}  // namespace

NeighbourDistances FindNearestNeighbours(std::vector<Vec3d>& points) {
  const auto middle = std::partition(points.begin(), points.end(), [](const Vec3d& point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
  });
  const auto count = static_cast<std::size_t>(middle - points.begin());
  NeighbourDistances result;
  result.distances.assign(points.size(), std::sqrt(Nearest().square));
  result.differences.assign(points.size(), Nearest().difference);
  const Grid grid(points, count);
  grid.SearchAll([&result](std::size_t point, const Nearest& nearest) {
    result.distances[point] = std::sqrt(nearest.square);
    result.differences[point] = nearest.difference;
  });
  return result;
}

}  // namespace shr
