// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/CommandStack.h"

#include <iterator>

#include "shared/diagnostics/ThrowError.h"

namespace shr {
namespace {

constexpr int INVALID_DO_LINE = 60;
constexpr int INVALID_REDO_LINE = 138;
constexpr int INVALID_UNDO_LINE = 236;

}  // namespace

CommandStack::CommandStack(std::uint64_t maximumSize)
    : maximumSize_(maximumSize), undo_(commands_.end()), redo_(commands_.end()) {}

CommandStack::~CommandStack() = default;

void CommandStack::MaximumSize(std::uint64_t maximumSize) {
  maximumSize_ = maximumSize;
  VerifyStackSize();
}

StatusCode CommandStack::Do(const CommandHandle& command) {
  if (!command) {
    ThrowErrorImpl(L"CommandStack", INVALID_DO_LINE, L"Cannot execute invalid command.");
  }
  // The list's entry is made before the command runs, so that nothing can fail once it has.
  CommandList entry(1, command);
  const StatusCode status = command->Do();
  if (status != Success) return status;
  // Dropped commands die last, when the stack is consistent again: their destructors may look at
  // it.
  CommandList dropped;
  dropped.splice(dropped.begin(), commands_, commands_.begin(), undo_);
  commands_.splice(commands_.begin(), entry);
  redo_ = commands_.end();
  undo_ = commands_.begin();
  if (commands_.size() > maximumSize_) {
    VerifyStackSize();
    undo_ = commands_.begin();
  }
  return Success;
}

StatusCode CommandStack::Undo() {
  if (!Undoable()) {
    ThrowErrorImpl(L"CommandStack", INVALID_UNDO_LINE, L"Cannot undo invalid command.");
  }
  const StatusCode status = (*undo_)->Undo();
  if (status != Cancelled) redo_ = undo_++;
  return status;
}

StatusCode CommandStack::Redo() {
  if (!Redoable()) {
    ThrowErrorImpl(L"CommandStack", INVALID_REDO_LINE, L"Cannot redo invalid command.");
  }
  const StatusCode status = (*redo_)->Redo();
  if (status == Cancelled) return status;
  undo_ = redo_;
  redo_ = undo_ == commands_.begin() ? commands_.end() : std::prev(undo_);
  return status;
}

bool CommandStack::Undoable() const {
  return IsUndoRedoable(undo_);
}

bool CommandStack::Redoable() const {
  return IsUndoRedoable(redo_);
}

std::shared_ptr<const Command> CommandStack::UndoCommand() const {
  return undo_ == commands_.end() ? nullptr : *undo_;
}

std::shared_ptr<const Command> CommandStack::RedoCommand() const {
  return redo_ == commands_.end() ? nullptr : *redo_;
}

GString CommandStack::UndoLabel() const {
  return Undoable() ? (*undo_)->Label() : GString();
}

GString CommandStack::RedoLabel() const {
  return Redoable() ? (*redo_)->Label() : GString();
}

void CommandStack::Clear() {
  CommandList dropped;
  dropped.swap(commands_);
  undo_ = commands_.end();
  redo_ = commands_.end();
}

bool CommandStack::IsUndoRedoable(const_iterator position) const {
  return position != commands_.end() && (*position)->UndoRedoable();
}

void CommandStack::VerifyStackSize() {
  if (commands_.size() <= maximumSize_) return;
  iterator firstDropped = commands_.end();
  for (std::uint64_t excess = commands_.size() - maximumSize_; excess > 0; --excess) --firstDropped;
  CommandList dropped;
  dropped.splice(dropped.begin(), commands_, firstDropped, commands_.end());
  undo_ = commands_.end();
  redo_ = commands_.end();
}

}  // namespace shr
