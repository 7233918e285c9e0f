// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CTimer` measures elapsed milliseconds on the platform's steady clock.
///
///     CTimer timer;
///     timer.Start();
///     Work();
///     double milliseconds = timer.Elapsed();
///
/// Threads: const calls may run together.

#pragma once

#include <cstdint>

#include "shared/Export.h"

namespace shr {

/// A stopwatch that can be read while it runs.
class SHARED_API CTimer {
public:
  CTimer() noexcept;

  /// Begins to measure at this moment.
  void Start() noexcept;
  /// Makes the timer one that was never started.
  void Reset() noexcept;

  /// Returns the clock's ticks at this moment; never 0.
  std::int64_t GetTicks() const noexcept;
  /// Returns the clock's ticks per second.
  std::int64_t GetFrequency() const noexcept { return frequency_; }
  /// Returns true when the clock is finer than a millisecond.
  bool IsHighResolution() const noexcept { return highResolution_; }

  /// Returns the milliseconds since `Start`, 0.0 when the timer was not started.
  double Elapsed() const noexcept { return Elapsed(startTick_); }
  /// Returns the milliseconds since a value of `GetTicks`, 0.0 for 0.
  double Elapsed(std::int64_t startTick) const noexcept;

private:
  bool highResolution_;
  std::int64_t startTick_ = 0;
  std::int64_t frequency_;
};

}  // namespace shr
