// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Command`, one undoable action of a user, and `Memento`, what it remembers for undoing.
///
/// A command is configured through options, done once, and then undone and redone any number of
/// times, usually by a `CommandStack` (shared/commands/CommandStack.h). The base for most commands
/// is in shared/commands/SimpleCommand.h, several commands as one in
/// shared/commands/CompoundCommand.h. Commands made by name come
/// from shared/commands/CommandFactory.h. Values of type boost::any are declared only: who passes
/// or overrides them includes <boost/any.hpp>.
///
///     class Rename : public Command {
///       StatusCode DoImpl() override { std::swap(name_, layer_.name); return Success; }
///       StatusCode UndoImpl() override { return DoImpl(); }
///       StatusCode RedoImpl() override { return DoImpl(); }
///       ...
///     };
///
/// Threads: one thread a command.

#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "shared/Export.h"
#include "shared/commands/StatusCode.h"
#include "shared/text/GString.h"

namespace boost {
class any;
}

namespace shr {

/// Base of the state that a command saves to undo itself; commands derive their own from it.
class SHARED_API Memento {
public:
  virtual ~Memento();
};

/// One option: its name and its value as text.
using CommandOption = std::pair<GString, GString>;
using CommandOptionList = std::vector<CommandOption>;

/// An action that can be done and, as a rule, undone and redone.
///
/// Laws: 1. `Undo` after a successful `Do` or `Redo` restores the state before it.
/// 2. `Redo` after `Undo` has the effect of the first `Do`. The derived class keeps them.
class SHARED_API Command {
public:
  virtual ~Command();

  /// Returns the text for menus; the key unless the derived class has a better one.
  virtual GString Label() const;

  /// Performs the command and returns how it ended.
  StatusCode Do();

  /// Takes the command back, or performs it again.
  /// Errors: `Exception` "Cannot undo disabled command." or "Cannot redo disabled command." when
  /// the command is not `UndoRedoable()`; nothing has happened then.
  StatusCode Undo();
  StatusCode Redo();

  /// Returns true when undo and redo are enabled and this execution supports them.
  bool UndoRedoable() const;

  /// Returns the name under which commands of this kind are made.
  GString Key() const;

  /// Whether the command may show dialogs, may show its progress, and may be undone and redone. All
  /// three are set at first.
  bool GuiEnabled() const;
  void GuiEnabled(bool enabled);
  bool ProgressEnabled() const;
  void ProgressEnabled(bool enabled);
  bool UndoRedoEnabled() const;
  void UndoRedoEnabled(bool enabled);

  /// Sets the option `key`, in any letter case, and returns true when the command took it.
  ///
  /// "GuiEnabled", "ProgressEnabled" and "UndoRedoEnabled" set the switches of these names: from
  /// text that `StringToBool` reads, or from a boost::any that holds a bool; other values change
  /// nothing and give false. All other keys are the derived class's. An empty key gives false.
  bool Option(const GString& key, const GString& value);
  bool Option(const wchar_t* key, const GString& value);
  bool Option(const GString& key, const wchar_t* value);
  bool Option(const wchar_t* key, const wchar_t* value);
  bool Option(const GString& key, const boost::any& value);
  bool Option(const wchar_t* key, const boost::any& value);
  /// A number is no text, and 0 no pointer to one: pass it as text or in a boost::any.
  template <class Key, class Number>
  requires(std::is_arithmetic_v<Number> ||
           std::is_null_pointer_v<Number>) bool Option(const Key& key, Number value) = delete;

  /// Appends the three switches with the value "True" or "False", then the options of the derived
  /// class. Law: handing the list to `Option` of a new command of this kind gives it these options.
  void EnumerateOptions(CommandOptionList& options) const;

  /// Returns true when keys and labels are equal, or the derived class says so.
  bool Equivalent(const Command& other) const;

  /// Takes over `newer`, which was done right after this command, and returns true when it could:
  /// for example the next letter of a word that is being typed. From then on this command stands
  /// for both.
  /// Laws: 1. `Undo` restores the state before both. 2. `Redo` has the effect of both.
  bool Merge(const Command& newer);

protected:
  Command();
  Command(const Command& other);
  Command& operator=(const Command& other);

  /// The saved state, empty at first. Owns: copies of a command share it.
  const std::shared_ptr<shr::Memento>& Memento() const { return memento_; }
  void Memento(std::shared_ptr<shr::Memento> memento) { memento_ = std::move(memento); }

private:
  enum CommandState : std::uint8_t {
    GuiEnabledState = 1,
    ProgressEnabledState = 2,
    UndoRedoEnabledState = 4,
    AllStates = 7,
  };

  virtual StatusCode DoImpl() = 0;
  virtual GString KeyImpl() const = 0;
  virtual StatusCode RedoImpl() = 0;
  virtual StatusCode UndoImpl() = 0;
  /// Returns whether this execution can be undone and redone, for example that it had an effect.
  virtual bool UndoRedoableImpl() const = 0;
  /// Appends the options of the derived class; by default none.
  virtual void EnumerateOptionsImpl(CommandOptionList& options) const;
  /// Returns whether `other`, whose key or label differs, stands for the same action; by default
  /// false.
  virtual bool EquivalentImpl(const Command& other) const;
  /// Set the option `key`, which is in lower case and not empty, and return whether it was taken;
  /// by default false.
  virtual bool OptionImpl(const GString& key, const boost::any& value);
  virtual bool OptionImpl(const GString& key, const GString& value);
  /// Returns a command of the same kind with the same options that was never done, for programs
  /// that record and repeat commands. The library never calls it.
  virtual std::unique_ptr<Command> CloneImpl() const = 0;
  /// Takes over `newer`, of any class, or leaves both as they are and returns false, as by default.
  virtual bool MergeImpl(const Command& newer);

  bool HasState(std::uint8_t states) const { return (states_ & states) == states; }
  void SetState(std::uint8_t states, bool enabled);
  /// Returns the switch that the lower-case `key` names, or 0.
  static std::uint8_t StateOfKey(const GString& key);

  std::shared_ptr<shr::Memento> memento_;
  std::uint8_t states_ = AllStates;
};

}  // namespace shr
