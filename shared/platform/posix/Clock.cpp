// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/platform/Clock.h"

#include <time.h>

namespace shr::platform {
namespace {

constexpr std::int64_t NANOSECONDS_PER_SECOND = 1'000'000'000;

}  // namespace

ClockInfo GetClockInfo() noexcept {
  return {NANOSECONDS_PER_SECOND, true};
}

std::int64_t GetClockTicks() noexcept {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * NANOSECONDS_PER_SECOND + now.tv_nsec + 1;
}

std::tm ToLocalTime(std::time_t moment) noexcept {
  std::tm local = {};
  localtime_r(&moment, &local);
  return local;
}

}  // namespace shr::platform
