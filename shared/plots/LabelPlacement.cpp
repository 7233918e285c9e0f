// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Boxes that are taken lie in a hashed grid of levels. A level holds the boxes of about one width
// and one height (each by powers of four) in cells at least that large, so that a box lies in four
// cells at most; and because labels do not overlap, a cell holds few of them. A search looks at
// every level, of which there are a few, into the cells that it overlaps, or at all boxes of the
// level where these are fewer. So neither crowds nor a mixture of sizes make it slow.

#include "shared/plots/LabelPlacement.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numeric>

namespace shr {

namespace {

/// Cells are not smaller than this part of the frame (two to this power): their numbers stay small.
constexpr int FINEST = 20;
constexpr std::uint32_t NONE = 0xFFFFFFFF;

bool Overlap(const Box2d& a, const Box2d& b) {
  return a.xMin() < b.xMax() && b.xMin() < a.xMax() && a.yMin() < b.yMax() && b.yMin() < a.yMax();
}

/// Also false for boxes with a number that is none.
bool HasArea(const Box2d& box) {
  return box.xMin() < box.xMax() && box.yMin() < box.yMax();
}

/// Also false for boxes with a number that is none.
bool IsInside(const Box2d& box, const Box2d& frame) {
  return box.xMin() >= frame.xMin() && box.xMax() <= frame.xMax() && box.yMin() >= frame.yMin() &&
         box.yMax() <= frame.yMax();
}

bool IsFrame(const Box2d& frame) {
  const double width = frame.xRange();
  const double height = frame.yRange();
  return width > 0 && height > 0 && std::isfinite(width) && std::isfinite(height);
}

/// Lists of numbers by the cell of a grid: open addressing with linear probing; the lists are
/// chained through one array.
class CellTable {
public:
  /// Takes memory for so many values at once.
  explicit CellTable(std::size_t expected)
      : slots_(std::bit_ceil(std::max<std::size_t>(2 * expected, 64))) {
    entries_.reserve(expected);
  }

  void Add(std::uint64_t cell, std::uint32_t value) {
    if (2 * used_ >= slots_.size()) Grow();
    Slot& slot = slots_[FindSlot(cell)];
    if (slot.first == NONE) {
      ++used_;
      slot.cell = cell;
    }
    entries_.push_back({value, slot.first});
    slot.first = static_cast<std::uint32_t>(entries_.size() - 1);
  }

  template <class Test>
  bool Any(std::uint64_t cell, const Test& test) const {
    for (std::uint32_t i = slots_[FindSlot(cell)].first; i != NONE; i = entries_[i].next) {
      if (test(entries_[i].value)) return true;
    }
    return false;
  }

private:
  struct Slot {
    std::uint64_t cell = 0;
    std::uint32_t first = NONE;
  };
  struct Entry {
    std::uint32_t value;
    std::uint32_t next;
  };

  /// Returns the slot of a cell, or the free one where it belongs.
  std::size_t FindSlot(std::uint64_t cell) const {
    const std::uint64_t hash = cell * 0x9E3779B97F4A7C15U;
    std::size_t i = static_cast<std::size_t>(hash >> 20) & (slots_.size() - 1);
    while (slots_[i].first != NONE && slots_[i].cell != cell) i = (i + 1) & (slots_.size() - 1);
    return i;
  }

  void Grow() {
    std::vector<Slot> old(4 * slots_.size());
    old.swap(slots_);
    for (const Slot& slot : old) {
      if (slot.first != NONE) slots_[FindSlot(slot.cell)] = slot;
    }
  }

  std::vector<Slot> slots_;  ///< as many as a power of two
  std::vector<Entry> entries_;
  std::size_t used_ = 0;
};

/// Columns or rows of cells, both ends included.
struct Range {
  std::uint64_t first;
  std::uint64_t last;
  std::uint64_t Count() const { return last - first + 1; }
};

/// The cells along one axis: those of a level are the smallest power of four above its boxes.
class Axis {
public:
  Axis(double origin, double length)
      : origin_(origin), least_(std::max(ExponentOf(length) - FINEST, LEAST)) {}

  int LevelOf(double size) const {
    const int exponent = std::max(ExponentOf(size), least_);
    return exponent + (exponent & 1);
  }
  Range CellsOf(double from, double to, double cellsPerUnit) const {
    return {CellAt(from, cellsPerUnit), CellAt(to, cellsPerUnit)};
  }

private:
  static constexpr int LEAST = -1000;  ///< whose inverse is finite

