// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Runs steps on a model, takes them back and does them again, and writes the history of it.
///
///     MapEditor editor(model, progress);
///     editor.Do(std::make_shared<CountEventsCommand>(model, progress));
///     editor.TakeBackAndRedo(1);

#pragma once

#include <cstddef>
#include <memory>

#include "examples/common/Progress.h"
#include "examples/mapreport/Model.h"
#include "shared/commands/CommandStack.h"

namespace mapreport {

/// The actions that a history names.
inline constexpr const wchar_t* READ = L"Read";
inline constexpr const wchar_t* DONE = L"Done";
inline constexpr const wchar_t* TAKEN_BACK = L"Taken back";
inline constexpr const wchar_t* REDONE = L"Redone";

/// Each action appends a line to `Model::history`, logs it, and names the state that it led to.
class MapEditor {
public:
  /// A model without a history begins one with what was read.
  MapEditor(Model& model, IProgress& progress);

  /// Does a step. Errors: `shr::UserAbortException` when the user stopped it, and what the step
  /// throws; the model is then as it was.
  void Do(const std::shared_ptr<shr::Command>& step);

  /// Takes back the last `count` steps that this editor did, all of them when they are fewer, and
  /// does them again.
  void TakeBackAndRedo(std::size_t count);

private:
  void Record(const wchar_t* action, const GString& label);

  Model& model_;
  IProgress& progress_;
  shr::CommandStack stack_;
};

}  // namespace mapreport
