// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CommandOptions`, a command described by its key and its options as text, as in a script or a
/// recorded macro.
///
///     CommandOptions move(L"Move");
///     move.Add(L"Distance", L"2.5");
///     std::unique_ptr<Command> command = CommandFactory::Construct(move.Key());
///     for (const auto& [name, value] : move) command->Option(name, value);
///
/// Threads: const calls may run together; a change needs the object alone.

#pragma once

#include <cstddef>
#include <utility>

#include "shared/Export.h"
#include "shared/commands/Command.h"
#include "shared/text/GString.h"

namespace shr {

/// A command key, never empty, and (name, value) pairs in the order in which they were added. Names
/// may repeat.
class SHARED_API CommandOptions {
public:
  using iterator = CommandOptionList::iterator;
  using const_iterator = CommandOptionList::const_iterator;
  using reverse_iterator = CommandOptionList::reverse_iterator;
  using const_reverse_iterator = CommandOptionList::const_reverse_iterator;

  /// Starts an empty list for the command `key`.
  /// Errors: `Exception` "Command key must be non-empty."
  explicit CommandOptions(const GString& key);

  const GString& Key() const noexcept { return key_; }

  /// Appends an option.
  void Add(GString name, GString value) {
    options_.emplace_back(std::move(name), std::move(value));
  }

  /// Returns the list itself, for example for `Command::EnumerateOptions` to append to.
  CommandOptionList& Options() noexcept { return options_; }
  const CommandOptionList& Options() const noexcept { return options_; }

  iterator begin() noexcept { return options_.begin(); }
  iterator end() noexcept { return options_.end(); }
  const_iterator begin() const noexcept { return options_.begin(); }
  const_iterator end() const noexcept { return options_.end(); }
  reverse_iterator rbegin() noexcept { return options_.rbegin(); }
  reverse_iterator rend() noexcept { return options_.rend(); }
  const_reverse_iterator rbegin() const noexcept { return options_.rbegin(); }
  const_reverse_iterator rend() const noexcept { return options_.rend(); }
  std::size_t size() const noexcept { return options_.size(); }
  [[nodiscard]] bool empty() const noexcept { return options_.empty(); }
  /// Removes the options; the key stays.
  void clear() noexcept { options_.clear(); }

private:
  GString key_;
  CommandOptionList options_;
};

}  // namespace shr