  /// Signed on the way, which processors convert at once.
  std::uint64_t CellAt(double at, double cellsPerUnit) const {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>((at - origin_) * cellsPerUnit));
  }

  /// Returns the least power of two that is above `size`; for 0 one below all others.
  static int ExponentOf(double size) {
    int exponent = 2 * LEAST;
    if (size > 0) std::frexp(size, &exponent);
    return exponent;
  }

  double origin_;
  int least_;
};

}  // namespace

/// The boxes that are taken in a frame that is none too odd.
class LabelPlacer::TakenBoxes {
public:
  TakenBoxes(const Box2d& frame, std::size_t expectedLabels)
      : x_(frame.xMin(), frame.xRange()),
        y_(frame.yMin(), frame.yRange()),
        cells_(CELLS_A_LABEL * expectedLabels) {
    boxes_.reserve(2 * expectedLabels);
  }

  /// Requires: the box lies in the frame. One without an area takes no room.
  void Add(const Box2d& box) {
    if (!HasArea(box)) return;
    const std::size_t index = LevelFor(box);
    Level& level = levels_[index];
    const auto number = static_cast<std::uint32_t>(boxes_.size());
    boxes_.push_back(box);
    level.boxes.push_back(number);
    level.bounds.ExtendBy(box.Min());
    level.bounds.ExtendBy(box.Max());
    const Range columns = x_.CellsOf(box.xMin(), box.xMax(), level.columnsPerUnit);
    const Range rows = y_.CellsOf(box.yMin(), box.yMax(), level.rowsPerUnit);
    for (std::uint64_t row = rows.first; row <= rows.last; ++row) {
      for (std::uint64_t column = columns.first; column <= columns.last; ++column) {
        cells_.Add(CellOf(index, column, row), number);
      }
    }
  }

  /// Returns true when a box overlaps `box`, which lies in the frame.
  bool HitBy(const Box2d& box) const {
    for (std::size_t i = 0; i < levels_.size(); ++i) {
      if (HitBy(box, i)) return true;
    }
    return false;
  }

private:
  /// A label lies in two or so and its marker in one.
  static constexpr std::size_t CELLS_A_LABEL = 3;

  struct Level {
    int x;  ///< cells are two to this power wide
    int y;
    double columnsPerUnit;
    double rowsPerUnit;
    Box2d bounds{};
    std::vector<std::uint32_t> boxes{};
  };

  std::size_t LevelFor(const Box2d& box) {
    const int x = x_.LevelOf(box.xRange());
    const int y = y_.LevelOf(box.yRange());
    std::size_t i = 0;
    while (i < levels_.size() && (levels_[i].x != x || levels_[i].y != y)) ++i;
    if (i == levels_.size()) levels_.push_back({x, y, std::ldexp(1.0, -x), std::ldexp(1.0, -y)});
    return i;
  }

  static std::uint64_t CellOf(std::size_t level, std::uint64_t column, std::uint64_t row) {
    return (static_cast<std::uint64_t>(level) << 48) | (row << 24) | column;
  }

  bool HitBy(const Box2d& box, std::size_t index) const {
    const Level& level = levels_[index];
    if (!Overlap(box, level.bounds)) return false;
    const auto isHit = [&](std::uint32_t number) { return Overlap(box, boxes_[number]); };
    const Range columns = x_.CellsOf(box.xMin(), box.xMax(), level.columnsPerUnit);
    const Range rows = y_.CellsOf(box.yMin(), box.yMax(), level.rowsPerUnit);
    if (columns.Count() * rows.Count() > level.boxes.size()) {
      return std::any_of(level.boxes.begin(), level.boxes.end(), isHit);
    }
    for (std::uint64_t row = rows.first; row <= rows.last; ++row) {
      for (std::uint64_t column = columns.first; column <= columns.last; ++column) {
        if (cells_.Any(CellOf(index, column, row), isHit)) return true;
      }
    }
    return false;
  }

  Axis x_;
  Axis y_;
  std::vector<Box2d> boxes_;
  std::vector<Level> levels_;
  CellTable cells_;
};

