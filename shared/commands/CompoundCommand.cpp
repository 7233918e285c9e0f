// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/CompoundCommand.h"

#include <utility>

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

/// Runs `back` when it is left by an exception or without `Keep`.
template <class Action>
class TakeBack {
public:
  explicit TakeBack(Action back) : back_(std::move(back)) {}
  ~TakeBack() {
    if (isKept_) return;
    try {
      back_();
    } catch (...) {  // the first failure is the one to be told
    }
  }
  TakeBack(const TakeBack&) = delete;
  TakeBack& operator=(const TakeBack&) = delete;

  void Keep() { isKept_ = true; }

private:
  Action back_;
  bool isKept_ = false;
};

}  // namespace

CompoundCommand::CompoundCommand(const GString& key, const GString& label)
    : SimpleCommand(key, label) {}

CompoundCommand::~CompoundCommand() {
  // As on a stack, the newest goes first.
  while (!commands_.empty()) commands_.pop_back();
}

void CompoundCommand::Append(std::shared_ptr<Command>&& command) {
  if (!command) {
    ThrowErrorImpl(L"CompoundCommand", __LINE__, L"Cannot execute invalid command.");
  }
  commands_.push_back(std::move(command));
}

void CompoundCommand::Add(std::shared_ptr<Command> command) {
  Append(std::move(command));
}

void CompoundCommand::AddDone(std::shared_ptr<Command> command) {
  Append(std::move(command));
  ++done_;
}

StatusCode CompoundCommand::DoImpl() {
  const std::size_t first = done_;
  TakeBack back([&] {
    while (done_ > first) commands_[--done_]->Undo();
  });
  while (done_ < commands_.size()) {
    const StatusCode status = commands_[done_]->Do();
    if (status != Success) return status;
    ++done_;
  }
  back.Keep();
  return Success;
}

StatusCode CompoundCommand::RedoImpl() {
  StatusCode result = Success;
  TakeBack back([&] {
    while (done_ > 0) commands_[--done_]->Undo();
  });
  while (done_ < commands_.size()) {
    const StatusCode status = commands_[done_]->Redo();
    if (status == Cancelled) return status;
    if (status == Failure) result = Failure;
    ++done_;
  }
  back.Keep();
  return result;
}

StatusCode CompoundCommand::UndoImpl() {
  StatusCode result = Success;
  TakeBack back([&] {
    for (; done_ < commands_.size(); ++done_) commands_[done_]->Redo();
  });
  while (done_ > 0) {
    const StatusCode status = commands_[done_ - 1]->Undo();
    if (status == Cancelled) return status;
    if (status == Failure) result = Failure;
    --done_;
  }
  back.Keep();
  return result;
}

bool CompoundCommand::UndoRedoableImpl() const {
  for (const auto& command : commands_) {
    if (!command->UndoRedoable()) return false;
  }
  return true;
}

}  // namespace shr
