// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The steady clock with the finest tick of the platform, and local calendar time.
/// Threads: all functions may be called on any thread.

#pragma once

#include <cstdint>
#include <ctime>

#include "shared/Export.h"

namespace shr::platform {

/// A clock that only runs forward.
struct ClockInfo {
  std::int64_t frequency = 0;   ///< ticks per second, positive
  bool highResolution = false;  ///< false for the millisecond clock that stands in for a finer one
};

/// Returns the properties of the clock, the same throughout the process.
SHARED_API ClockInfo GetClockInfo() noexcept;

/// Returns the clock's ticks since some fixed moment; never 0.
SHARED_API std::int64_t GetClockTicks() noexcept;

/// Returns `moment` in the time zone of the machine.
SHARED_API std::tm ToLocalTime(std::time_t moment) noexcept;

}  // namespace shr::platform
