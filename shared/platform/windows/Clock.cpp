// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Clock.h"

#include <windows.h>

namespace shr::platform {
namespace {

ClockInfo QueryClock() noexcept {
  LARGE_INTEGER frequency = {};
  if (QueryPerformanceFrequency(&frequency) && frequency.QuadPart > 0) {
    return {frequency.QuadPart, true};
  }
  return {1000, false};
}

}  // namespace

ClockInfo GetClockInfo() noexcept {
  static const ClockInfo info = QueryClock();
  return info;
}

std::int64_t GetClockTicks() noexcept {
  if (!GetClockInfo().highResolution) return static_cast<std::int64_t>(GetTickCount64()) + 1;
  LARGE_INTEGER now = {};
  QueryPerformanceCounter(&now);
  return now.QuadPart + 1;
}

std::tm ToLocalTime(std::time_t moment) noexcept {
  std::tm local = {};
  localtime_s(&local, &moment);
  return local;
}

}  // namespace shr::platform
