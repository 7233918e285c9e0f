// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CommandFactory`, the registry that makes commands by name.
///
/// Keys match in any letter case. A creator is a static object that registers itself:
///
///     class MoveFactory : public CommandFactory {
///     public:
///       MoveFactory() : CommandFactory(L"Move", this) {}
///     private:
///       std::unique_ptr<Command> ConstructImpl() const override {
///         return std::make_unique<Move>();
///       }
///     } moveFactory;
///
/// Threads: see shared/commands/Factory.h.

#pragma once

#include <memory>

#include "shared/Export.h"
#include "shared/commands/Command.h"
#include "shared/commands/Factory.h"
#include "shared/text/GString.h"

namespace shr {

class CommandFactory;

using CommandFactoryBase = Factory<CommandFactory, Command, GString, StringLess>;
template <>
SHARED_API CommandFactoryBase::RegistryType& CommandFactoryBase::GetRegistry();

/// Base of the creators of commands; `CanConstruct`, `Construct` and `size` reach all of them.
class SHARED_API CommandFactory : public CommandFactoryBase {
public:
  virtual ~CommandFactory();

protected:
  /// Registers `creator` under `key`; the rules are those of `Factory`.
  CommandFactory(const GString& key, CommandFactory* creator);

private:
  friend CommandFactoryBase;

  /// Returns a new command.
  virtual std::unique_ptr<Command> ConstructImpl() const = 0;
};

}  // namespace shr