namespace {

Box2d MarkerBox(const PointLabel& label) {
  const Vec2d reach(label.radius, label.radius);
  return Box2d(label.point - reach, label.point + reach);
}

/// How a position moves a label from its point: along each axis by the side it is on.
struct Side {
  int x;  ///< -1 left of the point, 0 above or below it, 1 right of it
  int y;  ///< -1 above the point, 0 beside it, 1 below it
};

Side SideOf(LabelPosition position) {
  static constexpr Side SIDES[] = {{1, 0},   {1, -1}, {1, 1},  {-1, 0},
                                   {-1, -1}, {-1, 1}, {0, -1}, {0, 1}};
  return SIDES[static_cast<std::size_t>(position)];
}

/// Returns the height of the base line below the point.
double BaseLine(const Side& side, double away, double diagonal, const LabelExtent& extent) {
  if (side.y == 0) return extent.middle;
  if (side.x == 0) return side.y < 0 ? -away - extent.descent / 2 : away + extent.ascent;
  return side.y < 0 ? -diagonal : diagonal + 2 * extent.middle;
}

LabelPlace PlaceAt(const PointLabel& label, LabelPosition position, double gap) {
  const double away = label.radius + gap;
  const double diagonal = 0.7 * label.radius + gap / 2;
  const Side side = SideOf(position);
  const LabelExtent& extent = label.extent;
  LabelPlace place;
  place.position = position;
  place.anchor = side.x > 0   ? LabelAnchor::Start
                 : side.x < 0 ? LabelAnchor::End
                              : LabelAnchor::Middle;
  place.anchorPoint = label.point + Vec2d(side.x * (side.y == 0 ? away : diagonal),
                                          BaseLine(side, away, diagonal, extent));
  const double left = place.anchorPoint.x - (1 - side.x) * extent.width / 2;
  const double base = place.anchorPoint.y;
  place.box = Box2d(left, base - extent.ascent, left + extent.width, base + extent.descent);
  return place;
}

/// Infinite numbers are left to the frame.
bool HasSize(const PointLabel& label) {
  const LabelExtent& extent = label.extent;
  return extent.width >= 0 && extent.ascent + extent.descent >= 0 && label.radius >= 0;
}

}  // namespace

LabelPlacer::LabelPlacer(const Box2d& frame, const LabelOptions& options)
    : frame_(frame), options_(options) {
  if (IsFrame(frame)) taken_ = std::make_unique<TakenBoxes>(frame, options.expectedLabels);
}

LabelPlacer::~LabelPlacer() = default;
LabelPlacer::LabelPlacer(LabelPlacer&&) noexcept = default;
LabelPlacer& LabelPlacer::operator=(LabelPlacer&&) noexcept = default;

void LabelPlacer::Block(const Box2d& box) {
  if (taken_ == nullptr || !HasArea(box) || !Overlap(box, frame_)) return;
  taken_->Add(Box2d(std::max(box.xMin(), frame_.xMin()), std::max(box.yMin(), frame_.yMin()),
                    std::min(box.xMax(), frame_.xMax()), std::min(box.yMax(), frame_.yMax())));
}

std::optional<LabelPlace> LabelPlacer::Place(const PointLabel& label) {
  if (!HasSize(label)) return std::nullopt;
  const Box2d marker = MarkerBox(label);
  if (label.needsOwnMarker && !IsFree(marker)) return std::nullopt;
  const std::optional<LabelPlace> place = FindPlace(label);
  if (!place) return std::nullopt;
  taken_->Add(place->box);
  if (label.needsOwnMarker) taken_->Add(marker);
  return place;
}

bool LabelPlacer::IsFree(const Box2d& box) const {
  return taken_ != nullptr && IsInside(box, frame_) && !taken_->HitBy(box);
}

std::optional<LabelPlace> LabelPlacer::FindPlace(const PointLabel& label) const {
  for (const LabelPosition position : options_.positions) {
    const LabelPlace place = PlaceAt(label, position, options_.gap);
    if (IsFree(place.box)) return place;
  }
  return std::nullopt;
}

std::vector<std::optional<LabelPlace>> PlaceLabels(std::span<const PointLabel> labels,
                                                   const Box2d& frame,
                                                   std::span<const Box2d> obstacles,
                                                   const LabelOptions& options) {
  const auto rank = [&](std::size_t i) {
    return std::isnan(labels[i].priority) ? -HUGE_VAL : labels[i].priority;
  };
  std::vector<std::size_t> order(labels.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return rank(a) > rank(b); });
  LabelOptions sized = options;
  sized.expectedLabels = std::max(options.expectedLabels, labels.size());
  LabelPlacer placer(frame, sized);
  for (const Box2d& box : obstacles) placer.Block(box);
  std::vector<std::optional<LabelPlace>> places(labels.size());
  for (const std::size_t i : order) places[i] = placer.Place(labels[i]);
  return places;
}

}  // namespace shr
