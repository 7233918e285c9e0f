// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/commands/SimpleCommand.h"

namespace shr {

SimpleCommand::SimpleCommand(const GString& key, const GString& label) : key_(key), label_(label) {}
SimpleCommand::SimpleCommand(const SimpleCommand& other) = default;
SimpleCommand& SimpleCommand::operator=(const SimpleCommand& other) = default;
SimpleCommand::~SimpleCommand() = default;

GString SimpleCommand::Label() const {
  return label_.empty() ? Key() : label_;
}

GString SimpleCommand::KeyImpl() const {
  return key_;
}

StatusCode SimpleCommand::RedoImpl() {
  return DoImpl();
}

bool SimpleCommand::UndoRedoableImpl() const {
  return true;
}

std::unique_ptr<Command> SimpleCommand::CloneImpl() const {
  return nullptr;
}

}  // namespace shr
