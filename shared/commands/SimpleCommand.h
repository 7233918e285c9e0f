// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `SimpleCommand`, the base of commands that know how to be done and undone and nothing else.
///
///     class Rename : public SimpleCommand {
///     public:
///       Rename(CLayer& layer, GString name)
///           : SimpleCommand(L"Rename", L"Rename layer"), layer_(layer), name_(std::move(name)) {}
///
///     private:
///       StatusCode DoImpl() override { std::swap(layer_.name, name_); return Success; }
///       StatusCode UndoImpl() override { return DoImpl(); }
///       CLayer& layer_;
///       GString name_;
///     };
///
/// Threads: one thread a command.

#pragma once

#include <memory>

#include "shared/Export.h"
#include "shared/commands/Command.h"
#include "shared/text/GString.h"

namespace shr {

/// A command that is redone by doing it again and can always be undone. The derived class supplies
/// `DoImpl` and `UndoImpl`.
class SHARED_API SimpleCommand : public Command {
public:
  GString Label() const override;

protected:
  /// Takes the key, and the label for menus; without one the key is the label.
  explicit SimpleCommand(const GString& key, const GString& label = GString());
  SimpleCommand(const SimpleCommand& other);
  SimpleCommand& operator=(const SimpleCommand& other);
  ~SimpleCommand() override;

  GString KeyImpl() const override;
  /// Does what `DoImpl` does.
  StatusCode RedoImpl() override;
  bool UndoRedoableImpl() const override;
  /// Returns null: a command that is recorded and repeated overrides this.
  std::unique_ptr<Command> CloneImpl() const override;

private:
  // Named again, so that a derived class can call it from `UndoImpl`.
  StatusCode DoImpl() override = 0;

  GString key_;
  GString label_;
};

}  // namespace shr
