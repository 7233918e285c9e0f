// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Points for the fuzz targets of clippers: from a byte each a number of a coarse lattice, where
/// coincidences abound, or the neighbour of the last number, or any number at all.

#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "shared/geometry/Vec2.h"

namespace shr::fuzz {

class PointInput {
public:
  PointInput(const uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  bool IsAtEnd() const { return next_ == end_; }
  uint8_t Byte() { return IsAtEnd() ? uint8_t{0} : *next_++; }

  double Number() {
    const uint8_t kind = Byte();
    if (kind == 0xFF && end_ - next_ >= static_cast<std::ptrdiff_t>(sizeof(double))) {
      std::memcpy(&last_, next_, sizeof(double));
      next_ += sizeof(double);
    } else if (kind == 0xFE || kind == 0xFD) {
      last_ = std::nextafter(last_, kind == 0xFE ? HUGE_VAL : -HUGE_VAL);
    } else {
      last_ = kind / 8.0;
    }
    return last_;
  }
  Vec2d Point() {
    const double x = Number();
    return {x, Number()};
  }
  std::vector<Vec2d> Points(std::size_t count) {
    std::vector<Vec2d> points;
    while (points.size() < count && !IsAtEnd()) points.push_back(Point());
    return points;
  }

private:
  const uint8_t* next_;
  const uint8_t* end_;
  double last_ = 0.0;
};

}  // namespace shr::fuzz
