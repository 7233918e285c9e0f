// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The handles stand in one vector, oldest first, so that executing, undoing and redoing work at its
// end or move a position. The oldest commands leave at the front by emptying their handles; when
// more than half of the vector is empty, the rest moves down, which costs each command one move at
// most for each one that left.

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

}  // namespace

CommandStack::CommandStack(std::uint64_t maximumSize) : maximumSize_(maximumSize) {}

CommandStack::~CommandStack() {
  Clear();
}

void CommandStack::MaximumSize(std::uint64_t maximumSize) {
  maximumSize_ = maximumSize;
  VerifyStackSize();
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
  while (commands_.size() > done_) {
    // A command dies when it is out of the stack already: its destructor may look at it.
    const CommandHandle dropped = std::move(commands_.back());
    commands_.pop_back();
    redo_ = NONE;
  }
  commands_.push_back(std::move(command));
  redo_ = NONE;
  VerifyStackSize();
  done_ = commands_.size();
  return Success;
}

StatusCode CommandStack::Undo() {
  if (!Undoable()) {
    ThrowErrorImpl(L"CommandStack", INVALID_UNDO_LINE, L"Cannot undo invalid command.");
  }
  const StatusCode status = (*UndoHandle())->Undo();
  if (status != Cancelled) redo_ = --done_;
  return status;
}

StatusCode CommandStack::Redo() {
  if (!Redoable()) {
    ThrowErrorImpl(L"CommandStack", INVALID_REDO_LINE, L"Cannot redo invalid command.");
  }
  const StatusCode status = (*RedoHandle())->Redo();
  if (status == Cancelled) return status;
  done_ = redo_ + 1;
  redo_ = done_ < commands_.size() ? done_ : NONE;
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
  first_ = done_ = 0;
  redo_ = NONE;
  while (!commands_.empty()) {
    const CommandHandle dropped = std::move(commands_.back());
    commands_.pop_back();
  }
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

void CommandStack::VerifyStackSize() {
  if (size() <= maximumSize_) return;
  while (size() > maximumSize_) {
    const CommandHandle dropped = std::move(commands_[first_]);
    ++first_;
    done_ = first_;
    redo_ = NONE;
  }
  if (first_ > commands_.size() / 2) {
    commands_.erase(commands_.begin(), commands_.begin() + Offset(first_));
    first_ = done_ = 0;
  }
}

}  // namespace shr
