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
///     if (!stack.IsClean()) SaveDocument(), stack.SetClean();
///
/// docs/commands.md shows commands, merging, compound commands and the marks of a document.
///
/// Threads: one thread a stack and its commands.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "shared/Export.h"
#include "shared/commands/Command.h"
#include "shared/text/GString.h"

namespace shr {

/// The executed commands, newest first.
///
/// Commands in front of the undo position are the undone ones, newest undone first. Every operation
/// costs amortized O(1) beside the command's own work, plus the destruction of the commands it
/// drops. Iterators are valid until the next change of the stack.
///
/// When a command throws, the stack is as it was before the call; once one has been executed,
/// nothing fails any more, not even for want of memory. A command may execute further
/// commands on the stack that executes it; they are recorded before it.
///
/// A command may also clear the stack, set its maximum or execute commands while it is undone or
/// redone: the stack is then as that left it, and the positions do not move once more. Undoing or
/// redoing meanwhile is refused. A command is out of the stack, which is whole again, when its
/// destructor runs, so that a destructor may look at the stack and change it.
class SHARED_API CommandStack {
public:
  using CommandHandle = std::shared_ptr<Command>;
  using CommandList = std::vector<CommandHandle>;
  using iterator = CommandList::reverse_iterator;
  using const_iterator = CommandList::const_reverse_iterator;
  using reverse_iterator = CommandList::iterator;
  using const_reverse_iterator = CommandList::const_iterator;

  /// Makes an empty stack that keeps at most `maximumSize` commands; 0 keeps none.
  explicit CommandStack(std::uint64_t maximumSize);
  CommandStack(const CommandStack&) = delete;
  CommandStack& operator=(const CommandStack&) = delete;
  ~CommandStack();

  std::uint64_t MaximumSize() const noexcept { return maximumSize_; }

  /// Sets the maximum. When more commands are held, the oldest are destroyed and all others count
  /// as undone with nothing to redo; the next `Do` drops them.
  void MaximumSize(std::uint64_t maximumSize);

  std::size_t size() const noexcept { return commands_.size() - first_; }
  [[nodiscard]] bool empty() const noexcept { return size() == 0; }
  iterator begin() noexcept { return commands_.rbegin(); }
  iterator end() noexcept { return iterator(rbegin()); }
  const_iterator begin() const noexcept { return commands_.rbegin(); }
  const_iterator end() const noexcept { return const_iterator(rbegin()); }
  reverse_iterator rbegin() noexcept { return commands_.begin() + Offset(first_); }
  reverse_iterator rend() noexcept { return commands_.end(); }
  const_reverse_iterator rbegin() const noexcept { return commands_.begin() + Offset(first_); }
  const_reverse_iterator rend() const noexcept { return commands_.end(); }

  /// Executes `command` and, on `Success` only, records it: the undone commands are dropped and
  /// `command` is the next to be undone. When the newest command before it merges it
  /// (`Command::Merge`), that one stands for both and `command` is not kept; never across the clean
  /// mark, and only when both can be undone. A command that cannot be undone is recorded too and
  /// keeps `Undo` from going past it. Returns the command's status. Errors: `Exception` "Cannot
  /// execute invalid command." for an empty handle.
  StatusCode Do(CommandHandle command);

  /// Undoes the newest command that is not undone, or redoes the one undone last, and returns its
  /// status. `Cancelled` leaves the stack as it is; `Success` and `Failure` alike count as done.
  /// Errors: `Exception` "Cannot undo invalid command." or "Cannot redo invalid command." when
  /// `Undoable()` or `Redoable()` is false, or another command is being undone or redone.
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

  /// Destroys all commands. The document stays what it is, so a clean one stays clean.
  void Clear();

  /// Marks the document as it is now as clean, which is to say saved. A new stack is clean.
  void SetClean();
  /// Removes the mark: nothing is clean any more, for example when the file was lost.
  void ResetClean();
  /// Returns true when the commands executed, undone and redone since the mark took the document
  /// back to it. False when the command that led there has been dropped.
  bool IsClean() const noexcept { return clean_ == done_; }

  using ChangeNotice = std::function<void()>;
  /// Has `notice` called after every change of the commands, the positions or the clean mark, as
  /// the last step of the operation, so that menus and titles can follow; an empty function ends
  /// that. It may use the stack. What it throws reaches the caller of the operation, which has
  /// happened then. The destructor of the stack gives no notice.
  void OnChange(ChangeNotice notice) { notice_ = std::move(notice); }

private:
  /// The redo position when there is nothing to redo.
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

  static CommandList::difference_type Offset(std::size_t index) {
    return static_cast<CommandList::difference_type>(index);
  }
  /// The handle at the undo or redo position, or null.
  const CommandHandle* UndoHandle() const;
  const CommandHandle* RedoHandle() const;
  /// Makes sure that every `Do` that is running can record its command.
  void ReserveForRunning();
  /// Drops the oldest commands while there are more than the maximum; both positions are then the
  /// end.
  void VerifyStackSize();
  void DropAll();
  /// Drops the undone commands.
  void DropUndone();
  /// Lets the newest command take over `command`, which has been executed.
  bool MergeIntoNewest(const Command& command) noexcept;
  void Notify();

  std::uint64_t maximumSize_;
  /// Oldest first. Those before `first_` are gone and their handles empty.
  CommandList commands_;
  std::size_t first_ = 0;
  /// Number of handles up to the undo position; `first_` when that is the end.
  std::size_t done_ = 0;
  std::size_t redo_ = NONE;
  std::size_t running_ = 0;
  /// Number of handles up to the clean position, or NONE.
  std::size_t clean_ = 0;
  std::uint64_t changes_ = 0;  ///< how often commands came or went
  bool isMoving_ = false;      ///< a command is being undone or redone
  ChangeNotice notice_;
};

}  // namespace shr
