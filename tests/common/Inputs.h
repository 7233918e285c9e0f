// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Input files of a test's own, and the message that reading one of them ends with.

#pragma once

#include <string_view>

#include "examples/common/Progress.h"
#include "examples/common/TextFormat.h"
#include "shared/diagnostics/Exception.h"
#include "tests/support/TemporaryFolder.h"

namespace examples {

/// A folder with one file.
class InputFile {
public:
  explicit InputFile(std::string_view bytes) { shr::test::WriteBytes(Path(), bytes); }

  GString Path() const { return folder_.Path(L"input"); }

private:
  shr::test::TemporaryFolder folder_;
};

/// An indicator that shows nothing and lets an operation go on for `steps` steps.
class SilentProgress : public IProgress {
public:
  explicit SilentProgress(std::uint64_t steps = UINT64_MAX) : steps_(steps) {}

  void Begin(const GString&, std::uint64_t) override { done_ = 0; }
  void Advance(std::uint64_t done) override { done_ = done; }
  bool IsCancelled() const override { return done_ > steps_; }
  void End() override {}

private:
  std::uint64_t steps_;
  std::uint64_t done_ = 0;
};

inline TextFormat Utf8Format() {
  return TextFormat{shr::EncodingUTF8, 1252, false, false};
}

/// Returns what the exception of `action` says, with the folder left out of its paths; empty
/// without one.
template <class Action>
GString MessageOf(const InputFile& file, const Action& action) {
  try {
    action();
  } catch (const shr::Exception& error) {
    GString message = error.GetDescription();
    const std::size_t at = message.find(file.Path());
    if (at != GString::npos) message.erase(at, file.Path().size() - GString(L"input").size());
    return message;
  }
  return GString();
}

}  // namespace examples
