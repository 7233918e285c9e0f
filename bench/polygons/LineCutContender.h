// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// One face for what cuts open lines by a polygon, here and elsewhere.
///
///     auto contender = MakeClipperLineCutter();
///     contender->Prepare(lines, coast);         // conversions, not timed
///     LineLengths lengths = contender->Cut();   // timed

#pragma once

#include <memory>
#include <vector>

#include "bench/polygons/ClipWorkloads.h"

namespace shr::bench {

struct LineLengths {
  double inside = 0.0;
  double outside = 0.0;
};

class LineCutter {
public:
  LineCutter() = default;
  LineCutter(const LineCutter&) = delete;
  LineCutter& operator=(const LineCutter&) = delete;
  virtual ~LineCutter() = default;

  virtual void Prepare(const std::vector<Points>& lines, const Points& polygon) = 0;
  /// Makes the pieces inside and those outside.
  virtual void Cut() = 0;
  /// Returns the lengths of what the last call has made.
  virtual LineLengths Lengths() const = 0;
};

/// These return nothing where the library is absent.
std::unique_ptr<LineCutter> MakeClipperLineCutter();
std::unique_ptr<LineCutter> MakeGeosLineCutter();

}  // namespace shr::bench
