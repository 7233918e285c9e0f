// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CompoundCommand`, several commands that a user does, undoes and redoes as one.
///
///     auto tidy = std::make_shared<CompoundCommand>(L"Tidy", L"Tidy the map");
///     tidy->Add(std::make_shared<Rename>(layer, L"Roads"));
///     tidy->Add(std::make_shared<Recolor>(layer, Color4b::Red));
///     stack.Do(tidy);
///
/// Threads: one thread a command.

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "shared/Export.h"
#include "shared/commands/SimpleCommand.h"

namespace shr {

/// A sequence of commands, done in their order and undone in the opposite one, all or none.
///
/// When a command throws, or returns another status than `Success` while the sequence is done, or
/// `Cancelled` while it is undone or redone, the commands before it are taken back and the caller
/// gets the exception or the status: the state is then what it was. As on a `CommandStack`,
/// `Failure` while undoing or redoing stops nothing; the whole then returns `Failure`.
class SHARED_API CompoundCommand : public SimpleCommand {
public:
  explicit CompoundCommand(const GString& key, const GString& label = GString());
  ~CompoundCommand() override;

  /// Appends a command. Requires: the sequence has not been done.
  /// Errors: `Exception` "Cannot execute invalid command." for an empty handle.
  void Add(std::shared_ptr<Command> command);
  /// Appends a command that has just been done, to be undone and redone with the others. The
  /// sequence itself then counts as done as far as it goes: `Do` does what was added by `Add` only.
  void AddDone(std::shared_ptr<Command> command);

  std::size_t size() const noexcept { return commands_.size(); }
  [[nodiscard]] bool empty() const noexcept { return commands_.empty(); }

private:
  StatusCode DoImpl() override;
  StatusCode RedoImpl() override;
  StatusCode UndoImpl() override;
  /// True when every command of the sequence can be undone.
  bool UndoRedoableImpl() const override;

  void Append(std::shared_ptr<Command>&& command);

  std::vector<std::shared_ptr<Command>> commands_;
  std::size_t done_ = 0;  ///< how many of the first commands are done
};

}  // namespace shr
