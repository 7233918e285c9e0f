// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CommandStack` executes commands and keeps the executed ones so that they can be undone and
/// redone.
///
///     CommandStack stack(100);
///     stack.Do(std::make_shared<Rename>(layer, L"Roads"));
///     if (stack.Undoable()) stack.Undo();
///     if (stack.Redoable()) stack.Redo();
///
/// Threads: one thread a stack and its commands.

#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>

#include "shared/Export.h"
#include "shared/commands/Command.h"
#include "shared/text/GString.h"

namespace shr {

/// The executed commands, newest first.
///
/// Commands in front of the undo position are the undone ones, newest undone first. Every operation
/// costs O(1) beside the command's own work, plus the destruction of the commands it drops.
///
/// When a command throws, the stack is as it was before the call. A command may execute further
/// commands on the stack that executes it; they are recorded before it. While it is undone or
/// redone it leaves the stack alone.
class SHARED_API CommandStack {
public:
  using CommandHandle = std::shared_ptr<Command>;
  using CommandList = std::list<CommandHandle>;
  using iterator = CommandList::iterator;
  using const_iterator = CommandList::const_iterator;
  using reverse_iterator = CommandList::reverse_iterator;
  using const_reverse_iterator = CommandList::const_reverse_iterator;

  /// Makes an empty stack that keeps at most `maximumSize` commands; 0 keeps none.
  explicit CommandStack(std::uint64_t maximumSize);
  CommandStack(const CommandStack&) = delete;
  CommandStack& operator=(const CommandStack&) = delete;
  ~CommandStack();

  std::uint64_t MaximumSize() const noexcept { return maximumSize_; }

  /// Sets the maximum. When more commands are held, the oldest are destroyed and all others count
  /// as undone with nothing to redo; the next `Do` drops them.
  void MaximumSize(std::uint64_t maximumSize);

  std::size_t size() const noexcept { return commands_.size(); }
  [[nodiscard]] bool empty() const noexcept { return commands_.empty(); }
  iterator begin() noexcept { return commands_.begin(); }
  iterator end() noexcept { return commands_.end(); }
  const_iterator begin() const noexcept { return commands_.begin(); }
  const_iterator end() const noexcept { return commands_.end(); }
  reverse_iterator rbegin() noexcept { return commands_.rbegin(); }
  reverse_iterator rend() noexcept { return commands_.rend(); }
  const_reverse_iterator rbegin() const noexcept { return commands_.rbegin(); }
  const_reverse_iterator rend() const noexcept { return commands_.rend(); }

  /// Executes `command` and, on `Success` only, records it: the undone commands are dropped and
  /// `command` is the next to be undone. A command that cannot be undone is recorded too and keeps
  /// `Undo` from going past it. Returns the command's status.
  /// Errors: `Exception` "Cannot execute invalid command." for an empty handle.
  StatusCode Do(const CommandHandle& command);

  /// Undoes the newest command that is not undone, or redoes the one undone last, and returns its
  /// status. `Cancelled` leaves the stack as it is; `Success` and `Failure` alike count as done.
  /// Errors: `Exception` "Cannot undo invalid command." or "Cannot redo invalid command." when
  /// `Undoable()` or `Redoable()` is false.
  StatusCode Undo();
  StatusCode Redo();

  bool Undoable() const;
  bool Redoable() const;

  /// Return the command that `Undo` or `Redo` is up to, or an empty handle.
  std::shared_ptr<const Command> UndoCommand() const;
  std::shared_ptr<const Command> RedoCommand() const;

  /// Return the label of that command when it is `UndoRedoable()`, otherwise the empty text.
  GString UndoLabel() const;
  GString RedoLabel() const;

  /// Destroys all commands.
  void Clear();

private:
  bool IsUndoRedoable(const_iterator position) const;
  /// Drops the oldest commands while there are more than the maximum; both positions are then the
  /// end.
  void VerifyStackSize();

  std::uint64_t maximumSize_;
  CommandList commands_;
  iterator undo_;
  iterator redo_;
};

}  // namespace shr
