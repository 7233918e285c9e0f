// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/diagnostics/Timer.h"

#include "shared/platform/Clock.h"

namespace shr {

CTimer::CTimer() noexcept
    : highResolution_(platform::GetClockInfo().highResolution),
      frequency_(platform::GetClockInfo().frequency) {}

void CTimer::Start() noexcept {
  startTick_ = GetTicks();
}

void CTimer::Reset() noexcept {
  startTick_ = 0;
}

std::int64_t CTimer::GetTicks() const noexcept {
  return platform::GetClockTicks();
}

double CTimer::Elapsed(std::int64_t startTick) const noexcept {
  if (startTick == 0) return 0.0;
  return static_cast<double>(GetTicks() - startTick) * 1000.0 / static_cast<double>(frequency_);
}

}  // namespace shr
