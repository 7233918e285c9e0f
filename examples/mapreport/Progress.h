// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Tells the user how far a run is: one line that is written over while the work goes on.

#pragma once

#include <cstddef>

#include "shared/text/GString.h"

namespace mapreport {

using shr::GString;

/// The line appears on a terminal only; redirected or silenced output sees nothing. It is wiped
/// when the object ends.
class Progress {
public:
  /// `steps` is the number of calls of `Step` to come.
  Progress(std::size_t steps, bool quiet);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Shows that a step begins.
  void Step(const GString& what);
  /// Wipes the line.
  void Finish();

private:
  void Overwrite(const GString& line);

  std::size_t steps_;
  std::size_t done_ = 0;
  std::size_t shownLength_ = 0;
  bool visible_;
};

}  // namespace mapreport
