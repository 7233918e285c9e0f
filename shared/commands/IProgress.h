// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `IProgress`, an indicator that shows the user how far a long operation is.
///
/// Applications implement it and register a creator with shared/commands/ProgressFactory.h. An
/// indicator on a console:
///
///     class ConsoleProgress : public IProgress {
///       void Begin(const GString& label, std::uint64_t total) override {
///         label_ = label;
///         total_ = total;
///       }
///       void Advance(std::uint64_t done) override {
///         GString line;
///         line.FormatString(L"\r%s %3.0f %%", label_, 100.0 * double(done) / double(total_));
///         platform::WriteText(stderr, line);
///       }
///       bool IsCancelled() const override { return false; }
///       void End() override { platform::WriteText(stderr, L"\n"); }
///       ...
///     };
///
/// Threads: one thread an indicator.

#pragma once

#include <cstdint>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// Shows the progress of one operation at a time.
///
/// An operation calls `Begin` once, `Advance` any number of times with values that do not fall,
/// asks `IsCancelled` now and then, and calls `End` once, also when it fails. The indicator may
/// then serve the next operation.
class SHARED_API IProgress {
public:
  virtual ~IProgress();

  /// Starts an operation of `total` steps, of a number not known beforehand when 0.
  virtual void Begin(const GString& label, std::uint64_t total) = 0;
  /// Shows that `done` steps of the total are behind. Cheap enough to be called at every step.
  virtual void Advance(std::uint64_t done) = 0;
  /// Returns true once the user has asked the operation to stop.
  virtual bool IsCancelled() const = 0;
  virtual void End() = 0;
};

}  // namespace shr
