// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Tells the user how far a run is: one line on the terminal that is written over while the work
/// goes on.
///
/// Two indicators are registered with `shr::ProgressFactory`: "Console", the default one, and
/// "Silent", which shows nothing.
///
///     const std::unique_ptr<IProgress> progress = MakeProgress(quiet);
///     Operation operation(*progress, L"Counting", events.size());
///     for (...) if (!operation.Step()) return false;
///
/// Threads: one thread an indicator.

#pragma once

#include <cstdint>
#include <memory>

#include "shared/commands/IProgress.h"
#include "shared/text/GString.h"

namespace examples {

using shr::GString;
using shr::IProgress;

/// Returns the console's indicator when there is a terminal to show it and `quiet` is false, else
/// the silent one.
std::unique_ptr<IProgress> MakeProgress(bool quiet);

/// Returns the line that the console shows: "Counting 45 %", or "Counting" without a total.
GString ProgressLine(const GString& label, std::uint64_t done, std::uint64_t total);

/// One operation on an indicator, from its beginning to its end, also when an exception ends it.
class Operation {
public:
  Operation(IProgress& progress, const GString& label, std::uint64_t total);
  ~Operation();
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  /// Shows that one more step is behind. Returns false when the user wants to stop.
  bool Step();

private:
  IProgress& progress_;
  std::uint64_t done_ = 0;
};

}  // namespace examples
