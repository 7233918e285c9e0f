// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// From degrees to the page: an equirectangular map that is true to scale along the window's mean
/// parallel.
///
/// x = left + (longitude - west) * cos(parallel) * s, y = top + (north - latitude) * s. The
/// parallel is the mean distance of the window's latitudes from the equator: the middle one of a
/// window on one side of it, 45 degrees for the whole world. Only the cosine is not exact
/// arithmetic; it is rounded to three decimals, so the same page comes out on every machine.

#pragma once

#include "examples/mapreport/Model.h"

namespace mapreport {

/// The mean distance in degrees of the latitudes from `south` to `north` from the equator.
double MeanParallel(double south, double north);

class Projection {
public:
  /// The map of `window` gets its upper left corner at (`left`, `top`) and the largest size that is
  /// neither wider than `maxWidth` nor higher than `maxHeight`.
  Projection(const Box2d& window, double left, double top, double maxWidth, double maxHeight);

  /// Returns the place on the page of a point in window coordinates.
  Vec2d ToPage(const Vec2d& point) const {
    return Vec2d(left_ + (point.x - window_.xMin()) * scaleX_,
                 top_ + (window_.yMax() - point.y) * scaleY_);
  }

  /// Returns the map's rectangle on the page, y down.
  const Box2d& Frame() const { return frame_; }
  const Box2d& Window() const { return window_; }
  double Parallel() const { return parallel_; }
  /// Returns the width of one kilometre along the parallel.
  double UnitsPerKilometre() const { return scaleY_ / 111.195; }

private:
  Box2d window_;
  double parallel_;
  double left_;
  double top_;
  double scaleX_;
  double scaleY_;
  Box2d frame_;
};

/// Returns the distance in degrees between the lines of a graticule over `range` degrees, so that
/// there are four to about ten of them.
double GraticuleStep(double range);

}  // namespace mapreport
