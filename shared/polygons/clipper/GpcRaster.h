// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The cells into which the polygon clipper deals out many short sections before it looks for their
/// crossings. For the library's own use.
///
/// Whatever point two boxes have in common lies in a cell that both are dealt to.
///
/// Threads: const calls may run together.

#pragma once

#include <algorithm>
#include <cmath>

#include "shared/polygons/clipper/GpcInput.h"
#include "shared/polygons/clipper/GpcTuning.h"

namespace shr::gpc {

/// Equal cells over a box. Its margins keep cell borders off the lines that inputs like.
class Raster {
public:
  Raster(const Box& box, Index sections) {
    const double width = box.xMax - box.xMin;
    const double height = box.yMax - box.yMin;
    const double cells = std::max(1.0, sections / Tuning::SECTIONS_PER_CELL);
    const double columns = std::sqrt(cells * width / height);
    // Not a number where the box is empty or without height.
    columns_ = columns >= 1.0 ? static_cast<Index>(std::min(columns, cells)) : 1;
    rows_ = std::max(1u, static_cast<Index>(cells) / columns_);
    cellWidth_ = width * MARGIN / columns_;
    cellHeight_ = height * MARGIN / rows_;
    xMin_ = box.xMin - width * (MARGIN - 1.0) * 0.5;
    yMin_ = box.yMin - height * (MARGIN - 1.0) * 0.5;
    toColumns_ = cellWidth_ > 0.0 ? 1.0 / cellWidth_ : 0.0;
    toRows_ = cellHeight_ > 0.0 ? 1.0 / cellHeight_ : 0.0;
  }

  Index CellCount() const { return columns_ * rows_; }

  /// Returns how many cells meet a box.
  double CountCells(const Box& box) const {
    return (GetColumn(box.xMax) - GetColumn(box.xMin) + 1.0) *
           (GetRow(box.yMax) - GetRow(box.yMin) + 1.0);
  }

  /// Calls `handle` with the number of each cell that meets a box.
  template <class Handle>
  void ForEachCell(const Box& box, const Handle& handle) const {
    const Index firstColumn = GetColumn(box.xMin);
    const Index lastColumn = GetColumn(box.xMax);
    const Index lastRow = GetRow(box.yMax);
    for (Index row = GetRow(box.yMin); row <= lastRow; ++row) {
      for (Index column = firstColumn; column <= lastColumn; ++column) {
        handle(row * columns_ + column);
      }
    }
  }

  /// Returns the box of a cell with a margin.
  Box GetBounds(Index cell, double margin) const {
    const double x = xMin_ + cellWidth_ * (cell % columns_);
    const double y = yMin_ + cellHeight_ * (cell / columns_);
    return {x - margin, y - margin, x + cellWidth_ + margin, y + cellHeight_ + margin};
  }

private:
  static constexpr double MARGIN = 1.0123;

  Index GetColumn(double x) const {
    return std::min(columns_ - 1, static_cast<Index>(std::max(0.0, (x - xMin_) * toColumns_)));
  }
  Index GetRow(double y) const {
    return std::min(rows_ - 1, static_cast<Index>(std::max(0.0, (y - yMin_) * toRows_)));
  }

  Index columns_;
  Index rows_;
  double xMin_, yMin_, cellWidth_, cellHeight_, toColumns_, toRows_;
};

}  // namespace shr::gpc
