// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The handles stand in one vector, oldest first, so that executing, undoing and redoing work at its
// end or move a position. The oldest commands leave at the front by emptying their handles; when
// more than half of the vector is empty, the rest moves down, which costs each command one move at
// most for each one that left.
//
// Commands are the program's code, and so are their destructors: any of them may come back to the
// stack. A command that runs is held by a handle of its own, one that goes is out of the vector
// first, and what a call is about to do is looked at again after each of them.

#include "shared/commands/CommandStack.h"

#include <algorithm>
#include <utility>

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

constexpr int INVALID_DO_LINE = 60;
constexpr int INVALID_REDO_LINE = 138;
constexpr int INVALID_UNDO_LINE = 236;

/// Capacity of a stack once it holds a command.
constexpr std::size_t LEAST_CAPACITY = 16;

/// Counts an execution for as long as it runs.
class Running {
public:
  explicit Running(std::size_t& count) : count_(count) { ++count_; }
  ~Running() { --count_; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

private:
  std::size_t& count_;
};

/// Sets a flag for as long as it lives.
class Raised {
public:
  explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
  ~Raised() { flag_ = false; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

private:
  bool& flag_;
};

}  // namespace

CommandStack::CommandStack(std::uint64_t maximumSize) : maximumSize_(maximumSize) {}

CommandStack::~CommandStack() {
  notice_ = nullptr;
  DropAll();
}

void CommandStack::MaximumSize(std::uint64_t maximumSize) {
  maximumSize_ = maximumSize;
  if (size() <= maximumSize_) return;
  const bool isClean = IsClean();
  VerifyStackSize();
  clean_ = isClean ? done_ : NONE;
  Notify();
}

StatusCode CommandStack::Do(CommandHandle command) {
  if (!command) {
    ThrowErrorImpl(L"CommandStack", INVALID_DO_LINE, L"Cannot execute invalid command.");
  }
  {
    const Running running(running_);
    ReserveForRunning();
    const StatusCode status = command->Do();
    if (status != Success) return status;
  }
  DropUndone();
  if (!MergeIntoNewest(*command)) {
    commands_.push_back(std::move(command));
    ++changes_;
    VerifyStackSize();
    done_ = commands_.size();
  }
  Notify();
  return Success;
}

StatusCode CommandStack::Undo() {
  if (isMoving_ || !Undoable()) {
    ThrowErrorImpl(L"CommandStack", INVALID_UNDO_LINE, L"Cannot undo invalid command.");
  }
  const CommandHandle command = *UndoHandle();
  const std::uint64_t changesBefore = changes_;
  StatusCode status = Failure;
  {
    const Raised moving(isMoving_);
    status = command->Undo();
  }
  if (status == Cancelled || changes_ != changesBefore) return status;
  redo_ = --done_;
  Notify();
  return status;
}

StatusCode CommandStack::Redo() {
  if (isMoving_ || !Redoable()) {
    ThrowErrorImpl(L"CommandStack", INVALID_REDO_LINE, L"Cannot redo invalid command.");
  }
  const CommandHandle command = *RedoHandle();
  const std::uint64_t changesBefore = changes_;
  StatusCode status = Failure;
  {
    const Raised moving(isMoving_);
    status = command->Redo();
  }
  if (status == Cancelled || changes_ != changesBefore) return status;
  done_ = redo_ + 1;
  redo_ = done_ < commands_.size() ? done_ : NONE;
  Notify();
  return status;
}

bool CommandStack::Undoable() const {
  const CommandHandle* const handle = UndoHandle();
  return handle && (*handle)->UndoRedoable();
}

bool CommandStack::Redoable() const {
  const CommandHandle* const handle = RedoHandle();
  return handle && (*handle)->UndoRedoable();
}

std::shared_ptr<const Command> CommandStack::UndoCommand() const {
  const CommandHandle* const handle = UndoHandle();
  return handle ? *handle : nullptr;
}

std::shared_ptr<const Command> CommandStack::RedoCommand() const {
  const CommandHandle* const handle = RedoHandle();
  return handle ? *handle : nullptr;
}

GString CommandStack::UndoLabel() const {
  return Undoable() ? (*UndoHandle())->Label() : GString();
}

GString CommandStack::RedoLabel() const {
  return Redoable() ? (*RedoHandle())->Label() : GString();
}

void CommandStack::Clear() {
  if (commands_.empty()) return;
  DropAll();
  Notify();
}

void CommandStack::DropAll() {
  clean_ = IsClean() ? 0 : NONE;
  commands_.erase(commands_.begin(), commands_.begin() + Offset(first_));
  first_ = done_ = 0;
  redo_ = NONE;
  ++changes_;
  while (!commands_.empty()) {
    const CommandHandle dropped = std::move(commands_.back());
    commands_.pop_back();
  }
}

void CommandStack::SetClean() {
  if (IsClean()) return;
  clean_ = done_;
  Notify();
}

void CommandStack::ResetClean() {
  const bool wasClean = IsClean();
  clean_ = NONE;
  if (wasClean) Notify();
}

const CommandStack::CommandHandle* CommandStack::UndoHandle() const {
  return done_ > first_ ? &commands_[done_ - 1] : nullptr;
}

const CommandStack::CommandHandle* CommandStack::RedoHandle() const {
  return redo_ != NONE ? &commands_[redo_] : nullptr;
}

void CommandStack::ReserveForRunning() {
  const std::size_t needed = commands_.size() + running_;
  if (needed <= commands_.capacity()) return;
  commands_.reserve(std::max({needed, 2 * commands_.size(), LEAST_CAPACITY}));
}

void CommandStack::DropUndone() {
  while (commands_.size() > done_) {
    const CommandHandle dropped = std::move(commands_.back());
    commands_.pop_back();
    redo_ = NONE;
    ++changes_;
    if (clean_ != NONE && clean_ > commands_.size()) clean_ = NONE;
  }
}

bool CommandStack::MergeIntoNewest(const Command& command) noexcept {
  const CommandHandle* const handle = UndoHandle();
  if (handle == nullptr || IsClean()) return false;
  const CommandHandle newest = *handle;
  const std::uint64_t changesBefore = changes_;
  try {
    const bool isMerged = newest.get() != &command && newest->UndoRedoable() &&
                          command.UndoRedoable() && newest->Merge(command);
    return isMerged && changes_ == changesBefore;
  } catch (...) {  // it has been executed and is recorded by itself
    return false;
  }
}

void CommandStack::Notify() {
  if (!notice_) return;
  const ChangeNotice notice = notice_;  // it may set another one
  notice();
}

void CommandStack::VerifyStackSize() {
  if (size() <= maximumSize_) return;
  ++changes_;
  while (size() > maximumSize_) {
    const CommandHandle dropped = std::move(commands_[first_]);
    ++first_;
    done_ = first_;
    redo_ = NONE;
    if (clean_ != NONE && clean_ < first_) clean_ = NONE;
  }
  if (first_ > commands_.size() / 2) {
    if (clean_ != NONE) clean_ -= first_;
    commands_.erase(commands_.begin(), commands_.begin() + Offset(first_));
    first_ = done_ = 0;
  }
}

}  // namespace shr
